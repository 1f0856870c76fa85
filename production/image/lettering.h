#pragma once

#include <cstdint>

#include "production/image/image.h"
#include "production/image/outline.h"

// Type as worn metal with light behind it, and torn. Made for additive drawing on black.

namespace vex {

struct LetteringLook {
  const std::vector<Colour4>* body;  // ramp of the face of the letters
  const std::vector<Colour4>* glow;  // ramp of the light around them
  float bevel = 4;                   // width in texels
  float glowReach = 14;              // texels
  float glowStrength = 0.5f;
  float wear = 0.5f;  // 0 clean, 1 scratched away in places
  float tear = 0;     // 0 whole, 1 torn to strips
  std::uint32_t seed = 1;
};

// The picture of a lettering given as distances in texels; its borders are black.
Canvas drawLettering(const Field& distance, const LetteringLook& look);

}  // namespace vex
