#pragma once

#include <functional>

#include "engine/vector.h"
#include "production/image/image.h"

// A world as a function of direction, and pictures of it. Directions have length 1; x is east, y up,
// z north.

namespace vex::image {

using Environment = std::function<Colour4(const Vector& direction)>;

struct Gaze {
  Vector forward, right, up;  // unit vectors at right angles
};

// Turned from east towards north and then up, in radians.
Gaze lookTowards(float turn, float rise);

// What an eye sees: `reach` is the tangent of half the angle across.
Canvas viewOf(const Environment& world, const Gaze& gaze, float reach, int width, int height, int samples);

enum class SkyFace { top, bottom, north, west, south, east };

// One face of a box around the eye, upright as seen from inside: from left to right south, east, north,
// west; the top's lower edge and the bottom's upper edge join the east. Texel centres of the border lie
// on the edges of the box, so that neighbours share them exactly.
Canvas boxFace(const Environment& world, SkyFace face, int side);

// What a mirror ball shows a far eye that looks along `gaze`; texture coordinates are those that OpenGL
// makes for sphere maps (s = x / 2 + 1/2 of the normal). Outside the ball its rim goes on.
Canvas sphereMap(const Environment& world, const Gaze& gaze, int side, int samples);

}  // namespace vex::image
