#pragma once

#include "scenes/model_scene.h"

namespace vex {

// A sea of lava and a sprayer of sparks within a painted box.
struct SceneHell : EmittingScene {};

extern const ModelScene<SceneHell> sceneHell;

}  // namespace vex
