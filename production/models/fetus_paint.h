#pragma once

#include "production/geometry/bake.h"

// The laboratory's colours, texel by texel; parts are numbered as in fetus_parts.h.

namespace vex::laboratory {

geometry::BakeLook labLook(float reach, int rays);

// Pictures of what the player lights are brighter than the room; their materials take that back. So the
// alarm has something to add its red to.
inline constexpr image::Colour4 roomGain{3.2f, 2.0f, 2.0f}, propGain{1.6f, 1.6f, 1.6f};

image::Colour4 roomColour(const geometry::BakePoint& point);
image::Colour4 tableColour(const geometry::BakePoint& point);
image::Colour4 propColour(const geometry::BakePoint& point);
image::Colour4 doorColour(const geometry::BakePoint& point);
image::Colour4 skinColour(const geometry::BakePoint& point);
image::Colour4 boneColour(const geometry::BakePoint& point);
image::Colour4 lidColour(const geometry::BakePoint& point);

image::Canvas eyePicture(int side);     // its front, as seen from before it
image::Canvas windowPicture(int side);  // masked; above the window the light through the door
image::Canvas hosePicture(int side);    // tiles along
image::Canvas glassPicture(int side);   // sphere map, masked
image::Canvas beamPicture(int width);   // brightest at the right end, where the lamp is

}  // namespace vex::laboratory
