#pragma once

#include <cmath>

// Points and directions of four floats. w is the homogeneous weight, 1 in every vector made here.
// Nothing guards its input: dividing by 0, or the angle to a vector of length 0, gives no finite number.

namespace vex {

struct Vector {
  float x = 0.0f;
  float y = 0.0f;
  float z = 0.0f;
  float w = 1.0f;

  Vector() = default;
  Vector(float newX, float newY, float newZ) : x(newX), y(newY), z(newZ) {}

  void set(float newX, float newY, float newZ) { *this = Vector(newX, newY, newZ); }
  float length() const { return std::sqrt(x * x + y * y + z * z); }
  void normalize();  // in place; a vector of length 0 stays as it is

  // In place on x, y and z; each returns a copy. Division multiplies by the float 1 / s.
  Vector operator+=(const Vector& other);
  Vector operator-=(const Vector& other);
  Vector operator*=(float s);
  Vector operator/=(float s);
};

inline Vector operator-(const Vector& a) {
  return {-a.x, -a.y, -a.z};
}

inline Vector operator+(const Vector& a, const Vector& b) {
  return {a.x + b.x, a.y + b.y, a.z + b.z};
}

inline Vector operator-(const Vector& a, const Vector& b) {
  return {a.x - b.x, a.y - b.y, a.z - b.z};
}

inline Vector operator*(const Vector& a, float s) {
  return {a.x * s, a.y * s, a.z * s};
}

inline Vector operator/(const Vector& a, float s) {
  return a * (1.0f / s);
}

// Exact, on x, y and z.
inline bool operator==(const Vector& a, const Vector& b) {
  return a.x == b.x && a.y == b.y && a.z == b.z;
}

inline float dot(const Vector& a, const Vector& b) {
  return a.x * b.x + a.y * b.y + a.z * b.z;
}

inline Vector cross(const Vector& a, const Vector& b) {
  return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

// Radians, 0 to pi.
inline float angle(const Vector& a, const Vector& b) {
  return std::acos(dot(a, b) / (a.length() * b.length()));
}

inline void Vector::normalize() {
  if (const float size = length(); size > 0.0f) *this *= 1.0f / size;
}

inline Vector Vector::operator+=(const Vector& other) {
  x += other.x;
  y += other.y;
  z += other.z;
  return *this;
}

inline Vector Vector::operator-=(const Vector& other) {
  x -= other.x;
  y -= other.y;
  z -= other.z;
  return *this;
}

inline Vector Vector::operator*=(float s) {
  x *= s;
  y *= s;
  z *= s;
  return *this;
}

inline Vector Vector::operator/=(float s) {
  return *this *= 1.0f / s;
}

}  // namespace vex
