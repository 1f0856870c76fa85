#pragma once

#include "production/synth/voice.h"

// Percussion. Each call draws fresh noise, so two hits of one drum differ a little.

namespace vex::synth {

Voice makeKick(float rate, NoiseSource& noise);
Voice makeHeart(float rate, NoiseSource& noise);
Voice makeSnare(float rate, NoiseSource& noise);
Voice makeClap(float rate, NoiseSource& noise);
Voice makeClosedHat(float rate, NoiseSource& noise);
Voice makeOpenHat(float rate, NoiseSource& noise);
Voice makeCrash(float rate, NoiseSource& noise);
Voice makeRide(float rate, NoiseSource& noise);
Voice makeHighTom(float rate, NoiseSource& noise);
Voice makeLowTom(float rate, NoiseSource& noise);
// The two strokes of an escapement, and the wheel behind it.
Voice makeTick(float rate, NoiseSource& noise);
Voice makeTock(float rate, NoiseSource& noise);
// Iron on iron.
Voice makeClank(float rate, NoiseSource& noise);
// A falling sub tone under a burst of dust.
Voice makeImpact(float rate, NoiseSource& noise);
// A pane of glass that falls.
Voice makeShatter(float rate, NoiseSource& noise);
// Light that cuts.
Voice makeLaser(float rate, NoiseSource& noise);
// One drop into deep water.
Voice makeDroplet(float rate, NoiseSource& noise);

}  // namespace vex::synth
