#pragma once

#include <optional>
#include <string>
#include <vector>

// The presentation without window, dialogs and sound device: a fixed time step instead of the clock,
// pictures and a trace instead of a screen.

namespace vex {

struct Recording {
  std::string video;         // file to write, empty for none
  std::string contactSheet;  // likewise
  std::string trace;         // likewise
  std::string stillsFolder;
  std::vector<double> stills;      // demo times, s
  double contactSheetEvery = 5.0;  // s
  int width = 1280;
  int height = 720;
  int framesPerSecond = 30;
  std::optional<float> from;  // in place of the project's start time, s
  std::optional<float> to;    // in place of the project's total time, s
};

// Demo time of frame n.
float frameTime(float start, int n, int framesPerSecond);

// Number of the last frame: the first that reaches the end.
int lastFrame(float start, float end, int framesPerSecond);

// Records the presentation of the working folder; relative output names count from there, too.
// Returns the exit code: 0, or 130 when a signal interrupted it (the video so far is kept then).
// Fatal: whatever keeps it from recording.
int record(const Recording& recording);

}  // namespace vex
