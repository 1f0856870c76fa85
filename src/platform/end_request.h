#pragma once

// Signals, for the player and the tools, and the wish that the program should end in its own time, from
// wherever it comes. A program that was started with one of the signals ignored (nohup, a background job)
// goes on ignoring it.

namespace vex {

inline constexpr int interruptedExitCode = 130;

// From now on the first SIGINT, SIGTERM or SIGHUP is a wish, and the next one ends the process at once, as
// after endAtSignals(). For programs that ask endRequested() now and then.
void catchEndSignals();

// From now on SIGINT, SIGTERM and SIGHUP end the process at once, by endInterrupted().
void endAtSignals();

// Removes temporary files, writes "PROGRAM: interrupted" to standard error and ends the process with exit
// code 130.
[[noreturn]] void endInterrupted();

// From now on writes into a pipe that nobody reads, or beyond the file size limit, fail with an error
// instead of ending the process.
void ignoreWriteSignals();

void requestEnd();
bool endRequested();

}  // namespace vex
