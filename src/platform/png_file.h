#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "platform/replace_file.h"

namespace vex {

// Writes width x height pixels, three bytes each (red, green, blue), rows top to bottom, as a PNG, and
// puts the file in place. False, with errno, on failure, also when the file could not be created.
bool writePng(ReplacementFile& file, int width, int height, std::span<const std::byte> rgb);

// Pixels of four bytes each (red, green, blue, alpha), rows top to bottom.
struct PngPixels {
  int width = 0, height = 0;
  std::vector<std::byte> rgba;
};

// A PNG file in memory, of sides of at most `mostSide`. False when it is none, is larger or is damaged.
bool decodePng(std::span<const std::byte> file, int mostSide, PngPixels& pixels);

// A PNG file; empty on failure.
std::vector<std::byte> encodePng(const PngPixels& pixels);

}  // namespace vex
