#include "production/song/movements.h"

namespace vex::song {

namespace {

constexpr DrumLine drums[] = {
    // No drums: the heart, and the clock that finds its pace again.
    {0, 1, "impact", "X..............."},   {0, 1, "crash", "X..............."},
    {0, 3, "heart", "x..o............"},    {3, 1, "heart", "x..o....x..o...."},
    {1, 1, "tick", "....g.......g..."},     {2, 1, "tick", "g...g...g...g..."},
    {3, 1, "tick", "o.g.o.g.o.g.o.g."},

    {3, 1, "high tom", "........o..o...."}, {3, 1, "low tom", "..........o..xxx"},
};

constexpr NoteLine notes[] = {
    // One singer takes a bar for each note; a chord under every one makes it harmless, but for the last.
    {0, "soprano", "D5:16 | Eb5:16 | A5:16! | G#5:15! -:1"},
    {0, "pad", "Bb2+F3+D4:16 | C3+G3+Bb3+Eb4:16 | D3+A3+C4+F4:16 | E3+B3+D4+G#4:15 -:1"},
    {0, "choir", "Bb2+F3+D4:16? | C3+G3+Eb4:16? | D3+A3+F4:16? | E3+B3+G#4:15? -:1"},
    {0, "pulse bass", "Bb1:15! -:1 | C2:15! -:1 | D2:15! -:1 | E2:12! -:4"},
    {0, "far bell", "-:12 F5:4? | -:8 G5:4? Bb5:4? | -:4 C6:4? F6:4? A6:4? | -:16"},
    {1, "arp",
     "C5:1? Eb5:1? G5:1? Eb5:1? C5:1? Eb5:1? G5:1? Bb5:1? C5:1? Eb5:1? G5:1? Eb5:1? Bb5:1? G5:1? Eb5:1? "
     "G5:1? |"
     "D5:1? F5:1? A5:1? F5:1? C6:1? A5:1? F5:1? A5:1? D5:1? F5:1? A5:1? C6:1? F6:1? C6:1? A5:1? F5:1? |"
     "E5:1 G#5:1 B5:1 G#5:1 D6:1 B5:1 G#5:1 B5:1 E5:1 G#5:1 B5:1 D6:1 G#6:1 D6:1 B5:1 G#5:1"},
    {0, "riser", "D3:62 -:2"},
    {3, "reversed bell", "E5+B5:14! -:2"},
};

constexpr CurvePoint curves[] = {
    // Brightness: everything opens.
    {"pad", 0, 0.05f},
    {"pad", 3, 0.9f},
    {"choir", 0, 0.1f},
    {"choir", 3, 0.5f},
    {"soprano", 0, 0.3f},
    {"soprano", 3, 0.9f},
    {"pulse bass", 0, 0.0f},
    {"pulse bass", 3, 0.15f},
    {"arp", 1, 0.02f},
    {"arp", 3.9, 0.6f},

    // A blow, a hole after it, a slope out of the hole.
    {"fader", 0, -1},
    {"fader", 0.5, -3.5f},
    {"fader", 2, -3.5f},
    {"fader", 3.98, -1.5f},
};

}  // namespace

Movement interludeOne() {
  return {drums, notes, curves, {}};
}

}  // namespace vex::song
