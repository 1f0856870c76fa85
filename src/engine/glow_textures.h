#pragma once

#include <string>

#include "base/report.h"

// The glows of lights, by colour: every show loads them.

namespace vex {

inline constexpr int glowCount = 7;

// Path without extension; `glow` from 1 to glowCount.
inline std::string glowTexture(int glow) {
  return formatted("data\\Light%d", glow);
}

}  // namespace vex
