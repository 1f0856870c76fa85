#include "tools/exchange/import.h"

#include <assimp/postprocess.h>
#include <assimp/scene.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <assimp/Importer.hpp>
#include <functional>
#include <string>

#include "base/report.h"
#include "tests/support/gltf_text.h"
#include "tests/support/imported.h"
#include "tests/support/temporary_folder.h"

// Forms, hierarchy and motion against the library's own scene, moved by the library's own arithmetic.

namespace vex {

namespace {

GltfText::Mesh wedge() {
  return {.positions = {{0, 0, 0}, {3, 0, 0}, {0, 2, 0}, {0, 0, 1}},
          .indices = {0, 2, 1, 0, 1, 3, 0, 3, 2, 1, 2, 3}};
}

template <typename Key>
auto keyed(const Key* keys, unsigned count, double ticks, const auto& mix) {
  unsigned next = 0;
  while (next < count && keys[next].mTime <= ticks) ++next;
  if (next == 0) return keys[0].mValue;
  if (next == count) return keys[count - 1].mValue;
  const double span = keys[next].mTime - keys[next - 1].mTime;
  return mix(keys[next - 1].mValue, keys[next].mValue,
             static_cast<float>((ticks - keys[next - 1].mTime) / span));
}

// A node's own transform at a time, as the library keeps it.
aiMatrix4x4 localAt(const aiScene& scene, const aiNode& node, double seconds) {
  for (unsigned a = 0; a < scene.mNumAnimations; ++a)
    for (unsigned c = 0; c < scene.mAnimations[a]->mNumChannels; ++c) {
      const aiNodeAnim& channel = *scene.mAnimations[a]->mChannels[c];
      if (channel.mNodeName != node.mName) continue;
      const double ticks = seconds * scene.mAnimations[a]->mTicksPerSecond;
      aiVector3D scale, place;
      aiQuaternion turn;
      node.mTransformation.Decompose(scale, turn, place);
      const auto line = [](const aiVector3D& p, const aiVector3D& q, float f) { return p + (q - p) * f; };
      if (channel.mNumPositionKeys)
        place = keyed(channel.mPositionKeys, channel.mNumPositionKeys, ticks, line);
      if (channel.mNumScalingKeys) scale = keyed(channel.mScalingKeys, channel.mNumScalingKeys, ticks, line);
      if (channel.mNumRotationKeys)
        turn = keyed(channel.mRotationKeys, channel.mNumRotationKeys, ticks,
                     [](const aiQuaternion& p, const aiQuaternion& q, float f) {
                       aiQuaternion result;
                       aiQuaternion::Interpolate(result, p, q, f);
                       return result;
                     });
      aiMatrix4x4 placed, scaled;
      aiMatrix4x4::Translation(place, placed);
      aiMatrix4x4::Scaling(scale, scaled);
      return placed * aiMatrix4x4(turn.GetMatrix()) * scaled;
    }
  return node.mTransformation;
}

struct Corners {
  std::vector<aiVector3D> places;
  bool turned = false;
};

Corners cornersAt(const aiScene& scene, const std::string& name, double seconds, const aiMatrix4x4& world) {
  const aiNode* node = scene.mRootNode->FindNode(name.c_str());
  aiMatrix4x4 whole;
  for (const aiNode* up = node; up; up = up->mParent) whole = localAt(scene, *up, seconds) * whole;
  whole = world * whole;
  Corners corners{.places = {}, .turned = whole.Determinant() < 0};
  const aiMesh& mesh = *scene.mMeshes[node->mMeshes[0]];
  for (unsigned f = 0; f < mesh.mNumFaces; ++f)
    for (unsigned k = 0; k < 3; ++k)
      corners.places.push_back(whole * mesh.mVertices[mesh.mFaces[f].mIndices[k]]);
  return corners;
}

Mesh& meshNamed(ImportedFile& file, const std::string& name) {
  for (Mesh* mesh : file.scene.meshes)
    if (name == mesh->name) return *mesh;
  throw std::runtime_error("no mesh " + name);
}

// The furthest that a corner of a mesh is from where the library has it.
double furthest(ImportedFile& file, const aiScene& scene, const std::string& name, double seconds,
                const aiMatrix4x4& world = {}) {
  const Corners corners = cornersAt(scene, name, seconds, world);
  Mesh& mesh = meshNamed(file, name);
  const Matrix matrix = mesh.getMatrix(static_cast<float>(seconds));
  double most = mesh.faces.size() * 3 == corners.places.size() ? 0 : 1e9;
  for (std::size_t i = 0; i < corners.places.size() && most < 1e9; ++i) {
    const std::size_t k = !corners.turned || i % 3 == 0 ? i % 3 : 3 - i % 3;
    const Vector p = transformPoint(matrix, mesh.vertices[mesh.faces[i / 3].v[k]].position);
    const aiVector3D& q = corners.places[i];
    most = std::max(most, static_cast<double>((p - Vector(q.x, q.y, q.z)).length()));
  }
  return most;
}

// Faces whose normals, as the GL turns them, look the other way than the face that is drawn. The slanting
// face of a wedge is outvoted by its neighbours.
int lookingAway(Mesh& mesh, float seconds) {
  const Matrix matrix = mesh.getMatrix(seconds);
  Matrix turned = matrix;
  turned.invert();
  int count = 0;
  for (const Face& face : mesh.faces) {
    const auto corner = [&](std::size_t k) {
      return transformPoint(matrix, mesh.vertices[face.v[k]].position);
    };
    const Vector front = cross(corner(1) - corner(0), corner(2) - corner(0));
    Vector normal;
    for (const std::uint32_t v : face.v) {
      const Vector& n = mesh.vertices[v].normal;
      const auto& m = turned.m;
      normal +=
          Vector(m[0][0] * n.x + m[1][0] * n.y + m[2][0] * n.z, m[0][1] * n.x + m[1][1] * n.y + m[2][1] * n.z,
                 m[0][2] * n.x + m[1][2] * n.y + m[2][2] * n.z);
    }
    count += !(dot(normal, front) > 0);
  }
  return count;
}

std::string part(const std::string& name, const std::string& more) {
  return "\"name\": \"" + name + "\", \"mesh\": 0" + (more.empty() ? "" : ", " + more);
}

using Times = std::vector<std::array<float, 1>>;
using Triples = std::vector<std::array<float, 3>>;
using Quads = std::vector<std::array<float, 4>>;

void turnAbout(GltfText& file, int node, std::array<float, 3> axis) {
  Quads turns;
  for (const float angle : {0.0f, 1.0f, 2.0f, 1.2f}) {
    const float s = std::sin(angle / 2);
    turns.push_back({axis[0] * s, axis[1] * s, axis[2] * s, std::cos(angle / 2)});
  }
  file.move(node, "rotation", Times{{0}, {0.5f}, {1}, {2}}, turns);
}

void wander(GltfText& file, int node) {
  file.move(node, "translation", Times{{0}, {1}, {2}}, Triples{{1, 2, 3}, {4, -1, 3}, {-2, 0, 5}});
}

void swell(GltfText& file, int node) {
  file.move(node, "scale", Times{{0}, {1}, {2}}, Triples{{1, 1, 1}, {2, 0.5f, 1}, {1, 3, 1.5f}});
}

struct Hierarchy {
  const char* name;
  void (*build)(GltfText&);
  std::vector<std::string> meshes;
};

const Hierarchy hierarchies[]{
    {"standing chain",
     [](GltfText& f) {
       f.node(part(
           "A", "\"translation\": [1, 2, 3], \"rotation\": [0, 0.7071068, 0, 0.7071068], \"children\": [1]"));
       f.node(part("B", "\"scale\": [1, 3, 0.5], \"rotation\": [0.6, 0, 0, 0.8], \"children\": [2]"));
       f.node(part("C", "\"translation\": [0, 1, -2], \"scale\": [-1, 1, 2]"));
     },
     {"A", "B", "C"}},
    {"turning child of a turned and grown parent",
     [](GltfText& f) {
       f.node(part("A",
                   "\"translation\": [1, 2, 3], \"rotation\": [0, 0.6, 0, 0.8], \"scale\": [2, 2, 2], "
                   "\"children\": [1]"));
       turnAbout(f, f.node(part("B", "\"translation\": [1, 0, 4], \"children\": [2]")), {0.6f, 0, 0.8f});
       f.node(part("C", "\"translation\": [0, 5, 0], \"rotation\": [0.6, 0, 0, 0.8]"));
     },
     {"A", "B", "C"}},
    {"turning child of a skewing parent",
     [](GltfText& f) {
       f.node(part("A",
                   "\"translation\": [1, 2, 3], \"rotation\": [0, 0.6, 0, 0.8], \"scale\": [2, 1, 0.5], "
                   "\"children\": [1]"));
       turnAbout(f, f.node(part("B", "\"translation\": [1, 0, 4], \"scale\": [1, 2, 1], \"children\": [2]")),
                 {0.6f, 0, 0.8f});
       wander(f, f.node(part("C", "\"rotation\": [0.6, 0, 0, 0.8]")));
     },
     {"A", "B", "C"}},
    {"turning child of a skewing mirror",
     [](GltfText& f) {
       f.node(part("A",
                   "\"translation\": [1, 2, 3], \"rotation\": [0, 0.6, 0, 0.8], \"scale\": [2, 1, -0.5], "
                   "\"children\": [1]"));
       turnAbout(f, f.node(part("B", "\"translation\": [1, 0, 4]")), {0.6f, 0, 0.8f});
     },
     {"A", "B"}},
    {"all motions below a mirror",
     [](GltfText& f) {
       f.node(part("A",
                   "\"translation\": [1, 2, 3], \"rotation\": [0, 0.6, 0, 0.8], \"scale\": [1, 1, -1], "
                   "\"children\": [1]"));
       const int b = f.node(part("B", "\"translation\": [1, 0, 4], \"children\": [2]"));
       turnAbout(f, b, {0.6f, 0, 0.8f});
       wander(f, b);
       swell(f, b);
       turnAbout(f, f.node(part("C", "\"translation\": [0, 0, 2], \"scale\": [-1, -1, -1]")), {0, 1, 0});
     },
     {"A", "B", "C"}},
    {"swelling parent of a turning child",
     [](GltfText& f) {
       const int a = f.node(part("A", "\"rotation\": [0, 0.6, 0, 0.8], \"children\": [1]"));
       swell(f, a);
       turnAbout(f, f.node(part("B", "\"translation\": [1, 0, 4]")), {0, 0.6f, 0.8f});
     },
     {"A", "B"}},
    {"what moves without a form moves others",
     [](GltfText& f) {
       const int a = f.node("\"name\": \"Mover\", \"children\": [1]");
       wander(f, a);
       turnAbout(f, a, {0, 0.6f, 0.8f});
       f.node("\"name\": \"Standing\", \"translation\": [0, 1, 0], \"children\": [2]");
       f.node(part("B", "\"translation\": [1, 0, 4], \"scale\": [1, 2, 1]"));
     },
     {"B"}},
};

}  // namespace

TEST(Import, MovesMeshesAsTheLibraryDoes) {
  for (const auto& [name, build, meshes] : hierarchies) {
    const TemporaryFolder folder;
    GltfText text;
    text.mesh(wedge());
    build(text);
    writeFile("a.gltf", text.str("0"));
    Assimp::Importer library;
    const aiScene* scene = library.ReadFile("a.gltf", aiProcess_Triangulate);
    ASSERT_TRUE(scene) << name;
    for (const double scale : {1.0, 4.0}) {
      for (const UpAxis up : {UpAxis::y, UpAxis::z}) {
        ImportedFile file;
        importFile("a.gltf", {.scale = scale, .up = up}, file);
        const auto s = static_cast<float>(scale);
        const aiMatrix4x4 world = up == UpAxis::y
                                      ? aiMatrix4x4(s, 0, 0, 0, 0, s, 0, 0, 0, 0, s, 0, 0, 0, 0, 1)
                                      : aiMatrix4x4(s, 0, 0, 0, 0, 0, s, 0, 0, -s, 0, 0, 0, 0, 0, 1);
        // What thinning may cost: 0.2 degrees at the end of arms up to 12 long, 0.1 % of places and scales.
        for (const std::string& mesh : meshes)
          EXPECT_LE(lookingAway(meshNamed(file, mesh), 0.3f), 1) << name << ": " << mesh;
        for (const std::string& mesh : meshes)
          for (const double seconds : {0.0, 0.3, 0.5, 1.0, 1.4, 2.0})
            EXPECT_LT(furthest(file, *scene, mesh, seconds, world), 0.06 * scale)
                << name << ": " << mesh << " at " << seconds << ", " << (up == UpAxis::y ? "y" : "z")
                << " up";
      }
    }
  }
}

}  // namespace vex
