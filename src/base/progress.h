#pragma once

#include <chrono>
#include <string>

namespace vex {

enum class ProgressStyle {
  bar,    // redraws itself, with the time left
  lines,  // one at every tenth of the way
  none,
};

// A bar on a terminal, otherwise lines.
ProgressStyle progressStyleOfOutput();

// Progress of a long job on standard output.
class Progress {
 public:
  // `total` in any unit of work.
  Progress(std::string job, double total, ProgressStyle style = progressStyleOfOutput());

  void update(double done, const std::string& note = {});

  // Ends the bar's line; a job that was not completed leaves its bar as it stands.
  void end();

 private:
  std::string name;
  double total;
  ProgressStyle style;
  int lastTenth = -1;
  std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();
  std::chrono::steady_clock::time_point lastDrawn{};
};

}  // namespace vex
