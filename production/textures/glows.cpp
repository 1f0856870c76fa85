#include <cmath>

#include "production/textures/families.h"
#include "production/textures/palette.h"

namespace vex {

using namespace image;

namespace {

// A hot core in a wide skirt; exactly 0 from 0.94 of the radius on.
Canvas glow(int side, Colour4 hue) {
  return paint(side, side, [&](float u, float v) {
    const float r = std::hypot(u - 0.5f, v - 0.5f) * 2;
    const float skirt = std::pow(clamp01(1 - r / 0.94f), 2.4f);
    const float core = std::exp(-r * r * 46);
    return hue * (0.62f * skirt) + mix(hue, {1, 1, 1, 1}, 0.75f) * (core * smoothStep(0.94f, 0.5f, r));
  });
}

}  // namespace

Products glowPictures() {
  static constexpr Colour4 hues[7] = {{0.22f, 0.34f, 1, 1}, {0.36f, 0.92f, 0.2f, 1},  {0.2f, 0.86f, 0.95f, 1},
                                      {1, 0.17f, 0.1f, 1},  {0.95f, 0.18f, 0.72f, 1}, {1, 0.78f, 0.22f, 1},
                                      {1, 0.95f, 0.86f, 1}};
  Products products;
  for (int i = 0; i < 7; ++i)
    products.push_back(
        picture("light" + std::to_string(i + 1), PictureKind::bmp, 0.1f,
                [hue = hues[i]](const Settings& settings) { return glow(settings.side(256), hue); }));
  return products;
}

}  // namespace vex
