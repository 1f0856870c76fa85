#pragma once

#include <cstddef>
#include <vector>

#include "platform/sound_file.h"

// What is heard of the music while the cursor is dragged.

namespace vex::studio {

inline constexpr double grainSeconds = 0.08;
inline constexpr double grainFadeSeconds = 0.005;  // at both ends, so that nothing clicks

// Samples of the music from there (s) on; fewer than a grain at its end, none beyond it.
std::vector<std::byte> readGrain(SoundFile& music, double seconds);

}  // namespace vex::studio
