#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "timeline/project_record.h"
#include "timeline/tempo.h"

// Where a time goes that is dragged by mouse.

namespace vex::studio {

enum class SnapGrid : std::int8_t {
  none,  // the time as it is
  zoom,  // the finest of those below whose lines lie at least 24 pixels apart
  bars,
  beats,
  halfBeats,
  quarterBeats,
};

inline constexpr double snapReach = 8;      // pixels, of what is dragged
inline constexpr double newPartReach = 24;  // of what is made, which nobody sees before

// The nearest line of the grid, or target, within so many pixels; the time itself where there is none. A
// target wins over a line as near. Without a tempo only targets count.
double snapped(double time, const std::optional<Tempo>& tempo, double secondsPerPixel, SnapGrid grid,
               std::span<const double> targets = {}, double pixels = snapReach);

// Beginnings and ends of the parts but one, the ticks, and the show's end.
std::vector<double> snapTargets(const Project& project, int exceptPart);

}  // namespace vex::studio
