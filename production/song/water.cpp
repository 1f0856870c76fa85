#include "production/song/movements.h"

namespace vex::song {

namespace {

constexpr DrumLine drums[] = {
    // Nothing; then one drop.
    {0, 1, "droplet", "........X......."},
    {1, 1, "droplet", "....o.........g."},
    {2, 2, "droplet", "o.....g....o...."},
    {4, 4, "droplet", "......g......o.."},
    {8, 4, "droplet", "..o......g......"},
    {12, 2, "droplet", "...g...o......g."},
    {14, 2, "droplet", "o......g....o..."},
    // Something large moves below.
    {2, 1, "impact", "o..............."},
    {6, 1, "impact", "g..............."},
    {6, 6, "heart", "x..o............"},
    {11, 1, "high tom", "........x..x...."},
    {11, 1, "low tom", "..........x..xXX"},
    {12, 1, "impact", "x..............."},
    {12, 1, "crash", "o..............."},
    {12, 3, "low tom", "x.....o...x....."},
    {12, 3, "ride", "g...g...g...g..."},
    {12, 3, "heart", "x..o....x..o...."},
    // From the other side of the surface the console calls.
    {14, 1, "chip hat", "..g...g...g...g."},
    {15, 1, "chip hat", "g.g.g.g.gggggggg"},
    {15, 1, "chip snare", "........o.o.xxXX"},
    {15, 1, "high tom", "........X..x...."},
    {15, 1, "low tom", "..........x..xXX"},
};

constexpr NoteLine notes[] = {
    {1, "rain", "D4:224"},
    {2, "pad",
     "D3+A3+E4:32? | D3+A3+F4:8? Eb3+Bb3+G4:8? | A2+D3+A3+F4:12? G#2+E3+B3+D4:4? |"
     "A2+E3+C4:16? | Bb2+F3+A3+D4:16? |"
     "D3+A3+F4:8 Eb3+Bb3+G4:8 | F3+C4+A4:8 E3+G#3+D4:4 A2+E3+C4:4 | Bb2+F3+D4:8 C3+G3+E4:4 F3+C4+A4:4 |"
     "G2+D3+Bb3:8 A2+E3+C#4:8 |"
     "G3+Bb3+D4+F4:16 | A3+C#4+E4+A4:16 | Bb3+D4+E4+G4:16? | A3+C#4+E4+G4:15? -:1"},
    {2, "far bell", "-:8 E6:4? A5:4? | -:4 D6:4? -:8"},
    // The motif is the beginning of a tune, and the tune goes home.
    {4, "glass harp",
     "D5:8! Eb5:8! | A5:12! G#5:4 | A5:8! F5:4 E5:4 | D5:16 |"
     "D5:8! Eb5:8! | A5:8! G#5:4 A5:4! | D6:8! C6:4 A5:4 | Bb5:6! A5:6 E5:4 |"
     "G5:8! A5:4 Bb5:4 | A5:8! G#5:4 A5:4 | G5:8 E5:8 | C#5:8 E5:4 G5:4"},
    {4, "sub bass",
     "D2:8? Eb2:8? | A1:12? G#1:4? | A1:16? | Bb1:16? | D2:8 Eb2:8 | F2:8 E2:4 A1:4 | Bb1:8 C2:4 F1:4 | G1:8 "
     "A1:8 |"
     "G1:16! | A1:16! | Bb1:16 | A1:12 -:4"},
    {6, "far bell",
     "-:2 C6:2? E6:2? A5:2? -:8 | -:4 F6:2? D6:2? A5:4? -:4 |"
     "-:2 D6:2? A5:2? F5:2? -:2 G6:2? Eb6:2? Bb5:2? | -:2 F6:2? C6:2? A5:2? -:8 |"
     "-:2 Bb5:2? F6:2? D6:2? -:8 | -:2 G5:2? Bb5:2? D6:2? -:2 C#6:2? E6:2? A6:2?"},
    {8, "choir",
     "D3+A3+D4+F4:8? Eb3+Bb3+Eb4+G4:8? | F3+C4+F4:8? E3+G#3+B3:4? A3+C4+E4:4? | Bb2+F3+D4:8? C3+G3+E4:4? "
     "F3+A3+C4:4? |"
     "G3+Bb3+D4:8? A3+C#4+E4:8? | G3+Bb3+D4+G4:16 | A3+C#4+E4+A4:16 | Bb3+D4+G4:16? | A3+C#4+E4+G4:14? -:2"},
    {8, "strings",
     "D4:2? A4:2? D5:2? F5:2? Eb4:2? Bb4:2? Eb5:2? G5:2? | F4:2? C5:2? F5:2? A5:2? E4:2? G#4:2? A4:2? C5:2? |"
     "Bb4:2? D5:2? F5:2? Bb5:2? C5:2? E5:2? F5:2? A5:2? | G4:2? Bb4:2? D5:2? G5:2? A4:2? C#5:2? E5:2? A5:2? |"
     "G4:1 Bb4:1 D5:1 F5:1 G5:1 F5:1 D5:1 Bb4:1 G4:1 Bb4:1 D5:1 F5:1 G5:1 F5:1 D5:1 Bb4:1 |"
     "A4:1 C#5:1 E5:1 A5:1 C#6:1 A5:1 E5:1 C#5:1 A4:1 C#5:1 E5:1 A5:1 C#6:1 A5:1 E5:1 C#5:1"},
    {10, "swell", "Bb3+D4+F4:16? | A3+C#4+E4+A4:16"},
    {12, "soprano", "D5:8? F5:8? | E5:16 | D5:8? Bb4:8? | C#5:12? -:4"},
    {12, "bell", "G4:16 | A4:16 | -:16 | -:16"},
    {14, "reversed bell", "-:8 A4+E5:8 | A5+C#6:15! -:1"},
    {15, "swell", "A3+C#4+E4+A4:15! -:1"},
    {15, "riser", "A3:15 -:1"},
    {14, "chip chords", "-:16 | A4+C#5+E5:2? -:2 A4+C#5+E5:2? -:2 A4+C#5+G5:2 -:2 A4+C#5+G5:2! -:2"},
};

constexpr CurvePoint curves[] = {
    {"rain", 1, 0.4f},      {"pad", 2, 0.05f},       {"pad", 8, 0.25f},        {"pad", 12, 0.6f},
    {"pad", 15, 0.4f},      {"glass harp", 4, 0.5f}, {"glass harp", 12, 0.9f}, {"sub bass", 4, 0.2f},
    {"sub bass", 12, 0.5f}, {"choir", 8, 0.15f},     {"choir", 12, 0.6f},      {"choir", 14, 0.3f},
    {"swell", 10, 0.5f},    {"swell", 15, 0.7f},     {"soprano", 12, 0.6f},    {"chip chords", 15, 0.4f},

    {"fader", 0, -40},      {"fader", 0.45, -20},    {"fader", 0.5, -3},       {"fader", 4, -4.5f},
    {"fader", 8, -6},       {"fader", 12, -4.2f},    {"fader", 14, -4.3f},     {"fader", 15.9, -3.3f},
    {"low cut", 0, 20},     {"low cut", 14, 20},     {"low cut", 15.99, 150},  {"low cut", 16, 20},
};

}  // namespace

Movement water() {
  return {drums, notes, curves, {}};
}

}  // namespace vex::song
