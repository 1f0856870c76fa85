#pragma once

#include <functional>
#include <vector>

#include "production/geometry/surface.h"

// Texture coordinates. See surface.h: coordinates belong to corners, so seams need no extra points.

namespace vex::geometry {

// Any function of the place, without seams.
Surface mapped(Surface surface, const std::function<Uv(const Vector&)>& map);
// By point number, for models whose vertices the player addresses one by one.
Surface mappedByPoint(Surface surface, const std::function<Uv(int point, const Vector&)>& map);

// Along an axis; `scale` is in widths of the picture per unit.
Surface mappedPlanar(Surface surface, Axis along, float scale);
// Each triangle along the axis that it faces most: tiling walls, rocks, boxes.
Surface mappedBox(Surface surface, float scale);
// About the y axis: u once around (times `turns`), v from the lowest to the highest point. Triangles across
// the seam go on past u = 1, so that a tiling picture has no break.
Surface mappedCylindrical(Surface surface, float turns = 1);
// By direction from the centre: u around, v from the south to the north pole; poles are spread.
Surface mappedSpherical(Surface surface, const Vector& centre, float turns = 1);

Surface mappingScaled(Surface surface, float u, float v, float shiftU = 0, float shiftV = 0);

// Gives every triangle texels of its own in one square picture, for baking. Charts are laid out with
// `bleed` texels of room around them.
enum class Charts {
  byNormals,  // cut into pieces that face one way (within about 50 degrees), flattened
  byMapping,  // pieces of the mapping that stands, for sheets, lathes and tubes that unroll well;
              // it must not lie over itself
};
struct AtlasOptions {
  Charts charts = Charts::byNormals;
  int side = 512;  // texels, as in the finished picture even in a draft
  int bleed = 4;
  std::function<float(const Triangle&)> density{};  // more texels where the camera comes close; 1 is normal
};
struct AtlasFigures {
  int charts = 0;
  float texelsPerUnit = 0;  // where the density is 1
  float used = 0;           // share of the picture that triangles cover
};
// Fatal: charts that do not fit into the side ("too many charts for %d texels").
Surface mappedAtlas(const Surface& surface, const AtlasOptions& options, AtlasFigures* figures = nullptr);

}  // namespace vex::geometry
