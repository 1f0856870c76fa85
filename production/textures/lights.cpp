#include <cmath>

#include "production/image/filter.h"
#include "production/image/noise.h"
#include "production/image/shape.h"
#include "production/textures/families.h"
#include "production/textures/hued.h"

namespace vex {

using namespace image;

namespace {

// Noise on a circle: repeats after a full turn.
float angular(float angle, float count, float r, std::uint32_t seed) {
  return valueNoise(angle / (2 * pi) * count + count, r, static_cast<int>(count), seed);
}

// Neither is white there: what is drawn faintly would be grey.
float hottest(const Hue& hue) {
  return &hue == &emberHue ? 0.76f : &hue == &tealHue ? 0.82f : 1.0f;
}

// Shafts from the middle, as through a broken window, about a spark; additive, empty at the borders.
Canvas raysAbout(float spark, const Settings& settings, const Hue& hue) {
  const int side = settings.side(512);
  return paint(side, side, [&](float u, float v) {
    const float x = (u - 0.5f) * 2, y = (v - 0.5f) * 2, r = std::hypot(x, y), angle = std::atan2(y, x);
    const float broad = angular(angle, 22, r * 0.7f, 150), fine = angular(angle, 90, r * 1.2f, 151);
    const float shaft = smoothStep(0.35f, 0.95f, 0.68f * broad + 0.42f * fine);
    const float fall = std::pow(clamp01(1 - r / 0.97f), 1.6f);
    return gradient(hue.ramp,
                    std::min(fall * (0.16f + 0.62f * shaft) + spark * std::exp(-r * r * 70), hottest(hue)));
  });
}

Canvas rays(const Settings& settings, const Hue& hue) {
  return raysAbout(0.5f, settings, hue);
}

// Of a light that is not seen itself.
Canvas hiddenRays(const Settings& settings, const Hue& hue) {
  return raysAbout(0, settings, hue);
}

// The light around a covered sun: fine streamers; nothing inside the disc. Additive.
Canvas corona(const Settings& settings, const Hue& hue) {
  const int side = settings.side(512);
  return paint(side, side, [&](float u, float v) {
    const float x = (u - 0.5f) * 2, y = (v - 0.5f) * 2, r = std::hypot(x, y), angle = std::atan2(y, x);
    const float out = std::max(0.0f, r - 0.36f);
    const float swirl = angle + 0.5f * out;
    const float broad = angular(swirl, 9, r * 0.8f, 160), fine = angular(swirl, 60, r * 2, 161),
                hair = angular(swirl, 190, r * 3, 162);
    const float reach = 0.05f + 0.26f * broad * broad + 0.06f * fine;
    const float streamers = std::exp(-out / reach) * (0.45f + 0.4f * fine + 0.35f * hair);
    const float ringLight = 0.75f * std::exp(-out / 0.014f) + 0.3f * std::exp(-out / 0.05f);
    return gradient(hue.ramp, std::min(streamers * 0.95f + ringLight, hottest(hue)) *
                                  smoothStep(0.345f, 0.37f, r) * smoothStep(0.97f, 0.55f, r));
  });
}

// The disc itself: ink with a lit rim, cut out by its mask.
Canvas moon(const Settings& settings) {
  const int side = settings.side(256);
  return paintSmooth(side, side, 2, [](float u, float v) {
    const float x = (u - 0.5f) * 2, y = (v - 0.5f) * 2, r = std::hypot(x, y);
    const float sphere = std::sqrt(clamp01(1 - r * r / 0.81f));
    const float relief = ridges(x / (0.35f + sphere) * 1.6f, y / (0.35f + sphere) * 1.6f, 0, 5, 0.55f, 170);
    Colour4 colour =
        ink + gradient(steelRamp, 0.13f * (1 - sphere) + 0.075f * relief * (0.4f + 0.6f * (1 - sphere)));
    colour.a = coverage(r - 0.9f, 0.012f);
    return colour;
  });
}

// Shafts along a cone: bands that run up and down, with slow dust in them. Tiles.
Canvas rayCone(const Settings& settings) {
  const int side = settings.side(256);
  return paint(side, side, [](float u, float v) {
    const float broad = valueNoise(u * 8, 0.5f, 8, 155), fine = valueNoise(u * 32, 0.5f, 32, 156);
    const float dust = 0.5f + 0.5f * fractal(u * 4, v * 4, 4, 4, 0.55f, 157);
    const float shaft = smoothStep(0.3f, 0.95f, 0.65f * broad + 0.4f * fine);
    return gradient(tealRamp, 0.72f * shaft * (0.45f + 0.55f * dust));
  });
}

// A lens's level streak. Additive.
Canvas streak(const Settings& settings, const Hue& hue) {
  const int width = settings.side(512), height = width / 8;
  return paint(width, height, [&](float u, float v) {
    const float x = (u - 0.5f) * 2, y = (v - 0.5f) * 2;
    const float along = std::pow(clamp01(1 - std::fabs(x) / 0.98f), 2.2f);
    const float line = std::exp(-y * y * 90 / (0.15f + along)) + 0.25f * std::exp(-std::fabs(y) * 9);
    return gradient(hue.ramp, along * line * smoothStep(0.92f, 0.5f, std::fabs(y)));
  });
}

}  // namespace

Products lightPictures() {
  Products products;
  const HuedPictures additive{PictureKind::jpeg}, lossless{PictureKind::bmp};
  products.push_back(additive("rays_", acidHue, 0.7f, hiddenRays));
  for (const Hue* hue : {&violetHue, &emberHue, &tealHue})
    products.push_back(additive("rays_", *hue, 0.7f, rays));
  products.push_back(additive("corona_", boneHue, 0.8f, corona));
  products.push_back(additive("corona_", emberHue, 0.8f, corona));
  products.push_back(lossless("streak_", boneHue, 0.2f, streak));
  products.push_back(lossless("streak_", acidHue, 0.2f, streak));
  products.push_back(lossless("streak_", violetHue, 0.2f, streak));
  products.push_back(picture("ray_cone", PictureKind::jpeg, 1, rayCone));
  products.push_back(picture("moon", PictureKind::maskedBmp, 0.5f, moon));
  return products;
}

}  // namespace vex
