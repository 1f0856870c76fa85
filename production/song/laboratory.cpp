#include "production/song/movements.h"

namespace vex::song {

namespace {

constexpr DrumLine drums[] = {
    // A lamp that ticks as it warms.
    {0, 1, "impact", "x..............."},
    {0, 4, "tick", "..........g....."},
    {2, 2, "heart", "x..o............"},
    {3, 1, "high tom", "........X..x...."},
    {3, 1, "low tom", "..........x..xXX"},
    // Half time: one back beat a bar.
    {4, 1, "crash", "x..............."},
    {4, 1, "kick", "X.........x....."},
    {5, 1, "kick", "X..x......x..o.."},
    {6, 1, "kick", "X.........x....."},
    {7, 1, "kick", "X..x............"},
    {4, 3, "snare", "........X......g"},
    {7, 1, "snare", "........X..o.oxx"},
    {4, 4, "closed hat", "g.g.g.o.g.g.g.og"},
    {4, 2, "tick", "....o.......g..."},
    {6, 2, "tock", "....o.....g.g..."},
    {7, 1, "low tom", "..........x.x..."},
    {8, 1, "crash", "o..............."},
    {8, 1, "kick", "X..x......x....x"},
    {9, 1, "kick", "X..x..o...x....."},
    {10, 1, "kick", "X..x......x....x"},
    {11, 1, "kick", "X..x..o........."},
    {8, 3, "snare", "...g....X..g..g."},
    {11, 1, "snare", "...g....X.g.o.xx"},
    {8, 4, "clap", "........x......."},
    {8, 4, "closed hat", "xgogxgogxgogxgog"},
    {8, 4, "open hat", "......o.......o."},
    {10, 2, "clank", "............g..."},
    {11, 1, "high tom", "........x..x...."},
    {11, 1, "low tom", "..........x..x.x"},
    // The alarm drives; the back beat comes twice as often, then runs.
    {12, 1, "impact", "o..............."},
    {12, 1, "crash", "x..............."},
    {12, 2, "kick", "X...X...X...X..."},
    {14, 1, "kick", "X...X...X.x.X.x."},
    {15, 1, "kick", "X.x.X.x.XxX....."},
    {12, 2, "snare", "........X......."},
    {14, 1, "snare", "....x.o.x.o.xoxo"},
    {15, 1, "snare", "xoxoxxxxrrrr...."},
    {12, 2, "closed hat", "..o...o...o...o."},
    {14, 1, "closed hat", "x.o.x.o.x.o.x.o."},
    {15, 1, "closed hat", "xoxoxoxoxoxo...."},
    {15, 1, "low tom", "....x..x.x.x...."},
    // Glass.
    {16, 1, "impact", "X..............."},
    {16, 1, "shatter", "X..............."},
    {17, 1, "shatter", "o..........g...."},
    {16, 2, "crash", "X..............."},
    {16, 1, "kick", "X.....x...x....."},
    {17, 1, "kick", "X..x..x...x...x."},
    {18, 1, "kick", "X.....x...x....."},
    {16, 2, "snare", "........X....o.g"},
    {18, 1, "snare", "........X..o.o.."},
    {16, 3, "clap", "........x......."},
    {16, 3, "ride", "x.x.x.x.x.x.x.x."},
    {16, 3, "open hat", "..o...o...o...o."},
    {18, 1, "crash", "x..............."},
    {19, 1, "impact", "o..............."},
    {19, 1, "high tom", "........o.xo...."},
    {19, 1, "low tom", "..........o.x.xx"},
};

constexpr NoteLine notes[] = {
    // The line is open; then somebody dials the motif, and the line is engaged.
    {0, "telephone", "F4+A4:26? -:6 | D5+A5:5 -:3 Eb5+Bb5:5 -:3 | A5+E6:5 -:3 G#5+D6:6 -:2"},
    {4, "telephone",
     "-:4 F4+A4:2? -:2 F4+A4:2? -:6 | -:16 | -:4 F4+A4:2? -:2 F4+A4:2? -:2 F4+A4:2? -:2 | -:16 |"
     "D5+A5:2 -:1 D5+A5:1 -:4 Eb5+Bb5:2 -:6 | A5+E6:2 -:1 A5+E6:1 -:4 G#5+D6:4 -:4 |"
     "D5+A5:2 -:1 D5+A5:1 -:4 Eb5+Bb5:2 -:2 Eb5+Bb5:2 -:2 | A5+E6:2 -:1 A5+E6:1 -:4 G#5+D6:6 -:2"},
    // In and out; quicker under the alarm, and held.
    {1, "breathing", "-:2 G5:6? D5:8? | G5:7? D5:9? | G5:7? D5:9?"},
    {4, "breathing",
     "G5:7? D5:9? | G5:7? D5:9? | G5:7 D5:9? | G5:7 D5:9? | G5:7 D5:9 | G5:7 D5:9 | G5:7 D5:9 | G5:7 D5:9 |"
     "G5:3 D5:5? G5:3 D5:5? | G5:3 D5:5? G5:3 D5:5? | G5:3 D5:5 G5:3 D5:5 | G5:2 D5:2 G5:2 D5:2 G5:4 -:4"},
    {0, "drone", "D1+A1+D2:62 -:2"},
    {2, "sub bass", "D2:28? -:4"},
    {4, "sub bass",
     "D2:7! -:3 D2:3 ~A1:3 | D2:7! -:1 F2:2 ~G2:3 ~G#2:3 | Bb1:7! -:3 Bb1:3 ~C2:3 | A1:7! -:1 A1:2 Bb1:3 "
     "C#2:3 |"
     "D2:6! -:2 D2:2 -:1 D2:2 ~C2:3 | Bb1:6! -:2 Bb1:2 -:1 A1:5 | G1:6! -:2 G1:2 -:1 G1:2 ~Bb1:3 |"
     "A1:6! -:2 A1:2 ~G#1:2 A1:2 C#2:2"},
    // The strings answer the telephone.
    {5, "low strings", "-:4 D4:2! Eb4:2! A4:4! G#4:4! | -:16 | -:4 Bb4:2! A4:2! F4:4! E4:2 C#4:2"},
    {4, "pad",
     "D3+A3+F4:32? | Bb2+F3+D4:16? | A2+E3+Bb3:16? |"
     "D3+A3+F4:16 | Bb2+F3+D4:16 | G2+D3+Bb3+F4:16 | A2+E3+C#4+G4:16"},
    // Eyes open: somebody remembers a lullaby.
    {8, "music box",
     "A5:4! F5:2 D5:2 E5:2 F5:2 D5:4 | Bb5:4! A5:2 F5:2 G5:2 A5:2 F5:4 |"
     "D6:4! Bb5:2 G5:2 A5:2 Bb5:2 G5:4 | C#6:4! A5:2 G5:2 E5:3! G#5:3 A5:2"},
    {8, "choir", "D3+A3+D4:32? | G3+Bb3+D4:16? | E3+A3+C#4:16?"},

    // A fourth upwards in half steps.
    {12, "alarm",
     "A4+Eb5:3! -:1 A4+Eb5:3! -:1 A4+Eb5:3! -:1 A4+Eb5:3! -:1 | A4+Eb5:3! -:1 A4+Eb5:3! -:1 A4+Eb5:3! -:1 "
     "A4+Eb5:3! -:1 |"
     "Bb4+E5:3! -:1 Bb4+E5:3! -:1 Bb4+E5:3! -:1 Bb4+E5:3! -:1 | C5+F#5:3! -:1 C5+F#5:3! -:1 C5+F#5:3! -:1 "
     "-:4"},
    {12, "drive bass",
     "A1:2! -:1 A1:1 A1:2! -:1 A1:1 A1:2! -:1 A1:1 A1:2! -:1 A1:1 |"
     "Bb1:2! -:1 Bb1:1 Bb1:2! -:1 Bb1:1 Bb1:2! -:1 Bb1:1 Bb1:2! -:1 Bb1:1 |"
     "B1:1! B1:1 -:1 B1:1 B1:1! B1:1 -:1 B1:1 B1:1! B1:1 -:1 B1:1 B1:1! B1:1 -:1 B1:1 |"
     "C#2:1! C#2:1 C#3:1! C#2:1 C#2:1! C#2:1 C#3:1! C#2:1 C#2:1! C#3:1! C#2:1! C#3:1! -:4"},
    {12, "choir", "A2+E3+C#4:16? | Bb2+F3+D4:16 | B2+F3+D4+G#4:16 | C#3+G3+Bb3+E4:12! -:4"},
    {12, "pad", "A2+E3+G3+C#4:16? | Bb2+F3+G#3+D4:16 | B2+F3+G#3+D4:16 | C#3+G3+Bb3+E4:12! -:4"},
    {14, "arp",
     "B4:1 D5:1 F5:1 G#5:1 B4:1 D5:1 F5:1 G#5:1 B4:1 D5:1 F5:1 G#5:1 B5:1 G#5:1 F5:1 D5:1 |"
     "C#5:1 E5:1 G5:1 Bb5:1 E5:1 G5:1 Bb5:1 C#6:1 G5:1 Bb5:1 C#6:1 E6:1 -:4"},
    {12, "riser", "D3:60! -:4"},
    {15, "reversed bell", "D5+A5:12! -:4"},

    // The jar bursts: a chord a bar under the motif in bells.
    {16, "fall", "D5:32!"},
    {16, "bell", "D5:16! | Eb5:16! | A5:16! | G#5:16!"},
    {16, "choir", "D3+A3+D4+F4:16! | Eb3+G3+Bb3+Eb4:16! | E3+A3+C#4+A4:16! | D3+G#3+B3+F4:14 -:2"},
    {16, "pad", "D3+A3+F4:16! | Eb3+Bb3+G4:16! | E3+A3+C#4+A4:16 | F3+G#3+B3+D4:14 -:2"},
    {16, "stab", "D4+F4+A4+D5:6! -:10 | Eb4+G4+Bb4+Eb5:6! -:10 | C#4+E4+A4:4! -:12"},
    {16, "drive bass",
     "D2:4! -:2 D2:2 -:2 D2:2! A1:2 C2:2 | Eb2:4! -:2 Eb2:2 -:2 Eb2:2! Bb1:2 D2:2 |"
     "A1:4! -:2 A1:2 -:2 A1:2! E2:2 ~G2:2 | G#1:8! -:8"},
    {16, "strings",
     "D5:1! A4:1 F4:1 A4:1 D5:1 F5:1 A5:1 F5:1 D5:1! A4:1 F4:1 A4:1 D5:1 F5:1 A5:1 D6:1 |"
     "Eb5:1! Bb4:1 G4:1 Bb4:1 Eb5:1 G5:1 Bb5:1 G5:1 Eb5:1! Bb4:1 G4:1 Bb4:1 Eb5:1 G5:1 Bb5:1 Eb6:1 |"
     "E5:1! C#5:1 A4:1 C#5:1 E5:1 A5:1 C#6:1 A5:1 E5:1! C#5:1 A4:1 C#5:1 E5:1 G5:1 A5:1 C#6:1"},
    {19, "riser", "D3:30! -:2"},
    {19, "swell", "D3+G#3+B3+F4:15! -:1"},
};

constexpr CurvePoint curves[] = {
    {"telephone", 0, 0.2f},   {"telephone", 8, 0.5f},  {"breathing", 1, 0.2f},   {"breathing", 15, 0.8f},
    {"sub bass", 2, 0.2f},    {"sub bass", 12, 0.6f},  {"pad", 4, 0.25f},        {"pad", 8, 0.45f},
    {"pad", 12, 0.15f},       {"pad", 15.7, 0.9f},     {"pad", 16, 0.7f},        {"pad", 19, 0.4f},
    {"choir", 8, 0.1f},       {"choir", 12, 0.2f},     {"choir", 15.7, 0.9f},    {"choir", 16, 0.9f},
    {"alarm", 12, 0.2f},      {"alarm", 15, 0.8f},     {"drive bass", 12, 0.1f}, {"drive bass", 15.7, 0.8f},
    {"drive bass", 16, 0.5f}, {"arp", 14, 0.2f},       {"arp", 15.7, 0.8f},      {"swell", 19, 0.7f},

    {"fader", 0, -2.5f},      {"fader", 4, -2.5f},     {"fader", 8, -2.5f},      {"fader", 12, -4},
    {"fader", 15.7, -1.5f},   {"fader", 15.74, -1.5f}, {"fader", 15.755, -18},   {"fader", 15.99, -24},
    {"fader", 16, -1},        {"fader", 18, -1.5f},    {"fader", 19, -3},        {"fader", 20, -2},
    {"low cut", 0, 20},       {"low cut", 13, 20},     {"low cut", 14, 60},      {"low cut", 15.75, 240},
    {"low cut", 15.99, 240},  {"low cut", 16, 20},     {"low cut", 19, 20},      {"low cut", 19.99, 160},
    {"low cut", 20, 20},
};

}  // namespace

Movement laboratory() {
  return {drums, notes, curves, {}};
}

}  // namespace vex::song
