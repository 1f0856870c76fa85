#pragma once

#include <cstdint>

// Noise over the plane. `period` (whole lattice cells, 0 for none) makes it repeat in both axes, so
// that what is built of it tiles without a seam. Each seed is a noise of its own.

namespace vex::image {

// 0 to 1, the same for the same arguments on every machine.
float hashUnit(int x, int y, std::uint32_t seed);

// 0 to 1; lattice values, smoothly blended.
float valueNoise(float x, float y, int period, std::uint32_t seed);

// About -1 to 1, mean 0; random gradients on the lattice, quintic blend.
float gradientNoise(float x, float y, int period, std::uint32_t seed);

struct NoiseCell {
  float nearest, second;  // distances to the two nearest of one random point a lattice cell
  float id;               // 0 to 1, constant inside a cell
};
NoiseCell cellularNoise(float x, float y, int period, std::uint32_t seed);

// Sums of gradient noise, each octave twice as fine and `gain` as strong, scaled to about -1 to 1.
float fractal(float x, float y, int period, int octaves, float gain, std::uint32_t seed);

// Sum of 1 - |noise|, squared: sharp bright ridges, 0 to 1.
float ridges(float x, float y, int period, int octaves, float gain, std::uint32_t seed);

}  // namespace vex::image
