#include <cmath>

#include "production/image/filter.h"
#include "production/image/noise.h"
#include "production/textures/families.h"
#include "production/textures/palette.h"

namespace vex {

using namespace image;

namespace {

struct GroundLook {
  const Hue& hue;
  float glowX, glowY, glowSize;  // of the light behind the clouds, in u and v
  float base, glow, clouds;      // brightness on the ramp
  std::uint32_t seed;
};

// A sky of torn cloud with a light behind it, darker towards the foot.
Canvas sky(const Settings& settings, const GroundLook& look) {
  const int width = settings.side(512);
  return paint(width, width / 2, [&](float u, float v) {
    const float warp = fractal(u * 3, v * 4, 0, 4, 0.5f, look.seed + 1);
    const float cloud = fractal(u * 4 + warp * 0.6f, v * 7 + warp * 0.5f, 0, 6, 0.55f, look.seed);
    const float streak = fractal(u * 2 + warp, v * 16, 0, 4, 0.5f, look.seed + 2);
    const float distance = std::hypot((u - look.glowX) * 1.78f, v - look.glowY) / look.glowSize;
    const float light = std::exp(-distance * distance * 1.6f) + 0.35f * std::exp(-distance * 1.1f);
    const float edges = light * (1 + 0.7f * look.clouds * smoothStep(-0.1f, 0.7f, cloud));
    const float value =
        look.base + look.glow * edges + look.clouds * (0.10f * cloud + 0.05f * streak) * (0.35f + light);
    return gradient(look.hue.ramp, value * smoothStep(1.25f, 0.55f, v));
  });
}

}  // namespace

Products groundPictures() {
  static const GroundLook looks[] = {
      {boneHue, 0.5f, 0.62f, 0.46f, 0.125f, 0.34f, 1.15f, 400},
      {acidHue, 0.5f, 0.52f, 0.21f, 0.05f, 0.8f, 0.9f, 410},
      {emberHue, 0.5f, 0.60f, 0.45f, 0.16f, 0.62f, 1.2f, 430},
      {tealHue, 0.5f, 0.50f, 0.36f, 0.08f, 0.44f, 1.1f, 440},
  };
  Products products;
  for (const GroundLook& look : looks)
    products.push_back(picture(std::string("sky_") + look.hue.suffix, PictureKind::jpeg, 1,
                               [&look](const Settings& settings) { return sky(settings, look); }));
  return products;
}

}  // namespace vex
