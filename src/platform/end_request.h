#pragma once

// The wish that the program should end in its own time, from wherever it comes.

namespace vex {

// From now on SIGINT, SIGTERM and SIGHUP are such wishes instead of the end of the process.
void catchEndSignals();

void requestEnd();
bool endRequested();

}  // namespace vex
