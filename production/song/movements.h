#pragma once

#include <span>

#include "production/song/notation.h"

// The sections of the song, each in a source of its own. Their bars count from the section's first.

namespace vex::song {

struct Movement {
  std::span<const DrumLine> drums;
  std::span<const NoteLine> notes;
  std::span<const CurvePoint> curves;
  std::span<const Rewind> rewinds;
};

Movement prologue();
Movement box();
Movement alien();
Movement interludeOne();
Movement laboratory();
Movement interludeTwo();
Movement interludeTwoEnds();    // its last bar when the show ends with it
Movement interludeTwoGoesOn();  // its last bar when another section follows
Movement hell();
Movement skull();
Movement water();
Movement outro();

}  // namespace vex::song
