#pragma once

#include <gtest/gtest.h>

#include "engine/vector.h"

// Places and directions, but for rounding.

namespace vex {

inline void expectNear(const Vector& v, double x, double y, double z, double tolerance = 1e-4) {
  EXPECT_NEAR(v.x, x, tolerance);
  EXPECT_NEAR(v.y, y, tolerance);
  EXPECT_NEAR(v.z, z, tolerance);
}

inline void expectNear(const Vector& v, const Vector& expected, double tolerance = 1e-4) {
  expectNear(v, expected.x, expected.y, expected.z, tolerance);
}

}  // namespace vex
