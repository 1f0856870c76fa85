#include <algorithm>
#include <cmath>
#include <numeric>
#include <optional>

#include "base/report.h"
#include "production/geometry/chart.h"
#include "production/geometry/index.h"
#include "production/geometry/mapping.h"
#include "production/geometry/packing.h"
#include "production/geometry/pieces.h"

namespace vex::geometry {

namespace {

// By their mapping as far as that does not lie over itself, the rest by normals.
std::vector<Chart> chartsOf(const Surface& surface, const AtlasOptions& options) {
  std::vector<Chart> charts;
  std::vector<int> leftOver;
  if (options.charts == Charts::byMapping) {
    for (const Piece& piece : piecesByMapping(surface)) {
      Chart chart = unrolled(surface, piece);
      float turn = 0;
      for (const auto& [a, b, c] : chart.corners) turn += crossOf(a, b, c);
      const std::vector<int> out = takeOutOverlaps(chart, turn < 0);
      leftOver.insert(leftOver.end(), out.begin(), out.end());
      charts.push_back(std::move(chart));
    }
  } else {
    leftOver.resize(surface.triangles.size());
    std::iota(leftOver.begin(), leftOver.end(), 0);
  }
  while (!leftOver.empty()) {
    std::vector<int> next;
    for (const Piece& piece : piecesByNormals(surface, leftOver)) {
      Chart chart = flattened(surface, piece);
      const std::vector<int> out = takeOutOverlaps(chart, false);
      next.insert(next.end(), out.begin(), out.end());
      charts.push_back(std::move(chart));
    }
    leftOver = std::move(next);
  }
  if (options.density)
    for (Chart& chart : charts) chart.density = options.density(surface.triangles[at(chart.triangles[0])]);
  return cutForPacking(charts);
}

}  // namespace

Surface mappedAtlas(const Surface& surface, const AtlasOptions& options, AtlasFigures* figures) {
  const std::vector<Chart> charts = chartsOf(surface, options);
  std::vector<TurnedChart> turned;
  double area = 0;
  for (const Chart& chart : charts) {
    turned.push_back(quarterTurns(chart));
    area += static_cast<double>(areaOf(chart));
  }
  const auto side = static_cast<float>(options.side);
  float low = 0, high = side / static_cast<float>(std::sqrt(std::max(area, 1e-20)));
  std::optional<std::vector<Spot>> spots;
  for (int i = 0; i < 14; ++i) {
    const float scale = (low + high) / 2;
    if (auto fits = pack(turned, scale, options.side, options.bleed)) {
      low = scale;
      spots = std::move(fits);
    } else {
      high = scale;
    }
  }
  if (!spots) fatalError("too many charts for %d texels", options.side);

  Surface result = surface;
  result.mapped = true;
  double covered = 0;
  for (std::size_t i = 0; i < charts.size(); ++i) {
    const Chart& chart = turned[i][(*spots)[i].quarters];
    const float scale = low * chart.density;
    const auto place = [&](float length, int from) {
      return (length * scale + static_cast<float>(from + options.bleed) + 0.5f) / side;
    };
    for (std::size_t k = 0; k < chart.triangles.size(); ++k) {
      Triangle& triangle = result.triangles[at(chart.triangles[k])];
      for (std::size_t c = 0; c < 3; ++c)
        triangle.uv[c] = {place(chart.corners[k][c].x, (*spots)[i].x),
                          place(chart.corners[k][c].y, (*spots)[i].y)};
      const auto& [a, b, c] = chart.corners[k];
      covered += std::fabs(crossOf(a, b, c)) / 2 * scale * scale;
    }
  }
  if (figures) *figures = {static_cast<int>(charts.size()), low, static_cast<float>(covered / (side * side))};
  return result;
}

}  // namespace vex::geometry
