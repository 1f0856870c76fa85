#pragma once

#include "engine/vector.h"

// Places and turns in space, right-handed: a positive turn runs counter-clockwise seen from the tip of
// its axis. (The engine's own rotations run the other way; only the writer of models needs to know.)

namespace vex::geometry {

// Where the unit axes and the origin of a thing go. Points p become right * p.x + up * p.y + back * p.z +
// origin.
struct Placement {
  Vector right{1, 0, 0}, up{0, 1, 0}, back{0, 0, 1};
  Vector origin{0, 0, 0};
};

Vector transformed(const Placement& placement, const Vector& point);
Vector transformedDirection(const Placement& placement, const Vector& direction);  // without the origin

Placement moved(float x, float y, float z);
Placement moved(const Vector& by);
Placement stretched(float x, float y, float z);
Placement stretched(float all);
Placement turned(const Vector& axis, float radians);
Placement turnedX(float degrees);
Placement turnedY(float degrees);
Placement turnedZ(float degrees);

// First `first`, then `second`: moved(...) >> turnedY(90) turns about the world's origin what was moved.
Placement operator>>(const Placement& first, const Placement& second);
Placement inverse(const Placement& placement);  // of any that is not flat
float handedness(const Placement& placement);   // determinant: negative for mirrors

// Takes +y of the thing to `up` and leaves it at `origin`; the turn about that axis is the smallest.
Placement standing(const Vector& origin, const Vector& up);
// Takes -z of the thing (a camera's gaze) towards `target`, +y as near to the world's up as it goes.
Placement facing(const Vector& origin, const Vector& target);

inline Vector unit(Vector v) {
  v.normalize();
  return v;
}
inline Vector mix(const Vector& p, const Vector& q, float k) {
  return p + (q - p) * k;
}

// Axis (unit) and angle, 0 to pi, of a turn: the placement's axes must be at right angles and of length 1.
struct AxisAngle {
  Vector axis{0, 1, 0};
  float radians = 0;
};
AxisAngle axisAngleOf(const Placement& turn);

}  // namespace vex::geometry
