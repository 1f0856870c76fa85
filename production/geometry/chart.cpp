#include "production/geometry/chart.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "base/pi.h"
#include "production/geometry/index.h"

namespace vex::geometry {

namespace {

void toOrigin(Chart& chart) {
  float left = std::numeric_limits<float>::max(), low = left, right = -left, high = -left;
  for (const auto& corners : chart.corners)
    for (const Flat& p : corners) {
      left = std::min(left, p.x), right = std::max(right, p.x);
      low = std::min(low, p.y), high = std::max(high, p.y);
    }
  for (auto& corners : chart.corners)
    for (Flat& p : corners) p = {p.x - left, p.y - low};
  chart.width = right - left, chart.height = high - low;
}

// Turned to the smallest rectangle, lying.
Chart tightened(const Chart& chart) {
  Chart best;
  float least = std::numeric_limits<float>::max();
  for (int i = 0; i < 16; ++i) {
    Chart candidate = chart;
    rotateChart(candidate, pi / 16 * static_cast<float>(i));
    const float area = candidate.width * candidate.height;
    if (area >= least * 0.999f) continue;
    least = area;
    best = std::move(candidate);
  }
  if (best.height > best.width) rotateChart(best, pi / 2);
  return best;
}

// With each corner where `place(triangle, corner)` says.
template <typename Place>
Chart laidOut(const Surface& surface, const Piece& piece, Place place) {
  Chart chart;
  chart.triangles = piece;
  for (const int i : piece) {
    const Triangle& triangle = surface.triangles[at(i)];
    chart.corners.push_back({place(triangle, 0), place(triangle, 1), place(triangle, 2)});
  }
  return chart;
}

// In `count` pieces along its length.
std::vector<Chart> cut(const Chart& chart, int count) {
  std::vector<Chart> pieces(at(count));
  for (std::size_t i = 0; i < chart.triangles.size(); ++i) {
    const auto& [a, b, c] = chart.corners[i];
    const float place = (a.x + b.x + c.x) / 3 / std::max(chart.width, 1e-20f) * static_cast<float>(count);
    Chart& piece = pieces[std::min(pieces.size() - 1, at(static_cast<int>(place)))];
    piece.triangles.push_back(chart.triangles[i]);
    piece.corners.push_back(chart.corners[i]);
  }
  std::erase_if(pieces, [](const Chart& piece) { return piece.triangles.empty(); });
  for (Chart& piece : pieces) {
    piece.density = chart.density;
    piece = tightened(piece);
  }
  return pieces;
}

}  // namespace

void rotateChart(Chart& chart, float angle) {
  const float c = std::cos(angle), s = std::sin(angle);
  for (auto& corners : chart.corners)
    for (Flat& p : corners) p = {c * p.x - s * p.y, s * p.x + c * p.y};
  toOrigin(chart);
}

Chart flattened(const Surface& surface, const Piece& piece) {
  Vector sum(0, 0, 0);
  for (const int i : piece) sum += areaVector(surface, surface.triangles[at(i)]);
  const Placement view = facing({0, 0, 0}, -sum);
  return tightened(laidOut(surface, piece, [&](const Triangle& triangle, std::size_t corner) {
    const Vector& p = surface.points[at(triangle.points[corner])];
    return Flat{dot(p, view.right), dot(p, view.up)};
  }));
}

Chart unrolled(const Surface& surface, const Piece& piece) {
  double uu = 0, vv = 0, weightU = 0, weightV = 0;
  for (const int i : piece) {
    const Triangle& triangle = surface.triangles[at(i)];
    // Lengths of the directions in which only u, or only v, grows.
    const Vector& a = surface.points[at(triangle.points[0])];
    const Vector e = surface.points[at(triangle.points[1])] - a,
                 f = surface.points[at(triangle.points[2])] - a;
    const float eu = triangle.uv[1].u - triangle.uv[0].u, ev = triangle.uv[1].v - triangle.uv[0].v,
                fu = triangle.uv[2].u - triangle.uv[0].u, fv = triangle.uv[2].v - triangle.uv[0].v;
    const float det = eu * fv - fu * ev;
    if (std::fabs(det) < 1e-12f) continue;
    const double weight = std::fabs(det);
    uu += weight * ((e * fv - f * ev) / det).length(), weightU += weight;
    vv += weight * ((f * eu - e * fu) / det).length(), weightV += weight;
  }
  const auto across = static_cast<float>(weightU > 0 ? uu / weightU : 1),
             up = static_cast<float>(weightV > 0 ? vv / weightV : 1);
  Chart chart = laidOut(surface, piece, [&](const Triangle& triangle, std::size_t corner) {
    return Flat{triangle.uv[corner].u * across, triangle.uv[corner].v * up};
  });
  toOrigin(chart);
  if (chart.height > chart.width) rotateChart(chart, pi / 2);
  return chart;
}

float crossOf(const Flat& a, const Flat& b, const Flat& c) {
  return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
}

std::vector<int> takeOutOverlaps(Chart& chart, bool mirrored) {
  if (chart.triangles.size() < 2) return {};
  constexpr int mostCells = 1 << 20;
  const float area = std::max(chart.width * chart.height, 1e-20f);
  float cell = std::sqrt(area / static_cast<float>(chart.triangles.size())) / 10;
  cell = std::max(cell, std::sqrt(area / static_cast<float>(mostCells)));
  const int width = static_cast<int>(chart.width / cell) + 2,
            height = static_cast<int>(chart.height / cell) + 2;
  std::vector<bool> taken(at(width) * at(height));
  std::vector<int> out;
  Chart kept;
  for (std::size_t i = 0; i < chart.triangles.size(); ++i) {
    const auto [a, b, c] = chart.corners[i];
    const float turn = crossOf(a, b, c) * (mirrored ? -1.0f : 1.0f);
    std::vector<std::size_t> cells;
    bool clash = turn <= 0 && !(turn == 0 && crossOf(a, b, c) == 0);
    const int left = static_cast<int>(std::min({a.x, b.x, c.x}) / cell),
              right = static_cast<int>(std::max({a.x, b.x, c.x}) / cell),
              low = static_cast<int>(std::min({a.y, b.y, c.y}) / cell),
              high = static_cast<int>(std::max({a.y, b.y, c.y}) / cell);
    for (int y = low; y <= high && !clash; ++y)
      for (int x = left; x <= right; ++x) {
        const Flat p{(static_cast<float>(x) + 0.5f) * cell, (static_cast<float>(y) + 0.5f) * cell};
        const float sign = mirrored ? -1.0f : 1.0f;
        if (crossOf(a, b, p) * sign <= 0 || crossOf(b, c, p) * sign <= 0 || crossOf(c, a, p) * sign <= 0)
          continue;
        const std::size_t index = at(y) * at(width) + at(x);
        if (taken[index]) {
          clash = true;
          break;
        }
        cells.push_back(index);
      }
    if (clash && !kept.triangles.empty()) {
      out.push_back(chart.triangles[i]);
      continue;
    }
    for (const std::size_t index : cells) taken[index] = true;
    kept.triangles.push_back(chart.triangles[i]);
    kept.corners.push_back(chart.corners[i]);
  }
  toOrigin(kept);
  chart = std::move(kept);
  return out;
}

float areaOf(const Chart& chart) {
  float sum = 0;
  for (const auto& [a, b, c] : chart.corners) sum += std::fabs(crossOf(a, b, c)) / 2;
  return sum * chart.density * chart.density;
}

std::vector<Chart> cutForPacking(const std::vector<Chart>& charts) {
  float whole = 0;
  for (const Chart& chart : charts) whole += areaOf(chart);
  const float longest = 0.9f * std::sqrt(whole);
  std::vector<Chart> result;
  std::vector<Chart> waiting(charts.rbegin(), charts.rend());
  while (!waiting.empty()) {
    const Chart chart = std::move(waiting.back());
    waiting.pop_back();
    const float area = areaOf(chart), length = chart.width * chart.density;
    const bool bent = area > 0.02f * whole && area < 0.5f * length * chart.height * chart.density;
    if (chart.triangles.size() < 16 || (length <= longest && !bent)) {
      result.push_back(chart);
      continue;
    }
    const int count = bent ? 2 : static_cast<int>(std::ceil(length / longest));
    std::vector<Chart> pieces = cut(chart, count);
    if (pieces.size() < 2) {
      result.push_back(chart);
      continue;
    }
    waiting.insert(waiting.end(), pieces.rbegin(), pieces.rend());
  }
  return result;
}

}  // namespace vex::geometry
