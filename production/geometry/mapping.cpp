#include "production/geometry/mapping.h"

#include <algorithm>
#include <cmath>

#include "base/pi.h"

namespace vex::geometry {

namespace {

const Vector& cornerOf(const Surface& surface, const Triangle& triangle, std::size_t k) {
  return surface.points[static_cast<std::size_t>(triangle.points[k])];
}

// Corners whose u is a turn are brought within half a turn of each other; a pole, which has no turn of its
// own, takes the middle of the others.
void closeSeam(Triangle& triangle, const std::array<bool, 3>& pole) {
  const std::size_t first = pole[0] ? (pole[1] ? 2 : 1) : 0;
  const float base = triangle.uv[first].u;
  float sum = 0, least = base;
  int count = 0;
  for (std::size_t k = 0; k < 3; ++k) {
    if (pole[k]) continue;
    triangle.uv[k].u -= std::round(triangle.uv[k].u - base);
    least = std::min(least, triangle.uv[k].u);
    sum += triangle.uv[k].u;
    ++count;
  }
  const float middle = count > 0 ? sum / static_cast<float>(count) : 0;
  for (std::size_t k = 0; k < 3; ++k)
    if (pole[k]) triangle.uv[k].u = middle;
  if (least < 0)
    for (Uv& uv : triangle.uv) uv.u += 1;
}

float turnOf(const Vector& direction) {
  const float turn = std::atan2(-direction.x, -direction.z) / (2 * pi);
  return turn < 0 ? turn + 1 : turn;
}

}  // namespace

Surface mapped(Surface surface, const std::function<Uv(const Vector&)>& map) {
  return mappedByPoint(std::move(surface), [&](int, const Vector& p) { return map(p); });
}

Surface mappedByPoint(Surface surface, const std::function<Uv(int, const Vector&)>& map) {
  surface.mapped = true;
  for (Triangle& triangle : surface.triangles)
    for (std::size_t k = 0; k < 3; ++k)
      triangle.uv[k] = map(triangle.points[k], cornerOf(surface, triangle, k));
  return surface;
}

Surface mappedPlanar(Surface surface, Axis along, float scale) {
  return mapped(std::move(surface), [&](const Vector& p) {
    if (along == Axis::x) return Uv{-p.z * scale, p.y * scale};
    if (along == Axis::y) return Uv{p.x * scale, -p.z * scale};
    return Uv{p.x * scale, p.y * scale};
  });
}

Surface mappedBox(Surface surface, float scale) {
  surface.mapped = true;
  for (Triangle& triangle : surface.triangles) {
    const Vector n = normalOf(surface, triangle);
    const float x = std::fabs(n.x), y = std::fabs(n.y), z = std::fabs(n.z);
    for (std::size_t k = 0; k < 3; ++k) {
      const Vector& p = cornerOf(surface, triangle, k);
      if (y >= x && y >= z)
        triangle.uv[k] = {p.x * scale, (n.y > 0 ? -p.z : p.z) * scale};
      else if (x >= z)
        triangle.uv[k] = {(n.x > 0 ? -p.z : p.z) * scale, p.y * scale};
      else
        triangle.uv[k] = {(n.z > 0 ? p.x : -p.x) * scale, p.y * scale};
    }
  }
  return surface;
}

Surface mappedCylindrical(Surface surface, float turns) {
  const Bounds bounds = boundsOf(surface);
  const float height = std::max(bounds.most.y - bounds.least.y, 1e-9f);
  surface.mapped = true;
  for (Triangle& triangle : surface.triangles) {
    std::array<bool, 3> pole{};
    for (std::size_t k = 0; k < 3; ++k) {
      const Vector& p = cornerOf(surface, triangle, k);
      pole[k] = std::hypot(p.x, p.z) < 1e-6f * height;
      triangle.uv[k] = {turnOf(p), (p.y - bounds.least.y) / height};
    }
    closeSeam(triangle, pole);
    for (Uv& uv : triangle.uv) uv.u *= turns;
  }
  return surface;
}

Surface mappedSpherical(Surface surface, const Vector& centre, float turns) {
  surface.mapped = true;
  for (Triangle& triangle : surface.triangles) {
    std::array<bool, 3> pole{};
    for (std::size_t k = 0; k < 3; ++k) {
      const Vector d = unit(cornerOf(surface, triangle, k) - centre);
      pole[k] = std::hypot(d.x, d.z) < 1e-5f;
      triangle.uv[k] = {turnOf(d), 0.5f + std::asin(std::clamp(d.y, -1.0f, 1.0f)) / pi};
    }
    closeSeam(triangle, pole);
    for (Uv& uv : triangle.uv) uv.u *= turns;
  }
  return surface;
}

Surface mappingScaled(Surface surface, float u, float v, float shiftU, float shiftV) {
  for (Triangle& triangle : surface.triangles)
    for (Uv& uv : triangle.uv) uv = {uv.u * u + shiftU, uv.v * v + shiftV};
  return surface;
}

}  // namespace vex::geometry
