#include "timeline/spline.h"

#include <cstddef>
#include <vector>

#include "shell/report.h"

namespace vex {

// Solves h[i-1] r[i-1] + 2 (h[i-1] + h[i]) r[i] + h[i] r[i+1] = slope[i] - slope[i-1] with the diagonal
// negated; r is a third of the quadratic coefficient.
float calc_spline(const float* x, const float* y, int n, float t) {
  if (n <= 0) fatalError("calcSpline called with array size 0!");
  if (n == 1) return y[0];
  if (n == 2) return y[0] + (y[1] - y[0]) / (x[1] - x[0]) * (t - x[0]);
  const int m = n - 1;
  if (t > x[m]) return y[m];
  if (t < x[0]) return y[0];

  // Kept between calls, so that a frame allocates nothing. Its contents are not.
  thread_local std::vector<float> scratch;
  const auto size = static_cast<std::size_t>(n);
  if (scratch.size() < 3 * size) scratch.resize(3 * size);
  float* a = scratch.data();
  float* r = a + size;
  float* h = r + size;

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

  int k = m;
  while (k >= 0 && !(x[k] <= t)) --k;
  if (k < 0) fatalError("Critical error: t<x[0] in calc_spline!\n");
  if (k == m) return y[m];  // no interval begins at the last dot

  const float difference = r[k + 1] - r[k];
  const float d = difference / h[k];
  const float c = r[k] * 3.0f;
  const float b = (y[k + 1] - y[k]) / h[k] - (c + difference) * h[k];
  const float dt = t - x[k];
  return ((d * dt + c) * dt + b) * dt + y[k];
}

}  // namespace vex
