#pragma once

#include <string>

#include "engine/vector.h"
#include "production/making/product.h"

// Shapes of coloured balls for the closing scene, each in two stages: a world shut and open, the box before
// and after all leaps out of it, a skull with its mouth shut and open, the title in a heap and standing.

namespace vex {

inline constexpr int ballStages = 2;

// Turns of the camera about the world until the box opens, which faces it there as all that follows.
inline constexpr double turnsAboutWorld = 0.22;

// In shapes that face the camera, y up, z towards it: the skull's right socket and its open mouth, before it
// is scaled, and on what the heap lies.
inline constexpr float skullScale = 0.86f, heapFloor = -58;
inline const Vector skullEye(25, 2, 46), skullMouth(0, -62, 40);

// Name of the ball file as the player asks for it, without its folder; stages count from 1.
std::string ballFile(const char* shape, int stage);

Products ballShapes();

}  // namespace vex
