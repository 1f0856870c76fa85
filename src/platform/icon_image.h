#pragma once

#include <cstdint>
#include <vector>

namespace vex {

// The icon at `size` x `size` pixels, rows from top to bottom, 0xAARRGGBB without premultiplication.
std::vector<std::uint32_t> drawIcon(int size);

}  // namespace vex
