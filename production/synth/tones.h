#pragma once

#include "production/synth/voice.h"

// Subtractive voices: oscillators into filters.

namespace vex::synth {

// Bowed darkness: low saws under a slow filter and partials that come and go.
Voice makeDrone(const NoteCall& call);
// Short and round, with a clean sine below.
Voice makePulseBass(const NoteCall& call);
// Two saws against each other, driven through the ladder; the sine below stays clean. Mono.
Voice makeDriveBass(const NoteCall& call);
// Frequency modulation by ratios that are no whole numbers, clipped: struck iron over a clean sine. Mono.
Voice makeMetalBass(const NoteCall& call);
// Detuned saws and a pulse, with late vibrato and glide.
Voice makeLead(const NoteCall& call);
// A reedy pulse for the voice that answers.
Voice makeCounter(const NoteCall& call);
// Chord of many saws that shuts at once.
Voice makeStab(const NoteCall& call);
// The same saws, slow and warm.
Voice makePad(const NoteCall& call);
// Short hollow pulse for running figures.
Voice makeArp(const NoteCall& call);

}  // namespace vex::synth
