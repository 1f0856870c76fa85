#include "platform/desktop.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cmath>
#include <csignal>
#include <cstring>
#include <utility>
#include <vector>

#include "platform/screen_modes.h"

namespace vex {

namespace {

// How one screen stood: enough to put it back.
struct ScreenState {
  RRCrtc crtc = 0;
  RRMode mode = 0;
  int x = 0, y = 0;
  Rotation rotation = RR_Rotate_0;
  std::vector<RROutput> outputs;
  int width = 0, height = 0;      // of all screens together, in pixels
  int widthMm = 0, heightMm = 0;  // the same in millimetres
};

pid_t guardian = 0;
int lifeline = -1;  // its other end tells the guardian when this process is gone

int activeCrtcs(Display* display, const XRRScreenResources& resources) {
  int active = 0;
  for (int i = 0; i < resources.ncrtc; ++i) {
    const CrtcHandle crtc(
        XRRGetCrtcInfo(display, const_cast<XRRScreenResources*>(&resources), resources.crtcs[i]));
    if (crtc && crtc->mode) ++active;
  }
  return active;
}

// False where the primary screen cannot be told; there is then nothing that this program can change.
bool readScreen(Display* display, ScreenState& state) {
  const PrimaryOutput primary = findPrimaryOutput(display);
  if (!primary || !primary.crtc) return false;
  const int screen = DefaultScreen(display);
  state = {.crtc = primary.output->crtc,
           .mode = primary.crtc->mode,
           .x = primary.crtc->x,
           .y = primary.crtc->y,
           .rotation = primary.crtc->rotation,
           .outputs = {primary.crtc->outputs, primary.crtc->outputs + primary.crtc->noutput},
           .width = DisplayWidth(display, screen),
           .height = DisplayHeight(display, screen),
           .widthMm = DisplayWidthMM(display, screen),
           .heightMm = DisplayHeightMM(display, screen)};
  return true;
}

// A screen must lie inside the whole at every moment: the whole grows before it and shrinks after it.
bool applyScreen(Display* display, const ScreenState& state) {
  const PrimaryOutput primary = findPrimaryOutput(display);
  if (!primary) return false;
  const Window root = DefaultRootWindow(display);
  const int screen = DefaultScreen(display);
  const auto setWhole = [&] {
    XRRSetScreenSize(display, root, state.width, state.height, state.widthMm, state.heightMm);
  };
  const bool grows =
      state.width > DisplayWidth(display, screen) || state.height > DisplayHeight(display, screen);
  if (grows) setWhole();
  std::vector<RROutput> outputs = state.outputs;
  const Status status =
      XRRSetCrtcConfig(display, primary.resources.get(), state.crtc, CurrentTime, state.x, state.y,
                       state.mode, state.rotation, outputs.data(), static_cast<int>(outputs.size()));
  if (!grows) setWhole();
  XSync(display, False);
  return status == RRSetConfigSuccess;
}

int ignoreXError(Display*, XErrorEvent*) {
  return 0;
}

void restoreScreen(const ScreenState& saved) {
  const DisplayHandle display = openDisplay();
  if (!display) return;
  XSetErrorHandler(ignoreXError);
  ScreenState now;
  if (!readScreen(display.get(), now)) now.mode = 0;
  if (now.mode == saved.mode && now.width == saved.width && now.height == saved.height && now.x == saved.x &&
      now.y == saved.y) {
    return;
  }
  applyScreen(display.get(), saved);
  // The older mode extension learns of the change only when the server looks at its outputs anew.
  const ResourcesHandle looked(XRRGetScreenResources(display.get(), DefaultRootWindow(display.get())));
}

// Life of the guardian. It shares nothing with the player but its end of the lifeline: signals to
// the terminal's group and open files must not tie the two together.
[[noreturn]] void watch(int end, const ScreenState& saved) {
  setsid();
  prctl(PR_SET_NAME, "vex-guard");
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE}) std::signal(signal, SIG_IGN);
  const int nowhere = open("/dev/null", O_RDWR);
  for (int standard = 0; standard <= 2; ++standard) dup2(nowhere, standard);
  if (end != 3) dup2(end, 3);
  close_range(4, ~0U, 0);
  char byte = 1;
  if (write(3, &byte, 1) != 1) _exit(1);
  while (read(3, &byte, 1) < 0 && errno == EINTR) {
  }
  restoreScreen(saved);
  _exit(0);
}

}  // namespace

std::string guardDesktop() {
  if (guardian > 0) return {};
  ScreenState saved;
  {
    const DisplayHandle display = openDisplay();
    if (!display || !readScreen(display.get(), saved)) return "the display mode cannot be told";
  }
  int ends[2];
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) return std::strerror(errno);
  const pid_t child = fork();
  const int forkError = errno;
  if (child == 0) watch(ends[1], saved);
  close(ends[1]);
  // Nothing may change before the guardian stands on its own feet.
  char byte;
  if (child > 0 && read(ends[0], &byte, 1) == 1) {
    guardian = child;
    lifeline = ends[0];
    return {};
  }
  close(ends[0]);
  if (child < 0) return std::strerror(forkError);
  waitpid(child, nullptr, 0);
  return "its guardian ended";
}

bool switchScreenMode(int width, int height) {
  if (guardian <= 0) return false;
  const DisplayHandle display = openDisplay();
  ScreenState state;
  if (!display || !readScreen(display.get(), state)) return false;
  const PrimaryOutput primary = findPrimaryOutput(display.get());
  const XRRModeInfo* best = nullptr;
  for (int i = 0; i < primary.output->nmode; ++i) {
    const XRRModeInfo* mode = findMode(*primary.resources, primary.output->modes[i]);
    if (!mode || static_cast<int>(mode->width) != width || static_cast<int>(mode->height) != height) continue;
    if (!best || std::abs(modeRate(*mode) - 60) < std::abs(modeRate(*best) - 60)) best = mode;
  }
  if (!best) return false;
  if (best->id == state.mode) return true;

  // Alone on the desktop, the screen takes the whole desktop's size along, so that nothing scrolls.
  if (activeCrtcs(display.get(), *primary.resources) == 1 && state.x == 0 && state.y == 0) {
    const bool turned = state.rotation & (RR_Rotate_90 | RR_Rotate_270);
    state.widthMm = state.widthMm * width / state.width;
    state.heightMm = state.heightMm * height / state.height;
    state.width = turned ? height : width;
    state.height = turned ? width : height;
  }
  state.mode = best->id;
  auto* previous = XSetErrorHandler(ignoreXError);
  const bool done = applyScreen(display.get(), state);
  XSetErrorHandler(previous);
  return done;
}

void restoreDesktop() {
  if (!guardian) return;
  close(lifeline);
  waitpid(std::exchange(guardian, 0), nullptr, 0);
}

}  // namespace vex
