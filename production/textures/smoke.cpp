#include <cmath>

#include "production/image/filter.h"
#include "production/image/noise.h"
#include "production/textures/families.h"
#include "production/textures/hued.h"

namespace vex {

using namespace image;

namespace {

// A soft additive bank of haze, empty at the borders.
Canvas hazeCard(const Settings& settings, const Hue& hue) {
  const int side = settings.side(256);
  return paint(side, side, [&](float u, float v) {
    const float warp = fractal(u * 3, v * 3, 0, 4, 0.5f, 50);
    const float cloud = 0.5f + 0.5f * fractal(u * 3 + warp * 0.7f, v * 4 - warp * 0.5f, 0, 5, 0.52f, 51);
    const float r = std::hypot((u - 0.5f) * 2, (v - 0.5f) * 2);
    return gradient(hue.ramp,
                    0.6f * smoothStep(0.96f, 0.0f, r) * (0.35f + 0.65f * smoothStep(0.05f, 0.85f, cloud)));
  });
}

// Curling smoke that tiles: noise looked up through noise, sharpened at its folds.
Canvas smokeTile(const Settings& settings, const Hue& hue) {
  const int side = settings.side(512);
  return paint(side, side, [&](float u, float v) {
    const float x = u * 4, y = v * 4;
    const float wx = fractal(x, y, 4, 4, 0.5f, 60), wy = fractal(x, y, 4, 4, 0.5f, 61);
    const float vx = fractal(x + wx * 1.1f, y + wy * 1.1f, 4, 4, 0.5f, 62),
                vy = fractal(x + wx * 1.1f, y + wy * 1.1f, 4, 4, 0.5f, 63);
    const float body = 0.5f + 0.55f * fractal(x + vx * 1.3f, y + vy * 1.3f, 4, 5, 0.5f, 64);
    const float folds = ridges(x + vx * 1.2f, y + vy * 1.2f, 4, 3, 0.5f, 65);
    const float value = smoothStep(0.12f, 0.95f, body) * (0.42f + 0.62f * folds * folds);
    return gradient(hue.ramp, 0.86f * value);
  });
}

// Thin luminous threads that drift apart and meet again; tiles.
Canvas filaments(const Settings& settings, const Hue& hue) {
  const int side = settings.side(512);
  const Field threads = paintSmooth(side, side, 2, [](float u, float v) {
    const float x = u * 3, y = v * 3;
    const float wx = fractal(x, y, 3, 4, 0.5f, 70), wy = fractal(x, y, 3, 4, 0.5f, 71);
    float sum = 0;
    for (int layer = 0; layer < 3; ++layer) {
      const auto seed = static_cast<std::uint32_t>(72 + layer);
      const float place = gradientNoise(x + wx * 0.9f, y + wy * 0.9f, 3, seed);
      const float strength = smoothStep(0.25f, 0.75f, valueNoise(x * 2 + wy, y * 2 - wx, 6, seed + 10));
      sum +=
          strength * std::exp(-std::fabs(place) * 70) + 0.12f * strength * std::exp(-std::fabs(place) * 12);
    }
    return sum;
  });
  const Field halo = blur(threads, 5.0f * static_cast<float>(side) / 512, EdgeMode::wrap);
  return paint(side, side, [&](float u, float v) {
    return gradient(
        hue.ramp, 0.8f * sample(threads, u, v, EdgeMode::wrap) + 0.35f * sample(halo, u, v, EdgeMode::wrap));
  });
}

// Glowing specks of three sizes; tiles.
Canvas embers(const Settings& settings, const Hue& hue) {
  const int side = settings.side(512);
  return paint(side, side, [&](float u, float v) {
    float light = 0;
    for (const int cells : {7, 13, 22}) {
      const auto scale = static_cast<float>(cells);
      const float wobble = 0.25f * gradientNoise(u * 6, v * 6, 6, 90);
      const NoiseCell cell =
          cellularNoise(u * scale + wobble, v * scale, cells, static_cast<std::uint32_t>(cells));
      if (cell.id < 0.62f) continue;
      const float size = (0.035f + 0.07f * (cell.id - 0.6f)) * (cells == 7 ? 0.75f : 1);
      light += std::exp(-cell.nearest * cell.nearest / (size * size)) +
               0.16f * std::exp(-cell.nearest / (size * 1.8f)) * smoothStep(0.55f, 0.2f, cell.nearest);
    }
    return gradient(hue.ramp, light * 0.92f);
  });
}

}  // namespace

Products smokePictures() {
  Products products;
  const HuedPictures make{PictureKind::jpeg};
  for (const Hue* hue : {&boneHue, &acidHue, &violetHue, &emberHue, &tealHue})
    products.push_back(make("haze_", *hue, 0.5f, hazeCard));
  for (const Hue* hue : {&acidHue, &violetHue, &emberHue})
    products.push_back(make("smoke_", *hue, 3, smokeTile));
  products.push_back(make("threads_", acidHue, 4, filaments));
  products.push_back(make("sparks_", acidHue, 2, embers));
  products.push_back(make("sparks_", emberHue, 2, embers));
  return products;
}

}  // namespace vex
