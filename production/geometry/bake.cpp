#include "production/geometry/bake.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "base/pi.h"
#include "production/geometry/index.h"
#include "production/image/filter.h"

namespace vex::geometry {

using namespace image;

namespace {

constexpr int bleed = 4;

std::uint32_t scramble(std::uint32_t h) {
  h = (h ^ (h >> 16)) * 0x7feb352du;
  h = (h ^ (h >> 15)) * 0x846ca68bu;
  return h ^ (h >> 16);
}

float fraction(std::uint32_t h) {
  return static_cast<float>(h >> 8) / 16777216.0f;
}

// Two directions at right angles to a third.
void across(const Vector& normal, Vector& right, Vector& up) {
  right = unit(cross(std::fabs(normal.y) < 0.9f ? Vector(0, 1, 0) : Vector(1, 0, 0), normal));
  up = cross(normal, right);
}

// Place i of side x side strata, jittered by a pattern number.
struct Pair {
  float x, y;
};
Pair stratum(int i, int side, std::uint32_t pattern) {
  const std::uint32_t h = scramble(pattern * 0x9e3779b9u + static_cast<std::uint32_t>(i));
  const float step = 1 / static_cast<float>(side);
  return {(static_cast<float>(i % side) + fraction(h)) * step,
          (static_cast<float>(i / side) + fraction(scramble(h))) * step};
}

Colour4 onPlaster(const Colour4& light) {
  return {1 - std::exp(-light.r), 1 - std::exp(-light.g), 1 - std::exp(-light.b), 1};
}

// The triangle of each texel's centre and where in it; with `slack` also texels whose centre just misses.
struct Cover {
  int triangle = -1;
  float b = 0, c = 0;  // weights of the second and third corner
};

Grid<Cover> coverOf(const Surface& surface, int side) {
  Grid<Cover> grid(side, side);
  Field misses(side, side, 1e9f);
  const auto size = static_cast<float>(side);
  for (int i = 0; i < static_cast<int>(surface.triangles.size()); ++i) {
    const Triangle& triangle = surface.triangles[at(i)];
    float x[3], y[3];
    for (std::size_t k = 0; k < 3; ++k) {
      x[k] = triangle.uv[k].u * size - 0.5f;
      y[k] = (1 - triangle.uv[k].v) * size - 0.5f;
    }
    const float det = (x[1] - x[0]) * (y[2] - y[0]) - (x[2] - x[0]) * (y[1] - y[0]);
    if (det == 0) continue;
    const auto clampSide = [&](float v) { return std::clamp(static_cast<int>(v), 0, side - 1); };
    for (int ty = clampSide(std::floor(std::min({y[0], y[1], y[2]})));
         ty <= clampSide(std::ceil(std::max({y[0], y[1], y[2]}))); ++ty)
      for (int tx = clampSide(std::floor(std::min({x[0], x[1], x[2]})));
           tx <= clampSide(std::ceil(std::max({x[0], x[1], x[2]}))); ++tx) {
        const float px = static_cast<float>(tx) - x[0], py = static_cast<float>(ty) - y[0];
        float b = (px * (y[2] - y[0]) - (x[2] - x[0]) * py) / det;
        float c = ((x[1] - x[0]) * py - px * (y[1] - y[0])) / det;
        // Outside: the nearest place on the triangle, as long as it is within a texel.
        float miss = 0;
        if (b < 0 || c < 0 || b + c > 1) {
          b = std::clamp(b, 0.0f, 1.0f), c = std::clamp(c, 0.0f, 1.0f);
          if (b + c > 1) {
            const float sum = b + c;
            b /= sum, c /= sum;
          }
          miss = std::hypot(x[0] + b * (x[1] - x[0]) + c * (x[2] - x[0]) - static_cast<float>(tx),
                            y[0] + b * (y[1] - y[0]) + c * (y[2] - y[0]) - static_cast<float>(ty));
          if (miss > 1) continue;
        }
        if (miss >= misses.at(tx, ty)) continue;
        misses.at(tx, ty) = miss;
        grid.at(tx, ty) = {i, b, c};
      }
  }
  return grid;
}

struct CoveredSpot {
  Vector position, normal, flat;  // flat: of the triangle
};

CoveredSpot spotOf(const Surface& surface, const std::vector<Vector>& normals, const Cover& cover) {
  const Triangle& triangle = surface.triangles[at(cover.triangle)];
  const float a = 1 - cover.b - cover.c;
  const auto blend = [&](const std::vector<Vector>& values) {
    return values[at(triangle.points[0])] * a + values[at(triangle.points[1])] * cover.b +
           values[at(triangle.points[2])] * cover.c;
  };
  return {blend(surface.points), unit(blend(normals)), normalOf(surface, triangle)};
}

// Sharp convex edges give +1, creases -1, each with the two ends of the edge.
struct SharpEdge {
  Vector from, to;
  float strength;
};

std::vector<SharpEdge> sharpEdges(const Surface& surface) {
  struct Seen {
    Vector normal, opposite;
  };
  // By place: hard edges are two points in one place.
  using Place = std::array<float, 3>;
  const auto placeOf = [&](int point) {
    const Vector& p = surface.points[at(point)];
    return Place{p.x, p.y, p.z};
  };
  std::map<std::pair<Place, Place>, Seen> open;
  std::vector<SharpEdge> edges;
  for (const Triangle& triangle : surface.triangles)
    for (std::size_t k = 0; k < 3; ++k) {
      const Place p = placeOf(triangle.points[k]), q = placeOf(triangle.points[(k + 1) % 3]);
      const Vector normal = normalOf(surface, triangle);
      const Vector& opposite = surface.points[at(triangle.points[(k + 2) % 3])];
      const auto key = std::make_pair(std::min(p, q), std::max(p, q));
      const auto found = open.find(key);
      if (found == open.end()) {
        open[key] = {normal, opposite};
        continue;
      }
      const float angle = std::acos(std::clamp(dot(normal, found->second.normal), -1.0f, 1.0f));
      const Vector from(p[0], p[1], p[2]), to(q[0], q[1], q[2]);
      const bool convex = dot(found->second.normal, opposite - from) < 0;
      const float strength = smoothStep(0.25f, 1.0f, angle);
      if (strength > 0) edges.push_back({from, to, convex ? strength : -strength});
      open.erase(found);
    }
  return edges;
}

float distanceTo(const SharpEdge& edge, const Vector& p) {
  const Vector along = edge.to - edge.from, from = p - edge.from;
  const float t = clamp01(dot(from, along) / std::max(dot(along, along), 1e-20f));
  return (from - along * t).length();
}

// Edges by cells as wide as the wear, so that each texel looks at its neighbourhood only.
struct EdgeCells {
  float cell = 1;
  std::vector<SharpEdge> edges;
  std::map<std::array<int, 3>, std::vector<int>> cells;

  std::array<int, 3> cellOf(const Vector& p) const {
    return {static_cast<int>(std::floor(p.x / cell)), static_cast<int>(std::floor(p.y / cell)),
            static_cast<int>(std::floor(p.z / cell))};
  }
};

EdgeCells edgeCells(const Surface& surface, float width) {
  EdgeCells result;
  result.edges = sharpEdges(surface);
  const Bounds bounds = boundsOf(surface);
  result.cell = std::max(2 * width, (bounds.most - bounds.least).length() / 64);
  for (int i = 0; i < static_cast<int>(result.edges.size()); ++i) {
    const SharpEdge& edge = result.edges[at(i)];
    const int steps = 1 + static_cast<int>((edge.to - edge.from).length() / (result.cell * 0.4f));
    const Vector reach(width, width, width);
    for (int step = 0; step <= steps; ++step) {
      const Vector p = mix(edge.from, edge.to, static_cast<float>(step) / static_cast<float>(steps));
      const auto low = result.cellOf(p - reach), high = result.cellOf(p + reach);
      for (int z = low[2]; z <= high[2]; ++z)
        for (int y = low[1]; y <= high[1]; ++y)
          for (int x = low[0]; x <= high[0]; ++x) {
            std::vector<int>& list = result.cells[{x, y, z}];
            if (list.empty() || list.back() != i) list.push_back(i);
          }
    }
  }
  return result;
}

float edgeAt(const EdgeCells& cells, const Vector& p, float width) {
  const auto found = cells.cells.find(cells.cellOf(p));
  if (found == cells.cells.end()) return 0;
  float convex = 0, crease = 0;
  for (const int i : found->second) {
    const SharpEdge& edge = cells.edges[at(i)];
    const float near = clamp01(1 - distanceTo(edge, p) / width) * std::fabs(edge.strength);
    (edge.strength > 0 ? convex : crease) = std::max(edge.strength > 0 ? convex : crease, near);
  }
  return convex - crease;
}

// What is known spreads to neighbours that are not, one texel a round.
template <typename Known>
void spread(Canvas& canvas, Known& known, int rounds) {
  for (int round = 0; round < rounds; ++round) {
    const Canvas before = canvas;
    const Known knownBefore = known;
    for (int y = 0; y < canvas.height; ++y)
      for (int x = 0; x < canvas.width; ++x) {
        if (knownBefore.at(x, y)) continue;
        Colour4 sum{0, 0, 0, 0};
        int count = 0;
        for (int dy = -1; dy <= 1; ++dy)
          for (int dx = -1; dx <= 1; ++dx) {
            const int nx = std::clamp(x + dx, 0, canvas.width - 1),
                      ny = std::clamp(y + dy, 0, canvas.height - 1);
            if (!knownBefore.at(nx, ny)) continue;
            sum = sum + before.at(nx, ny);
            ++count;
          }
        if (count == 0) continue;
        canvas.at(x, y) = sum * (1 / static_cast<float>(count));
        known.at(x, y) = 1;
      }
  }
}

// The light on its own, coarser grid, alpha = open.
Canvas bakedLight(const Surface& surface, const std::vector<Vector>& normals, const RayTree& obstacles,
                  const BakeLook& look, int pictureSide) {
  const int side = std::max(1, pictureSide / std::max(1, look.coarseness));
  const Bounds bounds = boundsOf(surface);
  const float lift = 2e-4f * (bounds.most - bounds.least).length();
  Canvas light(side, side, {0, 0, 0, 0});
  Grid<char> known(side, side);
  const Grid<Cover> cover = coverOf(surface, side);
  for (int y = 0; y < side; ++y)
    for (int x = 0; x < side; ++x) {
      const Cover& spot = cover.at(x, y);
      if (spot.triangle < 0) continue;
      const CoveredSpot place = spotOf(surface, normals, spot);
      const auto pattern = scramble(static_cast<std::uint32_t>(y * side + x));
      BakedLight baked = lightAt(obstacles, look, place.position + place.flat * lift, place.normal, pattern);
      baked.light.a = baked.open;
      light.at(x, y) = baked.light;
      known.at(x, y) = 1;
    }
  spread(light, known, bleed);
  // Blurred within what is known only.
  if (look.soften > 0) {
    Field weight = map(known, [](char k) { return static_cast<float>(k); });
    light = blur(light, look.soften, EdgeMode::clamp);
    weight = blur(weight, look.soften, EdgeMode::clamp);
    for (std::size_t i = 0; i < light.texels.size(); ++i)
      if (weight.texels[i] > 1e-3f) light.texels[i] = light.texels[i] * (1 / weight.texels[i]);
  }
  return light;
}

}  // namespace

BakedLight lightAt(const RayTree& obstacles, const BakeLook& look, const Vector& position,
                   const Vector& normal, std::uint32_t pattern) {
  Vector right, up;
  across(normal, right, up);
  const float far = 1e30f;
  BakedLight result;
  result.light = {0, 0, 0};
  const int side = std::max(1, static_cast<int>(std::lround(std::sqrt(look.rays))));
  const float share = 1 / static_cast<float>(side * side);
  float open = 0;
  for (int i = 0; i < side * side; ++i) {
    const Pair p = stratum(i, side, pattern);
    // Cosine-weighted: a disc lifted to the half-sphere.
    const float radius = std::sqrt(p.x), turn = 2 * pi * p.y;
    const Vector direction = right * (radius * std::cos(turn)) + up * (radius * std::sin(turn)) +
                             normal * std::sqrt(std::max(0.0f, 1 - p.x));
    // Rays of many lengths: what is met at distance t hides 1 - (t / reach)^2 of them.
    const std::uint32_t h = scramble(pattern ^ static_cast<std::uint32_t>(i * 7919 + 13));
    const float most = look.reach > 0 ? look.reach * std::sqrt(fraction(h)) : far;
    if (blocked(obstacles, position, direction, most)) continue;
    open += share;
    result.light = result.light + look.sky(direction) * share;
  }
  result.open = open;
  result.light = result.light + look.bounce * (1 - open);

  for (std::size_t index = 0; index < look.lights.size(); ++index) {
    const BakeLight& light = look.lights[index];
    const Vector way = light.placed ? light.towards - position : light.towards;
    const float distance = way.length();
    const Vector towards = way / distance;
    const float cosine = dot(towards, normal);
    if (cosine <= 0) continue;
    Vector lightRight, lightUp;
    across(towards, lightRight, lightUp);
    const int rays =
        light.size > 0 ? std::max(1, static_cast<int>(std::lround(std::sqrt(look.shadowRays)))) : 1;
    float seen = 0;
    for (int i = 0; i < rays * rays; ++i) {
      const Pair p = stratum(i, rays, pattern + 977 * static_cast<std::uint32_t>(index + 1));
      const float radius = light.size * std::sqrt(p.x), turn = 2 * pi * p.y;
      Vector direction = towards;
      if (light.placed)
        direction =
            towards * distance + lightRight * (radius * std::cos(turn)) + lightUp * (radius * std::sin(turn));
      else
        direction =
            unit(towards + lightRight * (radius * std::cos(turn)) + lightUp * (radius * std::sin(turn)));
      // Placed lights: rays have the length of the way, and end a little before the lamp.
      if (!blocked(obstacles, position, direction, light.placed ? 0.98f : far)) seen += 1;
    }
    float strength = cosine * seen / static_cast<float>(rays * rays);
    if (light.placed && light.reach > 0) strength /= 1 + distance * distance / (light.reach * light.reach);
    result.light = result.light + light.colour * strength;
  }
  result.light.a = 1;
  return result;
}

Canvas bake(const Surface& surface, const RayTree& obstacles, const BakeLook& look, const BakePaint& paint) {
  const int side = paint.side;
  const std::vector<Vector> normals = pointNormals(surface);
  const Grid<Cover> cover = coverOf(surface, side);

  const Canvas light = paint.lit ? bakedLight(surface, normals, obstacles, look, side) : Canvas();
  const bool wear = paint.wearWidth > 0;
  const EdgeCells edges = wear ? edgeCells(surface, paint.wearWidth) : EdgeCells{};
  Canvas picture(side, side, {0, 0, 0, 1});
  Grid<char> painted(side, side);
  for (int y = 0; y < side; ++y)
    for (int x = 0; x < side; ++x) {
      const Cover& spot = cover.at(x, y);
      if (spot.triangle < 0) continue;
      const CoveredSpot place = spotOf(surface, normals, spot);
      BakePoint point;
      point.position = place.position, point.normal = place.normal;
      const float u = (static_cast<float>(x) + 0.5f) / static_cast<float>(side),
                  v = (static_cast<float>(y) + 0.5f) / static_cast<float>(side);
      point.uv = {u, 1 - v};
      point.part = surface.triangles[at(spot.triangle)].part;
      point.light = {1, 1, 1};
      if (paint.lit) {
        const Colour4 here = sample(light, u, v, EdgeMode::clamp);
        point.open = clamp01(here.a);
        point.light = {here.r + paint.ambient, here.g + paint.ambient, here.b + paint.ambient, 1};
      }
      if (wear) point.edge = edgeAt(edges, place.position, paint.wearWidth);
      picture.at(x, y) = bakesPlaster ? onPlaster(point.light) : paint.paint(point);
      painted.at(x, y) = 1;
    }
  spread(picture, painted, bleed + 4);
  return picture;
}

}  // namespace vex::geometry
