#include "engine/vector.h"

#include <gtest/gtest.h>

#include "base/pi.h"

namespace vex {
namespace {

void expectVector(const Vector& v, float x, float y, float z, float w = 1.0f) {
  EXPECT_FLOAT_EQ(v.x, x);
  EXPECT_FLOAT_EQ(v.y, y);
  EXPECT_FLOAT_EQ(v.z, z);
  EXPECT_EQ(v.w, w);
}

Vector withWeight(float x, float y, float z, float w) {
  Vector v(x, y, z);
  v.w = w;
  return v;
}

TEST(Vector, OperationsGiveTheWeightOne) {
  const Vector a = withWeight(1, 2, 3, 5), b = withWeight(-4, 0.5f, 2, 7);
  expectVector(Vector(), 0, 0, 0);
  expectVector(-a, -1, -2, -3);
  expectVector(a + b, -3, 2.5f, 5);
  expectVector(a - b, 5, 1.5f, 1);
  expectVector(a * 3, 3, 6, 9);
  expectVector(a / 4, 0.25f, 0.5f, 0.75f);
  expectVector(cross(a, b), 2.5f, -14, 8.5f);
  Vector c = a;
  c.set(7, 8, 9);
  expectVector(c, 7, 8, 9);
}

TEST(Vector, OperationsInPlaceKeepTheWeightAndReturnACopy) {
  Vector a = withWeight(1, 2, 3, 5);
  Vector copy = a += Vector(1, 1, 1);
  copy.x = 99;
  expectVector(a, 2, 3, 4, 5);
  expectVector(copy, 99, 3, 4, 5);
  expectVector(a -= Vector(2, 1, 0), 0, 2, 4, 5);
  expectVector(a *= 2, 0, 4, 8, 5);
  expectVector(a /= 8, 0, 0.5f, 1, 5);
}

TEST(Vector, DivisionMultipliesByTheReciprocal) {
  const float x = 41.0f, s = 41.0f;
  ASSERT_NE(x / s, x * (1.0f / s)) << "the case cannot tell them apart";
  EXPECT_EQ((Vector(x, 0, 0) / s).x, x * (1.0f / s));
  Vector v(x, 0, 0);
  v /= s;
  EXPECT_EQ(v.x, x * (1.0f / s));
}

TEST(Vector, LengthsAndAngles) {
  EXPECT_EQ(Vector(2, -3, 6).length(), 7.0f);
  EXPECT_EQ(dot(Vector(1, 2, 3), Vector(4, -5, 6)), 12.0f);
  EXPECT_NEAR(angle(Vector(3, 0, 0), Vector(1, 1, 0)), 0.78539816f, 1e-6);
  EXPECT_NEAR(angle(Vector(0, 2, 0), Vector(0, -5, 0)), pi, 1e-6);
  Vector v(0, 3, -4);
  v.normalize();
  expectVector(v, 0, 0.6f, -0.8f);
  Vector zero;
  zero.normalize();
  expectVector(zero, 0, 0, 0);
}

TEST(Vector, EqualityIsExactAndIgnoresTheWeight) {
  EXPECT_TRUE(Vector(1, 2, 3) == withWeight(1, 2, 3, 9));
  EXPECT_FALSE(Vector(1, 2, 3) == Vector(1, 2, 3.0000003f));
}

}  // namespace
}  // namespace vex
