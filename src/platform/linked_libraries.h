#pragma once

#include <string_view>
#include <vector>

namespace vex {

// Names of the shared libraries that the program was linked with, as "libz.so.1", in the linker's order; not
// those that they load in their turn.
std::vector<std::string_view> linkedLibraries();

}  // namespace vex
