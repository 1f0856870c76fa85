#pragma once

#include "scenes/model_scene.h"

namespace vex {

// A wobbling body that mirrors its surroundings.
struct SceneLayerWobbel : Scene {
  float phaseX = 0;  // radians; they grow with the frames that are drawn
  float phaseY = 0;
  float phaseZ = 0;
};

extern const ModelScene<SceneLayerWobbel> sceneLayerWobbel;

}  // namespace vex
