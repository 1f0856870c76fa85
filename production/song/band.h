#pragma once

#include "production/song/score.h"
#include "production/synth/mix.h"

// Who plays the score, and where on the stage they stand.

namespace vex {

// Adds all of the score to the mix's buses.
void playScore(Mix& mix, const Score& score);

}  // namespace vex
