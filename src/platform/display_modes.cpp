#include "platform/display_modes.h"

#include <X11/Xlib.h>

#include <algorithm>
#include <cstdlib>

#include "platform/screen_modes.h"

namespace vex {

bool displayReachable() {
  return openDisplay() != nullptr;
}

std::string missingDisplayText() {
  const char* name = std::getenv("DISPLAY");
  return std::string("no X display found (DISPLAY is \"") + (name ? name : "") + "\")";
}

std::vector<DisplayMode> enumerateDisplayModes() {
  std::vector<DisplayMode> modes;
  const DisplayHandle display = openDisplay();
  if (!display) return modes;
  const int screen = DefaultScreen(display.get());
  const int depth = DefaultDepth(display.get(), screen);
  const int bitsPerPixel = depth >= 24 ? 32 : depth;
  DisplayMode shown{DisplayWidth(display.get(), screen), DisplayHeight(display.get(), screen), bitsPerPixel};
  if (const PrimaryOutput primary = findPrimaryOutput(display.get())) {
    for (int i = 0; i < primary.output->nmode; ++i) {
      if (const XRRModeInfo* mode = findMode(*primary.resources, primary.output->modes[i])) {
        modes.push_back({static_cast<int>(mode->width), static_cast<int>(mode->height), bitsPerPixel});
      }
    }
    if (primary.crtc && primary.crtc->width > 0) {
      shown.width = static_cast<int>(primary.crtc->width);
      shown.height = static_cast<int>(primary.crtc->height);
    }
  }
  addShownSize(modes, shown);
  return modes;
}

void addShownSize(std::vector<DisplayMode>& modes, const DisplayMode& shown) {
  const bool listed = std::any_of(modes.begin(), modes.end(), [&](const DisplayMode& mode) {
    return mode.width == shown.width && mode.height == shown.height;
  });
  if (!listed) modes.insert(modes.begin(), shown);
}

double refreshRate() {
  constexpr double usual = 60.0;
  const DisplayHandle display = openDisplay();
  if (!display) return usual;
  const PrimaryOutput primary = findPrimaryOutput(display.get());
  if (!primary || !primary.crtc) return usual;
  const XRRModeInfo* mode = findMode(*primary.resources, primary.crtc->mode);
  const double rate = mode ? modeRate(*mode) : 0;
  return rate >= 1 ? rate : usual;
}

}  // namespace vex
