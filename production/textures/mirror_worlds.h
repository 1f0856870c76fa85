#pragma once

#include "engine/vector.h"
#include "production/image/image.h"

// Worlds that are seen only in mirror balls, as functions of a direction.

namespace vex {

// A tiled room in sterile teal under lamps, an alarm's red band around it, a door of light to the east.
Colour4 laboratoryLight(const Vector& direction);

// A lake of lava under a covered sun, between broken pillars.
Colour4 furnaceLight(const Vector& direction);

}  // namespace vex
