#include "engine/strips.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <numeric>

#include "shell/report.h"

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

// Which faces are free, and the free neighbours of any face. Faces with a doubled vertex have none. All faces
// before the start of a chain are taken, so that a search over all faces is one over those after the start.
class FreeFaces {
 public:
  explicit FreeFaces(const std::vector<Face>& meshFaces);

  // The first free face from `face` on, or the number of faces.
  std::uint32_t firstFrom(std::uint32_t face) const;
  void take(std::uint32_t face) { taken[face] = true; }
  void takeOnly(const std::vector<bool>& faces);  // all others are free again

  // The first free face after `last` that shares an edge with it, else the first one before; none.
  std::uint32_t nextNeighbour(std::uint32_t last);

  // Fatal when a free face has the corners of `last`.
  void refuseTwinsOf(std::uint32_t last) const;

 private:
  // One side of a face. Sides on the same edge stand side by side, in the order of their faces.
  struct Side {
    std::uint32_t edgeEnd;  // the higher vertex
    std::uint32_t face;
    std::uint32_t first;  // of the sides on this edge
  };

  std::uint32_t firstFree(std::uint32_t side, std::uint32_t edge);

  const std::vector<Face>& faces;
  std::vector<bool> taken;
  std::vector<Side> sides;
  std::vector<Corners> sidesOf;     // by face
  std::vector<std::uint32_t> skip;  // no side from the index up to this one has a free face
};

FreeFaces::FreeFaces(const std::vector<Face>& meshFaces)
    : faces(meshFaces), taken(meshFaces.size()), sidesOf(meshFaces.size(), {none, none, none}) {
  // Sorted by the lower vertex through counting, then each vertex's few by the higher one.
  std::uint32_t vertexCount = 0;
  for (const Face& face : faces) vertexCount = std::max(vertexCount, *std::ranges::max_element(face.v) + 1);
  std::vector<std::uint32_t> starts(vertexCount + 1);
  const auto forEachSide = [&](auto visit) {
    for (std::uint32_t face = 0; face < faces.size(); ++face) {
      const Corners& v = faces[face].v;
      if (!isTriangle(v)) continue;
      for (std::size_t i = 0; i < 3; ++i) {
        const auto [low, high] = std::minmax(v[i], v[(i + 1) % 3]);
        visit(face, low, high);
      }
    }
  };
  forEachSide([&](std::uint32_t, std::uint32_t low, std::uint32_t) { ++starts[low + 1]; });
  std::partial_sum(starts.begin(), starts.end(), starts.begin());
  sides.resize(starts.back());
  std::vector<std::uint32_t> ends(starts.begin(), starts.end());
  forEachSide([&](std::uint32_t face, std::uint32_t low, std::uint32_t high) {
    sides[ends[low]++] = {.edgeEnd = high, .face = face, .first = 0};
  });
  for (std::uint32_t vertex = 0; vertex < vertexCount; ++vertex) {
    std::sort(sides.begin() + starts[vertex], sides.begin() + starts[vertex + 1],
              [](const Side& a, const Side& b) {
                return a.edgeEnd != b.edgeEnd ? a.edgeEnd < b.edgeEnd : a.face < b.face;
              });
    std::uint32_t first = starts[vertex];
    for (std::uint32_t i = first; i < starts[vertex + 1]; ++i) {
      if (sides[i].edgeEnd != sides[first].edgeEnd) first = i;
      sides[i].first = first;
      *std::ranges::find(sidesOf[sides[i].face], none) = i;
    }
  }
  skip.resize(sides.size());
  std::iota(skip.begin(), skip.end(), 0u);
}

std::uint32_t FreeFaces::firstFrom(std::uint32_t face) const {
  while (face < taken.size() && taken[face]) ++face;
  return face;
}

void FreeFaces::takeOnly(const std::vector<bool>& only) {
  taken = only;
  std::iota(skip.begin(), skip.end(), 0u);
}

// The first free face among the sides of an edge from `side` on. Shortens the way for the next search.
std::uint32_t FreeFaces::firstFree(std::uint32_t side, std::uint32_t edge) {
  std::uint32_t free = side;
  while (free < sides.size() && taken[sides[free].face]) free = std::max(free + 1, skip[free]);
  while (side < free) {
    const std::uint32_t next = std::max(side + 1, skip[side]);
    skip[side] = free;
    side = next;
  }
  return free < sides.size() && sides[free].first == edge ? sides[free].face : none;
}

std::uint32_t FreeFaces::nextNeighbour(std::uint32_t last) {
  if (!isTriangle(faces[last].v)) return none;
  std::uint32_t later = none;
  std::uint32_t earlier = none;
  for (const std::uint32_t side : sidesOf[last]) {
    const std::uint32_t edge = sides[side].first;
    later = std::min(later, firstFree(side + 1, edge));
    earlier = std::min(earlier, firstFree(edge, edge));
  }
  const std::uint32_t next = later != none ? later : earlier;
  if (next != none) refuseTwins(faces[last].v, faces[next].v);
  return next;
}

void FreeFaces::refuseTwinsOf(std::uint32_t last) const {
  const std::uint32_t edge = sides[sidesOf[last][0]].first;
  for (std::uint32_t i = edge; i < sides.size() && sides[i].first == edge; ++i) {
    if (!taken[sides[i].face]) refuseTwins(faces[last].v, faces[sides[i].face].v);
  }
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
