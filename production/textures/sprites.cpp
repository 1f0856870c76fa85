#include <cmath>

#include "production/image/filter.h"
#include "production/image/noise.h"
#include "production/textures/families.h"
#include "production/textures/palette.h"

namespace vex {

using namespace image;

namespace {

// All are additive and end well before their borders. x and y go from -1 to 1, r is the distance from the
// middle.
Canvas sprite(const Settings& settings, int fullSide, const Ramp& ramp,
              float (*light)(float x, float y, float r)) {
  const int side = settings.side(fullSide);
  return paintSmooth(side, side, 2, [&](float u, float v) {
    const float x = (u - 0.5f) * 2, y = (v - 0.5f) * 2, r = std::hypot(x, y);
    return gradient(ramp, light(x, y, r) * smoothStep(0.93f, 0.5f, r));
  });
}

// A point of light in a wide skirt.
float soft(float, float, float r) {
  return 0.9f * std::exp(-r * r * 34) + 0.34f * std::pow(clamp01(1 - r), 3.0f);
}

// A star of six spikes, two of them long, and a faint ring: a strong light in a lens.
float star(float x, float y, float r) {
  float light = 1.1f * std::exp(-r * r * 60) + 0.22f * std::pow(clamp01(1 - r), 3.0f);
  for (int i = 0; i < 3; ++i) {
    const float angle = static_cast<float>(i) * pi / 3, c = std::cos(angle), s = std::sin(angle);
    const float along = std::fabs(x * c + y * s), across = std::fabs(y * c - x * s);
    const float reach = i == 0 ? 0.5f : 0.22f;
    light += 0.8f * std::exp(-along / reach * 2) * std::exp(-across * 70 * (0.4f + along));
  }
  return light + 0.10f * std::exp(-std::fabs(r - 0.55f) * 40);
}

// A spark: a small hard core with a torn edge.
float spark(float x, float y, float r) {
  const float torn = 0.7f + 0.5f * valueNoise(std::atan2(y, x) / (2 * pi) * 14 + 14, r * 3, 14, 740);
  return std::exp(-r * r * 26 / torn) + 0.2f * std::exp(-r * 7);
}

// A drop that falls past the lens: a thread of light that thins upwards.
float drop(float x, float y, float) {
  const float along = clamp01(1 - y * y / 0.8f), head = smoothStep(-0.9f, 0.7f, y);
  return along * (0.85f * std::exp(-x * x * 1600) + 0.20f * std::exp(-x * x * 240)) * (0.25f + 0.75f * head);
}

// A puff of smoke, white: scenes give it its colour, or let it darken.
Canvas puff(const Settings& settings, int number) {
  const int side = settings.side(128);
  const auto seed = static_cast<std::uint32_t>(750 + 4 * number);
  return paint(side, side, [&](float u, float v) {
    const float x = (u - 0.5f) * 2, y = (v - 0.5f) * 2;
    const float wx = fractal(u * 3, v * 3, 0, 4, 0.5f, seed),
                wy = fractal(u * 3, v * 3, 0, 4, 0.5f, seed + 1);
    const float r = std::hypot(x + 0.35f * wx, y + 0.35f * wy);
    const float billows = 0.55f + 0.55f * fractal(u * 3.5f + wx, v * 3.5f + wy, 0, 5, 0.55f, seed + 2);
    const float light =
        std::pow(clamp01(1 - r / 0.9f), 1.4f) * clamp01(billows) * smoothStep(0.97f, 0.6f, std::hypot(x, y));
    return Colour4{light, light, light} * 0.95f;
  });
}

}  // namespace

Products spritePictures() {
  const auto add = [](const char* name, const Ramp& ramp, float (*light)(float, float, float)) {
    return picture(name, PictureKind::bmp, 0.2f,
                   [&ramp, light](const Settings& settings) { return sprite(settings, 128, ramp, light); });
  };
  Products products{add("flare_normal", boneRamp, soft), add("flare_shine", emberRamp, star),
                    add("flare_particle", emberRamp, spark), add("flare_highpass", tealRamp, drop)};
  for (int number = 1; number <= 4; ++number)
    products.push_back(picture("flare_smoke" + std::to_string(number), PictureKind::bmp, 0.2f,
                               [number](const Settings& settings) { return puff(settings, number); }));
  return products;
}

}  // namespace vex
