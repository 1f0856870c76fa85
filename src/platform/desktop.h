#pragma once

namespace vex {

// To be called before the first change of the display mode: remembers the desktop's mode and starts
// a small process that waits for this one to end, in whatever way, and then puts the mode back.
void guardDesktop();

// Sets the primary screen to the mode of that size whose rate is nearest to 60 Hz; false where there
// is none or the server refuses.
bool switchScreenMode(int width, int height);

// Gives the desktop its own display mode back if full screen changed it; otherwise does nothing.
// Safe to call at any time and more than once. Called before the process ends without clean-up.
void restoreDesktop();

}  // namespace vex
