#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

// When things happen: the one table that the music and the time line both read, so that a moved cue
// moves both. Bars and beats count from 0; a bar has four beats.

namespace vex {

inline constexpr double beatsPerMinute = 128.0;
inline constexpr int beatsPerBar = 4;
inline constexpr double secondsPerBeat = 60.0 / beatsPerMinute;        // 0.46875, exact in binary
inline constexpr double secondsPerBar = beatsPerBar * secondsPerBeat;  // 1.875
inline constexpr int songBars = 48;

// Where each movement begins. Everything in a movement, its cues and its notes, counts from there, so
// that a movement is moved by its one number.
inline constexpr int prologueBar = 0;
inline constexpr int boxBar = 8;
inline constexpr int alienBar = 24;
inline constexpr int interludeOneBar = 40;
inline constexpr int interludeTwoBar = 44;

enum class CueKind {
  section,  // a movement begins: the pictures change world
  cut,      // an accent strong enough for another camera
  accent,   // a flash, a jolt, a word
  fill,     // drums that lead into the next section begin
  silence,  // the music holds its breath up to the next cue
};

struct Cue {
  double bar;
  double beat;
  CueKind kind;
  std::string_view name;
};

constexpr double cueSeconds(double bar, double beat = 0) {
  return bar * secondsPerBar + beat * secondsPerBeat;
}

constexpr double cueSeconds(const Cue& cue) {
  return cueSeconds(cue.bar, cue.beat);
}

// In order of time; names are unique.
inline constexpr std::array cues{
    // Out of the dark: drone, heart, bells that run backwards, the motif once and far away.
    Cue{prologueBar + 0, 0, CueKind::section, "prologue"},
    Cue{prologueBar + 0, 2, CueKind::accent, "first heartbeat"},
    Cue{prologueBar + 2, 0, CueKind::cut, "first bell"},
    Cue{prologueBar + 4, 0, CueKind::cut, "far motif"},
    Cue{prologueBar + 4, 2, CueKind::accent, "far motif 2"},
    Cue{prologueBar + 5, 0, CueKind::accent, "far motif 3"},
    Cue{prologueBar + 5, 2, CueKind::accent, "far motif 4"},
    Cue{prologueBar + 6, 0, CueKind::cut, "eye opens"},
    Cue{prologueBar + 7, 0, CueKind::accent, "heart races"},
    Cue{prologueBar + 7, 3.5, CueKind::silence, "breath"},

    // Clockwork and choir; the lock gives way, the mechanism winds itself up.
    Cue{boxBar + 0, 0, CueKind::section, "box"},
    Cue{boxBar + 2, 0, CueKind::cut, "pulse"},
    Cue{boxBar + 3, 2, CueKind::fill, "lock fill"},
    Cue{boxBar + 4, 0, CueKind::cut, "lock"},
    Cue{boxBar + 4, 2, CueKind::accent, "bolt"},
    Cue{boxBar + 5, 2, CueKind::fill, "build fill"},
    Cue{boxBar + 6, 0, CueKind::cut, "build"},
    Cue{boxBar + 7, 0, CueKind::accent, "build doubles"},
    Cue{boxBar + 7, 3, CueKind::silence, "hold"},
    // The kick comes in where the lid lifts; four strokes on the motif's roots for the layers of the logo.
    Cue{boxBar + 8, 0, CueKind::cut, "lid"},
    Cue{boxBar + 9, 2, CueKind::fill, "layer fill"},
    Cue{boxBar + 10, 0, CueKind::accent, "layer 1"},
    Cue{boxBar + 11, 0, CueKind::accent, "layer 2"},
    Cue{boxBar + 12, 0, CueKind::accent, "layer 3"},
    Cue{boxBar + 13, 0, CueKind::accent, "layer 4"},
    Cue{boxBar + 13, 2, CueKind::fill, "last layer fill"},
    // Everything runs backwards and is shut in.
    Cue{boxBar + 14, 0, CueKind::cut, "backwards"},
    Cue{boxBar + 15, 0, CueKind::accent, "backwards 2"},
    Cue{boxBar + 15, 1, CueKind::fill, "drop fill"},
    Cue{boxBar + 15, 3, CueKind::silence, "shut"},

    // Broken drums, metal; cuts on every second bar, the music stops on two of them.
    Cue{alienBar + 0, 0, CueKind::section, "alien"},
    Cue{alienBar + 1, 2.5, CueKind::accent, "stab"},
    Cue{alienBar + 2, 0, CueKind::cut, "alien cut 2"},
    Cue{alienBar + 3, 2, CueKind::fill, "break fill"},
    Cue{alienBar + 4, 0, CueKind::silence, "break"},
    Cue{alienBar + 4, 2, CueKind::fill, "tom fill"},
    Cue{alienBar + 5, 0, CueKind::accent, "break over"},
    Cue{alienBar + 6, 0, CueKind::cut, "split"},
    Cue{alienBar + 7, 2, CueKind::fill, "half fill"},
    // Second half: a voice against the motif, plucked strings.
    Cue{alienBar + 8, 0, CueKind::cut, "counter voice"},
    Cue{alienBar + 9, 2.5, CueKind::accent, "stab 2"},
    Cue{alienBar + 10, 0, CueKind::cut, "alien cut 6"},
    Cue{alienBar + 11, 2, CueKind::fill, "break fill 2"},
    Cue{alienBar + 12, 0, CueKind::fill, "break 2"},
    Cue{alienBar + 12, 2, CueKind::silence, "break 2 hushed"},
    Cue{alienBar + 13, 0, CueKind::accent, "climax"},
    // The whole band strikes the motif, half a bar a note.
    Cue{alienBar + 14, 0, CueKind::cut, "unison"},
    Cue{alienBar + 14, 2, CueKind::accent, "unison 2"},
    Cue{alienBar + 15, 0, CueKind::accent, "unison 3"},
    Cue{alienBar + 15, 2, CueKind::accent, "unison 4"},
    Cue{alienBar + 15, 2.75, CueKind::fill, "alien fill"},

    // Drums out: one voice over a pad that opens.
    Cue{interludeOneBar + 0, 0, CueKind::section, "interlude one"},
    Cue{interludeOneBar + 1, 0, CueKind::accent, "title"},
    Cue{interludeOneBar + 2, 0, CueKind::cut, "pad opens"},
    Cue{interludeOneBar + 3, 0, CueKind::accent, "riser"},
    Cue{interludeOneBar + 3, 2, CueKind::fill, "interlude fill"},

    // Build and roll; the last stroke rings, and the motif comes to rest on the note it had been missing.
    Cue{interludeTwoBar + 0, 0, CueKind::section, "interlude two"},
    Cue{interludeTwoBar + 1, 0, CueKind::accent, "roll"},
    Cue{interludeTwoBar + 2, 0, CueKind::cut, "roll doubles"},
    Cue{interludeTwoBar + 2, 2, CueKind::fill, "last fill"},
    Cue{interludeTwoBar + 2, 3.5, CueKind::silence, "last breath"},
    Cue{interludeTwoBar + 3, 0, CueKind::cut, "last stroke"},
    Cue{interludeTwoBar + 3, 2, CueKind::accent, "rest"},
    Cue{songBars, 0, CueKind::silence, "end"},
};

// Seconds from the start of the music. Fatal: "cue table: no cue is named %s".
double cueSeconds(std::string_view name);

// The whole table as lines "seconds name", ascending.
std::string cueLines();

// Seconds of every kick drum, ascending: where the music ducks, lights can dip too.
std::vector<double> kickSeconds();

}  // namespace vex
