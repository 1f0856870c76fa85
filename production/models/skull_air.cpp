#include <algorithm>
#include <cmath>

#include "production/geometry/forms.h"
#include "production/geometry/mapping.h"
#include "production/image/noise.h"
#include "production/models/skull_parts.h"

// Crows, lightning, beams and clouds.

namespace vex::skull {

namespace {

constexpr float wingReach = 34;  // half the span, and half the picture's width

Surface mappedFromAbove(const Surface& surface) {
  return mapped(withoutMapping(surface), [](const Vector& p) {
    return Uv{0.5f + 0.5f * p.x / wingReach, 0.5f + 0.5f * p.z / wingReach};
  });
}

// The picture's bolt strays from its diagonal by less than this, in pictures.
constexpr float stray = 0.17f;

// A ribbon along a path that shows the diagonal of the picture between two shares of it, `half` wide to
// either side, moved by `aside`. Its ends are points: the picture's corners.
void addRibbon(Surface& all, const std::vector<Vector>& path, const Vector& side, float half, float aside,
               float first, float last) {
  const auto count = static_cast<int>(path.size());
  std::vector<int> left, right;
  std::vector<Uv> leftUv, rightUv;
  for (int i = 0; i < count; ++i) {
    const float share = static_cast<float>(i) / static_cast<float>(count - 1);
    const float t = mix(first, last, share), reach = std::min({stray, t, 1 - t});
    const Vector& at = path[static_cast<std::size_t>(i)];
    const Vector across = side * (half * reach / stray),
                 shift = side * (aside * std::min(1.0f, 6 * std::min(share, 1 - share)));
    left.push_back(addPoint(all, at + shift - across));
    right.push_back(addPoint(all, at + shift + across));
    leftUv.push_back({t - reach, 1 - t - reach});
    rightUv.push_back({t + reach, 1 - t + reach});
  }
  const auto add = [&](int a, int b, int c, const Uv& ua, const Uv& ub, const Uv& uc) {
    all.triangles.push_back({{a, b, c}, {ua, ub, uc}});
  };
  for (std::size_t i = 0; i + 1 < path.size(); ++i) {
    if (leftUv[i] != rightUv[i]) add(left[i], left[i + 1], right[i], leftUv[i], leftUv[i + 1], rightUv[i]);
    if (leftUv[i + 1] != rightUv[i + 1])
      add(right[i], left[i + 1], right[i + 1], rightUv[i], leftUv[i + 1], rightUv[i + 1]);
  }
}

// From one place to another in straight steps of different lengths that stray to all sides.
std::vector<Vector> jagged(const Vector& from, const Vector& to, int steps, float amount,
                           std::uint32_t seed) {
  const Vector along = to - from;
  std::vector<Vector> path;
  for (int i = 0; i <= steps; ++i) {
    const auto chance = [&](int which) { return 2 * hashUnit(i, which, seed) - 1; };
    const bool end = i == 0 || i == steps;
    const float share = (static_cast<float>(i) + (end ? 0 : 0.3f * chance(0))) / static_cast<float>(steps);
    const float off = end ? 0 : amount * along.length();
    path.push_back(from + along * share + Vector(chance(1), 0.25f * chance(2), chance(3)) * off);
  }
  return path;
}

}  // namespace

Surface crow() {
  // Wings and tail are one cambered sheet that the picture cuts out; the trunk is solid.
  const Surface wings = sheet(16, 5, [](float s, float t) {
    const float x = wingReach * (2 * s - 1), z = -wingReach * 0.8f * (2 * t - 1),
                out = std::fabs(x) / wingReach;
    const float dihedral = 7 * std::pow(out, 1.3f), camber = 2.2f * (1 - std::pow((z - 4) / 20, 2.0f)) * out;
    return Vector(x, dihedral + camber * smoothStep(0.05f, 0.3f, out), z);
  });
  Surface all = mappedFromAbove(wings);
  append(all, mappedFromAbove(tube(
                  smoothPath({Vector(0, 0.5f, -15), Vector(0, -0.6f, 0), Vector(0, 0.4f, 12),
                              Vector(0, 1.6f, 19), Vector(0, 0.8f, 26)},
                             14),
                  8,
                  [](float t) {
                    const float trunk = 5.0f * std::sin(pi * std::pow(clamp01(t * 1.18f), 0.8f));
                    const float head = 3.2f * std::exp(-std::pow((t - 0.80f) / 0.10f, 2.0f));
                    return std::max(trunk, head) + 0.5f * (1 - t);
                  },
                  TubeEnd::point)));
  return all;
}

Surface bolt(const Vector& from, const Vector& to, std::uint32_t seed) {
  constexpr int steps = 11;
  // Three at one place burn out to white; one beside them makes the channel thicker than a hair.
  constexpr float half = 26, asides[] = {0, 0, 0, -2, 2};
  const std::vector<Vector> channel = jagged(from, to, steps, 0.055f, seed);
  const Vector along = unit(to - from), across = unit(cross(along, Vector(0.15f, 0.1f, 1)));
  Surface all;
  all.mapped = true;
  // Two planes, so that it shows from all sides; the fewer they are, the less it frays.
  for (const Vector& side : {across, unit(across + cross(along, across) * 1.5f)})
    for (const float aside : asides) addRibbon(all, channel, side, half, aside, 0, 1);
  // Branches leave at bends and die away in the air.
  for (const int bend : {3, 6}) {
    const Vector& fork = channel[static_cast<std::size_t>(bend)];
    const float turn = bend == 3 ? 1.0f : -1.0f;
    const Vector end = fork + (along * 0.7f + across * (0.6f * turn)) * (0.26f * (to - from).length());
    for (int copy = 0; copy < 2; ++copy)
      addRibbon(all, jagged(fork, end, 4, 0.08f, seed + static_cast<std::uint32_t>(bend)), across,
                0.5f * half, 0, 0.55f, 1);
  }
  return compacted(all);
}

Surface beam() {
  constexpr float halfWidth = 9, length = 100;
  Surface all;
  for (const float turn : {0.0f, 60.0f, 120.0f})
    append(all, placed(sheet(1, 6,
                             [](float s, float t) { return Vector(halfWidth * (2 * s - 1), length * t, 0); }),
                       turnedY(turn)));
  return all;
}

Surface cloudLayer(float above, float tilt) {
  constexpr float halfWidth = 1500, nearEdge = 900, farEdge = -2100;
  // The first two points lie on the near edge: the picture runs towards it.
  const Surface layer = sheet(1, 1, [&](float s, float t) {
    const float z = nearEdge + (farEdge - nearEdge) * t;
    return Vector(halfWidth * (2 * s - 1), above + tilt * z, z);
  });
  return mappedByPoint(withoutMapping(layer), [](int point, const Vector&) {
    return Uv{point % 2 == 0 ? 0.0f : 1.0f, point < 2 ? 0.0f : 1.0f};
  });
}

Surface vault() {
  constexpr float radius = 1900, rim = 20, crown = 640;
  const Surface dome = sheet(32, 8,
                             [](float s, float t) {
                               const float angle = 2 * pi * s, r = radius * (1 - t);
                               const float y = rim + (crown - rim) * std::pow(std::sin(t * pi / 2), 0.8f);
                               return Vector(r * std::cos(angle), y, -r * std::sin(angle));
                             },
                             {.closedAcross = true, .poleAbove = true});
  return turnedOver(mapped(withoutMapping(dome), [](const Vector& p) {
    return Uv{0.5f + 0.495f * p.x / radius, 0.5f - 0.495f * p.z / radius};
  }));
}

}  // namespace vex::skull
