#include "production/song/movements.h"

namespace vex::song {

namespace {

constexpr DrumLine drums[] = {
    // The storm gathers on skins.
    {0, 1, "impact", "X..............."},
    {0, 1, "crash", "X..............."},
    {0, 1, "low tom", "x..xx..xx..xx..x"},
    {0, 1, "high tom", ".x....x...x...x."},
    {1, 1, "low tom", "x..xx.xxx.xxxX.."},
    {1, 1, "high tom", ".x...x...x......"},
    {0, 1, "kick", "X.......X......."},
    {1, 1, "kick", "X...X...X...X..."},
    {1, 1, "crash", "........x......."},
    {1, 1, "snare", "........Xoooxr.."},
    {0, 1, "ride", "x...x...x...x..."},
    // Double time: a back beat on every second eighth.
    {2, 1, "crash", "X..............."},
    {4, 1, "crash", "X..............."},
    {2, 3, "kick", "X...X..xX...X.x."},
    {5, 1, "kick", "X...X..xX...X..."},
    {2, 3, "snare", "..X...X...X...Xg"},
    {5, 1, "snare", "..X...X.xoxxxrr."},
    {2, 4, "closed hat", "xgxgxgxgxgxgxgxg"},
    {4, 2, "open hat", "x...x...x...x..."},
    {5, 1, "low tom", "........x..x.xx."},
    {5, 1, "high tom", ".........x..x..."},
    // The first crow is shot: light on the beats, everything else holds still.
    {6, 1, "laser", "X...X...X...X..."},
    {6, 1, "impact", "X..............."},
    {6, 1, "kick", "X...X...X...X..."},
    {6, 1, "tick", "..o...o...o...o."},
    {7, 1, "impact", "x..............."},
    {7, 1, "crash", "X..............."},
    {7, 1, "kick", "X...X..xX...X.x."},
    {8, 1, "kick", "X...X..xX..xX..."},
    {7, 1, "snare", "..X...X...X...Xg"},
    {8, 1, "snare", "..X...X.oxoxxrr."},
    {7, 2, "closed hat", "xgxgxgxgxgxgxgxg"},
    {7, 2, "clap", "..x...x...x...x."},
    {8, 1, "high tom", "........x.x....."},
    {8, 1, "low tom", "...........xx.x."},
    {9, 1, "laser", "X...X...X...X..."},
    {9, 1, "impact", "X..............."},
    {9, 1, "kick", "X...X...X...X..."},
    {9, 1, "snare", "......g.......oo"},
    {10, 1, "crash", "X..............."},
    {10, 2, "impact", "x..............."},
    {10, 1, "kick", "X.x.X.xxX.x.X.xx"},
    {11, 1, "kick", "X.x.X.xxX.x....."},
    {10, 1, "snare", "..X...X...X...Xg"},
    {11, 1, "snare", "..X...X.xxxxrrr."},
    {10, 2, "closed hat", "xgxgxgxgxgxgxgxg"},
    {10, 2, "ride", "x.x.x.x.x.x.x.x."},
    {10, 2, "clap", "..x...x...x...x."},
    {11, 1, "low tom", "........x..xx.x."},
    {12, 1, "laser", "X...X...X...X..."},
    {12, 1, "impact", "X..............."},
    {12, 1, "kick", "X...X...X...X..."},
    {12, 1, "snare", "......o...o.oxox"},
    // The heart of the storm.
    {13, 2, "crash", "X.......x......."},
    {13, 2, "impact", "x..............."},
    {13, 2, "kick", "X.x.X.xxX.x.X.xx"},
    {13, 1, "snare", "..X...X...X...Xg"},
    {14, 1, "snare", "..X...X...X..gXx"},
    {13, 2, "closed hat", "xgxgxgxgxgxgxgxg"},
    {13, 2, "ride", "x.x.x.x.x.x.x.x."},
    {13, 2, "clap", "..x...x...x...x."},
    {15, 1, "crash", "X..............."},
    {15, 1, "impact", "X..............."},
    {15, 1, "kick", "X...X.xxX.xx...."},
    {15, 1, "snare", "....xoxxxxrr...."},
    {15, 1, "high tom", "....x..x........"},
    {15, 1, "low tom", ".....x..x.xx...."},
};

constexpr NoteLine notes[] = {
    // Every bolt rings in D.
    {0, "thunder", "D2:32! | -:16 | -:16 | D2:32!"},
    {1, "thunder", "-:8 D3:24 | -:16 | -:16 | -:16 | D2:32! | -:16 | D2:32! | -:16 | D2:32! | -:16"},
    {13, "thunder", "D3:16! | D2:28! -:4"},
    {0, "riser", "D3:30! -:2"},
    {0, "pad", "D3+Eb3+A3:16? | D3+Eb3+A3+D4:16"},
    {0, "metal bass",
     "D2:4! -:12 | D2:4! -:4 Eb2:2! F2:2 G2:2! -:2 |"
     "D2:2! D2:1 D2:1 D2:2! D2:1 D2:1 D2:2! D2:1 D2:1 Eb2:2! D2:1 C2:1 |"
     "D2:2! D2:1 D2:1 D2:2! D2:1 D2:1 A1:2! A1:1 A1:1 G#1:2! G#1:2! |"
     "Eb2:2! Eb2:1 Eb2:1 Eb2:2! Eb2:1 Eb2:1 G2:2! G2:1 G2:1 F2:2! Eb2:1 D2:1 |"
     "C2:2! C2:1 C2:1 C2:2! C2:1 C2:1 Bb1:2! C2:2! Eb2:2! F2:2! |"
     "-:16 |"
     "D2:2! D2:1 D2:1 D2:2! Eb2:1 D2:1 F2:2! D2:1 D2:1 Eb2:2! D2:1 C2:1 |"
     "Bb1:2! Bb1:1 Bb1:1 C2:2! C2:1 C2:1 Eb2:2! Eb2:1 Eb2:1 G2:2! A2:2! |"
     "-:16 |"
     "D2:2! D3:1 D2:1 D2:2! D3:1 D2:1 Eb2:2! Eb3:1 Eb2:1 Eb2:2! Eb3:1 Eb2:1 |"
     "A1:2! A2:1 A1:1 A1:2! A2:1 A1:1 G#1:2! G#2:1 G#1:1 G#1:2! C2:1! -:1 |"
     "-:16 |"
     "D2:2! D3:1 D2:1 Eb2:2! Eb3:1 Eb2:1 A1:2! A2:1 A1:1 G#1:2! G#2:1 G#1:1 |"
     "D2:2! D3:1 D2:1 Eb2:2! Eb3:1 Eb2:1 A2:2! A2:1 A1:1 G#2:2! G#2:1 G#1:1 |"
     "D2:4! Eb2:2! D2:2! C2:2! Bb1:2! -:4"},
    // The storm's own voice; after each shot it answers higher.
    {2, "sync lead",
     "D5:8! Eb5:8! | A5:12! ~G#5:4! | G5:4! Bb5:4 ~Eb6:4! D6:4 | C6:3! Bb5:3 G5:2 F5:4! Eb5:4 |"
     "-:16 |"
     "D6:1! Eb6:1 D6:1 A5:1 Eb6:1! D6:1 A5:1 G#5:1 D6:1! A5:1 G#5:1 F5:1 A5:1! G#5:1 Eb5:1 D5:1 |"
     "F5:3! G5:3 Bb5:2 ~Eb6:4! D6:4! |"
     "-:16 |"
     "D5:4! Eb5:4! A5:4! G#5:4! | C6:3! Bb5:3 G5:2 ~Eb6:4! D6:2! -:2 |"
     "-:16 |"
     "D6:4! Eb6:4! A5:4! G#5:4! | D6:2! Eb6:2! A6:2! G#6:2! D6:2! Eb6:2! A6:2! G#6:2! | ~D6:4! Eb6:2! D6:2 "
     "C6:2! Bb5:2 -:4"},
    {4, "strings",
     "G4:1! G4:1 Bb4:1 Bb4:1 Eb5:1! Eb5:1 Bb4:1 Bb4:1 G4:1! G4:1 Bb4:1 Bb4:1 Eb5:1! Eb5:1 G5:1 G5:1 |"
     "C5:1! C5:1 Eb5:1 Eb5:1 G5:1! G5:1 Eb5:1 Eb5:1 F5:1! D5:1 G5:1! Eb5:1 A5:1! F5:1 Bb5:1! G5:1"},
    {6, "stab", "D4+Eb4+A4:2? -:2 D4+Eb4+A4:2? -:2 D4+Eb4+A4:2? -:2 D4+Eb4+A4:2? -:2"},
    {7, "fall", "A5:16!"},
    {7, "choir", "D3+A3+D4+F4:16! | Bb2+F3+Bb3+D4:8! C3+G3+C4+Eb4:8!"},
    {7, "pad", "D3+A3+F4:16 | Bb2+F3+D4:8 C3+G3+Eb4:8"},
    {9, "stab", "Eb4+G4+Bb4:2? -:2 Eb4+G4+Bb4:2? -:2 Eb4+G4+Bb4:2? -:2 Eb4+G4+Bb4:2? -:2"},
    {10, "fall", "A5:16!"},
    {10, "choir", "D3+A3+D4+F4:8! Eb3+Bb3+Eb4+G4:8! | E3+A3+C4+A4:8! Eb3+G#3+C4+G#4:8!"},
    {10, "arp",
     "D5:1 A5:1 D6:1 F6:1 D6:1 A5:1 F5:1 A5:1 Eb5:1 Bb5:1 Eb6:1 G6:1 Eb6:1 Bb5:1 G5:1 Bb5:1 |"
     "A5:1 C6:1 E6:1 A6:1 E6:1 C6:1 A5:1 C6:1 G#5:1 C6:1 Eb6:1 G#6:1 Eb6:1 C6:1 G#5:1 C6:1"},
    {12, "stab", "C4+Eb4+G#4:2 -:2 C4+Eb4+G#4:2 -:2 C4+Eb4+G#4:2! -:2 C4+Eb4+G#4:2! -:2"},
    {12, "riser", "D3:16!"},
    {13, "fall", "A5:16!"},
    {13, "choir stab",
     "D3+A3+D4+F4:3! -:1 Eb3+Bb3+Eb4+G4:3! -:1 E3+A3+C4+A4:3! -:1 Eb3+G#3+C4+G#4:3! -:1 |"
     "D3+A3+D4+F4:3! -:1 Eb3+Bb3+Eb4+G4:3! -:1 E3+A3+C4+A4:3! -:1 Eb3+G#3+C4+G#4:3! -:1 |"
     "D3+A3+D4+F4:4! Eb3+Bb3+Eb4+G4:2! D3+A3+D4+F4:2! C3+G3+C4+Eb4:2! Bb2+F3+Bb3+D4:2! -:4"},
    {13, "strings",
     "D5:1! D5:1 F5:1 F5:1 Eb5:1! Eb5:1 G5:1 G5:1 A5:1! A5:1 E5:1 E5:1 G#5:1! G#5:1 Eb5:1 Eb5:1 |"
     "D5:1! D5:1 A5:1 A5:1 Eb5:1! Eb5:1 Bb5:1 Bb5:1 A5:1! A5:1 C6:1 C6:1 G#5:1! G#5:1 C6:1 C6:1 |"
     "D5:1! F5:1 A5:1 D6:1 Eb5:1! Bb5:1 D5:1! A5:1 C5:1! G5:1 Bb4:1! F5:1 -:4"},
    {14, "arp",
     "D6:1 A5:1 F6:1 D6:1 Eb6:1 Bb5:1 G6:1 Eb6:1 E6:1 C6:1 A6:1 E6:1 Eb6:1 C6:1 G#6:1 Eb6:1 |"
     "D6:1 A5:1 F6:1 D6:1 Eb6:1 Bb5:1 D6:1 A5:1 C6:1 G5:1 Bb5:1 F5:1 -:4"},
};

constexpr CurvePoint curves[] = {
    {"thunder", 0, 0.7f},
    {"thunder", 15, 1.0f},
    {"metal bass", 0, 0.5f},
    {"metal bass", 8.9, 0.8f},
    {"metal bass", 10, 0.7f},
    {"metal bass", 15, 1.0f},
    {"sync lead", 2, 0.35f},
    {"sync lead", 8.9, 0.7f},
    {"sync lead", 10, 0.6f},
    {"sync lead", 15, 1.0f},
    {"pad", 0, 0.2f},
    {"pad", 7, 0.7f},
    {"choir", 7, 0.8f},
    {"choir", 11, 1.0f},
    {"choir stab", 13, 1.0f},
    {"arp", 10, 0.4f},
    {"arp", 15, 0.8f},

    {"fader", 0, -1},
    {"fader", 1, -1.5f},
    {"fader", 1.87, -1},
    {"fader", 1.885, -14},
    {"fader", 1.99, -14},
    {"fader", 2, 0.6f},
    {"fader", 12.99, 0.6f},
    {"fader", 13, 1.5f},
    {"fader", 15.74, 1.5f},
    {"fader", 15.755, -12},
    {"fader", 15.99, -40},
    // The ground goes before the storm breaks.
    {"low cut", 0, 20},
    {"low cut", 1, 20},
    {"low cut", 1.95, 260},
    {"low cut", 1.99, 260},
    {"low cut", 2, 20},
};

}  // namespace

Movement skull() {
  return {drums, notes, curves, {}};
}

}  // namespace vex::song
