#include "production/geometry/bake.h"

#include <gtest/gtest.h>

#include <cmath>

#include "production/geometry/forms.h"
#include "production/geometry/mapping.h"
#include "production/image/noise.h"

// Rays against a plain search, baked light against closed formulas.

namespace vex {

using namespace image;
using namespace geometry;

namespace {

float random(int i, int what) {
  return hashUnit(i, what, 77) * 2 - 1;
}

Vector randomVector(int i, int what) {
  return {random(i, what), random(i, what + 1), random(i, what + 2)};
}

// The nearest triangle by Cramer's rule over all, in double precision.
RayHit searched(const Surface& surface, const Vector& from, const Vector& direction) {
  RayHit best;
  double least = 1e30;
  for (std::size_t i = 0; i < surface.triangles.size(); ++i) {
    const auto& p = surface.triangles[i].points;
    const Vector &a = surface.points[static_cast<std::size_t>(p[0])],
                 &b = surface.points[static_cast<std::size_t>(p[1])],
                 &c = surface.points[static_cast<std::size_t>(p[2])];
    const double m[3][3] = {{b.x - a.x, c.x - a.x, -direction.x},
                            {b.y - a.y, c.y - a.y, -direction.y},
                            {b.z - a.z, c.z - a.z, -direction.z}};
    const double r[3] = {from.x - a.x, from.y - a.y, from.z - a.z};
    const auto det = [&](int column) {
      double n[3][3];
      for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 3; ++x) n[y][x] = x == column ? r[y] : m[y][x];
      return n[0][0] * (n[1][1] * n[2][2] - n[1][2] * n[2][1]) -
             n[0][1] * (n[1][0] * n[2][2] - n[1][2] * n[2][0]) +
             n[0][2] * (n[1][0] * n[2][1] - n[1][1] * n[2][0]);
    };
    const double all = det(-1);
    if (std::fabs(all) < 1e-14) continue;
    const double u = det(0) / all, v = det(1) / all, t = det(2) / all;
    if (u < 0 || v < 0 || u + v > 1 || t <= 0 || t >= least) continue;
    least = t;
    best = {true, static_cast<float>(t), static_cast<int>(i),
            dot(normalOf(surface, surface.triangles[i]), direction) < 0};
  }
  return best;
}

BakeLook plainLook(int rays) {
  BakeLook look;
  look.rays = rays;
  return look;
}

}  // namespace

TEST(Rays, HitWhatAPlainSearchHits) {
  Surface heap;
  for (int i = 0; i < 600; ++i) {
    const Vector at = randomVector(i, 0);
    const int a = addPoint(heap, at), b = addPoint(heap, at + randomVector(i, 3) * 0.3f),
              c = addPoint(heap, at + randomVector(i, 6) * 0.3f);
    addTriangle(heap, a, b, c);
  }
  append(heap, plane(2, 2, 30, 30));  // many triangles in one plane
  const RayTree tree = rayTree(heap);
  int hits = 0;
  for (int i = 0; i < 1500; ++i) {
    const Vector from = randomVector(i, 20) * 1.5f;
    Vector direction = randomVector(i, 30);
    if (i % 5 == 0) direction = i % 2 ? Vector(0, -1, 0) : Vector(0, 0, 1);  // along the axes
    const RayHit expected = searched(heap, from, direction), found = castRay(tree, from, direction, 1e30f);
    ASSERT_EQ(found.hit, expected.hit) << i;
    EXPECT_EQ(blocked(tree, from, direction, 1e30f), expected.hit) << i;
    if (!expected.hit) continue;
    ++hits;
    EXPECT_NEAR(found.distance, expected.distance, 1e-4 * (1 + expected.distance)) << i;
    EXPECT_EQ(found.front, expected.front) << i;
    EXPECT_FALSE(blocked(tree, from, direction, expected.distance * 0.999f)) << i;
  }
  EXPECT_GT(hits, 400);
  EXPECT_FALSE(castRay(rayTree({}), {0, 0, 0}, {0, 1, 0}, 1e30f).hit);
}

TEST(Bake, OpennessFollowsTheFormFactor) {
  // A floor and a wall behind z = 0 that is `height` high and endless sideways: of the light that a
  // horizontal floor at distance d receives the wall takes (1 - d / sqrt(d^2 + height^2)) / 2.
  constexpr float height = 3;
  Surface corner = plane(4000, 4000, 1, 1);
  append(corner, placed(card(4000, height), moved(0, 0, 0)));
  const RayTree tree = rayTree(corner);
  const BakeLook look = plainLook(4096);
  for (const float d : {0.01f, 0.5f, 1.0f, 3.0f, 20.0f}) {
    const float expected = 1 - (1 - d / std::hypot(d, height)) / 2;
    const BakedLight light = lightAt(tree, look, {0, 0.001f, d}, {0, 1, 0}, 5);
    EXPECT_NEAR(light.open, expected, 0.01) << d;
    EXPECT_NEAR(light.light.g, expected, 0.01) << d;
  }
  EXPECT_EQ(lightAt(rayTree(plane(10, 10, 4, 4)), plainLook(64), {0.3f, 0.001f, 0.2f}, {0, 1, 0}, 9).open, 1);
  // What is farther than the reach does not darken.
  BakeLook near = look;
  near.reach = 1;
  EXPECT_EQ(lightAt(tree, near, {0, 0.001f, 1.1f}, {0, 1, 0}, 5).open, 1);
  EXPECT_LT(lightAt(tree, near, {0, 0.001f, 0.1f}, {0, 1, 0}, 5).open, 0.8f);
}

TEST(Bake, TheSkyIsWeighedByTheCosine) {
  // A sky of brightness y over a floor: the mean of cos over a cosine-weighted half-sphere is 2/3.
  BakeLook look = plainLook(1024);
  look.sky = [](const Vector& d) { return Colour4{d.y, d.x + 1, 0}; };
  const BakedLight light = lightAt({}, look, {0, 0, 0}, {0, 1, 0}, 3);
  EXPECT_NEAR(light.light.r, 2 / 3.0, 0.002);
  EXPECT_NEAR(light.light.g, 1, 0.002);
}

TEST(Bake, LightsFallWithTheCosineAndCastSoftShadows) {
  BakeLook look = plainLook(1);
  look.sky = [](const Vector&) { return Colour4{0, 0, 0}; };
  look.shadowRays = 1024;
  look.lights = {{.towards = Vector(0, 2, 2), .size = 0, .colour = {1, 0.5f, 0}}};
  const BakedLight slanted = lightAt({}, look, {0, 0, 0}, {0, 1, 0}, 1);
  EXPECT_NEAR(slanted.light.r, std::sqrt(0.5), 1e-5);
  EXPECT_NEAR(slanted.light.g, std::sqrt(0.5) / 2, 1e-5);
  EXPECT_EQ(lightAt({}, look, {0, 0, 0}, {0, -1, 0}, 1).light.r, 0);

  // A roof over x < 0 at height 1 under a lamp straight above of radius 0.2 a unit of way: at x the edge of
  // the roof cuts the lamp's disc at x / 0.2 of its radius.
  const RayTree roof = rayTree(placed(plane(200, 200, 1, 1), moved(-100, 1, 0)));
  look.lights = {{.towards = Vector(0, 1, 0), .size = 0.2f}};
  const auto share = [](double c) {  // of a disc to the right of -c
    return c <= -1 ? 0 : c >= 1 ? 1 : 0.5 + (c * std::sqrt(1 - c * c) + std::asin(c)) / 3.14159265;
  };
  for (const float x : {-0.3f, -0.15f, -0.05f, 0.0f, 0.1f, 0.19f, 0.3f})
    EXPECT_NEAR(lightAt(roof, look, {x, 0, 0}, {0, 1, 0}, 7).light.r, share(x / 0.2), 0.02) << x;

  // A lamp at a place: nothing behind it shades, and at its reach it has half its strength.
  look.lights = {{.towards = Vector(0, 0.5f, 0), .placed = true, .size = 0, .reach = 0.5f}};
  EXPECT_NEAR(lightAt(roof, look, {0, 0, 0}, {0, 1, 0}, 7).light.r, 0.5, 1e-4);
  look.lights[0].towards = Vector(-2, 3, 0);
  EXPECT_EQ(lightAt(roof, look, {-2, 0, 0}, {0, 1, 0}, 7).light.r, 0);
}

TEST(Bake, PaintsEachTexelFromItsOwnPlaceAndBleeds) {
  const Surface box = mappedAtlas(bevelledBox({2, 1, 3}, 0), {.side = 128});
  BakeLook look = plainLook(4);
  BakePaint paint;
  paint.side = 128;
  paint.wearWidth = 0.1f;
  float mostEdge = 0;
  paint.paint = [&](const BakePoint& p) {
    const float out = std::max(
        {std::fabs(p.position.x) / 1, std::fabs(p.position.y) / 0.5f, std::fabs(p.position.z) / 1.5f});
    EXPECT_NEAR(out, 1, 0.05);
    EXPECT_GT(dot(p.normal, p.position), 0.4f);
    EXPECT_GT(p.edge, -1e-6f);
    mostEdge = std::max(mostEdge, p.edge);
    return Colour4{p.position.x / 4 + 0.5f, p.position.y / 4 + 0.5f, p.position.z / 4 + 0.5f};
  };
  const Canvas picture = bake(box, rayTree(box), look, paint);
  EXPECT_GT(mostEdge, 0.9f);
  int bled = 0;
  // Four texels out from the middle of each border edge there is still the colour of the border.
  for (const Triangle& t : box.triangles)
    for (std::size_t k = 0; k < 3; ++k) {
      const Uv &p = t.uv[k], &q = t.uv[(k + 1) % 3], &r = t.uv[(k + 2) % 3];
      const float dx = q.u - p.u, dy = q.v - p.v, length = std::hypot(dx, dy);
      const Vector &a = box.points[static_cast<std::size_t>(t.points[k])],
                   &b = box.points[static_cast<std::size_t>(t.points[(k + 1) % 3])];
      const float sideways = ((r.u - p.u) * dy - (r.v - p.v) * dx) > 0 ? -1.0f : 1.0f;
      if (((a - b).x != 0) + ((a - b).y != 0) + ((a - b).z != 0) != 1) continue;  // the diagonals
      const float u = (p.u + q.u) / 2 + sideways * dy / length * 4 / 128,
                  v = (p.v + q.v) / 2 - sideways * dx / length * 4 / 128;
      const Colour4& texel = picture.at(static_cast<int>(u * 128), static_cast<int>((1 - v) * 128));
      const Vector middle = (a + b) * 0.5f;
      EXPECT_NEAR(texel.r, middle.x / 4 + 0.5f, 0.03);
      EXPECT_NEAR(texel.g, middle.y / 4 + 0.5f, 0.03);
      EXPECT_NEAR(texel.b, middle.z / 4 + 0.5f, 0.03);
      ++bled;
    }
  EXPECT_EQ(bled, 24);
}

TEST(Bake, PlasterShowsTheLightAlone) {
  const Surface ground = mappedAtlas(plane(2, 2, 1, 1), {.side = 16});
  BakePaint paint;
  paint.side = 16;
  paint.paint = [](const BakePoint&) { return Colour4{1, 0, 1}; };
  BakeLook look = plainLook(4);
  look.sky = [](const Vector&) { return Colour4{0, 0.5f, 3}; };
  bakesPlaster = true;
  const Canvas picture = bake(ground, {}, look, paint);
  bakesPlaster = false;
  EXPECT_NEAR(picture.at(8, 8).r, 0, 1e-4);
  EXPECT_NEAR(picture.at(8, 8).g, 0.3935, 1e-3);  // 1 - 1 / sqrt(e)
  EXPECT_NEAR(picture.at(8, 8).b, 0.9502, 1e-3);
}

TEST(Bake, KnowsEdgesFromCreases) {
  // A step: its upper edge is convex, its lower one a crease.
  Surface step;
  append(step, placed(plane(2, 1, 1, 1), moved(0, 0, 0.5f)));
  append(step, card(2, 1));
  append(step, placed(plane(2, 1, 1, 1), moved(0, 1, -0.5f)));
  const Surface atlas = mappedAtlas(step, {.side = 128});
  BakePaint paint;
  paint.side = 128, paint.lit = false, paint.wearWidth = 0.2f;
  int convex = 0, creases = 0;
  paint.paint = [&](const BakePoint& p) {
    const float toCrease = std::hypot(p.position.y, p.position.z),
                toEdge = std::hypot(p.position.y - 1, p.position.z);
    const float expected = std::max(0.0f, 1 - toEdge / 0.2f) - std::max(0.0f, 1 - toCrease / 0.2f);
    EXPECT_NEAR(p.edge, expected, 0.02);
    convex += p.edge > 0.5f, creases += p.edge < -0.5f;
    return Colour4{p.light};
  };
  bake(atlas, {}, plainLook(1), paint);
  EXPECT_GT(convex, 50);
  EXPECT_GT(creases, 50);
}

}  // namespace vex
