#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>

#include "timeline/parameter.h"

// What a project may not ask of the player although its format could hold it: the loader, the compiler
// and the checker refuse the same.

namespace vex {

struct CurveFault {
  const char* field = "";            // as the loader's messages name it
  std::string complaint;             // goes on after the field: "is nan, not a usable number"
  const char* playerText = nullptr;  // the player's whole message where that is a fixed one
};

// "is %g, not a usable number" for a value that is not finite; also where a double lies beyond the floats.
std::optional<std::string> findNumberFault(float value);

// What evaluate would stumble over as soon as the part runs. Numbers that the type does not use may be
// anything.
std::optional<CurveFault> findCurveFault(const Parameter& parameter);

// From its beginning on, up to its end, a part is active; never when the end is not later.
struct ActiveSpan {
  float begin;
  float end;
};

// The first part, in order of beginning, that begins while maxActiveParts others are active.
std::optional<std::size_t> findCrowdedPart(std::span<const ActiveSpan> parts);

}  // namespace vex
