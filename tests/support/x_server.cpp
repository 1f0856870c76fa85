#include "tests/support/x_server.h"

#include <X11/Xutil.h>
#include <X11/extensions/Xrandr.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>

namespace vex {

namespace {

constexpr int patience = 30000;  // milliseconds; only failures wait so long
constexpr int pause = 20;

bool isNamed(Display* display, Window window, const std::string& title, int width) {
  XWindowAttributes attributes;
  char* name = nullptr;
  if (!XGetWindowAttributes(display, window, &attributes) || attributes.map_state != IsViewable) return false;
  if (width != 0 && attributes.width != width) return false;
  if (!XFetchName(display, window, &name) || !name) return false;
  const bool same = title == name;
  XFree(name);
  return same;
}

}  // namespace

bool waitUntil(const std::function<bool()>& holds) {
  for (int waited = 0; waited < patience; waited += pause) {
    if (holds()) return true;
    usleep(pause * 1000);
  }
  return false;
}

Window findWindow(Display* display, const std::string& title, int width) {
  Window root, parent, *children = nullptr, found = 0;
  unsigned count = 0;
  if (!XQueryTree(display, DefaultRootWindow(display), &root, &parent, &children, &count)) return 0;
  for (unsigned i = 0; i < count && !found; ++i) {
    if (isNamed(display, children[i], title, width)) found = children[i];
  }
  if (children) XFree(children);
  return found;
}

unsigned long screenColour(Display* display, int x, int y) {
  XImage* image = XGetImage(display, DefaultRootWindow(display), x, y, 1, 1, AllPlanes, ZPixmap);
  const unsigned long colour = XGetPixel(image, 0, 0) & 0xffffff;
  XDestroyImage(image);
  return colour;
}

void offerMode640x480() {
  const TestDisplay display = connect();
  XRRModeInfo mode{};
  mode.width = 640;
  mode.height = 480;
  mode.dotClock = 25175000;
  mode.hTotal = 800;
  mode.vTotal = 525;
  char name[] = "640x480";
  mode.name = name;
  mode.nameLength = 7;
  const Window root = DefaultRootWindow(display.get());
  const RRMode id = XRRCreateMode(display.get(), root, &mode);
  XRRScreenResources* resources = XRRGetScreenResourcesCurrent(display.get(), root);
  XRRAddOutputMode(display.get(), resources->outputs[0], id);
  XRRFreeScreenResources(resources);
  XSync(display.get(), False);
}

XServer::XServer(int width, int height, const char* extension) {
  const char* display = std::getenv("DISPLAY");
  previous = display ? display : "";
  int ends[2];
  if (pipe(ends) != 0) return;
  process = fork();
  if (process == 0) {
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    const std::string size = std::to_string(width) + "x" + std::to_string(height) + "x24";
    const std::string descriptor = std::to_string(ends[1]);
    if (!std::freopen("/dev/null", "w", stderr)) _exit(126);
    execlp("Xvfb", "Xvfb", "-displayfd", descriptor.c_str(), "-screen", "0", size.c_str(), "-noreset",
           "-nolisten", "tcp", extension ? "-extension" : nullptr, extension, nullptr);
    _exit(127);
  }
  close(ends[1]);
  std::string number;
  pollfd waiting{.fd = ends[0], .events = POLLIN, .revents = 0};
  char byte;
  while (poll(&waiting, 1, patience) > 0 && read(ends[0], &byte, 1) == 1 && byte != '\n') number += byte;
  close(ends[0]);
  if (number.empty()) throw std::runtime_error("Xvfb did not start");
  setenv("DISPLAY", (":" + number).c_str(), 1);
}

void XServer::stop() const {
  kill(process, SIGTERM);
}

XServer::~XServer() {
  if (process > 0) {
    stop();
    waitpid(process, nullptr, 0);
  }
  setenv("DISPLAY", previous.c_str(), 1);
}

TestDisplay connect() {
  // Windows come and go while they are looked at.
  XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });
  return TestDisplay(XOpenDisplay(nullptr));
}

Window waitForWindow(Display* display, const std::string& title, int width) {
  Window window = 0;
  waitUntil([&] { return (window = findWindow(display, title, width)) != 0; });
  return window;
}

Window waitForDialog(Display* display, const std::string& title) {
  Window window = 0;
  waitUntil([&] {
    Window focus;
    int revertTo;
    XGetInputFocus(display, &focus, &revertTo);
    window = findWindow(display, title);
    return window != 0 && window == focus;
  });
  return window;
}

bool waitUntilGone(Display* display, const std::string& title) {
  return waitUntil([&] { return findWindow(display, title) == 0; });
}

void pressKeys(Display* display, Window window, const std::vector<KeySym>& keys) {
  for (const KeySym key : keys) {
    for (const int type : {KeyPress, KeyRelease}) {
      XEvent event{};
      event.xkey.type = type;
      event.xkey.display = display;
      event.xkey.window = window;
      event.xkey.root = DefaultRootWindow(display);
      event.xkey.same_screen = True;
      event.xkey.keycode = XKeysymToKeycode(display, key);
      XSendEvent(display, window, True, type == KeyPress ? KeyPressMask : KeyReleaseMask, &event);
    }
    XSync(display, False);
    usleep(pause * 1000);
  }
}

void pressCloseButton(Display* display, Window window) {
  XEvent event{};
  event.xclient.type = ClientMessage;
  event.xclient.window = window;
  event.xclient.message_type = XInternAtom(display, "WM_PROTOCOLS", False);
  event.xclient.format = 32;
  event.xclient.data.l[0] = static_cast<long>(XInternAtom(display, "WM_DELETE_WINDOW", False));
  XSendEvent(display, window, False, NoEventMask, &event);
  XSync(display, False);
}

ChildResult runWithUser(const std::function<void()>& body, const std::function<void(Display*)>& user) {
  const int process = fork();
  if (process == 0) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (const TestDisplay display = connect()) user(display.get());
    _exit(0);
  }
  ChildResult result = runInChild(body);
  kill(process, SIGKILL);
  waitpid(process, nullptr, 0);
  return result;
}

}  // namespace vex
