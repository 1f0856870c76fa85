#include <algorithm>
#include <cmath>
#include <utility>

#include "production/geometry/forms.h"
#include "production/geometry/mapping.h"
#include "production/models/intro_box_parts.h"
#include "production/textures/palette.h"

// Where the casket stands: a round plinth on steps, a fence of spears before it, a choir of pillars,
// arches and ribs behind and above.

namespace vex::reliquary {

using namespace image;
using namespace geometry;

namespace {

constexpr float fenceRadius = 285, choirRadius = 330;
constexpr float vaultSpringing = 312;  // of the vault, on the heads of the pillars
constexpr float bossHeight = 640;
constexpr float spearEvery = 6.5f;  // degrees

Vector around(float radius, float degrees, float y) {
  const float turn = degrees * pi / 180;  // 0: before the casket, 90: to its right
  return {radius * std::sin(turn), y, radius * std::cos(turn)};
}

Surface block(float width, float low, float high) {
  return placed(bevelledBox(Vector(width, high - low, width), 0), moved(0, (low + high) / 2, 0));
}

// A bundle of eight shafts between a foot and a head. It stands before the dark: the quarter towards +z,
// which no camera sees, is left out.
Surface pillar() {
  constexpr int ends = 6;
  constexpr float heights[ends + 1] = {14, 21, 42, 122, 274, 284, 300};
  const Surface shafts = sheet(18, ends, [&](float s, float t) {
    const float y = heights[static_cast<int>(std::lround(t * ends))];
    const float foot = 12 * smoothStep(44, 10, y) + 4 * smoothStep(5, 0, std::fabs(y - 40));
    const float head = 3 * smoothStep(8, 0, std::fabs(y - 274)) + 10 * smoothStep(282, 300, y);
    const float turn = -2 * pi * (0.875f + 0.75f * s);
    const float radius = 17 + foot + head + 3.2f * std::fabs(std::sin(4 * turn)) * smoothStep(20, 46, y);
    return Vector(radius * std::cos(turn), y, radius * std::sin(turn));
  });
  return joined({block(66, 0, 14), shafts, block(58, 300, vaultSpringing)});
}

// From a pillar, whose +z looks outwards, up to the boss above the casket.
Surface rib() {
  std::vector<Vector> path;
  for (int i = 0; i <= 7; ++i) {
    const float turn = pi / 2 * static_cast<float>(i) / 7;
    path.emplace_back(0, vaultSpringing - 4 + (bossHeight - vaultSpringing) * std::sin(turn),
                      -8 - (choirRadius - 8) * (1 - std::cos(turn)));
  }
  return tube(
      path, 5, [](float t) { return 9 - 3 * t; }, TubeEnd::open);
}

// From pillar to pillar above an arch, in the plane z = 0.
Surface wallRib() {
  constexpr float half = 84, reach = half * 1.6f;
  const float top = std::acos(0.375f);
  std::vector<Vector> path;
  for (int i = 0; i <= 5; ++i) {
    const float turn = top * static_cast<float>(i) / 5;
    path.emplace_back(reach * std::cos(turn) - half * 0.6f, vaultSpringing - 4 + reach * std::sin(turn), 0);
  }
  const Surface right = tube(
      path, 4, [](float) { return 6.0f; }, TubeEnd::open);
  return joined({right, mirrored(right, Axis::x)});
}

Surface spear() {
  return lathe({{2.2f, 0}, {1.7f, 62}, {3.0f, 65}, {1.6f, 68}, {4.2f, 75}, {2.6f, 84}, {0, 96}}, 4, 60);
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

// A circle with a hole of four lobes.
Surface quatrefoil(float radius) {
  constexpr int count = 20;
  Outline rim, hole;
  for (int i = 0; i < count; ++i) {
    const float turn = 2 * pi * static_cast<float>(i) / count;
    const float lobe = radius * (0.42f + 0.4f * std::fabs(std::cos(2 * turn)));
    rim.push_back({radius * std::cos(turn), radius * std::sin(turn)});
    hole.push_back({lobe * std::cos(turn), -lobe * std::sin(turn)});
  }
  return extrusion({rim, hole}, 6);
}

Surface choirArch() {
  return withoutBack(joined({placed(openArch(78, 190, 14, 14, 3, 7), moved(0, 0, 7)),
                             placed(bevelledBox(Vector(5, 176, 5), 0), moved(0, 88, 0)),
                             placed(openArch(31, 150, 5, 5, 0, 4), moved(-31, 0, 2)),
                             placed(openArch(31, 150, 5, 5, 0, 4), moved(31, 0, 2)),
                             placed(quatrefoil(40), moved(0, 238, 3))}));
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
                                    40, 20);
  Assembly assembly;
  assembly.single = withPart(placed(turnedStone, stretched(1, 1, plinthDepth)), stone);
  return assembly;
}

Assembly hall() {
  Assembly assembly;
  // It leaves a gate where the camera passes.
  Copies spikes{spear(), {}, iron};
  for (const auto& [from, to] : {std::pair(-96.0f, -43.0f), std::pair(36.0f, 81.5f)}) {
    for (const float y : {16.0f, 60.0f}) append(assembly.single, rail(from, to, y), iron);
    const int count = static_cast<int>((to - from) / spearEvery);
    for (int i = 0; i <= count; ++i)
      spikes.places.push_back(
          moved(around(fenceRadius, mix(from, to, static_cast<float>(i) / static_cast<float>(count)), 0)));
  }
  Copies pillars{pillar(), {}, stone}, arches{choirArch(), {}, stone}, ribs{rib(), {}, stone},
      wallRibs{wallRib(), {}, stone};
  for (int i = 0; i < 8; ++i) {
    const float degrees = 180 + 32 * (static_cast<float>(i) - 3.5f);
    const Placement stands = turnedY(degrees) >> moved(around(choirRadius, degrees, 0));
    pillars.places.push_back(stands);
    ribs.places.push_back(stands);
    if (i == 7) break;
    const Placement between =
        turnedY(degrees + 16 + 180) >> moved(around(choirRadius * 0.985f, degrees + 16, 0));
    arches.places.push_back(between);
    wallRibs.places.push_back(between);
  }
  assembly.repeated = {std::move(spikes), std::move(pillars), std::move(arches), std::move(ribs),
                       std::move(wallRibs)};
  return assembly;
}

}  // namespace vex::reliquary
