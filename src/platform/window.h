#pragma once

// The one GL window, in the desktop or full screen, and its main loop.

namespace vex {

struct WindowRequest {
  const char* title = "";
  int width = 0;   // pixels
  int height = 0;  // pixels
  int bitsPerPixel = 0;
  bool fullscreen = false;
};

struct WindowReports {
  void (*log)(const char* line) = nullptr;   // a line without line feed
  void (*fail)(const char* text) = nullptr;  // must not return
};

// Opens the window with a double-buffered RGBA context with depth and stencil, hides the cursor,
// makes the context current and points glContext at it. Full screen asks for GLUT's game mode
// "%dx%d:%d@60"; where that is impossible or would give another size, it says so through `log`, sets
// the mode itself and stretches a window over the screen. The desktop gets its mode back on every way
// out of the process, SIGKILL included. Missing display, GL or pixel format go to `fail`.
void openWindow(const WindowRequest& request, const WindowReports& reports);

struct WindowCallbacks {
  void (*frame)() = nullptr;                         // when idle and whenever the window must be redrawn
  void (*reshape)(int width, int height) = nullptr;  // before the first frame and on every change
  void (*keyboard)(unsigned char key, int x, int y) = nullptr;
  void (*begin)() = nullptr;         // once, when all the others are registered, before the first frame
  void (*requestClose)() = nullptr;  // close button or endRequested(); a frame() follows
};

// Runs the callbacks for ever; the process ends from inside frame(), which must end it after
// requestClose() (the window is going away). Screen blanking is held off meanwhile.
[[noreturn]] void runMainLoop(const WindowCallbacks& callbacks);

// Shows the frame. Where vertical sync is missing or not honoured, sleeps so that frames come no
// faster than the screen shows them.
void swapBuffers();

// Leaves full screen, if it is on, and lets the screen blank again. Harmless when windowed.
void leaveGameMode();

}  // namespace vex
