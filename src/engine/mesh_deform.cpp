// What scenes do to the shape of a mesh from frame to frame.

#include <array>
#include <cmath>
#include <cstddef>

#include "engine/mesh.h"
#include "shell/clock.h"
#include "shell/report.h"

namespace vex {

namespace {

Vector read(const std::vector<float>& array, std::size_t k) {
  return {array[3 * k], array[3 * k + 1], array[3 * k + 2]};
}

void write(std::vector<float>& array, std::size_t k, const Vector& v) {
  array[3 * k] = v.x;
  array[3 * k + 1] = v.y;
  array[3 * k + 2] = v.z;
}

Vector mix(const Vector& a, const Vector& b, float f) {
  return a * (1.0f - f) + b * f;
}

// What rotation() does to points, for many angles about one axis of length 1, without making matrices
// (Rodrigues' formula). A turn is good for several vectors.
struct AxisTurn {
  Vector axis;
  float cosine = 1.0f;
  float sine = 0.0f;

  AxisTurn(const Vector& unitAxis, float angle) : axis(unitAxis) {
    if (std::fabs(angle) < 0.001f) return;  // as rotation() does
    cosine = std::cos(angle);
    sine = -std::sin(angle);
  }

  Vector operator()(const Vector& v) const {
    return v * cosine + cross(axis, v) * sine + axis * (dot(axis, v) * (1.0f - cosine));
  }
};

Vector normalized(Vector v) {
  v.normalize();
  return v;
}

}  // namespace

// A clock that stands still (music that waits) gives frames of the same time.
bool Mesh::deformedThisFrame() const {
  return !positions.empty() && lastDeformTime == clockTime() && lastDeformFrame == clockFrame();
}

void Mesh::markDeformed() {
  lastDeformTime = clockTime();
  lastDeformFrame = clockFrame();
}

void Mesh::recomputeNormals(bool flip) {
  const bool deformed = deformedThisFrame();
  const auto at = [&](std::uint32_t k) { return deformed ? read(positions, k) : vertices[k].position; };
  for (Vertex& vertex : vertices) vertex.normal = {};
  for (const Face& face : faces) {
    // Each corner takes the normal of its own two edges. All three are the same but for rounding, and so
    // rounded they cancel exactly where two faces lie back to back, whichever corner they begin at.
    const Vector a = at(face.v[0]), b = at(face.v[1]), c = at(face.v[2]);
    const Vector ab = b - a, bc = c - b, ca = a - c;
    vertices[face.v[0]].normal += normalized(cross(ab, ca));
    vertices[face.v[1]].normal += normalized(cross(bc, ab));
    vertices[face.v[2]].normal += normalized(cross(ca, bc));
  }
  for (Vertex& vertex : vertices) {
    vertex.normal.normalize();
    if (flip) vertex.normal = -vertex.normal;
  }
  if (!deformed) return;
  for (std::size_t k = 0; k < vertices.size(); ++k) write(normals, k, vertices[k].normal);
}

void Mesh::twist(const Vector& axis, Vector direction, float amount) {
  if (positions.empty()) buildArrays();
  direction.normalize();
  if (axis.length() == 0.0f) return;
  const bool deformed = deformedThisFrame();
  const Vector unitAxis = normalized(axis);
  for (std::size_t k = 0; k < vertices.size(); ++k) {
    const Vector arm = (deformed ? read(positions, k) : vertices[k].position) - position;
    const AxisTurn turn(unitAxis, radius > 0.0f ? dot(arm, direction) / radius * amount : 0.0f);
    write(positions, k, turn(arm) + position);
    write(normals, k, turn(vertices[k].normal));
  }
  markDeformed();
}

void Mesh::morph(const Mesh& a, const Mesh& b, float f) {
  if (a.vertices.size() != vertices.size() || b.vertices.size() != vertices.size()) {
    fatalError("mesh %s: can't morph %zu vertices from %zu of %s to %zu of %s", name, vertices.size(),
               a.vertices.size(), a.name, b.vertices.size(), b.name);
  }
  if (positions.empty()) buildArrays();
  for (std::size_t k = 0; k < vertices.size(); ++k) {
    write(positions, k, mix(a.vertices[k].position, b.vertices[k].position, f));
    write(normals, k, mix(a.vertices[k].normal, b.vertices[k].normal, f));
  }
  markDeformed();
}

void Mesh::wobble(float px, float py, float pz, float amount, float fx, float fy, float fz) {
  if (positions.empty()) buildArrays();
  const auto stretched = [&](float d, float phase, float waves) {
    const float share = radius > 0.0f ? d / radius : 0.0f;
    const float wave = (std::sin(phase + share * waves * 6.282f) + 1.0f) / 2.0f + 0.5f;
    return d * (wave * (1.0f - amount) + amount);
  };
  for (std::size_t k = 0; k < vertices.size(); ++k) {
    const Vector d = vertices[k].position - position;
    write(positions, k,
          Vector(stretched(d.x, px, fx), stretched(d.y, py, fy), stretched(d.z, pz, fz)) + position);
  }
  markDeformed();
  recomputeNormals(true);
}

void Mesh::wobbleTexture(float a, float b, float c) {
  if (positions.empty()) buildArrays();
  if (uvs.empty()) return;  // environment-mapped
  for (std::size_t k = 0; k < vertices.size(); ++k) {
    const float phase = std::cos(static_cast<float>(k)) * c * a;
    uvs[2 * k] = vertices[k].u + std::sin(phase) * b;
    uvs[2 * k + 1] = vertices[k].v + std::cos(phase) * b;
  }
  lastDeformTime = clockTime();  // the frame is that of the positions, which stay
}

}  // namespace vex
