#include "tests/support/x_server.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <memory>
#include <thread>
#include <vector>

#include "tests/support/temporary_folder.h"

// clang-format off: last, since its macros would change what the others say.
#include <X11/Xlib.h>
#include <X11/Xutil.h>
// clang-format on

namespace vex {

namespace {

// A window may vanish between two requests about it.
int ignoreErrors(Display*, XErrorEvent*) {
  return 0;
}

struct Freed {
  void operator()(void* memory) const { XFree(memory); }
};

std::vector<Window> childrenOf(Display* connection, Window window) {
  Window root, parent, *list = nullptr;
  unsigned count = 0;
  if (!XQueryTree(connection, window, &root, &parent, &list, &count)) return {};
  const std::unique_ptr<Window, Freed> owner(list);
  return {list, list + count};
}

bool matches(Display* connection, Window window, const std::string& title, int width) {
  XWindowAttributes attributes;
  if (!XGetWindowAttributes(connection, window, &attributes)) return false;
  if (attributes.map_state != IsViewable || (width != 0 && attributes.width != width)) return false;
  char* text = nullptr;
  if (!XFetchName(connection, window, &text) || !text) return false;
  const std::unique_ptr<char, Freed> owner(text);
  return title == text;
}

}  // namespace

XServer::XServer(int width, int height) {
  XSetErrorHandler(ignoreErrors);
  int ends[2];
  if (pipe(ends) != 0) return;
  const std::string screen = std::to_string(width) + "x" + std::to_string(height) + "x24";
  const std::string descriptor = std::to_string(ends[1]);
  process = fork();
  if (process == 0) {
    close(ends[0]);
    const int nowhere = open("/dev/null", O_WRONLY);
    dup2(nowhere, STDERR_FILENO);
    execlp("Xvfb", "Xvfb", "-displayfd", descriptor.c_str(), "-screen", "0", screen.c_str(), "-noreset",
           "-nolisten", "tcp", static_cast<char*>(nullptr));
    _exit(127);
  }
  close(ends[1]);
  name = ":";
  for (char c; read(ends[0], &c, 1) == 1 && c != '\n';) name += c;
  close(ends[0]);
  connection = XOpenDisplay(name.c_str());
  if (!connection) ADD_FAILURE() << "no Xvfb";
}

XServer::~XServer() {
  if (connection) XCloseDisplay(connection);
  if (process > 0) {
    kill(process, SIGTERM);
    waitpid(process, nullptr, 0);
  }
}

void XServer::key(const std::string& names) const {
  const Program program = runProgram("DISPLAY=" + name + " xdotool key --delay 40 " + names);
  EXPECT_EQ(program.exitCode, 0) << program.errors;
}

WindowId XServer::findWindow(const std::string& title, int width) const {
  std::vector<Window> open{DefaultRootWindow(connection)};
  while (!open.empty()) {
    const Window window = open.back();
    open.pop_back();
    if (matches(connection, window, title, width)) return window;
    for (const Window child : childrenOf(connection, window)) open.push_back(child);
  }
  return 0;
}

WindowId XServer::waitForWindow(const std::string& title, int width) const {
  WindowId window = 0;
  EXPECT_TRUE(waitUntil([&] { return (window = findWindow(title, width)) != 0; }))
      << "no window " << title << " of width " << width;
  return window;
}

void XServer::pressCloseButton(WindowId window) const {
  XEvent event{};
  event.xclient.type = ClientMessage;
  event.xclient.window = window;
  event.xclient.message_type = XInternAtom(connection, "WM_PROTOCOLS", False);
  event.xclient.format = 32;
  event.xclient.data.l[0] = static_cast<long>(XInternAtom(connection, "WM_DELETE_WINDOW", False));
  XSendEvent(connection, window, False, NoEventMask, &event);
  XFlush(connection);
}

bool waitUntil(const std::function<bool()>& condition, double seconds) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  return true;
}

RunningProgram::RunningProgram(const std::string& path, const std::string& display) {
  char pattern[] = "/tmp/vextest.XXXXXX";
  const int descriptor = mkstemp(pattern);
  errorFile = pattern;
  process = fork();
  if (process == 0) {
    dup2(descriptor, STDERR_FILENO);
    setenv("ALSOFT_DRIVERS", "null", 1);
    display.empty() ? unsetenv("DISPLAY") : setenv("DISPLAY", display.c_str(), 1);
    execl(path.c_str(), path.c_str(), static_cast<char*>(nullptr));
    _exit(127);
  }
  close(descriptor);
}

RunningProgram::~RunningProgram() {
  if (running()) {
    signal(SIGKILL);
    waitpid(process, nullptr, 0);
  }
  unlink(errorFile.c_str());
}

void RunningProgram::signal(int number) const {
  kill(process, number);
}

bool RunningProgram::running() {
  if (!ended) ended = waitpid(process, &status, WNOHANG) == process;
  return !ended;
}

int RunningProgram::exitCode(double seconds) {
  if (!waitUntil([this] { return !running(); }, seconds)) return -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::string RunningProgram::errors() const {
  return readFile(errorFile);
}

}  // namespace vex
