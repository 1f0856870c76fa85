#include "production/textures/hell_light.h"

#include <algorithm>
#include <cmath>

#include "production/image/filter.h"
#include "production/image/noise3.h"
#include "production/image/shape.h"
#include "production/textures/palette.h"

namespace vex {

using namespace image;

namespace {

// How far `rise` (the tangent of the elevation) lies inside a far arcade at that turn; negative inside.
// Walls with pointed openings, some of them fallen, and a tower here and there.
float arcade(float turn, float rise, int bays, float height, std::uint32_t seed) {
  const float place = turn / (2 * pi) * static_cast<float>(bays), width = 2 * pi / static_cast<float>(bays);
  const int bay = static_cast<int>(std::floor(place));
  const auto chance = [&](int which, int what) { return hashUnit((which % bays + bays) % bays, what, seed); };
  const float x = (place - static_cast<float>(bay) - 0.5f) * width;
  float solid = 1e3f;
  // The wall of this bay: a ragged top between the heights of its two piers.
  const float left = chance(bay, 1), right = chance(bay + 1, 1);
  const float ragged = 0.03f * (valueNoise(place * 9, 0.5f, 9 * bays, seed + 1) - 0.5f);
  const float top = height * (0.55f + 0.6f * mix(left * left, right * right, x / width + 0.5f)) + ragged;
  const float opening = pointedArch(x, top * 0.62f - rise, width * 0.36f, width * 0.22f);
  const float wall = std::max(rise - top, -opening);
  if (chance(bay, 2) > 0.22f) solid = wall;
  // Piers stand on their own where the wall has fallen.
  for (const int which : {bay, bay + 1}) {
    const float own = chance(which, 1);
    const float from = std::fabs(x - (static_cast<float>(which - bay) - 0.5f) * width);
    const float tall = height * (0.7f + 1.1f * own * own * own);
    solid = std::min(solid, std::max(from - width * 0.11f * (1 + 0.5f * own), rise - tall));
    // A spire on the tallest.
    if (own > 0.72f)
      solid = std::min(solid, from - width * 0.16f * clamp01(1 - (rise - tall) / (height * 0.8f)) +
                                  (rise > tall + height * 0.8f ? 1.0f : 0.0f));
  }
  return solid;
}

}  // namespace

Colour4 hellHaze() {
  return gradient(emberRamp, 0.46f);
}

Colour4 hellLight(const Vector& towards) {
  // The lake is a dark mirror.
  const Vector direction(towards.x, std::fabs(towards.y), towards.z);
  const float flat = std::max(1e-3f, std::hypot(direction.x, direction.z));
  const float rise = direction.y / flat, turn = std::atan2(direction.z, direction.x) + pi;
  const float up = direction.y;

  // Smoke, lit from below: a plane of clouds far above, folded by noise.
  const Vector cloudPlace = direction * (1.4f / (0.35f + up));
  const Vector folded = warp(cloudPlace * 1.3f, 0, 0.7f, 901);
  const float cloud = 0.5f + 0.5f * fractal(folded, 0, 5, 0.55f, 902);
  const float billow = smoothStep(0.34f, 0.8f, cloud);
  const float glow = std::exp(-up * 3.4f);
  Colour4 colour = gradient(emberRamp, 0.10f + 0.34f * glow) +
                   gradient(emberRamp, (0.16f + 0.46f * glow) * billow) * (0.45f + 0.5f * glow);
  // Where the fire stands behind the ruins the sky burns.
  const float blaze = 0.5f + 0.5f * gradientNoise(direction * 2.2f, 0, 905);
  colour = colour + gradient(emberRamp, 0.62f) * (0.8f * blaze * blaze * std::exp(-rise * 6));

  // Ruins stand in embers: banks of glowing smoke hide their feet.
  const float bank = 0.5f + 0.5f * fractal(direction * 3.4f + Vector(0, 3 * direction.y, 0), 0, 4, 0.5f, 906);
  const auto foot = [&](float depth) { return clamp01(std::exp(-rise / depth) * (0.55f + 0.9f * bank)); };
  const float sharp = 0.006f;
  const float far = coverage(arcade(turn + 0.07f, rise, 64, 0.15f, 910), sharp);
  colour = mix(colour, gradient(emberRamp, 0.26f), far * (1 - foot(0.09f)));
  const float near = coverage(arcade(turn, rise, 34, 0.25f, 920), sharp);
  colour = mix(colour, ink + gradient(emberRamp, 0.16f), near * (1 - foot(0.07f)));
  colour = mix(colour, hellHaze() * (0.75f + 0.5f * bank), foot(0.06f) * 0.9f);
  colour = mix(colour, hellHaze(), std::exp(-rise * 40));
  if (towards.y >= 0) return colour;
  // Under the lake's level: what hangs there burns along the roof; the depths are black.
  const float lost = smoothStep(0.06f, 0.95f, rise);
  const Colour4 melt = colour * 0.7f + gradient(emberRamp, 0.52f) * (0.8f * std::exp(-rise * 1.5f));
  return mix(mix(hellHaze(), melt, smoothStep(0.02f, 0.1f, rise)), ink, lost);
}

}  // namespace vex
