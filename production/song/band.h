#pragma once

#include "production/song/score.h"
#include "production/synth/mix.h"

// Who plays the score, and where on the stage they stand.

namespace vex::song {

// Adds all of the score to the mix's buses.
void playScore(synth::Mix& mix, const Score& score);

}  // namespace vex::song
