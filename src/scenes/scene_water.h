#pragma once

#include <array>

#include "engine/vector.h"
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

// As Mesh::twist takes it.
struct Twist {
  Vector axis, direction;
  float amount;  // radians at the mesh's radius
};

// What the creature is twisted by at a time in seconds, one after the other.
std::array<Twist, 2> creatureTwists(float t);

extern const ModelScene<SceneWater> sceneWater;

}  // namespace vex
