#include <algorithm>
#include <cmath>
#include <map>
#include <set>

#include "base/pi.h"
#include "production/geometry/index.h"
#include "production/geometry/surface.h"

namespace vex::geometry {

namespace {

using EdgeKey = std::pair<int, int>;

EdgeKey edgeOf(int a, int b) {
  return {std::min(a, b), std::max(a, b)};
}

struct Neighbours {
  std::vector<std::vector<int>> all;      // of each point, ascending
  std::vector<std::vector<int>> borders;  // those along open edges
};

Neighbours neighboursOf(const Surface& surface) {
  std::map<EdgeKey, int> uses;
  for (const Triangle& triangle : surface.triangles)
    for (int k = 0; k < 3; ++k) ++uses[edgeOf(triangle.points[at(k)], triangle.points[at((k + 1) % 3)])];
  Neighbours result;
  result.all.resize(surface.points.size());
  result.borders.resize(surface.points.size());
  for (const auto& [edge, count] : uses) {
    result.all[at(edge.first)].push_back(edge.second);
    result.all[at(edge.second)].push_back(edge.first);
    if (count != 1) continue;
    result.borders[at(edge.first)].push_back(edge.second);
    result.borders[at(edge.second)].push_back(edge.first);
  }
  return result;
}

Uv middle(const Uv& p, const Uv& q) {
  return {(p.u + q.u) / 2, (p.v + q.v) / 2};
}

Surface dividedOnce(const Surface& surface) {
  const Neighbours neighbours = neighboursOf(surface);
  Surface result;
  result.mapped = surface.mapped;

  // Old points: Loop's weights ("Smooth subdivision surfaces based on triangles", 1987) inside, cubic
  // B-splines on borders.
  for (std::size_t i = 0; i < surface.points.size(); ++i) {
    const auto& ring = neighbours.all[i];
    const auto& border = neighbours.borders[i];
    const Vector& old = surface.points[i];
    Vector sum(0, 0, 0);
    if (border.size() == 2) {
      addPoint(result,
               old * 0.75f + (surface.points[at(border[0])] + surface.points[at(border[1])]) * 0.125f);
    } else if (!border.empty() || ring.empty()) {
      addPoint(result, old);
    } else {
      const auto n = static_cast<float>(ring.size());
      const float c = 0.375f + 0.25f * std::cos(2 * pi / n);
      const float weight = (0.625f - c * c) / n;
      for (const int neighbour : ring) sum += surface.points[at(neighbour)];
      addPoint(result, old * (1 - n * weight) + sum * weight);
    }
  }

  struct Edge {
    Vector opposite{0, 0, 0};
    int uses = 0, point = -1;
  };
  std::map<EdgeKey, Edge> edges;
  for (const Triangle& triangle : surface.triangles)
    for (int k = 0; k < 3; ++k) {
      Edge& edge = edges[edgeOf(triangle.points[at(k)], triangle.points[at((k + 1) % 3)])];
      edge.opposite += surface.points[at(triangle.points[at((k + 2) % 3)])];
      ++edge.uses;
    }
  for (auto& [ends, edge] : edges) {
    const Vector sum = surface.points[at(ends.first)] + surface.points[at(ends.second)];
    edge.point = addPoint(result, edge.uses == 2 ? sum * 0.375f + edge.opposite * 0.125f : sum * 0.5f);
  }

  for (const Triangle& triangle : surface.triangles) {
    std::array<int, 3> middles{};
    std::array<Uv, 3> middleUv{};
    for (int k = 0; k < 3; ++k) {
      const std::size_t from = at(k), to = at((k + 1) % 3);
      middles[from] = edges[edgeOf(triangle.points[from], triangle.points[to])].point;
      middleUv[from] = middle(triangle.uv[from], triangle.uv[to]);
    }
    for (int k = 0; k < 3; ++k) {
      const std::size_t own = at(k), before = at((k + 2) % 3);
      result.triangles.push_back({{triangle.points[own], middles[own], middles[before]},
                                  {triangle.uv[own], middleUv[own], middleUv[before]},
                                  triangle.part});
    }
    result.triangles.push_back({middles, middleUv, triangle.part});
  }
  return result;
}

}  // namespace

Surface subdivided(const Surface& surface, int rounds) {
  Surface result = surface;
  for (int i = 0; i < rounds; ++i) result = dividedOnce(result);
  return result;
}

Surface smoothed(Surface surface, int rounds) {
  const Neighbours neighbours = neighboursOf(surface);
  const auto step = [&](float weight) {
    const std::vector<Vector> old = surface.points;
    for (std::size_t i = 0; i < old.size(); ++i) {
      const auto& ring = neighbours.all[i];
      if (ring.empty() || !neighbours.borders[i].empty()) continue;
      Vector sum(0, 0, 0);
      for (const int neighbour : ring) sum += old[at(neighbour)];
      surface.points[i] += (sum / static_cast<float>(ring.size()) - old[i]) * weight;
    }
  };
  // Taubin, "A signal processing approach to fair surface design", 1995.
  for (int i = 0; i < rounds; ++i) {
    step(0.5f);
    step(-0.53f);
  }
  return surface;
}

}  // namespace vex::geometry
