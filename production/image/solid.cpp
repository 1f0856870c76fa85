#include "production/image/solid.h"

#include <algorithm>
#include <cmath>

namespace vex {

namespace {

constexpr int mostSteps = 96;

Vector mirrored(const Vector& direction, const Vector& normal) {
  return direction - normal * (2 * dot(direction, normal));
}

}  // namespace

float ball(const Vector& p, const Vector& centre, float radius) {
  return (p - centre).length() - radius;
}

float ellipsoid(const Vector& p, const Vector& centre, const Vector& axes) {
  const Vector q = p - centre;
  const float scaled = Vector(q.x / axes.x, q.y / axes.y, q.z / axes.z).length();
  return (scaled - 1) * std::min({axes.x, axes.y, axes.z});
}

float taper(const Vector& p, const Vector& a, const Vector& b, float ra, float rb) {
  const Vector along = b - a, from = p - a;
  const float t = clamp01(dot(from, along) / dot(along, along));
  return (from - along * t).length() - mix(ra, rb, t);
}

RayMarch march(const Solid& solid, const Vector& from, const Vector& direction, float most, float precision) {
  RayMarch result;
  for (int step = 0; step < mostSteps && result.length < most; ++step) {
    const float distance = solid(from + direction * result.length);
    result.nearest = std::min(result.nearest, distance / std::max(result.length, precision));
    if (distance < precision) {
      result.hit = true;
      return result;
    }
    result.length += distance;
  }
  return result;
}

Vector normalAt(const Solid& solid, const Vector& p, float step) {
  // Four corners of a tetrahedron instead of six neighbours.
  Vector sum(0, 0, 0);
  for (const Vector& corner : {Vector(1, -1, -1), Vector(-1, -1, 1), Vector(-1, 1, -1), Vector(1, 1, 1)})
    sum += corner * solid(p + corner * step);
  sum.normalize();
  return sum;
}

float openness(const Solid& solid, const Vector& p, const Vector& normal, float reach) {
  float shut = 0, weight = 1;
  for (int i = 1; i <= 4; ++i) {
    const float out = reach * static_cast<float>(i) / 4;
    shut += weight * std::max(0.0f, out - solid(p + normal * out)) / reach;
    weight *= 0.6f;
  }
  return clamp01(1 - 1.1f * shut);
}

Colour4 shadeChrome(const Solid& solid, const Environment& world, const Chrome& chrome, const Vector& p,
                    const Vector& direction) {
  const float step = 0.002f;
  const Vector normal = normalAt(solid, p, step), away = mirrored(direction, normal);
  Vector seen = away;
  float strength = 1;
  const RayMarch second = march(solid, p + normal * (8 * step), away, 2.5f, step);
  if (second.hit) {
    const Vector there = p + normal * (8 * step) + away * second.length;
    seen = mirrored(away, normalAt(solid, there, step));
    strength = 0.55f;
  }
  const float grazing = std::pow(clamp01(1 + dot(direction, normal)), 4.0f);
  const float shade = 0.25f + 0.75f * openness(solid, p, normal, chrome.hollows);
  return world(seen) * mix(chrome.tint, {1, 1, 1}, grazing) * (strength * shade);
}

}  // namespace vex
