#include "production/geometry/pieces.h"

#include <algorithm>
#include <map>

#include "production/geometry/index.h"

namespace vex::geometry {

namespace {

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
  std::vector<Piece> pieces;
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
    for (const Piece& piece : pieces) whole += areaOf(piece);
    std::vector<int> loose;
    for (Piece& piece : pieces) {
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
    std::erase_if(pieces, [](const Piece& piece) { return piece.empty(); });
  }

 private:
  double areaOf(const Piece& piece) const {
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

}  // namespace

Vector areaVector(const Surface& surface, const Triangle& triangle) {
  const Vector& a = surface.points[at(triangle.points[0])];
  return cross(surface.points[at(triangle.points[1])] - a, surface.points[at(triangle.points[2])] - a) * 0.5f;
}

std::vector<Piece> piecesByNormals(const Surface& surface, const std::vector<int>& wanted) {
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

std::vector<Piece> piecesByMapping(const Surface& surface) {
  const auto neighbours = neighboursOf(surface, true);
  std::vector<bool> free(surface.triangles.size(), true);
  std::vector<Piece> pieces;
  for (std::size_t seed = 0; seed < free.size(); ++seed) {
    if (!free[seed]) continue;
    Piece piece{static_cast<int>(seed)};
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

}  // namespace vex::geometry
