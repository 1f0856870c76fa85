#pragma once

#include "scenes/model_scene.h"

namespace vex {

// A mesh seen from within at an extreme field of view.
struct SceneLayerWide : Scene {};

extern const ModelScene<SceneLayerWide> sceneLayerWide;

}  // namespace vex
