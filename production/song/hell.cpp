#include "production/song/movements.h"

namespace vex {

namespace {

constexpr DrumLine drums[] = {
    {0, 1, "impact", "X..............."},
    {0, 1, "crash", "X..............."},
    {2, 1, "crash", "x..............."},
    {0, 1, "kick", "X.x.X..xX.x.X.x."},
    {1, 1, "kick", "X.x.X..xX.x.X.xx"},
    {2, 1, "kick", "X.x.X..xX.x.X.x."},
    {3, 1, "kick", "X.x.X..xX.x....."},
    {0, 3, "snare", "....X..g.g..X..g"},
    {3, 1, "snare", "....X..gxoxoXxrr"},
    {0, 4, "open hat", "o...o...o...o..."},
    {0, 4, "closed hat", "..x...x...x...x."},
    {0, 4, "clank", "o...........g..."},
    {3, 1, "low tom", "..........x..xxx"},
    // The kick gallops.
    {4, 1, "impact", "x..............."},
    {4, 1, "crash", "X..............."},
    {6, 1, "crash", "x..............."},
    {4, 3, "kick", "X.xxX.xxX.xxX.xx"},
    {7, 1, "kick", "X.xxX.xxX......."},
    {4, 3, "snare", "....X..g....X.gg"},
    {7, 1, "snare", "....X..oxoxXoxrr"},
    {4, 4, "clap", "....x.......x..."},
    {4, 4, "ride", "x.x.x.x.x.x.x.x."},
    {4, 4, "closed hat", ".g.g.g.g.g.g.g.g"},
    {7, 1, "high tom", "........x..x...."},
    {7, 1, "low tom", ".........x..xxxX"},
    // Under the lake: skins and one iron.
    {8, 3, "low tom", "X..X..X.X..X.X.."},
    {8, 3, "high tom", "..x..o....x....x"},
    {8, 3, "impact", "o.......o......."},
    {8, 3, "clank", "............o..."},
    {10, 1, "kick", "X.......X......."},
    {10, 1, "closed hat", "g.o.g.o.g.o.g.o."},
    {11, 1, "kick", "X...X...X.xx...."},
    {11, 1, "snare", "o.o.ooooxxrr...."},
    {11, 1, "low tom", "x..x..x.x.x....."},
    {11, 1, "closed hat", "x.x.x.x.x.x....."},
    // Eruption.
    {12, 1, "impact", "X..............."},
    {12, 2, "crash", "X..............."},
    {12, 1, "kick", "X.xxX.xxX.xxX.xx"},
    {13, 1, "kick", "X.xxX.xxX.xxX.X."},
    {12, 1, "snare", "....X..o.g..X.gg"},
    {13, 1, "snare", "....X..o.goox.xx"},
    {12, 2, "clap", "....x.......x..."},
    {12, 2, "ride", "x.x.x.x.x.x.x.x."},
    {12, 2, "closed hat", ".o.o.o.o.o.o.o.o"},
    {12, 2, "open hat", "..x...x...x...x."},
    {12, 2, "clank", "x.......o......."},
    // Three blows and a fourth that breaks it.
    {14, 1, "impact", "x.......x......."},
    {14, 1, "crash", "X.......X......."},
    {15, 1, "crash", "X...X..........."},
    {15, 1, "impact", "x..............."},
    {14, 1, "kick", "X..xx...X..xx.x."},
    {15, 1, "kick", "X.x.X..x.xx....."},
    {14, 1, "snare", "X....oo.X..o.oox"},
    {15, 1, "snare", "X...XoxxXxrr...."},
    {14, 1, "low tom", "...xx......xx..."},
    {15, 1, "low tom", "......x..xxx...."},
    {14, 1, "clank", "x.......x......."},
};

constexpr NoteLine notes[] = {
    {0, "fall", "D5:16!"},
    // The riff leans on E flat, the half step above home.
    {0, "fuzz bass",
     "D2:1! D2:1 -:1 D2:1 D2:2! Eb2:2! D2:1! D2:1 -:1 D2:1 F2:2! Eb2:2 |"
     "D2:1! D2:1 -:1 D2:1 D2:2! Eb2:2! G2:2! F2:2 Eb2:2 C2:2 |"
     "Eb2:1! Eb2:1 -:1 Eb2:1 Eb2:2! F2:2! Eb2:1! Eb2:1 -:1 Eb2:1 G2:2! F2:2 |"
     "C2:1! C2:1 -:1 C2:1 C2:2! D2:2! Bb1:2! C2:2 ~Eb2:2 ~G#1:2 |"
     "D2:1! -:1 D2:1 D2:1 D2:1! -:1 D2:1 D2:1 Eb2:1! -:1 Eb2:1 Eb2:1 Eb2:1! -:1 F2:1 Eb2:1 |"
     "A1:1! -:1 A1:1 A1:1 A1:1! -:1 A1:1 A1:1 G#1:1! -:1 G#1:1 G#1:1 G#1:1! -:1 Bb1:1 C2:1 |"
     "G1:1! -:1 G1:1 G1:1 Bb1:1! -:1 G1:1 G1:1 Eb2:1! -:1 Eb2:1 Eb2:1 G2:1! -:1 F2:1 Eb2:1 |"
     "C2:1! -:1 C2:1 C2:1 Eb2:1! -:1 C2:1 C2:1 Bb1:2! C2:2! Eb2:2! F2:2"},
    {0, "power chords",
     "D4+A4+D5:1! D4+A4+D5:1 -:2 D4+A4+D5:2! Eb4+Bb4+Eb5:2! D4+A4+D5:1! -:3 F4+C5+F5:2! Eb4+Bb4+Eb5:2! |"
     "D4+A4+D5:1! D4+A4+D5:1 -:2 D4+A4+D5:2! Eb4+Bb4+Eb5:2! G4+D5+G5:2! F4+C5+F5:2 Eb4+Bb4+Eb5:2! C4+G4+C5:2 "
     "|"
     "Eb4+Bb4+Eb5:1! Eb4+Bb4+Eb5:1 -:2 Eb4+Bb4+Eb5:2! F4+C5+F5:2! Eb4+Bb4+Eb5:1! -:3 G4+D5+G5:2! F4+C5+F5:2 |"
     "C4+G4+C5:1! C4+G4+C5:1 -:2 C4+G4+C5:2! D4+A4+D5:2! Bb3+F4+Bb4:2! C4+G4+C5:2! Eb4+Bb4+Eb5:2! -:2"},
    {12, "power chords",
     "D4+A4+D5:1! D4+A4+D5:1 -:2 D4+A4+D5:2! Eb4+Bb4+Eb5:2! D4+A4+D5:1! -:3 F4+C5+F5:2! Eb4+Bb4+Eb5:2! |"
     "C4+G4+C5:1! C4+G4+C5:1 -:2 C4+G4+C5:2! D4+A4+D5:2! Eb4+Bb4+Eb5:1! -:3 G4+D5+G5:2! F4+C5+F5:2!"},
    {0, "choir stab",
     "D3+A3+D4+F4:3! -:9 Eb3+Bb3+Eb4+G4:2! -:2 | -:6 Eb3+Bb3+Eb4+G4:2! -:2 D3+A3+D4+F4:4! -:2 |"
     "Eb3+G3+Bb3+Eb4:3! -:9 F3+Bb3+D4+F4:2! -:2 | C3+G3+C4+Eb4:3! -:5 Bb2+F3+Bb3+D4:2! -:2 C3+Eb3+G3+C4:2! "
     "-:2 |"
     "D3+A3+D4+F4:3! -:5 Eb3+Bb3+Eb4+G4:3! -:5 | A3+C4+E4+A4:3! -:5 G#3+C4+Eb4+G#4:3! -:5 |"
     "G3+Bb3+D4+G4:3! -:5 Eb3+G3+Bb3+Eb4:3! -:5 | C3+G3+C4+Eb4:3! -:5 Bb2+F3+Bb3+D4:2! -:2 C3+G3+C4+Eb4:2! "
     "-:2"},
    {0, "pad", "D3+A3+F4:32! | Eb3+Bb3+G4:16! | C3+G3+Eb4:16!"},
    // The organ of the cathedral says the motif as its chorale.
    {4, "organ", "D5:8! Eb5:8! | A5:8! G#5:8! | G5:6! A5:2 Bb5:4! G5:4 | Eb5:6! F5:2 Eb5:4 C5:4"},
    {4, "organ chords",
     "D4+F4+A4:8 Eb4+G4+Bb4:8 | E4+A4+C5:8 Eb4+G#4+C5:8 | D4+G4+Bb4:8 Eb4+G4+Bb4:8 | C4+Eb4+G4:8 D4+F4+Bb4:4 "
     "Eb4+G4+C5:4"},
    {6, "strings",
     "G4:1! G4:1 -:1 G4:1 Bb4:1! Bb4:1 -:1 Bb4:1 D5:1! D5:1 -:1 D5:1 Eb5:1! Eb5:1 -:1 Eb5:1 |"
     "C5:1! C5:1 -:1 C5:1 Eb5:1! Eb5:1 -:1 Eb5:1 F5:1! F5:1 -:1 F5:1 G5:1! G5:1 F5:1 Eb5:1"},

    // A chant from below; the pedal holds, embers rise.
    {8, "drone", "D1+A1+D2:60 -:4"},
    {8, "organ", "D3:30? -:2 | D3:16? | D3:11 -:5"},
    {8, "choir",
     "D3+A3:4? D3+A3:2? Eb3+Bb3:2? D3+A3:8? | F3+C4:4? Eb3+Bb3:4? D3+A3:8? |"
     "D3+A3+D4:4 F3+C4+F4:2 Eb3+Bb3+Eb4:2 G3+D4+G4:4! F3+C4+F4:4 | Eb3+A3+Eb4+G4:12! -:4"},
    {8, "far bell", "-:4 A5:2? Eb6:2? -:8 | -:8 D6:2? A5:2? G#5:4? | -:2 Eb6:2? D6:2? A5:2? -:8 | -:16"},
    {10, "fuzz bass",
     "D2:2 -:2 D2:2 -:2 D2:2! -:2 D2:2! -:2 | Eb2:1! Eb2:1 -:1 Eb2:1 Eb2:1! Eb2:1 -:1 Eb2:1 Eb2:1! Eb2:1! "
     "G2:1! "
     "A2:1! -:4"},
    {9, "riser", "D3:44! -:4"},
    {11, "reversed bell", "D5+Eb5:12! -:4"},

    {12, "fall", "D5:16!"},
    {12, "fuzz bass",
     "D2:1! D2:1 D3:1 D2:1 D2:2! Eb2:2! D2:1! D2:1 D3:1 D2:1 F2:2! Eb2:2! |"
     "C2:1! C2:1 C3:1 C2:1 C2:2! D2:2! Eb2:1! Eb2:1 Eb3:1 Eb2:1 G2:2! F2:2! |"
     "D2:3! D2:1 D2:1 -:1 F2:1 -:1 Eb2:3! Eb2:1 Eb2:1 -:1 G2:1 -:1 |"
     "A1:3! A1:1 G#1:3! G#1:1 C2:1 Eb2:1 G#2:2! -:4"},
    {12, "choir stab",
     "D3+A3+D4+F4:3! -:3 D3+A3+D4+F4:2! Eb3+Bb3+Eb4+G4:4! -:4 | C3+G3+C4+Eb4:3! -:3 C3+G3+C4+Eb4:2! "
     "Eb3+Bb3+Eb4+G4:4! F3+Bb3+D4+F4:4! |"
     "D3+A3+D4+F4:7! -:1 Eb3+Bb3+Eb4+G4:7! -:1 | E3+A3+C4+A4:3! -:1 Eb3+G#3+C4+G#4:8! -:4"},
    {12, "organ",
     "A5:4! G5:2 F5:2 Eb5:2! F5:2 G5:2 A5:2 | G5:4! F5:2 Eb5:2 G5:2! A5:2 Bb5:4! |"
     "D5:7! -:1 Eb5:7! -:1 | A5:3! -:1 G#5:8! -:4"},
    {12, "organ chords",
     "D4+F4+A4:8 Eb4+G4+Bb4:8 | C4+Eb4+G4:8 Eb4+G4+Bb4:8 | D4+F4+A4:7! -:1 Eb4+G4+Bb4:7! -:1 |"
     "E4+A4+C5:3! -:1 Eb4+G#4+C5:8! -:4"},
    {12, "lead octave", "D5:8! C5:4 D5:4 | Eb5:8! D5:4 C5:4 | D5:7! -:1 Eb5:7! -:1 | A5:3! -:1 G#5:8! -:4"},
    {14, "riser", "D3:28! -:4"},
};

constexpr CurvePoint curves[] = {
    {"fuzz bass", 0, 0.6f},     {"fuzz bass", 3.9, 0.8f}, {"fuzz bass", 4, 0.55f},
    {"fuzz bass", 8, 0.8f},     {"fuzz bass", 10, 0.05f}, {"fuzz bass", 11.7, 0.9f},
    {"fuzz bass", 12, 0.75f},   {"fuzz bass", 15, 1.0f},  {"choir stab", 0, 0.9f},
    {"choir stab", 15, 1.0f},   {"pad", 0, 0.8f},         {"organ", 4, 0.7f},
    {"organ", 8, 0.1f},         {"organ", 12, 1.0f},      {"organ chords", 4, 0.4f},
    {"organ chords", 12, 0.7f}, {"choir", 8, 0.1f},       {"choir", 11.5, 0.9f},
    {"lead octave", 12, 0.7f},

    {"fader", 0, -0.5f},        {"fader", 4, 0},          {"fader", 7.99, 0},
    {"fader", 8, -3},           {"fader", 10, -3},        {"fader", 11.74, -0.5f},
    {"fader", 11.755, -14},     {"fader", 11.99, -16},    {"fader", 12, 0.5f},
    {"fader", 15.74, 0.5f},     {"fader", 15.755, -14},   {"fader", 15.99, -18},
    {"fader", 16, 0},           {"low cut", 0, 20},       {"low cut", 10.5, 20},
    {"low cut", 11.75, 180},    {"low cut", 11.99, 180},  {"low cut", 12, 20},
};

}  // namespace

Movement hell() {
  return {drums, notes, curves, {}};
}

}  // namespace vex
