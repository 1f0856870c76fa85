#include "production/geometry/placement.h"

#include <algorithm>

#include "base/pi.h"

namespace vex::geometry {

namespace {

constexpr float degree = pi / 180;

}  // namespace

Vector transformedDirection(const Placement& placement, const Vector& direction) {
  return placement.right * direction.x + placement.up * direction.y + placement.back * direction.z;
}

Vector transformed(const Placement& placement, const Vector& point) {
  return transformedDirection(placement, point) + placement.origin;
}

Placement moved(float x, float y, float z) {
  return moved(Vector(x, y, z));
}

Placement moved(const Vector& by) {
  Placement result;
  result.origin = by;
  return result;
}

Placement stretched(float x, float y, float z) {
  return {Vector(x, 0, 0), Vector(0, y, 0), Vector(0, 0, z), Vector(0, 0, 0)};
}

Placement stretched(float all) {
  return stretched(all, all, all);
}

// Rodrigues' formula on the three unit axes.
Placement turned(const Vector& axis, float radians) {
  const Vector k = unit(axis);
  const float c = std::cos(radians), s = std::sin(radians);
  const auto turn = [&](const Vector& v) { return v * c + cross(k, v) * s + k * (dot(k, v) * (1 - c)); };
  return {turn({1, 0, 0}), turn({0, 1, 0}), turn({0, 0, 1}), Vector(0, 0, 0)};
}

Placement turnedX(float degrees) {
  return turned({1, 0, 0}, degrees * degree);
}

Placement turnedY(float degrees) {
  return turned({0, 1, 0}, degrees * degree);
}

Placement turnedZ(float degrees) {
  return turned({0, 0, 1}, degrees * degree);
}

Placement operator>>(const Placement& first, const Placement& second) {
  return {transformedDirection(second, first.right), transformedDirection(second, first.up),
          transformedDirection(second, first.back), transformed(second, first.origin)};
}

float handedness(const Placement& placement) {
  return dot(cross(placement.right, placement.up), placement.back);
}

Placement inverse(const Placement& placement) {
  const float scale = 1 / handedness(placement);
  const Vector x = cross(placement.up, placement.back) * scale,
               y = cross(placement.back, placement.right) * scale,
               z = cross(placement.right, placement.up) * scale;  // rows of the inverse
  Placement result{{x.x, y.x, z.x}, {x.y, y.y, z.y}, {x.z, y.z, z.z}, {0, 0, 0}};
  result.origin = -transformedDirection(result, placement.origin);
  return result;
}

Placement standing(const Vector& origin, const Vector& up) {
  const Vector y(0, 1, 0), goal = unit(up);
  const float cosine = dot(y, goal);
  Vector axis = cross(y, goal);
  if (axis.length() < 1e-6f) axis = Vector(1, 0, 0);
  return turned(axis, std::acos(std::clamp(cosine, -1.0f, 1.0f))) >> moved(origin);
}

Placement facing(const Vector& origin, const Vector& target) {
  const Vector back = unit(origin - target);
  Vector right = cross(Vector(0, 1, 0), back);
  right = right.length() < 1e-6f ? Vector(1, 0, 0) : unit(right);
  return {right, cross(back, right), back, origin};
}

// By way of the unit quaternion, whose largest component is worked out first.
AxisAngle axisAngleOf(const Placement& turn) {
  const double m[3][3] = {{turn.right.x, turn.up.x, turn.back.x},
                          {turn.right.y, turn.up.y, turn.back.y},
                          {turn.right.z, turn.up.z, turn.back.z}};
  const double trace = m[0][0] + m[1][1] + m[2][2];
  double q[3], w = 1 + trace;
  int most = 0;
  for (int i = 1; i < 3; ++i)
    if (m[i][i] > m[most][most]) most = i;
  if (trace > m[most][most]) {
    q[0] = m[2][1] - m[1][2], q[1] = m[0][2] - m[2][0], q[2] = m[1][0] - m[0][1];
  } else {
    const int j = (most + 1) % 3, k = (most + 2) % 3;
    q[most] = 1 + m[most][most] - m[j][j] - m[k][k];
    q[j] = m[j][most] + m[most][j];
    q[k] = m[k][most] + m[most][k];
    w = m[k][j] - m[j][k];
  }
  const double size = std::sqrt(q[0] * q[0] + q[1] * q[1] + q[2] * q[2]);
  if (size == 0) return {};
  const double sign = w < 0 ? -1 : 1;
  const auto component = [&](int i) { return static_cast<float>(sign * q[i] / size); };
  return {Vector(component(0), component(1), component(2)),
          static_cast<float>(2 * std::atan2(size, std::fabs(w)))};
}

}  // namespace vex::geometry
