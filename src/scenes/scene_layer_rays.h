#pragma once

#include "scenes/model_scene.h"

namespace vex {

// Rays that swirl over the inside of a cone.
struct SceneLayerRays : Scene {};

extern const ModelScene<SceneLayerRays> sceneLayerRays;

}  // namespace vex
