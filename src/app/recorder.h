#pragma once

#include <optional>
#include <string>
#include <vector>

#include "timeline/tempo.h"

// The presentation without window, dialogs and sound device: a fixed time step instead of the clock,
// pictures and a trace instead of a screen.

namespace vex {

// A picture of the frame nearest to a demo time, s, as NAME.png.
struct Still {
  double time;
  std::string name;
};

struct Recording {
  std::string video;         // file to write, empty for none
  std::string contactSheet;  // likewise
  std::string trace;         // likewise
  std::string framesFolder;  // for every frame as 000000.png, 000001.png, ..., empty for none
  std::string stillsFolder;
  std::vector<Still> stills;
  double contactSheetEvery = 5.0;  // s
  int width = 1280;
  int height = 720;
  int supersample = 1;  // draws that many times the pixels each way and takes their mean: smooth edges
  int framesPerSecond = 30;
  int quality = 1;             // of an .mp4, as VideoFormat
  std::optional<Tempo> tempo;  // of the labels of a contact sheet
  std::optional<float> from;   // in place of the project's start time, s
  double runIn = 2.0;          // s that particles and water move before `from`, where there are pictures
  std::optional<float> to;     // in place of the project's total time, s
};

// Demo time of frame n.
float frameTime(float start, int n, int framesPerSecond);

// Number of the last frame: the first that reaches the end.
int lastFrame(float start, float end, int framesPerSecond);

// "0003.500" for 3.5 s.
std::string stillName(double time);

// Stills at the cues of a text file: lines of seconds, blanks, a name; empty lines and lines that
// begin with # do not count. They are named by time and cue ("0003.500 drop"), with what cannot stand
// in a file name as underscores. Fatal: a file that cannot be read, a line without time or name.
std::vector<Still> readCues(const std::string& path);

// Records the presentation of the working folder; relative output names count from there, too.
// Returns the exit code: 0, or 130 when a signal interrupted it (the video so far is kept then).
// Fatal: whatever keeps it from recording.
int record(const Recording& recording);

}  // namespace vex
