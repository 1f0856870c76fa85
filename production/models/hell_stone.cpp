#include <algorithm>
#include <array>
#include <cmath>

#include "production/geometry/forms.h"
#include "production/geometry/mapping.h"
#include "production/image/noise3.h"
#include "production/models/hell_parts.h"
#include "production/textures/palette.h"

// The cathedral: piers of hexagonal columns, pointed ribs from pier to pier, what is left of the vault, the
// choir's wall; and the iron in it.

namespace vex::hell {

using namespace image;
using namespace geometry;

namespace {

constexpr float springing = 124;  // height of the ribs' feet
constexpr float spread = 60;      // the arcs' middles lie this far beyond the nave's
constexpr float arcRadius = naveHalf + spread;
const float arcEnd = std::acos(-spread / arcRadius);  // angle of the crown, measured at the arc's middle

// Left half of the pointed arch, 0 at its foot and 1 at the crown; `out` moves it away from the nave.
Vector arcPoint(float t, float out, float z) {
  const float angle = mix(pi, arcEnd, t), radius = arcRadius + out;
  return Vector(spread + radius * std::cos(angle), springing + radius * std::sin(angle), z);
}

constexpr std::size_t columnSides = 6;  // side k faces 60 k degrees, from x towards z

// A basalt column from the lake up to `height`: no two corners alike, its head broken off at a slant
// with a splintered rim. Sides that only a neighbour sees are left out.
Surface column(float x, float z, float radius, float height, int seed,
               const std::array<bool, columnSides>& hidden) {
  constexpr float below = 0.4f;
  const auto chance = [seed](int what) { return hashUnit(seed, what, 951); };
  const float slantX = 0.5f * (chance(20) - 0.5f), slantZ = 0.5f * (chance(21) - 0.5f);
  const auto missing = static_cast<std::size_t>(chance(22) * 9);  // a corner that has split off, if any
  Surface shaft;
  // At each corner from the foot up; tall ones are offset where they once broke across.
  std::vector<float> levels{-below};
  if (height > 60) levels.push_back(height * (0.3f + 0.4f * chance(23)));
  const std::size_t rows = levels.size() + 2;
  const float shiftX = 0.7f * (chance(24) - 0.5f), shiftZ = 0.7f * (chance(25) - 0.5f);
  for (std::size_t corner = 0; corner < columnSides; ++corner) {
    const int number = static_cast<int>(corner);
    const float turn = pi / 3 * (static_cast<float>(corner) - 0.5f);
    const auto at = [&](float away, float y, float shift) {
      return Vector(away * std::cos(turn) + shift * shiftX, y, away * std::sin(turn) + shift * shiftZ);
    };
    const float own = radius * (1.0f + 0.06f * chance(number));
    const Vector rim = at(own * 0.99f, 0, 1);
    const float top = height + slantX * rim.x + slantZ * rim.z - (corner == missing ? 3.5f : 0.0f);
    for (const float level : levels) addPoint(shaft, at(own, level, level > 0 ? 0.5f : 0.0f));
    const float splinter = 0.5f + 1.3f * chance(10 + number);
    addPoint(shaft, at(own * 0.99f, top - splinter, 1));
    addPoint(shaft, at(own * (0.80f + 0.14f * chance(30 + number)) - (corner == missing ? 2.5f : 0.0f),
                       top + 0.2f * splinter, 1));
  }
  const auto point = [rows](std::size_t corner, std::size_t row) {
    return static_cast<int>(corner % columnSides * rows + row);
  };
  const int middle = addPoint(shaft, Vector(shiftX, height + 0.9f * (chance(26) - 0.6f), shiftZ));
  for (std::size_t side = 0; side < columnSides; ++side) {
    for (std::size_t row = 0; row + 1 < rows; ++row)
      if (!hidden[side] || row + 2 == rows)
        addQuad(shaft, point(side + 1, row), point(side, row), point(side, row + 1),
                point(side + 1, row + 1));
    addTriangle(shaft, middle, point(side + 1, rows - 1), point(side, rows - 1));
  }
  const float lean = 0.8f * (chance(1 + 40) - 0.5f), leanZ = 0.8f * (chance(2 + 40) - 0.5f);
  return placed(creased(compacted(shaft), 25), turnedX(leanZ) >> turnedZ(lean) >> moved(x, 0, z));
}

// Columns side by side in the honeycomb about the origin; `height` of each by place, none where 0 or less.
Surface honeycomb(int rings, float radius, const std::function<float(float x, float z, int seed)>& height) {
  struct Cell {
    int q, r;
  };
  constexpr std::array<Cell, columnSides> neighbours{{{1, 0}, {0, 1}, {-1, 1}, {-1, 0}, {0, -1}, {1, -1}}};
  const float step = radius * 1.76f;
  const auto place = [step](const Cell& cell) {
    return Vector(step * (static_cast<float>(cell.q) + 0.5f * static_cast<float>(cell.r)), 0,
                  step * 0.866f * static_cast<float>(cell.r));
  };
  const auto seedOf = [](const Cell& cell) { return (cell.q + 20) * 50 + cell.r + 20; };
  const auto tallness = [&](const Cell& cell) {
    if (std::max({std::abs(cell.q), std::abs(cell.r), std::abs(cell.q + cell.r)}) > rings) return 0.0f;
    const Vector p = place(cell);
    return height(p.x, p.z, seedOf(cell));
  };
  Surface all;
  for (int q = -rings; q <= rings; ++q)
    for (int r = std::max(-rings, -q - rings); r <= std::min(rings, -q + rings); ++r) {
      const Cell cell{q, r};
      const float tall = tallness(cell);
      if (tall <= 0) continue;
      std::array<bool, columnSides> hidden{};
      for (std::size_t side = 0; side < columnSides; ++side)
        hidden[side] = tallness({q + neighbours[side].q, r + neighbours[side].r}) > tall + 2;
      const Vector p = place(cell);
      append(all, column(p.x, p.z, radius, tall, seedOf(cell), hidden));
    }
  return all;
}

Surface pierSurface() {
  const Surface shafts = honeycomb(2, 8.2f, [](float x, float z, int seed) {
    const float away = std::hypot(x, z), chance = hashUnit(seed, 3, 951);
    if (away < 1) return springing + 14;
    if (away < 16) return springing - 14 + 16 * chance;  // the bundle that carries the ribs
    if (chance < 0.58f) return 0.0f;
    return 14 + 70 * chance * chance * chance;
  });
  return shafts;
}

// The ribs stand on a broad base that runs into the pier.
float ribThickness(float t) {
  return 7.2f + 5.0f * std::exp(-t * 9);
}

Surface halfRib(float until, TubeEnd end) {
  std::vector<Vector> path;
  constexpr int pieces = 9;
  for (int i = 0; i <= pieces; ++i) path.push_back(arcPoint(until * static_cast<float>(i) / pieces, 0, 0));
  return creased(withoutMapping(tube(
                     path, 7, [until](float t) { return ribThickness(t * until); }, end)),
                 25);
}

Surface bossSurface() {
  return placed(
      creased(withoutMapping(lathe({{0, -22}, {4, -19}, {7, -10}, {11, -6}, {11, 3}, {0, 7}}, 8)), 30),
      moved(arcPoint(1, 0, 0)));
}

// The vault over the left half of one bay, whole or broken off below the crown; its inside, and how thick it
// is where it has fallen.
Surface webSurface(bool broken) {
  constexpr int courses = 10, across = 7;
  constexpr float thick = 7;
  const auto at = [](int course, int column, float out) {
    const float s = static_cast<float>(column) / across, t = static_cast<float>(course) / courses;
    return arcPoint(t, 4 + 9 * std::sin(pi * s) + out, bay * s);
  };
  // Fallen furthest in the middle; nothing hangs where what carried it is gone.
  const auto top = [&](int column) {
    if (!broken) return courses;
    if (column < 0 || column >= across) return 0;
    const float s = (static_cast<float>(column) + 0.5f) / across;
    return static_cast<int>(10.2f - 3.8f * std::sin(pi * s) - 2.4f * hashUnit(column, 0, 952));
  };
  Surface all;
  const auto quad = [&all](const Vector& p, const Vector& q, const Vector& r, const Vector& s) {
    const int first = addPoint(all, p);
    addPoint(all, q), addPoint(all, r), addPoint(all, s);
    addQuad(all, first, first + 1, first + 2, first + 3);
  };
  for (int column = 0; column < across; ++column) {
    for (int course = 0; course < top(column); ++course)
      quad(at(course, column, 0), at(course, column + 1, 0), at(course + 1, column + 1, 0),
           at(course + 1, column, 0));
    if (!broken) continue;
    const int end = top(column);
    quad(at(end, column, 0), at(end, column + 1, 0), at(end, column + 1, thick), at(end, column, thick));
    for (const int beside : {-1, 1})
      for (int course = std::max(1, top(column + beside));
           column + beside >= 0 && column + beside < across && course < end; ++course) {
        const int edge = column + std::max(0, beside);
        quad(at(course, edge, 0), at(course, edge, thick), at(course + 1, edge, thick),
             at(course + 1, edge, 0));
      }
  }
  return creased(turnedOver(welded(all, 0.01f)), 25);
}

constexpr float roseReach = 41, eyeReach = 14;

Outline circle(float x, float y, float radius, int sides, bool hole) {
  Outline outline;
  for (int i = 0; i < sides; ++i) {
    const float turn = 2 * pi * static_cast<float>(i) / static_cast<float>(sides) * (hole ? -1.0f : 1.0f);
    outline.push_back({x + radius * std::cos(turn), y + radius * std::sin(turn)});
  }
  return outline;
}

// An opening with a pointed head: foot, shoulders and crown; clockwise.
Outline lancet(float x, float half, float foot, float shoulder) {
  Outline outline{{x + half, foot}, {x - half, foot}};
  const float reach = half * 0.9f, radius = half + reach, end = std::acos(reach / radius);
  constexpr int pieces = 7;
  for (int i = 0; i <= pieces; ++i) {
    const float angle = end * static_cast<float>(i) / pieces;
    outline.push_back({x + reach - radius * std::cos(angle), shoulder + radius * std::sin(angle)});
  }
  for (int i = pieces - 1; i >= 0; --i) {
    const float angle = end * static_cast<float>(i) / pieces;
    outline.push_back({x - reach + radius * std::cos(angle), shoulder + radius * std::sin(angle)});
  }
  return outline;
}

Surface choirWallSurface() {
  Outline wall{{-122, 0.1f}, {122, 0.1f}};  // nothing of it shows under the lake
  // Its ragged top follows the arch.
  constexpr int pieces = 26;
  for (int i = 0; i <= pieces; ++i) {
    const float share = static_cast<float>(i) / pieces, x = mix(122, -122, share);
    const float inside = std::min(1.0f, std::fabs(x) / (naveHalf + 8));
    const float arch =
        springing + std::sqrt(std::max(0.0f, arcRadius * arcRadius - (spread + inside * naveHalf) *
                                                                         (spread + inside * naveHalf)));
    wall.push_back({x, arch + 22 + 26 * (hashUnit(i, 0, 954) - 0.5f)});
  }
  std::vector<Outline> outlines{wall};
  // Each window is a pair of lancets under an eye.
  const auto window = [&](float x, float half, float shoulder) {
    outlines.push_back(lancet(x - 0.53f * half, 0.45f * half, 4, shoulder));
    outlines.push_back(lancet(x + 0.53f * half, 0.45f * half, 4, shoulder));
    outlines.push_back(circle(x, shoulder + 1.05f * half, 0.36f * half, 20, true));
  };
  window(0, 22, 116);
  window(-58, 18, 84);
  window(58, 18, 84);
  // What the rose leaves is a round hole with the stumps of its spokes.
  constexpr int steps = 8 * petalCount;
  Outline breach = circle(0, roseHeight, 1, steps, true);
  for (std::size_t i = 0; i < breach.size(); ++i) {
    const auto [x, y] = breach[i];
    const bool stump = i % (steps / petalCount) == 0;
    const float reach = roseReach - 1 - (stump ? 5 + 6 * hashUnit(static_cast<int>(i), 1, 956) : 0);
    breach[i] = {x * reach, roseHeight + (y - roseHeight) * reach};
  }
  outlines.push_back(breach);
  // Nobody ever stands behind it.
  const Surface wallBody = withoutMapping(extrusion(outlines, 16, 1.3f));
  Surface all =
      selected(wallBody, [&](const Triangle& triangle) { return normalOf(wallBody, triangle).z > -0.9f; });
  // A moulding frames the rose.
  append(all, placed(withoutMapping(lathe({{roseReach + 6, -0.5f},
                                           {roseReach + 5, 3.5f},
                                           {roseReach + 2, 3.5f},
                                           {roseReach + 1, 1.5f},
                                           {roseReach - 1, -1}},
                                          48)),
                     turnedX(90) >> moved(0, roseHeight, 0)));
  return all;
}

// A petal is a sector with a window in it, narrower towards the eye.
Surface rosePetalSurface() {
  constexpr float half = pi / petalCount, gap = 0.012f;
  Outline petal;
  constexpr int pieces = 5;
  for (int i = 0; i <= pieces; ++i) {
    const float turn = mix(-half + gap, half - gap, static_cast<float>(i) / pieces);
    petal.push_back({roseReach * std::cos(turn), roseReach * std::sin(turn)});
  }
  for (const float turn : {half - 4 * gap, 0.0f, 4 * gap - half})
    petal.push_back({eyeReach * std::cos(turn), eyeReach * std::sin(turn)});
  Outline window;
  constexpr int sides = 18;
  for (int i = 0; i < sides; ++i) {
    const float turn = -2 * pi * static_cast<float>(i) / sides, out = 0.5f + 0.5f * std::cos(turn);
    window.push_back({28.5f + 9.6f * std::cos(turn), (3.6f + 5.2f * out) * std::sin(turn)});
  }
  return withoutMapping(extrusion({petal, window}, 9, 1));
}

Surface roseEyeSurface() {
  return withoutMapping(
      extrusion({circle(0, 0, eyeReach - 0.4f, 16, false), circle(0, 0, 9.5f, 16, true)}, 9, 1));
}

Surface causewaySurface() {
  return honeycomb(3, 8.0f, [](float x, float z, int seed) {
    const float away = std::hypot(x, z) / 50, chance = hashUnit(seed, 3, 955);
    const float tall = 17 - 26 * away * away + 13 * (chance - 0.55f);
    return tall < 1.5f ? 0.0f : tall;
  });
}

// --- Iron

constexpr float linkLength = 7.6f;  // from link to link

Surface link() {
  return withoutMapping(placed(torus(2.8f, 1.0f, 7, 4), stretched(1, 1, 1.75f) >> turnedX(90)));
}

// Links from one place to another, every other one turned by a quarter.
Surface chain(const Vector& from, const Vector& to) {
  Surface all;
  const float length = (to - from).length();
  const int links = std::max(1, static_cast<int>(std::lround(length / linkLength)));
  for (int i = 0; i < links; ++i) {
    const Vector middle = mix(from, to, (static_cast<float>(i) + 0.5f) / static_cast<float>(links));
    append(all, placed(link(), turnedY(i % 2 == 0 ? 0.0f : 90.0f) >> standing(middle, unit(to - from))));
  }
  return all;
}

}  // namespace

Vector ribPlace(float share) {
  return arcPoint(share, 0, 0);
}

float archShare(const Vector& p) {
  return (pi - std::atan2(p.y - springing, p.x - spread)) / (pi - arcEnd);
}

Surface stonePart(StonePart part) {
  switch (part) {
    case pier:
      return pierSurface();
    case rib:
      return halfRib(1, TubeEnd::open);
    case brokenRib:
      return halfRib(0.55f, TubeEnd::point);
    case boss:
      return bossSurface();
    case web:
      return webSurface(false);
    case brokenWeb:
      return webSurface(true);
    case choirWall:
      return choirWallSurface();
    case causeway:
      return causewaySurface();
    case rosePetal:
      return rosePetalSurface();
    case roseEye:
      return roseEyeSurface();
  }
  return {};
}

// A heavy band, tilted so that it stands around the sphere for whoever looks up the nave, and up from below.
Placement shackleTilt() {
  return turnedX(58) >> turnedZ(30) >> moved(sphereCentre);
}

Surface shackle() {
  constexpr float radius = sphereRadius + 14;
  // The band, forged round, with a collar about it every few feet; four chains from it to the piers at both
  // sides.
  const Placement tilt = shackleTilt();
  Surface all = placed(withoutMapping(torus(radius + 0.4f, 2.7f, 72, 8)), tilt);
  constexpr int collars = 12;
  for (int i = 0; i < collars; ++i) {
    const Surface collar = lathe({{2.5f, -1.9f}, {3.5f, -1.5f}, {3.5f, 1.5f}, {2.5f, 1.9f}}, 8, 60);
    append(all,
           placed(withoutMapping(collar), turnedX(90) >> moved(radius + 0.4f, 0, 0) >>
                                              turnedY(360.0f * static_cast<float>(i) / collars) >> tilt));
  }
  for (const float side : {-1.0f, 1.0f})
    for (const float end : {-1.0f, 1.0f}) {
      const Vector out = unit(Vector(side, 0, 0.75f * end));
      const Vector eye = transformed(tilt, out * (radius + 3));
      append(all, chain(eye, Vector(side * (naveHalf - 10), springing - 8 + 6 * end, end * bay * 0.92f)));
    }
  return all;
}

Surface danglingChain(float length) {
  return chain(Vector(0, 0, 0), Vector(0, -length, 0));
}

}  // namespace vex::hell
