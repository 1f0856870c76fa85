#pragma once

#include "production/synth/voice.h"

// Struck and plucked things.

namespace vex::synth {

// Two FM pairs (Chowning 1973): a bell of bronze. `velocity` also brightens it.
Voice makeBell(const NoteCall& call);

// The same bell in its own room, run backwards: it ends at its loudest, `call.seconds` after its start.
Voice makeReversedBell(const NoteCall& call);

// The comb of a music box: a bar of steel, fixed at one end. Mono.
Voice makeTine(const NoteCall& call);

// A string after Karplus and Strong (1983); every pitch of the chord is one string.
Voice makePluck(const NoteCall& call);

}  // namespace vex::synth
