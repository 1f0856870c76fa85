#pragma once

class Fl_Window;

// What all dialogs share: one look, a place in the middle, a way to the keyboard.

namespace vex {

// Fonts, colours and icon of all dialogs. To be called before a dialog is made; a display must be
// reachable.
void prepareDialogs();

// Maps a borderless dialog in the middle of the work area, or of the player's window when that
// covers the screen, and above it then. Returns when it stands there, even if hidden.
void showDialog(Fl_Window& window);

// Holds the keyboard for a dialog; gives it back to the window that had it before.
class KeyboardLoan {
 public:
  explicit KeyboardLoan(Fl_Window& borrower);
  ~KeyboardLoan();
  KeyboardLoan(const KeyboardLoan&) = delete;
  KeyboardLoan& operator=(const KeyboardLoan&) = delete;

 private:
  unsigned long lender = 0;
  int revertTo = 0;
};

}  // namespace vex
