#include "timeline/parameter.h"

#include <cmath>

#include "base/pi.h"
#include "base/report.h"
#include "engine/spline.h"

namespace vex {

namespace {

float evaluateLinear(const Parameter& parameter, float p) {
  const float* x = parameter.dotX.get();
  const float* y = parameter.dotY.get();
  const int count = parameter.dotCount;
  if (count <= 0) fatalError("linear parameter %s has no dots", parameter.name);
  int i = 0;
  while (i < count && p > x[i]) ++i;
  if (i == 0) return y[0];
  if (i == count) return y[count - 1];
  return (y[i] - y[i - 1]) / (x[i] - x[i - 1]) * (p - x[i - 1]) + y[i - 1];
}

float evaluateSine(const Parameter& parameter, float p) {
  return static_cast<float>(std::sin(p * 2.0 * piToTenDecimals * parameter.sinPeriod +
                                     parameter.sinPhase / 180.0 * piToTenDecimals) *
                                parameter.sinAmplitude +
                            parameter.sinOffset);
}

}  // namespace

Parameter::~Parameter() {
  logPrintf("      destroying parameter %s\n", name);
}

const void* Parameter::evaluate(float progress) {
  switch (type) {
    case PARAM_CONST:
      value = constant;
      break;
    case PARAM_LINEAR:
      value = evaluateLinear(*this, progress);
      break;
    case PARAM_SPLINE:
      value = calc_spline(dotX.get(), dotY.get(), dotCount, progress);
      break;
    case PARAM_SINE:
      value = evaluateSine(*this, progress);
      break;
    case PARAM_STRING:
      return string;
    default:
      fatalError("Unknown parameter type\n");
  }
  if (min <= value && value <= max) return &value;
  if (value < min) return &min;
  return &max;  // also for what is not a number
}

}  // namespace vex
