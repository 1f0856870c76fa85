#pragma once

#include <array>

#include "scenes/model_scene.h"

namespace vex {

inline constexpr int crowCount = 3;

// A skull on a rock under clouds and lightning; three crows that can be shot, and two lasers to do it with.
//
// Crow k carries particle system k, its fire, and k + 3, its smoke.
struct SkullValues {
  int sparkRate = 0;                        // percentage of frames in which each bolt shows
  int laserRate = 0;                        // the same of each laser
  const char* laserTarget = nullptr;        // object; the text of a parameter of the project
  std::array<Vector, crowCount> killPos{};  // how far each crow had flown when it was shot
};

struct SceneSkull : EmittingScene, SkullValues {
  using Own = SkullValues;
};

extern const ModelScene<SceneSkull> sceneSkull;

}  // namespace vex
