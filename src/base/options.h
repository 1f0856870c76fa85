#pragma once

#include "base/current.h"

namespace vex {

// Set once by the start dialog, read anywhere. soundEnabled is cleared by every failure of the music.
struct Options {
  bool fullscreen = false;
  bool soundEnabled = false;
  bool showStats = false;
  bool useStripCache = false;
};

inline Options& options() {
  return current<Options>();
}

}  // namespace vex
