#include "production/song/movements.h"

namespace vex::song {

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
    {4, 4, "clap", "....X.......X..."},
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
    {12, 2, "clap", "....X.......X..."},
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
     "D2:1! -:1 D2:1 D2:1 Eb2:1! -:1 Eb2:1 Eb2:1 A1:1! -:1 A1:1 A1:1 Ab1:1! -:1 Ab1:1 Ab1:1 |"
     "F2:1! -:1 F2:1 F2:1 Gb2:1! -:1 Gb2:1 Gb2:1 C2:1! -:1 C2:1 C2:1 B1:1! -:1 B1:1 B1:1 |"
     "Ab1:1! -:1 Ab1:1 Ab1:1 A1:1! -:1 A1:1 A1:1 Eb2:1! -:1 Eb2:1 Eb2:1 D2:1! -:1 D2:1 D2:1 |"
     "B1:1! -:1 B1:1 B1:1 C2:1! -:1 C2:1 C2:1 Gb2:1! -:1 Gb2:1 Gb2:1 F2:1! -:1 F2:1 F2:1"},
    {0, "power chords",
     "D4+A4+D5:1! D4+A4+D5:1 -:2 D4+A4+D5:2! Eb4+Bb4+Eb5:2! D4+A4+D5:1! -:3 F4+C5+F5:2! Eb4+Bb4+Eb5:2! |"
     "D4+A4+D5:1! D4+A4+D5:1 -:2 D4+A4+D5:2! Eb4+Bb4+Eb5:2! G4+D5+G5:2! F4+C5+F5:2 Eb4+Bb4+Eb5:2! C4+G4+C5:2 "
     "|"
     "Eb4+Bb4+Eb5:1! Eb4+Bb4+Eb5:1 -:2 Eb4+Bb4+Eb5:2! F4+C5+F5:2! Eb4+Bb4+Eb5:1! -:3 G4+D5+G5:2! F4+C5+F5:2 |"
     "C4+G4+C5:1! C4+G4+C5:1 -:2 C4+G4+C5:2! D4+A4+D5:2! Bb3+F4+Bb4:2! C4+G4+C5:2! Eb4+Bb4+Eb5:2! -:2"},
    {4, "power chords",
     "D4+A4+D5:3! D4+A4+D5:1 Eb4+Bb4+Eb5:3! -:1 A3+E4+A4:3! A3+E4+A4:1 Ab3+Eb4+Ab4:3! -:1 |"
     "F4+C5+F5:3! F4+C5+F5:1 Gb4+Db5+Gb5:3! -:1 C4+G4+C5:3! C4+G4+C5:1 B3+Gb4+B4:3! -:1 |"
     "Ab3+Eb4+Ab4:3! Ab3+Eb4+Ab4:1 A3+E4+A4:3! -:1 Eb4+Bb4+Eb5:3! Eb4+Bb4+Eb5:1 D4+A4+D5:3! -:1 |"
     "B3+Gb4+B4:3! B3+Gb4+B4:1 C4+G4+C5:3! -:1 Gb4+Db5+Gb5:3! Gb4+Db5+Gb5:1 F4+C5+F5:3! -:1"},
    {12, "power chords",
     "Eb4+Bb4+Eb5:1! Eb4+Bb4+Eb5:1 -:2 Eb4+Bb4+Eb5:2! E4+B4+E5:2! Eb4+Bb4+Eb5:1! -:3 Gb4+Db5+Gb5:2! "
     "E4+B4+E5:2! |"
     "Db4+Ab4+Db5:1! Db4+Ab4+Db5:1 -:2 Db4+Ab4+Db5:2! Eb4+Bb4+Eb5:2! E4+B4+E5:1! -:3 Ab4+Eb5+Ab5:2! "
     "Gb4+Db5+Gb5:1! -:1 |"
     "Eb4+Bb4+Eb5:7! -:1 E4+B4+E5:7! -:1 | Bb3+F4+Bb4:3! -:1 A3+E4+A4:8! -:4"},
    {0, "choir stab",
     "D3+A3+D4+F4:3! -:9 Eb3+Bb3+Eb4+G4:2! -:2 | -:6 Eb3+Bb3+Eb4+G4:2! -:2 D3+A3+D4+F4:4! -:2 |"
     "Eb3+G3+Bb3+Eb4:3! -:9 F3+Bb3+D4+F4:2! -:2 | C3+G3+C4+Eb4:3! -:5 Bb2+F3+Bb3+D4:2! -:2 C3+Eb3+G3+C4:2! "
     "-:2 |"
     "D3+A3+D4+F4:3! -:5 A3+C4+E4+A4:3! -:5 | F3+C4+F4+Ab4:3! -:5 C3+G3+C4+Eb4:3! -:5 |"
     "Ab3+Eb4+Ab4+B4:3! -:5 Eb3+Bb3+Eb4+Gb4:3! -:5 | B3+D4+Gb4+B4:3! -:5 Gb3+A3+Db4+Gb4:3! -:1 "
     "F3+A3+C4+F4:2! -:2"},
    {0, "pad", "D3+A3+F4:32! | Eb3+Bb3+G4:16! | C3+G3+Eb4:16!"},
    // The organ of the cathedral climbs with the motif by minor thirds, until it is back.
    {4, "organ",
     "D5:4! Eb5:4! A5:4! G#5:4! | F5:4! Gb5:4! C6:4! B5:4! | Ab5:4! A5:4! Eb6:4! D6:4! | B5:4! C6:4! Gb6:4! "
     "F6:4!"},
    {4, "organ chords",
     "D4+F4+A4:4 Eb4+G4+Bb4:4 E4+A4+C5:4 Eb4+Ab4+C5:4 | F4+Ab4+C5:4 Gb4+Bb4+Db5:4 G4+C5+Eb5:4 Gb4+B4+Eb5:4 |"
     "Eb4+Ab4+B4:4 E4+A4+Db5:4 Gb4+Bb4+Eb5:4 Gb4+A4+D5:4 | Gb4+B4+D5:4 G4+C5+E5:4 A4+Db5+Gb5:4 A4+C5+F5:4"},
    {6, "strings",
     "Ab4:1! Ab4:1 -:1 Ab4:1 A4:1! A4:1 -:1 A4:1 Eb5:1! Eb5:1 -:1 Eb5:1 D5:1! D5:1 -:1 D5:1 |"
     "B4:1! B4:1 -:1 B4:1 C5:1! C5:1 -:1 C5:1 Gb5:1! Gb5:1 -:1 Gb5:1 F5:1! F5:1 F5:1 F5:1"},

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
    {11, "breathing", "-:12 G5:4!"},

    // Erupts a half step higher: the motif's second note has become home.
    {12, "fall", "Eb5:16!"},
    {12, "fuzz bass",
     "Eb2:1! Eb2:1 Eb3:1 Eb2:1 Eb2:2! E2:2! Eb2:1! Eb2:1 Eb3:1 Eb2:1 Gb2:2! E2:2! |"
     "Db2:1! Db2:1 Db3:1 Db2:1 Db2:2! Eb2:2! E2:1! E2:1 E3:1 E2:1 Ab2:2! Gb2:1! -:1 |"
     "Eb2:3! Eb2:1 Eb2:1 -:1 Gb2:1 -:1 E2:3! E2:1 E2:1 -:1 Ab2:1 -:1 |"
     "Bb1:3! Bb1:1 A1:3! A1:1 Db2:1 E2:1 A2:2! -:4"},
    {12, "choir stab",
     "Eb3+Bb3+Eb4+Gb4:3! -:3 Eb3+Bb3+Eb4+Gb4:2! E3+B3+E4+Ab4:4! -:4 | Db3+Ab3+Db4+E4:3! -:3 "
     "Db3+Ab3+Db4+E4:2! "
     "E3+B3+E4+Ab4:4! Gb3+B3+Eb4+Gb4:2! -:2 |"
     "Eb3+Bb3+Eb4+Gb4:7! -:1 E3+B3+E4+Ab4:7! -:1 | F3+Bb3+Db4+Bb4:3! -:1 E3+A3+Db4+A4:8! -:4"},
    {12, "organ",
     "Bb5:4! Ab5:2 Gb5:2 E5:2! Gb5:2 Ab5:2 Bb5:2 | Ab5:4! Gb5:2 E5:2 Ab5:2! Bb5:2 B5:3! -:1 |"
     "Eb5:7! -:1 E5:7! -:1 | Bb5:3! -:1 A5:8! -:4"},
    {12, "organ chords",
     "Eb4+Gb4+Bb4:8 E4+Ab4+B4:8 | Db4+E4+Ab4:8 E4+Ab4+B4:8 | Eb4+Gb4+Bb4:7! -:1 E4+Ab4+B4:7! -:1 |"
     "F4+Bb4+Db5:3! -:1 E4+A4+Db5:8! -:4"},
    {12, "lead octave",
     "Eb5:8! Db5:4 Eb5:4 | E5:8! Eb5:4 Db5:3 -:1 | Eb5:7! -:1 E5:7! -:1 | Bb5:3! -:1 A5:8! -:4"},
    {14, "riser", "Eb3:28! -:4"},
    {15, "reversed bell", "-:8 D5+Eb5+A5:8!"},
};

constexpr CurvePoint curves[] = {
    {"fuzz bass", 0, 0.6f},     {"fuzz bass", 3.9, 0.8f}, {"fuzz bass", 4, 0.55f},
    {"fuzz bass", 8, 0.8f},     {"fuzz bass", 10, 0.05f}, {"fuzz bass", 11.7, 0.9f},
    {"fuzz bass", 12, 0.75f},   {"fuzz bass", 15, 1.0f},  {"choir stab", 0, 0.9f},
    {"choir stab", 15, 1.0f},   {"pad", 0, 0.8f},         {"organ", 4, 0.7f},
    {"organ", 8, 0.1f},         {"organ", 12, 1.0f},      {"organ chords", 4, 0.4f},
    {"organ chords", 12, 0.7f}, {"choir", 8, 0.1f},       {"choir", 11.5, 0.9f},
    {"lead octave", 12, 0.7f},

    {"fader", 0, -0.6f},        {"fader", 7.99, -0.6f},   {"fader", 8, -2.5f},
    {"fader", 10, -2.5f},       {"fader", 11.74, -0.5f},  {"fader", 11.755, -10},
    {"fader", 11.99, -12},      {"fader", 12, 1},         {"fader", 15.74, 1},
    {"fader", 15.755, -8},      {"fader", 15.99, -12},    {"fader", 16, 0},
    {"low cut", 0, 20},         {"low cut", 10.5, 20},    {"low cut", 11.75, 180},
    {"low cut", 11.99, 180},    {"low cut", 12, 20},      {"breathing", 11.75, 0.9f},
};

}  // namespace

Movement hell() {
  return {drums, notes, curves, {}};
}

}  // namespace vex::song
