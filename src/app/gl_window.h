#pragma once

#include "platform/display_modes.h"

namespace vex {

// Opens the window (platform/window.h) with the program's title and size, then setUpGlState().
// Fatal without a display or without OpenGL on it.
void setUpGl(const DisplayMode& mode, bool fullscreen);

}  // namespace vex
