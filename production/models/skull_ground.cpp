#include <algorithm>
#include <cmath>

#include "production/geometry/forms.h"
#include "production/geometry/mapping.h"
#include "production/image/noise3.h"
#include "production/models/skull_parts.h"

// A plain of broken stone, boulders about the skull's jaw, six spears.

namespace vex::skull {

using namespace image;
using namespace geometry;

namespace {

constexpr float terrainRadius = 1800;

// Share of the picture's half width at a distance from its middle: the near ground gets most texels.
float pictureShare(float radius) {
  return std::pow(radius / (terrainRadius * 1.01f), 0.5f);
}

struct SpearPlace {
  float x, z, lean, towards, turn, size;  // degrees; `size` of the whole
};
constexpr SpearPlace spears[spearCount] = {{-150, 92, 9, 200, 20, 0.86f},  {-206, -66, 8, 120, 65, 1.12f},
                                           {-92, -190, 6, 60, 130, 1.30f}, {86, -176, 8, 300, 100, 1.18f},
                                           {192, -40, 14, 250, 40, 1.05f}, {168, 118, 11, 340, 150, 0.78f}};

}  // namespace

float groundHeight(float x, float z) {
  const float radius = std::hypot(x, z);
  const Vector p(x, 0, z);
  const float mound = 26 * smoothStep(190, 40, radius);
  const float waves = 16 * fractal(p * 0.0042f, 0, 4, 0.5f, 911) * smoothStep(30, 500, radius);
  const float grit = 5 * std::fabs(fractal(p * 0.024f, 0, 3, 0.55f, 912));
  return mound + waves + grit - 14;
}

Surface terrain() {
  constexpr int around = 46, rings = 20;
  const Surface ground = sheet(around, rings,
                               [](float s, float t) {
                                 const float radius = terrainRadius * std::pow(1 - t, 2.3f),
                                             angle = 2 * pi * s;
                                 const float x = radius * std::cos(angle), z = -radius * std::sin(angle);
                                 return Vector(x, groundHeight(x, z), z);
                               },
                               {.closedAcross = true, .poleAbove = true});
  return mapped(withoutMapping(ground), [](const Vector& p) {
    const float radius = std::hypot(p.x, p.z);
    const float scale = radius < 1e-3f ? 0 : 0.5f * pictureShare(radius) / radius;
    return Uv{0.5f + p.x * scale, 0.5f - p.z * scale};
  });
}

Surface boulders() {
  Surface all;
  constexpr int count = 29;
  for (int i = 0; i < count; ++i) {
    const auto chance = [i](std::uint32_t seed) { return hashUnit(i, 7, seed); };
    // The small ones lie close about the jaw, in front above all.
    const float angle = 2 * pi * (static_cast<float>(i) * 0.381966f + 0.1f * chance(921));
    const bool near = i < 22;
    const float radius = near ? 78 + 66 * chance(922) * chance(923) : 170 + 260 * chance(922);
    const float x = radius * std::sin(angle) * 1.02f, z = radius * std::cos(angle) * 1.02f - 8;
    const float size = (near ? 9 + 15 * chance(924) * chance(925) : 10 + 30 * chance(924) * chance(926));
    const float seed = 40 * chance(927);
    Surface stone = geodesic(1, size > 30 ? 2 : 1);
    stone = bent(welded(withoutMapping(stone), 1e-4f), [&](const Vector& p) {
      const NoiseCell facet = cellularNoise(p * 0.9f + Vector(seed, 3, 0), 0, 928);
      return p *
             (0.72f + 0.5f * facet.nearest + 0.16f * fractal(p * 1.4f + Vector(0, seed, 0), 0, 3, 0.5f, 929));
    });
    stone =
        placed(stone, stretched(size * (0.9f + 0.6f * chance(930)), size * (0.55f + 0.5f * chance(931)),
                                size * (0.8f + 0.5f * chance(932))) >>
                          turned(unit(Vector(chance(933) - 0.5f, 1, chance(934) - 0.5f)), 6 * chance(935)) >>
                          moved(x, groundHeight(x, z) + 0.16f * size, z));
    append(all, creased(stone, 38));
  }
  return all;
}

float spearHeight() {
  return 262;
}

Surface spear() {
  // A shaft wrapped with wire, a collar, a leaf blade with a ridge.
  Surface all = withoutMapping(lathe({{3.6f, -30},
                                      {3.9f, 0},
                                      {3.4f, 40},
                                      {3.7f, 44},
                                      {3.3f, 48},
                                      {3.1f, 110},
                                      {3.6f, 113},
                                      {3.0f, 117},
                                      {2.8f, 178},
                                      {5.4f, 181},
                                      {6.0f, 186},
                                      {4.2f, 190},
                                      {5.2f, 194},
                                      {3.4f, 200},
                                      {0, 206}},
                                     7, 50));
  const auto width = [](float t) {
    return 15.5f * std::max(0.0f, std::sin(pi * std::pow(t, 0.6f))) * (1 - 0.15f * t) + 2.6f * (1 - t);
  };
  const Surface blade =
      sheet(8, 10,
            [&](float s, float row) {
              const float t = std::pow(row, 1.7f);  // rows lie close where it widens
              // Around the lozenge: edge, ridge, edge, ridge; a torn edge.
              const float turn = 2 * pi * s;
              const float torn =
                  1 - 0.16f * std::max(0.0f, gradientNoise(Vector(t * 9, s < 0.5f ? 0 : 5, 0), 0, 941));
              const float x = width(t) * torn * std::cos(turn);
              const float z = (3.4f * (1 - t) + 0.3f) * std::sin(turn);
              return Vector(x, 197 + (spearHeight() - 197) * t, z);
            },
            {.closedAcross = true, .poleAbove = true});
  append(all, creased(withoutMapping(placed(turnedOver(blade), Placement{})), 35));
  // Barbs below the blade, and a torn strip of cloth.
  for (const float side : {-1.0f, 1.0f})
    append(
        all,
        withoutMapping(tube(
            smoothPath({Vector(2 * side, 188, 0), Vector(15 * side, 190, 0), Vector(21 * side, 174, 0)}, 8),
            5, [](float t) { return 2.6f * (1 - 0.9f * t); }, TubeEnd::point)));
  return all;
}

Placement spearPlacement(int index) {
  const SpearPlace& at = spears[index];
  const float towards = at.towards * pi / 180;
  const Vector axis(std::cos(towards), 0, -std::sin(towards));
  return stretched(at.size) >> turnedY(at.turn) >> turned(axis, at.lean * pi / 180) >>
         moved(at.x, groundHeight(at.x, at.z), at.z);
}

}  // namespace vex::skull
