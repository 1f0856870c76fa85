#pragma once

#include <optional>
#include <vector>

#include "production/geometry/chart.h"

// Charts side by side in one square picture.

namespace vex::geometry {

// Where a chart's room begins, bleed included, in texels.
struct Spot {
  int x = 0, y = 0;
  std::size_t quarters = 0;  // turned by so many quarter turns
};
using TurnedChart = std::array<Chart, 4>;

TurnedChart quarterTurns(const Chart& chart);

// From the tallest down, each turned and placed so that its top is as low as it goes, close to the outline of
// what is there. `scale` is in texels per unit of length where the density is 1; nothing where they do not
// fit into `side` texels.
std::optional<std::vector<Spot>> pack(const std::vector<TurnedChart>& charts, float scale, int side,
                                      int bleed);

}  // namespace vex::geometry
