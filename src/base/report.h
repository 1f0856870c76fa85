#pragma once

#include <stdexcept>
#include <string>

// Log, message boxes and the loading bar. Every text is printf-formatted and cut at 511 characters, the
// last of them the line feed if it has one at its end.
// Callers end log lines with "\n" themselves.

namespace vex {

inline constexpr int messageSize = 512;

// A text for one of these.
[[gnu::format(printf, 1, 2)]] std::string formatted(const char* format, ...);

// Appends to "Demo.log" in the working folder, only while options().showStats is set. The first write
// of a run empties the file; every write opens and closes it. A log that cannot be opened loses the
// line.
[[gnu::format(printf, 1, 2)]] void logPrintf(const char* format, ...);

// Another run begins in this process: its first write empties the file.
void beginLog();

// Shows the text captioned "Error", gives the desktop its mode back and ends the process with exit
// code -1 (255), without clean-up. Where a FatalErrorsThrown lives it throws FatalError instead.
[[noreturn, gnu::format(printf, 1, 2)]] void fatalError(const char* format, ...);

// A fatal error as a value; what() is the text that would have been shown.
struct FatalError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// For who can go on after what others cannot: as long as one lives, fatal errors of its thread are thrown.
class FatalErrorsThrown {
 public:
  FatalErrorsThrown();
  ~FatalErrorsThrown();
  FatalErrorsThrown(const FatalErrorsThrown&) = delete;
  FatalErrorsThrown& operator=(const FatalErrorsThrown&) = delete;
};

// Shows the text captioned "Warning" and returns.
[[gnu::format(printf, 1, 2)]] void warning(const char* format, ...);

// Where loading reports go: the player's dialog, or nowhere.
struct LoadingSink {
  void (*show)(int percent, const char* text) = nullptr;
  void (*close)() = nullptr;
};

// From here on, the steps are counted anew.
void setLoadingDialog(LoadingSink sink);
void setLoadingSteps(int steps);

// Announces the next step: the bar shows the share of the steps before it (0 to 100, truncated).
[[gnu::format(printf, 1, 2)]] void loadingProgress(const char* format, ...);

// Progress inside one step: the bar goes to `percent` (0 to 100), the step count stays.
[[gnu::format(printf, 2, 3)]] void loadingProgressAt(int percent, const char* format, ...);

void closeLoadingDialog();

}  // namespace vex
