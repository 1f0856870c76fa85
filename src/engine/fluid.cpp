#include "engine/fluid.h"

#include <algorithm>
#include <cmath>

#include "base/report.h"

namespace vex {

namespace {

constexpr int minCells = 5;  // the area covered spans all cells but four
constexpr int maxCells = 2048;
constexpr float heightScale = 1000.0f;  // world units for a height of 1
constexpr float slopeScale = 50.0f;     // texture widths for a slope of 1

struct Extent {
  float minX = -100.0f;
  float maxX = 100.0f;
  float minZ = -100.0f;
  float maxZ = 100.0f;
};

Extent extentOf(const std::vector<Vertex>& vertices) {
  if (vertices.empty()) return {};
  const Vector& first = vertices[0].position;
  Extent extent{first.x, first.x, first.z, first.z};
  for (const Vertex& vertex : vertices) {
    extent.minX = std::min(extent.minX, vertex.position.x);
    extent.maxX = std::max(extent.maxX, vertex.position.x);
    extent.minZ = std::min(extent.minZ, vertex.position.z);
    extent.maxZ = std::max(extent.maxZ, vertex.position.z);
  }
  return extent;
}

// For a mesh that was environment-mapped when its arrays were built.
void buildUvs(Mesh& fluid) {
  for (const Vertex& vertex : fluid.vertices) fluid.uvs.insert(fluid.uvs.end(), {vertex.u, vertex.v});
}

// The loops below run over a row of the grid by pointers that share no memory, so that the compiler takes
// several points at a time. `s` is the distance from one row to the next.

void stepRow(const float* __restrict a, float* __restrict b, std::ptrdiff_t s, int count, float damping) {
  for (std::ptrdiff_t n = 0; n < count; ++n) {
    const float sum = a[n - 1] + a[n + 1] + a[n - s] + a[n + s] + a[n - s - 1] + a[n - s + 1] + a[n + s - 1] +
                      a[n + s + 1] + a[n - 2] + a[n + 2] + a[n - 2 * s] + a[n + 2 * s];
    const float v = sum / 6.0f - b[n];
    b[n] = v - v * damping;
  }
}

// The heights of the step before become the next ones. Two rows and columns at each border stand still.
void stepHeights(Mesh& fluid) {
  fluid.heightA.swap(fluid.heightB);
  const std::ptrdiff_t s = fluid.gridX + 1;
  for (int j = 2; j <= fluid.gridY - 2; ++j) {
    const std::ptrdiff_t start = j * s + 2;
    stepRow(fluid.heightA.data() + start, fluid.heightB.data() + start, s, fluid.gridX - 3, fluid.damping);
  }
}

void moveVertices(Mesh& fluid) {
  const float* __restrict height = fluid.heightB.data();
  float* __restrict positions = fluid.positions.data();
  const float level = fluid.position.y;
  const std::size_t count = fluid.heightB.size();
  for (std::size_t n = 0; n < count; ++n) positions[3 * n + 1] = height[n] * heightScale + level;
}

// `uv` and `b` stand at the second point of the row.
void shiftRow(float* __restrict uv, const float* __restrict b, std::ptrdiff_t s, int gridX, float v) {
  const auto width = static_cast<float>(gridX);
  for (int i = 0; i < gridX - 1; ++i) {
    uv[2 * i] = static_cast<float>(i + 1) / width + (b[i + 1] - b[i - 1]) * slopeScale;
    uv[2 * i + 1] = v + (b[i + s] - b[i - s]) * slopeScale;
  }
}

void shiftTexture(Mesh& fluid) {
  const std::ptrdiff_t s = fluid.gridX + 1;
  for (int j = 1; j < fluid.gridY; ++j) {
    const std::ptrdiff_t start = j * s + 1;
    shiftRow(fluid.uvs.data() + 2 * start, fluid.heightB.data() + start, s, fluid.gridX,
             static_cast<float>(j) / static_cast<float>(fluid.gridY));
  }
}

}  // namespace

void convertToFluid(Mesh& mesh, int nx, int nz) {
  if (nx < 1 || nz < 1) fatalError("Cannot convert fluid to (0,0)!");
  if (std::min(nx, nz) < minCells || std::max(nx, nz) > maxCells) {
    fatalError("Cannot convert fluid %s to (%d,%d), %d to %d cells a side allowed!", mesh.name, nx, nz,
               minCells, maxCells);
  }
  mesh.gridX = nx;
  mesh.gridY = nz;
  const Extent extent = extentOf(mesh.vertices);
  const float cellX = (extent.maxX - extent.minX) / static_cast<float>(nx - 4);
  const float cellZ = (extent.maxZ - extent.minZ) / static_cast<float>(nz - 4);

  mesh.faces.clear();
  mesh.vertices.clear();
  for (std::vector<float>* array : {&mesh.positions, &mesh.normals, &mesh.uvs}) array->clear();
  mesh.indices.clear();
  mesh.stripped = false;
  for (int j = 0; j <= nz; ++j) {
    for (int i = 0; i <= nx; ++i) {
      Vertex& vertex = mesh.vertices.emplace_back();
      vertex.position.set(cellX * static_cast<float>(i - 2) + extent.minX, mesh.position.y,
                          cellZ * static_cast<float>(j - 2) + extent.minZ);
      vertex.u = static_cast<float>(i) / static_cast<float>(nx);
      vertex.v = static_cast<float>(j) / static_cast<float>(nz);
    }
  }
  const auto stride = static_cast<std::uint32_t>(nx + 1);
  for (std::uint32_t j = 2; j < static_cast<std::uint32_t>(nz - 2); ++j) {
    for (std::uint32_t i = 2; i < static_cast<std::uint32_t>(nx - 2); ++i) {
      const std::uint32_t n = j * stride + i;
      mesh.faces.push_back({.v = {n, n + 1, n + stride}});
      mesh.faces.push_back({.v = {n + 1, n + stride + 1, n + stride}});
    }
  }
  mesh.twoSided = true;
  mesh.lit = false;
  mesh.vertexCount = static_cast<std::uint32_t>(mesh.vertices.size());
  mesh.faceCount = static_cast<std::uint32_t>(mesh.faces.size());
  mesh.heightA.assign(mesh.vertices.size(), 0.0f);
  mesh.heightB.assign(mesh.vertices.size(), 0.0f);
  mesh.flags = 4;  // visible, no skeleton helper
  mesh.kind = ObjectKind::fluid;
}

void push(Mesh& fluid, float x, float z, float strength) {
  if (fluid.kind == ObjectKind::mesh) fatalError("Cannot call push on Mesh!");
  const float radius = fluid.pushRadius;
  const float centreX = std::trunc(x * (static_cast<float>(fluid.gridX) + 1.0f));
  const float centreZ = std::trunc(z * (static_cast<float>(fluid.gridY) + 1.0f));
  // The border keeps its heights. Starting and ending there also bounds the way for centres far outside.
  const auto first = [&](float centre) { return std::fmax(std::trunc(centre - radius), 3.0f); };
  const auto end = [&](float centre, int cells) {
    return std::fmin(centre + radius, static_cast<float>(cells - 1));
  };
  for (float j = first(centreZ); j < end(centreZ, fluid.gridY); ++j) {
    for (float i = first(centreX); i < end(centreX, fluid.gridX); ++i) {
      const float square = (i - centreX) * (i - centreX) + (j - centreZ) * (j - centreZ);
      if (!(square < radius * radius)) continue;
      const auto n = static_cast<std::size_t>(j) * static_cast<std::size_t>(fluid.gridX + 1) +
                     static_cast<std::size_t>(i);
      fluid.heightB[n] = (radius - std::sqrt(square)) * strength / radius;
    }
  }
}

void animateFluid(Mesh& fluid, float) {
  if (fluid.kind == ObjectKind::mesh) fatalError("Cannot call animateFluid on Mesh!");
  if (fluid.positions.empty()) fluid.buildArrays();
  if (fluid.uvs.empty()) buildUvs(fluid);
  stepHeights(fluid);
  moveVertices(fluid);
  shiftTexture(fluid);
  fluid.envMap = false;
}

}  // namespace vex
