#pragma once

#include <string>

// Where a program keeps what belongs to its user.

namespace vex {

// "vex" in the folder that the environment variable names, otherwise in `inHome` of the user's folder. Empty
// where neither is absolute, which does not count.
std::string userFolder(const char* variable, const char* inHome);

// What can be made anew belongs there: "vex" in $XDG_CACHE_HOME or in ".cache" of the user's folder. Made
// where it is missing; empty where it cannot be.
std::string userCacheFolder();

}  // namespace vex
