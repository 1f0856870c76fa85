#include "production/image/noise.h"

#include <algorithm>
#include <cmath>

#include "production/image/image.h"
#include "production/image/lattice.h"

namespace vex::image {

namespace {

float slope(int x, int y, std::uint32_t seed, float dx, float dy) {
  static constexpr float directions[8][2] = {{1, 0},
                                             {-1, 0},
                                             {0, 1},
                                             {0, -1},
                                             {0.7071f, 0.7071f},
                                             {-0.7071f, 0.7071f},
                                             {0.7071f, -0.7071f},
                                             {-0.7071f, -0.7071f}};
  const float* direction = directions[hash(x, y, seed) >> 29];
  return direction[0] * dx + direction[1] * dy;
}

}  // namespace

float hashUnit(int x, int y, std::uint32_t seed) {
  return unitOf(hash(x, y, seed));
}

float valueNoise(float x, float y, int period, std::uint32_t seed) {
  const float fx = std::floor(x), fy = std::floor(y);
  const CellPair xs(static_cast<int>(fx), period), ys(static_cast<int>(fy), period);
  const float tx = quintic(x - fx), ty = quintic(y - fy);
  const auto corner = [&](int i, int j) { return unitOf(hash(xs.cell[i], ys.cell[j], seed)); };
  return mix(mix(corner(0, 0), corner(1, 0), tx), mix(corner(0, 1), corner(1, 1), tx), ty);
}

float gradientNoise(float x, float y, int period, std::uint32_t seed) {
  const float fx = std::floor(x), fy = std::floor(y);
  const CellPair xs(static_cast<int>(fx), period), ys(static_cast<int>(fy), period);
  const float dx = x - fx, dy = y - fy;
  const float tx = quintic(dx), ty = quintic(dy);
  const auto row = [&](int j) {
    const float y1 = dy - static_cast<float>(j);
    return mix(slope(xs.cell[0], ys.cell[j], seed, dx, y1), slope(xs.cell[1], ys.cell[j], seed, dx - 1, y1),
               tx);
  };
  return mix(row(0), row(1), ty) * 1.5f;
}

NoiseCell cellularNoise(float x, float y, int period, std::uint32_t seed) {
  const float fx = std::floor(x), fy = std::floor(y);
  const int ix = static_cast<int>(fx), iy = static_cast<int>(fy);
  NoiseCell cell{81, 81, 0};  // squares of distances at first
  for (int j = -2; j <= 2; ++j) {
    const int cy = wrapped(iy + j, period);
    for (int i = -2; i <= 2; ++i) {
      const int cx = wrapped(ix + i, period);
      const float px = fx + static_cast<float>(i) + unitOf(hash(cx, cy, seed)) - x;
      const float py = fy + static_cast<float>(j) + unitOf(hash(cx, cy, seed + 101)) - y;
      const float distance = px * px + py * py;
      if (distance < cell.nearest) {
        cell.second = cell.nearest;
        cell.nearest = distance;
        cell.id = unitOf(hash(cx, cy, seed + 202));
      } else {
        cell.second = std::min(cell.second, distance);
      }
    }
  }
  return {std::sqrt(cell.nearest), std::sqrt(cell.second), cell.id};
}

float fractal(float x, float y, int period, int octaves, float gain, std::uint32_t seed) {
  float sum = 0, strength = 1, total = 0;
  for (int octave = 0; octave < octaves; ++octave) {
    sum += strength * gradientNoise(x, y, period, seed + static_cast<std::uint32_t>(octave) * 17u);
    total += strength;
    x *= 2, y *= 2, period *= 2, strength *= gain;
  }
  return sum / total * 1.4f;
}

float ridges(float x, float y, int period, int octaves, float gain, std::uint32_t seed) {
  float sum = 0, strength = 1, total = 0;
  for (int octave = 0; octave < octaves; ++octave) {
    const float ridge = std::max(
        0.0f, 1 - std::fabs(gradientNoise(x, y, period, seed + static_cast<std::uint32_t>(octave) * 17u)));
    sum += strength * ridge * ridge;
    total += strength;
    x *= 2, y *= 2, period *= 2, strength *= gain;
  }
  return sum / total;
}

}  // namespace vex::image
