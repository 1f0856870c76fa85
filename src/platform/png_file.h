#pragma once

#include <cstddef>
#include <span>
#include <string>

namespace vex {

// Writes width x height pixels, three bytes each (red, green, blue), rows top to bottom, as a PNG
// that replaces `path` in one step. False, with errno, on failure.
bool writePng(const std::string& path, int width, int height, std::span<const std::byte> rgb);

}  // namespace vex
