#include <gtest/gtest.h>

#include <cmath>

#include "production/image/environment.h"
#include "production/image/filter.h"
#include "production/image/noise3.h"
#include "production/image/solid.h"

// Synthesis in space: noise, worlds as functions of direction, solids; and light on height fields.

namespace vex {

using namespace image;

namespace {

Vector placeOf(int i) {
  const auto n = static_cast<float>(i);
  return {n * 0.375f - 3, n * 0.625f, 7 - n * 0.21875f};
}

// Each direction has a colour of its own.
Colour4 compass(const Vector& d) {
  return {0.5f + 0.5f * d.x, 0.5f + 0.5f * d.y, 0.5f + 0.5f * d.z};
}

void expectDirection(const Colour4& colour, const Vector& d, const char* what) {
  EXPECT_NEAR(colour.r, 0.5 + 0.5 * d.x, 0.01) << what;
  EXPECT_NEAR(colour.g, 0.5 + 0.5 * d.y, 0.01) << what;
  EXPECT_NEAR(colour.b, 0.5 + 0.5 * d.z, 0.01) << what;
}

}  // namespace

TEST(SpaceNoise, RepeatsWithItsPeriodInAllAxes) {
  for (int i = 0; i < 40; ++i) {
    const Vector p = placeOf(i);
    for (const Vector& shift : {Vector(4, 0, 0), Vector(0, -8, 0), Vector(0, 0, 4), Vector(-4, 4, 12)}) {
      EXPECT_EQ(valueNoise(p, 4, 9), valueNoise(p + shift, 4, 9));
      EXPECT_EQ(gradientNoise(p, 4, 9), gradientNoise(p + shift, 4, 9));
      EXPECT_EQ(fractal(p, 4, 4, 0.5f, 9), fractal(p + shift, 4, 4, 0.5f, 9));
      EXPECT_NEAR(cellularNoise(p, 4, 9).nearest, cellularNoise(p + shift, 4, 9).nearest, 1e-5);
      const Vector moved = warp(p + shift, 4, 0.5f, 9) - warp(p, 4, 0.5f, 9);
      EXPECT_NEAR((moved - shift).length(), 0, 1e-5);
    }
    EXPECT_NE(valueNoise(p + Vector(0.1f, 0.2f, 0.3f), 0, 9),
              valueNoise(p + Vector(0.1f, 0.2f, 0.3f), 0, 10));
  }
}

TEST(SpaceNoise, VariesAlongEachAxisAndKeepsItsRange) {
  for (const Vector& axis : {Vector(1, 0, 0), Vector(0, 1, 0), Vector(0, 0, 1)}) {
    float least = 9, most = -9, sum = 0;
    for (int i = 0; i < 400; ++i) {
      const Vector p = axis * (static_cast<float>(i) * 0.37f) + Vector(0.4f, 0.3f, 0.6f);
      const float value = gradientNoise(p, 0, 3);
      least = std::min(least, value), most = std::max(most, value), sum += value / 400;
      const float plain = valueNoise(p, 0, 3);
      EXPECT_TRUE(plain >= 0 && plain <= 1);
    }
    EXPECT_TRUE(least < -0.4f && least >= -1.1f) << least;
    EXPECT_TRUE(most > 0.4f && most <= 1.1f) << most;
    EXPECT_NEAR(sum, 0, 0.12);
  }
  EXPECT_EQ(gradientNoise(Vector(3, -2, 5), 0, 7), 0);  // on the lattice
}

// A distance to the nearest of fixed points never changes faster than one moves; a neighbour left out of the
// search would make it jump.
TEST(SpaceNoise, CellularDistancesDoNotJump) {
  const float step = 0.01f;
  Vector p(-2, -1.5f, 0.25f);
  for (int i = 0; i < 3000; ++i) {
    const Vector next = p + Vector(0.6f, 0.48f, 0.64f) * step;
    const NoiseCell here = cellularNoise(p, 0, 5), there = cellularNoise(next, 0, 5);
    EXPECT_LE(std::fabs(there.nearest - here.nearest), 1.001f * step + 1e-5f) << i;
    EXPECT_LE(here.nearest, here.second);
    p = next;
  }
}

TEST(Environment, FacesOfTheBoxLookTheirWaysAndShareTheirEdges) {
  const int side = 17, last = side - 1, middle = side / 2;
  const Canvas top = boxFace(compass, SkyFace::top, side), bottom = boxFace(compass, SkyFace::bottom, side),
               north = boxFace(compass, SkyFace::north, side), west = boxFace(compass, SkyFace::west, side),
               south = boxFace(compass, SkyFace::south, side), east = boxFace(compass, SkyFace::east, side);
  expectDirection(top.at(middle, middle), {0, 1, 0}, "top");
  expectDirection(bottom.at(middle, middle), {0, -1, 0}, "bottom");
  expectDirection(north.at(middle, middle), {0, 0, 1}, "north");
  expectDirection(west.at(middle, middle), {-1, 0, 0}, "west");
  expectDirection(south.at(middle, middle), {0, 0, -1}, "south");
  expectDirection(east.at(middle, middle), {1, 0, 0}, "east");

  const auto same = [](const Colour4& p, const Colour4& q) {
    return std::fabs(p.r - q.r) + std::fabs(p.g - q.g) + std::fabs(p.b - q.b) < 1e-5f;
  };
  for (int i = 0; i < side; ++i) {
    // The panorama from left to right: south, east, north, west, and round.
    EXPECT_TRUE(same(south.at(last, i), east.at(0, i))) << i;
    EXPECT_TRUE(same(east.at(last, i), north.at(0, i))) << i;
    EXPECT_TRUE(same(north.at(last, i), west.at(0, i))) << i;
    EXPECT_TRUE(same(west.at(last, i), south.at(0, i))) << i;
    // The top's lower edge joins the east, its left one the south, its right one the north.
    EXPECT_TRUE(same(top.at(i, last), east.at(i, 0))) << i;
    EXPECT_TRUE(same(top.at(0, i), south.at(i, 0))) << i;
    EXPECT_TRUE(same(top.at(last, i), north.at(last - i, 0))) << i;
    EXPECT_TRUE(same(top.at(i, 0), west.at(last - i, 0))) << i;
    // The bottom's upper edge joins the east, its left one the south, its right one the north.
    EXPECT_TRUE(same(bottom.at(i, 0), east.at(i, last))) << i;
    EXPECT_TRUE(same(bottom.at(0, i), south.at(last - i, last))) << i;
    EXPECT_TRUE(same(bottom.at(last, i), north.at(i, last))) << i;
    EXPECT_TRUE(same(bottom.at(i, last), west.at(last - i, last))) << i;
  }
}

TEST(Environment, SphereMapsFollowTheLawOfReflection) {
  const int side = 256;
  const Canvas map = sphereMap(compass, lookTowards(0, 0), side, 1);  // along east, right is north
  const auto at = [&](double x, double y) {                           // of the normal
    return map.at(static_cast<int>((0.5 + 0.5 * x) * side), static_cast<int>((0.5 - 0.5 * y) * side));
  };
  expectDirection(at(0, 0), {-1, 0, 0}, "straight back");
  const double diagonal = std::sqrt(0.5);
  expectDirection(at(diagonal, 0), {0, 0, 1}, "right");
  expectDirection(at(0, diagonal), {0, 1, 0}, "up");
  expectDirection(at(-diagonal, 0), {0, 0, -1}, "left");
  // 30 degrees of the normal turn the ray by 60.
  expectDirection(at(0.5, 0), {-0.5f, 0, std::sqrt(0.75f)}, "half right");
}

TEST(Solid, NormalsPointOutwards) {
  const Solid one = [](const Vector& p) { return ball(p, Vector(0, 0, -5), 2); };
  const Vector normal = normalAt(one, Vector(1, 0, -5 + std::sqrt(3.0f)), 1e-3f);
  EXPECT_NEAR(normal.x, 0.5, 1e-2);
  EXPECT_NEAR(normal.y, 0, 1e-2);
  EXPECT_NEAR(normal.z, std::sqrt(0.75), 1e-2);
}

TEST(Solid, TapersAndEllipsoidsNeverOverestimate) {
  EXPECT_NEAR(taper(Vector(0.5f, 2, 0), Vector(0, 0, 0), Vector(1, 0, 0), 0.2f, 0.4f), 2 - 0.3, 1e-5);
  EXPECT_NEAR(taper(Vector(-3, 4, 0), Vector(0, 0, 0), Vector(1, 0, 0), 0.2f, 0.4f), 5 - 0.2, 1e-5);
  const Vector axes(3, 1, 0.5f);
  EXPECT_NEAR(ellipsoid(Vector(0, 0, 0.5f), Vector(0, 0, 0), axes), 0, 1e-6);
  EXPECT_LE(ellipsoid(Vector(5, 0, 0), Vector(0, 0, 0), axes), 2);
  EXPECT_LE(ellipsoid(Vector(0, 3, 0), Vector(0, 0, 0), axes), 2);
}

TEST(Relief, ShadowsAreAsLongAsTheSunIsLow) {
  // A wall 10 texels high at column 20; light from the left, rising 1 in 1 and 1 in 2.
  Field heights(64, 8);
  for (int y = 0; y < 8; ++y) heights.at(20, y) = 10;
  const struct {
    float rise;
    int length;
  } cases[] = {{1, 10}, {0.5f, 20}};
  for (const auto& [rise, length] : cases) {
    const Field lit = castShadows(heights, -1, 0, rise, 40, 0.1f, EdgeMode::clamp);
    EXPECT_EQ(lit.at(18, 4), 1) << "before the wall";
    EXPECT_EQ(lit.at(20, 4), 1) << "on the wall";
    EXPECT_EQ(lit.at(20 + length - 4, 4), 0) << "in the shadow, rise " << rise;
    EXPECT_EQ(lit.at(20 + length + 5, 4), 1) << "beyond the shadow, rise " << rise;
  }
}

}  // namespace vex
