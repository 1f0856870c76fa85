#pragma once

#include <array>
#include <vector>

#include "production/geometry/pieces.h"
#include "production/geometry/surface.h"

// Pieces of a surface laid out flat.

namespace vex::geometry {

struct Flat {
  float x, y;
};

struct Chart {
  std::vector<int> triangles;
  std::vector<std::array<Flat, 3>> corners;  // of each, in units of length; from (0, 0) upwards
  float width = 0, height = 0;
  float density = 1;
};

// About the origin, counter-clockwise, and moved back into the corner.
void rotateChart(Chart& chart, float angle);

// Seen along its mean normal, turned to the smallest rectangle, lying.
Chart flattened(const Surface& surface, const Piece& piece);
// The mapping that stands, stretched in each direction to the lengths that it covers.
Chart unrolled(const Surface& surface, const Piece& piece);

// Triangles that would lie over others, or upside down, when the chart is flat: every one that begins after
// them is taken out. Looked at on a grid of about a tenth of the usual triangle.
std::vector<int> takeOutOverlaps(Chart& chart, bool mirrored);

// Long charts, and bent ones that leave most of their rectangle empty, in pieces that pack well.
std::vector<Chart> cutForPacking(const std::vector<Chart>& charts);

// Twice the area of a triangle, negative where it runs clockwise.
float crossOf(const Flat& a, const Flat& b, const Flat& c);

// With its density.
float areaOf(const Chart& chart);

}  // namespace vex::geometry
