#pragma once

#include <cstdint>

#include "base/current.h"

namespace vex {

// The one generator of a show, never re-seeded, so that runs repeat.
struct RandomGenerator {
  std::uint32_t state = 1;
};

// Tests may set it.
inline std::uint32_t& randomState() {
  return current<RandomGenerator>().state;
}

// Next value, 0 to 32767: bits 16 to 30 of state * 214013 + 2531011 (linear congruential generator
// modulo 2^32).
inline int randomNext() {
  std::uint32_t& state = randomState();
  state = state * 214013u + 2531011u;
  return static_cast<int>((state >> 16) & 0x7fffu);
}

// Symmetric draw from -range to just below range, in 10000 steps.
inline float randomSymmetric(float range) {
  return static_cast<float>(randomNext() % 10000 - 5000) / 5000.0f * range;
}

}  // namespace vex
