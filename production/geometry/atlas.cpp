#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <map>
#include <numeric>
#include <optional>

#include "production/geometry/mapping.h"
#include "shell/report.h"

namespace vex {

namespace {

std::size_t at(int index) {
  return static_cast<std::size_t>(index);
}

struct Flat {
  float x, y;
};

struct Chart {
  std::vector<int> triangles;
  std::vector<std::array<Flat, 3>> corners;  // of each, in units of length; from (0, 0) upwards
  float width = 0, height = 0;
  float density = 1;
};

// For each edge of each triangle the triangle beyond it, where there is exactly one and the mapping goes on
// if `alsoMapping`.
std::vector<std::array<int, 3>> neighboursOf(const Surface& surface, bool alsoMapping) {
  struct Side {
    int triangle, edge;
  };
  std::map<std::pair<int, int>, std::vector<Side>> edges;
  const int count = static_cast<int>(surface.triangles.size());
  for (int i = 0; i < count; ++i)
    for (int k = 0; k < 3; ++k) {
      const auto& points = surface.triangles[at(i)].points;
      edges[std::minmax(points[at(k)], points[at((k + 1) % 3)])].push_back({i, k});
    }
  std::vector<std::array<int, 3>> result(at(count), {-1, -1, -1});
  for (const auto& [ends, sides] : edges) {
    if (sides.size() != 2) continue;
    const Triangle &p = surface.triangles[at(sides[0].triangle)],
                   &q = surface.triangles[at(sides[1].triangle)];
    const int i = sides[0].edge, j = sides[1].edge;
    if (alsoMapping && !(p.uv[at(i)] == q.uv[at((j + 1) % 3)] && p.uv[at((i + 1) % 3)] == q.uv[at(j)]))
      continue;
    result[at(sides[0].triangle)][at(i)] = sides[1].triangle;
    result[at(sides[1].triangle)][at(j)] = sides[0].triangle;
  }
  return result;
}

Vector areaVector(const Surface& surface, const Triangle& triangle) {
  const Vector& a = surface.points[at(triangle.points[0])];
  return cross(surface.points[at(triangle.points[1])] - a, surface.points[at(triangle.points[2])] - a) * 0.5f;
}

// Pieces that face one way: from the largest free triangle outwards.
std::vector<std::vector<int>> piecesByNormals(const Surface& surface, const std::vector<int>& wanted) {
  constexpr float spread = 0.64f;  // cosine of the widest angle to the piece's mean
  constexpr float firm = 0.5f;     // and to the triangle that it began with
  const auto neighbours = neighboursOf(surface, false);
  std::vector<bool> free(surface.triangles.size());
  for (const int i : wanted) free[at(i)] = true;
  std::vector<Vector> areas;
  for (const Triangle& triangle : surface.triangles) areas.push_back(areaVector(surface, triangle));
  std::vector<int> order = wanted;
  std::stable_sort(order.begin(), order.end(),
                   [&](int p, int q) { return areas[at(p)].length() > areas[at(q)].length(); });
  std::vector<std::vector<int>> pieces;
  for (const int seed : order) {
    if (!free[at(seed)]) continue;
    std::vector<int> piece{seed};
    free[at(seed)] = false;
    Vector sum = areas[at(seed)];
    const Vector first = unit(areas[at(seed)]);
    for (std::size_t next = 0; next < piece.size(); ++next)
      for (const int beyond : neighbours[at(piece[next])]) {
        if (beyond < 0 || !free[at(beyond)]) continue;
        if (surface.triangles[at(beyond)].part != surface.triangles[at(seed)].part) continue;
        const Vector normal = unit(areas[at(beyond)]);
        if (dot(normal, unit(sum)) < spread || dot(normal, first) < firm) continue;
        free[at(beyond)] = false;
        piece.push_back(beyond);
        sum += areas[at(beyond)];
      }
    pieces.push_back(piece);
  }
  return pieces;
}

std::vector<std::vector<int>> piecesByMapping(const Surface& surface) {
  const auto neighbours = neighboursOf(surface, true);
  std::vector<bool> free(surface.triangles.size(), true);
  std::vector<std::vector<int>> pieces;
  for (std::size_t seed = 0; seed < free.size(); ++seed) {
    if (!free[seed]) continue;
    std::vector<int> piece{static_cast<int>(seed)};
    free[seed] = false;
    for (std::size_t next = 0; next < piece.size(); ++next)
      for (const int beyond : neighbours[at(piece[next])])
        if (beyond >= 0 && free[at(beyond)] &&
            surface.triangles[at(beyond)].part == surface.triangles[seed].part) {
          free[at(beyond)] = false;
          piece.push_back(beyond);
        }
    pieces.push_back(piece);
  }
  return pieces;
}

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

void rotateChart(Chart& chart, float angle) {
  const float c = std::cos(angle), s = std::sin(angle);
  for (auto& corners : chart.corners)
    for (Flat& p : corners) p = {c * p.x - s * p.y, s * p.x + c * p.y};
  toOrigin(chart);
}

// Seen along its mean normal and turned to the smallest rectangle, lying.
Chart flattened(const Surface& surface, const std::vector<int>& piece) {
  Vector sum(0, 0, 0);
  for (const int i : piece) sum += areaVector(surface, surface.triangles[at(i)]);
  const Placement view = facing({0, 0, 0}, -sum);
  Chart chart;
  chart.triangles = piece;
  for (const int i : piece) {
    std::array<Flat, 3> corners{};
    for (std::size_t k = 0; k < 3; ++k) {
      const Vector& p = surface.points[at(surface.triangles[at(i)].points[k])];
      corners[k] = {dot(p, view.right), dot(p, view.up)};
    }
    chart.corners.push_back(corners);
  }
  Chart best;
  float least = std::numeric_limits<float>::max();
  for (int i = 0; i < 16; ++i) {
    Chart candidate = chart;
    rotateChart(candidate, 3.14159265f / 16 * static_cast<float>(i));
    const float area = candidate.width * candidate.height;
    if (area >= least * 0.999f) continue;
    least = area;
    best = std::move(candidate);
  }
  if (best.height > best.width) rotateChart(best, 3.14159265f / 2);
  return best;
}

// The mapping that stands, stretched in each direction to the lengths that it covers.
Chart unrolled(const Surface& surface, const std::vector<int>& piece) {
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
  Chart chart;
  chart.triangles = piece;
  for (const int i : piece) {
    std::array<Flat, 3> corners{};
    for (std::size_t k = 0; k < 3; ++k) {
      const Uv& uv = surface.triangles[at(i)].uv[k];
      corners[k] = {uv.u * across, uv.v * up};
    }
    chart.corners.push_back(corners);
  }
  toOrigin(chart);
  if (chart.height > chart.width) rotateChart(chart, 3.14159265f / 2);
  return chart;
}

float crossOf(const Flat& a, const Flat& b, const Flat& c) {
  return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
}

// Triangles that would lie over others, or upside down, when the chart is flat: every one that begins after
// them is taken out. Looked at on a grid of about a tenth of the usual triangle.
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

struct Spot {
  int x = 0, y = 0;
};

// Rectangles from the tallest down, each as low as it goes on the skyline of those before.
std::optional<std::vector<Spot>> pack(const std::vector<Chart>& charts, float scale,
                                      const AtlasOptions& options) {
  const auto texels = [&](float length, const Chart& chart) {
    return static_cast<int>(std::ceil(length * scale * chart.density)) + 1 + 2 * options.bleed;
  };
  std::vector<std::size_t> order(charts.size());
  std::iota(order.begin(), order.end(), 0u);
  std::stable_sort(order.begin(), order.end(), [&](std::size_t p, std::size_t q) {
    return texels(charts[p].height, charts[p]) > texels(charts[q].height, charts[q]);
  });
  std::vector<int> skyline(at(options.side), 0);
  std::vector<Spot> spots(charts.size());
  for (const std::size_t i : order) {
    const int width = texels(charts[i].width, charts[i]), height = texels(charts[i].height, charts[i]);
    int bestY = options.side, bestX = -1;
    for (int x = 0; x + width <= options.side; ++x) {
      int y = 0;
      for (int k = x; k < x + width; ++k) {
        y = std::max(y, skyline[at(k)]);
        if (y >= bestY) {
          x = k;  // nothing that still covers this column is better
          break;
        }
      }
      if (y < bestY && x + width <= options.side) bestY = y, bestX = x;
    }
    if (bestX < 0 || bestY + height > options.side) return std::nullopt;
    std::fill_n(skyline.begin() + bestX, width, bestY + height);
    spots[i] = {bestX, bestY};
  }
  return spots;
}

}  // namespace

Surface mappedAtlas(const Surface& surface, const AtlasOptions& options, AtlasFigures* figures) {
  std::vector<Chart> charts;
  std::vector<int> leftOver;
  if (options.charts == Charts::byMapping) {
    for (const std::vector<int>& piece : piecesByMapping(surface)) {
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
    for (const std::vector<int>& piece : piecesByNormals(surface, leftOver)) {
      Chart chart = flattened(surface, piece);
      const std::vector<int> out = takeOutOverlaps(chart, false);
      next.insert(next.end(), out.begin(), out.end());
      charts.push_back(std::move(chart));
    }
    leftOver = std::move(next);
  }

  double area = 0;
  for (Chart& chart : charts) {
    if (options.density) chart.density = options.density(surface.triangles[at(chart.triangles[0])]);
    area += static_cast<double>(chart.width * chart.height * chart.density * chart.density);
  }
  const auto side = static_cast<float>(options.side);
  float low = 0, high = side / static_cast<float>(std::sqrt(std::max(area, 1e-20)));
  std::optional<std::vector<Spot>> spots;
  for (int i = 0; i < 18; ++i) {
    const float scale = (low + high) / 2;
    if (auto fits = pack(charts, scale, options)) {
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
    const Chart& chart = charts[i];
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

}  // namespace vex
