#pragma once

#include <cstddef>

// What a process holds, to see that nothing is left of what has come and gone.

namespace vex {

std::size_t allocatedBytes();  // on the heap, by everybody in the process
int openDescriptors();
int liveTextures();  // of the current GL context, with names below 1200

}  // namespace vex
