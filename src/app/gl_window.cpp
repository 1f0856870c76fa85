#include "app/gl_window.h"

#include "app/title.h"
#include "base/report.h"
#include "base/window_size.h"
#include "platform/window.h"
#include "textures/gl_setup.h"

namespace vex {

void setUpGl(const DisplayMode& mode, bool fullscreen) {
  const WindowRequest request{.title = programTitle,
                              .width = mode.width,
                              .height = mode.height,
                              .bitsPerPixel = mode.bitsPerPixel,
                              .fullscreen = fullscreen};
  openWindow(request, {.log = [](const char* line) { logPrintf("%s\n", line); },
                       .fail = [](const char* text) { fatalError("%s", text); }});
  setWindowSize(mode.width, mode.height);
  setUpGlState();
}

}  // namespace vex
