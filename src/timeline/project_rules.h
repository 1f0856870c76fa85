#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "timeline/parameter.h"

// What a project may not ask of the player although its format could hold it, and what it may ask but hardly
// means: the loader, the compiler and the checker judge alike.

namespace vex {

// "is %g, not a usable number" for a value that is not finite; also where a double lies beyond the floats.
std::optional<std::string> findNumberFault(float value);

// A linear curve without dots has no value at all: no project with one is loaded.
bool lacksValue(const Parameter& parameter);

// What is odd about a curve. It is evaluated all the same.
struct CurveFault {
  const char* field = "";           // as the log of loading names it
  std::string complaint;            // goes on after the field: "is nan, not a usable number"
  const char* fatalText = nullptr;  // where evaluating may end the show: its last words
};

// At most one of each kind. Numbers that the type does not use may be anything.
std::vector<CurveFault> findCurveFaults(const Parameter& parameter);

// From its beginning on, up to its end, a part is active; never when the end is not later.
struct ActiveSpan {
  float begin;
  float end;
};

// The first part, in order of beginning, that begins while maxActiveParts others are active.
std::optional<std::size_t> findCrowdedPart(std::span<const ActiveSpan> parts);

}  // namespace vex
