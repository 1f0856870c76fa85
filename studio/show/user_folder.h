#pragma once

#include <string>

namespace vex::studio {

// What can be made anew belongs there: "vex" in $XDG_CACHE_HOME or in ".cache" of the user's folder. Made
// where it is missing; empty where it cannot be.
std::string userCacheFolder();

}  // namespace vex::studio
