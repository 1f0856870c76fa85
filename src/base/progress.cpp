#include "base/progress.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <utility>

namespace vex {

namespace {

constexpr int barWidth = 30;
constexpr std::chrono::milliseconds redrawInterval{100};

}  // namespace

ProgressStyle progressStyleOfOutput() {
  return isatty(STDOUT_FILENO) != 0 ? ProgressStyle::bar : ProgressStyle::lines;
}

Progress::Progress(std::string job, double work, ProgressStyle asStyle)
    : name(std::move(job)), total(work), style(asStyle) {}

void Progress::update(double done, const std::string& note) {
  const double share = total > 0 ? std::clamp(done / total, 0.0, 1.0) : 1.0;
  const int percent = static_cast<int>(100 * share);
  if (style == ProgressStyle::bar) {
    const auto now = std::chrono::steady_clock::now();
    if (now - lastDrawn < redrawInterval && share < 1) return;
    lastDrawn = now;
    const double passed = std::chrono::duration<double>(now - start).count();
    const int left = share > 0 ? static_cast<int>(passed / share * (1 - share) + 0.5) : 0;
    const auto filled = static_cast<std::size_t>(barWidth * share);
    std::printf("\r%s [%s%s] %3d %%  %d:%02d left  %-32s", name.c_str(), std::string(filled, '#').c_str(),
                std::string(barWidth - filled, '.').c_str(), percent, left / 60, left % 60, note.c_str());
  } else if (style == ProgressStyle::lines && percent / 10 != lastTenth) {
    lastTenth = percent / 10;
    std::printf("%s %d %%%s%s\n", name.c_str(), percent, note.empty() ? "" : "  ", note.c_str());
  }
  std::fflush(stdout);
}

void Progress::end() {
  if (style == ProgressStyle::bar) std::printf("\n");
  std::fflush(stdout);
}

}  // namespace vex
