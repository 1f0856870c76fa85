#pragma once

#include <array>
#include <cmath>

#include "engine/vector.h"

namespace vex {

// As Mesh::twist takes it.
struct Twist {
  Vector axis, direction;
  float amount;  // radians at the mesh's radius
};

// What the water's creature is twisted by at a time in seconds, one after the other. Whoever makes its model
// knows by it where the scene draws a place of the body.
inline std::array<Twist, 2> creatureTwists(float t) {
  constexpr float amount = 0.628f;
  return {{{{std::sin(1.33f * t), std::sin(1.76f * t), std::cos(1.92f * t)}, {0, 0, 1}, -amount},
           {{std::cos(2.88f * t), std::sin(2.16f * t), std::sin(2.33f * t)}, {1, 0, 0}, amount}}};
}

}  // namespace vex
