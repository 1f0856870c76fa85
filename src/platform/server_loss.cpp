#include "platform/server_loss.h"

#include <X11/Xlib.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>

#include "platform/replace_file.h"

namespace vex {

namespace {

// Xlib lets nobody go on with a lost connection. The guardian of the desktop sees to the display mode.
int endLost(Display* display) {
  std::fprintf(stderr, "%s: lost the X display \"%s\"\n", program_invocation_short_name,
               DisplayString(display));
  removeTemporaryFiles();
  std::_Exit(255);
}

}  // namespace

void endWithServer() {
  XSetIOErrorHandler(endLost);
}

}  // namespace vex
