#include <algorithm>
#include <cmath>
#include <limits>

#include "base/pi.h"
#include "production/geometry/forms.h"
#include "production/geometry/index.h"

namespace vex::geometry {

namespace {

float turnOf(const PlanePoint& a, const PlanePoint& b, const PlanePoint& c) {
  return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
}

float areaOf(const Outline& outline) {
  float sum = 0;
  for (std::size_t i = 0; i < outline.size(); ++i) {
    const PlanePoint &p = outline[i], &q = outline[(i + 1) % outline.size()];
    sum += p.x * q.y - p.y * q.x;
  }
  return sum / 2;
}

bool within(const Outline& outline, const PlanePoint& p) {
  bool inside = false;
  for (std::size_t i = 0; i < outline.size(); ++i) {
    const PlanePoint &a = outline[i], &b = outline[(i + 1) % outline.size()];
    if ((a.y > p.y) != (b.y > p.y) && p.x < (b.x - a.x) * (p.y - a.y) / (b.y - a.y) + a.x) inside = !inside;
  }
  return inside;
}

// A body and its holes as one ring of indices into the points of all outlines.
struct Ring {
  std::vector<int> indices;
};

bool crosses(const PlanePoint& a, const PlanePoint& b, const PlanePoint& c, const PlanePoint& d) {
  const float p = turnOf(a, b, c), q = turnOf(a, b, d), r = turnOf(c, d, a), s = turnOf(c, d, b);
  return ((p > 0 && q < 0) || (p < 0 && q > 0)) && ((r > 0 && s < 0) || (r < 0 && s > 0));
}

// Joins a hole to the ring by a bridge there and back between the nearest two points that see each other.
void bridge(Ring& ring, const std::vector<int>& hole, const std::vector<PlanePoint>& points,
            const std::vector<std::vector<int>>& otherLoops) {
  float least = std::numeric_limits<float>::max();
  std::size_t from = 0, to = 0;
  const auto sees = [&](const std::vector<int>& loop, const PlanePoint& p, const PlanePoint& q) {
    for (std::size_t i = 0; i < loop.size(); ++i)
      if (crosses(p, q, points[at(loop[i])], points[at(loop[(i + 1) % loop.size()])])) return false;
    return true;
  };
  for (std::size_t i = 0; i < ring.indices.size(); ++i)
    for (std::size_t j = 0; j < hole.size(); ++j) {
      const PlanePoint &p = points[at(ring.indices[i])], &q = points[at(hole[j])];
      const float distance = std::hypot(p.x - q.x, p.y - q.y);
      if (distance >= least || !sees(ring.indices, p, q) || !sees(hole, p, q)) continue;
      if (!std::all_of(otherLoops.begin(), otherLoops.end(),
                       [&](const std::vector<int>& loop) { return sees(loop, p, q); }))
        continue;
      least = distance, from = i, to = j;
    }
  std::vector<int> detour;
  for (std::size_t j = 0; j <= hole.size(); ++j) detour.push_back(hole[(to + j) % hole.size()]);
  detour.push_back(ring.indices[from]);
  ring.indices.insert(ring.indices.begin() + static_cast<long>(from) + 1, detour.begin(), detour.end());
}

// Ear clipping; the roundest ear first, against slivers.
void clipEars(std::vector<int> ring, const std::vector<PlanePoint>& points,
              std::vector<std::array<int, 3>>& triangles) {
  const auto point = [&](std::size_t i) -> const PlanePoint& { return points[at(ring[i % ring.size()])]; };
  while (ring.size() >= 3) {
    float best = -1;
    std::size_t ear = 0;
    for (std::size_t i = 0; i < ring.size(); ++i) {
      const PlanePoint &a = point(i + ring.size() - 1), &b = point(i), &c = point(i + 1);
      const float turn = turnOf(a, b, c);
      if (turn <= 0) continue;
      const auto blocks = [&](const PlanePoint& p) {
        const auto same = [&](const PlanePoint& q) { return p.x == q.x && p.y == q.y; };
        return !same(a) && !same(b) && !same(c) && turnOf(a, b, p) >= 0 && turnOf(b, c, p) >= 0 &&
               turnOf(c, a, p) >= 0;
      };
      if (std::any_of(ring.begin(), ring.end(), [&](int k) { return blocks(points[at(k)]); })) continue;
      const auto square = [](const PlanePoint& p, const PlanePoint& q) {
        return (p.x - q.x) * (p.x - q.x) + (p.y - q.y) * (p.y - q.y);
      };
      const float roundness = turn / (square(a, b) + square(b, c) + square(c, a));
      if (roundness > best) best = roundness, ear = i;
    }
    const std::size_t n = ring.size();
    if (best >= 0) triangles.push_back({ring[(ear + n - 1) % n], ring[ear], ring[(ear + 1) % n]});
    ring.erase(ring.begin() + static_cast<long>(ear));
  }
}

PlanePoint inset(const Outline& outline, std::size_t i, float by) {
  const std::size_t n = outline.size();
  const PlanePoint &a = outline[(i + n - 1) % n], &b = outline[i], &c = outline[(i + 1) % n];
  const auto inwards = [](const PlanePoint& p, const PlanePoint& q) {
    const float length = std::hypot(q.x - p.x, q.y - p.y);
    return PlanePoint{-(q.y - p.y) / length, (q.x - p.x) / length};
  };
  const PlanePoint m = inwards(a, b), n2 = inwards(b, c);
  const float scale = by / std::max(0.3f, 1 + m.x * n2.x + m.y * n2.y);
  return {b.x + (m.x + n2.x) * scale, b.y + (m.y + n2.y) * scale};
}

// What bodies leave of their holes; loops are the outlines' indices of points.
std::vector<std::array<int, 3>> trianglesOf(const std::vector<Outline>& outlines,
                                            const std::vector<std::vector<int>>& loops,
                                            const std::vector<PlanePoint>& points) {
  std::vector<std::array<int, 3>> triangles;
  for (std::size_t body = 0; body < outlines.size(); ++body) {
    if (areaOf(outlines[body]) <= 0) continue;
    std::vector<std::vector<int>> holes;
    for (std::size_t hole = 0; hole < outlines.size(); ++hole)
      if (areaOf(outlines[hole]) < 0 && within(outlines[body], outlines[hole][0]))
        holes.push_back(loops[hole]);
    Ring ring{loops[body]};
    while (!holes.empty()) {
      const std::vector<int> hole = holes.back();
      holes.pop_back();
      bridge(ring, hole, points, holes);
    }
    clipEars(ring.indices, points, triangles);
  }
  return triangles;
}

}  // namespace

Surface extrusion(const std::vector<Outline>& outlines, float depth, float bevel, float corners) {
  std::vector<PlanePoint> rim, face;  // of all outlines: the outline itself and the edge of the front
  std::vector<std::vector<int>> loops;
  for (const Outline& outline : outlines) {
    std::vector<int> loop;
    for (std::size_t i = 0; i < outline.size(); ++i) {
      loop.push_back(static_cast<int>(rim.size()));
      rim.push_back(outline[i]);
      face.push_back(bevel > 0 ? inset(outline, i, bevel) : outline[i]);
    }
    loops.push_back(loop);
  }

  const std::vector<std::array<int, 3>> front = trianglesOf(outlines, loops, face);
  Surface all;
  const int count = static_cast<int>(rim.size());
  for (const PlanePoint& p : face) addPoint(all, {p.x, p.y, 0});
  for (const PlanePoint& p : rim) addPoint(all, {p.x, p.y, -depth});
  for (const auto& [a, b, c] : front) addTriangle(all, a, b, c);
  for (const auto& [a, b, c] : front) addTriangle(all, count + a, count + c, count + b);

  const float least = std::cos(corners * pi / 180);
  const auto band = [&](const std::vector<int>& loop, const std::vector<PlanePoint>& upper, float upperZ,
                        const std::vector<PlanePoint>& lower, float lowerZ) {
    // Each place has a point for the wall before it and one for the wall behind it; they are the same where
    // the outline is smooth.
    const std::size_t n = loop.size();
    std::vector<std::array<int, 2>> before(n), behind(n);
    for (std::size_t i = 0; i < n; ++i) {
      const PlanePoint &a = rim[at(loop[(i + n - 1) % n])], &b = rim[at(loop[i])],
                       &c = rim[at(loop[(i + 1) % n])];
      const auto make = [&] {
        const PlanePoint &p = upper[at(loop[i])], &q = lower[at(loop[i])];
        return std::array<int, 2>{addPoint(all, {p.x, p.y, upperZ}), addPoint(all, {q.x, q.y, lowerZ})};
      };
      const float cosine = ((b.x - a.x) * (c.x - b.x) + (b.y - a.y) * (c.y - b.y)) /
                           (std::hypot(b.x - a.x, b.y - a.y) * std::hypot(c.x - b.x, c.y - b.y));
      before[i] = make();
      behind[i] = cosine < least ? make() : before[i];
    }
    for (std::size_t i = 0; i < n; ++i) {
      const auto &p = behind[i], &q = before[(i + 1) % n];
      addQuad(all, p[0], p[1], q[1], q[0]);
    }
  };
  for (const std::vector<int>& loop : loops) {
    if (bevel > 0) band(loop, face, 0, rim, -bevel);
    band(loop, rim, -bevel, rim, -depth);
  }

  const Bounds bounds = boundsOf(all);
  const Vector size = bounds.most - bounds.least;
  all.mapped = true;
  for (Triangle& triangle : all.triangles)
    for (std::size_t k = 0; k < 3; ++k) {
      const Vector& p = all.points[at(triangle.points[k])];
      triangle.uv[k] = {(p.x - bounds.least.x) / size.x, (p.y - bounds.least.y) / size.y};
    }
  return all;
}

}  // namespace vex::geometry
