#pragma once

#include <functional>
#include <vector>

#include "production/geometry/surface.h"

// Forms to begin with. All show their outside and are mapped; where a form closes on itself the points are
// shared and the mapping has a seam, so that no triangle runs across it. Lettered counts are numbers of
// quads.

namespace vex::geometry {

// A sheet: `place(s, t)` for s and t from 0 to 1, which are also u and v. Its front is where s to the right
// and t upwards is seen. Closing sheets share the points of both ends; at a pole pass collapsed ends.
struct SheetEnds {
  bool closedAcross = false;  // s = 1 is s = 0
  bool closedAlong = false;   // t = 1 is t = 0
  bool poleBelow = false;     // t = 0 is one point
  bool poleAbove = false;     // t = 1 is one point
};
Surface sheet(int across, int along, const std::function<Vector(float s, float t)>& place,
              const SheetEnds& ends = {});

// A profile of points (x = radius, y = height; from the bottom up for an outside that shows) turned about
// the y axis. A radius of 0 at an end makes a pole. v follows the length of the profile. `corners` over
// that many degrees become hard edges (180: none).
struct ProfilePoint {
  float radius, height;
};
Surface lathe(const std::vector<ProfilePoint>& profile, int around, float corners = 40);

// Smooth curve through points, cut into `pieces` (Catmull and Rom's spline; ends are kept).
std::vector<ProfilePoint> smoothProfile(const std::vector<ProfilePoint>& profile, int pieces);
std::vector<Vector> smoothPath(const std::vector<Vector>& path, int pieces);

// A tube along a path with as little twist as possible. `radius(t)` for t from 0 to 1 along the path; ends
// are round caps, flat caps or open. v runs along, u around.
enum class TubeEnd { open, flat, round, point };
Surface tube(const std::vector<Vector>& path, int around, const std::function<float(float t)>& radius,
             TubeEnd end = TubeEnd::round);

// As tube, with an outline of its own at each place: `section(s, t)` in the plane across the path for s from
// 0 to 1 around, counter-clockwise seen against the path's direction. Open at the ends.
struct PlanePoint {
  float x, y;
};
Surface sweep(const std::vector<Vector>& path, int around,
              const std::function<PlanePoint(float s, float t)>& section);

// Frames along a path, `back` pointing along it, transported in parallel.
std::vector<Placement> framesAlong(const std::vector<Vector>& path);

// Box about the origin with its edges cut off at 45 degrees, `bevel` wide (0: sharp). Each side is mapped to
// the whole picture. `cells` quads along each side, for bending and displacing.
Surface bevelledBox(const Vector& size, float bevel, int cells = 1);

Surface sphere(float radius, int around, int along);
// Half axes; exponents 1 = ellipsoid, towards 0 = box (north-south, east-west).
Surface superellipsoid(const Vector& axes, float roundNorth, float roundEast, int around, int along);
// Sphere of nearly equal triangles: an icosahedron divided, 20 * 4^rounds triangles; spherical mapping.
Surface geodesic(float radius, int rounds);
Surface cylinder(float radius, float height, int around, float bevel = 0);   // standing on y = 0
Surface cone(float bottom, float top, float height, int around, int along);  // open shell on y = 0
Surface torus(float radius, float thickness, int around, int across);        // about the y axis
Surface disc(float radius, int around, int rings);                           // facing +y, planar map
Surface plane(float width, float depth, int across, int along);              // facing +y, u = x, v = -z
Surface card(float width, float height);  // upright, facing +z, its lower edge on y = 0

// Flat outlines in the plane z = 0 (simple polygons; counter-clockwise seen from +z: a body, clockwise: a
// hole in the body around it), their copies `depth` behind, and walls; the front edge is cut off `bevel`
// wide. Walls are hard where the outline turns by more than `corners` degrees. Mapped by x and y over the
// bounds, on all sides.
using Outline = std::vector<PlanePoint>;
Surface extrusion(const std::vector<Outline>& outlines, float depth, float bevel = 0, float corners = 30);

}  // namespace vex::geometry
