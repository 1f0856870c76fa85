#pragma once

#include <array>
#include <functional>
#include <vector>

#include "engine/vector.h"
#include "production/geometry/placement.h"

// Triangle surfaces, the one type that all modelling works on. Axes are the player's: x to the right, y up,
// z towards the viewer, any unit. Triangles run counter-clockwise seen from the side that shows. Normals
// are not stored: the player makes them smooth over each point, so a hard edge is two points in one place.
// Texture coordinates belong to the corners of triangles: a seam is two coordinates at one point.

namespace vex::geometry {

struct Uv {
  float u = 0, v = 0;  // v upwards, 0 at the picture's lower edge
};
inline bool operator==(const Uv& p, const Uv& q) {
  return p.u == q.u && p.v == q.v;
}

struct Triangle {
  std::array<int, 3> points{};
  std::array<Uv, 3> uv{};
  int part = 0;  // the maker's own number for what it is made of: see partOf and BakePoint
};

struct Surface {
  std::vector<Vector> points;
  std::vector<Triangle> triangles;
  bool mapped = false;  // uv mean something; all that joins must agree
};

// --- Building

int addPoint(Surface& surface, const Vector& point);
void addTriangle(Surface& surface, int a, int b, int c);
// a, b, c, d counter-clockwise; split along the shorter diagonal.
void addQuad(Surface& surface, int a, int b, int c, int d);

// Appends `other`; its triangles take the number `part` unless that is negative.
void append(Surface& surface, const Surface& other, int part = -1);
Surface joined(const std::vector<Surface>& surfaces);

// The triangles of one part, or of those for which `wanted` says so, and the points that they need.
Surface partOf(const Surface& surface, int part);
Surface selected(const Surface& surface, const std::function<bool(const Triangle&)>& wanted);
Surface withPart(Surface surface, int part);

// --- Changing

Surface placed(Surface surface, const Placement& placement);  // mirroring placements turn the triangles, too
Surface turnedOver(Surface surface);                          // the other side shows: for rooms
// The surface and its mirror image across the plane x = 0 (or y, z); points on the plane are shared.
enum class Axis { x, y, z };
Surface mirrored(const Surface& surface, Axis axis);

// Each point to another place.
Surface bent(Surface surface, const std::function<Vector(const Vector&)>& move);
// Each point along its normal, by a length that depends on place and normal.
Surface displaced(Surface surface,
                  const std::function<float(const Vector& point, const Vector& normal)>& height);

// One point for all that lie within `distance` of each other; drops triangles that collapse.
Surface welded(const Surface& surface, float distance);
// Points are parted where the triangles around them meet at more than `degrees`: hard edges.
Surface creased(const Surface& surface, float degrees);
// All points parted: every triangle flat.
Surface faceted(const Surface& surface);
Surface withoutMapping(Surface surface);
// Drops points that no triangle uses.
Surface compacted(const Surface& surface);

// Moves points towards the middle of their neighbours and back (Taubin's filter: no shrinking); points
// on open borders stay.
Surface smoothed(Surface surface, int rounds);

// Loop's subdivision, each triangle into four; borders and mapping are kept.
Surface subdivided(const Surface& surface, int rounds);

// --- Measuring

// As the player makes them: sum of the unit normals of the triangles around each point.
std::vector<Vector> pointNormals(const Surface& surface);
Vector normalOf(const Surface& surface, const Triangle& triangle);  // unit; 0 for triangles without area
float areaOf(const Surface& surface);
float volumeOf(const Surface& surface);  // enclosed by a closed surface; negative when inside out

struct Bounds {
  Vector least, most;
};
Bounds boundsOf(const Surface& surface);

// How the surface hangs together.
struct Topology {
  int points = 0, edges = 0, triangles = 0;
  int openEdges = 0;   // of one triangle
  int wrongEdges = 0;  // of more than two triangles, or of two that disagree about the front
  int euler() const { return points - edges + triangles; }
};
Topology topologyOf(const Surface& surface);

}  // namespace vex::geometry
