#pragma once

#include <set>
#include <string>

#include "timeline/project_record.h"

namespace vex {

// The files of the working folder that the player may open for the project, whatever is ticked at its start:
// the project file, what every scene loads, what the calls name, the preload list and what it lists, the
// music, the statistics font. Names as in an archive (backslashes), in small letters; files that are missing
// are not among them. A model that cannot be read counts with no textures.
std::set<std::string> usedFiles(const Project& project);

// A name with slashes of either kind as it stands there.
std::string asUsed(std::string name);

}  // namespace vex
