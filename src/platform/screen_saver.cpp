#include "platform/screen_saver.h"

#include <X11/extensions/scrnsaver.h>

#include <chrono>

#include "platform/screen_modes.h"

namespace vex {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds sign{25};  // savers wait a minute at least

DisplayHandle connection;  // the suspension lasts as long as it
Clock::time_point nextSign;

}  // namespace

void holdBlanking() {
  if (!connection) connection = openDisplay();
  if (!connection) return;
  XResetScreenSaver(connection.get());  // it may have come on while the show was loading
  int eventBase, errorBase, major, minor;
  // XScreenSaverSuspend came with version 1.1 of the extension.
  if (XScreenSaverQueryExtension(connection.get(), &eventBase, &errorBase) &&
      XScreenSaverQueryVersion(connection.get(), &major, &minor) &&
      (major > 1 || (major == 1 && minor >= 1))) {
    XScreenSaverSuspend(connection.get(), True);
  }
  XFlush(connection.get());
  nextSign = Clock::now() + sign;
}

void releaseBlanking() {
  connection.reset();
}

void keepAwake() {
  if (!connection || Clock::now() < nextSign) return;
  XResetScreenSaver(connection.get());
  XFlush(connection.get());
  nextSign = Clock::now() + sign;
}

}  // namespace vex
