#pragma once

#include <string>
#include <vector>

// The modal chooser that opens the show. It knows nothing of modes: it shows lines and four switches.

namespace vex {

// In: what is selected and ticked at first. Out: what the user left, when the result is `ok`.
struct StartDialogChoice {
  int line = 0;
  bool fullscreen = false;
  bool noSound = false;
  bool showStats = false;
  bool useStripCache = false;  // its box stays hidden
};

enum class DialogResult { ok, cancel, failed };

// Shows the dialog in the middle of the work area with the keyboard focus and waits. Enter and a
// double click on a line are OK; Enter on the focused Cancel button, Escape, closing the window and
// endRequested() are Cancel. `failed`:
// there is no display to show it on.
DialogResult runStartDialog(const char* title, const std::vector<std::string>& lines,
                            StartDialogChoice& choice);

}  // namespace vex
