#pragma once

#include <map>
#include <string_view>
#include <vector>

#include "production/song/arrangement.h"
#include "production/song/notation.h"

// The song. The motif is D, E flat, A, G sharp: a half step, a tritone and a half step back. Each
// section states it in another voice, and it does not reach home until the water, or until an interlude
// that ends the show, adds the A.

namespace vex::song {

// Sections in a row, with bars that count from the start of the first.
struct Score {
  std::vector<DrumLine> drums;
  std::vector<NoteLine> notes;
  std::vector<Rewind> rewinds;
  std::map<std::string_view, std::vector<CurvePoint>> curves;
};

Score writeScore(Arrangement sections);

// Value of a curve at a bar, or `otherwise` when there is no curve of that name. Before the first point
// and after the last their values hold.
float curveAt(const Score& score, std::string_view name, double bar, float otherwise);

}  // namespace vex::song
