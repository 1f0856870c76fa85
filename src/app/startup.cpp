#include "app/startup.h"

#include <GL/gl.h>

#include <cstdlib>
#include <memory>

#include "app/display_mode.h"
#include "app/gl_window.h"
#include "app/music.h"
#include "app/presentation.h"
#include "app/title.h"
#include "base/clock.h"
#include "base/files.h"
#include "base/options.h"
#include "base/quit.h"
#include "base/report.h"
#include "base/window_size.h"
#include "platform/end_request.h"
#include "platform/loading_dialog.h"
#include "platform/message.h"
#include "platform/window.h"

namespace vex {

namespace {

constexpr unsigned char escapeKey = 27;

// The window's callbacks know of it only here.
std::unique_ptr<Presentation> presentation;

[[noreturn]] void shutDown() {
  presentation.reset();
  leaveGameMode();
  std::exit(0);
}

// Between two steps of the loading everything made so far can go.
void showLoadingStep(int percent, const char* text) {
  showLoadingProgress(percent, text);
  if (endRequested()) {
    closeLoadingWindow();
    shutDown();
  }
}

// Once per idle or display event. Painting the background and clearing the depth buffer belong to
// the scenes.
void frameCallback() {
  if (quitRequested() > 0) shutDown();
  clockTick();
  presentation->drawFrame();
  glFinish();
  swapBuffers();
  glClear(GL_STENCIL_BUFFER_BIT);
}

void reshapeCallback(int width, int height) {
  setWindowSize(width, height);
  glViewport(0, 0, width, height);
}

void keyboardCallback(unsigned char key, int, int) {
  if (key == escapeKey) requestQuit(1);
}

}  // namespace

void runPlayer() {
  catchEndSignals();
  enableMessageWindows();
  const DisplayMode mode = runDisplayModeDialog();
  presentation = std::make_unique<Presentation>();
  setUpGl(mode, options().fullscreen);
  openLoadingWindow(programTitle);
  setLoadingDialog({.show = showLoadingStep, .close = closeLoadingWindow});
  presentation->load();
  presentation->begin();
  closeLoadingDialog();
  startMusic();
  runMainLoop({.frame = frameCallback,
               .reshape = reshapeCallback,
               .keyboard = keyboardCallback,
               .begin = clockReset,
               .requestClose = [] { requestQuit(1); }});
}

}  // namespace vex
