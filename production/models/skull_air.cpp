#include <cmath>

#include "production/geometry/forms.h"
#include "production/geometry/mapping.h"
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

Surface bolt(const Vector& from, const Vector& to, float width) {
  const Vector along = to - from, middle = (from + to) * 0.5f;
  const Vector across = unit(cross(unit(along), Vector(0.15f, 0.1f, 1)));
  Surface all;
  all.mapped = true;
  for (const Vector& side : {across, unit(cross(unit(along), across))}) {
    const int a = addPoint(all, from), b = addPoint(all, middle + side * width), c = addPoint(all, to),
              d = addPoint(all, middle - side * width);
    all.triangles.push_back({{a, b, c}, {Uv{0, 1}, Uv{0, 0}, Uv{1, 0}}});
    all.triangles.push_back({{a, c, d}, {Uv{0, 1}, Uv{1, 0}, Uv{1, 1}}});
  }
  return all;
}

Surface beam() {
  constexpr float halfWidth = 4.6f, length = 100;
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
