#include "tools/exchange/transform.h"

#include <algorithm>
#include <cmath>

namespace vex {

Pose poseOf(const Transform& t) {
  Place columns[3]{{t.a1, t.b1, t.c1}, {t.a2, t.b2, t.c2}, {t.a3, t.b3, t.c3}};
  const double sign = t.Determinant() < 0 ? -1 : 1;
  Pose pose{.place = translationOf(t), .turn = {}, .scale = {}};
  int flat = 0;
  for (unsigned i = 0; i < 3; ++i) {
    const double length = columns[i].Length();
    pose.scale[i] = sign * length;
    if (length > 0) {
      columns[i] /= sign * length;
    } else {
      ++flat;
    }
  }
  // Of a flattened transform two axes are enough for the third; fewer turn nothing.
  if (flat == 1) {
    for (unsigned i = 0; i < 3; ++i)
      if (columns[i].SquareLength() == 0) columns[i] = columns[(i + 1) % 3] ^ columns[(i + 2) % 3];
  }
  if (flat > 1) return pose;
  pose.turn = Turn(aiMatrix3x3t<double>(columns[0].x, columns[1].x, columns[2].x, columns[0].y, columns[1].y,
                                        columns[2].y, columns[0].z, columns[1].z, columns[2].z));
  pose.turn.Normalize();
  return pose;
}

Transform transformOf(const Pose& pose) {
  // The library's own way to put the three together scales last.
  Transform place, scale;
  Transform::Translation(pose.place, place);
  Transform::Scaling(pose.scale, scale);
  return place * Transform(pose.turn.GetMatrix()) * scale;
}

Transform toTransform(const Matrix& matrix) {
  Transform result;
  for (unsigned r = 0; r < 4; ++r)
    for (unsigned c = 0; c < 4; ++c) result[r][c] = static_cast<double>(matrix.m[r][c]);
  return result;
}

Transform toTransform(const aiMatrix4x4t<float>& matrix) {
  Transform result;
  for (unsigned r = 0; r < 4; ++r)
    for (unsigned c = 0; c < 4; ++c) result[r][c] = static_cast<double>(matrix[r][c]);
  return result;
}

Matrix toMatrix(const Transform& transform) {
  Matrix result;
  for (unsigned r = 0; r < 4; ++r)
    for (unsigned c = 0; c < 4; ++c) result.m[r][c] = static_cast<float>(transform[r][c]);
  return result;
}

Transform linearInverse(const Transform& transform) {
  Transform linear = transform;
  linear.a4 = linear.b4 = linear.c4 = 0;
  return linear.Inverse();
}

bool isSimilarity(const Transform& t, Similarity& parts) {
  const double determinant = t.Determinant();
  const double scale = std::cbrt(std::fabs(determinant));
  if (!(scale > 0) || !std::isfinite(scale)) return false;
  const Place columns[3]{{t.a1, t.b1, t.c1}, {t.a2, t.b2, t.c2}, {t.a3, t.b3, t.c3}};
  constexpr double close = 1e-5;
  for (unsigned i = 0; i < 3; ++i) {
    if (std::fabs(columns[i].Length() / scale - 1) > close) return false;
    if (std::fabs(columns[i] * columns[(i + 1) % 3]) > close * scale * scale) return false;
  }
  parts.place = translationOf(t);
  parts.scale = scale;
  parts.mirrored = determinant < 0;
  const double first = parts.mirrored ? -scale : scale;
  parts.turn = Turn(aiMatrix3x3t<double>(t.a1 / first, t.a2 / scale, t.a3 / scale, t.b1 / first, t.b2 / scale,
                                         t.b3 / scale, t.c1 / first, t.c2 / scale, t.c3 / scale));
  parts.turn.Normalize();
  return true;
}

Turn product(const Turn& second, const Turn& first) {
  Turn result = second * first;
  result.Normalize();
  return result;
}

double angleBetween(const Turn& a, const Turn& b) {
  const Turn inverse(a.w, -a.x, -a.y, -a.z);
  return axisAngleOf(b * inverse).radians;
}

AxisAngle axisAngleOf(const Turn& turn) {
  const double sign = turn.w < 0 ? -1 : 1;
  const Place axis(turn.x * sign, turn.y * sign, turn.z * sign);
  const double sine = axis.Length();
  if (sine < 1e-12) return {};
  return {axis / sine, 2 * std::atan2(sine, std::fabs(turn.w))};
}

Turn between(const Turn& from, const Turn& to, double fraction) {
  const AxisAngle way = axisAngleOf(to * Turn(from.w, -from.x, -from.y, -from.z));
  return product(Turn(way.axis, way.radians * fraction), from);
}

}  // namespace vex
