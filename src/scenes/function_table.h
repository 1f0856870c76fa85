#pragma once

#include <cstdint>
#include <span>

#include "engine/scene.h"

// The functions that a scene offers to the time line, as a table: registration, the check of projects
// and the documentation read the same rows.

namespace vex {

enum class ArgumentKind : std::int8_t {
  number,
  wholeNumber,  // truncated toward zero
  textureName,  // path without extension
  movieName,    // path of the frames without number and extension
  fileName,
  objectName,  // in the scene
};

// One parameter of a scene function, in slot order. The range holds the useful values of a number,
// both ends included; the function itself does not enforce it.
struct FunctionParameter {
  const char* name;
  ArgumentKind kind;
  float min = 0.0f;
  float max = 0.0f;
};

struct FunctionRow {
  const char* name;
  SceneFunction* function;
  std::span<const FunctionParameter> parameters;
};

inline void registerFunctions(Scene& scene, std::span<const FunctionRow> rows) {
  for (const FunctionRow& row : rows) scene.registerFunction(row.function, row.name);
}

// A number toward zero, at most a thousand million on either side; 0 for what is no number.
constexpr int truncateNumber(float value) {
  constexpr int limit = 1'000'000'000;
  if (value >= limit) return limit;
  if (value <= -limit) return -limit;
  return value == value ? static_cast<int>(value) : 0;
}

}  // namespace vex
