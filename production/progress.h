#pragma once

#include <chrono>
#include <string>

#include "production/maker.h"

namespace vex {

// Progress on standard output: a bar that redraws itself with the time left, or a line for each product.
class Progress {
 public:
  Progress(ProgressStyle style, int count, float work);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  void finished(const std::string& name, float work);

 private:
  ProgressStyle style;
  int done = 0, count;
  float workDone = 0, work;
  std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();
};

}  // namespace vex
