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

// One number for all points in one place: charts run on over hard edges.
std::vector<int> placesOf(const Surface& surface) {
  std::map<std::array<float, 3>, int> places;
  std::vector<int> result;
  for (const Vector& p : surface.points)
    result.push_back(places.try_emplace({p.x, p.y, p.z}, static_cast<int>(places.size())).first->second);
  return result;
}

// For each edge of each triangle the triangle beyond it, where there is exactly one and the mapping goes on
// if `alsoMapping`.
std::vector<std::array<int, 3>> neighboursOf(const Surface& surface, bool alsoMapping) {
  struct Side {
    int triangle, edge;
  };
  std::map<std::pair<int, int>, std::vector<Side>> edges;
  const std::vector<int> places = placesOf(surface);
  const int count = static_cast<int>(surface.triangles.size());
  for (int i = 0; i < count; ++i)
    for (int k = 0; k < 3; ++k) {
      const auto& points = surface.triangles[at(i)].points;
      edges[std::minmax(places[at(points[at(k)])], places[at(points[at((k + 1) % 3)])])].push_back({i, k});
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

// How far the triangles of a piece may face away from each other, as cosines.
struct Spread {
  float mean;   // to the mean of the piece
  float first;  // to the triangle that it began with
};
constexpr Spread narrow{0.64f, 0.5f}, wide{0.42f, 0.25f};

// Grows pieces over neighbours that face one way, each from the largest free triangle.
struct PieceGrower {
  const Surface& surface;
  std::vector<std::array<int, 3>> neighbours;
  std::vector<Vector> areas;
  std::vector<int> owner;  // piece of each triangle; -1: free, -2: not to be touched
  std::vector<std::vector<int>> pieces;
  std::vector<Vector> sums;  // of the area vectors of each piece

  void grow(const std::vector<int>& order, const Spread& spread) {
    for (const int seed : order) {
      if (owner[at(seed)] != -1) continue;
      const int piece = static_cast<int>(pieces.size());
      pieces.emplace_back();
      sums.emplace_back(0, 0, 0);
      take(seed, piece);
      const Vector first = unit(areas[at(seed)]);
      for (std::size_t next = 0; next < pieces[at(piece)].size(); ++next)
        for (const int beyond : neighbours[at(pieces[at(piece)][next])])
          if (fits(beyond, piece, spread) && dot(unit(areas[at(beyond)]), first) >= spread.first)
            take(beyond, piece);
    }
  }

  // Pieces smaller than `share` of all are given to the pieces around them, as far as these can have them.
  void dissolve(float share) {
    double whole = 0;
    for (const std::vector<int>& piece : pieces) whole += areaOf(piece);
    std::vector<int> loose;
    for (std::vector<int>& piece : pieces) {
      if (areaOf(piece) >= share * whole) continue;
      for (const int triangle : piece) owner[at(triangle)] = -1;
      loose.insert(loose.end(), piece.begin(), piece.end());
      piece.clear();
    }
    for (bool changed = true; changed;) {
      changed = false;
      for (const int triangle : loose) {
        if (owner[at(triangle)] != -1) continue;
        int best = -1;
        float most = 0;
        for (const int beyond : neighbours[at(triangle)]) {
          const int piece = beyond < 0 ? -1 : owner[at(beyond)];
          if (piece < 0 || !fits(triangle, piece, wide)) continue;
          const float likeness = dot(unit(areas[at(triangle)]), unit(sums[at(piece)]));
          if (best < 0 || likeness > most) best = piece, most = likeness;
        }
        if (best < 0) continue;
        take(triangle, best);
        changed = true;
      }
    }
    grow(loose, wide);
    std::erase_if(pieces, [](const std::vector<int>& piece) { return piece.empty(); });
  }

 private:
  double areaOf(const std::vector<int>& piece) const {
    double sum = 0;
    for (const int triangle : piece) sum += areas[at(triangle)].length();
    return sum;
  }
  bool fits(int triangle, int piece, const Spread& spread) const {
    return triangle >= 0 && owner[at(triangle)] == -1 &&
           surface.triangles[at(triangle)].part == surface.triangles[at(pieces[at(piece)][0])].part &&
           dot(unit(areas[at(triangle)]), unit(sums[at(piece)])) >= spread.mean;
  }
  void take(int triangle, int piece) {
    owner[at(triangle)] = piece;
    pieces[at(piece)].push_back(triangle);
    sums[at(piece)] += areas[at(triangle)];
  }
};

std::vector<std::vector<int>> piecesByNormals(const Surface& surface, const std::vector<int>& wanted) {
  PieceGrower grower{surface, neighboursOf(surface, false), {}, {}, {}, {}};
  for (const Triangle& triangle : surface.triangles) grower.areas.push_back(areaVector(surface, triangle));
  grower.owner.assign(surface.triangles.size(), -2);
  for (const int i : wanted) grower.owner[at(i)] = -1;
  std::vector<int> order = wanted;
  std::stable_sort(order.begin(), order.end(),
                   [&](int p, int q) { return grower.areas[at(p)].length() > grower.areas[at(q)].length(); });
  grower.grow(order, narrow);
  grower.dissolve(0.004f);
  return grower.pieces;
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

// Turned to the smallest rectangle, lying.
Chart tightened(const Chart& chart) {
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

// Seen along its mean normal.
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
  return tightened(chart);
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

float areaOf(const Chart& chart) {
  float sum = 0;
  for (const auto& [a, b, c] : chart.corners) sum += std::fabs(crossOf(a, b, c)) / 2;
  return sum * chart.density * chart.density;
}

// Long charts, and bent ones that leave most of their rectangle empty, in pieces that pack well.
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

struct Spot {
  int x = 0, y = 0;
  std::size_t quarters = 0;  // turned by so many quarter turns
};
using TurnedChart = std::array<Chart, 4>;

TurnedChart quarterTurns(const Chart& chart) {
  TurnedChart turns{chart, chart, chart, chart};
  for (int i = 1; i < 4; ++i) rotateChart(turns[at(i)], 3.14159265f / 2 * static_cast<float>(i));
  return turns;
}

// What a chart covers of each column of texels, bleed included: from `low` up to below `high`.
struct Profile {
  std::vector<int> low, high;
};

Profile profileOf(const Chart& chart, float scale, int bleed) {
  const int inner = static_cast<int>(std::ceil(chart.width * scale)) + 1, width = inner + 2 * bleed;
  std::vector<float> least(at(inner), 1e9f), most(at(inner), -1e9f);
  for (const auto& corners : chart.corners)
    for (std::size_t k = 0; k < 3; ++k) {
      Flat p = corners[k], q = corners[(k + 1) % 3];
      if (p.x > q.x) std::swap(p, q);
      const float x0 = p.x * scale, x1 = q.x * scale, y0 = p.y * scale, y1 = q.y * scale;
      // Texels reach half a texel to both sides of their centres; so does what the line covers.
      const int from = static_cast<int>(x0), to = std::min(inner - 1, static_cast<int>(std::ceil(x1)));
      for (int x = from; x <= to; ++x)
        for (const float edge :
             {std::clamp(static_cast<float>(x) - 1, x0, x1), std::clamp(static_cast<float>(x) + 1, x0, x1)}) {
          const float y = x1 > x0 ? y0 + (y1 - y0) * (edge - x0) / (x1 - x0) : y0;
          least[at(x)] = std::min({least[at(x)], y, x1 > x0 ? y : y1});
          most[at(x)] = std::max({most[at(x)], y, x1 > x0 ? y : y1});
        }
    }
  Profile profile;
  for (int x = 0; x < width; ++x) {
    float low = 1e9f, high = -1e9f;
    for (int k = std::max(0, x - 2 * bleed); k <= std::min(inner - 1, x); ++k)
      low = std::min(low, least[at(k)]), high = std::max(high, most[at(k)]);
    profile.low.push_back(static_cast<int>(std::floor(low)));
    profile.high.push_back(static_cast<int>(std::ceil(high)) + 1 + 2 * bleed);
  }
  return profile;
}

// From the tallest down, each turned and placed so that its top is as low as it goes, close to the outline of
// what is there.
std::optional<std::vector<Spot>> pack(const std::vector<TurnedChart>& charts, float scale,
                                      const AtlasOptions& options) {
  std::vector<std::size_t> order(charts.size());
  std::iota(order.begin(), order.end(), 0u);
  std::stable_sort(order.begin(), order.end(), [&](std::size_t p, std::size_t q) {
    return charts[p][0].height * charts[p][0].density > charts[q][0].height * charts[q][0].density;
  });
  std::vector<int> skyline(at(options.side), 0);
  std::vector<Spot> spots(charts.size());
  for (const std::size_t i : order) {
    int lowestTop = options.side + 1;
    Profile best;
    for (std::size_t quarters = 0; quarters < 4; ++quarters) {
      const Chart& chart = charts[i][quarters];
      const Profile profile = profileOf(chart, scale * chart.density, options.bleed);
      const int width = static_cast<int>(profile.low.size());
      const int height = *std::max_element(profile.high.begin(), profile.high.end());
      for (int x = 0; x + width <= options.side; ++x) {
        int y = 0;
        for (int k = 0; k < width && y + height < lowestTop; ++k)
          y = std::max(y, skyline[at(x + k)] - profile.low[at(k)]);
        if (y + height >= lowestTop) continue;
        lowestTop = y + height;
        best = profile;
        spots[i] = {x, y, quarters};
      }
    }
    if (lowestTop > options.side) return std::nullopt;
    for (std::size_t k = 0; k < best.high.size(); ++k)
      skyline[at(spots[i].x) + k] = spots[i].y + best.high[k];
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

  if (options.density)
    for (Chart& chart : charts) chart.density = options.density(surface.triangles[at(chart.triangles[0])]);
  charts = cutForPacking(charts);
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
    if (auto fits = pack(turned, scale, options)) {
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

}  // namespace vex
