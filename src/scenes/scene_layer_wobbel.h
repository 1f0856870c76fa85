#pragma once

#include "scenes/model_scene.h"

namespace vex {

// A wobbling body that mirrors its surroundings.
struct WobbelValues {
  float phaseX = 0;  // radians; they grow with the frames that are drawn
  float phaseY = 0;
  float phaseZ = 0;
};

struct SceneLayerWobbel : Scene, WobbelValues {
  using Own = WobbelValues;
};

extern const ModelScene<SceneLayerWobbel> sceneLayerWobbel;

}  // namespace vex
