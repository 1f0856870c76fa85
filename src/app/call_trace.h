#pragma once

#include <string>

// The machine-readable record of all scene-function calls: UTF-8, a header line, then a line per
// call in call order, columns separated by tabs:
//   frame      0-based; -1 for calls replayed before the first frame
//   time       demo time, s; of a replayed call its part's midpoint
//   part, scene, function
//   sceneTime  s
//   p0 ... p8  one column per passed argument: a number as %.9g, a string as it stands

namespace vex {

// Starts the trace of what presentation parts call. Fatal: a file that cannot be made.
void openCallTrace(const std::string& path);

// The frame that the following calls belong to.
void setTracedFrame(int frame, float time);

// Puts the finished file in place. Fatal when that fails.
void closeCallTrace();

}  // namespace vex
