#pragma once

#include <span>
#include <string>
#include <string_view>

namespace vex {

// The known name that a misspelt one is most likely meant to be: the fewest letters added, left out or
// replaced, at most about a third of them; letter case hardly counts. Empty when none is that near.
std::string_view nearestName(std::string_view wrong, std::span<const std::string_view> known);

// "did you mean NAME?" or, when none is near, "known are A, B and C", "known is A".
std::string nearestNameHint(std::string_view wrong, std::span<const std::string_view> known);

}  // namespace vex
