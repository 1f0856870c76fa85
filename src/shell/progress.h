#pragma once

#include <chrono>
#include <string>

namespace vex {

// Progress of a long job on standard output: a bar with the time left on a terminal, otherwise a
// plain line at every tenth of the way.
class Progress {
 public:
  Progress(std::string job, int total);

  void update(int done, const std::string& note = {});

  // Ends the bar's line; on a terminal a job that was not completed leaves its bar as it stands.
  void end();

 private:
  double secondsLeft(int done) const;

  std::string name;
  int total;
  int lastTenth = -1;
  bool terminal;
  std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();
  std::chrono::steady_clock::time_point lastDrawn{};
};

}  // namespace vex
