#pragma once

namespace vex {

struct Colour {
  float r = 1.0f;
  float g = 1.0f;
  float b = 1.0f;
};

// As GL takes materials.
struct ColourAlpha {
  float r = 1.0f;
  float g = 1.0f;
  float b = 1.0f;
  float a = 1.0f;
};

}  // namespace vex
