#include "shell/progress.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <utility>

namespace vex {

namespace {

constexpr int barWidth = 30;
constexpr std::chrono::milliseconds redrawInterval{100};

}  // namespace

Progress::Progress(std::string job, int steps)
    : name(std::move(job)), total(std::max(steps, 1)), terminal(isatty(STDOUT_FILENO) != 0) {}

double Progress::secondsLeft(int done) const {
  const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - start;
  return done > 0 ? passed.count() / done * (total - done) : 0.0;
}

void Progress::update(int done, const std::string& note) {
  const int percent = static_cast<int>(100LL * done / total);
  if (terminal) {
    const auto now = std::chrono::steady_clock::now();
    if (now - lastDrawn < redrawInterval && done < total) return;
    lastDrawn = now;
    const auto filled = static_cast<std::size_t>(barWidth * percent / 100);
    const int left = static_cast<int>(secondsLeft(done) + 0.5);
    std::printf("\r%s [%s%s] %3d %%  %d:%02d left  %-24s", name.c_str(), std::string(filled, '#').c_str(),
                std::string(barWidth - filled, '.').c_str(), percent, left / 60, left % 60, note.c_str());
  } else {
    if (percent / 10 == lastTenth) return;
    lastTenth = percent / 10;
    std::printf("%s %d %%%s%s\n", name.c_str(), percent, note.empty() ? "" : "  ", note.c_str());
  }
  std::fflush(stdout);
}

void Progress::end() {
  if (terminal) std::printf("\n");
  std::fflush(stdout);
}

}  // namespace vex
