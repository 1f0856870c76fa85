#include <algorithm>
#include <cmath>

#include "production/image/filter.h"
#include "production/image/noise.h"
#include "production/models/hell_parts.h"
#include "production/textures/hell_light.h"
#include "production/textures/palette.h"

// Pictures of hell that need no model: what burns, and haze.

namespace vex::hell {

using namespace image;
using namespace geometry;

// Plates of black crust on a glowing melt; wide cracks, for no camera sees fine ones without shimmer.
Canvas lavaPicture(int side) {
  constexpr int cells = 5;
  const auto height = [](float u, float v) {
    const float x = u * cells, y = v * cells;
    const float foldX = 0.55f * fractal(x, y, cells, 3, 0.5f, 961),
                foldY = 0.55f * fractal(x, y, cells, 3, 0.5f, 962);
    const NoiseCell cell = cellularNoise(x + foldX, y + foldY, cells, 963);
    return cell.second - cell.nearest;  // 0 in the cracks
  };
  const Field crust =
      paint(side, side, [&](float u, float v) { return 9.0f * smoothStep(0.02f, 0.28f, height(u, v)); });
  const Field light = lightRelief(crust, 0.5f, -0.6f, 0.7f, EdgeMode::wrap);
  return paint(side, side, [&](float u, float v) {
    const float crack = height(u, v);
    // Here the melt lies open, there it is all but closed.
    const float heat = 0.5f + 0.5f * fractal(u * 3, v * 3, 3, 3, 0.5f, 964);
    const float width = 0.075f + 0.5f * heat * heat * heat;
    const float glow = std::exp(-crack / width);
    const float grit = 0.5f + 0.5f * fractal(u * 24, v * 24, 24, 3, 0.55f, 965);
    const float relief = sample(light, u, v, EdgeMode::wrap);
    // Cold blue-black crust, a red skirt of heat, melt that is yellow to white in the middle of wide cracks.
    Colour4 colour = (ink + gradient(steelRamp, 0.16f + 0.10f * grit)) * (0.2f + 0.9f * relief);
    colour = colour + gradient(emberRamp, 0.42f * std::exp(-crack / (width * 2.4f)));
    const float melt = smoothStep(0.35f, 0.75f, glow), core = smoothStep(0.62f, 0.95f, glow) * heat;
    colour = mix(colour, gradient(emberRamp, 0.60f + 0.32f * glow + 0.36f * core), melt);
    // The crust is glass: what hangs over it shows in it.
    colour.a = mix(0.28f + 0.2f * grit, 1.0f, smoothStep(0.15f, 0.5f, glow));
    return colour;
  });
}

Canvas heartPicture(int side) {
  return paint(side, side, [](float u, float v) {
    const float flow = fractal(u * 6, v * 6, 6, 4, 0.55f, 966);
    const float veins = ridges(u * 6 + 0.4f * flow, v * 6, 6, 3, 0.5f, 967);
    // Calm at the poles, where the picture is drawn together.
    return gradient(emberRamp, 0.74f + (0.20f * flow + 0.30f * (veins - 0.25f)) * std::sin(pi * v));
  });
}

// Yellow low in the middle, never white, for far windows lie in the dark of many shots; tongues of fire,
// redder the higher and the further out.
Canvas blazePicture(int side) {
  return paint(side, side, [](float u, float v) {
    const float x = 2 * u - 1, rise = 1 - v;
    const float fold = 0.5f * fractal(u * 6, v * 4, 0, 3, 0.5f, 968);
    const float tongues = ridges(u * 9 + fold, v * 4 + fold, 0, 4, 0.55f, 969) - 0.35f;
    const float level = 0.94f - 0.36f * rise - 0.5f * x * x + (0.45f + 0.5f * rise) * tongues;
    return gradient(emberRamp, std::clamp(level, 0.3f, 0.88f));
  });
}

namespace {

// Haze that stands on the lake, thick at its foot, clear at its borders.
Colour4 hazeColour(float u, float v) {
  const float rise = 1 - v, x = 2 * u - 1;
  const float swirl = 0.5f + 0.5f * fractal(u * 5, v * 3, 0, 4, 0.5f, 970);
  Colour4 colour = gradient(emberRamp, 0.56f - 0.20f * rise);
  colour.a = 0.8f * smoothStep(1, 0.45f, std::fabs(x)) * smoothStep(0.0f, 0.10f, rise) *
             std::exp(-rise * 3.6f) * smoothStep(1.0f, 0.7f, rise) * (0.30f + 0.7f * swirl);
  return colour;
}

}  // namespace

Canvas glowPicture(int side) {
  return paint(side, side, hazeColour);
}

Canvas duskPicture(int side) {
  return paint(side, side, [](float u, float v) {
    const float x = 2 * u - 1;
    const float open = smoothStep(0.22f, 0.86f, v) * std::exp(-0.9f * x * x * x * x);
    return Colour4{0.90f, 0.93f, 0.90f} * (1 - open);
  });
}

Canvas lakeHazePicture(int side, float reach) {
  return paint(side, side, [reach](float u, float v) {
    const float x = 2 * (u - 0.5f) * reach, z = 2 * (v - 0.5f) * reach, away = std::hypot(x, z);
    const float haze = 0.97f * smoothStep(140, 500, away);
    // Rafts of cold crust, which break the melt's pattern; a channel stays open from the choir to the sphere.
    const float raft = 0.5f + 0.5f * fractal(x * 0.011f, z * 0.011f, 0, 4, 0.55f, 971);
    const float channel = std::exp(-x * x / 1600) * smoothStep(60, -40, z);
    const float cold = 0.88f * smoothStep(0.50f, 0.60f, raft) * (1 - channel) * (1 - haze);
    // Open melt flows out of the choir, around the sphere's place and past the eye.
    const float bend = 34 * fractal(z * 0.012f, 0, 0, 2, 0.5f, 972), width = 21 + 9 * std::sin(z * 0.03f);
    const float flow = fractal(x * 0.05f, z * 0.016f, 0, 4, 0.55f, 973);
    const float shore = 7 * fractal(x * 0.06f, z * 0.06f, 0, 3, 0.5f, 974);
    const float melt =
        smoothStep(width + 5, width - 5, std::fabs(x - bend) + shore) * smoothStep(150, 60, z) * (1 - haze);
    Colour4 colour = mix(ink + gradient(emberRamp, 0.12f * raft), hellHaze(), haze);
    colour = mix(colour, gradient(emberRamp, 0.90f + 0.5f * flow), melt);
    colour.a = std::max({haze, cold, 0.95f * melt});
    return colour;
  });
}

}  // namespace vex::hell
