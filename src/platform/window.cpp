#include "platform/window.h"

#include <GL/freeglut.h>
#include <GL/glx.h>
#include <X11/Xatom.h>

#include <chrono>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "platform/desktop.h"
#include "platform/display_modes.h"
#include "platform/end_request.h"
#include "platform/frame_pacer.h"
#include "platform/gl_context.h"
#include "platform/icon_image.h"
#include "platform/player_window.h"
#include "platform/screen_modes.h"
#include "platform/screen_saver.h"
#include "platform/server_loss.h"

namespace vex {

namespace {

WindowReports reports;
WindowCallbacks callbacks;
std::optional<FramePacer> pacer;
bool inGameMode = false;
bool leaving = false;

// What went wrong inside GLUT; its own answer would be to end the process with code 1.
void failFromGlut(const char* format, std::va_list arguments) {
  char text[512];
  std::vsnprintf(text, sizeof text, format, arguments);
  reports.fail(text);
  std::abort();
}

void logFromGlut(const char* format, std::va_list arguments) {
  char text[512];
  std::vsnprintf(text, sizeof text, format, arguments);
  reports.log(text);
}

// Xlib's own answer to a refused request, too, would be to end the process with code 1.
int logXError(Display* display, XErrorEvent* error) {
  char reason[128];
  XGetErrorText(display, error->error_code, reason, sizeof reason);
  reports.log(("X request " + std::to_string(error->request_code) + "." + std::to_string(error->minor_code) +
               ": " + reason)
                  .c_str());
  return 0;
}

void checkDisplay() {
  const DisplayHandle display = openDisplay();
  if (!display) reports.fail(missingDisplayText().c_str());
  int attributes[] = {GLX_RGBA, GLX_DOUBLEBUFFER, GLX_DEPTH_SIZE, 1, GLX_STENCIL_SIZE, 1, GLX_ALPHA_SIZE, 1,
                      None};
  int errorBase, eventBase;
  if (!glXQueryExtension(display.get(), &errorBase, &eventBase)) {
    reports.fail(("no OpenGL on X display \"" + std::string(DisplayString(display.get())) + "\"").c_str());
  }
  const std::unique_ptr<XVisualInfo, Release<XFree>> visual(
      glXChooseVisual(display.get(), DefaultScreen(display.get()), attributes));
  if (!visual) {
    reports.fail(("no OpenGL window with alpha, depth and stencil on X display \"" +
                  std::string(DisplayString(display.get())) + "\"")
                     .c_str());
  }
}

void initGlut() {
  static char noName[] = "";
  static char* arguments[] = {noName, nullptr};
  static int count = 1;
  glutInitErrorFunc(failFromGlut);
  glutInitWarningFunc(logFromGlut);
  glutInit(&count, arguments);
  glutSetOption(GLUT_ACTION_ON_WINDOW_CLOSE, GLUT_ACTION_CONTINUE_EXECUTION);
  glutInitDisplayMode(GLUT_DOUBLE | GLUT_ALPHA | GLUT_DEPTH | GLUT_STENCIL);
}

// Black until the first frame; also what GLUT insists on before it handles events.
void showBlack() {
  glClear(GL_COLOR_BUFFER_BIT);
  glutSwapBuffers();
}

bool windowManagerRuns(Display* display) {
  const Atom check = XInternAtom(display, "_NET_SUPPORTING_WM_CHECK", False);
  Atom type;
  int format;
  unsigned long count = 0, rest;
  unsigned char* value = nullptr;
  XGetWindowProperty(display, DefaultRootWindow(display), check, 0, 1, False, XA_WINDOW, &type, &format,
                     &count, &rest, &value);
  if (value) XFree(value);
  return count > 0;
}

void createWindow(const char* title, int left, int top, int width, int height) {
  glutInitWindowPosition(left, top);
  glutInitWindowSize(width, height);
  glutCreateWindow(title);
  glutDisplayFunc(showBlack);
}

void handleEvents(int milliseconds) {
  for (int passed = 0; passed < milliseconds; passed += 10) {
    glutMainLoopEvent();
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
}

bool enterGameMode(const WindowRequest& request) {
  char text[128];
  std::snprintf(text, sizeof text, "%dx%d:%d@60", request.width, request.height, request.bitsPerPixel);
  glutGameModeString(text);
  if (!glutGameModeGet(GLUT_GAME_MODE_POSSIBLE)) {
    reports.log((std::string("game mode ") + text + " is not possible").c_str());
    return false;
  }
  // The game mode leaves the desktop its extent and makes the window as large: a smaller mode would
  // show one corner of the picture.
  const int desktopWidth = glutGet(GLUT_SCREEN_WIDTH);
  const int desktopHeight = glutGet(GLUT_SCREEN_HEIGHT);
  if (desktopWidth != request.width || desktopHeight != request.height) {
    reports.log((std::string("game mode ") + text + " does not fit the desktop of " +
                 std::to_string(desktopWidth) + "x" + std::to_string(desktopHeight))
                    .c_str());
    return false;
  }
  glutEnterGameMode();
  if (!glutGameModeGet(GLUT_GAME_MODE_ACTIVE)) {
    reports.log((std::string("game mode ") + text + " was refused").c_str());
    return false;
  }
  glutDisplayFunc(showBlack);
  handleEvents(100);
  const int width = glutGet(GLUT_WINDOW_WIDTH);
  const int height = glutGet(GLUT_WINDOW_HEIGHT);
  if (width == request.width && height == request.height) return true;
  reports.log(
      (std::string("game mode ") + text + " gave " + std::to_string(width) + "x" + std::to_string(height))
          .c_str());
  glutLeaveGameMode();
  return false;
}

// Sets the mode asked for, the game mode where that is possible; otherwise the log says why it stays.
void changeMode(const WindowRequest& request) {
  if (const std::string obstacle = guardDesktop(); !obstacle.empty()) {
    reports.log(("full screen keeps the desktop's mode, which nothing would restore: " + obstacle).c_str());
    return;
  }
  inGameMode = enterGameMode(request);
  if (inGameMode || switchScreenMode(request.width, request.height)) return;
  reports.log(("display mode " + std::to_string(request.width) + "x" + std::to_string(request.height) +
               " cannot be set, full screen keeps the desktop's")
                  .c_str());
}

void openFullscreen(const WindowRequest& request) {
  changeMode(request);
  if (inGameMode) return;
  // Full screen means the screen on which the window stands. Without a window manager GLUT would take
  // the size that the desktop had when the program began.
  const DisplayHandle display = openDisplay();
  if (const PrimaryOutput primary = findPrimaryOutput(display.get()); primary && primary.crtc) {
    const XRRCrtcInfo& screen = *primary.crtc;
    createWindow(request.title, screen.x, screen.y, static_cast<int>(screen.width),
                 static_cast<int>(screen.height));
  } else {
    const int screen = DefaultScreen(display.get());
    createWindow(request.title, 0, 0, DisplayWidth(display.get(), screen),
                 DisplayHeight(display.get(), screen));
  }
  if (windowManagerRuns(display.get())) glutFullScreen();
}

// Title bar, task bar and switcher show it; GLUT has no call for that.
void setIcon(Display* display, Window window) {
  std::vector<unsigned long> data;  // the format asks for longs, whatever their size
  for (const int size : {16, 32, 48, 64}) {
    data.push_back(static_cast<unsigned long>(size));
    data.push_back(static_cast<unsigned long>(size));
    for (const std::uint32_t argb : drawIcon(size)) data.push_back(argb);
  }
  XChangeProperty(display, window, XInternAtom(display, "_NET_WM_ICON", False), XA_CARDINAL, 32,
                  PropModeReplace, reinterpret_cast<const unsigned char*>(data.data()),
                  static_cast<int>(data.size()));
}

template <typename Function>
Function entryPoint(const char* name) {
  return reinterpret_cast<Function>(glXGetProcAddressARB(reinterpret_cast<const GLubyte*>(name)));
}

// Whether the GL takes the wish to swap once per refresh. Its entry points crash where the screen's
// list does not name them.
bool askForVerticalSync(Display* display, GLXDrawable drawable) {
  const char* list = glXQueryExtensionsString(display, DefaultScreen(display));
  const std::string padded = " " + std::string(list ? list : "") + " ";
  const auto listed = [&](const char* name) {
    return padded.find(" " + std::string(name) + " ") != std::string::npos;
  };
  if (listed("GLX_EXT_swap_control")) {
    if (auto* set = entryPoint<void (*)(Display*, GLXDrawable, int)>("glXSwapIntervalEXT")) {
      set(display, drawable, 1);
      return true;
    }
  }
  if (listed("GLX_MESA_swap_control")) {
    if (auto* set = entryPoint<int (*)(unsigned)>("glXSwapIntervalMESA")) return set(1) == 0;
  }
  if (listed("GLX_SGI_swap_control")) {
    if (auto* set = entryPoint<int (*)(int)>("glXSwapIntervalSGI")) return set(1) == 0;
  }
  return false;
}

// Nobody hands out the keyboard where no window manager does.
void takeKeyboard(Display* display, Window window) {
  XWindowAttributes attributes;
  if (!XGetWindowAttributes(display, window, &attributes) || attributes.map_state != IsViewable) return;
  XSetInputFocus(display, window, RevertToPointerRoot, CurrentTime);
  XFlush(display);
}

void runFrame() {
  if (endRequested()) callbacks.requestClose();
  keepAwake();
  callbacks.frame();
}

// Before the main loop nothing is there yet that could go on without its window.
void closeBeforeTheLoop() {
  leaveGameMode();
  std::exit(0);
}

std::string earlyKeys;  // pressed before the main loop, which answers them

void keepKey(unsigned char key, int, int) {
  earlyKeys += static_cast<char>(key);
}

// The window dies when this returns: the last frame, which shuts the show down, needs its context.
void closeWindow() {
  if (leaving) return;
  callbacks.requestClose();
  callbacks.frame();
}

}  // namespace

void releaseGrabs() {
  if (!playerWindow.handle) return;
  Display* display = glXGetCurrentDisplay();
  if (!display) return;
  XUngrabPointer(display, CurrentTime);
  XUngrabKeyboard(display, CurrentTime);
  XSync(display, False);
}

void restoreGrabs() {
  if (!inGameMode) return;
  Display* display = glXGetCurrentDisplay();
  const Window window = playerWindow.handle;
  XGrabPointer(display, window, True, ButtonPressMask | ButtonReleaseMask | PointerMotionMask, GrabModeAsync,
               GrabModeAsync, window, None, CurrentTime);
  XGrabKeyboard(display, window, False, GrabModeAsync, GrabModeAsync, CurrentTime);
  XSync(display, False);
}

void openWindow(const WindowRequest& request, const WindowReports& sinks) {
  reports = sinks;
  checkDisplay();
  XSetErrorHandler(logXError);
  endWithServer();
  initGlut();
  if (request.fullscreen) {
    openFullscreen(request);
  } else {
    createWindow(request.title, (glutGet(GLUT_SCREEN_WIDTH) - request.width) / 2,
                 (glutGet(GLUT_SCREEN_HEIGHT) - request.height) / 2, request.width, request.height);
  }
  glutSetCursor(GLUT_CURSOR_NONE);

  Display* display = glXGetCurrentDisplay();
  const GLXDrawable drawable = glXGetCurrentDrawable();
  if (!display || !drawable) reports.fail("the OpenGL window could not be opened");
  setIcon(display, drawable);
  playerWindow = {.handle = drawable, .fullscreen = request.fullscreen};
  glContext = {
      .extensionSupported = [](const char* name) { return glutExtensionSupported(name) > 0; },
      .entryPoint = [](const char* name) { return reinterpret_cast<void*>(glutGetProcAddress(name)); }};
  pacer.emplace(refreshRate(), askForVerticalSync(display, drawable));

  glutKeyboardFunc(keepKey);
  glutCloseFunc(closeBeforeTheLoop);
  // Loading takes a while and handles no events: let the window appear first.
  handleEvents(100);
  if (!windowManagerRuns(display)) takeKeyboard(display, drawable);
}

void runMainLoop(const WindowCallbacks& wanted) {
  callbacks = wanted;
  holdBlanking();
  glutReshapeFunc(callbacks.reshape);
  glutKeyboardFunc(callbacks.keyboard);
  glutIdleFunc(runFrame);
  glutDisplayFunc(runFrame);
  glutCloseFunc(closeWindow);
  // GLUT told the size while the window opened, and tells it again only when it changes.
  callbacks.reshape(glutGet(GLUT_WINDOW_WIDTH), glutGet(GLUT_WINDOW_HEIGHT));
  callbacks.begin();
  for (const char key : std::exchange(earlyKeys, {}))
    callbacks.keyboard(static_cast<unsigned char>(key), 0, 0);
  glutMainLoop();
  std::exit(0);
}

void swapBuffers() {
  glutSwapBuffers();
  const FramePacer::Time now = std::chrono::steady_clock::now();
  const FramePacer::Time until = pacer ? pacer->afterSwap(now) : now;
  if (until > now) std::this_thread::sleep_until(until);
}

void leaveGameMode() {
  leaving = true;
  releaseBlanking();
  if (inGameMode) glutLeaveGameMode();
  inGameMode = false;
  restoreDesktop();
}

}  // namespace vex
