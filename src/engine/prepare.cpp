#include <algorithm>
#include <cmath>
#include <string>

#include "base/fatal_place.h"
#include "base/report.h"
#include "engine/scene.h"
#include "engine/strips.h"

namespace vex {

namespace {

// Of faces that share a vertex the last one's coordinates stand. The drawing arrays keep what they have.
void spreadTexCoords(Mesh& mesh) {
  for (const Face& face : mesh.faces) {
    for (std::size_t corner = 0; corner < 3; ++corner) {
      const auto index = static_cast<std::size_t>(face.t[corner]);  // far out of range for none
      if (index >= mesh.texCoords.size()) continue;
      mesh.vertices[face.v[corner]].u = mesh.texCoords[index].u;
      mesh.vertices[face.v[corner]].v = mesh.texCoords[index].v;
    }
  }
}

// Turns each fan round whose first triangle faces away from its hub's normal. The texture coordinates are
// not drawn and stay.
void windFans(Mesh& mesh) {
  constexpr double quarterTurn = 1.5707963268;  // a little less than the float angle of perpendicular vectors
  for (StripList& fan : mesh.fans) {
    const auto at = [&](std::size_t i) { return mesh.vertices[fan.vertices[i]].position; };
    const Vector facing = cross(at(1) - at(0), at(2) - at(0));
    const Vector& normal = mesh.vertices[fan.vertices[0]].normal;
    const float turn = angle(facing, normal);
    // Rounded, the cosine of opposite vectors may lie below -1, which has no angle.
    if (turn > quarterTurn || (std::isnan(turn) && dot(facing, normal) < 0.0f)) {
      std::reverse(fan.vertices.begin() + 1, fan.vertices.end());
    }
  }
}

}  // namespace

void Scene::prepare(bool useStripCache) {
  for (Mesh* mesh : meshes) {
    mesh->buildArrays();
    spreadTexCoords(*mesh);
    mesh->stripped = false;
    mesh->fans.clear();
    mesh->strips.clear();
    mesh->solos.clear();
  }
  if (!useStripCache) return;
  const FatalPlace place([this] { return std::string("scene ") + name; });
  warning("Scene %s tries to open data\\%s.hvf. Delete it now, if not valid!", name, name);
  if (!readStripCache(*this)) {
    for (Mesh* mesh : meshes) {
      if (!mesh->faces.empty()) stripify(*mesh);
    }
    writeStripCache(*this);
  }
  for (Mesh* mesh : meshes) windFans(*mesh);
}

}  // namespace vex
