#include "engine/fluid.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <limits>
#include <vector>

#include "base/random.h"
#include "tests/support/fatal.h"

namespace vex {
namespace {

Mesh& addVertex(Mesh& mesh, float x, float y, float z) {
  mesh.vertices.emplace_back().position.set(x, y, z);
  return mesh;
}

// A flat mesh over x and z from -50 to 50, turned into a fluid and made ready to draw.
void makeFluid(Mesh& mesh, int nx, int nz) {
  addVertex(addVertex(mesh, -50, 3, 50), 50, 3, -50);
  mesh.position.y = 3.0f;
  convertToFluid(mesh, nx, nz);
  mesh.buildArrays();
}

TEST(Fluid, OverhangsTheMeshByTwoCells) {
  Mesh mesh;
  mesh.lit = true;
  mesh.flags = hiddenFlag | skeletonFlag;
  makeFluid(mesh, 64, 64);
  EXPECT_EQ(mesh.vertexCount, 65u * 65);
  EXPECT_EQ(mesh.vertices.size(), 65u * 65);
  EXPECT_EQ(mesh.faceCount, 7200u);
  EXPECT_EQ(mesh.faces.size(), 7200u);
  EXPECT_EQ(mesh.kind, ObjectKind::fluid);
  EXPECT_EQ(mesh.flags, 4);
  EXPECT_TRUE(mesh.twoSided);
  EXPECT_FALSE(mesh.lit);
  const Vertex& first = mesh.vertices[0];
  EXPECT_NEAR(first.position.x, -50 - 200.0 / 60, 1e-4);
  EXPECT_NEAR(first.position.z, -50 - 200.0 / 60, 1e-4);
  EXPECT_EQ(first.position.y, 3.0f);
  const Vertex& inner = mesh.vertices[65 * 62 + 2];  // a corner of the area that was covered
  EXPECT_NEAR(inner.position.x, -50, 1e-4);
  EXPECT_NEAR(inner.position.z, 50, 1e-4);
  EXPECT_FLOAT_EQ(inner.u, 2 / 64.0f);
  EXPECT_FLOAT_EQ(inner.v, 62 / 64.0f);
}

// All faces cover the inner cells once, seen with the same turn from above.
TEST(Fluid, CoversTheInnerCells) {
  Mesh mesh;
  makeFluid(mesh, 9, 7);
  ASSERT_EQ(mesh.faces.size(), 2u * 5 * 3);
  double area = 0;
  for (const Face& face : mesh.faces) {
    const Vector& a = mesh.vertices[face.v[0]].position;
    const Vector& b = mesh.vertices[face.v[1]].position;
    const Vector& c = mesh.vertices[face.v[2]].position;
    const float turn = cross(b - a, c - a).y;
    EXPECT_LT(turn, 0.0f);
    area -= turn / 2;
    for (const Vector* corner : {&a, &b, &c}) {
      EXPECT_LE(std::fabs(corner->x), 50.001f);
      EXPECT_LE(std::fabs(corner->z), 50.001f);
    }
  }
  EXPECT_NEAR(area, 100 * 100, 0.1);
  EXPECT_EQ(mesh.faces[0].v, (std::array<std::uint32_t, 3>{22, 23, 32}));
  EXPECT_EQ(mesh.faces[1].v, (std::array<std::uint32_t, 3>{23, 33, 32}));
  EXPECT_EQ(mesh.faces[10].v, (std::array<std::uint32_t, 3>{32, 33, 42}));
}

TEST(Fluid, CoversAFixedAreaWithoutVertices) {
  Mesh mesh;
  convertToFluid(mesh, 8, 8);
  for (const float sign : {-1.0f, 1.0f}) {
    const std::size_t i = sign < 0 ? 2 : 6;
    EXPECT_FLOAT_EQ(mesh.vertices[i].position.x, sign * 100);
    EXPECT_FLOAT_EQ(mesh.vertices[i * 9].position.z, sign * 100);
  }
}

TEST(Fluid, RefusesGridsThatAreNone) {
  const struct {
    int nx, nz;
    const char* text;
  } cases[] = {
      {0, 8, "Cannot convert fluid to (0,0)!"},
      {8, -1, "Cannot convert fluid to (0,0)!"},
      {4, 8, "Cannot convert fluid Water to (4,8), 5 to 2048 cells a side allowed!"},
      {8, 4, "Cannot convert fluid Water to (8,4), 5 to 2048 cells a side allowed!"},
      {5, 2147483647, "Cannot convert fluid Water to (5,2147483647), 5 to 2048 cells a side allowed!"},
  };
  for (const auto& row : cases) {
    Mesh mesh;
    std::snprintf(mesh.name, objectNameSize, "Water");
    EXPECT_EQ(fatalText([&] { convertToFluid(mesh, row.nx, row.nz); }), row.text);
  }
}

TEST(Fluid, RefusesPlainMeshes) {
  Mesh mesh;
  EXPECT_EQ(fatalText([&] { push(mesh, 0.5f, 0.5f, 1.0f); }), "Cannot call push on Mesh!");
  EXPECT_EQ(fatalText([&] { animateFluid(mesh, 0.02f); }), "Cannot call animateFluid on Mesh!");
}

TEST(Fluid, StaysFlat) {
  Mesh mesh;
  mesh.envMap = true;
  makeFluid(mesh, 8, 6);
  for (int step = 0; step < 3; ++step) animateFluid(mesh, 0.02f);
  EXPECT_FALSE(mesh.envMap);
  ASSERT_EQ(mesh.uvs.size(), 2u * 63);
  for (std::size_t n = 0; n < 63; ++n) {
    EXPECT_EQ(mesh.heightB[n], 0.0f);
    EXPECT_EQ(mesh.positions[3 * n + 1], 3.0f);
    EXPECT_FLOAT_EQ(mesh.uvs[2 * n], static_cast<float>(n % 9) / 8);
    EXPECT_FLOAT_EQ(mesh.uvs[2 * n + 1], static_cast<float>(n / 9) / 6);
  }
}

TEST(Fluid, IsPushedIntoACone) {
  Mesh mesh;
  makeFluid(mesh, 64, 64);
  push(mesh, 0.5f, 0.5f, 1.0f);
  const auto height = [&](int i, int j) { return mesh.heightB[static_cast<std::size_t>(j * 65 + i)]; };
  const float diagonal = (4 - std::sqrt(2.0f)) / 4;
  const struct {
    int i, j;
    float height;
  } cases[] = {
      {32, 32, 1},     {31, 32, 0.75f},    {33, 32, 0.75f},    {32, 31, 0.75f},
      {32, 33, 0.75f}, {31, 31, diagonal}, {33, 33, diagonal}, {30, 32, 0.5f},
      {32, 34, 0.5f},  {28, 32, 0},        {32, 36, 0},        {29, 30, 1 - std::sqrt(13.0f) / 4},
  };
  for (const auto& row : cases) EXPECT_FLOAT_EQ(height(row.i, row.j), row.height) << row.i << ", " << row.j;

  push(mesh, 0.5f, 0.5f, -2.0f);  // takes the place of what was there
  EXPECT_FLOAT_EQ(height(32, 32), -2);
  EXPECT_FLOAT_EQ(height(33, 32), -1.5f);
  push(mesh, 0.5f, 0.5f, 1.0f);
  animateFluid(mesh, 0.02f);
  EXPECT_NEAR(height(32, 32), (4 * 0.75 + 4 * diagonal + 4 * 0.5) / 6 * 0.95, 1e-5);
  EXPECT_NEAR(mesh.positions[3 * (32 * 65 + 32) + 1], 1201.1 + 3, 0.1);
}

TEST(Fluid, KeepsItsBorder) {
  constexpr float nan = std::numeric_limits<float>::quiet_NaN();
  const struct {
    float x, z;
    bool raises;
  } cases[] = {{0, 0, false},      {1, 1, false},        {0, 0.5f, true},
               {0.5f, 1, true},    {-0.4f, 0.5f, false}, {1e30f, 0, false},
               {-1e30f, 0, false}, {nan, 0.5f, false},   {0.5f, nan, false}};
  for (const auto& row : cases) {
    SCOPED_TRACE(row.x);
    Mesh mesh;
    makeFluid(mesh, 20, 12);
    push(mesh, row.x, row.z, 2.0f);
    bool raised = false;
    for (int j = 0; j <= 12; ++j) {
      for (int i = 0; i <= 20; ++i) {
        const float height = mesh.heightB[static_cast<std::size_t>(j * 21 + i)];
        if (i <= 2 || j <= 2 || i >= 19 || j >= 11) {
          EXPECT_EQ(height, 0.0f) << i << ", " << j;
        }
        if (height != 0.0f) raised = true;
      }
    }
    EXPECT_EQ(raised, row.raises);
  }
}

// Against the same step as a sum over a list of neighbours, in double.
TEST(Fluid, StepsByItsTwelveNeighbours) {
  constexpr int nx = 37;
  constexpr int nz = 22;
  constexpr int neighbours[12][2] = {{-1, 0}, {1, 0}, {0, -1}, {0, 1}, {-1, -1}, {1, -1},
                                     {-1, 1}, {1, 1}, {-2, 0}, {2, 0}, {0, -2},  {0, 2}};
  Mesh mesh;
  makeFluid(mesh, nx, nz);
  mesh.damping = 0.125f;
  randomState() = 1;
  for (float& height : mesh.heightA) height = randomSymmetric(1.0f);
  for (float& height : mesh.heightB) height = randomSymmetric(1.0f);
  const auto index = [](int i, int j) { return static_cast<std::size_t>(j * (nx + 1) + i); };
  for (int step = 0; step < 3; ++step) {
    const std::vector<float> now = mesh.heightB;
    const std::vector<float> before = mesh.heightA;
    animateFluid(mesh, 0.02f);
    EXPECT_EQ(mesh.heightA, now);
    for (int j = 0; j <= nz; ++j) {
      for (int i = 0; i <= nx; ++i) {
        double expected = before[index(i, j)];
        if (i >= 2 && i <= nx - 2 && j >= 2 && j <= nz - 2) {
          double sum = 0;
          for (const auto& [di, dj] : neighbours) sum += now[index(i + di, j + dj)];
          expected = (sum / 6 - expected) * (1 - 0.125);
        }
        ASSERT_NEAR(mesh.heightB[index(i, j)], expected, 1e-5) << i << ", " << j;
        ASSERT_NEAR(mesh.positions[3 * index(i, j) + 1], mesh.heightB[index(i, j)] * 1000.0 + 3, 1e-3);
        double u = static_cast<double>(i) / nx;
        double v = static_cast<double>(j) / nz;
        if (i >= 1 && i < nx && j >= 1 && j < nz) {
          u += (static_cast<double>(mesh.heightB[index(i + 1, j)]) - mesh.heightB[index(i - 1, j)]) * 50;
          v += (static_cast<double>(mesh.heightB[index(i, j + 1)]) - mesh.heightB[index(i, j - 1)]) * 50;
        }
        ASSERT_NEAR(mesh.uvs[2 * index(i, j)], u, 1e-4);
        ASSERT_NEAR(mesh.uvs[2 * index(i, j) + 1], v, 1e-4);
      }
    }
  }
}

}  // namespace
}  // namespace vex
