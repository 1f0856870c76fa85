#include "production/song/movements.h"

namespace vex::song {

namespace {

constexpr DrumLine drums[] = {
    // Prologue: a heart that quickens; far away the clock is already there.
    {0, 1, "heart", "........x..o...."},  {1, 3, "heart", "x..o............"},
    {4, 2, "heart", "x..o....x..o...."},  {6, 1, "heart", "x..o....x..o...."},
    {7, 1, "heart", "X.o.X.o.X.o.X..."},  {3, 1, "tick", "............g..."},
    {5, 1, "tick", "g.......g......."},   {6, 1, "tick", "g...g...g...g..."},
    {7, 1, "tick", "g.g.g.g.g.g.g..."},   {7, 1, "tock", ".g.g.g.g.g.g.g.."},
    {6, 1, "impact", "o..............."},
};

constexpr NoteLine notes[] = {
    {0, "crackle", "D2:112 -:16"},
    {0, "drone", "D1+A1+D2:124 -:4"},
    {0, "reversed bell", "-:16 D4+A4:16 | -:16 D5+Eb5:16! | -:16 A4+G#5:16! | -:8 D4+A4+D5+G#5:24!"},
    {2, "bell", "D3:16 | -:16"},
    {4, "far bell", "D5:8 Eb5:8 | A5:8 G#5:8"},
    {6, "far bell", "-:8 D6:4? A5:4? | Eb6:4? D6:4? A5:2? G#5:2? -:4"},
    {4, "choir", "D3+A3:32?"},
    {6, "choir", "D3+Eb3+A3:16 | D3+Eb3+A3+G#4:14! -:2"},
    {6, "riser", "D3:30 -:2"},
};

constexpr CurvePoint curves[] = {
    // Brightness.
    {"choir", 4, 0.0f},
    {"choir", 7, 0.55f},

    // Level in dB: out of the dark, and all rooms are shut for the breath.
    {"fader", 0, -6},
    {"fader", 3, -7},
    {"fader", 4, -8.5f},
    {"fader", 6, -7.5f},
    {"fader", 7.86, -3},
    {"fader", 7.88, -11},
    {"fader", 7.99, -7},
};

}  // namespace

Movement prologue() {
  return {drums, notes, curves, {}};
}

}  // namespace vex::song
