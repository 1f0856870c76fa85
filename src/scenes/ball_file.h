#pragma once

#include <string>
#include <vector>

#include "engine/colour.h"
#include "engine/vector.h"

// Clouds of balls in files (.hvv): the number of balls, 32 bits signed, then 28 bytes a ball: intensity,
// red, green, blue, x, y and z as 32-bit floats. Little-endian.

namespace vex {

struct Ball {
  float intensity = 1;
  Colour colour;
  Vector position;
};

// Fatal: "Vector balls %s not found!", a file whose size does not fit its number of balls, a value that is
// no number.
std::vector<Ball> readBallFile(const char* name);

// What such a file holds.
std::string ballFileBytes(const std::vector<Ball>& balls);

// Into the working folder, in one step. Warns when it cannot be written: the balls are there all the same.
void writeBallFile(const char* name, const std::vector<Ball>& balls);

}  // namespace vex
