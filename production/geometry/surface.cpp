#include "production/geometry/surface.h"

#include <algorithm>
#include <map>
#include <numeric>
#include <unordered_map>

#include "base/pi.h"
#include "production/geometry/index.h"

namespace vex::geometry {

namespace {

int sizeOf(const Surface& surface) {
  return static_cast<int>(surface.points.size());
}

const Vector& corner(const Surface& surface, const Triangle& triangle, int i) {
  return surface.points[at(triangle.points[at(i % 3)])];
}

Vector crossOf(const Surface& surface, const Triangle& triangle) {
  const Vector& a = corner(surface, triangle, 0);
  return cross(corner(surface, triangle, 1) - a, corner(surface, triangle, 2) - a);
}

float& component(Vector& v, Axis axis) {
  return axis == Axis::x ? v.x : axis == Axis::y ? v.y : v.z;
}

void turnOver(Triangle& triangle) {
  std::swap(triangle.points[1], triangle.points[2]);
  std::swap(triangle.uv[1], triangle.uv[2]);
}

}  // namespace

int addPoint(Surface& surface, const Vector& point) {
  surface.points.push_back(point);
  return sizeOf(surface) - 1;
}

void addTriangle(Surface& surface, int a, int b, int c) {
  Triangle triangle;
  triangle.points = {a, b, c};
  surface.triangles.push_back(triangle);
}

void addQuad(Surface& surface, int a, int b, int c, int d) {
  const auto& points = surface.points;
  const float ac = (points[at(a)] - points[at(c)]).length(), bd = (points[at(b)] - points[at(d)]).length();
  if (ac <= bd * 1.0001f) {
    addTriangle(surface, a, b, c);
    addTriangle(surface, a, c, d);
  } else {
    addTriangle(surface, a, b, d);
    addTriangle(surface, b, c, d);
  }
}

void append(Surface& surface, const Surface& other, int part) {
  const int first = sizeOf(surface);
  if (surface.triangles.empty()) surface.mapped = other.mapped;
  surface.mapped = surface.mapped && other.mapped;
  surface.points.insert(surface.points.end(), other.points.begin(), other.points.end());
  for (Triangle triangle : other.triangles) {
    for (int& point : triangle.points) point += first;
    if (part >= 0) triangle.part = part;
    surface.triangles.push_back(triangle);
  }
}

Surface joined(const std::vector<Surface>& surfaces) {
  Surface all;
  for (const Surface& one : surfaces) append(all, one);
  return all;
}

Surface compacted(const Surface& surface) {
  Surface result;
  result.mapped = surface.mapped;
  std::vector<bool> used(surface.points.size());
  for (const Triangle& triangle : surface.triangles)
    for (const int point : triangle.points) used[at(point)] = true;
  std::vector<int> place(surface.points.size(), -1);
  for (std::size_t i = 0; i < used.size(); ++i)
    if (used[i]) place[i] = addPoint(result, surface.points[i]);
  result.triangles = surface.triangles;
  for (Triangle& triangle : result.triangles)
    for (int& point : triangle.points) point = place[at(point)];
  return result;
}

Surface selected(const Surface& surface, const std::function<bool(const Triangle&)>& wanted) {
  Surface result = surface;
  std::erase_if(result.triangles, [&](const Triangle& triangle) { return !wanted(triangle); });
  return compacted(result);
}

Surface partOf(const Surface& surface, int part) {
  return selected(surface, [part](const Triangle& triangle) { return triangle.part == part; });
}

Surface withPart(Surface surface, int part) {
  for (Triangle& triangle : surface.triangles) triangle.part = part;
  return surface;
}

Surface turnedOver(Surface surface) {
  for (Triangle& triangle : surface.triangles) turnOver(triangle);
  return surface;
}

Surface placed(Surface surface, const Placement& placement) {
  for (Vector& point : surface.points) point = transformed(placement, point);
  return handedness(placement) < 0 ? turnedOver(std::move(surface)) : surface;
}

Surface mirrored(const Surface& surface, Axis axis) {
  Surface result = surface;
  const Bounds bounds = boundsOf(surface);
  const float onPlane = 1e-5f * (bounds.most - bounds.least).length();
  std::vector<int> twin(surface.points.size());
  for (std::size_t i = 0; i < twin.size(); ++i) {
    Vector point = surface.points[i];
    float& across = component(point, axis);
    if (std::fabs(across) <= onPlane) {
      component(result.points[i], axis) = 0;
      twin[i] = static_cast<int>(i);
    } else {
      across = -across;
      twin[i] = addPoint(result, point);
    }
  }
  for (Triangle triangle : surface.triangles) {
    for (int& point : triangle.points) point = twin[at(point)];
    turnOver(triangle);
    result.triangles.push_back(triangle);
  }
  return result;
}

Surface bent(Surface surface, const std::function<Vector(const Vector&)>& move) {
  for (Vector& point : surface.points) point = move(point);
  return surface;
}

Surface displaced(Surface surface, const std::function<float(const Vector&, const Vector&)>& height) {
  const std::vector<Vector> normals = pointNormals(surface);
  for (std::size_t i = 0; i < normals.size(); ++i)
    surface.points[i] += normals[i] * height(surface.points[i], normals[i]);
  return surface;
}

Surface welded(const Surface& surface, float distance) {
  // Cells of the welding distance: partners lie in the same cell or in one of its neighbours.
  const float cell = std::max(distance, 1e-9f);
  const auto cellOf = [&](float x) { return static_cast<long>(std::floor(x / cell)); };
  std::map<std::array<long, 3>, std::vector<int>> cells;
  Surface result;
  result.mapped = surface.mapped;
  std::vector<int> place(surface.points.size());
  for (std::size_t i = 0; i < surface.points.size(); ++i) {
    const Vector& point = surface.points[i];
    const std::array<long, 3> home{cellOf(point.x), cellOf(point.y), cellOf(point.z)};
    int partner = -1;
    for (int n = 0; n < 27 && partner < 0; ++n) {
      const auto found = cells.find({home[0] + n % 3 - 1, home[1] + n / 3 % 3 - 1, home[2] + n / 9 - 1});
      if (found == cells.end()) continue;
      for (const int candidate : found->second)
        if ((result.points[at(candidate)] - point).length() <= distance) partner = candidate;
    }
    if (partner < 0) {
      partner = addPoint(result, point);
      cells[home].push_back(partner);
    }
    place[i] = partner;
  }
  for (Triangle triangle : surface.triangles) {
    for (int& point : triangle.points) point = place[at(point)];
    const auto& p = triangle.points;
    if (p[0] != p[1] && p[1] != p[2] && p[2] != p[0]) result.triangles.push_back(triangle);
  }
  return compacted(result);
}

Surface creased(const Surface& surface, float degrees) {
  const float least = std::cos(degrees * pi / 180);
  std::vector<std::vector<std::pair<int, int>>> around(surface.points.size());  // triangle and its corner
  std::vector<Vector> normals;
  for (std::size_t i = 0; i < surface.triangles.size(); ++i) {
    normals.push_back(normalOf(surface, surface.triangles[i]));
    for (int k = 0; k < 3; ++k)
      around[at(surface.triangles[i].points[at(k)])].push_back({static_cast<int>(i), k});
  }
  Surface result = surface;
  for (std::size_t point = 0; point < around.size(); ++point) {
    // Triangles around the point fall into groups that hang together over soft edges.
    const auto& fan = around[point];
    std::vector<std::size_t> group(fan.size());
    std::iota(group.begin(), group.end(), 0u);
    const auto root = [&](std::size_t i) {
      while (group[i] != i) i = group[i];
      return i;
    };
    for (std::size_t i = 0; i < fan.size(); ++i)
      for (std::size_t j = 0; j < i; ++j) {
        const auto& p = surface.triangles[at(fan[i].first)].points;
        const auto& q = surface.triangles[at(fan[j].first)].points;
        const int shared = static_cast<int>(std::count_if(
            p.begin(), p.end(), [&](int c) { return std::find(q.begin(), q.end(), c) != q.end(); }));
        if (shared >= 2 && dot(normals[at(fan[i].first)], normals[at(fan[j].first)]) >= least)
          group[std::max(root(i), root(j))] = std::min(root(i), root(j));
      }
    std::map<std::size_t, int> copies;
    for (std::size_t i = 0; i < fan.size(); ++i) {
      const std::size_t of = root(i);
      if (!copies.contains(of))
        copies[of] = copies.empty() ? static_cast<int>(point) : addPoint(result, surface.points[point]);
      result.triangles[at(fan[i].first)].points[at(fan[i].second)] = copies[of];
    }
  }
  return result;
}

Surface faceted(const Surface& surface) {
  Surface result;
  result.mapped = surface.mapped;
  for (Triangle triangle : surface.triangles) {
    for (int& point : triangle.points) point = addPoint(result, surface.points[at(point)]);
    result.triangles.push_back(triangle);
  }
  return result;
}

Surface withoutMapping(Surface surface) {
  for (Triangle& triangle : surface.triangles) triangle.uv = {};
  surface.mapped = false;
  return surface;
}

Vector normalOf(const Surface& surface, const Triangle& triangle) {
  return unit(crossOf(surface, triangle));
}

std::vector<Vector> pointNormals(const Surface& surface) {
  std::vector<Vector> normals(surface.points.size(), Vector(0, 0, 0));
  for (const Triangle& triangle : surface.triangles) {
    const Vector normal = normalOf(surface, triangle);
    for (const int point : triangle.points) normals[at(point)] += normal;
  }
  for (Vector& normal : normals) normal.normalize();
  return normals;
}

float areaOf(const Surface& surface) {
  double sum = 0;
  for (const Triangle& triangle : surface.triangles) sum += 0.5 * crossOf(surface, triangle).length();
  return static_cast<float>(sum);
}

float volumeOf(const Surface& surface) {
  double sum = 0;
  for (const Triangle& triangle : surface.triangles)
    sum +=
        dot(corner(surface, triangle, 0), cross(corner(surface, triangle, 1), corner(surface, triangle, 2))) /
        6.0;
  return static_cast<float>(sum);
}

Bounds boundsOf(const Surface& surface) {
  if (surface.points.empty()) return {Vector(0, 0, 0), Vector(0, 0, 0)};
  Bounds bounds{surface.points[0], surface.points[0]};
  for (const Vector& p : surface.points) {
    bounds.least = {std::min(bounds.least.x, p.x), std::min(bounds.least.y, p.y),
                    std::min(bounds.least.z, p.z)};
    bounds.most = {std::max(bounds.most.x, p.x), std::max(bounds.most.y, p.y), std::max(bounds.most.z, p.z)};
  }
  return bounds;
}

Topology topologyOf(const Surface& surface) {
  struct Edge {
    int uses = 0, balance = 0;  // balance: once in each direction is 0
  };
  std::map<std::pair<int, int>, Edge> edges;
  std::vector<bool> used(surface.points.size());
  Topology result;
  for (const Triangle& triangle : surface.triangles)
    for (int k = 0; k < 3; ++k) {
      const int a = triangle.points[at(k)], b = triangle.points[at((k + 1) % 3)];
      Edge& edge = edges[{std::min(a, b), std::max(a, b)}];
      ++edge.uses;
      edge.balance += a < b ? 1 : -1;
      used[at(a)] = true;
    }
  result.points = static_cast<int>(std::count(used.begin(), used.end(), true));
  result.edges = static_cast<int>(edges.size());
  result.triangles = static_cast<int>(surface.triangles.size());
  for (const auto& [ends, edge] : edges) {
    if (edge.uses == 1) ++result.openEdges;
    if (edge.uses > 2 || (edge.uses == 2 && edge.balance != 0)) ++result.wrongEdges;
  }
  return result;
}

}  // namespace vex::geometry
