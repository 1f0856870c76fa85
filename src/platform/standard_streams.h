#pragma once

namespace vex {

// What every program does first: opens /dev/null on those of the descriptors 0 to 2 that are closed, so
// that no file or socket opened later takes their number and with it what is printed. A program whose
// standard output was closed still fails to write it.
void openStandardStreams();

}  // namespace vex
