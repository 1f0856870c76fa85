#include <algorithm>
#include <cmath>

#include "production/image/filter.h"
#include "production/image/noise.h"
#include "production/image/noise3.h"
#include "production/models/hell_parts.h"
#include "production/textures/palette.h"

// The light of hell and what it falls on.

namespace vex::hell {

using namespace image;
using namespace geometry;

BakeLook stoneLook() {
  BakeLook look;
  look.sky = [](const Vector& d) {
    const float below = smoothStep(0.25f, -0.7f, d.y), level = std::exp(-std::fabs(d.y) * 3);
    return gradient(emberRamp, 0.68f) * (0.75f * below) + gradient(emberRamp, 0.46f) * (0.15f * level) +
           Colour4{0.036f, 0.044f, 0.080f};
  };
  // The fire behind the choir, in which sphere and lake burn too, rakes the sides that face the nave: every
  // pier has it to its right. From outside a cold sky draws the far edges.
  look.lights = {{.towards = Vector(0.80f, -0.10f, -0.60f), .size = 0.2f, .colour = {6.4f, 2.4f, 0.62f}},
                 {.towards = Vector(-0.72f, 0.45f, 0.55f), .size = 0.2f, .colour = {0.16f, 0.24f, 0.38f}}};
  look.bounce = {0.03f, 0.008f, 0.008f};
  look.reach = 55;
  look.rays = 36;
  look.shadowRays = 4;
  look.coarseness = 5;
  return look;
}

namespace {

// Courses of blocks, each shifted by half a block: dark in the joints, no two blocks alike.
float blockJoint(float course, float along) {
  const float row = std::floor(course), column = along + 0.5f * std::fmod(std::fabs(row), 2.0f);
  const auto from = [](float place) { return std::fabs(place - std::round(place)); };
  const float line = std::min(from(course), from(column) * 1.6f);
  const float block = hashUnit(static_cast<int>(row), static_cast<int>(std::floor(column)), 990);
  return (0.72f + 0.5f * block) * (0.3f + 0.7f * smoothStep(0.015f, 0.06f, line));
}

}  // namespace

// Blue-black basalt; what colour it has comes from the lake.
Colour4 stoneColour(const BakePoint& p) {
  const float y = p.position.y, high = std::max(0.0f, y);
  const float grit = 0.5f + 0.5f * fractal(p.position * 0.16f, 0, 4, 0.6f, 981);
  const float stain =
      0.5f + 0.5f * fractal(Vector(p.position.x * 0.05f, y * 0.012f, p.position.z * 0.05f), 0, 3, 0.5f, 982);
  // Columns crack across every few feet, here deep, there not at all.
  const float course = y / 13 + 3.2f * gradientNoise(p.position * 0.035f, 0, 983);
  const float depth = smoothStep(-0.1f, 0.5f, gradientNoise(p.position * 0.06f, 0, 987));
  const bool masonry = p.part == web || p.part == brokenWeb || p.part == rib || p.part == brokenRib;
  const bool wall = p.part == choirWall || p.part == rosePetal || p.part == roseEye;
  const float joint =
      masonry               ? blockJoint(archShare(p.position) * 16, p.position.z / 15)
      : p.part == choirWall ? blockJoint(y / 11, p.position.x / 18)
      : wall                ? 1.0f
             : 1 - 0.55f * depth * smoothStep(0.07f, 0.0f, std::fabs(course - std::round(course)));
  // Edges are worn, here more, there less.
  const float worn = std::max(0.0f, p.edge) * (0.3f + 1.2f * smoothStep(0.45f, 0.8f, grit));
  Colour4 albedo =
      mix(Colour4{0.055f, 0.060f, 0.085f}, Colour4{0.24f, 0.22f, 0.25f}, grit * grit * (0.3f + 0.7f * stain));
  albedo = albedo * joint * (1 + 1.6f * worn);
  // The lake's light dies with height; its heat stays in the foot and climbs in the cracks.
  const float near = wall ? 0.45f : masonry ? 1.5f : mix(0.75f, 2.7f, std::exp(-high / 42));
  Colour4 colour = albedo * p.light * (2.6f * near);
  const float foot = std::exp(-std::max(0.0f, y - 3 * grit) / 5.0f);
  colour = colour + gradient(emberRamp, 0.66f) * (0.85f * foot * foot);
  colour = colour + gradient(emberRamp, 0.50f) * (0.20f * std::exp(-high / 22) * p.open * grit);
  const float hollow = smoothStep(0.42f, 0.1f, p.open) * std::exp(-high / 38);
  colour = colour + gradient(emberRamp, 0.58f) * (0.55f * hollow);
  // Pressed together as film does, so that the brightest stone keeps its grain.
  const auto pressed = [](float c) { return 1 - std::exp(-1.3f * c); };
  return {pressed(colour.r), pressed(colour.g), pressed(colour.b)};
}

BakeLook sphereLook() {
  BakeLook look;
  look.sky = [](const Vector& d) {
    return gradient(emberRamp, 0.62f) * (0.9f * smoothStep(0.1f, -0.9f, d.y)) + gradient(steelRamp, 0.22f) +
           gradient(emberRamp, 0.5f) * (0.35f * std::exp(-std::fabs(d.y) * 4));
  };
  look.lights = {{.towards = Vector(-0.5f, 0.8f, 0.5f), .size = 0.25f, .colour = {0.34f, 0.24f, 0.22f}}};
  look.bounce = {0.9f, 0.34f, 0.06f};  // what is hidden looks at the heart
  look.reach = 12;
  return look;
}

// Black glass, scratched and scorched; molten where it faces the seams.
Colour4 sphereColour(const BakePoint& p) {
  const bool loosePiece = p.part < firstPlate;
  const Vector from = loosePiece ? p.position : p.position - sphereCentre;
  const float away = loosePiece ? sphereRadius : from.length();
  const float grit = 0.5f + 0.5f * fractal(from * 0.28f, 0, 4, 0.6f, 984);
  const float vein = std::fabs(gradientNoise(warp(from * 0.12f, 0, 0.6f, 985), 0, 986));
  const float facing = loosePiece ? 1.0f : dot(p.normal, unit(from));
  Colour4 albedo = mix(Colour4{0.07f, 0.07f, 0.10f}, Colour4{0.34f, 0.31f, 0.32f}, grit * grit);
  Colour4 colour = albedo * p.light * (1 + 1.6f * std::max(0.0f, p.edge));
  // Walls glow, brighter further in; a rim of heat runs around each plate.
  // The inside is crust over a melt that shows in cracks.
  const float wall = smoothStep(0.75f, 0.25f, facing);
  const float deep = smoothStep(sphereRadius + 0.5f, sphereRadius * 0.82f, away);
  const float crack = std::fabs(gradientNoise(warp(from * 0.22f, 0, 0.8f, 988), 0, 989));
  const float molten = 0.14f + 0.14f * grit + 0.66f * smoothStep(0.13f, 0.0f, crack);
  colour = mix(colour, gradient(emberRamp, mix(0.66f, molten, deep)), wall * (0.45f + 0.55f * deep));
  const float rim = std::max(0.0f, p.edge);
  colour = colour + gradient(emberRamp, 0.58f) * (0.55f * rim);
  colour = colour + gradient(emberRamp, 0.60f) * (0.65f * smoothStep(0.035f, 0.0f, vein) * grit);
  if (loosePiece) colour = colour + gradient(emberRamp, 0.55f) * (0.25f + 0.5f * grit);
  return colour;
}

}  // namespace vex::hell
