#pragma once

#include <string>
#include <utility>
#include <vector>

#include "production/image/encode.h"

// A presentation's script as records, and its file. Times in seconds.

namespace vex::show {

struct CurveDot {
  double x = 0, y = 0;  // progress of the part (0 to 1) and value
};

enum class CurveKind : signed char { constant = 0, linear = 1, spline = 2, sine = 3, text = 4 };

struct Curve {
  CurveKind kind = CurveKind::constant;
  double value = 0;
  double cycles = 0, amplitude = 0, offset = 0, phase = 0;  // sine; cycles over the part, phase in degrees
  std::vector<CurveDot> dots;
  std::string text;

  Curve(double constant = 0) : value(constant) {}
  Curve(CurveKind theKind, std::vector<CurveDot> theDots) : kind(theKind), dots(std::move(theDots)) {}
};

struct ScriptParameter {
  Curve curve;
  double least = 0, most = 0;  // the value is held between them
  std::string name{};
};

struct ScriptCall {
  std::string scene, function;
  std::vector<ScriptParameter> parameters;
};

struct ScriptPart {
  std::string name;
  double position = 0, start = 0, length = 0, speed = 1;
  int track = 0;
  std::vector<ScriptCall> calls;
};

struct Script {
  double startTime = 0, totalTime = 0;
  std::string sound;
  std::vector<double> ticks;  // marks for the editing tool
  std::vector<ScriptPart> parts;
};

// Orders the parts by position (file order among equals) and writes them.
// Fatal: whatever the format cannot hold, naming part, function and value.
image::Bytes writeProject(Script script);

}  // namespace vex::show
