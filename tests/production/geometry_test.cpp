#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "base/pi.h"
#include "production/geometry/forms.h"
#include "production/geometry/isosurface.h"
#include "production/geometry/mapping.h"
#include "production/geometry/simplify.h"
#include "production/image/noise3.h"

// Surfaces against closed formulas: volumes, areas, Euler's characteristic, mapping.

namespace vex {

using namespace image;
using namespace geometry;

namespace {

// Of the points as they are: hard edges closed.
Topology closedTopology(const Surface& surface) {
  return topologyOf(welded(surface, 1e-4f));
}

struct Form {
  const char* what;
  Surface surface;
  float volume, area;
  float tolerance;  // relative
  int euler;
};

std::vector<Form> closedForms() {
  const auto circle = [](int n, float radius, float x, bool clockwise) {
    Outline outline;
    for (int i = 0; i < n; ++i) {
      const float turn = 2 * pi * static_cast<float>(clockwise ? n - i : i) / static_cast<float>(n);
      outline.push_back({x + radius * std::cos(turn), radius * std::sin(turn)});
    }
    return outline;
  };
  const Outline square{{-2, -2}, {2, -2}, {2, 2}, {-2, 2}};
  IsoOptions iso;
  iso.bounds = {Vector(-1.2f, -1.2f, -1.2f), Vector(1.2f, 1.2f, 1.2f)};
  iso.cell = 0.1f;
  const Solid ballSolid = [](const Vector& p) { return ball(p, {0, 0, 0}, 1); };
  const Solid ringSolid = [](const Vector& p) { return torusDistance(p, {0, 0, 0}, 0.8f, 0.25f); };
  const std::vector<Vector> straight{{0, 0, 0}, {0, 0, -2}, {0, 0, -5}};
  return {
      {"sphere", sphere(2, 64, 32), 4 / 3.0f * pi * 8, 4 * pi * 4, 0.01f, 2},
      {"geodesic", geodesic(2, 4), 4 / 3.0f * pi * 8, 4 * pi * 4, 0.01f, 2},
      {"ellipsoid", superellipsoid({1, 2, 3}, 1, 1, 64, 32), 4 / 3.0f * pi * 6, 48.882f, 0.01f, 2},
      {"torus", torus(3, 1, 64, 32), 2 * pi * pi * 3, 4 * pi * pi * 3, 0.01f, 0},
      {"cylinder", cylinder(1, 3, 64), pi * 3, 2 * pi * 3 + 2 * pi, 0.01f, 2},
      {"box", bevelledBox({2, 3, 4}, 0), 24, 52, 1e-5f, 2},
      {"box in cells", bevelledBox({2, 3, 4}, 0, 5), 24, 52, 1e-5f, 2},
      // Twelve edges lose a prism each; at a corner these overlap by b^3 / 2 - b^3 / 6 and what stays is a
      // face.
      {"bevelled box", bevelledBox({2, 2, 2}, 0.2f, 3), 8 - 12 * 0.02f * 1.6f - 8 * 5 / 6.0f * 0.008f,
       6 * 2.56f + 12 * 1.6f * std::sqrt(0.08f) + 8 * std::sqrt(3.0f) / 4 * 0.08f, 1e-4f, 2},
      {"flat tube",
       tube(
           straight, 64, [](float) { return 1.0f; }, TubeEnd::flat),
       pi * 5, 2 * pi * 5 + 2 * pi, 0.01f, 2},
      {"capsule",
       tube(
           straight, 64, [](float) { return 1.0f; }, TubeEnd::round),
       pi * 5 + 4 / 3.0f * pi, 2 * pi * 5 + 4 * pi, 0.04f, 2},
      {"extruded ring", extrusion({circle(64, 2, 0, false), circle(64, 1, 0, true)}, 0.5f), pi * 1.5f,
       2 * pi * 3 + 0.5f * 2 * pi * 3, 0.01f, 0},
      {"extruded plate with two holes",
       extrusion({square, circle(32, 0.5f, -1, true), circle(32, 0.5f, 1, true)}, 1), 16 - pi / 2,
       2 * (16 - pi / 2) + 16 + 2 * pi, 0.01f, -2},
      {"marched ball", isosurface(ballSolid, iso), 4 / 3.0f * pi, 4 * pi, 0.01f, 2},
      {"marched ring", isosurface(ringSolid, iso), 2 * pi * pi * 0.8f * 0.0625f, 4 * pi * pi * 0.2f, 0.02f,
       0},
      {"mirrored half",
       mirrored(selected(sphere(1, 64, 32),
                         [](const Triangle& t) { return t.uv[0].u + t.uv[1].u + t.uv[2].u < 1.5f; }),
                Axis::x),
       4 / 3.0f * pi, 4 * pi, 0.01f, 2},
  };
}

}  // namespace

TEST(Geometry, ClosedFormsHaveTheirVolumeAndAreaAndAreClosed) {
  for (const Form& form : closedForms()) {
    EXPECT_NEAR(volumeOf(form.surface), form.volume, form.volume * form.tolerance) << form.what;
    EXPECT_NEAR(areaOf(form.surface), form.area, form.area * form.tolerance) << form.what;
    const Topology topology = closedTopology(form.surface);
    EXPECT_EQ(topology.openEdges, 0) << form.what;
    EXPECT_EQ(topology.wrongEdges, 0) << form.what;
    EXPECT_EQ(topology.euler(), form.euler) << form.what;
  }
}

// A cube cut from each of the ways in which marching cubes can join its corners: noise has them all.
TEST(Geometry, MarchedNoiseIsWatertightAndOfEvenTriangles) {
  IsoOptions options;
  options.bounds = {Vector(-2, -2, -2), Vector(2, 2, 2)};
  options.cell = 0.25f;
  for (const std::uint32_t seed : {1u, 2u, 3u}) {
    options.relax = 0;
    const Solid noise = [seed](const Vector& p) { return gradientNoise(p * 2.1f, 0, seed) * 0.3f + 0.02f; };
    const Surface surface = isosurface(noise, options);
    ASSERT_GT(surface.triangles.size(), 3000u);
    const Topology topology = topologyOf(surface);
    EXPECT_EQ(topology.openEdges, 0) << seed;
    EXPECT_EQ(topology.wrongEdges, 0) << seed;
    EXPECT_GT(volumeOf(surface), 0) << seed;
  }
  const Solid ballSolid = [](const Vector& p) { return ball(p, {0, 0, 0}, 1.5f); };
  float worst[2];
  for (const int relax : {0, 4}) {
    options.relax = relax;
    const Surface surface = isosurface(ballSolid, options);
    float least = 9, most = 0;
    for (const Triangle& triangle : surface.triangles)
      for (std::size_t k = 0; k < 3; ++k) {
        const auto place = [&](std::size_t i) {
          return surface.points[static_cast<std::size_t>(triangle.points[i])];
        };
        const float length = (place(k) - place((k + 1) % 3)).length();
        least = std::min(least, length), most = std::max(most, length);
      }
    worst[relax ? 1 : 0] = most / least;
    for (const Vector& point : surface.points) EXPECT_NEAR(point.length(), 1.5, relax ? 0.002 : 0.02);
  }
  EXPECT_LT(worst[1], worst[0] / 3);
}

TEST(Geometry, MarchedSolidsThatLeaveTheirBoundsAreClosedThere) {
  IsoOptions options;
  options.bounds = {Vector(-1, -1, -1), Vector(1, 1, 1)};
  options.cell = 0.1f;
  options.relax = 0;
  const Surface half = isosurface([](const Vector& p) { return p.y; }, options);
  EXPECT_EQ(topologyOf(half).openEdges, 0);
  EXPECT_NEAR(volumeOf(half), 4, 0.15);  // the corners of the cut are chamfered
}

TEST(Geometry, CreasesPartPointsAndWeldingJoinsThem) {
  const Surface box = welded(bevelledBox({1, 1, 1}, 0), 1e-5f);
  EXPECT_EQ(box.points.size(), 8u);
  EXPECT_EQ(creased(box, 40).points.size(), 24u);
  EXPECT_EQ(creased(box, 100).points.size(), 8u);
  EXPECT_EQ(faceted(box).points.size(), 36u);
  // Smooth normals of the welded box point along its diagonals, of the creased one along its axes.
  const Surface hard = creased(box, 40);
  const std::vector<Vector> soft = pointNormals(box), flat = pointNormals(hard);
  for (std::size_t i = 0; i < soft.size(); ++i) EXPECT_GT(dot(soft[i], unit(box.points[i])), 0.93f);
  for (std::size_t i = 0; i < flat.size(); ++i) {
    EXPECT_NEAR(std::max({std::fabs(flat[i].x), std::fabs(flat[i].y), std::fabs(flat[i].z)}), 1, 1e-5);
    EXPECT_GT(dot(flat[i], hard.points[i]), 0);
  }
}

TEST(Geometry, SubdivisionAndSmoothingRoundWithoutTearing) {
  const Surface box = welded(bevelledBox({2, 2, 2}, 0), 1e-5f);
  const Surface round = subdivided(box, 4);
  EXPECT_EQ(round.triangles.size(), 12u * 256);
  EXPECT_EQ(topologyOf(round).euler(), 2);
  EXPECT_EQ(topologyOf(round).openEdges, 0);
  const float volume = volumeOf(round);
  EXPECT_TRUE(volume > 2 && volume < 6) << volume;
  // A sphere has the least area for its volume: 1 for it, 1.24 for the cube.
  EXPECT_LT(areaOf(round) / (std::cbrt(36 * pi) * std::pow(volume, 2 / 3.0f)), 1.08f);

  const Surface bumpy = displaced(
      sphere(1, 48, 24), [](const Vector& p, const Vector&) { return 0.1f * gradientNoise(p * 6, 0, 3); });
  const Surface smooth = smoothed(bumpy, 10);
  EXPECT_LT(areaOf(smooth), areaOf(bumpy) * 0.97f);
  EXPECT_NEAR(volumeOf(smooth), volumeOf(bumpy), volumeOf(bumpy) * 0.03f);
}

// No triangle may span more than a fair share of the picture, which is what a triangle across a seam does.
TEST(Geometry, SimplifyingKeepsFormAndBordersAndSpendsTrianglesWhereTheyCount) {
  const Surface whole = welded(geodesic(2, 5), 1e-4f);
  const Surface ball = simplified(whole, 600);
  EXPECT_LE(ball.triangles.size(), 600u);
  EXPECT_GT(ball.triangles.size(), 560u);
  EXPECT_EQ(topologyOf(ball).openEdges, 0);
  EXPECT_EQ(topologyOf(ball).wrongEdges, 0);
  EXPECT_EQ(topologyOf(ball).euler(), 2);
  EXPECT_NEAR(volumeOf(ball), volumeOf(whole), 0.03f * volumeOf(whole));
  for (const Vector& point : ball.points) EXPECT_NEAR(point.length(), 2, 0.04f);

  const Surface ring = simplified(welded(torus(3, 0.3f, 48, 6), 1e-4f), 60);
  EXPECT_EQ(topologyOf(ring).wrongEdges, 0);
  EXPECT_EQ(topologyOf(ring).euler(), 0);

  const auto above = [](const Surface& surface) {
    return std::count_if(surface.points.begin(), surface.points.end(),
                         [](const Vector& p) { return p.y > 0; });
  };
  const Surface heavy = simplified(whole, 600, [](const Vector& p) { return p.y > 0 ? 100.0f : 1.0f; });
  EXPECT_GT(above(heavy), 2 * (static_cast<int>(heavy.points.size()) - above(heavy)));

  const Surface half = selected(whole, [&](const Triangle& triangle) {
    return std::all_of(triangle.points.begin(), triangle.points.end(),
                       [&](int k) { return whole.points[static_cast<std::size_t>(k)].y > -0.01f; });
  });
  EXPECT_EQ(topologyOf(simplified(half, 400)).openEdges, topologyOf(half).openEdges);
  EXPECT_EQ(topologyOf(simplified(half, 400)).euler(), topologyOf(half).euler());
}

TEST(Geometry, MappingHasNoTrianglesAcrossItsSeams) {
  const struct {
    const char* what;
    Surface surface;
    float widest;
  } cases[] = {
      {"sphere", sphere(1, 24, 12), 1.01f / 24},
      {"lathe", lathe({{1, 0}, {1, 2}}, 24), 1.01f / 24},
      {"torus", torus(2, 1, 24, 12), 1.01f / 24},
      {"tube", tube({{0, 0, 0}, {0, 3, 0}}, 24, [](float) { return 1.0f; }), 1.01f / 24},
      {"spherical", mappedSpherical(withoutMapping(geodesic(1, 3)), {0, 0, 0}), 0.3f},
      {"cylindrical", mappedCylindrical(withoutMapping(cone(1, 0.5f, 2, 24, 4))), 1.01f / 24},
  };
  for (const auto& one : cases) {
    EXPECT_TRUE(one.surface.mapped) << one.what;
    for (const Triangle& triangle : one.surface.triangles) {
      const auto [least, most] = std::minmax({triangle.uv[0].u, triangle.uv[1].u, triangle.uv[2].u});
      EXPECT_LE(most - least, one.widest) << one.what;
      // Pictures must not be mirrored: u to the right and v upwards seen from outside.
      const Uv &a = triangle.uv[0], &b = triangle.uv[1], &c = triangle.uv[2];
      EXPECT_GT((b.u - a.u) * (c.v - a.v) - (b.v - a.v) * (c.u - a.u), -1e-7f) << one.what;
    }
  }
  for (const Triangle& triangle : mappedBox(bevelledBox({1, 1, 1}, 0), 2).triangles) {
    const Uv &a = triangle.uv[0], &b = triangle.uv[1], &c = triangle.uv[2];
    EXPECT_NEAR((b.u - a.u) * (c.v - a.v) - (b.v - a.v) * (c.u - a.u), 4, 1e-4);
  }
}

TEST(Geometry, AnAtlasGivesEachTriangleItsOwnTexels) {
  constexpr int side = 256;
  const Surface knot =
      tube(smoothPath({{0, 0, 0}, {2, 1, 0}, {2, 2, 2}, {0, 1, 2}, {-1, 3, 0}, {1, 4, 1}}, 40), 12,
           [](float t) { return 0.3f + 0.1f * std::sin(9 * t); });
  Surface mixed = bevelledBox({3, 2, 1}, 0.1f);
  append(mixed, placed(geodesic(1, 2), moved(4, 0, 0)), 1);
  append(mixed, placed(knot, moved(0, 3, 0)), 2);
  IsoOptions iso;
  iso.bounds = {Vector(-1.5f, -1.5f, -1.5f), Vector(1.5f, 1.5f, 1.5f)};
  iso.cell = 0.15f;
  const Surface rock = isosurface(
      [](const Vector& p) {
        return ball(p, {0, 0, 0}, 1) + 0.25f * fractal(p * 2, 0, 3, 0.5f, 5);
      },
      iso);
  const struct {
    const char* what;
    Surface surface;
    Charts charts;
    float leastUsed;
  } cases[] = {{"tube", knot, Charts::byMapping, 0.45f},
               {"tube by normals", knot, Charts::byNormals, 0.25f},
               {"rock", rock, Charts::byNormals, 0.35f},
               {"mixed", mixed, Charts::byNormals, 0.25f},
               // All six sides of a box lie over each other in its own mapping.
               {"box", bevelledBox({1, 2, 3}, 0.2f), Charts::byMapping, 0.3f}};
  for (const auto& one : cases) {
    AtlasFigures figures;
    const Surface atlas = mappedAtlas(one.surface, {.charts = one.charts, .side = side}, &figures);
    EXPECT_GT(figures.used, one.leastUsed) << one.what;
    ASSERT_EQ(atlas.triangles.size(), one.surface.triangles.size());
    // Which triangle has the centre of a quarter texel strictly inside, by a plain search.
    constexpr int fine = side * 2;
    std::vector<int> owner(fine * fine, -1);
    int shared = 0, outside = 0;
    double worstDensity = 1;
    for (int i = 0; i < static_cast<int>(atlas.triangles.size()); ++i) {
      const Triangle& t = atlas.triangles[static_cast<std::size_t>(i)];
      float x[3], y[3];
      for (std::size_t k = 0; k < 3; ++k) {
        x[k] = t.uv[k].u * fine, y[k] = t.uv[k].v * fine;
        outside += x[k] < 4 || y[k] < 4 || x[k] > fine - 4 || y[k] > fine - 4;
      }
      const auto turn = [&](int a, int b, float px, float py) {
        return (x[b] - x[a]) * (py - y[a]) - (y[b] - y[a]) * (px - x[a]);
      };
      const float area = turn(0, 1, x[2], y[2]) / 2;
      Surface single = atlas;
      single.triangles = {t};
      worstDensity =
          std::min(worstDensity, static_cast<double>(area) / 4 /
                                     (areaOf(single) * figures.texelsPerUnit * figures.texelsPerUnit));
      for (int py = static_cast<int>(std::min({y[0], y[1], y[2]}));
           py <= static_cast<int>(std::max({y[0], y[1], y[2]})); ++py)
        for (int px = static_cast<int>(std::min({x[0], x[1], x[2]}));
             px <= static_cast<int>(std::max({x[0], x[1], x[2]})); ++px) {
          const float cx = static_cast<float>(px) + 0.5f, cy = static_cast<float>(py) + 0.5f;
          const float margin = 0.02f * fine / 16;
          if (turn(0, 1, cx, cy) <= margin || turn(1, 2, cx, cy) <= margin || turn(2, 0, cx, cy) <= margin)
            continue;
          int& of = owner[static_cast<std::size_t>(py * fine + px)];
          if (of >= 0) ++shared;
          of = i;
        }
    }
    EXPECT_EQ(shared, 0) << one.what;
    EXPECT_EQ(outside, 0) << one.what;
    EXPECT_GT(worstDensity, one.charts == Charts::byMapping ? 0.05 : 0.2) << one.what;
  }
}

}  // namespace vex
