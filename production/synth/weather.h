#pragma once

#include "production/synth/voice.h"

// Breath, rain and thunder: noise that is shaped.

namespace vex::synth {

// One breath, in or out, for the whole length. The pitch is the size of the throat: high ones breathe in.
Voice makeBreath(const NoteCall& call);

// Rain on water: a hiss, and drops that ring. Grows for its first quarter.
Voice makeRain(const NoteCall& call);

// A crack and its rolling, which lasts the whole length and rings in the pitch, its fifth and octaves.
Voice makeThunder(const NoteCall& call);

}  // namespace vex::synth
