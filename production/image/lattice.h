#pragma once

#include <cstdint>

// What noise in the plane and noise in space share.

namespace vex::image {

// `cell` of a lattice that repeats every `period` cells (0: never).
inline int wrapped(int cell, int period) {
  if (period <= 0) return cell;
  const int rest = cell % period;
  return rest < 0 ? rest + period : rest;
}

// A cell and the next one.
struct CellPair {
  int cell[2];

  CellPair(int first, int period) : cell{wrapped(first, period), wrapped(first + 1, period)} {}
};

inline std::uint32_t hash(int x, int y, std::uint32_t seed) {
  std::uint32_t h = static_cast<std::uint32_t>(x) * 0x9e3779b1u ^
                    static_cast<std::uint32_t>(y) * 0x85ebca77u ^ seed * 0xc2b2ae3du;
  h = (h ^ (h >> 15)) * 0x2c1b3c6du;
  h = (h ^ (h >> 12)) * 0x297a2d39u;
  return h ^ (h >> 15);
}

// From 0 to below 1.
inline float unitOf(std::uint32_t hash) {
  return static_cast<float>(hash >> 8) * (1.0f / 16777216.0f);
}

// From 0 to 1 with no slope and no bend at the ends (Perlin 2002).
inline float quintic(float t) {
  return t * t * t * (t * (t * 6 - 15) + 10);
}

}  // namespace vex::image
