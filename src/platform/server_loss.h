#pragma once

namespace vex {

// To be called after whatever else may have taken the place (the dialog toolkit does when it connects):
// when the X server goes, the process ends with exit code 255 and one line on standard error, instead of
// Xlib's and code 1. No box can be shown then.
void endWithServer();

}  // namespace vex
