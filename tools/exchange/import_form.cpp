#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>

#include "base/report.h"
#include "tools/exchange/import_parts.h"

namespace vex {

namespace {

constexpr float sameNormal = 1 - 1e-6f;  // least cosine: an angle of 0.08 degrees

std::uint32_t mixed(std::uint32_t hash, float value) {
  return (hash ^ std::bit_cast<std::uint32_t>(value == 0 ? 0.0f : value)) * 0x9e3779b1u;
}

std::uint32_t hashOf(const aiVector3D& p) {
  std::uint32_t hash = mixed(mixed(mixed(0, p.x), p.y), p.z);
  return hash ^ hash >> 15;
}

// Vertices of the source, told apart by place and normal (points, of which the player makes its normals) and
// by texture coordinates (corners).
class Sharing {
 public:
  Sharing(const aiMesh& sourceMesh, const aiVector3D* sourceCoordinates, bool asTheyStand)
      : mesh(sourceMesh), coordinates(sourceCoordinates), one(asTheyStand) {
    buckets.assign(std::bit_ceil(std::max(mesh.mNumVertices, 8u)), -1);
    pointOf.reserve(mesh.mNumVertices);
    cornerOf.reserve(mesh.mNumVertices);
    for (unsigned v = 0; v < mesh.mNumVertices; ++v) add(v);
  }

  std::vector<int> pointOf, cornerOf;     // by vertex
  std::vector<unsigned> points, corners;  // the vertex that each comes from
 private:
  void add(unsigned v) {
    // A mesh that is not mapped has no corners to tell apart: its points are its vertices.
    const int point = one && !coordinates ? newPoint(v) : findPoint(v);
    pointOf.push_back(point);
    cornerOf.push_back(coordinates ? findCorner(point, v) : point);
  }

  int newPoint(unsigned v) {
    points.push_back(v);
    firstCorner.push_back(-1);
    return static_cast<int>(points.size()) - 1;
  }

  int findPoint(unsigned v) {
    const aiVector3D& place = mesh.mVertices[v];
    int& bucket = buckets[hashOf(place) & (buckets.size() - 1)];
    for (int point = bucket; point >= 0; point = nextPoint[static_cast<std::size_t>(point)]) {
      const unsigned other = points[static_cast<std::size_t>(point)];
      if (mesh.mVertices[other] == place &&
          (!mesh.mNormals || mesh.mNormals[other] * mesh.mNormals[v] >= sameNormal))
        return point;
    }
    const int point = newPoint(v);
    nextPoint.resize(points.size(), -1);
    nextPoint.back() = bucket;
    return bucket = point;
  }

  int findCorner(int point, unsigned v) {
    int& first = firstCorner[static_cast<std::size_t>(point)];
    for (int corner = one ? -1 : first; corner >= 0; corner = nextCorner[static_cast<std::size_t>(corner)]) {
      const aiVector3D& other = coordinates[corners[static_cast<std::size_t>(corner)]];
      if (other.x == coordinates[v].x && other.y == coordinates[v].y) return corner;
    }
    corners.push_back(v);
    nextCorner.push_back(first);
    return first = static_cast<int>(corners.size()) - 1;
  }

  const aiMesh& mesh;
  const aiVector3D* coordinates;
  bool one;
  std::vector<int> buckets, nextPoint, firstCorner, nextCorner;
};

bool isNumber(const aiVector3D& v) {
  return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

// Each vertex under the bones at rest that hold it.
std::vector<Place> skinnedPlaces(const ImportWork& work, const aiMesh& mesh, const Transform& stored) {
  std::vector<Place> places(mesh.mNumVertices);
  std::vector<double> weights(mesh.mNumVertices);
  for (unsigned b = 0; b < mesh.mNumBones; ++b) {
    const aiBone& bone = *mesh.mBones[b];
    const int node = work.tree.find(bone.mName.C_Str());
    if (node < 0) continue;
    Transform whole;
    for (int i = node; i >= 0; i = work.tree.nodes[static_cast<std::size_t>(i)].parent)
      whole = work.tree.nodes[static_cast<std::size_t>(i)].local * whole;
    whole = work.tree.world * whole * toTransform(bone.mOffsetMatrix);
    for (unsigned w = 0; w < bone.mNumWeights; ++w) {
      const aiVertexWeight& weight = bone.mWeights[w];
      if (weight.mVertexId >= mesh.mNumVertices) continue;
      const auto share = static_cast<double>(weight.mWeight);
      places[weight.mVertexId] += whole * toPlace(mesh.mVertices[weight.mVertexId]) * share;
      weights[weight.mVertexId] += share;
    }
  }
  for (unsigned v = 0; v < mesh.mNumVertices; ++v)
    places[v] = weights[v] > 0 ? places[v] / weights[v] : stored * toPlace(mesh.mVertices[v]);
  return places;
}

// Drops points and corners that no face uses.
template <typename Item>
void dropUnused(std::vector<Item>& items, std::vector<std::array<int, 3>>& faces) {
  std::vector<int> number(items.size(), -1);
  for (const auto& face : faces)
    for (const int corner : face) number[static_cast<std::size_t>(corner)] = 0;
  int next = 0;
  for (std::size_t i = 0; i < items.size(); ++i) {
    if (number[i] < 0) continue;
    items[static_cast<std::size_t>(next)] = items[i];
    number[i] = next++;
  }
  if (static_cast<std::size_t>(next) == items.size()) return;
  items.resize(static_cast<std::size_t>(next));
  for (auto& face : faces)
    for (int& corner : face) corner = number[static_cast<std::size_t>(corner)];
}

}  // namespace

bool importForm(ImportWork& work, const aiMesh& mesh, const Transform& stored, bool turnOver,
                bool asTheyStand, TextMesh& form) {
  const std::string name = form.name;
  for (unsigned v = 0; v < mesh.mNumVertices; ++v)
    if (!isNumber(mesh.mVertices[v])) {
      work.report.left("mesh " + name + ": a place of a vertex is no number");
      return false;
    }
  const unsigned set = Materials(work).coordinatesOf(mesh.mMaterialIndex);
  const aiVector3D* coordinates = set < AI_MAX_NUMBER_OF_TEXTURECOORDS ? mesh.mTextureCoords[set] : nullptr;
  if (coordinates && !std::all_of(coordinates, coordinates + mesh.mNumVertices, isNumber)) {
    work.report.left("mesh " + name + ": its texture coordinates, of which some are no numbers");
    coordinates = nullptr;
  }
  // An export maps a mesh that is not mapped by noughts where the library would join its vertices.
  if (asTheyStand && coordinates &&
      std::all_of(coordinates, coordinates + mesh.mNumVertices,
                  [](const aiVector3D& c) { return c == aiVector3D(); }))
    coordinates = nullptr;
  if (mesh.mColors[0]) work.report.left("mesh " + name + ": its colours of vertices; the player has none");

  const Sharing sharing(mesh, coordinates, asTheyStand);
  const bool skinned = mesh.mNumBones > 0;
  const std::vector<Place> places = skinned ? skinnedPlaces(work, mesh, stored) : std::vector<Place>();
  form.points.reserve(sharing.points.size());
  for (const unsigned v : sharing.points)
    form.points.push_back(toVector(skinned ? places[v] : stored * toPlace(mesh.mVertices[v])));
  if (coordinates) {
    form.coordinates.reserve(sharing.corners.size());
    for (const unsigned v : sharing.corners) form.coordinates.push_back({coordinates[v].x, coordinates[v].y});
    form.coordinateFaces.reserve(mesh.mNumFaces);
  }
  form.faces.reserve(mesh.mNumFaces);
  unsigned flat = 0;
  for (unsigned f = 0; f < mesh.mNumFaces; ++f) {
    const aiFace& source = mesh.mFaces[f];
    if (source.mNumIndices != 3) continue;
    std::array<unsigned, 3> v{source.mIndices[0], source.mIndices[1], source.mIndices[2]};
    if (turnOver) std::swap(v[1], v[2]);
    std::array<int, 3> face{}, corners{};
    for (std::size_t k = 0; k < 3; ++k) face[k] = sharing.pointOf[v[k]], corners[k] = sharing.cornerOf[v[k]];
    if (!asTheyStand && (face[0] == face[1] || face[1] == face[2] || face[2] == face[0])) {
      ++flat;
      continue;
    }
    form.faces.push_back(face);
    if (coordinates) form.coordinateFaces.push_back(corners);
  }
  if (flat > 0) work.report.left(formatted("mesh %s: %u triangles without area", name.c_str(), flat));
  if (form.faces.empty()) {
    work.report.left("mesh " + name + ": it holds no triangle");
    return false;
  }
  if (!asTheyStand) {
    dropUnused(form.points, form.faces);
    dropUnused(form.coordinates, form.coordinateFaces);
  }
  if (std::any_of(form.points.begin(), form.points.end(),
                  [](const Vector& p) { return !std::isfinite(p.length()); })) {
    work.report.left("mesh " + name + ": lies too far away for any number");
    return false;
  }
  return true;
}

}  // namespace vex
