#pragma once

#include <string>
#include <vector>

// What the X server says about the screen. Every call opens a connection of its own and is safe
// without a display.

namespace vex {

struct DisplayMode {
  int width = 0;   // pixels
  int height = 0;  // pixels
  int bitsPerPixel = 0;
};

// Whether a window could be opened now; both window libraries end the process where it could not.
bool displayReachable();

// "no X display found (DISPLAY is "...")", to be said where displayReachable() is false.
std::string missingDisplayText();

// The modes of the primary screen in the server's order; those that differ only in refresh rate are
// listed each. A 24-bit-deep screen counts as 32 bits per pixel. What the screen shows now is among them, as
// the first where no mode has that size: it may be turned or scaled, or know no modes at all. Without a
// display there is none.
std::vector<DisplayMode> enumerateDisplayModes();

// That size as the first of the modes where it is none of them.
void addShownSize(std::vector<DisplayMode>& modes, const DisplayMode& shown);

// Refresh rate of the primary screen's current mode in Hz; 60 where it is unknown.
double refreshRate();

}  // namespace vex
