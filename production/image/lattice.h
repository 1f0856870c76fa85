#pragma once

// What noise in the plane and noise in space share.

namespace vex::image {

// `cell` of a lattice that repeats every `period` cells (0: never).
inline int wrapped(int cell, int period) {
  if (period <= 0) return cell;
  const int rest = cell % period;
  return rest < 0 ? rest + period : rest;
}

// From 0 to 1 with no slope and no bend at the ends (Perlin 2002).
inline float quintic(float t) {
  return t * t * t * (t * (t * 6 - 15) + 10);
}

}  // namespace vex::image
