#pragma once

#include <memory>
#include <vector>

#include "engine/scene.h"

// How a scene stands at one moment, so that it can begin again without being loaded again.

namespace vex {

class SceneState {
 public:
  explicit SceneState(const Scene& scene);
  ~SceneState();
  SceneState(SceneState&&) noexcept;
  SceneState& operator=(SceneState&&) noexcept;
  SceneState(const SceneState&) = delete;
  SceneState& operator=(const SceneState&) = delete;

  // Into the scene that it was taken of. Objects are given their values where they are; objects that came
  // in the place of none go. Fatal: "scene %s has other objects than it began with", for all other changes.
  void restore(Scene& scene) const;

 private:
  struct Values;
  std::unique_ptr<Values> values;
};

}  // namespace vex
