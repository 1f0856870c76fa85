#pragma once

#include "scenes/model_scene.h"

namespace vex {

// A creature and two chrome spheres within a painted box.
struct SceneAlien : Scene {};

extern const ModelScene<SceneAlien> sceneAlien;

}  // namespace vex
