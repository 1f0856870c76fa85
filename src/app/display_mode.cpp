#include "app/display_mode.h"

#include <cstdio>
#include <cstdlib>
#include <utility>

#include "app/title.h"
#include "base/options.h"
#include "base/report.h"
#include "platform/start_dialog.h"

namespace vex {

std::vector<DisplayMode> keepUsableModes(const std::vector<DisplayMode>& enumerated) {
  std::vector<DisplayMode> kept;
  for (std::size_t i = 0; i < enumerated.size() && i < maxEnumeratedModes; ++i) {
    if (enumerated[i].bitsPerPixel >= minBitsPerPixel) kept.push_back(enumerated[i]);
  }
  return kept;
}

void sortModes(std::vector<DisplayMode>& modes) {
  for (std::size_t pass = 0; pass < modes.size(); ++pass) {
    for (std::size_t i = 0; i + 1 < modes.size(); ++i) {
      const DisplayMode &a = modes[i], &b = modes[i + 1];
      if (a.bitsPerPixel < b.bitsPerPixel || a.height > b.height || a.width > b.width) {
        std::swap(modes[i], modes[i + 1]);
      }
    }
  }
}

std::string modeLine(const DisplayMode& mode) {
  char line[64];
  std::snprintf(line, sizeof line, "%dx%d:%d", mode.width, mode.height, mode.bitsPerPixel);
  return line;
}

int preselectMode(const std::vector<DisplayMode>& modes) {
  const auto distance = [&](std::size_t i) {
    const DisplayMode& mode = modes[i];
    return std::abs(mode.width - 640) + std::abs(mode.height - 480) + std::abs(mode.bitsPerPixel - 32);
  };
  std::size_t nearest = 0;
  for (std::size_t i = 1; i < modes.size(); ++i) {
    if (distance(i) < distance(nearest)) nearest = i;
  }
  return static_cast<int>(nearest);
}

DisplayMode runDisplayModeDialog() {
  if (!displayReachable()) fatalError("Couldn't init splash screen");
  std::vector<DisplayMode> modes = keepUsableModes(enumerateDisplayModes());
  sortModes(modes);
  if (modes.empty()) fatalError("No modes found... Quitting now");

  std::vector<std::string> lines;
  for (const DisplayMode& mode : modes) lines.push_back(modeLine(mode));
  StartDialogChoice choice{.line = preselectMode(modes), .fullscreen = true};
  switch (runStartDialog(programTitle, lines, choice)) {
    case DialogResult::failed:
      fatalError("Couldn't init splash screen");
    case DialogResult::cancel:
      std::exit(0);
    case DialogResult::ok:
      break;
  }
  options().fullscreen = choice.fullscreen;
  options().soundEnabled = !choice.noSound;
  options().showStats = choice.showStats;
  options().useStripCache = choice.useStripCache;
  return modes[static_cast<std::size_t>(choice.line)];
}

}  // namespace vex
