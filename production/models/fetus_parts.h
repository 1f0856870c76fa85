#pragma once

#include <vector>

#include "production/geometry/placement.h"
#include "production/geometry/surface.h"
#include "production/models/stage.h"

// The laboratory in pieces: a jar with a being in it on a table, what lies around it, the room. One unit is
// half a centimetre; the jar stands about the origin, the table top is y = -50, the back wall holds a window
// and a door. Nothing is mapped unless it says so.

namespace vex::laboratory {

// --- Time and cameras

inline constexpr float shotSeconds = 20;  // loop of the cameras
// Scene time at a bar of the movement: as in life, but slow while the jar bursts.
inline constexpr double burstBar = 16, burstPace = 0.4;
double sceneTime(double bar);
std::vector<StageCamera> cameras();  // in the order of the movement's

// --- The being: curled up, its face towards -x, mirrored across the plane z = 0.

geometry::Surface beingSurface();
geometry::Surface rimSurface();              // a little within its skin, coarser
geometry::Surface bonesSurface();            // skull, spine, ribs and limbs within it
geometry::Surface lidSurface(float side);    // about an eye; they stay when the skin is glass
geometry::Surface coverSurface(float side);  // the lid that shuts it
geometry::Surface heartSurface();
geometry::Surface cordSurface();  // mapped; from the belly to the jar's foot
inline const Vector heartPlace(-1, -5, 0);
inline constexpr float eyeRadius = 3.7f;
Vector gazeAxis(float side);   // unit, out of the socket; side is +1 or -1 for z
Vector eyeAcross(float side);  // axis of its lid; turns clockwise about it open the eye
// Mapped as seen from before it: the iris is in the middle.
geometry::Surface eyeSurface(float side);

// --- On and over the table

inline constexpr float tableHeight = -50;
inline constexpr float jarRadius = 37;
inline const Vector lampPlace(-52, 150, 84);
inline const Vector lampTarget(4, -62, -16);
inline constexpr float lampConeDegrees = 50;
geometry::Placement lampFrame();  // its y axis away from what it lights
inline const Vector cigarettePlace(-58, -42.4f, 52), emberPlace = cigarettePlace + Vector(0, 0, 5);
inline const Vector nozzlePlace(54, 24, 22);
inline const Vector beaconPlace(250, 120, -318);

// Things that share one picture.
enum Prop {
  apparatus,
  phone,
  dial,
  receiver,
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
  lids,
  covers,
  heart
};
geometry::Surface propSurface(Prop prop);
// Out of the phone's frame into the room; the dial turns about the y axis of its own.
geometry::Placement phoneFrame(), dialFrame();
geometry::Surface tableTop();
geometry::Surface jarSurface();              // glass inside and outside, what is in it up to a level
geometry::Surface hoseSurface(float swell);  // mapped; 0: slack, 1: swollen; equal counts and order
geometry::Surface shardSurface(int kind);    // of glass, about the origin
inline constexpr int burstShells = 4;
geometry::Surface burstSurface(int shell);  // all that was the jar, in pieces where they were

// --- The room

enum RoomPart { walls, ground, ceiling, pipes, frames, leaf };
geometry::Surface roomSurface();  // numbered by RoomPart
geometry::Surface doorSurface();  // shut
inline const Vector doorHinge(96, -85, -330);
inline constexpr float windowShare =
    0.74f;                          // of its picture's height; above it is the light through the door
geometry::Surface windowSurface();  // mapped
inline const Vector windowMiddle(-164, 23, -328);
geometry::Surface whiteSurface();  // what is behind the door
// Mapped to the strip above the window: what falls through the open door on floor, table and air. The door's
// right post is its pivot.
geometry::Surface doorLightSurface();
inline const Vector doorPost(216, -85, -330);
inline const Vector thresholdPlace(150, -220, -326);

}  // namespace vex::laboratory
