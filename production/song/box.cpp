#include "production/song/movements.h"

namespace vex::song {

namespace {

constexpr DrumLine drums[] = {
    // The escapement runs 3 3 4 3 3 against the beat; the heart is still there, and grows into a pulse.
    {0, 1, "impact", "x..............."},
    {0, 2, "tick", "X..o..x...o..o.."},
    {2, 4, "tick", "X.go.gx.g.o.go.g"},
    {6, 1, "tick", "X.go.gx.g.o.go.g"},
    {7, 1, "tick", "XgogxgogXgog..x."},
    {0, 7, "tock", "...x......x..x.."},
    {7, 1, "tock", ".x.x.x.x.x.x...."},
    {0, 2, "heart", "x..o............"},
    {2, 2, "heart", "x..o....x..o...."},
    {4, 2, "heart", "x..ox..ox..ox..o"},
    {6, 1, "heart", "x.o.x.o.x.o.x.o."},
    {7, 1, "heart", "x.x.x.x.xxxx...."},
    {3, 1, "low tom", "..........x..o.x"},
    {3, 1, "high tom", "........x..o...."},
    // The lock turns in three clicks.
    {4, 1, "impact", "X..............."},
    {4, 1, "clank", "X.......x.....o."},
    {4, 2, "closed hat", "..g...g...g...g."},
    {5, 1, "clank", "........o......."},
    {5, 1, "high tom", "........o.xo...."},
    {5, 1, "low tom", "............x.xx"},
    {6, 1, "clank", "o..............."},
    {6, 1, "crash", "o..............."},
    {6, 1, "closed hat", "xgogxgogxgogxgog"},
    {6, 1, "snare", "....o.......o.oo"},
    {6, 1, "clap", "....o.......o..."},
    {7, 1, "snare", "o.o.oooorrrr...."},
    {7, 1, "low tom", "x..x..x.x.x....."},

    // The lid lifts: four to the floor.
    {8, 1, "impact", "X..............."},
    {8, 1, "crash", "X..............."},
    {8, 1, "kick", "X...X...X..xX.x."},
    {9, 1, "kick", "X...X...X.x....."},
    {8, 1, "snare", "....X.......X..g"},
    {9, 1, "snare", "....X...o.oXo.xx"},
    {9, 1, "high tom", "........x..x..x."},
    {9, 1, "low tom", ".............x.x"},
    {8, 6, "clap", "....x.......x..."},
    {8, 6, "closed hat", "xgogxgogxgogxgog"},
    {8, 6, "open hat", "..x...x...x...x."},
    {8, 6, "tick", "X..o..x...o..o.."},
    // The layers burn.
    {10, 4, "impact", "x..............."},
    {10, 2, "crash", "x..............."},
    {12, 1, "crash", "X..............."},
    {10, 4, "clank", "o..............."},
    {10, 1, "kick", "X...X...X..xX.x."},
    {11, 1, "kick", "X...X...X.x.X..."},
    {12, 1, "kick", "X...X...X..xX.x."},
    {13, 1, "kick", "X...X...X......."},
    {10, 3, "snare", "....X.......X..g"},
    {13, 1, "snare", "....X..gxoxoxxrr"},
    {12, 2, "ride", "x.x.x.x.x.x.x.x."},
    {13, 1, "high tom", "........x.x....."},
    {13, 1, "low tom", "...........xx.xx"},
    // Backwards; the toms stand before it.
    {14, 1, "tick", "..o..o...x..o..x"},
    {15, 1, "tick", "..o..o...x..o.g."},
    {15, 1, "high tom", "....x..x........"},
    {15, 1, "low tom", ".....x....xX...."},
    {15, 1, "snare", "....g.o.oo.o...."},
};

constexpr NoteLine notes[] = {
    // The strings say the motif in the clock's rhythm.
    {0, "fall", "D3:16"},
    {0, "low strings", "D3:6! Eb3:6! A3:4! | G#3:10! -:6 | D3:6! Eb3:6! A3:4! | G#3:8! F3:2 D3:3 Bb2:3"},
    {0, "bell", "D3:16 | -:16"},
    {0, "choir", "D3+A3:32? | D3+F3+Bb3:32? | G3+Bb3+D4:32? | Eb3+G3+Bb3+Eb4:16? | E3+G3+C#4+A4:11! -:5"},
    // Each swell ends on a bar line where something enters.
    {0, "swell", "-:8 D3+A3+D4:24 | -:8 D3+Bb3+F4:24! | -:8 D3+G3+Bb3+G4:24 | -:8 E3+Bb3+C#4+G4:20! -:4"},
    {2, "pulse bass",
     "Bb1:3 -:3 Bb1:2 -:2 Bb1:1 -:1 F2:2 A2:2 | Bb1:3 -:3 Bb1:2 -:2 Bb1:1 -:1 D2:2 F2:2 |"
     "G1:3 -:1 G2:1 -:1 G1:2 -:2 G1:1 -:1 D2:2 F2:2 | G1:3 -:1 G2:1 -:1 G1:2 -:2 Bb1:1 -:1 A1:2 G1:2 |"
     "Eb2:2 Eb2:1 Eb3:1 Eb2:2 Eb2:2 Eb2:2 Eb2:1 Eb3:1 Eb2:2 Bb1:2 |"
     "A1:1 A1:1 A2:1 A1:1 A1:1 A1:1 A2:1 A1:1 A1:1 A1:1 A2:1 A1:1 -:4"},
    // Out of the open lock comes the tune of a music box.
    {4, "music box",
     "D5:1! Bb5:1 G5:1 D5:1! Bb5:1 G5:1 Eb5:1! Bb5:1 A5:1! G5:1 D5:1 A5:1 G#5:1! G5:1 D5:1 G5:1 |"
     "D5:1! D6:1 Bb5:1 G5:1! D6:1 Bb5:1 G5:1! Eb6:1 A5:1! D6:1 Bb5:1 A5:1 G5:1! A5:1 Bb5:1 C6:1 |"
     "Eb5:1! Bb5:1 G5:1 Eb6:1! Bb5:1 G5:1 F6:1! Bb5:1 G6:1! Eb6:1 Bb5:1 Eb6:1 F6:1! D6:1 Bb5:1 F5:1 |"
     "E5:1! A5:1 C#6:1 E6:1! A5:1 C#6:1 E6:1! G6:1 A6:1! G6:1 E6:1 G#6:1! -:4"},
    {4, "bell", "G3:16! | -:8 D5:4? Bb4:4?"},
    // Chords on the escapement's strokes.
    {4, "murmur",
     "-:3 D4+G4+Bb4:1? -:2 D4+G4+Bb4:1? -:3 Eb4+G4+A4:1? -:2 D4+G4+Bb4:1? -:2 |"
     "-:3 D4+G4+Bb4:1? -:2 D4+G4+Bb4:1? -:3 D4+G4+A4:1 -:2 D4+G4+Bb4:1 -:2 |"
     "-:1 Eb4+G4+Bb4:1 -:1 Eb4+G4+Bb4:1 -:2 Eb4+G4+Bb4:1 -:1 Eb4+G4+Bb4:1 -:1 Eb4+G4+Bb4:1 -:2 F4+G4+Bb4:1 "
     "-:2 |"
     "E4+G4+A4:1 -:1 E4+G4+A4:1 -:1 E4+G4+A4:1 -:1 E4+G4+A4:1 -:1 E4+G4+C#5:1 E4+G4+C#5:1 E4+G4+C#5:1 "
     "E4+G4+C#5:1 -:4"},
    {6, "pad", "Eb3+Bb3+G4:16 | E3+A3+C#4+G4:12 -:4"},
    {6, "riser", "A2:28! -:4"},
    {7, "reversed bell", "-:8 D5+A5:8!"},

    // The lid lifts; the bass walks the motif's roots under the four layers.
    {8, "fall", "D4:16!"},
    {8, "drive bass",
     "D2:2! D2:1 D3:1 -:1 D2:1 F2:1 D2:1 -:1 D2:2! C2:1 D2:1 -:1 G#1:1 A1:1 |"
     "D2:2! D2:1 D3:1 -:1 D2:1 F2:1 D2:1 -:1 D2:2! A2:1 ~G#2:2 F2:1 C2:1 |"
     "D2:2! D2:1 D3:1 -:1 D2:1 F2:1 D2:1 -:1 D2:2! C2:1 D2:1 -:1 D2:1 ~Eb2:1 |"
     "Eb2:2! Eb2:1 Eb3:1 -:1 Eb2:1 G2:1 Eb2:1 -:1 Eb2:2! Bb1:1 Eb2:1 -:1 F2:1 G2:1 |"
     "A1:2! A1:1 A2:1 -:1 A1:1 C#2:1 E2:1 -:1 A1:2! G1:1 A1:1 -:1 E2:1 ~A2:1 |"
     "G#1:2! G#1:1 G#2:1 -:1 G#1:1 B1:1 D2:1 G#1:2! G#1:1 B1:1 D2:1 F2:1 G#2:1 B2:1"},
    // The motif goes on as a tune; the box plays it an octave above.
    {8, "lead",
     "D5:3! Eb5:3! A5:2! G#5:8! | -:2 F5:2 E5:2 D5:2 C#5:3 D5:3 E5:2 |"
     "D5:3! F5:3 A5:2! D6:6! C6:2 | Bb5:3! G5:3 Eb5:2! Bb5:8! |"
     "A5:4! C#6:4 E6:6! ~A5:2 | G#5:8! B5:4 D6:4!"},
    {8, "music box",
     "D6:3! Eb6:3! A6:2! G#6:8! | -:2 F6:2! E6:2! D6:2! C#6:3! D6:3! E6:2! |"
     "D6:3! F6:3 A6:2! D7:6! C7:2 | Bb6:3! G6:3 Eb6:2! Bb6:8! |"
     "A6:4! C#7:4 E7:6! A6:2 | G#6:8! B6:4 D7:4!"},
    {8, "stab",
     "D4+F4+A4+D5:3! -:9 D4+F4+A4:1 -:3 | -:10 D4+F4+G#4+D5:2! -:4 |"
     "D4+F4+A4+D5:6! -:10 | Eb4+G4+Bb4+Eb5:6! -:10 | A4+C#5+E5+A5:6! -:10 | G#4+B4+D5+G#5:6! -:10"},
    {8, "strings",
     "D4:1! -:2 D4:1 -:2 F4:1! -:3 D4:1! -:2 A4:1 -:2 | D4:1! -:2 D4:1 -:2 F4:1! -:3 G#4:1! -:2 A4:1 -:2 |"
     "D4:1 F4:1 A4:1 D5:1 F4:1 A4:1 D5:1 F5:1 A4:1 D5:1 F5:1 D5:1 A4:1 F4:1 D4:1 F4:1 |"
     "Eb4:1 G4:1 Bb4:1 Eb5:1 G4:1 Bb4:1 Eb5:1 G5:1 Bb4:1 Eb5:1 G5:1 Eb5:1 Bb4:1 G4:1 Eb4:1 G4:1"},
    {8, "pad", "D3+A3+F4:32? | D3+A3+F4:16 | Eb3+Bb3+G4:16 | C#3+A3+E4:16 | D3+G#3+B3+F4:16"},
    {10, "choir", "D3+A3+D4+F4:16 | Eb3+G3+Bb3+Eb4:16 | E3+A3+C#4+A4:16! | F3+G#3+B3+D4:16!"},
    {12, "arp",
     "E5:1 A5:1 C#6:1 A5:1 G5:1 C#6:1 A5:1 G5:1 E5:1 A5:1 C#6:1 E6:1 G6:1 E6:1 C#6:1 A5:1 |"
     "F5:1 G#5:1 B5:1 D6:1 B5:1 G#5:1 F5:1 G#5:1 B5:1 D6:1 F6:1 D6:1 B5:1 D6:1 F6:1 G#6:1"},

    {14, "fall", "D4:28 -:4"},
    {14, "swell", "D3+G#3+B3+F4:16? | C#3+A3+E4+G4:12 -:4"},
    {14, "reversed bell", "D4+A4+D5:16! | D5+A5:4! D5+G#5:8! -:4"},
};

constexpr CurvePoint curves[] = {
    {"choir", 0, 0.25f},
    {"choir", 4, 0.3f},
    {"choir", 7, 0.8f},
    {"choir", 10, 0.5f},
    {"choir", 13, 1.0f},
    {"swell", 0, 0.45f},
    {"swell", 7, 1.0f},
    {"swell", 14, 0.5f},
    {"pulse bass", 0, 0.1f},
    {"pulse bass", 4, 0.35f},
    {"pulse bass", 7.75, 1.0f},
    {"drive bass", 8, 0.45f},
    {"drive bass", 13.9, 0.85f},
    {"lead", 8, 0.45f},
    {"lead", 13.9, 0.7f},
    {"pad", 6, 0.3f},
    {"pad", 7.9, 0.8f},
    {"pad", 8, 0.35f},
    {"pad", 13, 0.6f},
    {"arp", 12, 0.25f},
    {"arp", 14, 0.8f},

    {"fader", 0, -2.5f},
    {"fader", 2, -2.5f},
    {"fader", 4, -3},
    {"fader", 7.74, -1.8f},
    {"fader", 7.76, -11},
    {"fader", 7.99, -7},
    {"fader", 8, -1.8f},
    {"fader", 13.99, -1.8f},
    {"fader", 14, -1.5f},
    {"fader", 15, -4},
    {"fader", 15.74, -3},
    {"fader", 15.76, -14},
    {"fader", 15.99, -14},
    // The floor goes before the lid gives it back.
    {"low cut", 5.9, 20},
    {"low cut", 6, 30},
    {"low cut", 7, 110},
    {"low cut", 7.75, 340},
    {"low cut", 7.99, 340},
    {"low cut", 8, 20},
    {"rewind cut", 14, 9000},
    {"rewind cut", 15.75, 250},
};

constexpr Rewind rewinds[] = {{14, 1.75}};

}  // namespace

Movement box() {
  return {drums, notes, curves, rewinds};
}

}  // namespace vex::song
