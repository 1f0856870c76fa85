#pragma once

#include <cstdint>
#include <span>

// The flash of the spark texture: each step fades what is there and draws a new jagged bolt over it.

namespace vex {

inline constexpr int boltSide = 128;

// Halves all four channels of each pixel.
void darkenPixels(std::span<std::uint32_t> pixels);

// One step on the texture `name`, without wrap; 250 draws from the shared generator. The bolt runs from
// column 0, row 126 to the right and down in rows that count from the bottom of the picture.
// Fatal: "texture %s is %dx%d, the bolt needs %dx%d".
void boltTexture(const char* name);

}  // namespace vex
