#include "production/image/noise3.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "production/image/image.h"
#include "production/image/lattice.h"

namespace vex::image {

namespace {

struct Cell {
  int x, y, z;
  float dx, dy, dz;  // of the point from the cell's lower corner

  std::array<CellPair, 3> pairs(int period) const {
    return {CellPair(x, period), CellPair(y, period), CellPair(z, period)};
  }
};

Cell cellOf(const Vector& p) {
  const float fx = std::floor(p.x), fy = std::floor(p.y), fz = std::floor(p.z);
  return {static_cast<int>(fx), static_cast<int>(fy), static_cast<int>(fz), p.x - fx, p.y - fy, p.z - fz};
}

// Layers of the plane's hash, one a level of z.
float hashCell(int x, int y, int z, std::uint32_t seed) {
  return unitOf(hash(x, y, seed + 0x9e3779b9u * static_cast<std::uint32_t>(z)));
}

// `corner(i, j, k)` is the value at each corner of the cell.
template <typename Corner>
float blendCorners(const Cell& cell, Corner corner) {
  const float tx = quintic(cell.dx), ty = quintic(cell.dy), tz = quintic(cell.dz);
  const auto face = [&](int k) {
    return mix(mix(corner(0, 0, k), corner(1, 0, k), tx), mix(corner(0, 1, k), corner(1, 1, k), tx), ty);
  };
  return mix(face(0), face(1), tz);
}

// The twelve middles of a cube's edges (Ken Perlin, "Improving Noise", 2002).
constexpr signed char directions[12][3] = {{1, 1, 0}, {-1, 1, 0}, {1, -1, 0}, {-1, -1, 0},
                                           {1, 0, 1}, {-1, 0, 1}, {1, 0, -1}, {-1, 0, -1},
                                           {0, 1, 1}, {0, -1, 1}, {0, 1, -1}, {0, -1, -1}};

}  // namespace

float valueNoise(const Vector& p, int period, std::uint32_t seed) {
  const Cell cell = cellOf(p);
  const auto [xs, ys, zs] = cell.pairs(period);
  return blendCorners(
      cell, [&](int i, int j, int k) { return hashCell(xs.cell[i], ys.cell[j], zs.cell[k], seed); });
}

float gradientNoise(const Vector& p, int period, std::uint32_t seed) {
  const Cell cell = cellOf(p);
  const auto [xs, ys, zs] = cell.pairs(period);
  return blendCorners(cell, [&](int i, int j, int k) {
    const float pick = hashCell(xs.cell[i], ys.cell[j], zs.cell[k], seed);
    const auto& direction = directions[std::min(11, static_cast<int>(pick * 12))];
    return static_cast<float>(direction[0]) * (cell.dx - static_cast<float>(i)) +
           static_cast<float>(direction[1]) * (cell.dy - static_cast<float>(j)) +
           static_cast<float>(direction[2]) * (cell.dz - static_cast<float>(k));
  });
}

NoiseCell cellularNoise(const Vector& p, int period, std::uint32_t seed) {
  const Cell cell = cellOf(p);
  NoiseCell result{9, 9, 0};
  for (int k = -1; k <= 1; ++k)
    for (int j = -1; j <= 1; ++j)
      for (int i = -1; i <= 1; ++i) {
        const int cx = wrapped(cell.x + i, period), cy = wrapped(cell.y + j, period),
                  cz = wrapped(cell.z + k, period);
        const auto offset = [&](std::uint32_t axis) { return hashCell(cx, cy, cz, seed + 101 * axis); };
        // Points keep to the middle of their cells, so that none two cells away is ever the nearest.
        const float x = static_cast<float>(i) + 0.3f + 0.4f * offset(0) - cell.dx;
        const float y = static_cast<float>(j) + 0.3f + 0.4f * offset(1) - cell.dy;
        const float z = static_cast<float>(k) + 0.3f + 0.4f * offset(2) - cell.dz;
        const float distance = std::sqrt(x * x + y * y + z * z);
        if (distance < result.nearest) {
          result.second = result.nearest;
          result.nearest = distance;
          result.id = offset(3);
        } else {
          result.second = std::min(result.second, distance);
        }
      }
  return result;
}

float fractal(const Vector& p, int period, int octaves, float gain, std::uint32_t seed) {
  float sum = 0, strength = 1, total = 0;
  Vector at = p;
  for (int octave = 0; octave < octaves; ++octave) {
    sum += strength * gradientNoise(at, period, seed + static_cast<std::uint32_t>(octave) * 17u);
    total += strength;
    at = at * 2, period *= 2, strength *= gain;
  }
  return sum / total * 1.4f;
}

Vector warp(const Vector& p, int period, float reach, std::uint32_t seed) {
  return p + Vector(gradientNoise(p, period, seed), gradientNoise(p, period, seed + 1),
                    gradientNoise(p, period, seed + 2)) *
                 reach;
}

}  // namespace vex::image
