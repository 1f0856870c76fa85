#include "engine/strips.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <numeric>

#include "base/fatal_place.h"
#include "base/report.h"

namespace vex {

namespace {

using Corners = std::array<std::uint32_t, 3>;
using Chain = std::vector<std::uint32_t>;  // of faces

constexpr std::uint32_t none = std::numeric_limits<std::uint32_t>::max();

bool contains(const Corners& corners, std::uint32_t vertex) {
  return corners[0] == vertex || corners[1] == vertex || corners[2] == vertex;
}

bool isTriangle(const Corners& corners) {
  return corners[0] != corners[1] && corners[1] != corners[2] && corners[2] != corners[0];
}

void refuseTwins(const Corners& a, const Corners& b) {
  if (contains(a, b[0]) && contains(a, b[1]) && contains(a, b[2])) {
    fatalError("Polygons with same vertices found!\nThis can't be happening!");
  }
}

// Which faces are free, and the free neighbours of the face taken last. The free sides on one edge form a
// ring in the order of their faces; side 3 f + i is the one of face f from its corner i on. A side that
// leaves the ring keeps pointing to the next one, which holds until another face is taken. Faces with a
// doubled vertex have no neighbours.
//
// All faces before the start of a chain are taken, so that what comes next in a ring is what rounds over
// the faces after the start would meet next.
class FreeFaces {
 public:
  explicit FreeFaces(const std::vector<Face>& meshFaces);

  // The first free face from `face` on, or the number of faces.
  std::uint32_t firstFrom(std::uint32_t face) const;

  void take(std::uint32_t face);
  void takeOnly(const std::vector<bool>& wanted);  // all others are free again

  // The first free face after `last` that shares an edge with it, else the first one before; none.
  std::uint32_t nextNeighbour(std::uint32_t last) const;

  // Fatal when a free face has the corners of `last`.
  void refuseTwinsOf(std::uint32_t last) const;

 private:
  void closeRings();

  const std::vector<Face>& faces;
  std::vector<bool> taken;
  std::vector<std::uint32_t> allNext;  // while all faces are free
  std::vector<std::uint32_t> next;
  std::vector<std::uint32_t> previous;
};

FreeFaces::FreeFaces(const std::vector<Face>& meshFaces)
    : faces(meshFaces), taken(faces.size()), allNext(3 * faces.size()), previous(3 * faces.size()) {
  // Sides are sorted by their lower vertex through counting, then each vertex's few by the higher one.
  std::uint32_t vertexCount = 0;
  for (const Face& face : faces) vertexCount = std::max(vertexCount, *std::ranges::max_element(face.v) + 1);
  const auto forEachSide = [&](auto visit) {
    for (std::uint32_t face = 0; face < faces.size(); ++face) {
      const Corners& v = faces[face].v;
      if (!isTriangle(v)) continue;
      for (std::uint32_t i = 0; i < 3; ++i) {
        const std::uint32_t a = v[i], b = v[(i + 1) % 3];
        visit(3 * face + i, std::min(a, b), std::max(a, b));
      }
    }
  };
  std::vector<std::uint32_t> starts(vertexCount + 1);
  forEachSide([&](std::uint32_t, std::uint32_t low, std::uint32_t) { ++starts[low + 1]; });
  std::partial_sum(starts.begin(), starts.end(), starts.begin());
  struct Side {
    std::uint32_t high, side;
    auto operator<=>(const Side&) const = default;
  };
  std::vector<Side> sides(starts.back());
  std::vector<std::uint32_t> ends = starts;
  forEachSide([&](std::uint32_t side, std::uint32_t low, std::uint32_t high) {
    sides[ends[low]++] = {high, side};
  });

  std::iota(allNext.begin(), allNext.end(), 0u);
  for (std::uint32_t vertex = 0; vertex < vertexCount; ++vertex) {
    const auto begin = sides.begin() + starts[vertex];
    const auto end = sides.begin() + starts[vertex + 1];
    std::sort(begin, end);
    for (auto first = begin, side = begin; side != end; ++side) {
      if (side->high != first->high) first = side;
      const bool last = side + 1 == end || side[1].high != side->high;
      allNext[side->side] = last ? first->side : side[1].side;
    }
  }
  closeRings();
}

void FreeFaces::closeRings() {
  next = allNext;
  for (std::uint32_t side = 0; side < next.size(); ++side) previous[next[side]] = side;
}

std::uint32_t FreeFaces::firstFrom(std::uint32_t face) const {
  while (face < taken.size() && taken[face]) ++face;
  return face;
}

void FreeFaces::take(std::uint32_t face) {
  taken[face] = true;
  for (std::uint32_t side = 3 * face; side < 3 * face + 3; ++side) {
    next[previous[side]] = next[side];
    previous[next[side]] = previous[side];
  }
}

void FreeFaces::takeOnly(const std::vector<bool>& wanted) {
  closeRings();
  taken.assign(taken.size(), false);
  for (std::uint32_t face = 0; face < wanted.size(); ++face) {
    if (wanted[face]) take(face);
  }
}

std::uint32_t FreeFaces::nextNeighbour(std::uint32_t last) const {
  std::uint32_t later = none;
  std::uint32_t earlier = none;
  for (std::uint32_t side = 3 * last; side < 3 * last + 3; ++side) {
    if (next[side] == side) continue;
    std::uint32_t& nearest = next[side] > side ? later : earlier;
    nearest = std::min(nearest, next[side] / 3);
  }
  const std::uint32_t neighbour = later != none ? later : earlier;
  if (neighbour != none) refuseTwins(faces[last].v, faces[neighbour].v);
  return neighbour;
}

void FreeFaces::refuseTwinsOf(std::uint32_t last) const {
  const std::uint32_t first = next[3 * last];
  if (first == 3 * last) return;
  std::uint32_t side = first;
  do {
    refuseTwins(faces[last].v, faces[side / 3].v);
    side = next[side];
  } while (side != first);
}

void growChain(FreeFaces& free, std::uint32_t start, Chain& chain) {
  chain.clear();
  for (std::uint32_t face = start; face != none; face = free.nextNeighbour(face)) {
    free.take(face);
    chain.push_back(face);
  }
}

// As growChain, up to the first neighbour that leaves no vertex common to all faces.
void growFan(FreeFaces& free, const std::vector<Face>& faces, std::uint32_t start, Chain& chain) {
  Corners common = faces[start].v;
  auto commonEnd = common.end();
  chain.clear();
  for (std::uint32_t face = start; face != none; face = free.nextNeighbour(face)) {
    commonEnd = std::remove_if(common.begin(), commonEnd,
                               [&](std::uint32_t vertex) { return !contains(faces[face].v, vertex); });
    if (commonEnd == common.begin()) {
      free.refuseTwinsOf(chain.back());
      return;
    }
    free.take(face);
    chain.push_back(face);
  }
}

void append(StripList& list, const Face& face, std::size_t corner) {
  list.vertices.push_back(face.v[corner]);
  list.texCoords.push_back(static_cast<std::uint32_t>(face.t[corner]));
}

// The corner of `face` that `neighbour`, which shares two of its vertices, has not.
std::size_t cornerAwayFrom(const Face& face, const Face& neighbour) {
  std::size_t corner = 0;
  while (contains(neighbour.v, face.v[corner])) ++corner;
  return corner;
}

struct Pair {
  std::size_t first, second;
};

constexpr Pair otherCorners[3] = {{1, 2}, {0, 2}, {0, 1}};  // in the order of the face

StripList makeFan(const std::vector<Face>& faces, const Chain& chain) {
  const Face& face = faces[chain[0]];
  const std::size_t away = cornerAwayFrom(face, faces[chain[1]]);
  auto [hub, shared] = otherCorners[away];
  if (!contains(faces[chain[2]].v, face.v[hub])) std::swap(hub, shared);
  StripList fan;
  fan.vertices.reserve(chain.size() + 2);
  fan.texCoords.reserve(chain.size() + 2);
  for (const std::size_t corner : {hub, away, shared}) append(fan, face, corner);
  for (std::size_t i = 1; i < chain.size(); ++i) {
    const Face& next = faces[chain[i]];
    const std::uint32_t* last = &fan.vertices.back();
    const Corners known{fan.vertices[0], last[-1], last[0]};
    if (std::ranges::count_if(next.v, [&](std::uint32_t vertex) { return !contains(known, vertex); }) != 1) {
      fatalError("cracking up!!!");
    }
    append(fan, next, cornerAwayFrom(next, {.v = known}));
  }
  return fan;
}

// The longest strip of the chain's faces from `start` on, of two faces at least.
StripList makeStrip(const std::vector<Face>& faces, const Chain& chain, std::size_t start) {
  const Face& face = faces[chain[start]];
  const std::size_t away = cornerAwayFrom(face, faces[chain[start + 1]]);
  auto [second, third] = otherCorners[away];
  if (start + 2 < chain.size() && contains(faces[chain[start + 2]].v, face.v[second])) {
    std::swap(second, third);
  }
  StripList strip;
  for (const std::size_t corner : {away, second, third}) append(strip, face, corner);
  for (std::size_t i = start + 1; i < chain.size(); ++i) {
    const Face& next = faces[chain[i]];
    const std::uint32_t* last = &strip.vertices.back();
    const Corners edge{last[0], last[-1], last[-1]};
    if (!contains(next.v, edge[0]) || !contains(next.v, edge[1])) break;
    append(strip, next, cornerAwayFrom(next, {.v = edge}));
  }
  return strip;
}

void cutIntoStrips(Mesh& mesh, const Chain& chain) {
  for (std::size_t i = 0; i < chain.size();) {
    if (i + 1 == chain.size()) {
      const Corners& v = mesh.faces[chain[i]].v;
      mesh.solos.insert(mesh.solos.end(), v.begin(), v.end());
      return;
    }
    mesh.strips.push_back(makeStrip(mesh.faces, chain, i));
    i += mesh.strips.back().vertices.size() - 2;
  }
}

}  // namespace

void stripify(Mesh& mesh) {
  const FatalPlace place([&mesh] { return std::string("mesh ") + mesh.name; });
  mesh.fans.clear();
  mesh.strips.clear();
  mesh.solos.clear();
  const auto count = static_cast<std::uint32_t>(mesh.faces.size());
  FreeFaces free(mesh.faces);
  std::vector<bool> inFan(count);
  Chain chain;
  for (std::uint32_t face = 0; (face = free.firstFrom(face)) < count;) {
    loadingProgressAt(0, "%s face %d/%d\n", mesh.name, static_cast<int>(face), static_cast<int>(count));
    growFan(free, mesh.faces, face, chain);
    if (chain.size() < 3) continue;
    mesh.fans.push_back(makeFan(mesh.faces, chain));
    for (const std::uint32_t member : chain) inFan[member] = true;
  }
  logPrintf("mesh %s %d fans ", mesh.name, static_cast<int>(mesh.fans.size()));
  free.takeOnly(inFan);
  for (std::uint32_t face = 0; (face = free.firstFrom(face)) < count;) {
    growChain(free, face, chain);
    cutIntoStrips(mesh, chain);
  }
  mesh.stripped = true;
  logPrintf("%d strips %d solos\n", static_cast<int>(mesh.strips.size()),
            static_cast<int>(mesh.solos.size() / 3));
}

}  // namespace vex
