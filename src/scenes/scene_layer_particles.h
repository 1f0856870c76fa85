#pragma once

#include "scenes/model_scene.h"

namespace vex {

// A field of flares round a camera.
struct SceneLayerParticles : EmittingScene {};

extern const ModelScene<SceneLayerParticles> sceneLayerParticles;

}  // namespace vex
