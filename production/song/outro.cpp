#include "production/song/movements.h"

namespace vex::song {

namespace {

constexpr DrumLine drums[] = {
    {0, 1, "impact", "X..............."},
    {0, 1, "crash", "X..............."},
    {0, 3, "kick", "X...X...X...X..."},
    {3, 1, "kick", "X...X..........."},
    {0, 3, "chip snare", "....X.......X..."},
    {3, 1, "chip snare", "....X.o.xoxoxr.."},
    {0, 3, "chip hat", "x.o.x.o.x.o.x.oo"},
    {3, 1, "chip hat", "x.o.x.o.x.o.x..."},
    {2, 1, "open hat", "..x...x...x...x."},
    {3, 1, "open hat", "..x...x...x....."},
    {3, 1, "high tom", "........x..x...."},
    {3, 1, "low tom", "..........x..x.."},
    // The party.
    {4, 1, "impact", "X..............."},
    {4, 1, "crash", "X..............."},
    {6, 1, "crash", "x..............."},
    {4, 3, "kick", "X...X...X...X..o"},
    {7, 1, "kick", "X...X...X......."},
    {4, 3, "chip snare", "....X..o....X.oo"},
    {7, 1, "chip snare", "....X..oxoxxXxrr"},
    {4, 4, "clap", "....x.......x..."},
    {4, 4, "open hat", "..x...x...x...x."},
    {4, 4, "chip hat", "xgogxgogxgogxgog"},
    {7, 1, "low tom", "...........x.xxx"},
    {8, 1, "impact", "x..............."},
    {8, 1, "crash", "X..............."},
    {10, 1, "crash", "x..............."},
    {8, 2, "kick", "X...X...X...X..x"},
    {10, 1, "kick", "X...X...X.x.X..."},
    {8, 2, "chip snare", "....X..o....X.oo"},
    {10, 1, "chip snare", "....X..oxoxoxxrr"},
    {8, 3, "clap", "....x.......x..."},
    {8, 3, "ride", "x.x.x.x.x.x.x.x."},
    {8, 3, "open hat", "o.X.o.X.o.X.o.X."},
    {8, 3, "chip hat", "xgogxgogxgogxgog"},
    {10, 1, "high tom", "........x.x....."},
    {10, 1, "low tom", "...........xx.xx"},
    // The last chord.
    {11, 1, "impact", "X..............."},
    {11, 1, "kick", "X..............."},
    {11, 1, "crash", "X..............."},
};

constexpr NoteLine notes[] = {
    {0, "fall", "D4:16"},
    {0, "chip chords",
     "-:2 D5+F#5+A5:2! -:2 D5+F#5+A5:2! -:2 D5+F#5+A5:2! -:1 D5+F#5+A5:1 D5+F#5+A5:2! |"
     "-:2 D5+G5+B5:2! -:2 D5+G5+B5:2! -:2 D5+G5+B5:2! -:1 D5+G5+B5:1 D5+G5+B5:2! |"
     "-:2 D5+F#5+B5:2! -:2 D5+F#5+B5:2! -:2 D5+F#5+B5:2! -:1 D5+F#5+B5:1 D5+F#5+B5:2! |"
     "-:2 C#5+E5+A5:2! -:2 C#5+E5+A5:2! -:2 C#5+G5+A5:2! -:1 C#5+G5+A5:1 -:2"},
    {0, "chip bass",
     "D2:2! D3:2 D2:2! D3:2 D2:2! D3:2 F#2:2! A2:2 | G2:2! G3:2 G2:2! G3:2 G2:2! G3:2 B2:2! G2:2 |"
     "B1:2! B2:2 B1:2! B2:2 B1:2! B2:2 D3:2! B2:2 | A1:2! A2:2 A1:2! A2:2 A1:2! A2:2 C#3:2! -:2 |"
     "D2:2! D3:2 D2:2! D3:2 B1:2! B2:2 Eb2:2! B2:2 | A1:2! A2:2 A1:2! A2:2 E2:2! E3:2 G#2:2! E2:2 |"
     "A1:2! A2:2 A1:2! A2:2 G2:2! A2:2 E2:2! C#2:2 | D2:2! D3:2 A2:2! D3:2 F#2:2! D3:2 A2:1! B2:1 C#3:1! "
     "A2:1 |"
     "D2:2! D3:2 B1:2! Eb2:2 E2:2! G#2:2 A1:2! A2:2 | G2:2! G3:2 G2:2! G3:2 F#2:2! F#3:2 B1:2! B2:2 |"
     "E2:2! E3:2 E2:2! G2:2 A1:2! A2:2 A1:1! A2:1 C#3:1! E3:1 | D2:16!"},
    // The last notes before the party stand alone.
    {2, "chip lead", "F#5:3! D5:3 B4:2 D5:4! F#5:4 | E5:3! C#5:3 A4:2 C#5:2! E5:2 G5:1! A5:1! B5:1! C#6:1!"},
    // The motif at home: each of its strange notes turns into the third of a chord that leads on.
    {4, "chip lead",
     "D6:8! Eb6:8! | A5:8! G#5:8! | A5:4! B5:2 C#6:2 E6:4! C#6:2 A5:2 | D6:6! A5:2 F#5:4 A5:2! B5:1! C#6:1! |"
     "D6:4! Eb6:4! A5:2! G#5:2! A5:4! | B5:3! D6:3 G6:2! F#6:4! D6:4 | E6:3! G6:3 B6:2! A6:4! G6:2 E6:2 |"
     "D6:14! -:2"},
    {4, "chip chords",
     "D4+F#4+A4:4! D4+F#4+A4:4 B3+Eb4+F#4+A4:4! B3+Eb4+F#4+A4:4 | C#4+E4+A4:4! C#4+E4+A4:4 B3+E4+G#4+D5:4! "
     "B3+E4+G#4+D5:4 |"
     "C#4+E4+A4:4! C#4+E4+A4:4 C#4+E4+G4+A4:4! C#4+E4+G4+A4:4 | D4+F#4+A4:4! D4+F#4+A4:4 D4+F#4+A4+D5:4! "
     "C#4+E4+G4+A4:4 |"
     "D4+F#4+A4:4! B3+Eb4+F#4+A4:4! B3+E4+G#4:4! C#4+E4+A4:4! | B3+D4+G4:4! B3+D4+G4:4 A3+D4+F#4:4! "
     "B3+D4+F#4:4 |"
     "B3+E4+G4:4! B3+E4+G4:4 C#4+E4+G4+A4:4! C#4+E4+G4+A4:4"},
    // Those who were met on the way join in.
    {4, "pad",
     "D3+A3+F#4:8 B2+F#3+Eb4:8 | A2+E3+C#4:8 E3+G#3+D4:8 | A2+E3+G3+C#4:16 | D3+A3+F#4:16 |"
     "D3+A3+F#4:8 E3+G#3+D4:8 | G3+B3+D4:8 F#3+B3+D4:8 | E3+G3+B3:8 A3+C#4+G4:8"},
    {6, "music box",
     "E6:2 C#6:2 A5:2 C#6:2 E6:2 G6:2 E6:2 C#6:2 | F#6:2 D6:2 A5:2 D6:2 F#6:2 A6:2 F#6:2 E6:2"},
    {8, "lead", "F#5:4! A5:4 E5:4! A5:4 | D5:6! B4:2 D5:4! F#5:4 | G5:6! E5:2 C#5:4! E5:4"},
    {8, "strings",
     "D4:1! F#4:1 A4:1 D5:1 B3:1! Eb4:1 F#4:1 B4:1 B3:1! E4:1 G#4:1 B4:1 C#4:1! E4:1 A4:1 C#5:1 |"
     "G4:1! B4:1 D5:1 G5:1 G4:1! B4:1 D5:1 G5:1 F#4:1! A4:1 D5:1 F#5:1 B4:1! D5:1 F#5:1 B5:1 |"
     "E4:1! G4:1 B4:1 E5:1 G4:1! B4:1 E5:1 G5:1 A4:1! C#5:1 E5:1 G5:1 A5:1! G5:1 E5:1 C#5:1"},
    {8, "choir",
     "D3+A3+D4+F#4:8! E3+G#3+D4:4! A3+C#4+E4:4! | G3+B3+D4+G4:8! F#3+B3+D4:8! | E3+G3+B3+E4:8! "
     "A3+C#4+E4+G4:8!"},
    {9, "riser", "A2:32!"},

    // Rings for two bars, the second of them in the tail; the arpeggio slows down.
    {11, "final choir", "D3+A3+D4+F#4+A4:32!"},
    {11, "final pad", "D2+A2+D3+F#3+A3+D4:32!"},
    {11, "sub bass", "D1:32"},
    {11, "bell", "D3+A3+D4+F#4:32!"},
    {11, "chip chords", "D4+F#4+A4+D5:8 D4:1 F#4:1 A4:1 D5:1 D4:2? F#4:2? A4:2? D5:2? F#5:4? A5:8?"},
    {11, "last bell", "-:4 F#5:8 A5:8 D6:12"},
};

constexpr CurvePoint curves[] = {
    {"chip chords", 0, 0.7f}, {"chip chords", 4, 0.3f}, {"chip chords", 11, 0.2f}, {"chip lead", 2, 0.5f},
    {"chip lead", 4, 0.67f},  {"chip lead", 8, 1.0f},   {"chip lead", 11, 0.67f},  {"pad", 4, 0.5f},
    {"pad", 10, 0.9f},        {"lead", 8, 0.6f},        {"choir", 8, 0.8f},        {"final choir", 11, 0.6f},
    {"final pad", 11, 0.5f},  {"sub bass", 11, 1.0f},

    {"fader", 0, -1},         {"fader", 3.99, -1},      {"fader", 4, -0.4f},       {"fader", 7.99, -0.4f},
    {"fader", 8, 0.3f},       {"fader", 11, 0.5f},      {"fader", 12, -1.5f},      {"low cut", 0, 20},
    {"low cut", 3.25, 20},    {"low cut", 3.97, 300},   {"low cut", 3.99, 300},    {"low cut", 4, 20},
};

}  // namespace

Movement outro() {
  return {drums, notes, curves, {}};
}

}  // namespace vex::song
