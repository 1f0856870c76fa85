#pragma once

#include "production/textures/palette.h"

// Colours of the storm: blue-grey with cold cyan; its red is alarmRamp.

namespace vex {

inline const Ramp stormRamp{black,
                            {0.022f, 0.03f, 0.045f},
                            {0.085f, 0.12f, 0.165f},
                            {0.28f, 0.365f, 0.445f},
                            {0.64f, 0.78f, 0.86f},
                            {0.92f, 0.98f, 1}};

// Of the open sky straight above, where no picture covers it.
inline constexpr image::Colour4 stormZenith{0.09f, 0.125f, 0.17f};

}  // namespace vex
