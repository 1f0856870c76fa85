#include "production/image/noise.h"

#include <algorithm>
#include <cmath>

#include "production/image/image.h"
#include "production/image/lattice.h"

namespace vex::image {

namespace {

std::uint32_t hash(int x, int y, std::uint32_t seed) {
  std::uint32_t h = static_cast<std::uint32_t>(x) * 0x9e3779b1u ^
                    static_cast<std::uint32_t>(y) * 0x85ebca77u ^ seed * 0xc2b2ae3du;
  h = (h ^ (h >> 15)) * 0x2c1b3c6du;
  h = (h ^ (h >> 12)) * 0x297a2d39u;
  return h ^ (h >> 15);
}

float slope(int x, int y, int period, std::uint32_t seed, float dx, float dy) {
  static constexpr float directions[8][2] = {{1, 0},
                                             {-1, 0},
                                             {0, 1},
                                             {0, -1},
                                             {0.7071f, 0.7071f},
                                             {-0.7071f, 0.7071f},
                                             {0.7071f, -0.7071f},
                                             {-0.7071f, -0.7071f}};
  const float* direction = directions[hash(wrapped(x, period), wrapped(y, period), seed) >> 29];
  return direction[0] * dx + direction[1] * dy;
}

}  // namespace

float hashUnit(int x, int y, std::uint32_t seed) {
  return static_cast<float>(hash(x, y, seed) >> 8) * (1.0f / 16777216.0f);
}

float valueNoise(float x, float y, int period, std::uint32_t seed) {
  const float fx = std::floor(x), fy = std::floor(y);
  const int ix = static_cast<int>(fx), iy = static_cast<int>(fy);
  const float tx = quintic(x - fx), ty = quintic(y - fy);
  const auto corner = [&](int i, int j) {
    return hashUnit(wrapped(ix + i, period), wrapped(iy + j, period), seed);
  };
  return mix(mix(corner(0, 0), corner(1, 0), tx), mix(corner(0, 1), corner(1, 1), tx), ty);
}

float gradientNoise(float x, float y, int period, std::uint32_t seed) {
  const float fx = std::floor(x), fy = std::floor(y);
  const int ix = static_cast<int>(fx), iy = static_cast<int>(fy);
  const float dx = x - fx, dy = y - fy;
  const float tx = quintic(dx), ty = quintic(dy);
  const float top = mix(slope(ix, iy, period, seed, dx, dy), slope(ix + 1, iy, period, seed, dx - 1, dy), tx);
  const float bottom = mix(slope(ix, iy + 1, period, seed, dx, dy - 1),
                           slope(ix + 1, iy + 1, period, seed, dx - 1, dy - 1), tx);
  return mix(top, bottom, ty) * 1.5f;
}

NoiseCell cellularNoise(float x, float y, int period, std::uint32_t seed) {
  const float fx = std::floor(x), fy = std::floor(y);
  const int ix = static_cast<int>(fx), iy = static_cast<int>(fy);
  NoiseCell cell{9, 9, 0};
  for (int j = -2; j <= 2; ++j)
    for (int i = -2; i <= 2; ++i) {
      const int cx = wrapped(ix + i, period), cy = wrapped(iy + j, period);
      const float px = fx + static_cast<float>(i) + hashUnit(cx, cy, seed);
      const float py = fy + static_cast<float>(j) + hashUnit(cx, cy, seed + 101);
      const float distance = std::hypot(px - x, py - y);
      if (distance < cell.nearest) {
        cell.second = cell.nearest;
        cell.nearest = distance;
        cell.id = hashUnit(cx, cy, seed + 202);
      } else {
        cell.second = std::min(cell.second, distance);
      }
    }
  return cell;
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
