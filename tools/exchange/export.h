#pragma once

#include <string>
#include <vector>

#include "engine/scene.h"
#include "tools/exchange/report.h"

// A model of the player to a binary glTF file that modelling tools open, and that importScene makes the same
// model of again.

namespace vex {

inline constexpr int exportedFramesPerSecond = 30;

// The scene as it was loaded, with the names of its textures by id. The pictures are read from the working
// folder, as the player reads them, and go into the file; the report says which are missing. Tracks are taken
// to play 30 frames a second. Fatal: an object whose tracks cannot be told to other tools, since its parent's
// base matrix skews.
std::string exportGlb(Scene& scene, const std::vector<std::string>& textures, Report& report);

}  // namespace vex
