#pragma once

#include "production/synth/voice.h"

// Breath, wind and dust.

namespace vex::synth {

// Human voices without words: saws and breath through four formants that open from "oo" to "ah" with
// the brightness and with time.
Voice makeChoir(const NoteCall& call);
// The same voices: they grow for the whole length and are soon gone.
Voice makeSwell(const NoteCall& call);
// The same voices shout.
Voice makeChoirStab(const NoteCall& call);

// Noise and a tone that climb for the whole length and stop dead.
Voice makeRiser(const NoteCall& call);
// The same downwards.
Voice makeFall(const NoteCall& call);
// Dust on an old film.
Voice makeCrackle(const NoteCall& call);

}  // namespace vex::synth
