#include "production/song/score.h"

namespace vex {

namespace {

constexpr DrumLine drums[] = {
    // Prologue: a heart that quickens; far away the clock is already there.
    {0, 1, "heart", "........x..o...."},
    {1, 3, "heart", "x..o............"},
    {4, 2, "heart", "x..o....x..o...."},
    {6, 1, "heart", "x..o....x..o...."},
    {7, 1, "heart", "X.o.X.o.X.o.X..."},
    {3, 1, "tick", "............g..."},
    {5, 1, "tick", "g.......g......."},
    {6, 1, "tick", "g...g...g...g..."},
    {7, 1, "tick", "g.g.g.g.g.g.g..."},
    {7, 1, "tock", ".g.g.g.g.g.g.g.."},
    {6, 1, "impact", "o..............."},

    // Pulse: the escapement runs 3 3 4 3 3 against the beat.
    {8, 1, "impact", "x..............."},
    {8, 2, "tick", "X..o..x...o..o.."},
    {10, 4, "tick", "X.go.gx.g.o.go.g"},
    {14, 1, "tick", "X.go.gx.g.o.go.g"},
    {15, 1, "tick", "XgogxgogXgog..x."},
    {8, 7, "tock", "...x......x..x.."},
    {15, 1, "tock", ".x.x.x.x.x.x...."},
    {9, 1, "high tom", "............o.oo"},
    {10, 1, "kick", "X.....x.x......."},
    {11, 1, "kick", "X.....x.x.x....."},
    {12, 1, "kick", "X...x...x...x..."},
    {13, 1, "kick", "X...x...x...x.x."},
    {14, 1, "kick", "X.x.X.x.X.x.X.x."},
    {11, 1, "low tom", "..........x..o.x"},
    {11, 1, "high tom", "........x..o...."},
    {12, 1, "clank", "X..............."},
    {13, 1, "clank", "........o......."},
    {14, 1, "clank", "o..............."},
    {12, 2, "clap", "....x.......x..."},
    {10, 2, "closed hat", "..g...g...g...g."},
    {12, 2, "closed hat", "o.ggo.ggo.ggo.gg"},
    {14, 1, "closed hat", "xgogxgogxgogxgog"},
    {12, 2, "open hat", "..o...o...o...o."},
    {13, 1, "snare", "..........g.o.oo"},
    {14, 1, "snare", "o...o...o...o.o."},
    {15, 1, "snare", "o.o.oooorrrr...."},
    {15, 1, "low tom", "x..x..x.x.x....."},
    {14, 1, "crash", "o..............."},

    // Drop, first half: four to the floor with pushes; second half: broken.
    {16, 1, "impact", "X..............."},
    {16, 1, "crash", "X..............."},
    {16, 1, "kick", "X...X...X..xX.x."},
    {17, 1, "kick", "X...X...X.x.X..."},
    {18, 1, "kick", "X...X...X..xX.x."},
    {19, 1, "kick", "X...X...X.x....."},
    {16, 3, "snare", "....X.......X..g"},
    {19, 1, "snare", "....X...X.oXo.xx"},
    {16, 4, "clap", "....x.......x..."},
    {19, 1, "high tom", ".........x..x..."},
    {19, 1, "low tom", ".............x.x"},
    {16, 4, "closed hat", "xgogxgogxgogxgog"},
    {16, 3, "open hat", "..x...x...x...x."},
    {19, 1, "open hat", "..x...x........."},
    {16, 8, "tick", "X..o..x...o..o.."},
    {18, 1, "crash", "o..............."},
    {20, 1, "impact", "x..............."},
    {20, 1, "crash", "X..............."},
    {20, 1, "kick", "X..x..X...x.X..."},
    {21, 1, "kick", "X..x..X..x....x."},
    {22, 1, "kick", "X..x..X...x.X..."},
    {23, 1, "kick", "X.x.X.x.X......."},
    {20, 3, "snare", "....X..g.g..X.g."},
    {23, 1, "snare", "....X..gxoxoxxrr"},
    {20, 3, "clap", "....o.......o..."},
    {20, 4, "closed hat", "xgggxgggxgggxggg"},
    {20, 3, "ride", "x...x.x.x...x.x."},
    {22, 1, "crash", "x..............."},
    {23, 1, "high tom", "........x.x....."},
    {23, 1, "low tom", "...........xx.xx"},

    // Climax: everything runs; then the whole band strikes the motif, half a bar a note.
    {24, 1, "impact", "X..............."},
    {24, 1, "crash", "X..............."},
    {26, 1, "crash", "X..............."},
    {24, 3, "kick", "X...X..xX...X.x."},
    {27, 1, "kick", "X...X..xX.x.X..."},
    {24, 3, "snare", "....X..g....X.gg"},
    {27, 1, "snare", "....X...xoxoxxrr"},
    {24, 4, "clap", "....x.......x..."},
    {24, 4, "closed hat", "xgogxgogxgogxgog"},
    {24, 4, "open hat", "..x...x...x...x."},
    {24, 4, "ride", "x.x.x.x.x.x.x.x."},
    {24, 4, "tick", "X..o..x...o..o.."},
    {27, 1, "high tom", "........o.x....."},
    {27, 1, "low tom", "...........xx.xx"},
    {28, 2, "impact", "o..............."},
    {28, 2, "crash", "X.......X......."},
    {28, 1, "kick", "X..xx...X..xx..."},
    {29, 1, "kick", "X..xx...XxxxX..."},
    {28, 1, "snare", "X....oo.X....oo."},
    {29, 1, "snare", "X...oox.XrxrXX.."},
    {28, 1, "low tom", "...xx......xx..."},
    {29, 1, "low tom", "...xx......xX..."},
    {28, 2, "closed hat", "xgogxgogxgogxgog"},
    {28, 1, "clank", "x.......x......."},
    {29, 1, "clank", "x.......x......."},

    // The chord rings; the heart goes on, then the clock stops.
    {30, 1, "impact", "X..............."},
    {30, 1, "kick", "X..............."},
    {30, 1, "crash", "X..............."},
    {30, 1, "clank", "o..............."},
    {30, 1, "heart", "........x..o...."},
    {31, 1, "heart", "x..o....x..o...."},
    {30, 1, "tick", "........o...o..."},
    {31, 1, "tick", "o...o....o......"},
};

constexpr NoteLine notes[] = {
    // Prologue.
    {0, "crackle", "D2:112 -:16"},
    {0, "drone", "D1+A1+D2:124 -:4"},
    {0, "reversed bell", "-:16 D4+A4:16 | -:16 D5+Eb5:16! | -:16 A4+G#5:16! | -:8 D4+A4+D5+G#5:24!"},
    {2, "bell", "D3:16 | -:16"},
    {4, "far bell", "D5:8 Eb5:8 | A5:8 G#5:8"},
    {6, "far bell", "-:8 D6:4? A5:4? | Eb6:4? D6:4? A5:2? G#5:2? -:4"},
    {4, "choir", "D3+A3:32?"},
    {6, "choir", "D3+Eb3+A3:16 | D3+Eb3+A3+G#4:14! -:2"},
    {6, "riser", "D3:30 -:2"},

    // Pulse. The strings say the motif in the clock's rhythm.
    {8, "fall", "D3:16"},
    {8, "pulse bass",
     "D2:3 -:3 D2:2 -:2 D2:1 -:1 A1:2 C2:2 | D2:3 -:3 D2:2 -:2 D2:1 -:1 F2:2 ~D2:2 |"
     "Bb1:3 -:3 Bb1:2 -:2 Bb1:1 -:1 F2:2 A2:2 | Bb1:3 -:3 Bb1:2 -:2 D2:1 -:1 C2:2 Bb1:2 |"
     "G1:3 -:1 G2:1 -:1 G1:2 -:2 G1:1 -:1 D2:2 F2:2 | G1:3 -:1 G2:1 -:1 G1:2 -:2 Bb1:1 -:1 A1:2 G1:2 |"
     "Eb2:2 Eb2:1 Eb3:1 Eb2:2 Eb2:2 Eb2:2 Eb2:1 Eb3:1 Eb2:2 Bb1:2 |"
     "A1:1 A1:1 A2:1 A1:1 A1:1 A1:1 A2:1 A1:1 A1:1 A1:1 A2:1 A1:1 -:4"},
    {8, "low strings", "D3:6! Eb3:6! A3:4! | G#3:10! -:6"},
    {10, "strings",
     "D4:1! Bb4:1 F4:1 D4:1! Bb4:1 F4:1 Eb4:1! Bb4:1 A4:1! F4:1 D4:1 A4:1 G#4:1! F4:1 D4:1 F4:1 |"
     "D4:1! Bb4:1 F4:1 D4:1! Bb4:1 F4:1 Eb4:1! Bb4:1 A4:1! F4:1 D4:1 C5:1 Bb4:1! A4:1 F4:1 D4:1 |"
     "D4:1! Bb4:1 G4:1 D4:1! Bb4:1 G4:1 Eb4:1! Bb4:1 A4:1! G4:1 D4:1 A4:1 G#4:1! G4:1 D4:1 G4:1 |"
     "D4:1! D5:1 Bb4:1 G4:1! D5:1 Bb4:1 G4:1! Eb5:1 A4:1! D5:1 Bb4:1 A4:1 G4:1! A4:1 Bb4:1 C5:1 |"
     "Eb4:1! Bb4:1 G4:1 Eb5:1! Bb4:1 G4:1 F5:1! Bb4:1 G5:1! Eb5:1 Bb4:1 Eb5:1 F5:1! D5:1 Bb4:1 F4:1 |"
     "E4:1! A4:1 C#5:1 E5:1! A4:1 C#5:1 E5:1! G5:1 A5:1! G5:1 E5:1 G#5:1! -:4"},
    // Chords on the escapement's strokes.
    {10, "murmur",
     "-:3 D4+F4+Bb4:1? -:2 D4+F4+Bb4:1? -:3 D4+F4+A4:1? -:2 D4+F4+Bb4:1? -:2 |"
     "-:3 D4+F4+Bb4:1? -:2 D4+F4+Bb4:1? -:3 D4+F4+A4:1? -:2 D4+F4+C5:1? -:2 |"
     "-:3 D4+G4+Bb4:1? -:2 D4+G4+Bb4:1? -:3 Eb4+G4+A4:1? -:2 D4+G4+Bb4:1? -:2 |"
     "-:3 D4+G4+Bb4:1? -:2 D4+G4+Bb4:1? -:3 D4+G4+A4:1 -:2 D4+G4+Bb4:1 -:2 |"
     "-:1 Eb4+G4+Bb4:1 -:1 Eb4+G4+Bb4:1 -:2 Eb4+G4+Bb4:1 -:1 Eb4+G4+Bb4:1 -:1 Eb4+G4+Bb4:1 -:2 F4+G4+Bb4:1 "
     "-:2 |"
     "E4+G4+A4:1 -:1 E4+G4+A4:1 -:1 E4+G4+A4:1 -:1 E4+G4+A4:1 -:1 E4+G4+C#5:1 E4+G4+C#5:1 E4+G4+C#5:1 "
     "E4+G4+C#5:1 -:4"},
    {8, "bell", "D3:16 | -:16"},
    {12, "bell", "G3:16! | -:8 D5:4? Bb4:4?"},
    {12, "choir", "G3+Bb3+D4:32? | Eb3+G3+Bb3+Eb4:16 | E3+G3+C#4+A4:11! -:5"},
    {14, "pad", "Eb3+Bb3+G4:16 | E3+A3+C#4+G4:12 -:4"},
    {14, "riser", "A2:28! -:4"},
    {15, "reversed bell", "-:8 D5+A5:8!"},

    // Drop.
    {16, "fall", "D4:16!"},
    {16, "drive bass",
     "D2:2! D2:1 D3:1 -:1 D2:1 F2:1 D2:1 -:1 D2:2! C2:1 D2:1 -:1 G#1:1 A1:1 |"
     "D2:2! D2:1 D3:1 -:1 D2:1 F2:1 D2:1 -:1 D2:2! A2:1 ~G#2:2 F2:1 C2:1 |"
     "Bb1:2! Bb1:1 Bb2:1 -:1 Bb1:1 D2:1 Bb1:1 -:1 Bb1:2! A1:1 Bb1:1 -:1 F2:1 ~A2:1 |"
     "A1:2! A1:1 A2:1 -:1 A1:1 C#2:1 E2:1 -:1 A1:2! G1:1 A1:1 Bb1:1 C2:1 C#2:1 |"
     "D2:3! D2:1 A2:1 D2:1 -:1 D3:1 -:2 G#2:1! A2:1 D2:2! F2:1 E2:1 |"
     "Eb2:3! Eb2:1 Bb2:1 Eb2:1 -:1 Eb3:1 -:1 Eb2:1 A2:1! ~Bb2:1 Eb2:2! D2:1 C2:1 |"
     "G1:3! G1:1 G2:1 G1:1 -:1 Bb2:1 -:2 D2:1! F2:1 G1:2! A1:1 Bb1:1 |"
     "A1:1! A1:1 A2:1 A1:1 G1:1! A1:1 A2:1 A1:1 C#2:1! A1:1 E2:1 A1:1 G2:1! E2:1 C#2:1 A1:1"},
    {16, "lead",
     "D5:3! Eb5:3! A5:2! G#5:8! | -:2 F5:2 E5:2 D5:2 C#5:3 D5:3 E5:2 |"
     "D5:3! Eb5:3! A5:2! G#5:4! ~F5:2 D5:2 | E5:4! G5:2 F5:2 E5:2 C#5:4 -:2 |"
     "D5:2! D6:1 Eb5:2! Eb6:1 A5:2! G#5:6! F5:2 | G5:3! F5:3 Eb5:2 Bb4:4 Eb5:2 ~G5:2 |"
     "D5:3! G5:3 Bb5:2! A5:4 G5:2 F5:2 | E5:3! G5:3 ~A5:2 C#6:8!"},
    {16, "stab",
     "D4+F4+A4+D5:3! -:9 D4+F4+A4:1 -:3 | -:10 D4+F4+G#4+D5:2! -:4 |"
     "D4+F4+Bb4+D5:3! -:3 D4+F4+Bb4:1 -:9 | C#4+E4+A4:2! -:4 C#4+E4+G4:2 -:8 |"
     "D4+F4+A4+D5:2! -:4 D4+F4+A4:2! -:8 | Eb4+G4+Bb4:2! -:8 Eb4+G4+A4+Eb5:2! -:4 |"
     "D4+G4+Bb4+D5:2! -:4 D4+G4+Bb4:2! -:8 | C#4+E4+G4+A4:2! -:2 C#4+E4+G4:2 -:2 E4+G4+Bb4+C#5:6! -:2"},
    {18, "strings",
     "F4:1 Bb4:1 D5:1 F4:1 Bb4:1 D5:1 F4:1 Bb4:1 D5:1 F4:1 Bb4:1 D5:1 F4:1 Bb4:1 D5:1 F5:1 |"
     "E4:1 A4:1 C#5:1 E4:1 A4:1 C#5:1 E4:1 A4:1 C#5:1 E5:1 C#5:1 A4:1 -:4"},
    {22, "choir", "D3+G3+Bb3+D4:16? | E3+G3+C#4+A4:16"},
    {16, "pad", "D3+A3+F4:32? | D3+Bb3+F4:16? | C#3+A3+E4:16?"},
    {20, "pad", "D3+A3+F4:16 | Eb3+Bb3+G4:16 | D3+Bb3+G4:16 | C#3+A3+G4:16"},
    {20, "arp",
     "D5:1 A5:1 D6:1 A5:1 F5:1 D6:1 A5:1 F5:1 D5:1 A5:1 Eb6:1 A5:1 F5:1 D6:1 A5:1 F5:1 |"
     "Eb5:1 Bb5:1 Eb6:1 Bb5:1 G5:1 Eb6:1 Bb5:1 G5:1 Eb5:1 Bb5:1 F6:1 Bb5:1 G5:1 Eb6:1 Bb5:1 G5:1 |"
     "D5:1 Bb5:1 D6:1 Bb5:1 G5:1 D6:1 Bb5:1 G5:1 D5:1 Bb5:1 Eb6:1 Bb5:1 G5:1 D6:1 Bb5:1 G5:1 |"
     "E5:1 A5:1 C#6:1 A5:1 G5:1 C#6:1 A5:1 G5:1 E5:1 A5:1 C#6:1 E6:1 G6:1 E6:1 C#6:1 A5:1"},
    {22, "riser", "D3:32"},
    {23, "reversed bell", "-:4 D5+A5:12!"},

    // Climax. The counter voice turns the motif upside down: D, C sharp, G, A flat.
    {24, "drive bass",
     "Bb1:2! Bb1:1 Bb2:1 Bb1:1 Bb1:1 D2:1 F2:1 Bb1:2! Bb1:1 Bb2:1 -:1 Bb1:1 A1:1 Bb1:1 |"
     "C2:2! C2:1 C3:1 C2:1 C2:1 E2:1 G2:1 C2:2! C2:1 C3:1 -:1 C2:1 B1:1 C#2:1 |"
     "D2:2! D2:1 D3:1 D2:1 D2:1 F2:1 A2:1 D2:2! D2:1 D3:1 -:1 D2:1 E2:1 F2:1 |"
     "Eb2:2! Eb2:1 Eb3:1 Eb2:1 Eb2:1 G2:1 Bb2:1 A1:2! A1:1 A2:1 A1:1 B1:1 C#2:1 E2:1 |"
     "D2:3! D2:1 D2:1 -:1 E2:1 -:1 Eb2:3! Eb2:1 Eb2:1 -:1 Bb2:1 -:1 |"
     "A1:3! A1:1 A1:1 -:1 B1:1 -:1 G#1:3! G#1:1 B1:1 D2:1 -:2"},
    {24, "lead",
     "F5:3! Bb5:3 D6:2! C6:4 Bb5:2 A5:2 | G5:3! C6:3 E6:2! D6:4 C6:2 Bb5:2 |"
     "D6:3! Eb6:3! A5:2! G#5:8! | G5:3! Bb5:3 Eb6:2! ~D6:2 C#6:2 A5:4! |"
     "D6:7! -:1 Eb6:7! -:1 | A5:7! -:1 G#5:6! -:2"},
    {24, "lead octave",
     "F4:3 Bb4:3 D5:2 C5:4 Bb4:2 A4:2 | G4:3 C5:3 E5:2 D5:4 C5:2 Bb4:2 |"
     "D5:3 Eb5:3 A4:2 G#4:8 | G4:3 Bb4:3 Eb5:2 ~D5:2 C#5:2 A4:4 |"
     "D5:7! -:1 Eb5:7! -:1 | A4:7! -:1 G#4:6! -:2"},
    {26, "counter", "-:4 D5:3! C#5:3! G4:2! G#4:4! | Bb4:4! G4:2 Eb5:2 E4:2 G4:2 C#5:4!"},
    {24, "choir",
     "D3+F3+Bb3+F4:16 | E3+G3+C4+G4:16 | D3+A3+D4+F4:16! | Eb3+G3+Bb3+Eb4:8! C#3+E3+A3+E4:8! |"
     "D3+A3+D4+F4:8! Eb3+Bb3+Eb4+G4:8! | E3+A3+C#4+A4:8! D3+F3+B3+G#4:6! -:2"},
    {24, "pad", "D3+Bb3+F4:16! | E3+C4+G4:16! | D3+A3+F4:16! | Eb3+Bb3+G4:8! C#3+A3+G4:8!"},
    {24, "arp",
     "F5:1 Bb5:1 D6:1 F6:1 D6:1 Bb5:1 F5:1 Bb5:1 D6:1 F6:1 D6:1 Bb5:1 F5:1 Bb5:1 D6:1 F6:1 |"
     "G5:1 C6:1 E6:1 G6:1 E6:1 C6:1 G5:1 C6:1 E6:1 G6:1 E6:1 C6:1 G5:1 C6:1 E6:1 G6:1 |"
     "A5:1 D6:1 F6:1 A6:1 F6:1 D6:1 A5:1 D6:1 F6:1 A6:1 F6:1 D6:1 A5:1 D6:1 F6:1 A6:1 |"
     "G5:1 Bb5:1 Eb6:1 G6:1 Eb6:1 Bb5:1 G5:1 Bb5:1 A5:1 C#6:1 E6:1 G6:1 E6:1 C#6:1 A5:1 E5:1"},
    {28, "stab",
     "D4+F4+A4+D5:3! -:5 Eb4+G4+Bb4+Eb5:3! -:5 | C#4+E4+A4+C#5:3! -:5 D4+F4+G#4+B4:3! -:1 D4+F4+G#4+B4:2! "
     "-:2"},
    {28, "strings",
     "-:3 D5:1 F5:1 A5:1 D5:1 -:1 -:3 Eb5:1 G5:1 Bb5:1 Eb5:1 -:1 |"
     "-:3 C#5:1 E5:1 A5:1 C#5:1 -:1 -:3 D5:1 F5:1 G#5:1 -:2"},
    {28, "riser", "D3:30! -:2"},

    // The last chord. The bells find the missing A on the second half of the last bar.
    {30, "final choir", "D3+A3+D4+F4+A4:28! -:4"},
    {30, "final pad", "D2+A2+D3+F3+A3+E4:28! -:4"},
    {30, "pulse bass", "D2:16! | -:16"},
    {30, "bell", "D3+A3+D4:16! | -:16"},
    {30, "fall", "D4:16"},
    {30, "last bell", "-:8 D5:4 Eb5:4 | A5:4 G#5:4! A5:8!"},
};

constexpr CurvePoint curves[] = {
    // Brightness.
    {"choir", 4, 0.0f},
    {"choir", 7, 0.55f},
    {"choir", 8, 0.3f},
    {"choir", 12, 0.25f},
    {"choir", 15, 0.8f},
    {"choir", 22, 0.3f},
    {"choir", 24, 0.7f},
    {"choir", 28, 1.0f},
    {"pulse bass", 8, 0.1f},
    {"pulse bass", 12, 0.35f},
    {"pulse bass", 15.75, 1.0f},
    {"pulse bass", 30, 0.1f},
    {"drive bass", 16, 0.5f},
    {"drive bass", 19.5, 0.75f},
    {"drive bass", 20, 0.45f},
    {"drive bass", 23.9, 0.95f},
    {"drive bass", 24, 0.6f},
    {"drive bass", 29.9, 1.0f},
    {"lead", 16, 0.5f},
    {"lead", 23, 0.8f},
    {"lead", 24, 0.75f},
    {"lead", 29, 1.0f},
    {"pad", 14, 0.3f},
    {"pad", 15.9, 0.8f},
    {"pad", 16, 0.35f},
    {"pad", 24, 0.7f},
    {"arp", 20, 0.25f},
    {"arp", 23.9, 0.8f},
    {"arp", 24, 0.6f},
    {"arp", 28, 0.9f},
    {"counter", 26, 0.7f},
    {"final choir", 30, 0.45f},
    {"final pad", 30, 0.3f},

    // Level of the whole mix in dB: each movement starts louder than the last, and the tails of the
    // rooms are pulled down where the music holds its breath.
    {"fader", 0, -7},
    {"fader", 3, -8},
    {"fader", 4, -9.5f},
    {"fader", 6, -8.5f},
    {"fader", 7.86, -4},
    {"fader", 7.88, -10},
    {"fader", 7.99, -6},
    {"fader", 8, -3},
    {"fader", 12, -3},
    {"fader", 15.74, -2.2f},
    {"fader", 15.76, -9},
    {"fader", 15.99, -4},
    {"fader", 16, 0},
    {"fader", 23.93, 0},
    {"fader", 23.945, -5},
    {"fader", 23.995, -5},
    {"fader", 24, 0.3f},
    {"fader", 29.86, 0.6f},
    {"fader", 29.88, -12},
    {"fader", 29.99, -12},
    {"fader", 30, 1},
    {"fader", 30.5, 0},
    {"fader", 31.75, -5},

    // Hertz below which everything is cut; 20 takes away what is steady. The floor goes before the drop gives
    // it back.
    {"low cut", 13.9, 20},
    {"low cut", 14, 30},
    {"low cut", 15, 110},
    {"low cut", 15.75, 340},
    {"low cut", 15.99, 340},
    {"low cut", 16, 20},
};

}  // namespace

std::span<const DrumLine> drumScore() {
  return drums;
}
std::span<const NoteLine> noteScore() {
  return notes;
}

float curveAt(std::string_view name, double bar, float otherwise) {
  const CurvePoint* before = nullptr;
  for (const CurvePoint& point : curves) {
    if (point.name != name) continue;
    if (point.bar > bar) {
      if (before == nullptr) return point.value;
      const double share = (bar - before->bar) / (point.bar - before->bar);
      return before->value + static_cast<float>(share) * (point.value - before->value);
    }
    before = &point;
  }
  return before == nullptr ? otherwise : before->value;
}

}  // namespace vex
