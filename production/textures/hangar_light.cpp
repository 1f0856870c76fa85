#include "production/textures/hangar_light.h"

#include <algorithm>
#include <cmath>

#include "production/image/filter.h"
#include "production/image/noise3.h"
#include "production/image/shape.h"
#include "production/textures/palette.h"

namespace vex {

using namespace image;

namespace {

// The vault is a half cylinder of radius 1 about the eye's axis; the floor lies this far below the eye.
constexpr float floorDepth = 0.42f;
constexpr float ribEvery = 0.9f;  // along the hangar
constexpr float hazeLength = 1.5f;

float nearestRib(float along) {
  return std::fabs(along - ribEvery * std::round(along / ribEvery));
}

// Light of the strips and lamps on a place of the vault: `side` is the cosine of its angle above the floor.
Colour4 vault(float angle, float along, float detail) {
  const float rib = nearestRib(along);
  const float side = std::fabs(angle - pi / 2);  // 0 in the crown
  const float strip = std::fabs(side - 0.98f), lowStrip = std::fabs(side - 1.33f);
  const Vector place(3 * std::cos(angle), 3 * std::sin(angle), 3 * along);
  const float grime = detail > 0 ? 0.5f + 0.5f * detail * fractal(place, 0, 4, 0.6f, 700) : 0.5f;
  const float seams = std::min(std::fabs(side * 5 - std::round(side * 5)) / 5, std::fabs(rib - 0.27f));
  Colour4 colour = gradient(steelRamp, 0.20f + 0.18f * grime + 0.36f * std::exp(-side * side * 2.5f));
  colour = colour * (0.55f + 0.45f * smoothStep(0.004f, 0.014f, seams));
  const float ribbed = coverage(rib - 0.15f, 0.015f);
  const float ribEdge = std::exp(-std::fabs(rib - 0.15f) * 45);
  colour = mix(colour, gradient(steelRamp, 0.12f + 0.10f * grime), ribbed);
  colour = colour + gradient(steelRamp, 0.62f * ribEdge * std::exp(-side * 0.8f));
  // Strips run behind the ribs; a little of their glow lies beside them.
  const float tube = coverage(strip - 0.02f, 0.02f) * (1 - ribbed);
  const float lowTube = coverage(lowStrip - 0.01f, 0.012f) * (1 - ribbed);
  colour = colour + gradient(violetRamp, 0.30f * std::exp(-strip * 16) + 0.2f * std::exp(-lowStrip * 20)) +
           gradient(violetRamp, 0.95f) * tube + gradient(violetRamp, 0.75f) * lowTube;
  // A lamp in the crown of each field.
  const float lampAlong = (rib - ribEvery / 2) / 0.13f, lampSide = side / 0.16f;
  const float lamp = coverage(box(lampSide, lampAlong, 1, 1) * 0.1f, 0.03f);
  colour = colour + Colour4{0.92f, 0.96f, 1.0f} * lamp;
  return colour +
         gradient(steelRamp, 0.35f * std::exp(-2.2f * std::hypot(lampSide * 0.3f, lampAlong * 0.3f)));
}

}  // namespace

Colour4 hangarLight(const Vector& direction, float detail) {
  // The eye stands in the axis of the vault; rays that go down meet the floor, mirror there and go on.
  const float flat = std::max(1e-4f, std::hypot(direction.x, direction.y));
  const bool down = direction.y < 0;
  float angle = std::atan2(std::fabs(direction.y), direction.x), length = 1 / flat;
  Colour4 colour{0, 0, 0};
  float along = 0;
  if (down && floorDepth / -direction.y < length) {
    const float there = floorDepth / -direction.y;
    const float x = direction.x * there, z = direction.z * there;
    // The mirrored ray from (x, floor) meets the vault where |(x + dx t, -floor + |dy| t)| is 1.
    const float b = x * direction.x + floorDepth * direction.y, a = flat * flat;
    const float c = x * x + floorDepth * floorDepth - 1;
    const float t = (-b + std::sqrt(std::max(0.0f, b * b - a * c))) / a;
    const float hitX = x + direction.x * t, hitY = -floorDepth - direction.y * t;
    along = z + direction.z * t;
    length = there + t;
    angle = std::atan2(std::max(0.0f, hitY), hitX);
    const float wet = detail > 0 ? 0.5f + 0.5f * fractal(Vector(x * 4, 0.5f, z * 4), 0, 4, 0.55f, 710) : 0.5f;
    const float grazing = std::pow(1 + direction.y, 3.0f);
    const float slabs = std::min(std::fabs(x * 3 - std::round(x * 3)) / 3,
                                 std::fabs(z / ribEvery * 2 - std::round(z / ribEvery * 2)) / 2);
    const float gap = 0.5f + 0.5f * smoothStep(0.003f, 0.012f, slabs / (0.4f + there * 0.4f));
    colour = gradient(steelRamp, 0.06f + 0.06f * wet) * gap +
             vault(angle, along, 0) * ((0.2f + 0.5f * grazing) * (0.35f + 0.65f * wet) * gap);
  } else {
    if (down) angle = direction.x > 0 ? 0.0f : pi;
    along = direction.z * length;
    colour = vault(angle, along, detail);
  }
  // Haze: dark but for the one lamp at the southern end, so that what stands before it is a silhouette with a
  // lit rim; a bank of it lies over the floor.
  const float far = 1 - std::exp(-std::max(0.0f, length - 0.7f) / hazeLength);
  const float low = std::exp(-std::fabs(direction.y) * 3.5f);
  const float away = std::hypot(direction.x, direction.y - 0.16f);
  const float lamp = direction.z < 0 ? std::exp(-away * away * 16) + 0.5f * std::exp(-away * 3.2f) : 0.0f;
  const Colour4 haze = gradient(steelRamp, 0.17f + 0.10f * low + 0.86f * lamp);
  return mix(colour, haze, 1 - (1 - far) * (1 - 0.4f * low * low));
}

}  // namespace vex
