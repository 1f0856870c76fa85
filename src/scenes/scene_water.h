#pragma once

#include "scenes/model_scene.h"

namespace vex {

// A creature that twists above rippling water in the rain, and a ray that streams particles.
//
// Particle systems: 0 to 3 what falls, 4 the ray.
struct WaterValues {
  float rainAmount = 0;    // a tenth of the drops a frame
  float dropStrength = 0;  // of each
  float rayFlicker = 0;    // peak intensity of the ray's light
};

struct SceneWater : EmittingScene, WaterValues {
  using Own = WaterValues;
};

extern const ModelScene<SceneWater> sceneWater;

}  // namespace vex
