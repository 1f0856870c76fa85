#pragma once

#include <span>
#include <string>

#include "studio/document/document.h"
#include "studio/document/draft.h"
#include "studio/document/number_style.h"

// Curves as they are written.

namespace vex::studio {

// One number of a sine, which may not be there yet.
Replacement sineNumberAt(const Draft& draft, const ParameterPlace& place, SineField field, double value,
                         Precision precision);

// "linear(0 1, 1 0)", or spline.
std::string curveText(ParameterType kind, std::span<const ProjectDot> dots);

// Removes the dot and the comma that parts it from its neighbour; comments stay. Not the only one.
std::vector<Replacement> dotRemoved(const Draft& draft, const ParameterPlace& place, int dot);

}  // namespace vex::studio
