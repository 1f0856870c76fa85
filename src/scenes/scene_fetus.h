#pragma once

#include "scenes/model_scene.h"

namespace vex {

// A room with a lamp whose beam shows, a creature behind a door, a sprayer, a smoking cigarette and a
// bottle that can burst.
//
// Particle systems: 0 the sprayer, 1 the cigarette, 2 the burst.
struct SceneFetus : EmittingScene {};

extern const ModelScene<SceneFetus> sceneFetus;

}  // namespace vex
