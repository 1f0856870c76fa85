#include "production/progress.h"

#include <algorithm>
#include <cstdio>

namespace vex {

Progress::Progress(ProgressStyle theStyle, int theCount, float theWork)
    : style(theStyle), count(theCount), work(theWork) {}

Progress::~Progress() {
  if (style == ProgressStyle::bar && done > 0) std::printf("\n");
}

void Progress::finished(const std::string& name, float productWork) {
  ++done;
  workDone += productWork;
  if (style == ProgressStyle::lines) std::printf("%d/%d %s\n", done, count, name.c_str());
  if (style == ProgressStyle::bar) {
    constexpr int width = 30;
    const float share = std::min(1.0f, workDone / work);
    const double elapsed = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    const int filled = static_cast<int>(share * width);
    std::printf("\r[%.*s%*s] %3d %%, %.0f s left  %-32s", filled, "##############################",
                width - filled, "", static_cast<int>(share * 100), elapsed / share * (1 - share),
                name.c_str());
  }
  std::fflush(stdout);
}

}  // namespace vex
