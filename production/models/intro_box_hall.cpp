#include <algorithm>
#include <cmath>
#include <utility>

#include "production/geometry/forms.h"
#include "production/geometry/mapping.h"
#include "production/models/intro_box_parts.h"
#include "production/textures/palette.h"

// Where the casket stands: a plinth of eight sides on steps, a fence of spears before it, a choir of pillars
// and arches behind.

namespace vex::reliquary {

namespace {

constexpr float fenceRadius = 285, choirRadius = 330;
constexpr float spearEvery = 3.9f;  // degrees

Vector around(float radius, float degrees, float y) {
  const float turn = degrees * pi / 180;  // 0: before the casket, 90: to its right
  return {radius * std::sin(turn), y, radius * std::cos(turn)};
}

// A bundle of eight shafts with rings, wider at the foot. It stands before the dark: the quarter towards +z,
// which no camera sees, is left out.
Surface pillar() {
  constexpr int ends = 4;
  constexpr float heights[ends + 1] = {0, 21, 42, 122, 464};
  return sheet(18, ends, [&](float s, float t) {
    const float y = heights[static_cast<int>(std::lround(t * ends))];
    const float base = 12 * smoothStep(44, 10, y) + 4 * smoothStep(5, 0, std::fabs(y - 40));
    const float turn = -2 * pi * (0.875f + 0.75f * s);
    const float radius = 17 + base + 3.2f * std::fabs(std::sin(4 * turn)) * smoothStep(20, 46, y);
    return Vector(radius * std::cos(turn), y, radius * std::sin(turn));
  });
}

Surface spear() {
  return lathe(
      {{2.6f, 0}, {2.6f, 3}, {1.5f, 5}, {1.4f, 62}, {2.7f, 65}, {1.3f, 68}, {3.6f, 75}, {2.2f, 84}, {0, 96}},
      6, 60);
}

Surface rail(float fromDegrees, float toDegrees, float y) {
  std::vector<Vector> path;
  for (int i = 0; i <= 10; ++i)
    path.push_back(around(fenceRadius, mix(fromDegrees, toDegrees, static_cast<float>(i) / 10), y));
  return tube(
      path, 5, [](float) { return 1.6f; }, TubeEnd::flat);
}

// A pointed arch that stands open below, in the plane z = 0, each of its arcs in so many pieces.
Surface openArch(float half, float springing, float thick, float depth, float bevel, int pieces) {
  Outline points;
  const auto side = [&](float halfWidth, bool back) {
    const float reach = half * 1.6f + halfWidth - half, top = std::acos((half * 0.6f) / reach);
    for (int k = -pieces - 1; k <= pieces + 1; ++k) {
      const int i = back ? -k : k;  // from the right foot to the left one, or back
      const float way = i < 0 ? 1.0f : -1.0f;
      const int from = pieces - std::abs(i);
      if (i == 0)
        points.push_back({0, springing + reach * std::sin(top)});
      else if (from < 0)
        points.push_back({way * halfWidth, 0});
      else {
        const float turn = top * static_cast<float>(from) / pieces;
        points.push_back({way * (reach * std::cos(turn) - half * 0.6f), springing + reach * std::sin(turn)});
      }
    }
  };
  side(half, false);
  side(half - thick, true);
  return extrusion({points}, depth, bevel);
}

Surface choirArch() {
  return withoutBack(joined({placed(openArch(78, 190, 14, 14, 3, 7), moved(0, 0, 7)),
                             placed(bevelledBox(Vector(5, 268, 5), 1.5f), moved(0, 134, 0)),
                             placed(openArch(31, 150, 5, 5, 0, 5), moved(-31, 0, 2)),
                             placed(openArch(31, 150, 5, 5, 0, 5), moved(31, 0, 2))}));
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
  // It leaves a gate where the camera passes.
  Copies spikes{spear(), {}, iron};
  for (const auto& [from, to] : {std::pair(-96.0f, -43.0f), std::pair(0.0f, 78.0f)}) {
    for (const float y : {16.0f, 60.0f}) append(assembly.single, rail(from, to, y), iron);
    const int count = static_cast<int>((to - from) / spearEvery);
    for (int i = 0; i <= count; ++i)
      spikes.places.push_back(
          moved(around(fenceRadius, mix(from, to, static_cast<float>(i) / static_cast<float>(count)), 0)));
  }
  Copies pillars{pillar(), {}, stone}, arches{choirArch(), {}, stone};
  for (int i = 0; i < 8; ++i) {
    const float degrees = 180 + 32 * (static_cast<float>(i) - 3.5f);
    pillars.places.push_back(turnedY(degrees) >> moved(around(choirRadius, degrees, 0)));
    if (i < 7)
      arches.places.push_back(turnedY(degrees + 16 + 180) >>
                              moved(around(choirRadius * 0.985f, degrees + 16, 0)));
  }
  assembly.repeated = {std::move(spikes), std::move(pillars), std::move(arches)};
  return assembly;
}

}  // namespace vex::reliquary
