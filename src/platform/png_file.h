#pragma once

#include <cstddef>
#include <span>

#include "platform/replace_file.h"

namespace vex {

// Writes width x height pixels, three bytes each (red, green, blue), rows top to bottom, as a PNG, and
// puts the file in place. False, with errno, on failure, also when the file could not be created.
bool writePng(ReplacementFile& file, int width, int height, std::span<const std::byte> rgb);

}  // namespace vex
