#include "tests/support/test_scene.h"

#include <algorithm>
#include <cstdio>

#include "textures/texture_cache.h"

namespace vex {

TestScene::TestScene(int meshCount, int lightCount) {
  std::snprintf(name, sizeof name, "SceneTest");
  if (meshCount > 0) meshes.allocate(meshCount);
  for (int i = 0; i < meshCount; ++i) {
    meshes[i] = new Mesh;
    std::snprintf(meshes[i]->name, objectNameSize, "mesh%d", i);
  }
  if (lightCount > 0) lights.allocate(lightCount);
  for (int i = 0; i < lightCount; ++i) {
    lights[i] = new Light;
    std::snprintf(lights[i]->name, objectNameSize, "light%d", i);
    lights[i]->flareStrength = 0.0f;
  }
  viewers.allocate(1);
  viewers[0] = new Viewer;
  viewers[0]->target = {0.0f, 0.0f, -1.0f};
  viewers[0]->fov = 120.0f;
  viewers[0]->farPlane = 1000.0f;
}

void makeGrid(Mesh& mesh, int columns, int rows, const Vector& corner, float width, float height) {
  for (int row = 0; row <= rows; ++row) {
    for (int column = 0; column <= columns; ++column) {
      Vertex vertex;
      vertex.u = static_cast<float>(column) / static_cast<float>(columns);
      vertex.v = static_cast<float>(row) / static_cast<float>(rows);
      vertex.position = corner + Vector(vertex.u * width, vertex.v * height, 0.0f);
      vertex.normal = {0.0f, 0.0f, 1.0f};
      mesh.vertices.push_back(vertex);
    }
  }
  for (int row = 0; row < rows; ++row) {
    for (int column = 0; column < columns; ++column) {
      const auto a = static_cast<std::uint32_t>(row * (columns + 1) + column);
      const auto c = a + static_cast<std::uint32_t>(columns) + 1;
      mesh.faces.push_back({.v = {a, a + 1, c}});
      mesh.faces.push_back({.v = {a + 1, c + 1, c}});
    }
  }
}

void numberTexCoords(Mesh& mesh) {
  std::int32_t next = 0;
  for (Face& face : mesh.faces) {
    for (std::int32_t& t : face.t) t = next++;
  }
}

void addFaces(Mesh& mesh, const std::vector<std::array<std::uint32_t, 3>>& faces) {
  for (const auto& v : faces) mesh.faces.push_back({.v = v});
  std::uint32_t count = 0;
  for (const Face& face : mesh.faces) count = std::max(count, *std::ranges::max_element(face.v) + 1);
  mesh.vertices.resize(count);
  numberTexCoords(mesh);
}

Animation straightPath(const Vector& start, const Vector& end) {
  Animation track;
  track.type = TrackType::position;
  track.frameLength = 10.0f;
  track.allocKeys(2);
  track.insertKey(0.0f, start, 0.0f);
  track.insertKey(10.0f, end, 0.0f);
  return track;
}

int addWhiteTexture(const char* name) {
  TextureEntry entry;
  entry.width = entry.height = 4;
  entry.pixels.assign(16, 0xffffffffu);
  return addTexture(std::move(entry), name, false);
}

}  // namespace vex
