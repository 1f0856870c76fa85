#pragma once

#include <cstdint>

#include "engine/vector.h"
#include "production/image/noise.h"

// Noise in space, for solids and for pictures that are functions of a direction. As noise.h: `period`
// whole lattice cells (0 for none) makes it repeat in all three axes; each seed is a noise of its own.

namespace vex::image {

// 0 to 1.
float valueNoise(const Vector& p, int period, std::uint32_t seed);

// About -1 to 1, mean 0, 0 on the lattice.
float gradientNoise(const Vector& p, int period, std::uint32_t seed);

NoiseCell cellularNoise(const Vector& p, int period, std::uint32_t seed);

// About -1 to 1.
float fractal(const Vector& p, int period, int octaves, float gain, std::uint32_t seed);

// The point moved by up to `reach` along three noises: what is looked up there is warped.
Vector warp(const Vector& p, int period, float reach, std::uint32_t seed);

}  // namespace vex::image
