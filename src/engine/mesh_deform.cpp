// What scenes do to the shape of a mesh from frame to frame.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

#include "base/clock.h"
#include "base/report.h"
#include "engine/mesh.h"

// A function compiled for wide registers, too, and chosen as the program starts. Clang 16 leaves the inline
// functions that its clones call unwritten.
#ifdef __clang__
#define VEX_FOR_EACH_CPU
#else
#define VEX_FOR_EACH_CPU [[gnu::target_clones("avx2", "default")]]
#endif

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

Vector normalized(Vector v) {
  v.normalize();
  return v;
}

// Points, coordinate by coordinate: of a block the compiler takes several at a time, twice as many where the
// processor has AVX2. Each is rounded alike there.
constexpr std::size_t blockSize = 64;

struct Block {
  std::array<float, blockSize> x, y, z;

  Vector at(std::size_t i) const { return {x[i], y[i], z[i]}; }

  void set(std::size_t i, const Vector& v) {
    x[i] = v.x;
    y[i] = v.y;
    z[i] = v.z;
  }
};

// Calls work(first, size) for the blocks that `count` things make.
template <typename Work>
void inBlocks(std::size_t count, Work work) {
  for (std::size_t first = 0; first < count; first += blockSize)
    work(first, std::min(blockSize, count - first));
}

// Sine and cosine without a call or a branch, so that the compiler takes several angles at a time: Taylor's
// series of a quarter of the angle, which is then doubled twice. Up to 1e6 they are in error by less than
// 1e-9, which rounding to float hides; beyond, by what the remainder of the turns loses, 1e-16 of the angle.
// Angles that are no number, and those beyond 1e15, count as 0: so do those of a radius of 0.
struct SineCosine {
  float sine, cosine;

  explicit SineCosine(float angle) {
    constexpr double turn = 6.283185307179586;
    constexpr double roundToWhole = 0x1.8p52;
    const double turns = angle * (1.0 / turn) + roundToWhole - roundToWhole;
    const double rest = angle - turns * turn;
    const double x = std::fabs(rest) < turn ? rest / 4 : 0.0;
    const double xx = x * x;
    double s = 1.0, c = 1.0;
    for (int n = 12; n >= 2; n -= 2) {
      s = 1.0 - s * xx * (1.0 / (n * (n + 1)));
      c = 1.0 - c * xx * (1.0 / (n * (n - 1)));
    }
    s *= x;
    const double halfSine = 2 * s * c;
    const double halfCosine = 1.0 - 2 * s * s;
    sine = static_cast<float>(2 * halfSine * halfCosine);
    cosine = static_cast<float>(1.0 - 2 * halfSine * halfSine);
  }
};

// Rodrigues' formula, for an axis of length 1.
inline Vector turned(const Vector& v, const Vector& axis, const SineCosine& turn) {
  return v * turn.cosine + cross(axis, v) * turn.sine + axis * (dot(axis, v) * (1.0f - turn.cosine));
}

VEX_FOR_EACH_CPU void twistBlock(Block& __restrict arms, Block& __restrict normals, std::size_t size,
                                 const Vector& axis, const Vector& direction, float radius, float amount) {
  for (std::size_t i = 0; i < size; ++i) {
    const Vector arm = arms.at(i);
    const float angle = dot(arm, direction) / radius * amount;
    const SineCosine turn(std::fabs(angle) < 0.001f ? 0.0f : -angle);  // as rotation() does
    arms.set(i, turned(arm, axis, turn));
    normals.set(i, turned(normals.at(i), axis, turn));
  }
}

VEX_FOR_EACH_CPU void stretchBlock(std::array<float, blockSize>& d, std::size_t size, float radius,
                                   float phase, float waves, float amount) {
  for (std::size_t i = 0; i < size; ++i) {
    const float wave = (SineCosine(phase + d[i] / radius * waves * 6.282f).sine + 1.0f) / 2.0f + 0.5f;
    d[i] *= wave * (1.0f - amount) + amount;
  }
}

// Each corner takes the normal of its own two edges. All three are the same but for rounding, and so rounded
// they cancel exactly where two faces lie back to back, whichever corner they begin at.
VEX_FOR_EACH_CPU void cornersToNormals(Block& __restrict first, Block& __restrict second,
                                       Block& __restrict third, std::size_t size) {
  for (std::size_t i = 0; i < size; ++i) {
    const Vector a = first.at(i), b = second.at(i), c = third.at(i);
    const Vector ab = b - a, bc = c - b, ca = a - c;
    first.set(i, normalized(cross(ab, ca)));
    second.set(i, normalized(cross(bc, ab)));
    third.set(i, normalized(cross(ca, bc)));
  }
}

VEX_FOR_EACH_CPU void scaleToLength(Block& vectors, std::size_t size, float length) {
  for (std::size_t i = 0; i < size; ++i) vectors.set(i, normalized(vectors.at(i)) * length);
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
  inBlocks(faces.size(), [&](std::size_t first, std::size_t size) {
    std::array<Block, 3> corners;
    for (std::size_t i = 0; i < size; ++i) {
      for (std::size_t c = 0; c < 3; ++c) corners[c].set(i, at(faces[first + i].v[c]));
    }
    cornersToNormals(corners[0], corners[1], corners[2], size);
    for (std::size_t i = 0; i < size; ++i) {
      for (std::size_t c = 0; c < 3; ++c) vertices[faces[first + i].v[c]].normal += corners[c].at(i);
    }
  });
  inBlocks(vertices.size(), [&](std::size_t first, std::size_t size) {
    Block sums;
    for (std::size_t i = 0; i < size; ++i) sums.set(i, vertices[first + i].normal);
    scaleToLength(sums, size, flip ? -1.0f : 1.0f);
    for (std::size_t i = 0; i < size; ++i) {
      vertices[first + i].normal = sums.at(i);
      if (deformed) write(normals, first + i, sums.at(i));
    }
  });
}

void Mesh::twist(const Vector& axis, Vector direction, float amount) {
  if (positions.empty()) buildArrays();
  direction.normalize();
  if (axis.length() == 0.0f) return;
  const bool deformed = deformedThisFrame();
  const Vector unitAxis = normalized(axis);
  inBlocks(vertices.size(), [&](std::size_t first, std::size_t size) {
    Block arms, turnedNormals;
    for (std::size_t i = 0; i < size; ++i) {
      const Vertex& vertex = vertices[first + i];
      arms.set(i, (deformed ? read(positions, first + i) : vertex.position) - position);
      turnedNormals.set(i, vertex.normal);
    }
    twistBlock(arms, turnedNormals, size, unitAxis, direction, radius, amount);
    for (std::size_t i = 0; i < size; ++i) {
      write(positions, first + i, arms.at(i) + position);
      write(normals, first + i, turnedNormals.at(i));
    }
  });
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
  inBlocks(vertices.size(), [&](std::size_t first, std::size_t size) {
    Block arms;
    for (std::size_t i = 0; i < size; ++i) arms.set(i, vertices[first + i].position - position);
    stretchBlock(arms.x, size, radius, px, fx, amount);
    stretchBlock(arms.y, size, radius, py, fy, amount);
    stretchBlock(arms.z, size, radius, pz, fz, amount);
    for (std::size_t i = 0; i < size; ++i) write(positions, first + i, arms.at(i) + position);
  });
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
