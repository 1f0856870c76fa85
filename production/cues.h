#pragma once

#include <array>
#include <string_view>
#include <vector>

// When things happen: the one table that the music and the time line both read, so that a moved cue
// moves both. Bars and beats count from 0; a bar has four beats.

namespace vex {

inline constexpr double beatsPerMinute = 128.0;
inline constexpr int beatsPerBar = 4;
inline constexpr double secondsPerBeat = 60.0 / beatsPerMinute;        // 0.46875, exact in binary
inline constexpr double secondsPerBar = beatsPerBar * secondsPerBeat;  // 1.875
inline constexpr int songBars = 32;

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
    Cue{0, 0, CueKind::section, "prologue"},
    Cue{0, 2, CueKind::accent, "first heartbeat"},
    Cue{2, 0, CueKind::cut, "first bell"},
    Cue{4, 0, CueKind::cut, "far motif"},
    Cue{4, 2, CueKind::accent, "far motif 2"},
    Cue{5, 0, CueKind::accent, "far motif 3"},
    Cue{5, 2, CueKind::accent, "far motif 4"},
    Cue{6, 0, CueKind::cut, "eye opens"},
    Cue{7, 0, CueKind::accent, "heart races"},
    Cue{7, 3.5, CueKind::silence, "breath"},

    // The mechanism starts.
    Cue{8, 0, CueKind::section, "pulse"},
    Cue{9, 3, CueKind::fill, "kick fill"},
    Cue{10, 0, CueKind::cut, "kick"},
    Cue{11, 2, CueKind::fill, "lock fill"},
    Cue{12, 0, CueKind::cut, "lock"},
    Cue{13, 2, CueKind::fill, "build fill"},
    Cue{14, 0, CueKind::cut, "build"},
    Cue{15, 0, CueKind::accent, "build doubles"},
    Cue{15, 3, CueKind::silence, "hold"},

    // Everything at once. Stabs stand on the cuts.
    Cue{16, 0, CueKind::section, "drop"},
    Cue{17, 2.5, CueKind::accent, "stab"},
    Cue{18, 0, CueKind::cut, "drop cut 2"},
    Cue{19, 2, CueKind::fill, "drop fill"},
    Cue{20, 0, CueKind::cut, "drop cut 3"},
    Cue{21, 2.5, CueKind::accent, "stab 2"},
    Cue{22, 0, CueKind::cut, "drop cut 4"},
    Cue{23, 2, CueKind::fill, "climax fill"},

    // The motif against itself; the choir stands up.
    Cue{24, 0, CueKind::section, "climax"},
    Cue{26, 0, CueKind::cut, "counter voice"},
    Cue{27, 2, CueKind::fill, "unison fill"},
    Cue{28, 0, CueKind::cut, "unison"},
    Cue{28, 2, CueKind::accent, "unison 2"},
    Cue{29, 0, CueKind::accent, "unison 3"},
    Cue{29, 2, CueKind::accent, "unison 4"},
    Cue{29, 3.5, CueKind::silence, "last breath"},

    // The last chord; the motif comes to rest at last, on the note that it had been missing.
    Cue{30, 0, CueKind::section, "chord"},
    Cue{31, 2, CueKind::accent, "rest"},
    Cue{32, 0, CueKind::silence, "end"},
};

// Seconds from the start of the music. Fatal: "cue table: no cue is named %s".
double cueSeconds(std::string_view name);

// Seconds of every kick drum, ascending: where the music ducks, lights can dip too.
std::vector<double> kickSeconds();

}  // namespace vex
