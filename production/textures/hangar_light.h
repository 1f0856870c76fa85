#pragma once

#include "production/image/environment.h"

// The alien's world as one function of direction: a vaulted hangar of steel ribs that runs from north to
// south, strips of magenta light along its walls, white lamps in its crown, a wet floor. Its pictures and all
// that chrome mirrors come from it.

namespace vex {

// `detail` 0 leaves out rust and seams that would only shimmer in a curved mirror.
image::Colour4 hangarLight(const Vector& direction, float detail);

}  // namespace vex
