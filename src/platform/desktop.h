#pragma once

namespace vex {

// Gives the desktop its own display mode back if full screen changed it; otherwise does nothing.
// Safe to call at any time and more than once. Called before the process ends without clean-up.
void restoreDesktop();

}  // namespace vex
