#pragma once

#include "production/geometry/bake.h"

// The laboratory's colours, texel by texel; parts are numbered as in fetus_parts.h.

namespace vex::laboratory {

BakeLook labLook(float reach, int rays);

Colour4 roomColour(const BakePoint& point);
Colour4 tableColour(const BakePoint& point);
Colour4 propColour(const BakePoint& point);
Colour4 doorColour(const BakePoint& point);
Colour4 skinColour(const BakePoint& point);

Canvas eyePicture(int side);
Canvas windowPicture(int side);  // masked
Canvas hosePicture(int side);    // tiles along
Canvas glassPicture(int side);   // sphere map, for adding
Canvas beamPicture(int side);    // brightest at the right end, where the lamp is

}  // namespace vex::laboratory
