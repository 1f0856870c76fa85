#include "production/geometry/forms.h"

#include <algorithm>
#include <map>

#include "base/pi.h"
#include "production/geometry/index.h"
#include "production/geometry/mapping.h"

namespace vex::geometry {

namespace {

float ratio(int i, int n) {
  return static_cast<float>(i) / static_cast<float>(n);
}

void addMapped(Surface& surface, const std::array<int, 3>& points, const std::array<Uv, 3>& uv) {
  if (points[0] == points[1] || points[1] == points[2] || points[2] == points[0]) return;
  surface.triangles.push_back({points, uv, 0});
}

// A sheet over numbered places: rows `across` + 1 wide; `row` gives v.
template <typename PlaceOf>
Surface grid(int across, int along, const SheetEnds& ends, PlaceOf placeOf, const std::vector<float>& rowV) {
  Surface surface;
  surface.mapped = true;
  std::vector<int> points(at((across + 1) * (along + 1)));
  const auto index = [&](int i, int j) -> int& { return points[at(j * (across + 1) + i)]; };
  for (int j = 0; j <= along; ++j) {
    const bool pole = (j == 0 && ends.poleBelow) || (j == along && ends.poleAbove);
    for (int i = 0; i <= across; ++i) {
      if (j == along && ends.closedAlong)
        index(i, j) = index(i, 0);
      else if (i > 0 && pole)
        index(i, j) = index(0, j);
      else if (i == across && ends.closedAcross)
        index(i, j) = index(0, j);
      else
        index(i, j) = addPoint(surface, placeOf(i, j));
    }
  }
  const auto u = [&](int i, int j, float poleShift) {
    const bool pole = (j == 0 && ends.poleBelow) || (j == along && ends.poleAbove);
    return Uv{ratio(i, across) + (pole ? poleShift / static_cast<float>(across) : 0), rowV[at(j)]};
  };
  for (int j = 0; j < along; ++j)
    for (int i = 0; i < across; ++i) {
      const int a = index(i, j), b = index(i + 1, j), c = index(i + 1, j + 1), d = index(i, j + 1);
      const auto& p = surface.points;
      const float ac = (p[at(a)] - p[at(c)]).length(), bd = (p[at(b)] - p[at(d)]).length();
      const bool below = j == 0 && ends.poleBelow, above = j + 1 == along && ends.poleAbove;
      if (below || (!above && bd < ac * 0.9999f)) {
        addMapped(surface, {a, b, d}, {u(i, j, 0.5f), u(i + 1, j, 0.5f), u(i, j + 1, 0.5f)});
        addMapped(surface, {b, c, d}, {u(i + 1, j, -0.5f), u(i + 1, j + 1, -0.5f), u(i, j + 1, 0.5f)});
      } else {
        addMapped(surface, {a, b, c}, {u(i, j, 0.5f), u(i + 1, j, -0.5f), u(i + 1, j + 1, -0.5f)});
        addMapped(surface, {a, c, d}, {u(i, j, 0.5f), u(i + 1, j + 1, 0.5f), u(i, j + 1, 0.5f)});
      }
    }
  return surface;
}

std::vector<float> evenRows(int along) {
  std::vector<float> rows;
  for (int j = 0; j <= along; ++j) rows.push_back(ratio(j, along));
  return rows;
}

// Around the y axis, the seam behind.
Vector around(float radius, float height, float s) {
  return {-radius * std::sin(2 * pi * s), height, -radius * std::cos(2 * pi * s)};
}

float catmullRom(float a, float b, float c, float d, float t) {
  return b + 0.5f * t * (c - a + t * (2 * a - 5 * b + 4 * c - d + t * (3 * (b - c) + d - a)));
}

// Calls `add(a, b, c, d, t)` with the four neighbours' indices for `pieces` + 1 places along n points.
template <typename Add>
void alongCurve(int n, int pieces, Add add) {
  for (int i = 0; i <= pieces; ++i) {
    const float place = ratio(i, pieces) * static_cast<float>(n - 1);
    const int from = std::min(n - 2, static_cast<int>(place));
    add(std::max(0, from - 1), from, from + 1, std::min(n - 1, from + 2), place - static_cast<float>(from));
  }
}

}  // namespace

Surface sheet(int across, int along, const std::function<Vector(float, float)>& place,
              const SheetEnds& ends) {
  return grid(
      across, along, ends, [&](int i, int j) { return place(ratio(i, across), ratio(j, along)); },
      evenRows(along));
}

Surface lathe(const std::vector<ProfilePoint>& profile, int aroundCount, float corners) {
  const int n = static_cast<int>(profile.size());
  std::vector<float> length{0};
  for (int i = 1; i < n; ++i)
    length.push_back(length.back() + std::hypot(profile[at(i)].radius - profile[at(i - 1)].radius,
                                                profile[at(i)].height - profile[at(i - 1)].height));
  const auto hard = [&](int i) {
    const float x0 = profile[at(i)].radius - profile[at(i - 1)].radius,
                y0 = profile[at(i)].height - profile[at(i - 1)].height,
                x1 = profile[at(i + 1)].radius - profile[at(i)].radius,
                y1 = profile[at(i + 1)].height - profile[at(i)].height;
    return std::fabs(std::atan2(x0 * y1 - y0 * x1, x0 * x1 + y0 * y1)) > corners * pi / 180;
  };
  Surface all;
  for (int from = 0; from + 1 < n;) {
    int to = from + 1;
    while (to + 1 < n && !hard(to)) ++to;
    SheetEnds ends;
    ends.closedAcross = true;
    // Smooth profiles come back to the axis but for rounding.
    ends.poleBelow = profile[at(from)].radius < 1e-5f;
    ends.poleAbove = profile[at(to)].radius < 1e-5f;
    std::vector<float> rows;
    for (int i = from; i <= to; ++i) rows.push_back(length[at(i)] / length.back());
    append(all, grid(
                    aroundCount, to - from, ends,
                    [&](int i, int j) {
                      const ProfilePoint& p = profile[at(from + j)];
                      return around(p.radius, p.height, ratio(i, aroundCount));
                    },
                    rows));
    from = to;
  }
  return all;
}

std::vector<ProfilePoint> smoothProfile(const std::vector<ProfilePoint>& profile, int pieces) {
  std::vector<ProfilePoint> result;
  alongCurve(static_cast<int>(profile.size()), pieces, [&](int a, int b, int c, int d, float t) {
    const auto part = [&](float ProfilePoint::*field) {
      return catmullRom(profile[at(a)].*field, profile[at(b)].*field, profile[at(c)].*field,
                        profile[at(d)].*field, t);
    };
    result.push_back({std::max(0.0f, part(&ProfilePoint::radius)), part(&ProfilePoint::height)});
  });
  return result;
}

std::vector<Vector> smoothPath(const std::vector<Vector>& path, int pieces) {
  std::vector<Vector> result;
  alongCurve(static_cast<int>(path.size()), pieces, [&](int a, int b, int c, int d, float t) {
    const auto part = [&](float Vector::*field) {
      return catmullRom(path[at(a)].*field, path[at(b)].*field, path[at(c)].*field, path[at(d)].*field, t);
    };
    result.push_back({part(&Vector::x), part(&Vector::y), part(&Vector::z)});
  });
  return result;
}

std::vector<Placement> framesAlong(const std::vector<Vector>& path) {
  const int n = static_cast<int>(path.size());
  const auto direction = [&](int i) {
    const Vector before = i > 0 ? unit(path[at(i)] - path[at(i - 1)]) : Vector(0, 0, 0);
    const Vector after = i + 1 < n ? unit(path[at(i + 1)] - path[at(i)]) : Vector(0, 0, 0);
    return unit(before + after);
  };
  std::vector<Placement> frames;
  for (int i = 0; i < n; ++i) {
    const Vector back = direction(i);
    Vector up = Vector(0, 1, 0);
    if (i == 0) {
      if (std::fabs(back.y) > 0.9f) up = Vector(0, 0, 1);
    } else {
      // Turned by as much as the direction turns.
      const Placement& last = frames.back();
      const Vector axis = cross(last.back, back);
      const float sine = axis.length();
      up = sine < 1e-6f ? last.up
                        : transformedDirection(turned(axis, std::atan2(sine, dot(last.back, back))), last.up);
    }
    up = unit(up - back * dot(up, back));
    frames.push_back({cross(up, back), up, back, path[at(i)]});
  }
  return frames;
}

Surface sweep(const std::vector<Vector>& path, int aroundCount,
              const std::function<PlanePoint(float, float)>& section) {
  const std::vector<Placement> frames = framesAlong(path);
  const int along = static_cast<int>(path.size()) - 1;
  std::vector<float> rows{0};
  for (int j = 1; j <= along; ++j) rows.push_back(rows.back() + (path[at(j)] - path[at(j - 1)]).length());
  const float whole = rows.back();
  for (float& row : rows) row /= whole;
  SheetEnds ends;
  ends.closedAcross = true;
  return grid(
      aroundCount, along, ends,
      [&](int i, int j) {
        const PlanePoint p = section(ratio(i, aroundCount), rows[at(j)]);
        return transformed(frames[at(j)], {p.x, p.y, 0});
      },
      rows);
}

Surface tube(const std::vector<Vector>& path, int aroundCount, const std::function<float(float)>& radius,
             TubeEnd end) {
  const std::vector<Placement> frames = framesAlong(path);
  std::vector<float> lengths{0};
  for (std::size_t j = 1; j < path.size(); ++j)
    lengths.push_back(lengths.back() + (path[j] - path[j - 1]).length());

  struct Ring {
    Placement frame;
    float radius, place;
  };
  std::vector<Ring> rings;
  const auto cap = [&](const Placement& frame, float full, float place, bool last) {
    constexpr int steps = 4;
    for (int i = 0; i < steps; ++i) {
      const float angle = ratio(last ? i + 1 : i, steps) * pi / 2 + (last ? 0 : -pi / 2);
      Ring ring{frame, full * std::cos(angle), place + full * std::sin(angle)};
      ring.frame.origin += frame.back * (full * std::sin(angle));
      if (i == (last ? steps - 1 : 0)) ring.radius = 0;
      rings.push_back(ring);
    }
  };
  const float whole = lengths.back(), first = radius(0), last = radius(1);
  if (end == TubeEnd::round) cap(frames.front(), first, 0, false);
  for (std::size_t j = 0; j < path.size(); ++j)
    rings.push_back({frames[j], radius(lengths[j] / whole), lengths[j]});
  if (end == TubeEnd::round) cap(frames.back(), last, whole, true);

  SheetEnds ends;
  ends.closedAcross = true;
  ends.poleBelow = end == TubeEnd::round || end == TubeEnd::point;
  ends.poleAbove = ends.poleBelow;
  if (end == TubeEnd::point) rings.front().radius = rings.back().radius = 0;
  std::vector<float> rows;
  const float from = rings.front().place, to = rings.back().place;
  for (const Ring& ring : rings) rows.push_back((ring.place - from) / (to - from));
  const auto onRing = [&](const Ring& ring, int i) {
    const float angle = 2 * pi * ratio(i, aroundCount);
    return transformed(ring.frame, {ring.radius * std::cos(angle), ring.radius * std::sin(angle), 0});
  };
  Surface all = grid(
      aroundCount, static_cast<int>(rings.size()) - 1, ends,
      [&](int i, int j) { return onRing(rings[at(j)], i); }, rows);
  if (end != TubeEnd::flat) return all;
  for (const bool top : {false, true}) {
    const Ring& rim = top ? rings.back() : rings.front();
    SheetEnds lid;
    lid.closedAcross = true;
    (top ? lid.poleAbove : lid.poleBelow) = true;
    append(all, grid(aroundCount, 1, lid,
                     [&](int i, int j) { return j == (top ? 0 : 1) ? onRing(rim, i) : rim.frame.origin; },
                     {0, 1}));
  }
  return all;
}

namespace {

struct BoxSide {
  Vector out, right, up;  // right x up = out
};

BoxSide boxSide(const Vector& out) {
  if (out.y > 0) return {out, {1, 0, 0}, {0, 0, -1}};
  if (out.y < 0) return {out, {1, 0, 0}, {0, 0, 1}};
  return {out, cross({0, 1, 0}, out), {0, 1, 0}};
}

float along(const Vector& size, const Vector& axis) {
  return std::fabs(dot(size, axis));
}

}  // namespace

Surface bevelledBox(const Vector& size, float bevel, int cells) {
  const Vector half = size * 0.5f;
  const auto uvOn = [&](const BoxSide& side, const Vector& p) {
    return Uv{dot(p, side.right) / along(size, side.right) + 0.5f,
              dot(p, side.up) / along(size, side.up) + 0.5f};
  };
  Surface all;
  // A quad of points of its own, from a to b and from a to d in cells, mapped as on `side`.
  const auto patch = [&](const Vector& a, const Vector& b, const Vector& c, const Vector& d, int across,
                         int up, const BoxSide& side) {
    Surface one = sheet(across, up, [&](float s, float t) { return mix(mix(a, b, s), mix(d, c, s), t); });
    for (Triangle& triangle : one.triangles)
      for (std::size_t k = 0; k < 3; ++k) triangle.uv[k] = uvOn(side, one.points[at(triangle.points[k])]);
    append(all, one);
  };
  const Vector outs[6] = {{1, 0, 0}, {-1, 0, 0}, {0, 1, 0}, {0, -1, 0}, {0, 0, 1}, {0, 0, -1}};
  for (const Vector& out : outs) {
    const BoxSide side = boxSide(out);
    const Vector centre = out * along(half, out), right = side.right * (along(half, side.right) - bevel),
                 up = side.up * (along(half, side.up) - bevel);
    patch(centre - right - up, centre + right - up, centre + right + up, centre - right + up, cells, cells,
          side);
  }
  if (bevel <= 0) return all;
  for (int i = 0; i < 6; ++i)
    for (int j = i + 1; j < 6; ++j) {
      const Vector &p = outs[i], &q = outs[j];
      if (dot(p, q) != 0) continue;
      const Vector d = cross(p, q), end = d * (along(half, d) - bevel);
      const Vector onP = p * along(half, p) + q * (along(half, q) - bevel),
                   onQ = p * (along(half, p) - bevel) + q * along(half, q);
      patch(onP + end, onP - end, onQ - end, onQ + end, cells, 1, boxSide(p.y != 0 ? q : p));
    }
  for (int i = 0; i < 8; ++i) {
    const float x = i & 1 ? 1.0f : -1.0f, y = i & 2 ? 1.0f : -1.0f, z = i & 4 ? 1.0f : -1.0f;
    const Vector inner((half.x - bevel) * x, (half.y - bevel) * y, (half.z - bevel) * z);
    const int a = addPoint(all, inner + Vector(bevel * x, 0, 0)),
              b = addPoint(all, inner + Vector(0, bevel * y, 0)),
              c = addPoint(all, inner + Vector(0, 0, bevel * z));
    if (x * y * z > 0)
      addTriangle(all, a, b, c);
    else
      addTriangle(all, a, c, b);
    Triangle& triangle = all.triangles.back();
    const BoxSide side = boxSide({0, 0, z});
    for (std::size_t k = 0; k < 3; ++k) triangle.uv[k] = uvOn(side, all.points[at(triangle.points[k])]);
  }
  return all;
}

Surface superellipsoid(const Vector& axes, float roundNorth, float roundEast, int aroundCount,
                       int alongCount) {
  const auto power = [](float x, float e) { return std::copysign(std::pow(std::fabs(x), e), x); };
  SheetEnds ends;
  ends.closedAcross = ends.poleBelow = ends.poleAbove = true;
  return sheet(
      aroundCount, alongCount,
      [&](float s, float t) {
        const float rise = (t - 0.5f) * pi, ring = power(std::cos(rise), roundNorth);
        const Vector flat = around(1, 0, s);
        return Vector(axes.x * ring * power(flat.x, roundEast), axes.y * power(std::sin(rise), roundNorth),
                      axes.z * ring * power(flat.z, roundEast));
      },
      ends);
}

Surface sphere(float radius, int aroundCount, int alongCount) {
  return superellipsoid({radius, radius, radius}, 1, 1, aroundCount, alongCount);
}

Surface geodesic(float radius, int rounds) {
  const float g = (1 + std::sqrt(5.0f)) / 2;
  Surface ball;
  for (const float s : {1.0f, -1.0f})
    for (const float t : {g, -g}) {
      addPoint(ball, {s, t, 0});
      addPoint(ball, {0, s, t});
      addPoint(ball, {t, 0, s});
    }
  // The icosahedron's faces are the triples of points at edge length 2.
  const auto joinedBy = [&](int p, int q) {
    return std::fabs((ball.points[at(p)] - ball.points[at(q)]).length() - 2) < 0.01f;
  };
  for (int a = 0; a < 12; ++a)
    for (int b = a + 1; b < 12; ++b)
      for (int c = b + 1; c < 12; ++c) {
        if (!joinedBy(a, b) || !joinedBy(b, c) || !joinedBy(a, c)) continue;
        addTriangle(ball, a, b, c);
        if (dot(normalOf(ball, ball.triangles.back()), ball.points[at(a)]) < 0)
          std::swap(ball.triangles.back().points[1], ball.triangles.back().points[2]);
      }
  for (int round = 0; round < rounds; ++round) {
    std::map<std::pair<int, int>, int> middles;
    std::vector<Triangle> old;
    old.swap(ball.triangles);
    const auto middle = [&](int p, int q) {
      const auto [entry, fresh] = middles.try_emplace({std::min(p, q), std::max(p, q)}, 0);
      if (fresh) entry->second = addPoint(ball, unit(ball.points[at(p)]) + unit(ball.points[at(q)]));
      return entry->second;
    };
    for (const Triangle& triangle : old) {
      const auto [a, b, c] = triangle.points;
      const int ab = middle(a, b), bc = middle(b, c), ca = middle(c, a);
      addTriangle(ball, a, ab, ca);
      addTriangle(ball, ab, b, bc);
      addTriangle(ball, ca, bc, c);
      addTriangle(ball, ab, bc, ca);
    }
  }
  for (Vector& point : ball.points) point = unit(point) * radius;
  return mappedSpherical(ball, {0, 0, 0});
}

Surface cylinder(float radius, float height, int aroundCount, float bevel) {
  std::vector<ProfilePoint> profile{{0, 0}, {radius - bevel, 0}};
  if (bevel > 0) {
    profile.push_back({radius, bevel});
    profile.push_back({radius, height - bevel});
  }
  profile.push_back({radius - bevel, height});
  profile.push_back({0, height});
  return lathe(profile, aroundCount);
}

Surface cone(float bottom, float top, float height, int aroundCount, int alongCount) {
  SheetEnds ends;
  ends.closedAcross = true;
  ends.poleBelow = bottom == 0;
  ends.poleAbove = top == 0;
  return sheet(
      aroundCount, alongCount,
      [&](float s, float t) { return around(bottom + (top - bottom) * t, height * t, s); }, ends);
}

Surface torus(float radius, float thickness, int aroundCount, int across) {
  SheetEnds ends;
  ends.closedAcross = ends.closedAlong = true;
  return sheet(
      aroundCount, across,
      [&](float s, float t) {
        const float angle = 2 * pi * t;
        return around(radius - thickness * std::cos(angle), -thickness * std::sin(angle), s);
      },
      ends);
}

Surface disc(float radius, int aroundCount, int rings) {
  SheetEnds ends;
  ends.closedAcross = ends.poleAbove = true;
  const Surface flat = sheet(
      aroundCount, rings, [&](float s, float t) { return around(radius * (1 - t), 0, s); }, ends);
  return mapped(flat, [&](const Vector& p) { return Uv{p.x / radius / 2 + 0.5f, -p.z / radius / 2 + 0.5f}; });
}

Surface plane(float width, float depth, int across, int alongCount) {
  return sheet(across, alongCount,
               [&](float s, float t) { return Vector((s - 0.5f) * width, 0, (0.5f - t) * depth); });
}

Surface card(float width, float height) {
  return sheet(1, 1, [&](float s, float t) { return Vector((s - 0.5f) * width, t * height, 0); });
}

}  // namespace vex::geometry
