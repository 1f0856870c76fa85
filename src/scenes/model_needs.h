#pragma once

#include <span>
#include <string>
#include <vector>

#include "engine/scene.h"

// What a scene asks for in the model that it is built around. Whoever makes another model for it has to keep
// these.

namespace vex {

struct NeededObject {
  const char* name;                    // ASCII letter case ignored
  ObjectKind kind = ObjectKind::none;  // none: a mesh, helpers included, or a light
};

inline constexpr NeededObject neededMesh(const char* name) {
  return {name, ObjectKind::mesh};
}
inline constexpr NeededObject neededLight(const char* name) {
  return {name, ObjectKind::light};
}

struct ModelNeeds {
  std::span<const NeededObject> objects{};  // by name
  int meshes = 0, lights = 0, cameras = 1;  // at least that many: these are taken by their place in the file
};

// What a scene that holds a loaded model lacks, one line each: "mesh lock", "a camera more".
std::vector<std::string> lackingIn(const Scene& scene, const ModelNeeds& needs);

// The needs in words, as a sentence or two of Markdown; empty for none.
std::string needsText(const char* model, const ModelNeeds& needs);

}  // namespace vex
