#pragma once

#include <string>

namespace vex {

// To be called before the first change of the display mode: remembers the desktop's mode and starts
// a small process, the guardian, that waits for this one to end, in whatever way, and then puts the mode
// back. Empty when it stands; otherwise why it does not, and the mode must stay as it is.
std::string guardDesktop();

// Sets the primary screen to the mode of that size whose rate is nearest to 60 Hz; false where there
// is none, the server refuses, or no guardian stands.
bool switchScreenMode(int width, int height);

// Gives the desktop its own display mode back if full screen changed it; otherwise does nothing.
// Safe to call at any time and more than once. Called before the process ends without clean-up.
void restoreDesktop();

}  // namespace vex
