#include "production/geometry/simplify.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <queue>

#include "production/geometry/index.h"

namespace vex::geometry {

namespace {

// Sum of squared distances from planes, as a function of the place: p A p + 2 b p + c.
struct Quadric {
  std::array<double, 6> a{};  // xx, xy, xz, yy, yz, zz
  std::array<double, 3> b{};
  double c = 0;

  Quadric& operator+=(const Quadric& other) {
    for (std::size_t i = 0; i < a.size(); ++i) a[i] += other.a[i];
    for (std::size_t i = 0; i < b.size(); ++i) b[i] += other.b[i];
    c += other.c;
    return *this;
  }

  double at(const Vector& p) const {
    const double x = p.x, y = p.y, z = p.z;
    return x * (a[0] * x + 2 * (a[1] * y + a[2] * z + b[0])) + y * (a[3] * y + 2 * (a[4] * z + b[1])) +
           z * (a[5] * z + 2 * b[2]) + c;
  }

  // Where it is least; `near` if that is a whole line.
  Vector least(const Vector& near) const {
    const double xx = a[3] * a[5] - a[4] * a[4], xy = a[2] * a[4] - a[1] * a[5],
                 xz = a[1] * a[4] - a[2] * a[3], yy = a[0] * a[5] - a[2] * a[2],
                 yz = a[1] * a[2] - a[0] * a[4], zz = a[0] * a[3] - a[1] * a[1];
    const double whole = a[0] * xx + a[1] * xy + a[2] * xz, trace = a[0] + a[3] + a[5];
    if (whole < 1e-4 * trace * trace * trace) return near;
    const auto solved = [&](double p, double q, double r) {
      return static_cast<float>(-(p * b[0] + q * b[1] + r * b[2]) / whole);
    };
    return Vector(solved(xx, xy, xz), solved(xy, yy, yz), solved(xz, yz, zz));
  }
};

Quadric planeThrough(const Vector& point, const Vector& normal, double weight) {
  const double x = normal.x, y = normal.y, z = normal.z, d = -dot(normal, point);
  return {{x * x * weight, x * y * weight, x * z * weight, y * y * weight, y * z * weight, z * z * weight},
          {x * d * weight, y * d * weight, z * d * weight},
          d * d * weight};
}

struct Collapse {
  double cost;
  int from, into;
  int age;  // of both points together: stale once either has changed
  Vector place;
  bool operator<(const Collapse& other) const { return cost > other.cost; }
};

class Simplifier {
 public:
  Simplifier(const Surface& whole, const std::function<float(const Vector&)>& weight)
      : surface(withoutMapping(whole)),
        quadrics(surface.points.size()),
        around(surface.points.size()),
        ages(surface.points.size(), 0),
        fixed(surface.points.size(), false),
        left(static_cast<int>(surface.triangles.size())) {
    for (int i = 0; i < left; ++i) {
      const Triangle& triangle = surface.triangles[at(i)];
      const Vector &p = point(triangle, 0), &q = point(triangle, 1), &r = point(triangle, 2);
      const Vector across = cross(q - p, r - p);
      const Quadric plane = planeThrough(p, unit(across), across.length() * weight((p + q + r) / 3.0f));
      for (const int k : triangle.points) quadrics[at(k)] += plane, around[at(k)].push_back(i);
    }
    for (std::size_t i = 0; i < surface.points.size(); ++i)
      for (const int other : ring(static_cast<int>(i)))
        if (shared(static_cast<int>(i), other).size() != 2) fixed[i] = true;
    for (std::size_t i = 0; i < surface.points.size(); ++i) propose(static_cast<int>(i), true);
  }

  Surface reduced(int triangles) {
    while (left > triangles && !queue.empty()) {
      const Collapse next = queue.top();
      queue.pop();
      if (next.age == ages[at(next.from)] + ages[at(next.into)] && allowed(next)) apply(next);
    }
    std::erase_if(surface.triangles, [](const Triangle& t) { return t.points[0] < 0; });
    return compacted(surface);
  }

 private:
  Surface surface;
  std::vector<Quadric> quadrics;
  std::vector<std::vector<int>> around;  // triangles of each point
  std::vector<int> ages;
  std::vector<bool> fixed;
  int left;
  std::priority_queue<Collapse> queue;

  const Vector& point(const Triangle& triangle, int corner) const {
    return surface.points[at(triangle.points[at(corner)])];
  }

  bool has(int triangle, int which) const {
    const auto& points = surface.triangles[at(triangle)].points;
    return std::find(points.begin(), points.end(), which) != points.end();
  }

  std::vector<int> ring(int which) const {
    std::vector<int> others;
    for (const int triangle : around[at(which)])
      for (const int k : surface.triangles[at(triangle)].points)
        if (k != which && std::find(others.begin(), others.end(), k) == others.end()) others.push_back(k);
    return others;
  }

  std::vector<int> shared(int p, int q) const {
    std::vector<int> both;
    for (const int triangle : around[at(p)])
      if (has(triangle, q)) both.push_back(triangle);
    return both;
  }

  void propose(int which, bool later) {
    if (fixed[at(which)]) return;
    for (const int other : ring(which)) {
      if (fixed[at(other)] || (later && other < which)) continue;
      Quadric sum = quadrics[at(which)];
      sum += quadrics[at(other)];
      const Vector &p = surface.points[at(which)], &q = surface.points[at(other)];
      const Vector middle = (p + q) * 0.5f;
      Vector place = sum.least(middle);
      if ((place - middle).length() > (p - q).length()) place = middle;
      queue.push({sum.at(place), which, other, ages[at(which)] + ages[at(other)], place});
    }
  }

  // Neither turns a triangle over or makes it a splinter, nor ties the surface to itself.
  bool allowed(const Collapse& collapse) const {
    const std::vector<int> p = ring(collapse.from), q = ring(collapse.into);
    const auto both =
        std::count_if(p.begin(), p.end(), [&](int k) { return std::find(q.begin(), q.end(), k) != q.end(); });
    return both == 2 && keeps(collapse.from, collapse.into, collapse.place) &&
           keeps(collapse.into, collapse.from, collapse.place);
  }

  bool keeps(int moved, int other, const Vector& place) const {
    for (const int triangle : around[at(moved)]) {
      if (has(triangle, other)) continue;
      Triangle shape = surface.triangles[at(triangle)];
      while (shape.points[0] != moved)
        std::rotate(shape.points.begin(), shape.points.begin() + 1, shape.points.end());
      const Vector &q = point(shape, 1), &r = point(shape, 2);
      const Vector old = cross(q - point(shape, 0), r - point(shape, 0)), made = cross(q - place, r - place);
      const float longest = std::max({(q - place).length(), (r - place).length(), (q - r).length()});
      if (dot(unit(old), unit(made)) < 0.5f || made.length() < 0.12f * longest * longest) return false;
    }
    return true;
  }

  void apply(const Collapse& collapse) {
    const int from = collapse.from, into = collapse.into;
    surface.points[at(into)] = collapse.place;
    quadrics[at(into)] += quadrics[at(from)];
    for (const int triangle : shared(from, into)) {
      for (const int k : surface.triangles[at(triangle)].points) std::erase(around[at(k)], triangle);
      surface.triangles[at(triangle)].points = {-1, -1, -1};
      --left;
    }
    for (const int triangle : around[at(from)]) {
      auto& points = surface.triangles[at(triangle)].points;
      *std::find(points.begin(), points.end(), from) = into;
      around[at(into)].push_back(triangle);
    }
    around[at(from)].clear();
    ++ages[at(from)], ++ages[at(into)];
    propose(into, false);
  }
};

}  // namespace

Surface simplified(const Surface& surface, int triangles, const std::function<float(const Vector&)>& weight) {
  return Simplifier(surface, weight).reduced(triangles);
}

}  // namespace vex::geometry
