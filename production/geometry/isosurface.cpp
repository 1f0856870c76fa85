#include "production/geometry/isosurface.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>

#include "production/geometry/index.h"

namespace vex::geometry {

using namespace image;

namespace {

// --- The table of marching cubes, worked out instead of written down. Corner c of a cube lies at
// (c & 1, c >> 1 & 1, c >> 2 & 1). An edge is (axis, its lower corner) as axis * 8 + corner.

using CubeTriangle = std::array<int, 3>;  // edges

// The four corners of a face, counter-clockwise seen from outside the cube.
std::array<int, 4> faceCorners(int axis, int side) {
  const int u = 1 << (axis + 1) % 3, v = 1 << (axis + 2) % 3, base = side << axis;
  if (side) return {base, base + u, base + u + v, base + v};
  return {base, base + v, base + u + v, base + u};
}

int edgeBetween(int p, int q) {
  const int axis = (p ^ q) == 1 ? 0 : (p ^ q) == 2 ? 1 : 2;
  return axis * 8 + std::min(p, q);
}

// Whether two edges of the cube lie on one of its faces.
bool shareFace(int e, int f) {
  for (int axis = 0; axis < 3; ++axis) {
    const auto on = [&](int edge, int side) { return edge / 8 != axis && ((edge % 8) >> axis & 1) == side; };
    if ((on(e, 0) && on(f, 0)) || (on(e, 1) && on(f, 1))) return true;
  }
  return false;
}

// Triangles of a loop of edges, with no inner line along a face of the cube: the neighbouring cube could draw
// the same line.
bool divideLoop(const std::vector<int>& loop, std::size_t from, std::size_t to,
                std::vector<CubeTriangle>& out) {
  if (to - from < 2) return true;
  const auto allowed = [&](std::size_t p, std::size_t q) {
    return q - p == 1 || (p == 0 && q == loop.size() - 1) || !shareFace(loop[p], loop[q]);
  };
  for (std::size_t k = from + 1; k < to; ++k) {
    if (!allowed(from, k) || !allowed(k, to)) continue;
    const std::size_t before = out.size();
    out.push_back({loop[from], loop[k], loop[to]});
    if (divideLoop(loop, from, k, out) && divideLoop(loop, k, to, out)) return true;
    out.resize(before);
  }
  return false;
}

// Where the surface crosses the faces of the cube it leaves lines; they join to loops around the corners that
// are inside. On a face with two inside corners that are not neighbours the two are kept apart, which both
// cubes of the face see alike.
std::vector<CubeTriangle> trianglesOf(int inside) {
  std::map<int, int> next;  // edge to edge, the inside on the left seen from outside the cube
  const auto isInside = [&](int corner) { return (inside >> corner & 1) != 0; };
  for (int axis = 0; axis < 3; ++axis)
    for (int side = 0; side < 2; ++side) {
      const std::array<int, 4> corners = faceCorners(axis, side);
      for (int i = 0; i < 4; ++i) {
        // From the edge where the circuit enters the inside corners to the one where it leaves them.
        if (isInside(corners[at((i + 3) % 4)]) || !isInside(corners[at(i)])) continue;
        int last = i;
        while (isInside(corners[at((last + 1) % 4)])) ++last, last %= 4;
        const int enter = edgeBetween(corners[at((i + 3) % 4)], corners[at(i)]);
        const int leave = edgeBetween(corners[at(last)], corners[at((last + 1) % 4)]);
        next[enter] = leave;
      }
    }
  std::vector<CubeTriangle> triangles;
  while (!next.empty()) {
    std::vector<int> loop;
    for (int edge = next.begin()->first; next.contains(edge);) {
      loop.push_back(edge);
      const int following = next[edge];
      next.erase(edge);
      edge = following;
    }
    divideLoop(loop, 0, loop.size() - 1, triangles);
  }
  return triangles;
}

const std::vector<CubeTriangle>& cubeTriangles(int inside) {
  static const std::vector<std::vector<CubeTriangle>> table = [] {
    std::vector<std::vector<CubeTriangle>> all;
    for (int i = 0; i < 256; ++i) all.push_back(trianglesOf(i));
    return all;
  }();
  return table[at(inside)];
}

// Moves points towards the middle of their neighbours along the surface and back onto it.
void relaxOnto(Surface& surface, const Solid& solid, float cell, int rounds) {
  std::vector<std::vector<int>> rings(surface.points.size());
  for (const Triangle& triangle : surface.triangles)
    for (int k = 0; k < 3; ++k) rings[at(triangle.points[at(k)])].push_back(triangle.points[at((k + 1) % 3)]);
  const float step = cell * 0.05f;
  for (int round = 0; round < rounds; ++round) {
    const std::vector<Vector> old = surface.points;
    for (std::size_t i = 0; i < old.size(); ++i) {
      Vector middle(0, 0, 0);
      for (const int neighbour : rings[i]) middle += old[at(neighbour)];
      if (rings[i].empty()) continue;
      const Vector normal = normalAt(solid, old[i], step);
      Vector move = middle / static_cast<float>(rings[i].size()) - old[i];
      move -= normal * dot(move, normal);
      Vector& point = surface.points[i];
      point = old[i] + move * 0.6f;
      // One step of Newton's method; the slope is worked out, as few solids are true distances.
      const Vector direction = normalAt(solid, point, step);
      const float value = solid(point);
      const float slope = (solid(point + direction * step) - value) / step;
      if (slope > 0.1f) point -= direction * std::clamp(value / slope, -cell * 0.5f, cell * 0.5f);
    }
  }
}

}  // namespace

float smoothJoin(float p, float q, float k) {
  const float h = std::max(k - std::fabs(p - q), 0.0f) / k;
  return std::min(p, q) - h * h * k * 0.25f;
}

float smoothCut(float p, float hole, float k) {
  return -smoothJoin(-p, hole, k);
}

float smoothMeet(float p, float q, float k) {
  return -smoothJoin(-p, -q, k);
}

float roundBox(const Vector& p, const Vector& centre, const Vector& halfSize, float rounding) {
  const Vector q = p - centre;
  const float x = std::fabs(q.x) - halfSize.x + rounding, y = std::fabs(q.y) - halfSize.y + rounding,
              z = std::fabs(q.z) - halfSize.z + rounding;
  const Vector out(std::max(x, 0.0f), std::max(y, 0.0f), std::max(z, 0.0f));
  return out.length() + std::min(std::max({x, y, z}), 0.0f) - rounding;
}

float torusDistance(const Vector& p, const Vector& centre, float radius, float thickness) {
  const Vector q = p - centre;
  return std::hypot(std::hypot(q.x, q.z) - radius, q.y) - thickness;
}

Surface isosurface(const Solid& whole, const IsoOptions& options) {
  const Vector middle = (options.bounds.least + options.bounds.most) * 0.5f,
               half = options.bounds.most - middle;
  const Solid cut = [&](const Vector& p) {
    const Vector q = p - middle;
    return std::max({whole(p), std::fabs(q.x) - half.x, std::fabs(q.y) - half.y, std::fabs(q.z) - half.z});
  };
  const Solid& solid = options.closed ? cut : whole;
  const Vector size = options.bounds.most - options.bounds.least;
  const auto cells = [&](float length) {
    return std::max(1, static_cast<int>(std::ceil(length / options.cell))) + (options.closed ? 2 : 0);
  };
  const int nx = cells(size.x), ny = cells(size.y), nz = cells(size.z);
  const float margin = options.closed ? options.cell : 0;
  const auto place = [&](int x, int y, int z) {
    return options.bounds.least +
           Vector(static_cast<float>(x), static_cast<float>(y), static_cast<float>(z)) * options.cell -
           Vector(margin, margin, margin);
  };
  const auto index = [&](int x, int y, int z) { return (at(z) * at(ny + 1) + at(y)) * at(nx + 1) + at(x); };
  std::vector<float> values(at(nx + 1) * at(ny + 1) * at(nz + 1));
  for (int z = 0; z <= nz; ++z)
    for (int y = 0; y <= ny; ++y)
      for (int x = 0; x <= nx; ++x) values[index(x, y, z)] = solid(place(x, y, z));

  Surface surface;
  std::vector<int> edgePoints(values.size() * 3, -1);
  for (int z = 0; z < nz; ++z)
    for (int y = 0; y < ny; ++y)
      for (int x = 0; x < nx; ++x) {
        const auto cornerIndex = [&](int c) { return index(x + (c & 1), y + (c >> 1 & 1), z + (c >> 2)); };
        int inside = 0;
        for (int c = 0; c < 8; ++c) inside |= (values[cornerIndex(c)] < 0 ? 1 : 0) << c;
        for (const CubeTriangle& triangle : cubeTriangles(inside)) {
          std::array<int, 3> points{};
          for (std::size_t k = 0; k < 3; ++k) {
            const int axis = triangle[k] / 8, low = triangle[k] % 8, high = low + (1 << axis);
            int& point = edgePoints[cornerIndex(low) * 3 + at(axis)];
            if (point < 0) {
              const float p = values[cornerIndex(low)], q = values[cornerIndex(high)];
              const Vector from = place(x + (low & 1), y + (low >> 1 & 1), z + (low >> 2)),
                           to = place(x + (high & 1), y + (high >> 1 & 1), z + (high >> 2));
              // Away from the corners, so that no triangle has no area.
              point = addPoint(surface, mix(from, to, std::clamp(p / (p - q), 0.02f, 0.98f)));
            }
            points[k] = point;
          }
          addTriangle(surface, points[0], points[1], points[2]);
        }
      }
  relaxOnto(surface, solid, options.cell, options.relax);
  return surface;
}

}  // namespace vex::geometry
