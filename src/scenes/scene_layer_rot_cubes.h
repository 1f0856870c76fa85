#pragma once

#include "scenes/model_scene.h"

namespace vex {

// Turning cubes under a light that circles among them.
struct SceneLayerRotCubes : Scene {};

extern const ModelScene<SceneLayerRotCubes> sceneLayerRotCubes;

}  // namespace vex
