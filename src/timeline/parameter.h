#pragma once

#include <cstdint>
#include <memory>

namespace vex {

inline constexpr int projectNameSize = 128;   // part, call and parameter names
inline constexpr int projectStringSize = 32;  // value of a string parameter

enum ParameterType : std::int8_t {
  PARAM_CONST = 0,
  PARAM_LINEAR = 1,
  PARAM_SPLINE = 2,
  PARAM_SINE = 3,
  PARAM_STRING = 4,
};

// One argument of a function call as a curve over the part's progress (0 at its beginning, 1 at its
// end). Every field is filled whatever the type.
struct Parameter {
  char name[projectNameSize] = "";
  std::int8_t type = PARAM_CONST;
  float min = 0.0f;
  float max = 0.0f;
  float sinPeriod = 0.0f;  // full cycles over the part
  float sinAmplitude = 0.0f;
  float sinOffset = 0.0f;
  float sinPhase = 0.0f;  // degrees
  char string[projectStringSize] = "";
  float constant = 0.0f;
  std::unique_ptr<float[]> dotX;  // progress, ascending
  std::unique_ptr<float[]> dotY;
  int dotCount = 0;
  float value = 0.0f;       // of the last evaluation, before clamping
  float afterValue = 0.0f;  // ends the text that a function wanting one instead of a number would see

  Parameter() = default;
  Parameter(const Parameter&) = delete;
  Parameter& operator=(const Parameter&) = delete;
  ~Parameter();  // logs "      destroying parameter %s\n"

  // Address of a float of this parameter, clamped to min and max, or of its string. The value behind it
  // changes with the next evaluation.
  // Fatal: "Unknown parameter type\n"; a linear curve without dots; what calc_spline refuses.
  const void* evaluate(float progress);
};

}  // namespace vex
