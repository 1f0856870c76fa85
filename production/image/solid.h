#pragma once

#include <functional>

#include "engine/vector.h"

// Solids as signed distances in space.

namespace vex::image {

using Solid = std::function<float(const Vector& p)>;  // negative inside, never more than the true distance

float ball(const Vector& p, const Vector& centre, float radius);
// Half axes; a close lower bound.
float ellipsoid(const Vector& p, const Vector& centre, const Vector& axes);
// From a to b, its radius going from ra to rb.
float taper(const Vector& p, const Vector& a, const Vector& b, float ra, float rb);

// Unit normal near the surface, from differences over `step`.
Vector normalAt(const Solid& solid, const Vector& p, float step);

}  // namespace vex::image
