#pragma once

#include <string_view>
#include <vector>

// How the score is written down. A bar has 16 steps; blanks help the eye, "|" must stand at the end of a bar.

namespace vex::song {

inline constexpr int stepsPerBar = 16;

// Drums: one character a step: X loud, x firm, o soft, g ghost, r two quick ones, . nothing.
struct DrumLine {
  int bar;    // of its first step
  int times;  // how often it is played in a row
  std::string_view drum;
  std::string_view steps;
};

// Notes: words of pitches and a length in steps, as "D4:4" or "D4+F4+A4:16"; "-:4" is a rest. A
// trailing ! is louder, ? is softer; a leading ~ glides from the note before.
struct NoteLine {
  int bar;
  std::string_view instrument;
  std::string_view notes;
};

// What moves over the song: the brightness (0 to 1) of the instrument of that name, or one of the mix's
// own curves. Straight lines between the points; two points in one place are a step.
struct CurvePoint {
  std::string_view name;
  double bar;
  float value;
};

// From `bar` on, for `bars`, what was heard before comes back, backwards. It sounds beside what is
// written there, through a low pass at the curve "rewind cut".
struct Rewind {
  double bar, bars;
};

struct DrumHit {
  double bar;
  float velocity;
};

struct Note {
  double bar, bars;  // start and length
  std::vector<float> pitches;
  float fromPitch;  // 0: no glide
  float velocity;
};

// Fatal: text that is not of this notation, or does not fill whole bars.
std::vector<DrumHit> readDrums(const DrumLine& line);
std::vector<Note> readNotes(const NoteLine& line);

// MIDI number of "C4" (60), "Eb3", "G#5"; fatal for anything else.
float readPitch(std::string_view name);

}  // namespace vex::song
