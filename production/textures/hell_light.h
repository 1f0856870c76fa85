#pragma once

#include "production/image/environment.h"

// Hell as one function of direction: smoke lit from below, arcades of a ruined town of basalt far away all
// around, a glowing haze where the lake of lava ends.

namespace vex {

image::Colour4 hellLight(const Vector& direction);

// The haze over the lake, which everything far away goes over to.
image::Colour4 hellHaze();

}  // namespace vex
