#include "production/song/movements.h"

namespace vex::song {

namespace {

constexpr DrumLine drums[] = {
    // Broken drums: the second snare of every other bar comes late.
    {0, 1, "impact", "X..............."},
    {0, 1, "crash", "X..............."},
    {0, 1, "kick", "X.x.......xx...."},
    {1, 1, "kick", "X.x...x...x....."},
    {2, 1, "kick", "X.x.......xx...."},
    {3, 1, "kick", "X.x...x.X......."},
    {0, 1, "snare", "....X..o.g..X..o"},
    {1, 1, "snare", "....X..o.g....X."},
    {2, 1, "snare", "....X..o.g..X..o"},
    {3, 1, "snare", "....X..gxoxoXoxr"},
    {0, 4, "closed hat", "x.xgx.x.x.xgx.x."},
    {0, 4, "open hat", "......o.......o."},
    {0, 3, "clank", "..........g....."},
    {2, 1, "crash", "x..............."},
    {3, 1, "low tom", "..........x..x.x"},
    // Two beats of nothing but a tick, then toms.
    {4, 1, "tick", "....o...o.o.o.o."},
    {4, 1, "high tom", "........X.xx.x.."},
    {4, 1, "low tom", ".........x..X.xX"},
    {4, 1, "snare", "............o.oo"},
    {5, 1, "impact", "X..............."},
    {5, 1, "crash", "X..............."},
    {6, 1, "crash", "o..............."},
    {5, 1, "kick", "X.x.......xx..x."},
    {6, 1, "kick", "X..x..x...xx...."},
    {7, 1, "kick", "X.x...x.X.x....."},
    {5, 1, "snare", "....X..o.g..X..o"},
    {6, 1, "snare", "....X..o.oo...X."},
    {7, 1, "snare", "....X..gooooxxrr"},
    {5, 2, "clank", "......o......g.."},
    {5, 3, "closed hat", "xgogxgogxgogxgog"},
    {5, 3, "open hat", "..x.......x....."},
    {7, 1, "high tom", "........x..x...."},
    {7, 1, "low tom", ".............xxx"},

    // Second half: the ride runs, a clap joins.
    {8, 1, "impact", "X..............."},
    {8, 1, "crash", "X..............."},
    {10, 1, "crash", "X..............."},
    {8, 1, "kick", "X.x...x...xx...."},
    {9, 1, "kick", "X.x...x...x...x."},
    {10, 1, "kick", "X.x...x...xx...."},
    {11, 1, "kick", "X.x...x.X.x....."},
    {8, 1, "snare", "....X..o.g..X..o"},
    {9, 1, "snare", "....X..o.g..o.X."},
    {10, 1, "snare", "....X..o.g..X..o"},
    {11, 1, "snare", "....X..gxoxoxxrr"},
    {8, 4, "clap", "....x.......x..."},
    {8, 4, "ride", "x.x.x.x.x.x.x.x."},
    {8, 4, "closed hat", "xgogxgogxgogxgog"},
    {8, 4, "open hat", "..o...x...o...x."},
    {11, 1, "high tom", "........o.x....."},
    {11, 1, "low tom", "...........xx.xx"},
    // This time the toms come first.
    {12, 1, "impact", "x..............."},
    {12, 1, "high tom", "X..x..x........."},
    {12, 1, "low tom", ".x..X..X........"},
    {12, 1, "snare", "..o..oxX........"},
    {12, 1, "tick", "............o..."},
    {13, 1, "impact", "X..............."},
    {13, 1, "crash", "X..............."},
    {13, 1, "kick", "X.x.X.xxX.x.X.x."},
    {13, 1, "snare", "....X..o....X.xx"},
    {13, 1, "clap", "....x.......x..."},
    {13, 1, "ride", "x.x.x.x.x.x.x.x."},
    {13, 1, "closed hat", "xgogxgogxgogxgog"},
    // The whole band strikes the motif.
    {14, 2, "impact", "o.......o......."},
    {14, 2, "crash", "X.......X......."},
    {14, 1, "kick", "X..xx...X..xx..."},
    {15, 1, "kick", "X..xx...XxxxX..."},
    {14, 1, "snare", "X....oo.X....oo."},
    {15, 1, "snare", "X...oox.Xroxxrrr"},
    {14, 1, "low tom", "...xx......xx..."},
    {15, 1, "low tom", "...xx......xX.xx"},
    {14, 2, "closed hat", "xgogxgogxgogxgog"},
    {14, 2, "clank", "x.......x......."},
};

constexpr NoteLine notes[] = {
    {0, "fall", "D4:16!"},
    {0, "metal bass",
     "D2:3! D2:1 -:2 D2:1 F2:1 D2:2! -:1 Eb2:1 ~A2:2! G#2:2 |"
     "D2:2! -:1 D2:1 C2:2 D2:1 -:1 D2:2! D3:1 -:1 G#2:1 A2:1 ~F2:2 |"
     "Bb1:3! Bb1:1 -:2 Bb1:1 D2:1 Bb1:2! -:1 C2:1 ~F2:2! E2:2 |"
     "A1:2! -:1 A1:1 G1:2 A1:1 -:1 A1:1! A2:1 C#2:1 E2:1 G2:1! E2:1 C#2:1 A1:1 |"
     "-:16 |"
     "D2:3! D2:1 A2:1 D2:1 -:1 D3:1 -:2 G#2:1! A2:1 D2:2! F2:1 E2:1 |"
     "G1:3! G1:1 G2:1 G1:1 -:1 Bb2:1 -:2 D2:1! F2:1 G1:2! A1:1 Bb1:1 |"
     "Eb2:3! Eb2:1 Bb2:1 Eb2:1 -:1 Eb3:1 A1:1! A1:1 A2:1 A1:1 C#2:1! E2:1 G2:1 C#2:1 |"
     "D2:2! D2:1 D3:1 D2:1 D2:1 F2:1 A2:1 D2:2! D2:1 D3:1 -:1 D2:1 E2:1 F2:1 |"
     "C2:2! C2:1 C3:1 C2:1 C2:1 E2:1 G2:1 C2:2! C2:1 C3:1 -:1 C2:1 B1:1 A1:1 |"
     "Bb1:2! Bb1:1 Bb2:1 Bb1:1 Bb1:1 D2:1 F2:1 Bb1:2! Bb1:1 Bb2:1 -:1 Bb1:1 A1:1 Bb1:1 |"
     "G1:2! G1:1 G2:1 G1:1 Bb1:1 D2:1 G2:1 A1:2! A1:1 A2:1 A1:1 B1:1 C#2:1 E2:1 |"
     "D2:6! -:10 |"
     "Bb1:2! Bb1:1 Bb2:1 Bb1:1 D2:1 F2:1 Bb2:1 C2:2! C2:1 C3:1 C2:1 E2:1 G2:1 C#2:1 |"
     "D2:3! D2:1 D2:1 -:1 E2:1 -:1 Eb2:3! Eb2:1 Eb2:1 -:1 Bb2:1 -:1 |"
     "A1:3! A1:1 A1:1 -:1 B1:1 -:1 G#1:3! G#1:1 B1:1 D2:1 F2:1 G#2:1"},
    {0, "lead",
     "D5:3! Eb5:3! A5:2! G#5:8! | -:2 F5:2 E5:2 D5:2 C#5:3 D5:3 E5:2 |"
     "D5:3! F5:3 Bb5:2! A5:4 ~G#5:2 F5:2 | E5:4! G5:2 F5:2 E5:2 C#5:4 -:2 |"
     "-:16 |"
     "D5:2! D6:1 Eb5:2! Eb6:1 A5:2! G#5:6! F5:2 | D5:3! G5:3 Bb5:2! A5:4 G5:2 F5:2 |"
     "G5:3! F5:3 Eb5:2 C#5:2 E5:2 ~A5:4! |"
     "D6:3! Eb6:3! A5:2! G#5:8! | G5:3! C6:3 E6:2! D6:4 C6:2 Bb5:2 |"
     "F5:3! Bb5:3 D6:2! C6:4 Bb5:2 A5:2 | G5:3! Bb5:3 D6:2! ~C#6:4 A5:2 E5:2 |"
     "-:16 |"
     "F5:2! Bb5:2 D6:2! F6:2! E6:3! D6:3 C#6:2 |"
     "D6:7! -:1 Eb6:7! -:1 | A5:7! -:1 G#5:8!"},
    {8, "lead octave",
     "D5:3 Eb5:3 A4:2 G#4:8 | G4:3 C5:3 E5:2 D5:4 C5:2 Bb4:2 |"
     "F4:3 Bb4:3 D5:2 C5:4 Bb4:2 A4:2 | G4:3 Bb4:3 D5:2 ~C#5:4 A4:2 E4:2 |"
     "-:16 |"
     "F4:2! Bb4:2 D5:2! F5:2! E5:3! D5:3 C#5:2 |"
     "D5:7! -:1 Eb5:7! -:1 | A4:7! -:1 G#4:8!"},
    {0, "stab",
     "D4+F4+A4+D5:3! -:13 | -:10 D4+F4+G#4+D5:2! -:4 |"
     "D4+F4+Bb4+D5:3! -:3 D4+F4+Bb4:1 -:9 | C#4+E4+A4:2! -:4 C#4+E4+G4:2 -:8 |"
     "-:16 |"
     "D4+F4+A4+D5:2! -:4 D4+F4+A4:2! -:8 | D4+G4+Bb4+D5:2! -:4 D4+G4+Bb4:2! -:8 |"
     "Eb4+G4+Bb4:2! -:6 C#4+E4+G4+A4:2! -:2 C#4+E4+G4:2 -:2 |"
     "D4+F4+A4+D5:2! -:14 | -:10 C4+E4+G4+C5:2! -:4 |"
     "D4+F4+Bb4+D5:2! -:4 D4+F4+Bb4:2! -:8 | D4+G4+Bb4:2! -:6 C#4+E4+G4+A4:2! -:2 C#4+E4+G4:2! -:2 |"
     "D4+F4+G#4+D5:4! -:12 |"
     "D4+F4+Bb4:2! -:6 E4+G4+C5:2! -:6 |"
     "D4+F4+A4+D5:3! -:5 Eb4+G4+Bb4+Eb5:3! -:5 | C#4+E4+A4+C#5:3! -:5 D4+F4+G#4+B4:3! -:1 D4+F4+G#4+B4:2! "
     "-:2"},
    // Each of the two stops is driven at by a riser.
    {2, "riser", "D3:32!"},
    {4, "reversed bell", "-:8 D5+A5:8!"},
    {5, "arp",
     "D5:1 A5:1 D6:1 A5:1 F5:1 D6:1 A5:1 F5:1 D5:1 A5:1 Eb6:1 A5:1 F5:1 D6:1 A5:1 F5:1 |"
     "D5:1 Bb5:1 D6:1 Bb5:1 G5:1 D6:1 Bb5:1 G5:1 D5:1 Bb5:1 Eb6:1 Bb5:1 G5:1 D6:1 Bb5:1 G5:1 |"
     "Eb5:1 Bb5:1 Eb6:1 Bb5:1 G5:1 Eb6:1 Bb5:1 G5:1 E5:1 A5:1 C#6:1 E6:1 G6:1 E6:1 C#6:1 A5:1"},
    {5, "pad", "D3+A3+F4:16 | D3+Bb3+G4:16 | Eb3+Bb3+G4:8 C#3+A3+G4:8"},

    // The counter voice turns the motif upside down: D, C sharp, G, A flat.
    {8, "counter",
     "-:4 D5:3! C#5:3! G4:2! G#4:4! | E4:4! G4:4 C5:4! B4:2 C5:2 |"
     "D5:4! C5:2 Bb4:2 F4:4 Bb4:4! | Bb4:4! A4:2 G4:2 E4:2 G4:2 C#5:4! |"
     "-:16 | D5:4! F5:4! E5:4! G5:4!"},
    {8, "strings",
     "D4:1! A4:1 D5:1 F5:1 D4:1! A4:1 D5:1 F5:1 D4:1! A4:1 D5:1 F5:1 Eb5:1! D5:1 A4:1 F4:1 |"
     "C4:1! G4:1 C5:1 E5:1 C4:1! G4:1 C5:1 E5:1 C4:1! G4:1 C5:1 E5:1 G5:1! E5:1 C5:1 G4:1 |"
     "D4:1! F4:1 Bb4:1 D5:1 D4:1! F4:1 Bb4:1 D5:1 F4:1! Bb4:1 D5:1 F5:1 Bb5:1! F5:1 D5:1 Bb4:1 |"
     "D4:1! G4:1 Bb4:1 D5:1 G4:1! Bb4:1 D5:1 G5:1 E4:1! A4:1 C#5:1 E5:1 G5:1! E5:1 C#5:1 A4:1 |"
     "-:16 |"
     "F4:1! Bb4:1 D5:1 F5:1 Bb5:1! F5:1 D5:1 Bb4:1 G4:1! C5:1 E5:1 G5:1 C6:1! G5:1 E5:1 C#5:1 |"
     "-:3 D5:1 F5:1 A5:1 D5:1 -:1 -:3 Eb5:1 G5:1 Bb5:1 Eb5:1 -:1 |"
     "-:3 C#5:1 E5:1 A5:1 C#5:1 -:1 -:3 D5:1 F5:1 G#5:1 -:2"},
    {8, "choir",
     "D3+A3+D4+F4:16 | C3+G3+C4+E4:16 | D3+F3+Bb3+F4:16! | D3+G3+Bb3+D4:8! C#3+E3+A3+E4:8! |"
     "-:16 | D3+F3+Bb3+F4:8! E3+G3+C4+G4:8! |"
     "D3+A3+D4+F4:8! Eb3+Bb3+Eb4+G4:8! | E3+A3+C#4+A4:8! D3+F3+B3+G#4:8!"},
    {8, "pad", "D3+A3+F4:16! | C3+G3+E4:16! | D3+Bb3+F4:16! | D3+Bb3+G4:8! C#3+A3+G4:8!"},
    {10, "riser", "D3:32!"},
    {12, "reversed bell", "-:8 D5+Bb5:8!"},
    {12, "arp", "-:8 F5:1? Bb5:1? D6:1? F6:1? D6:1 Bb5:1 F5:1 Bb5:1"},
    {13, "arp",
     "F5:1 Bb5:1 D6:1 F6:1 D6:1 Bb5:1 F5:1 Bb5:1 G5:1 C6:1 E6:1 G6:1 E6:1 C6:1 G5:1 C6:1 |"
     "A5:1 D6:1 F6:1 A6:1 F6:1 D6:1 A5:1 D6:1 G5:1 Bb5:1 Eb6:1 G6:1 Eb6:1 Bb5:1 G5:1 Bb5:1 |"
     "A5:1 C#6:1 E6:1 A6:1 E6:1 C#6:1 A5:1 C#6:1 G#5:1 B5:1 D6:1 F6:1 D6:1 B5:1 F6:1 G#6:1"},
    {14, "riser", "D3:30! -:2"},
};

constexpr CurvePoint curves[] = {
    {"metal bass", 0, 0.4f},
    {"metal bass", 3.9, 0.9f},
    {"metal bass", 5, 0.5f},
    {"metal bass", 11.9, 0.9f},
    {"metal bass", 13, 0.8f},
    {"metal bass", 16, 1.0f},
    {"lead", 0, 0.5f},
    {"lead", 8, 0.75f},
    {"lead", 15, 1.0f},
    {"lead octave", 8, 0.5f},
    {"pad", 5, 0.35f},
    {"pad", 8, 0.6f},
    {"pad", 11, 0.8f},
    {"arp", 5, 0.3f},
    {"arp", 7.9, 0.7f},
    {"arp", 12.5, 0.3f},
    {"arp", 13, 0.8f},
    {"counter", 8, 0.7f},
    {"choir", 8, 0.7f},
    {"choir", 13, 1.0f},

    // The first stop runs the tape backwards; in the second the arpeggio goes on alone.
    {"fader", 0, -1},
    {"fader", 3.99, -1},
    {"fader", 4.005, -6},
    {"fader", 4.2, -9},
    {"fader", 4.49, -21},
    {"fader", 4.5, -1.5f},
    {"fader", 5, -1},
    {"fader", 8, -1.5f},
    {"fader", 12.49, -1.5f},
    {"fader", 12.51, -7},
    {"fader", 12.99, -7},
    {"fader", 13, -1},
    {"fader", 15.98, -1},
    {"rewind cut", 4, 5000},
    {"rewind cut", 4.5, 200},
};

constexpr Rewind rewinds[] = {{4, 0.5}};

}  // namespace

Movement alien() {
  return {drums, notes, curves, rewinds};
}

}  // namespace vex::song
