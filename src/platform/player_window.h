#pragma once

// What the dialogs must know of the player's window to be seen and heard above it.

namespace vex {

struct PlayerWindow {
  unsigned long handle = 0;  // X window, 0 while there is none
  bool fullscreen = false;
};

inline PlayerWindow playerWindow;

// The game mode holds pointer and keyboard; a dialog cannot be answered before they are free.
void releaseGrabs();
void restoreGrabs();

}  // namespace vex
