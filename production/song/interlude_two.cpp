#include "production/song/movements.h"

namespace vex::song {

namespace {

constexpr DrumLine drums[] = {
    {0, 1, "crash", "x..............."},
    {0, 1, "impact", "x..............."},
    {0, 1, "kick", "X...X...X...X..."},
    {1, 1, "kick", "X...X...X.x.X.x."},
    {2, 1, "kick", "X.x.X.x.XxxxX..."},
    {0, 1, "snare", "g...o...o...o..."},
    {1, 1, "snare", "o.o.o.o.o.o.oooo"},
    {2, 1, "snare", "ooooxxxxrrrrrr.."},
    {0, 1, "closed hat", "..o...o...o...o."},
    {1, 1, "closed hat", "x.o.x.o.x.o.x.o."},
    {2, 1, "closed hat", "xoxoxoxoxoxoxo.."},
    {1, 1, "clap", "....x.......x..."},
    {2, 1, "clap", "x...x...x.x.xx.."},
    {2, 1, "crash", "o..............."},
    {2, 1, "low tom", "........x.xx.x.."},
    // The stroke.
    {3, 1, "impact", "X..............."},
    {3, 1, "kick", "X..............."},
    {3, 1, "crash", "X..............."},
    {3, 1, "clank", "x..............."},
};

// Only the clock is left, and stops.
constexpr DrumLine lastDrums[] = {{3, 1, "tick", "........o...g..."}};

// The skins pick it up again.
constexpr DrumLine nextDrums[] = {
    {3, 1, "high tom", "......o.o..x.x.."},
    {3, 1, "low tom", ".........x..x.xX"},
    {3, 1, "snare", "........g.g.oorr"},
};

constexpr NoteLine notes[] = {
    // The motif over its dominant.
    {0, "lead", "D5:14! -:2 | Eb5:14! -:2 | A5:7! -:1 G#5:6! -:2"},
    {0, "lead octave", "D4:14! -:2 | Eb4:14! -:2 | A4:7! -:1 G#4:6! -:2"},
    {0, "drive bass",
     "A1:1! -:1 A1:1 -:1 A1:1! -:1 A1:1 -:1 A1:1! -:1 A1:1 -:1 A1:1! -:1 A1:1 -:1 |"
     "A1:1! A1:1 A2:1 A1:1 A1:1! A1:1 A2:1 A1:1 A1:1! A1:1 A2:1 A1:1 A1:1! A1:1 A2:1 A1:1 |"
     "A1:1! A1:1 A2:1! A1:1 A1:1! A1:1 A2:1! A1:1 A1:1! A2:1! A1:1! A2:1! A1:1! A2:1! -:2"},
    {0, "murmur",
     "-:2 D4+F4+A4:1 -:3 D4+F4+A4:1 -:1 -:2 D4+F4+A4:1 -:3 D4+F4+A4:1 -:1 |"
     "Eb4+G4+Bb4:1 -:1 Eb4+G4+Bb4:1 -:1 Eb4+G4+Bb4:1 -:1 Eb4+G4+Bb4:1 -:1 Eb4+G4+Bb4:1 -:1 Eb4+G4+Bb4:1 -:1 "
     "Eb4+G4+Bb4:1 -:1 Eb4+G4+Bb4:1 -:1 |"
     "E4+A4+C#5:1 E4+A4+C#5:1 -:1 E4+A4+C#5:1 E4+A4+C#5:1 -:1 E4+A4+C#5:1 -:1 F4+G#4+B4:1! F4+G#4+B4:1! "
     "F4+G#4+B4:1! F4+G#4+B4:1! F4+G#4+B4:1! F4+G#4+B4:1! -:2"},
    {0, "choir", "D3+A3+D4+F4:16? | Eb3+A3+Eb4+G4:16 | E3+A3+C#4+A4:8! D3+F3+B3+G#4:6! -:2"},
    {0, "pad", "D3+A3+F4:16 | Eb3+Bb3+G4:16 | E3+A3+C#4+A4:8! D3+F3+B3+G#4:6! -:2"},
    {1, "arp",
     "Eb5:1 G5:1 Bb5:1 Eb6:1 G5:1 Bb5:1 Eb6:1 G6:1 Bb5:1 Eb6:1 G6:1 Eb6:1 Bb5:1 Eb6:1 G6:1 Bb6:1 |"
     "A5:1 C#6:1 E6:1 A6:1 E6:1 C#6:1 A5:1 C#6:1 G#5:1 B5:1 D6:1 F6:1 G#6:1 B6:1 -:2"},
    {0, "riser", "A2:46! -:2"},
    {2, "reversed bell", "-:2 D5+A5:12! -:2"},
};

// The A that the motif had been missing.
constexpr NoteLine lastNotes[] = {
    {3, "lead", "A5:14! -:2"},
    {3, "lead octave", "A4:14! -:2"},
    {3, "final choir", "D3+A3+D4+F4+A4:16!"},
    {3, "final pad", "D2+A2+D3+F3+A3+E4:16!"},
    {3, "pulse bass", "D2:16!"},
    {3, "bell", "D3+A3+D4:16!"},
    {3, "fall", "D4:16"},
    {3, "last bell", "-:8 A5:8!"},
};

// It is not over: the half step below everything, and what comes is already breathing in.
constexpr NoteLine nextNotes[] = {
    {3, "bell", "D3+Eb3:16!"},        {3, "fall", "D4:12 -:4"},   {3, "pulse bass", "D2:12! -:4"},
    {3, "swell", "D3+Eb3+A3+D4:16!"}, {3, "riser", "-:4 D3:12!"},
};

constexpr CurvePoint curves[] = {
    {"drive bass", 0, 0.05f},
    {"drive bass", 2.9, 1.0f},
    {"lead", 0, 0.3f},
    {"lead", 2.5, 1.0f},
    {"lead", 3, 0.6f},
    {"lead octave", 0, 0.3f},
    {"lead octave", 2.5, 0.9f},
    {"choir", 0, 0.3f},
    {"choir", 2.5, 1.0f},
    {"pad", 0, 0.3f},
    {"pad", 2.5, 0.9f},
    {"arp", 1, 0.1f},
    {"arp", 2.9, 0.9f},
    {"pulse bass", 3, 0.1f},
    {"swell", 3, 0.6f},
    {"final choir", 3, 0.45f},
    {"final pad", 3, 0.3f},

    {"fader", 0, -3.5f},
    {"fader", 2.86, 0.3f},
    {"fader", 2.88, -12},
    {"fader", 2.99, -12},
    // As before the lid: the floor goes and comes back with the stroke.
    {"low cut", 0.9, 20},
    {"low cut", 1, 30},
    {"low cut", 2.87, 260},
    {"low cut", 2.99, 260},
    {"low cut", 3, 20},
};

constexpr CurvePoint lastCurves[] = {{"fader", 3, 1}, {"fader", 4, 0}};
constexpr CurvePoint nextCurves[] = {{"fader", 3, 0}, {"fader", 3.3, -4.5f}, {"fader", 3.98, -2.5f}};

}  // namespace

Movement interludeTwo() {
  return {drums, notes, curves, {}};
}

Movement interludeTwoEnds() {
  return {lastDrums, lastNotes, lastCurves, {}};
}

Movement interludeTwoGoesOn() {
  return {nextDrums, nextNotes, nextCurves, {}};
}

}  // namespace vex::song
