#pragma once

#include "production/image/lettering.h"

namespace vex {

// "vex" in the title's face, an x high, its left end at 0.
image::Lettering titleLetters();

}  // namespace vex
