#pragma once

#include <functional>

#include "production/geometry/surface.h"
#include "production/image/solid.h"

// Surfaces of solids that are given as distances (production/image/solid.h: ball, ellipsoid, taper). Joins
// with fillets, cuts and displacement are functions of such functions.

namespace vex::geometry {

// Ways to join two distances; k is the size of the fillet in units of length.
float smoothJoin(float p, float q, float k);
float smoothCut(float p, float hole, float k);  // p without the hole
float smoothMeet(float p, float q, float k);    // where both are
float roundBox(const Vector& p, const Vector& centre, const Vector& halfSize, float rounding);
float torusDistance(const Vector& p, const Vector& centre, float radius, float thickness);  // about y

struct IsoOptions {
  Bounds bounds{};     // of the solid; what leaves them is cut off and closed
  float cell = 1;      // width of a cell: the fineness of the triangles
  int relax = 4;       // rounds of evening out the triangles on the surface
  bool closed = true;  // closes the surface where it leaves the bounds
};

// Marching cubes. The result is watertight, unmapped, and its triangles are of about one size.
Surface isosurface(const image::Solid& solid, const IsoOptions& options);

}  // namespace vex::geometry
