#include <cmath>

#include "production/image/filter.h"
#include "production/image/noise.h"
#include "production/image/shape.h"
#include "production/textures/families.h"
#include "production/textures/hangar_light.h"
#include "production/textures/palette.h"

namespace vex {

namespace {

// Looking along the hangar and past it, for grounds.
Canvas hangarView(const Settings& settings, float turn, float rise, float reach) {
  const int width = settings.side(1024);
  return viewOf([](const Vector& d) { return hangarLight(d, 1); }, lookTowards(turn, rise), reach, width,
                width / 2, 2);
}

// One rib as a gate to fly through: a heavy frame with bolted plates, hoses and struts, near black, its
// inner edge lit from beyond. Twice as wide as high; the middle is open.
Canvas rib(const Settings& settings) {
  const int width = settings.side(1024);
  return paintSmooth(width, width / 2, 2, [&](float u, float v) {
    const float x = (u - 0.5f) * 2, y = v - 0.5f, ax = std::fabs(x);
    // The opening: an octagon with a vaulted crown.
    const float flank = ax - 0.70f, crown = std::hypot(ax, (y - 0.1f) * 1.9f) - 0.93f, foot = y - 0.36f;
    const float slant = (ax - 0.70f) * 0.64f + (y - 0.2f) * 0.77f;
    float open = std::max(std::max(flank, crown), std::max(foot, slant));
    // Struts, hoses and teeth reach into it.
    const float teeth =
        0.028f * smoothStep(0.25f, 0.4f, std::fabs(x * 11 - std::round(x * 11))) * smoothStep(0.1f, -0.2f, y);
    open += teeth;
    float iron = -open;
    for (int i = 0; i < 7; ++i) {
      const float place = -0.62f + 0.2f * static_cast<float>(i) + 0.1f * hashUnit(i, 1, 720);
      const float sag = 0.05f + 0.12f * hashUnit(i, 2, 720);
      const float hang = y + 0.36f - sag * (1 - ((x - place) / 0.16f) * ((x - place) / 0.16f));
      if (std::fabs(x - place) < 0.17f) iron = std::min(iron, std::fabs(hang) / 1.5f - 0.006f);
    }
    const float depth = -iron;  // into the metal
    const float turn = std::atan2(y * 1.6f, x) * 9 / pi;
    const float joint = smoothStep(0.0f, 0.035f, std::fabs(turn - std::round(turn)));
    const float bolt = std::hypot((turn - std::floor(turn) - 0.5f) * 0.13f, depth - 0.075f) - 0.009f;
    const float stepEdge =
        std::exp(-std::fabs(depth - 0.045f) * 160) + 0.6f * std::exp(-std::fabs(depth - 0.11f) * 160);
    const float grit = 0.5f + 0.5f * fractal(u * 36, v * 18, 0, 4, 0.6f, 721);
    Colour4 colour = ink + gradient(steelRamp, (0.10f + 0.10f * grit) * joint * std::exp(-depth * 2.5f) +
                                                   0.18f * stepEdge * joint + 0.2f * coverage(bolt, 0.008f));
    colour = colour +
             gradient(violetRamp, 0.75f * std::exp(-std::fabs(open) / 0.009f) * (0.5f + 0.5f * grit)) +
             gradient(violetRamp, 0.18f * std::exp(-depth / 0.07f) * grit);
    colour.a = coverage(iron, 0.005f) * smoothStep(0.0f, 0.02f, std::min(0.5f - std::fabs(y), (1 - ax) / 2));
    return colour;
  });
}

}  // namespace

Products hangarPictures() {
  return {
      picture("hangar", PictureKind::jpeg, "hangar", 6,
              [](const Settings& settings) { return hangarView(settings, 1.48f, 0.04f, 1.15f); }),
      picture("hangar_side", PictureKind::jpeg, "hangar", 6,
              [](const Settings& settings) { return hangarView(settings, 0.62f, 0.16f, 0.85f); }),
      picture("rib", PictureKind::maskedJpeg, "hangar", 4, rib),
  };
}

}  // namespace vex
