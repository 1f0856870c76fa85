#include "production/textures/hell_light.h"

#include <algorithm>
#include <cmath>

#include "production/image/filter.h"
#include "production/image/noise3.h"
#include "production/image/shape.h"
#include "production/textures/palette.h"

namespace vex {

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
  return gradient(emberRamp, 0.55f);
}

Colour4 hellLight(const Vector& direction) {
  const float flat = std::max(1e-3f, std::hypot(direction.x, direction.z));
  const float rise = direction.y / flat, turn = std::atan2(direction.z, direction.x) + pi;
  const float up = std::max(0.0f, direction.y);

  // Smoke, lit from below: a plane of clouds far above, folded by noise.
  const Vector cloudPlace = direction * (1.4f / (0.35f + up));
  const Vector folded = warp(cloudPlace * 1.3f, 0, 0.7f, 901);
  const float cloud = 0.5f + 0.5f * fractal(folded, 0, 5, 0.55f, 902);
  const float billow = smoothStep(0.32f, 0.8f, cloud);
  const float glow = std::exp(-up * 3.0f);
  Colour4 colour = gradient(emberRamp, 0.15f + 0.46f * glow) +
                   gradient(emberRamp, (0.16f + 0.42f * glow) * billow) * (0.35f + 0.5f * glow);
  // Where the fire stands behind the ruins the sky burns.
  const float blaze = 0.5f + 0.5f * gradientNoise(direction * 2.2f, 0, 905);
  colour = colour + gradient(emberRamp, 0.68f) * (0.55f * blaze * std::exp(-std::fabs(rise) * 7));

  if (rise < 0.75f) {
    const float sharp = 0.006f;
    const float far = coverage(arcade(turn + 0.07f, rise, 48, 0.16f, 910), sharp);
    colour = mix(colour, gradient(emberRamp, 0.40f - 0.4f * rise) * 0.9f, far);
    const float near = coverage(arcade(turn, rise, 22, 0.30f, 920), sharp);
    colour = mix(colour, ink + gradient(emberRamp, 0.27f * std::exp(-std::max(0.0f, rise) * 5)), near);
  }
  // Haze over the lake's end, and the lake below it.
  const float low = std::exp(-std::fabs(rise) * 16);
  colour = mix(colour, hellHaze(), clamp01(low * 0.9f));
  if (rise < 0) colour = mix(hellHaze(), gradient(emberRamp, 0.42f), smoothStep(0, -0.5f, rise));
  return colour;
}

}  // namespace vex
