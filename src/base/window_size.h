#pragma once

namespace vex {

// Current size of the window (or of the offscreen picture) in pixels.
float windowWidth();
float windowHeight();

void setWindowSize(int width, int height);

}  // namespace vex
