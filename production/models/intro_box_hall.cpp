#include <algorithm>
#include <cmath>

#include "production/geometry/forms.h"
#include "production/geometry/mapping.h"
#include "production/models/intro_box_parts.h"
#include "production/textures/palette.h"

// Where the casket stands: a plinth of eight sides on steps, a fence of spears before it, a choir of pillars
// and arches behind.

namespace vex::reliquary {

namespace {

constexpr float fenceRadius = 285, choirRadius = 330;
constexpr int spears = 36;

Vector around(float radius, float degrees, float y) {
  const float turn = degrees * pi / 180;  // 0: before the casket, 90: to its right
  return {radius * std::sin(turn), y, radius * std::cos(turn)};
}

// A bundle of eight shafts with rings, wider at the foot.
Surface pillar() {
  SheetEnds ends;
  ends.closedAcross = true;
  return sheet(
      24, 7,
      [](float s, float t) {
        const float y = t < 0.3f ? t / 0.3f * 44 : 44 + (t - 0.3f) / 0.7f * 420;
        const float base = 12 * smoothStep(44, 10, y) + 4 * smoothStep(5, 0, std::fabs(y - 40));
        const float turn = -2 * pi * s;
        const float radius = 17 + base + 3.2f * std::fabs(std::sin(4 * turn)) * smoothStep(20, 46, y);
        return Vector(radius * std::cos(turn), y, radius * std::sin(turn));
      },
      ends);
}

Surface spear() {
  return lathe({{2.6f, 0},
                {2.6f, 3},
                {1.5f, 5},
                {1.4f, 62},
                {2.6f, 64},
                {2.6f, 66},
                {1.3f, 68},
                {3.6f, 75},
                {2.2f, 84},
                {0, 96}},
               9, 60);
}

Surface rail(float fromDegrees, float toDegrees, float y) {
  std::vector<Vector> path;
  for (int i = 0; i <= 14; ++i)
    path.push_back(around(fenceRadius, mix(fromDegrees, toDegrees, static_cast<float>(i) / 14), y));
  return tube(
      path, 6, [](float) { return 1.6f; }, TubeEnd::flat);
}

// An arch of the choir, in the plane z = 0, on y = 0.
Surface choirArch() {
  const auto outline = [](float half, float springing, bool hole) {
    Outline points{{half, 0}};
    constexpr int pieces = 7;
    const float reach = half * 1.6f, top = std::acos((reach - half) / reach);
    for (int i = 0; i <= pieces; ++i) {
      const float turn = top * static_cast<float>(i) / pieces;
      points.push_back({half - reach + reach * std::cos(turn), springing + reach * std::sin(turn)});
    }
    for (int i = pieces - 1; i >= 0; --i)
      points.push_back(
          {-points[static_cast<std::size_t>(i) + 1].x, points[static_cast<std::size_t>(i) + 1].y});
    points.push_back({-half, 0});
    if (hole) std::reverse(points.begin(), points.end());
    return points;
  };
  return joined({placed(extrusion({outline(78, 190, false), outline(64, 190, true)}, 14, 3), moved(0, 0, 7)),
                 placed(bevelledBox(Vector(5, 268, 5), 1.5f), moved(0, 134, 0)),
                 placed(extrusion({outline(30, 150, false), outline(25, 150, true)}, 5), moved(-29, 0, 2)),
                 placed(extrusion({outline(30, 150, false), outline(25, 150, true)}, 5), moved(29, 0, 2))});
}

}  // namespace

Assembly plinth() {
  // Profile of the front; the sides are deeper.
  const Surface turnedStone = lathe({{150, 0},
                                     {150, 8},
                                     {148, 10},
                                     {124, 10},
                                     {124, 18},
                                     {122, 20},
                                     {101, 20},
                                     {101, 25},
                                     {94, 29},
                                     {86, 31},
                                     {80, 34},
                                     {77, 38},
                                     {75, 48},
                                     {79, 52},
                                     {90, 55},
                                     {96, 57},
                                     {96, 62},
                                     {94, 64},
                                     {0, 64}},
                                    8, 20);
  Assembly assembly;
  assembly.single =
      withPart(creased(placed(turnedStone, turnedY(22.5f) >> stretched(1, 1, 0.74f)), 25), stone);
  return assembly;
}

Assembly hall() {
  Assembly assembly;
  for (const float side : {-1.0f, 1.0f})
    for (const float y : {16.0f, 60.0f}) append(assembly.single, rail(side * 13, side * 88, y), iron);
  Copies spikes{spear(), {}, iron};
  for (int i = 0; i < spears / 2; ++i)
    for (const float side : {-1.0f, 1.0f})
      spikes.places.push_back(
          moved(around(fenceRadius, side * (13 + 75.0f * static_cast<float>(i) / (spears / 2 - 1)), 0)));
  Copies pillars{pillar(), {}, stone}, arches{choirArch(), {}, stone};
  for (int i = 0; i < 8; ++i) {
    const float degrees = 180 + 32 * (static_cast<float>(i) - 3.5f);
    pillars.places.push_back(turnedY(degrees) >> moved(around(choirRadius, degrees, 0)));
    if (i < 7)
      arches.places.push_back(turnedY(degrees + 16) >> moved(around(choirRadius * 0.985f, degrees + 16, 0)));
  }
  assembly.repeated = {std::move(spikes), std::move(pillars), std::move(arches)};
  return assembly;
}

}  // namespace vex::reliquary
