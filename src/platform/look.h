#pragma once

#include <FL/Enumerations.H>

#include <cstdint>

#include "resources/icon.h"

// The dialogs wear the icon's colours.

namespace vex {

inline Fl_Color flColour(std::uint32_t rgb) {
  return fl_rgb_color(rgb >> 16 & 255, rgb >> 8 & 255, rgb & 255);
}

}  // namespace vex
