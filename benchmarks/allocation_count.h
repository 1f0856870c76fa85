#pragma once

#include <cstdint>

namespace vex {

// Calls of operator new so far in this process.
std::uint64_t allocationCount();

}  // namespace vex
