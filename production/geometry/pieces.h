#pragma once

#include <vector>

#include "production/geometry/surface.h"

// Which triangles of a surface lie in one chart of its atlas.

namespace vex::geometry {

// The numbers of its triangles.
using Piece = std::vector<int>;

// The triangles `wanted` in connected pieces of one part that face one way (within about 50 degrees). Pieces
// run on over hard edges; small ones are given to their neighbours where these can have them.
std::vector<Piece> piecesByNormals(const Surface& surface, const std::vector<int>& wanted);

// All triangles in pieces of one part whose mapping goes on from each to the next.
std::vector<Piece> piecesByMapping(const Surface& surface);

// Along its normal, as long as the triangle's area.
Vector areaVector(const Surface& surface, const Triangle& triangle);

}  // namespace vex::geometry
