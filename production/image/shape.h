#pragma once

#include <algorithm>
#include <cmath>

// Signed distances to plane shapes, negative inside, and how they join. Any unit.

namespace vex::image {

inline float disc(float x, float y, float radius) {
  return std::hypot(x, y) - radius;
}
inline float ring(float x, float y, float radius, float halfWidth) {
  return std::fabs(std::hypot(x, y) - radius) - halfWidth;
}
inline float box(float x, float y, float halfWidth, float halfHeight) {
  const float dx = std::fabs(x) - halfWidth, dy = std::fabs(y) - halfHeight;
  return std::hypot(std::max(dx, 0.0f), std::max(dy, 0.0f)) + std::min(std::max(dx, dy), 0.0f);
}
inline float segment(float x, float y, float x0, float y0, float x1, float y1, float radius) {
  const float dx = x1 - x0, dy = y1 - y0;
  const float t = std::clamp(((x - x0) * dx + (y - y0) * dy) / (dx * dx + dy * dy), 0.0f, 1.0f);
  return std::hypot(x - x0 - t * dx, y - y0 - t * dy) - radius;
}
// Segment whose radius goes from r0 to r1.
inline float taper(float x, float y, float x0, float y0, float x1, float y1, float r0, float r1) {
  const float dx = x1 - x0, dy = y1 - y0;
  const float t = std::clamp(((x - x0) * dx + (y - y0) * dy) / (dx * dx + dy * dy), 0.0f, 1.0f);
  return std::hypot(x - x0 - t * dx, y - y0 - t * dy) - (r0 + (r1 - r0) * t);
}
// Two arcs about points at +-`spread` beside the middle that meet above: the Gothic pointed arch,
// `halfWidth` wide at y = 0, open below it as a doorway. y down.
inline float pointedArch(float x, float y, float halfWidth, float spread) {
  const float sideways = std::fabs(x);
  if (y >= 0) return sideways - halfWidth;
  return std::hypot(sideways + spread, y) - (halfWidth + spread);
}
// Union with a fillet of size k.
inline float smoothUnion(float p, float q, float k) {
  const float h = std::max(k - std::fabs(p - q), 0.0f) / k;
  return std::min(p, q) - h * h * k * 0.25f;
}
// 1 inside, 0 outside, `softness` wide at the edge.
inline float coverage(float distance, float softness) {
  const float t = std::clamp(0.5f - distance / softness, 0.0f, 1.0f);
  return t * t * (3 - 2 * t);
}

}  // namespace vex::image
