#pragma once

#include "production/synth/voice.h"

// The heavy voices and the pure one: additive pipes, synchronised and overdriven oscillators, rubbed glass.

namespace vex::synth {

// Little but its fundamental, felt more than heard. Mono.
Voice makeSubBass(const NoteCall& call);
// Three saws through more gain than is good for them, growling in a formant; the sine below stays clean.
// Mono.
Voice makeFuzzBass(const NoteCall& call);
// Pipes by their harmonics, with the chiff of the wind; brightness pulls the higher ranks.
Voice makeOrgan(const NoteCall& call);
// A saw that another one starts anew (windowed, so that nothing jumps), swept by the brightness.
Voice makeSyncLead(const NoteCall& call);
// A wet finger on the rim of a glass.
Voice makeGlassHarp(const NoteCall& call);

}  // namespace vex::synth
