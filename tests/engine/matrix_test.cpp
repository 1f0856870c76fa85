#include "engine/matrix.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "base/random.h"
#include "tests/support/fatal.h"
#include "tests/support/log_text.h"
#include "tests/support/vectors.h"

namespace vex {
namespace {

constexpr float quarterTurn = std::numbers::pi_v<float> / 2;
using Grid = std::array<std::array<double, 4>, 4>;

Matrix matrixOf(const Grid& entries) {
  Matrix result;
  for (int r = 0; r < 4; ++r) {
    for (int c = 0; c < 4; ++c) result.m[r][c] = static_cast<float>(entries[r][c]);
  }
  return result;
}

Grid gridOf(const Matrix& matrix) {
  Grid result;
  for (int r = 0; r < 4; ++r) std::copy_n(matrix.m[r], 4, result[r].begin());
  return result;
}

const Grid identity = {{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}};

void expectMatrix(const Matrix& matrix, const Grid& expected, double tolerance) {
  for (int r = 0; r < 4; ++r) {
    for (int c = 0; c < 4; ++c) EXPECT_NEAR(matrix.m[r][c], expected[r][c], tolerance) << r << ", " << c;
  }
}

void expectPoint(const Vector& p, float x, float y, float z) {
  expectNear(p, x, y, z, 1e-6);
  EXPECT_EQ(p.w, 1.0f);
}

// Sum over all 24 permutations, leaving out one row and one column when asked.
double leibniz(const Grid& grid, int withoutRow = -1, int withoutColumn = -1) {
  std::array<int, 4> order = {0, 1, 2, 3};
  double sum = 0;
  do {
    if (withoutRow >= 0 && order[withoutRow] != withoutColumn) continue;
    double term = 1;
    for (int r = 0; r < 4; ++r) {
      if (r != withoutRow) term *= grid[r][order[r]];
      for (int s = 0; s < r; ++s) term *= order[s] > order[r] ? -1 : 1;
    }
    sum += term;
  } while (std::next_permutation(order.begin(), order.end()));
  return sum;
}

Grid adjugateOf(const Grid& grid) {
  Grid result;
  for (int r = 0; r < 4; ++r) {
    for (int c = 0; c < 4; ++c) result[r][c] = leibniz(grid, c, r);
  }
  return result;
}

TEST(Matrix, StartsAsAllZeros) {
  expectMatrix(Matrix(), {}, 0);
}

TEST(Matrix, Factories) {
  expectMatrix(translation({0, 0, 0}), identity, 0);
  expectMatrix(translation({2, 3, 4}), {{{1, 0, 0, 2}, {0, 1, 0, 3}, {0, 0, 1, 4}, {0, 0, 0, 1}}}, 0);
  expectMatrix(scaling({0, 0, 0}), {{{}, {}, {}, {0, 0, 0, 1}}}, 0);
  expectMatrix(scaling({2, 3, 4}), {{{2, 0, 0, 0}, {0, 3, 0, 0}, {0, 0, 4, 0}, {0, 0, 0, 1}}}, 0);
}

TEST(Matrix, QuarterTurnsGoClockwiseSeenFromTheTip) {
  struct Row {
    Vector axis, point, expected;
  };
  for (const Row& row : {
           Row{{0, 0, 1}, {1, 0, 0}, {0, -1, 0}},
           Row{{0, 0, 1}, {0, 1, 0}, {1, 0, 0}},
           Row{{1, 0, 0}, {0, 1, 0}, {0, 0, -1}},
           Row{{0, 1, 0}, {0, 0, 1}, {-1, 0, 0}},
           Row{{0, 5, 0}, {1, 0, 0}, {0, 0, 1}},
       }) {
    expectPoint(transformPoint(rotation(row.axis, quarterTurn), row.point), row.expected.x, row.expected.y,
                row.expected.z);
  }
}

// Rodrigues' formula for a turn by -angle.
TEST(Matrix, RotationAboutAnyAxis) {
  for (const Vector& axis : {Vector(1, 2, 3), Vector(-0.3f, 0.1f, 0.05f), Vector(0, -7, 2)}) {
    for (const float angle : {-3.0f, -0.5f, 0.0011f, 0.4f, 2.0f, 7.5f}) {
      const double size = std::hypot(axis.x, axis.y, axis.z);
      const double x = axis.x / size, y = axis.y / size, z = axis.z / size;
      const double c = std::cos(angle), s = -std::sin(angle), k = 1 - c;
      expectMatrix(rotation(axis, angle),
                   {{{c + x * x * k, x * y * k - z * s, x * z * k + y * s, 0},
                     {y * x * k + z * s, c + y * y * k, y * z * k - x * s, 0},
                     {z * x * k - y * s, z * y * k + x * s, c + z * z * k, 0},
                     {0, 0, 0, 1}}},
                   1e-6);
    }
  }
}

TEST(Matrix, TinyRotationsAreTheIdentity) {
  expectMatrix(rotation({1, 2, 3}, 0.0009f), identity, 0);
  expectMatrix(rotation({0, 0, 0}, -0.0009f), identity, 0);
  EXPECT_NE(rotation({0, 0, 1}, 0.0011f).m[0][1], 0.0f);
}

TEST(Matrix, TheTwoProductsApplyInOppositeOrder) {
  const Matrix move = translation({1, 0, 0}), turn = rotation({0, 0, 1}, quarterTurn);
  expectPoint(transformPoint(move * turn, {}), 0, -1, 0);
  Matrix accumulated = move;
  const Matrix copy = accumulated *= turn;
  expectPoint(transformPoint(accumulated, {}), 1, 0, 0);
  expectMatrix(copy, gridOf(accumulated), 0);

  const Matrix a = matrixOf({{{1, 2, 3, 4}, {5, 6, 7, 8}, {9, 1, 2, 3}, {4, 5, 6, 7}}});
  const Matrix b = matrixOf({{{2, 0, 1, 3}, {1, 1, 0, 2}, {0, 4, 1, 1}, {3, 2, 2, 0}}});
  const Grid bThenA = {{{16, 22, 12, 10}, {40, 50, 28, 34}, {28, 15, 17, 31}, {34, 43, 24, 28}}};  // A B
  const Grid aThenB = {{{23, 20, 26, 32}, {14, 18, 22, 26}, {33, 30, 36, 42}, {31, 20, 27, 34}}};  // B A
  expectMatrix(a * b, aThenB, 0);
  Matrix c = a;
  c *= b;
  expectMatrix(c, bThenA, 0);
}

TEST(Matrix, EntryWiseOperations) {
  const Matrix a = matrixOf({{{1, 2, 3, 4}, {5, 6, 7, 8}, {}, {0, 0, 0, 1}}});
  const Matrix b = matrixOf({{{1, 1, 1, 1}, {2, 2, 2, 2}, {3, 3, 3, 3}, {4, 4, 4, 4}}});
  expectMatrix(a + b, {{{2, 3, 4, 5}, {7, 8, 9, 10}, {3, 3, 3, 3}, {4, 4, 4, 5}}}, 0);
  expectMatrix(a - b, {{{0, 1, 2, 3}, {3, 4, 5, 6}, {-3, -3, -3, -3}, {-4, -4, -4, -3}}}, 0);
  Matrix c = b;
  expectMatrix(c *= 0.5f, {{{.5, .5, .5, .5}, {1, 1, 1, 1}, {1.5, 1.5, 1.5, 1.5}, {2, 2, 2, 2}}}, 0);
}

TEST(Matrix, PointsAreDividedByTheirWeight) {
  Matrix matrix = matrixOf({{{2, 0, 0, 1}, {0, 1, 1, 0}, {1, 0, 0, 3}, {1, 2, 0, 1}}});
  Vector p(1, 1, 2);
  p.w = 50;  // does not count
  expectPoint(transformPoint(matrix, p), 0.75f, 0.75f, 1);
}

TEST(Matrix, GlCopyGoesColumnByColumn) {
  Matrix matrix = matrixOf({{{0, 1, 2, 3}, {4, 5, 6, 7}, {8, 9, 10, 11}, {12, 13, 14, 15}}});
  const float* gl = matrix.toGL();
  const std::array<float, 16> expected = {0, 4, 8, 12, 1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15};
  EXPECT_TRUE(std::equal(expected.begin(), expected.end(), gl));
}

TEST(Matrix, DeterminantAdjugateAndInverseAgreeWithDoubles) {
  randomState() = 7;
  for (int n = 0; n < 200; ++n) {
    Grid grid;
    for (auto& row : grid) {
      for (double& entry : row) entry = static_cast<double>(randomSymmetric(4.0f));
    }
    if (n % 5 == 0) grid[n / 5 % 3][n / 5 % 3] = 0;  // a row exchange, or a pivot of 0 later on
    const double expected = leibniz(grid);
    EXPECT_NEAR(matrixOf(grid).determinant(), expected, 1e-3);
    Matrix matrix = matrixOf(grid);
    matrix.adjugate();
    expectMatrix(matrix, adjugateOf(grid), 1e-3);
    if (std::fabs(expected) < 20) continue;  // too near to singular for a fixed tolerance
    Grid inverse = adjugateOf(grid);
    for (auto& row : inverse) {
      for (double& entry : row) entry /= expected;
    }
    matrix = matrixOf(grid);
    matrix.invert();
    expectMatrix(matrix, inverse, 2e-3);
  }
}

TEST(Matrix, InverseExchangesRowsOnZeroPivots) {
  for (const Grid& grid : {
           Grid{{{0, 0, 1, 0}, {0, 2, 0, 0}, {4, 0, 0, 0}, {0, 0, 0, 1}}},
           Grid{{{0, 0, 0, 1}, {1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}}},
           Grid{{{1, 1, 0, 0}, {1, 1, 1, 0}, {0, 1, 0, 0}, {0, 0, 1, 1}}},
       }) {
    Matrix matrix = matrixOf(grid);
    matrix.invert();
    expectMatrix(matrix * matrixOf(grid), identity, 1e-6);
  }
}

TEST(Matrix, SingularMatricesAreRefused) {
  for (const Grid& grid : {
           Grid{{{0, 1, 2, 3}, {0, 5, 6, 8}, {0, 1, 2, 4}, {0, 0, 0, 1}}},
           Grid{{{1, 0, 2, 3}, {0, 0, 6, 8}, {0, 0, 2, 4}, {0, 0, 0, 1}}},
           Grid{{{1, 0, 0, 3}, {0, 1, 0, 8}, {0, 0, 0, 4}, {0, 0, 0, 1}}},
           Grid{{{1, 0, 0, 3}, {0, 1, 0, 8}, {0, 0, 1, 4}, {0, 0, 0, 0}}},
           Grid{{{1, 0, 0, 3}, {0, 1, 0, 8}, {0, 0, 1, 4}, {0, 0, 2, 8}}},
       }) {
    EXPECT_EQ(fatalText([&] { matrixOf(grid).invert(); }), "singular matrix!");
  }
}

TEST(Matrix, PrintsRowByRow) {
  EXPECT_EQ(logText([] {
              matrixOf({{{1, 2.345, -3, 4}, {0, 0, 0, 5}, {6, 7, 8, 9}, {0, 0, 0.004, 1}}}).print();
            }),
            "1.00 2.35 -3.00 4.00\n0.00 0.00 0.00 5.00\n6.00 7.00 8.00 9.00\n0.00 0.00 0.00 1.00\n");
}

}  // namespace
}  // namespace vex
