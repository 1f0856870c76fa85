#pragma once

#include <string>
#include <vector>

#include "platform/display_modes.h"

// Which display mode the show runs in: the rules of the mode table, and the dialog that asks.

namespace vex {

inline constexpr std::size_t maxEnumeratedModes = 128;
inline constexpr int minBitsPerPixel = 15;

// The usable ones of the first maxEnumeratedModes modes, in their order.
std::vector<DisplayMode> keepUsableModes(const std::vector<DisplayMode>& enumerated);

// As many passes as there are modes; each pass compares every neighbouring pair from the start and
// swaps them when the first has fewer bits per pixel than the second, or is higher, or is wider.
// The order relation is not transitive: only these passes give the table's order.
void sortModes(std::vector<DisplayMode>& modes);

// "640x480:32"
std::string modeLine(const DisplayMode& mode);

// Index of the first mode nearest to 640 x 480 at 32 bits (sum of absolute differences).
// `modes` must not be empty.
int preselectMode(const std::vector<DisplayMode>& modes);

// Asks the user: sets `options` and returns the chosen mode. Cancel ends the process with exit
// code 0. Fatal: "Couldn't init splash screen", "No modes found... Quitting now".
DisplayMode runDisplayModeDialog();

}  // namespace vex
