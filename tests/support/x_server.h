#pragma once

#include <X11/Xlib.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "tests/support/fatal.h"

// For test sources after <gtest/gtest.h>, whose names Xlib's macros would replace.
//
// Tests of windows and dialogs: an X server of their own without a screen to look at, and somebody
// at its keyboard.

namespace vex {

// A server with one screen of that size on a free display, which DISPLAY names while it lives. Throws
// when it does not start, which fails the test. `extension` is one that it does without.
class XServer {
 public:
  XServer(int width, int height, const char* extension = nullptr);
  ~XServer();
  XServer(const XServer&) = delete;
  XServer& operator=(const XServer&) = delete;

  // Ends it before its time, from whatever process.
  void stop() const;

 private:
  int process = 0;
  std::string previous;  // value of DISPLAY
};

struct CloseDisplay {
  void operator()(Display* display) const { XCloseDisplay(display); }
};
using TestDisplay = std::unique_ptr<Display, CloseDisplay>;

TestDisplay connect();

// Whether the condition came true within thirty seconds.
bool waitUntil(const std::function<bool()>& holds);

// The mapped window of that title and, unless 0, of that width; 0 when there is none.
Window findWindow(Display* display, const std::string& title, int width = 0);

// The same, waited for thirty seconds at most.
Window waitForWindow(Display* display, const std::string& title, int width = 0);

// The same for a dialog, which is ready when it has the keyboard.
Window waitForDialog(Display* display, const std::string& title);

// Adds that mode, at 60 Hz, to those that the server's screen can show.
void offerMode640x480();

// What the screen shows at that place, 0xRRGGBB.
unsigned long screenColour(Display* display, int x, int y);

// Waits until it has gone; false after thirty seconds.
bool waitUntilGone(Display* display, const std::string& title);

void pressKeys(Display* display, Window window, const std::vector<KeySym>& keys);

// What a window manager sends for the close button.
void pressCloseButton(Display* display, Window window);

// Runs `body` in a child of its own while `user` runs beside it in another.
ChildResult runWithUser(const std::function<void()>& body, const std::function<void(Display*)>& user);

}  // namespace vex
