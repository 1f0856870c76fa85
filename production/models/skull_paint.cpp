#include <algorithm>
#include <cmath>

#include "production/image/filter.h"
#include "production/image/noise3.h"
#include "production/models/skull_parts.h"

// Light and surface of stone, rubble and iron in the storm.

namespace vex::skull {

using namespace image;
using namespace geometry;

namespace {

const Vector keyLight(-0.62f, 0.70f, 0.46f);  // towards the rift's reflection in the clouds
const Vector rimLight(0.62f, 0.48f, -0.74f), secondRim(-0.72f, 0.34f, -0.66f);

Vector facing(const BakePoint& p) {
  return unit(p.normal);
}

// Light on a relief too fine for the triangles: differs from 1 where `height` rises or falls towards the key
// light within the surface. `step` in units.
template <typename Height>
float relief(const BakePoint& p, float step, float strength, Height height) {
  const Vector n = facing(p), light = unit(keyLight);
  const Vector along = light - n * dot(light, n);
  return std::clamp(1 + strength * (height(p.position) - height(p.position + along * step)) / step, 0.35f,
                    1.8f);
}

float grain(const Vector& p) {
  const NoiseCell chip = cellularNoise(warp(p * 0.085f, 0, 0.3f, 1101), 0, 1102);
  return 2.2f * fractal(p * 0.16f, 0, 4, 0.58f, 1103) +
         1.8f * smoothStep(0.0f, 0.2f, gradientNoise(p * 0.02f, 0, 1104)) *
             smoothStep(0.0f, 0.14f, chip.second - chip.nearest);
}

float drips(const BakePoint& p) {
  const Vector q(p.position.x * 0.13f, p.position.y * 0.012f, p.position.z * 0.13f);
  return smoothStep(0.05f, 0.6f, fractal(q, 0, 3, 0.5f, 1111)) * smoothStep(0.9f, 0.2f, p.normal.y);
}

}  // namespace

BakeLook stormLook() {
  BakeLook look;
  look.sky = [](const Vector& d) {
    const float rift = std::pow(std::max(0.0f, dot(d, unit(Vector(-0.34f, 0.2f, -0.93f)))), 4.0f);
    return mix(Colour4{0.05f, 0.065f, 0.09f}, Colour4{0.36f, 0.44f, 0.53f}, smoothStep(-0.2f, 0.9f, d.y)) +
           Colour4{0.42f, 0.52f, 0.60f} * rift;
  };
  look.lights = {
      {.towards = keyLight, .size = 0.12f, .colour = {1.5f, 1.6f, 1.64f}},
      {.towards = rimLight, .size = 0.10f, .colour = {0.95f, 1.4f, 1.6f}},
      {.towards = secondRim, .size = 0.10f, .colour = {0.34f, 0.50f, 0.60f}},
      {.towards = eye(1), .placed = true, .size = 0.2f, .colour = {1.1f, 0.07f, 0.04f}, .reach = 20},
      {.towards = eye(-1), .placed = true, .size = 0.2f, .colour = {1.1f, 0.07f, 0.04f}, .reach = 20}};
  look.bounce = {0.02f, 0.024f, 0.03f};
  look.rays = 64;
  return look;
}

Colour4 stoneColour(const BakePoint& p) {
  const float stain = 0.5f + 0.5f * fractal(p.position * 0.018f, 0, 4, 0.55f, 1121);
  const float fine = 0.5f + 0.5f * fractal(p.position * 0.11f, 0, 4, 0.6f, 1122);
  const float wear = std::max(0.0f, p.edge), crease = std::max(0.0f, -p.edge);
  Colour4 stone = gradient(stormRamp, 0.44f + 0.14f * stain + 0.10f * (fine - 0.5f));
  // What is left of the bone shows where stone has worn off: brow, cheeks, teeth.
  const Colour4 bone = gradient(boneRamp, 0.66f + 0.14f * fine);
  stone = mix(stone, bone, clamp01(0.22f + 0.75f * wear + 0.35f * smoothStep(0.55f, 0.85f, stain)));
  if (p.part == toothPart) stone = mix(bone, gradient(stormRamp, 0.30f), 0.4f * stain);
  stone = mix(stone, gradient(stormRamp, 0.20f), 0.65f * drips(p));
  stone = stone * (1 - 0.55f * crease) * (0.45f + 0.55f * smoothStep(0, 0.65f, p.open));
  // The brightest keeps its cracks.
  const Colour4 lit = stone * p.light * (1.6f * relief(p, 1.6f, 0.6f, grain));
  const float most = std::max({lit.r, lit.g, lit.b}) / 1.2f;
  return lit * (1 / std::cbrt(1 + most * most * most));
}

Colour4 boulderColour(const BakePoint& p) {
  const float fine = 0.5f + 0.5f * fractal(p.position * 0.09f, 0, 4, 0.6f, 1131);
  Colour4 stone = gradient(stormRamp, 0.36f + 0.16f * fine + 0.14f * std::max(0.0f, p.edge));
  stone = mix(stone, gradient(stormRamp, 0.18f), 0.5f * drips(p));
  return stone * p.light * relief(p, 1.6f, 0.5f, grain);
}

Colour4 groundColour(const BakePoint& p) {
  const float radius = std::hypot(p.position.x, p.position.z);
  // Far away no finer than the picture.
  const float far = smoothStep(120, 330, radius), farther = smoothStep(420, 820, radius);
  const auto slabs = [](const Vector& at, float scale) {
    return cellularNoise(warp(at * scale, 0, 0.4f, 1141), 0, 1142);
  };
  const auto height = [&](const Vector& at) {
    const NoiseCell near = slabs(at, 0.045f), wide = slabs(at, 0.016f);
    return (1 - far) * (5 * fractal(at * 0.10f, 0, 4, 0.58f, 1143) +
                        3 * smoothStep(0, 0.12f, near.second - near.nearest)) +
           far * (14 * fractal(at * 0.03f, 0, 4, 0.58f, 1143) +
                  7 * smoothStep(0, 0.14f, wide.second - wide.nearest));
  };
  const float puddle = smoothStep(0.61f, 0.66f, 0.5f + 0.5f * fractal(p.position * 0.011f, 0, 3, 0.5f, 1144));
  // Slabs of three sizes, each where it is seen best.
  float gap = 0, tone = 0;
  for (const auto& [scale, share] :
       {std::pair{0.045f, 1 - far}, {0.016f, far * (1 - farther)}, {0.007f, farther}}) {
    const NoiseCell slab = slabs(p.position, scale);
    gap += share * smoothStep(0.0f, 0.10f, slab.second - slab.nearest);
    tone += share * slab.id;
  }
  // Drifts of silt lie over it, more of them far away.
  const float drift = 0.5f + 0.5f * fractal(p.position * 0.006f, 0, 4, 0.5f, 1146);
  Colour4 colour =
      gradient(stormRamp, 0.32f + 0.14f * tone + 0.12f * fractal(p.position * 0.05f, 0, 4, 0.6f, 1145)) *
      (0.40f + 0.60f * gap);
  colour = mix(colour, gradient(stormRamp, 0.30f), 0.8f * smoothStep(0.52f, 0.70f, drift + 0.10f * farther));
  colour = colour * p.light * relief(p, mix(1.5f, 5, far), 0.5f, height);
  // Water lies in the hollows and holds the sky.
  const float mirrored = fractal(Vector(p.position.x * 0.008f, 0, p.position.z * 0.03f), 0, 4, 0.55f, 1147);
  colour =
      mix(colour, gradient(stormRamp, 0.70f + 0.42f * mirrored) * (0.35f + 0.65f * p.open), 0.9f * puddle);
  return mix(colour, gradient(stormRamp, 0.34f), smoothStep(900, 1700, radius * (0.7f + 0.6f * drift)));
}

Colour4 spearColour(const BakePoint& p) {
  const float rust = smoothStep(-0.1f, 0.5f, fractal(p.position * 0.06f, 0, 4, 0.6f, 1151));
  const float grit =
      0.5f + 0.5f * fractal(Vector(p.position.x * 0.5f, p.position.y * 0.12f, p.position.z * 0.5f), 0, 4,
                            0.6f, 1152);
  const bool blade = p.position.y > 195;
  Colour4 iron = gradient(stormRamp, (blade ? 0.46f : 0.30f) + 0.16f * grit + 0.30f * std::max(0.0f, p.edge));
  const Colour4 rusty = mix(Colour4{0.16f, 0.085f, 0.06f}, Colour4{0.42f, 0.24f, 0.16f}, grit);
  iron = mix(iron, rusty, (blade ? 0.55f : 0.8f) * rust);
  // The rim light is baked at one turn of the spear: not on all six may it glow.
  Colour4 light = p.light;
  light.g = std::min(light.g, light.r + 0.12f);
  light.b = std::min(light.b, light.r + 0.25f);
  return iron * light * (1 - 0.5f * std::max(0.0f, -p.edge));
}

}  // namespace vex::skull
