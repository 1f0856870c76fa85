#pragma once

#include <vector>

#include "production/geometry/placement.h"
#include "production/geometry/surface.h"

// The laboratory in pieces: a jar with a being in it on a table, what lies around it, the room. One unit is
// half a centimetre; the jar stands about the origin, the table top is y = -50, the back wall holds a window
// and a door. Nothing is mapped unless it says so.

namespace vex::laboratory {

// --- The being: curled up, its face towards -x, mirrored across the plane z = 0.

Surface beingSurface();
Surface rimSurface();            // a little within its skin, coarser
Surface bonesSurface();          // skull, spine, ribs and limbs within it
Surface lidSurface(float side);  // about an eye; they stay when the skin is glass
Surface heartSurface();
Surface cordSurface();  // mapped; from the belly to the jar's foot
inline const Vector heartPlace(-1, -5, 0);
inline const Vector eyePlace(-16.9f, 14.6f, 7.7f);  // of the one with z > 0
inline constexpr float eyeRadius = 4.0f;
Vector gazeAxis(float side);            // unit, out of the socket; side is +1 or -1 for z
Vector eyeAcross(float side);           // axis of its lid; turns clockwise about it open the eye
inline constexpr float eyeIris = 0.2f;  // v of the iris when the lid, the picture's middle, is shut
// Mapped: u across the ball, v about the axis of the lid.
Surface eyeSurface(float side);

// --- On and over the table

inline constexpr float tableHeight = -50;
inline constexpr float jarRadius = 37;
inline const Vector lampPlace(-72, 188, 58);
inline const Vector lampTarget(8, -62, -6);
inline constexpr float lampConeDegrees = 50;
Placement lampFrame();                                // its y axis away from what it lights
inline const Vector cigarettePlace(-88, -44.6f, 66);  // what glows lies 5 units before it (+z)
inline const Vector nozzlePlace(54, 24, 22);
inline const Vector beaconPlace(250, 120, -318);

// Things that share one picture.
enum Prop {
  apparatus,
  phone,
  ashtray,
  cigarette,
  nozzle,
  shade,
  bulb,
  shelf,
  specimens,
  duct,
  legs,
  beacon,
  bones,
  lids
};
Surface propSurface(Prop prop);
Surface tableTop();
Surface jarSurface();              // glass inside and outside, what is in it up to a level
Surface hoseSurface(float swell);  // mapped; 0: slack, 1: swollen; equal counts and order
Surface shardSurface(int kind);    // of glass, about the origin

// --- The room

enum RoomPart { walls, ground, ceiling, pipes, frames, leaf };
Surface roomSurface();  // numbered by RoomPart
Surface doorSurface();  // shut
inline const Vector doorHinge(96, -85, -330);
inline constexpr float windowShare =
    0.74f;                // of its picture's height; above it is the light through the door
Surface windowSurface();  // mapped
Surface whiteSurface();   // what is behind the door
// Mapped to the strip above the window: what falls through the open door on floor, table and air. The door's
// right post is its pivot.
Surface doorLightSurface();
inline const Vector doorPost(216, -85, -330);

}  // namespace vex::laboratory
