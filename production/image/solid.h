#pragma once

#include <functional>
#include <optional>

#include "engine/vector.h"
#include "production/image/environment.h"

// Solids as signed distances in space, and rays through them.

namespace vex {

using Solid = std::function<float(const Vector& p)>;  // negative inside, never more than the true distance

float ball(const Vector& p, const Vector& centre, float radius);
// Half axes; a close lower bound.
float ellipsoid(const Vector& p, const Vector& centre, const Vector& axes);
// From a to b, its radius going from ra to rb.
float taper(const Vector& p, const Vector& a, const Vector& b, float ra, float rb);

struct RayMarch {
  bool hit = false;
  float length = 0;
  float nearest = 1e9f;  // least distance on the way over the length there, in units of the ray's length
};
RayMarch march(const Solid& solid, const Vector& from, const Vector& direction, float most, float precision);

// Unit normal near the surface, from differences over `step`.
Vector normalAt(const Solid& solid, const Vector& p, float step);

// 1 in the open, 0 in a deep hollow.
float openness(const Solid& solid, const Vector& p, const Vector& normal, float reach);

// Polished metal in a world: what it mirrors, mirrored once more where it sees itself, darker in hollows.
struct Chrome {
  Colour4 tint{0.9f, 0.92f, 0.97f};
  float hollows = 0.25f;  // reach of the shade in hollows
};
Colour4 shadeChrome(const Solid& solid, const Environment& world, const Chrome& chrome, const Vector& p,
                    const Vector& direction);

}  // namespace vex
