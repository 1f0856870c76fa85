#pragma once

#include <cstddef>

namespace vex::geometry {

// Points and triangles are numbered with ints, so that -1 is none; a number that is one, to index with.
inline std::size_t at(int index) {
  return static_cast<std::size_t>(index);
}

}  // namespace vex::geometry
