#pragma once

#include "production/geometry/bake.h"

// The laboratory's colours, texel by texel; parts are numbered as in fetus_parts.h.

namespace vex::laboratory {

BakeLook labLook(float reach, int rays);

// Pictures of what the player lights are brighter than the room; their materials take that back. So the
// alarm has something to add its red to.
inline constexpr Colour4 roomGain{3.2f, 2.0f, 2.0f}, propGain{1.6f, 1.6f, 1.6f};

Colour4 roomColour(const BakePoint& point);
Colour4 tableColour(const BakePoint& point);
Colour4 propColour(const BakePoint& point);
Colour4 doorColour(const BakePoint& point);
Colour4 skinColour(const BakePoint& point);
Colour4 boneColour(const BakePoint& point);
Colour4 lidColour(const BakePoint& point);

Canvas eyePicture(int side);     // its front, as seen from before it
Canvas windowPicture(int side);  // masked; above the window the light through the door
Canvas hosePicture(int side);    // tiles along
Canvas glassPicture(int side);   // sphere map, masked
Canvas beamPicture(int width);   // brightest at the right end, where the lamp is

}  // namespace vex::laboratory
