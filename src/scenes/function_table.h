#pragma once

#include <cstdint>
#include <limits>
#include <span>

#include "timeline/scene_function.h"

// The functions that a scene offers to the time line, as a table: registration, the check of projects
// and docs/functions.md read the same rows.

namespace vex {

enum class ArgumentKind : std::int8_t {
  number,
  wholeNumber,   // truncated toward zero
  cameraNumber,  // the same; of the model's cameras, from 0
  frameNumber,   // the same; the first one of a call is its movie's first frame, the second its last
  textureName,   // path without extension
  movieName,     // path of the frames without number and extension
  fileName,
  objectName,  // in the scene
};

// One parameter of a scene function, in slot order. The range holds the useful values of a number,
// both ends included; the function itself does not enforce it. It does enforce the limit, with the same
// constant: a greater value would take unbounded time or memory and is taken for the limit.
struct FunctionParameter {
  const char* name;
  ArgumentKind kind;
  float min = 0.0f;
  float max = 0.0f;
  float limit = std::numeric_limits<float>::infinity();
  bool mayBeEmpty = false;  // a text
};

enum class FunctionRole : std::int8_t {
  draws,
  sets,  // what it sets stays until it is set again; its parts must be long enough to meet a frame
};

// When a call paints the ground: every pixel of the screen gets a colour that does not depend on what was
// there. Colour is never cleared, so each frame needs a call that does. The viewport is taken for the
// whole window, a texture for one without transparent pixels.
struct GroundRule {
  bool (*paints)(std::span<const float> arguments) = nullptr;  // in slot order, texts as 0; null: never
  const char* when = "";                                       // the same in words
};

struct FunctionRow {
  const char* name;
  SceneFunction* function;
  const char* summary;  // what it does, as a sentence
  std::span<const FunctionParameter> parameters;
  FunctionRole role = FunctionRole::draws;
  GroundRule ground = {};
  std::span<const char* const> after = {};  // functions that must have been called before, or the show ends
};

inline void registerFunctions(Scene& scene, std::span<const FunctionRow> rows) {
  for (const FunctionRow& row : rows) scene.registerFunction(row.function, row.name);
}

}  // namespace vex
