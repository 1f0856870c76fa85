#pragma once

namespace vex {

// The player: asks for the display mode, loads the presentation in the working folder and plays it.
// The process ends from inside, with exit code 0 after the last frame, Escape, a closed window,
// SIGINT, SIGTERM or SIGHUP.
[[noreturn]] void runPlayer();

}  // namespace vex
