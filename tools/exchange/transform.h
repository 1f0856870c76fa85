#pragma once

#include <assimp/types.h>

#include "engine/matrix.h"
#include "engine/vector.h"

// Places and turns of the files that are exchanged, in double precision: columns are vectors, A * B applies B
// first, turns are right-handed.

namespace vex {

using Place = aiVector3t<double>;
using Turn = aiQuaterniont<double>;
using Transform = aiMatrix4x4t<double>;

inline Vector toVector(const Place& p) {
  return {static_cast<float>(p.x), static_cast<float>(p.y), static_cast<float>(p.z)};
}
inline Place toPlace(const Vector& v) {
  return {static_cast<double>(v.x), static_cast<double>(v.y), static_cast<double>(v.z)};
}
template <typename Real>
Place toPlace(const aiVector3t<Real>& v) {
  return {static_cast<double>(v.x), static_cast<double>(v.y), static_cast<double>(v.z)};
}
inline Place translationOf(const Transform& t) {
  return {t.a4, t.b4, t.c4};
}

// The parts of a transform without shear, applied in the order scale, turn, place. Mirroring ones have three
// negative scales. A scale of 0 leaves its axis unturned.
struct Pose {
  Place place;
  Turn turn;
  Place scale{1, 1, 1};
};

Pose poseOf(const Transform& transform);
Transform transformOf(const Pose& pose);
Transform toTransform(const Matrix& matrix);
Transform toTransform(const aiMatrix4x4t<float>& matrix);
Matrix toMatrix(const Transform& transform);

// The inverse of the part without translation, as one that has none either.
Transform linearInverse(const Transform& transform);

// A transform that is a turn, one scale for all directions, perhaps a mirroring at x = 0, and a translation;
// applied in the order mirroring, scale, turn.
struct Similarity {
  Place place;
  Turn turn;
  double scale = 1;
  bool mirrored = false;
};
bool isSimilarity(const Transform& transform, Similarity& parts);

// The turn seen in a mirror at x = 0.
inline Turn mirroredTurn(const Turn& q) {
  return {q.w, q.x, -q.y, -q.z};
}

Turn product(const Turn& second, const Turn& first);  // of length 1
double angleBetween(const Turn& a, const Turn& b);    // radians, 0 to pi

// The shorter way of a turn: its axis and its angle, 0 to pi. The axis of no turn is y.
struct AxisAngle {
  Place axis{0, 1, 0};
  double radians = 0;
};
AxisAngle axisAngleOf(const Turn& turn);

// Along the shorter way between two turns.
Turn between(const Turn& from, const Turn& to, double fraction);

}  // namespace vex
