#pragma once

#include <string>

#include "production/making/product.h"

// Shapes of coloured balls for the closing scene, each built up in stages: the ball file of a stage holds all
// the balls of those before it.

namespace vex {

inline constexpr int ballStages = 2;

// Turns of the camera about the world until the box opens, which faces it there.
inline constexpr double turnsAboutWorld = 0.22;

// Name of the ball file as the player asks for it, without its folder; stages count from 1.
std::string ballFile(const char* shape, int stage);

Products ballShapes();

}  // namespace vex
