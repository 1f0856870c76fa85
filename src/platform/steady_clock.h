#pragma once

#include <cstdint>

// Wall-clock time that never steps, counted from the first call: small numbers keep their
// milliseconds when they are stored as 32-bit floats.

namespace vex {

std::uint32_t timeGetTime();  // milliseconds
double steadySeconds();

}  // namespace vex
