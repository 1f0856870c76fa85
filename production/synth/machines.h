#pragma once

#include "production/synth/voice.h"

// Telephones, sirens and a console of three voices.

namespace vex::synth {

// Pure tones over a telephone line, one for each pitch. Mono.
Voice makeDialTone(const NoteCall& call);
// A siren's horn: the first pitch for half of the length, then the last. Mono.
Voice makeAlarm(const NoteCall& call);

// A pulse of 12.5 % (bright) to 50 % (dull) with volume in sixteen steps. A chord is played as a fast
// broken one. Mono.
Voice makeChipLead(const NoteCall& call);
// A triangle of sixteen steps. Mono.
Voice makeChipBass(const NoteCall& call);
// The console's noise: a shift register at two speeds.
Voice makeChipSnare(float rate, NoiseSource& noise);
Voice makeChipHat(float rate, NoiseSource& noise);

}  // namespace vex::synth
