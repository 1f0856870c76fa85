#include <algorithm>
#include <cmath>

#include "production/image/filter.h"
#include "production/image/noise.h"
#include "production/models/hell_parts.h"
#include "production/textures/hell_light.h"
#include "production/textures/palette.h"

// Pictures of hell that need no model: what burns, and haze.

namespace vex::hell {

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
    const float width = 0.075f + 0.34f * heat * heat * heat;
    const float glow = std::exp(-crack / width);
    const float grit = 0.5f + 0.5f * fractal(u * 24, v * 24, 24, 3, 0.55f, 965);
    const float relief = sample(light, u, v, EdgeMode::wrap);
    Colour4 colour = (ink + gradient(emberRamp, 0.21f + 0.10f * grit)) * (0.35f + 0.75f * relief);
    colour = colour + gradient(emberRamp, 0.40f * std::exp(-crack / (width * 2.4f)));
    colour = mix(colour, gradient(emberRamp, 0.52f + 0.36f * glow), smoothStep(0.35f, 0.75f, glow));
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

// Brightest low in the middle; tongues of fire.
Canvas blazePicture(int side) {
  return paint(side, side, [](float u, float v) {
    const float x = 2 * u - 1, rise = 1 - v;
    const float tongues =
        fractal(u * 7, v * 3 + 0.5f * fractal(u * 5, v * 4, 0, 2, 0.5f, 968), 0, 4, 0.55f, 969);
    const float level = 1.06f - 0.40f * rise - 0.18f * x * x + 0.24f * tongues;
    return gradient(emberRamp, std::clamp(level, 0.34f, 1.0f));
  });
}

namespace {

// The glow around the sphere, u and v from 0 to 1.
Colour4 haloColour(float u, float v) {
  const float r = 2 * std::hypot(u - 0.5f, v - 0.5f);
  Colour4 colour = gradient(emberRamp, 0.74f - 0.20f * r);
  colour.a = 0.85f * std::exp(-std::max(0.0f, r - 0.27f) / 0.17f) * smoothStep(0.98f, 0.45f, r);
  return colour;
}

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
  return paint(side, side,
               [](float u, float v) { return v < 0.5f ? haloColour(u, 2 * v) : hazeColour(u, 2 * v - 1); });
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
    const float away = 2 * std::hypot(u - 0.5f, v - 0.5f) * reach;
    Colour4 colour = hellHaze();
    colour.a = 0.97f * smoothStep(140, 500, away);
    return colour;
  });
}

}  // namespace vex::hell
