#include "production/image/solid.h"

#include <algorithm>

#include "production/image/image.h"

namespace vex::image {

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

Vector normalAt(const Solid& solid, const Vector& p, float step) {
  // Four corners of a tetrahedron instead of six neighbours.
  Vector sum(0, 0, 0);
  for (const Vector& corner : {Vector(1, -1, -1), Vector(-1, -1, 1), Vector(-1, 1, -1), Vector(1, 1, 1)})
    sum += corner * solid(p + corner * step);
  sum.normalize();
  return sum;
}

}  // namespace vex::image
