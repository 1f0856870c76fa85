#include "engine/spline.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "base/random.h"
#include "tests/support/fatal.h"

namespace vex {
namespace {

using Reals = std::vector<double>;

// Gaussian elimination with pivoting on the full matrix.
Reals solve(std::vector<Reals> a, Reals b) {
  const std::size_t n = b.size();
  for (std::size_t c = 0; c < n; ++c) {
    std::size_t pivot = c;
    for (std::size_t r = c; r < n; ++r) {
      if (std::fabs(a[r][c]) > std::fabs(a[pivot][c])) pivot = r;
    }
    std::swap(a[c], a[pivot]);
    std::swap(b[c], b[pivot]);
    for (std::size_t r = 0; r < n; ++r) {
      if (r == c) continue;
      const double factor = a[r][c] / a[c][c];
      for (std::size_t k = c; k < n; ++k) a[r][k] -= factor * a[c][k];
      b[r] -= factor * b[c];
    }
  }
  for (std::size_t r = 0; r < n; ++r) b[r] /= a[r][r];
  return b;
}

// Second derivatives of the spline at its dots, all unknown but the two end ones.
Reals curvatures(const std::vector<float>& x, const std::vector<float>& y) {
  const std::size_t n = x.size();
  std::vector<Reals> a(n, Reals(n, 0.0));
  Reals b(n, 0.0);
  a[0][0] = a[n - 1][n - 1] = 1;
  for (std::size_t i = 1; i + 1 < n; ++i) {
    const double left = double{x[i]} - x[i - 1], right = double{x[i + 1]} - x[i];
    a[i][i - 1] = left / 6;
    a[i][i] = (left + right) / 3;
    a[i][i + 1] = right / 6;
    b[i] = (double{y[i + 1]} - y[i]) / right - (double{y[i]} - y[i - 1]) / left;
  }
  return solve(a, b);
}

double naturalSpline(const std::vector<float>& x, const std::vector<float>& y, const Reals& curvature,
                     double t) {
  std::size_t k = 0;
  while (k + 2 < x.size() && double{x[k + 1]} <= t) ++k;
  const double h = double{x[k + 1]} - x[k], u = (x[k + 1] - t) / h, v = (t - x[k]) / h;
  return u * y[k] + v * y[k + 1] +
         ((u * u * u - u) * curvature[k] + (v * v * v - v) * curvature[k + 1]) * h * h / 6;
}

TEST(Spline, AgreesWithADenseSolution) {
  randomState() = 3;
  for (const int n : {3, 4, 5, 8, 31, 255, 300}) {
    std::vector<float> x, y;
    float place = -0.2f;
    for (int i = 0; i < n; ++i) {
      x.push_back(place);
      y.push_back(randomSymmetric(50.0f));
      place += 0.01f + static_cast<float>(randomNext()) / 32768.0f * 0.2f;
    }
    for (int i = 0; i < n; ++i) {
      EXPECT_NEAR(calc_spline(x.data(), y.data(), n, x[i]), y[i], 1e-4) << n << " dots, dot " << i;
    }
    const Reals curvature = curvatures(x, y);
    for (int i = 0; i < 40; ++i) {
      const float t = x[0] + (x[n - 1] - x[0]) * (static_cast<float>(i) + 0.3f) / 40.0f;
      EXPECT_NEAR(calc_spline(x.data(), y.data(), n, t), naturalSpline(x, y, curvature, t), 0.02)
          << n << " dots, t " << t;
    }
  }
}

// Dots (0, 0), (1, 1), (2, 0): curvature -3 in the middle, so s(t) = 1.5 t - 0.5 t^3 on the first half.
TEST(Spline, WorkedByHand) {
  const float x[] = {0, 1, 2}, y[] = {0, 1, 0};
  for (const float t : {0.0f, 0.25f, 0.5f, 0.9f, 1.0f}) {
    EXPECT_NEAR(calc_spline(x, y, 3, t), 1.5f * t - 0.5f * t * t * t, 1e-6);
    EXPECT_NEAR(calc_spline(x, y, 3, 2 - t), 1.5f * t - 0.5f * t * t * t, 1e-6);
  }
}

TEST(Spline, FewDotsAndOutsideTheSpan) {
  const float x[] = {0.2f, 0.6f, 0.9f}, y[] = {0, 4, 7};
  struct Row {
    int n;
    float t, expected;
  };
  for (const Row& row : {
           Row{1, -5, 0},
           Row{1, 5, 0},
           Row{2, 0.4f, 2},
           Row{2, 0.8f, 6},  // goes on beyond both ends
           Row{2, 0.0f, -2},
           Row{3, 0.1f, 0},  // holds
           Row{3, 0.2f, 0},
           Row{3, 0.9f, 7},
           Row{3, 1.0f, 7},
       }) {
    EXPECT_NEAR(calc_spline(x, y, row.n, row.t), row.expected, 1e-5) << row.n << " dots at " << row.t;
  }
}

// One call's leftovers must not show in the next.
TEST(Spline, KeepsNothingBetweenCalls) {
  const float x[] = {0, 0.3f, 0.5f, 0.8f, 1}, y[] = {5, -2, 9, 1, 4};
  const float before = calc_spline(x, y, 3, 0.4f);
  calc_spline(x, y, 5, 0.9f);
  EXPECT_EQ(calc_spline(x, y, 3, 0.4f), before);
}

TEST(Spline, FatalTexts) {
  const float x[] = {0, 0.5f, 0.5f, 1}, y[] = {0, 1, 2, 3};
  EXPECT_EQ(fatalText([&] { calc_spline(x, y, 0, 0.5f); }), "calcSpline called with array size 0!");
  EXPECT_EQ(fatalText([&] { calc_spline(x, y, 4, 0.1f); }), "Critical error: d[]=0 in calc_spline!\n");
  const float ascending[] = {0, 0.5f, 1};
  EXPECT_EQ(fatalText([&] { calc_spline(ascending, y, 3, std::numeric_limits<float>::quiet_NaN()); }),
            "Critical error: t<x[0] in calc_spline!\n");
}

}  // namespace
}  // namespace vex
