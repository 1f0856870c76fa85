#pragma once

#include <sys/types.h>

#include <functional>
#include <string>

// A virtual X server of its own for each test, and programs under it, driven like a user would.

// Xlib's own header defines names that others use as well.
struct _XDisplay;

namespace vex {

using WindowId = unsigned long;

class XServer {
 public:
  // One screen of 24-bit depth. Fails the test when no server can be started.
  XServer(int width, int height);
  ~XServer();
  XServer(const XServer&) = delete;
  XServer& operator=(const XServer&) = delete;

  const std::string& display() const { return name; }

  // Key names are xdotool's ("Return", "Escape", "Tab", "space").
  void key(const std::string& names) const;

  // The visible window of that title and, unless 0, of that width; 0 when there is none.
  WindowId findWindow(const std::string& title, int width = 0) const;

  // The same, but waits for it to appear.
  WindowId waitForWindow(const std::string& title, int width = 0) const;

  // What a window manager sends when the close button is pressed.
  void pressCloseButton(WindowId window) const;

 private:
  pid_t process = -1;
  std::string name;
  _XDisplay* connection = nullptr;
};

// Whether the condition came true within the seconds.
bool waitUntil(const std::function<bool()>& condition, double seconds = 20.0);

class RunningProgram {
 public:
  // In the working folder, with `display` as DISPLAY (none when empty) and a silent sound device.
  RunningProgram(const std::string& path, const std::string& display);
  ~RunningProgram();  // kills it if it still runs
  RunningProgram(const RunningProgram&) = delete;
  RunningProgram& operator=(const RunningProgram&) = delete;

  void signal(int number) const;
  bool running();

  // Waits for its end: exit code, or -1 when it crashed or still runs after the seconds.
  int exitCode(double seconds = 20.0);

  // Its standard error so far.
  std::string errors() const;

 private:
  pid_t process = -1;
  int status = 0;
  bool ended = false;
  std::string errorFile;
};

}  // namespace vex
