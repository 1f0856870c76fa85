#include "production/textures/mirror_worlds.h"

#include <algorithm>
#include <cmath>

#include "production/image/filter.h"
#include "production/image/noise3.h"
#include "production/image/shape.h"
#include "production/textures/palette.h"

namespace vex {

namespace {

// How far `x` lies from the nearest multiple of `step`.
float nearestLine(float x, float step) {
  return std::fabs(x - step * std::round(x / step));
}

// 1 on a ceiling lamp, with a glow around it.
float lampLight(float x, float z) {
  const float away = box(x - 1.1f * std::round(x / 1.1f), z - 1.0f * std::round(z), 0.36f, 0.2f);
  return coverage(away, 0.03f) + 0.45f * std::exp(-std::max(0.0f, away) * 7);
}

}  // namespace

Colour4 laboratoryLight(const Vector& direction) {
  // The eye hangs in the middle of the room.
  const Vector half(1.8f, 0.85f, 2.4f);
  const float toSide = half.x / std::max(1e-4f, std::fabs(direction.x)),
              toLevel = half.y / std::max(1e-4f, std::fabs(direction.y)),
              toEnd = half.z / std::max(1e-4f, std::fabs(direction.z));
  const Vector place = direction * std::min(toLevel, std::min(toSide, toEnd));
  const float haze = 0.05f * place.length();
  if (toLevel < std::min(toSide, toEnd)) {
    const float lamp = lampLight(place.x, place.z);
    const float seam =
        smoothStep(0.01f, 0.03f, std::min(nearestLine(place.x, 0.55f), nearestLine(place.z, 0.5f)));
    if (direction.y > 0) return gradient(tealRamp, (0.44f + haze) * (0.6f + 0.4f * seam) + 0.75f * lamp);
    return gradient(tealRamp, (0.27f + haze) * (0.55f + 0.45f * seam) + 0.34f * lamp * seam);
  }
  const bool side = toSide < toEnd;
  const float along = side ? place.z : place.x, height = place.y;
  const float seam =
      smoothStep(0.008f, 0.03f, std::min(nearestLine(along, 0.4f), nearestLine(height, 0.28f)));
  const float washed = 0.32f + 0.3f * (height + half.y) / (2 * half.y) + haze;
  Colour4 colour = gradient(tealRamp, washed * (0.6f + 0.4f * seam));
  const float band = std::fabs(height - 0.22f);
  colour = mix(colour, gradient(alarmRamp, 0.72f), coverage(band - 0.05f, 0.02f));
  colour = colour + gradient(alarmRamp, 0.45f * std::exp(-band * 8));
  if (side && direction.x > 0) {
    const float door = box(along - 0.2f, height + 0.25f, 0.34f, 0.6f);
    colour = mix(colour, Colour4{0.93f, 1, 0.97f}, coverage(door, 0.02f));
    colour = colour + gradient(tealRamp, 0.6f * std::exp(-std::max(0.0f, door) * 6));
  }
  return colour;
}

Colour4 furnaceLight(const Vector& direction) {
  const float azimuth = std::atan2(direction.z, direction.x);
  const float low = std::exp(-std::fabs(direction.y) * 5);
  Colour4 colour;
  if (direction.y < 0) {
    // The lake lies 0.4 below the eye; crust with light in its seams, which run together in the distance.
    const float length = 0.4f / std::max(0.02f, -direction.y);
    const NoiseCell crust =
        cellularNoise(Vector(direction.x * length * 2.2f, 0.5f, direction.z * length * 2.2f), 0, 901);
    const float seam = std::exp(-(crust.second - crust.nearest) * 9);
    const float near = std::exp(-length * 0.35f);
    colour = gradient(emberRamp, mix(0.52f, 0.2f + 0.7f * seam, near));
  } else {
    const float clouds =
        0.5f + 0.5f * fractal(Vector(direction.x, direction.y * 2.5f, direction.z) * 2.2f, 0, 5, 0.55f, 902);
    colour = gradient(emberRamp, (0.34f + 0.36f * low) * (0.35f + 1.3f * clouds));
  }
  const Vector sun(-0.25f, 0.5f, -0.83f);
  const float away = std::acos(std::clamp(dot(direction, sun) / sun.length(), -1.0f, 1.0f)) - 0.3f;
  colour = colour + gradient(emberRamp, 0.95f * std::exp(-std::max(0.0f, away) * 3.5f));
  colour = mix(colour, ink, coverage(away, 0.02f));
  // Nine broken pillars on its shore.
  const float pillar = nearestLine(azimuth - 0.35f, 2 * pi / 9) - 0.05f;
  const Colour4 stone = ink + gradient(emberRamp, 0.4f * low * std::exp(pillar * 40));
  const float standing = smoothStep(-0.30f, -0.24f, direction.y) *
                         smoothStep(0.30f, 0.28f, direction.y + 0.25f * std::fabs(std::sin(azimuth * 3)));
  return mix(colour, stone, coverage(pillar, 0.012f) * standing);
}

}  // namespace vex
