#pragma once

#include <cstdint>

#include "production/image/image.h"
#include "production/image/outline.h"

// Type in relief, of any material, with light behind it, and torn. Made for additive drawing on black.

namespace vex::image {

// A place on a letter. Lengths are 128ths of the picture's height, x and y of whole heights.
struct FacePoint {
  float x, y;
  float inside;        // from the letter's edge
  float up;            // of the surface's normal: 1 where it faces the picture's upper edge, -1 the lower one
  float light, gloss;  // of the key light, above on the left
  float below;         // of a weak one under the letters
};

struct LetteringLook {
  Colour4 (*face)(const FacePoint& at);
  const std::vector<Colour4>* glow;  // ramp of the light around the letters
  float bevel = 4;                   // 128ths of the picture's height, as the lengths below
  float glowReach = 14;
  float glowStrength = 0.5f;
  float wear = 0.5f;  // 0 clean, 1 scratched away in places
  float tear = 0;     // 0 whole, 1 torn to strips
  std::uint32_t seed = 1;
};

// The picture of a lettering given as distances in texels; its borders are black.
Canvas drawLettering(const Field& distance, const LetteringLook& look);

}  // namespace vex::image
