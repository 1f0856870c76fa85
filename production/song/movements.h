#pragma once

#include <span>

#include "production/song/notation.h"

// The movements of the song, each in a source of its own. Their bars count from the movement's first.

namespace vex {

struct Movement {
  int firstBar;
  std::span<const DrumLine> drums;
  std::span<const NoteLine> notes;
  std::span<const CurvePoint> curves;
  std::span<const Rewind> rewinds;
};

Movement prologue();
Movement box();
Movement alien();
Movement interludeOne();
Movement interludeTwo();

}  // namespace vex
