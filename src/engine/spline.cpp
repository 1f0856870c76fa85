#include "engine/spline.h"

#include <cstddef>
#include <vector>

#include "base/report.h"

namespace vex {

namespace {

// Kept between calls, so that a frame allocates nothing. Its contents are not.
float* scratchOf(std::size_t size) {
  thread_local std::vector<float> scratch;
  if (scratch.size() < size) scratch.resize(size);
  return scratch.data();
}

// Solves h[i-1] r[i-1] + 2 (h[i-1] + h[i]) r[i] + h[i] r[i+1] = slope[i] - slope[i-1] with the diagonal
// negated; r is a third of the quadratic coefficient. a and h take n numbers each.
void solve(const float* x, const float* y, int n, float* r, float* a, float* h) {
  const int m = n - 1;
  float slopeBefore = 0.0f;
  for (int i = 0; i < m; ++i) {
    h[i] = x[i + 1] - x[i];
    if (h[i] == 0.0f) fatalError("Critical error: d[]=0 in calc_spline!\n");
    const float slope = (y[i + 1] - y[i]) / h[i];
    r[i] = slope - slopeBefore;
    slopeBefore = slope;
  }

  r[0] = 0.0f;
  r[m] = 0.0f;
  float mu = 0.0f;
  float widthBefore = 0.0f;
  for (int i = 1; i < m; ++i) {
    r[i] = mu * r[i - 1] + r[i];
    a[i] = (x[i - 1] - x[i + 1]) * 2.0f - mu * widthBefore;
    widthBefore = h[i];
    mu = widthBefore / a[i];
  }
  for (int i = m - 1; i > 0; --i) r[i] = (h[i] * r[i + 1] - r[i]) / a[i];
}

}  // namespace

float calc_spline(const float* x, const float* y, int n, float t) {
  if (n <= 0) fatalError("calcSpline called with array size 0!");
  if (n == 1) return y[0];
  if (n == 2) return y[0] + (y[1] - y[0]) / (x[1] - x[0]) * (t - x[0]);
  const int m = n - 1;
  if (t > x[m]) return y[m];
  if (t < x[0]) return y[0];

  const auto size = static_cast<std::size_t>(n);
  float* const r = scratchOf(3 * size);
  solve(x, y, n, r, r + size, r + 2 * size);
  return splineAt(x, y, r, n, t);
}

void solveSpline(const float* x, const float* y, int n, float* bends) {
  const auto size = static_cast<std::size_t>(n);
  float* const scratch = scratchOf(2 * size);
  solve(x, y, n, bends, scratch, scratch + size);
}

float splineAt(const float* x, const float* y, const float* bends, int n, float t) {
  const int m = n - 1;
  if (t > x[m]) return y[m];
  if (t < x[0]) return y[0];
  int k = m;
  while (k >= 0 && !(x[k] <= t)) --k;
  if (k < 0) fatalError("Critical error: t<x[0] in calc_spline!\n");
  if (k == m) return y[m];  // no interval begins at the last dot

  const float h = x[k + 1] - x[k];
  const float difference = bends[k + 1] - bends[k];
  const float d = difference / h;
  const float c = bends[k] * 3.0f;
  const float b = (y[k + 1] - y[k]) / h - (c + difference) * h;
  const float dt = t - x[k];
  return ((d * dt + c) * dt + b) * dt + y[k];
}

}  // namespace vex
