#pragma once

#include <vector>

#include "production/geometry/surface.h"

// The laboratory in pieces: a jar with a being in it on a table, what lies around it, the room. One unit is
// half a centimetre; the jar stands about the origin, the table top is y = -50, the back wall holds a window
// and a door. Nothing is mapped unless it says so.

namespace vex::laboratory {

// --- The being: curled up, its face towards -x, mirrored across the plane z = 0.

Surface beingSurface();
Surface bonesSurface();  // skull, spine, ribs and limbs within it
Surface heartSurface();
Surface cordSurface();  // from the belly to the jar's cap
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
inline const Vector cigarettePlace(-88, -44.6f, 66);  // what glows lies 5 units before it (+z)
inline const Vector nozzlePlace(54, 24, 22);
inline const Vector beaconPlace(250, 120, -318);

// Things that share one picture.
enum Prop { apparatus, phone, ashtray, cigarette, nozzle, shade, bulb, shelf, specimens, duct, legs, beacon };
Surface propSurface(Prop prop);
Surface tableTop();
Surface jarSurface();              // glass inside and outside, what is in it up to a level
Surface hoseSurface(float swell);  // mapped; 0: slack, 1: swollen; equal counts and order
Surface shardSurface(int kind);    // of glass, about the origin

// --- The room

enum RoomPart { walls, ground, ceiling, pipes, frames };
Surface roomSurface();  // numbered by RoomPart
Surface doorSurface();  // shut
inline const Vector doorHinge(96, -85, -330);
Surface windowSurface();  // mapped
Surface whiteSurface();   // what is behind the door

}  // namespace vex::laboratory
