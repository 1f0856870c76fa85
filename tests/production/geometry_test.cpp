#include <gtest/gtest.h>

#include <cmath>

#include "production/geometry/forms.h"
#include "production/geometry/isosurface.h"
#include "production/geometry/mapping.h"

// Surfaces against closed formulas: volumes, areas, Euler's characteristic, mapping.

namespace vex {

namespace {

constexpr float pi = 3.14159265f;

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

}  // namespace vex
