#pragma once

#include <cstddef>
#include <string>
#include <vector>

// A GL compatibility context without window and display server, drawing into a buffer of fixed size
// with 8 bits each of red, green, blue, alpha and stencil and 24 bits of depth.

namespace vex {

// Opens the context, makes it current and fills glContext. The size is in pixels. Empty on success,
// otherwise why there is none.
std::string openOffscreenContext(int width, int height);

// Does nothing when none is open.
void closeOffscreenContext();

// Waits for all drawing and copies the lower left width x height pixels: four bytes each, blue,
// green, red, alpha, from the bottom row to the top. `pixels` takes that size.
void readBackBgra(int width, int height, std::vector<std::byte>& pixels);

}  // namespace vex
