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

// A basalt column from below the lake up to `height`: no two corners alike, its head broken off at a slant
// with a splintered rim. Sides that only a neighbour sees are left out.
Surface column(float x, float z, float radius, float height, int seed,
               const std::array<bool, columnSides>& hidden) {
  constexpr float below = 6;
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

// The vault over the left half of one bay: what is left of its courses of blocks, whose broken ends show how
// thick they are.
Surface webSurface() {
  constexpr int courses = 13, across = 6;
  constexpr float thick = 8;
  // Corners of blocks are shaken in their place, the same for all that meet there.
  const auto corner = [](int course, float column, float out) {
    const int seed = course * 64 + static_cast<int>(column * 4);
    const bool border = column <= 0 || column >= across;
    const float s = clamp01((column + (border ? 0.0f : 0.34f * (hashUnit(seed, 0, 953) - 0.5f))) / across);
    const float t = clamp01((static_cast<float>(course) + 0.26f * (hashUnit(seed, 1, 953) - 0.5f)) /
                            static_cast<float>(courses));
    return arcPoint(t, 4 + 9 * std::sin(pi * s) + out, bay * s);
  };
  // Every other course is shifted by half a block, as masons do.
  const auto start = [](int course, int block) {
    return std::clamp(static_cast<float>(block) - (course % 2 == 0 ? 0.0f : 0.5f), 0.0f,
                      static_cast<float>(across));
  };
  const auto stands = [&](int course, int block) {
    const float from = start(course, block), to = start(course, block + 1);
    if (course < 0 || course >= courses || to - from < 0.1f) return false;
    const float high = static_cast<float>(course) / courses, s = (from + to) / 2 / across;
    const float fallen = gradientNoise(Vector(s * 2.6f, high * 4.2f, 0.5f), 0, 952) +
                         0.30f * (hashUnit(course, block, 954) - 0.5f);
    return fallen < mix(0.75f, -0.10f, smoothStep(0.25f, 0.9f, high)) - 0.45f * std::sin(pi * s) * high;
  };
  Surface all;
  for (int course = 0; course < courses; ++course)
    for (int block = 0; block <= across; ++block) {
      if (!stands(course, block)) continue;
      const float from = start(course, block), to = start(course, block + 1);
      const float settled = 0.5f * (hashUnit(course, block, 955) - 0.5f);
      std::array<int, 8> p{};
      for (std::size_t i = 0; i < p.size(); ++i)
        p[i] = addPoint(
            all, corner(course + (i & 2 ? 1 : 0), i & 1 ? to : from, settled + (i & 4 ? thick : 0.0f)));
      addQuad(all, p[0], p[1], p[3], p[2]);
      // Ends show where a neighbour has fallen.
      if (!stands(course, block - 1) && from > 0) addQuad(all, p[4], p[0], p[2], p[6]);
      if (!stands(course, block + 1) && to < across) addQuad(all, p[1], p[5], p[7], p[3]);
      const auto open = [&](int other) {
        for (int beside = block - 1; beside <= block + 1; ++beside)
          if (start(other, beside) < to && start(other, beside + 1) > from && !stands(other, beside))
            return true;
        return false;
      };
      if (open(course - 1)) addQuad(all, p[4], p[5], p[1], p[0]);
      if (open(course + 1)) addQuad(all, p[2], p[3], p[7], p[6]);
    }
  return creased(turnedOver(all), 25);
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
  constexpr int pieces = 4;
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
  Outline wall{{-122, -1}, {122, -1}};
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
    outlines.push_back(circle(x, shoulder + 1.05f * half, 0.36f * half, 12, true));
  };
  window(0, 22, 116);
  window(-58, 18, 84);
  window(58, 18, 84);
  // What the rose leaves is a ragged hole, behind whose rim its petals end.
  Outline breach = circle(0, roseHeight, 1, 48, true);
  for (std::size_t i = 0; i < breach.size(); ++i) {
    const auto [x, y] = breach[i];
    const float reach = roseReach - 5 + 4.5f * hashUnit(static_cast<int>(i / 2), 1, 956) +
                        1.4f * hashUnit(static_cast<int>(i), 2, 956);
    breach[i] = {x * reach, roseHeight + (y - roseHeight) * reach};
  }
  outlines.push_back(breach);
  // Nobody ever stands behind it.
  const Surface wallBody = withoutMapping(extrusion(outlines, 16, 1.3f));
  return selected(wallBody, [&](const Triangle& triangle) { return normalOf(wallBody, triangle).z > -0.9f; });
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
    const float tall = 26 * (1 - away * away) + 13 * (chance - 0.55f);
    return tall < 6.5f ? 0.0f : tall;
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
      return webSurface();
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

// A heavy band, tilted.
Placement shackleTilt() {
  return turnedX(9) >> turnedZ(-24) >> moved(sphereCentre);
}

Surface shackle() {
  constexpr float radius = sphereRadius + 14;
  // The band, forged round, with a collar about it every few feet; four chains from it to the piers at both
  // sides.
  const Placement tilt = shackleTilt();
  Surface all = placed(withoutMapping(torus(radius + 0.4f, 2.7f, 56, 6)), tilt);
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
