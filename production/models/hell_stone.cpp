#include <algorithm>
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

// A basalt column of six sides from below the lake up to `height`, a little crooked.
Surface column(float x, float z, float radius, float height, int seed) {
  constexpr float below = 6;
  const Surface shaft = lathe({{radius, -below}, {radius * 0.98f, height}, {0, height + 0.4f}}, 6, 180);
  const float lean = 1.2f * (hashUnit(seed, 1, 951) - 0.5f), leanZ = 1.2f * (hashUnit(seed, 2, 951) - 0.5f);
  return placed(creased(withoutMapping(shaft), 25), turnedX(leanZ) >> turnedZ(lean) >> moved(x, 0, z));
}

// Columns side by side in the honeycomb about the origin; `height` of each by place, none where 0 or less.
Surface honeycomb(int rings, float radius, const std::function<float(float x, float z, int seed)>& height) {
  Surface all;
  const float step = radius * 1.76f;
  for (int q = -rings; q <= rings; ++q)
    for (int r = std::max(-rings, -q - rings); r <= std::min(rings, -q + rings); ++r) {
      const float x = step * (static_cast<float>(q) + 0.5f * static_cast<float>(r)),
                  z = step * 0.866f * static_cast<float>(r);
      const int seed = (q + 20) * 50 + r + 20;
      const float tall = height(x, z, seed);
      if (tall > 0) append(all, column(x, z, radius * (0.96f + 0.05f * hashUnit(seed, 4, 951)), tall, seed));
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
  constexpr int pieces = 11;
  for (int i = 0; i <= pieces; ++i) path.push_back(arcPoint(until * static_cast<float>(i) / pieces, 0, 0));
  return creased(withoutMapping(tube(
                     path, 8, [until](float t) { return ribThickness(t * until); }, end)),
                 25);
}

Surface bossSurface() {
  return placed(
      creased(withoutMapping(lathe({{0, -22}, {4, -19}, {7, -10}, {11, -6}, {11, 3}, {0, 7}}, 8)), 30),
      moved(arcPoint(1, 0, 0)));
}

// The vault over the left half of one bay, with holes.
Surface webSurface() {
  const Surface half = turnedOver(sheet(9, 20, [](float s, float t) {
    const float sag = 9 * std::sin(pi * s);
    const Vector p = arcPoint(t, 3 + sag, bay * s);
    return p + Vector(0, 1, 0) * (1.5f * gradientNoise(p * 0.09f, 0, 952));
  }));
  const Surface broken = selected(half, [&](const Triangle& triangle) {
    const Vector& p = half.points[static_cast<std::size_t>(triangle.points[0])];
    const float high = clamp01((p.y - springing) / 150);
    return gradientNoise(Vector(p.x * 0.021f, p.y * 0.021f, p.z * 0.03f), 0, 953) <
           mix(0.55f, -0.12f, smoothStep(0.25f, 0.95f, high));
  });
  return withoutMapping(broken);
}

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
  Outline wall{{-122, -6}, {122, -6}};
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
  std::vector<Outline> outlines{wall, lancet(0, 21, 4, 118), lancet(-58, 17, 4, 84), lancet(58, 17, 4, 84)};
  const float roseY = 203;
  outlines.push_back(circle(0, roseY, 11, 14, true));
  for (int i = 0; i < 8; ++i) {
    const float turn = 2 * pi * (static_cast<float>(i) + 0.5f) / 8;
    outlines.push_back(circle(28 * std::cos(turn), roseY + 28 * std::sin(turn), 7.6f, 12, true));
  }
  return withoutMapping(extrusion(outlines, 16, 1.3f));
}

Surface causewaySurface() {
  return honeycomb(3, 8.0f, [](float x, float z, int seed) {
    const float away = std::hypot(x, z) / 50, chance = hashUnit(seed, 3, 955);
    const float tall = 26 * (1 - away * away) + 13 * (chance - 0.55f);
    return tall < 3 ? 0.0f : tall;
  });
}

// --- Iron

constexpr float linkLength = 7.6f;  // from link to link

Surface link() {
  return withoutMapping(placed(torus(2.9f, 0.85f, 8, 4), stretched(1, 1, 1.75f) >> turnedX(90)));
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
  }
  return {};
}

Surface shackle() {
  constexpr float radius = sphereRadius + 14;
  // A heavy band, tilted; four chains from it to the piers at both sides.
  const Placement tilt = turnedX(24) >> turnedZ(-14) >> moved(sphereCentre);
  Surface all = placed(creased(withoutMapping(lathe({{radius - 2, -3},
                                                     {radius + 1, -3.6f},
                                                     {radius + 2.4f, -2},
                                                     {radius + 2.4f, 2},
                                                     {radius + 1, 3.6f},
                                                     {radius - 2, 3},
                                                     {radius - 2, -3}},
                                                    56)),
                               30),
                       tilt);
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
