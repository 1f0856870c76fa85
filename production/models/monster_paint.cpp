#include "production/models/monster_paint.h"

#include <algorithm>
#include <cmath>

#include "production/image/filter.h"
#include "production/image/noise3.h"
#include "production/models/monster_parts.h"
#include "production/textures/palette.h"

namespace vex::monster {

using namespace image;
using namespace geometry;

namespace {

// Light of the hangar: cold lamps above, a little magenta left and right, pale haze at its ends.
Colour4 hangarSky(const Vector& d) {
  const float strip =
      std::exp(-std::fabs(std::fabs(std::atan2(d.y, std::fabs(d.x))) - 0.55f) * 4) * (1 - std::fabs(d.z));
  const float lamps = std::pow(std::max(0.0f, d.y), 3.0f), ends = std::pow(std::fabs(d.z), 4.0f);
  return gradient(steelRamp, 0.28f) + gradient(steelRamp, 0.66f) * (0.9f * lamps + 0.5f * ends) +
         gradient(violetRamp, 0.62f) * (0.4f * strip);
}

}  // namespace

BakeLook hangarLook() {
  BakeLook look;
  look.sky = hangarSky;
  look.lights = {{.towards = Vector(-0.55f, 0.9f, -0.55f), .size = 0.15f, .colour = {0.95f, 1.02f, 1.12f}},
                 {.towards = Vector(0.9f, 0.25f, -0.3f), .size = 0.2f, .colour = {0.34f, 0.05f, 0.24f}}};
  look.bounce = {0.02f, 0.015f, 0.03f};
  look.rays = 64;
  return look;
}

// Alpha: 1 hides the metal. Nothing is left of it where the skin ends.
Colour4 skinColour(const BakePoint& p) {
  const float hollow = smoothStep(clearFrom, 0.30f, p.open);
  const float vein = 1 - std::fabs(gradientNoise(warp(p.position * 0.16f, 0, 0.8f, 811), 0, 812));
  const float stain = smoothStep(0.1f, 0.7f, fractal(p.position * 0.09f, 0, 4, 0.55f, 813));
  // The abdomen, piece 1, glows from within.
  const float glow = p.part == 1 ? 0.34f * smoothStep(0.5f, 1.0f, hollow) : 0.0f;
  const Colour4 flesh = gradient(violetRamp, 0.10f + 0.26f * hollow * std::pow(vein, 6.0f) + glow);
  const Colour4 soot =
      gradient(steelRamp, 0.06f + 0.08f * stain) + gradient(steelRamp, 0.3f) * p.light * 0.1f;
  Colour4 colour = mix(soot, flesh, hollow) * (0.25f + 0.75f * p.open);
  colour.a = clamp01(1.25f * hollow + 0.2f * stain * smoothStep(clearFrom, 0.7f, p.open));
  return colour;
}

// Steel plates in rings about the plinth; alpha: puddles let the mirrored world through.
Colour4 deckColour(const BakePoint& p) {
  const float radius = std::hypot(p.position.x, p.position.z), turn = std::atan2(p.position.z, p.position.x);
  const float ring = (radius - 44) / 29;
  const float count = 12 + 6 * std::floor(ring), sector = turn / (2 * pi) * count + 0.5f * std::floor(ring);
  const float ringGap = std::fabs(ring - std::round(ring)) * 29;
  const float sectorGap = std::fabs(sector - std::round(sector)) * 2 * pi * radius / count;
  const float seam = smoothStep(0.5f, 1.6f, std::min(ringGap, sectorGap));
  const float plate = hashUnit(static_cast<int>(std::floor(ring)), static_cast<int>(std::floor(sector)), 821);
  const float wear = 0.5f + 0.5f * fractal(p.position * 0.05f, 0, 4, 0.6f, 822);
  const float puddle = smoothStep(0.42f, 0.56f, 0.5f + 0.5f * fractal(p.position * 0.013f, 0, 3, 0.5f, 823));
  Colour4 colour =
      gradient(steelRamp, (0.16f + 0.10f * plate + 0.16f * wear) * (0.45f + 0.55f * seam)) * p.light;
  colour = mix(colour, colour * 0.35f + gradient(violetRamp, 0.10f), puddle);
  colour.a = mix(0.52f, 0.10f, puddle * seam);
  return colour;
}

Colour4 apronColour(const BakePoint& p) {
  const float radius = std::hypot(p.position.x, p.position.z);
  const float slabs = std::min(std::fabs(p.position.x / 70 - std::round(p.position.x / 70)),
                               std::fabs(p.position.z / 70 - std::round(p.position.z / 70))) *
                      70;
  const float wear = 0.5f + 0.5f * fractal(p.position * 0.02f, 0, 4, 0.6f, 832);
  Colour4 colour =
      gradient(steelRamp, (0.20f + 0.18f * wear) * (0.6f + 0.4f * smoothStep(1, 4, slabs))) * p.light;
  colour.a = 0.85f * smoothStep(880, 330, radius);
  return colour;
}

Colour4 ironColour(const BakePoint& p) {
  const float grit = 0.5f + 0.5f * fractal(p.position * 0.07f, 0, 4, 0.6f, 841);
  const float streak =
      0.5f +
      0.5f * gradientNoise(Vector(p.position.x * 0.25f, p.position.y * 0.03f, p.position.z * 0.25f), 0, 842);
  Colour4 metal = gradient(steelRamp, 0.11f + 0.12f * grit + 0.08f * streak + 0.25f * std::max(0.0f, p.edge));
  if (p.part == cables) metal = metal * 0.35f;
  Colour4 colour = metal * p.light;
  if (p.part == plinth) {
    const float radius = std::hypot(p.position.x, p.position.z);
    const float groove = std::exp(-std::fabs(radius - 57.5f) * 0.8f) * smoothStep(8.5f, 6, p.position.y);
    colour = colour + gradient(violetRamp, 0.80f) * groove;
  }
  return colour;
}

namespace {

// A burning iris about a slit.
Colour4 iris(float u, float v) {
  const float x = 2 * u - 1, y = 2 * v - 1, radius = std::hypot(x, y);
  const float fibres = 0.5f + 0.5f * gradientNoise(std::atan2(y, x) * 6, radius * 2, 0, 861);
  const float slit = smoothStep(0.10f, 0.22f, std::fabs(x) + 0.12f * y * y);
  const float glare = (radius - 0.42f) / 0.2f;
  const float heat = 0.50f + 0.48f * std::exp(-glare * glare) - 0.14f * fibres;
  return gradient(violetRamp, heat) * (0.12f + 0.88f * slit);
}

// Light about the eyes; their irises burn themselves.
Colour4 glowSpot(float u, float v) {
  const float radius = std::hypot(2 * u - 1, 2 * v - 1), fall = smoothStep(0.94f, 0, radius);
  Colour4 colour = gradient(violetRamp, 0.62f + 0.3f * fall * fall);
  colour.a = 0.55f * fall * fall * fall * smoothStep(0.02f, 0.5f, radius);
  return colour;
}

Colour4 pale(float swirl, float value, float alpha) {
  Colour4 colour = mix(gradient(steelRamp, value), gradient(violetRamp, value), 0.10f * swirl);
  colour.a = alpha;
  return colour;
}

// Half a turn about the creature: thick and lit in the middles of the sides, most at the ends of the hangar,
// and nothing at the corners, where a wall seen from without would show its edge.
Colour4 hazeWall(float u, float height) {
  const float swirl = 0.5f + 0.5f * fractal(u * 4, height * 2, 4, 4, 0.5f, 851);
  const float middle = std::pow(std::cos(2 * pi * u), 2.0f), end = std::pow(std::sin(pi * u), 2.0f);
  const float standing = smoothStep(0.02f, 0.2f, height) * smoothStep(0.97f, 0.45f, height);
  return pale(swirl, 0.30f + (0.6f + 0.4f * end) * std::pow(middle * (0.35f + 0.65f * end) * standing, 1.5f),
              middle * (0.5f + 0.4f * end) * standing * (0.55f + 0.45f * swirl));
}

Colour4 vapourPlume(float u, float height) {
  const float swirl = 0.5f + 0.5f * fractal(u * 3, height * 3, 0, 4, 0.5f, 853);
  const float across = (2 * u - 1) / (0.3f + 0.55f * height);
  return pale(swirl, 0.62f,
              smoothStep(0.02f, 0.2f, height) * smoothStep(0.97f, 0.5f, height) *
                  std::pow(smoothStep(1, 0, std::fabs(across)), 2.0f) * smoothStep(0.2f, 0.75f, swirl) *
                  0.42f);
}

}  // namespace

Canvas airPicture(const Settings& settings) {
  struct Painter {
    PicturePart part;
    Colour4 (*colour)(float u, float height);
  };
  constexpr Painter painters[] = {
      {wallPart, hazeWall}, {plumePart, vapourPlume}, {eyePart, iris}, {glowPart, glowSpot}};
  const int side = settings.side(256);
  return paint(side, side, [&](float u, float v) {
    for (const auto& [part, colour] : painters) {
      const float x = (u - part.u) / part.width, y = (1 - v - part.v) / part.height;
      if (x > 0 && x < 1 && y > 0 && y < 1) return colour(x, y);
    }
    return black;
  });
}

Canvas floorPicture(const Canvas& deck, const Canvas& apron) {
  return paint(2 * deck.width, deck.height, [&](float u, float v) {
    return u < 0.5f ? sample(deck, 2 * u, v, EdgeMode::clamp) : sample(apron, 2 * u - 1, v, EdgeMode::clamp);
  });
}

Canvas hazeCard(const Settings& settings) {
  const int side = settings.side(256);
  return paint(side, side, [](float u, float v) {
    const float x = 2 * u - 1, y = 2 * v - 1;
    const float rim = smoothStep(1, 0.25f, std::hypot(x, y));
    const float swirl = 0.5f + 0.5f * fractal(u * 4, v * 4, 0, 4, 0.5f, 851);
    Colour4 colour = mix(gradient(steelRamp, 0.66f), gradient(violetRamp, 0.6f), 0.12f + 0.22f * v);
    colour.a = rim * rim * (0.06f + 0.25f * swirl * swirl);
    return colour;
  });
}

}  // namespace vex::monster
