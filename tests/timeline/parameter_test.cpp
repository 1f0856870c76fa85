#include "timeline/parameter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <limits>
#include <utility>
#include <vector>

#include "tests/support/fatal.h"

namespace vex {
namespace {

constexpr float nan = std::numeric_limits<float>::quiet_NaN();
constexpr float infinity = std::numeric_limits<float>::infinity();
using Dots = std::vector<std::pair<float, float>>;

struct Curve {
  ParameterType type;
  Dots dots = {};
  float constant = 0;
  float period = 0, amplitude = 0, offset = 0, phase = 0;
  float min = -100, max = 100;
};

void fill(Parameter& parameter, const Curve& curve) {
  parameter.type = curve.type;
  parameter.constant = curve.constant;
  parameter.sinPeriod = curve.period;
  parameter.sinAmplitude = curve.amplitude;
  parameter.sinOffset = curve.offset;
  parameter.sinPhase = curve.phase;
  parameter.min = curve.min;
  parameter.max = curve.max;
  parameter.dotCount = static_cast<int>(curve.dots.size());
  parameter.dotX = std::make_unique<float[]>(curve.dots.size());
  parameter.dotY = std::make_unique<float[]>(curve.dots.size());
  for (std::size_t i = 0; i < curve.dots.size(); ++i) {
    parameter.dotX[i] = curve.dots[i].first;
    parameter.dotY[i] = curve.dots[i].second;
  }
}

TEST(Parameter, Values) {
  const Dots ramp = {{0, 0}, {1, 10}}, bent = {{0.2f, 1}, {0.4f, 5}, {0.8f, -3}};
  const Dots step = {{0, 1}, {0.5f, 1}, {0.5f, 7}, {1, 7}};
  const Dots falling = {{0.5f, 8}, {0.2f, 6}, {1, -2}};  // behind 0.5 the line from 0.2 to 1
  struct Row {
    Curve curve;
    float progress, expected;
  };
  for (const Row& row : {
           Row{{.type = PARAM_CONST, .constant = 0, .min = 0, .max = 1}, 0, 0},
           Row{{.type = PARAM_CONST, .constant = 2, .min = 0, .max = 1}, 0.3f, 1},
           Row{{.type = PARAM_CONST, .constant = -1, .min = 0, .max = 1}, 0.9f, 0},
           Row{{.type = PARAM_CONST, .constant = 3, .min = 5, .max = 1}, 0, 5},  // min above max
           Row{{.type = PARAM_CONST, .constant = 7, .min = 5, .max = 1}, 0, 1},
           Row{{.type = PARAM_CONST, .constant = nan, .min = -2, .max = 4}, 0, 4},
           Row{{.type = PARAM_CONST, .constant = infinity, .min = -2, .max = 4}, 0, 4},
           Row{{.type = PARAM_CONST, .constant = 1, .min = nan, .max = 4}, 0, 4},
           Row{{.type = PARAM_LINEAR, .dots = ramp}, 0.5f, 5},
           Row{{.type = PARAM_LINEAR, .dots = ramp}, 0, 0},
           Row{{.type = PARAM_LINEAR, .dots = bent}, 0.1f, 1},
           Row{{.type = PARAM_LINEAR, .dots = bent}, 0.3f, 3},
           Row{{.type = PARAM_LINEAR, .dots = bent}, 0.4f, 5},
           Row{{.type = PARAM_LINEAR, .dots = bent}, 0.6f, 1},
           Row{{.type = PARAM_LINEAR, .dots = bent}, 0.9f, -3},
           Row{{.type = PARAM_LINEAR, .dots = bent, .min = 0}, 0.9f, 0},
           Row{{.type = PARAM_LINEAR, .dots = step}, 0.5f, 1},
           Row{{.type = PARAM_LINEAR, .dots = step}, 0.6f, 7},
           Row{{.type = PARAM_LINEAR, .dots = {{0.5f, 8}}}, 0.9f, 8},
           Row{{.type = PARAM_LINEAR, .dots = falling}, 0.5f, 8},
           Row{{.type = PARAM_LINEAR, .dots = falling}, 0.6f, 2},
           Row{{.type = PARAM_LINEAR, .dots = {{nan, 8}, {1, 2}}, .max = 5}, 0.5f, 5},
           Row{{.type = PARAM_LINEAR, .dots = {{0, infinity}, {1, 2}}, .max = 5}, 0.5f, 5},
           Row{{.type = PARAM_SPLINE, .dots = {{0.2f, 0}, {0.6f, 4}}, .max = 5}, 0.8f, 5},
           Row{{.type = PARAM_SPLINE, .dots = {{0.2f, 0}, {0.2f, 4}}, .max = 5}, 0.8f, 5},
           Row{{.type = PARAM_SPLINE, .dots = bent}, 0.4f, 5},
           Row{{.type = PARAM_SINE, .period = 1, .amplitude = 2, .offset = 1, .phase = 30}, 0, 2},
           Row{{.type = PARAM_SINE, .period = 1, .amplitude = 2, .offset = 1, .phase = 30}, 0.5f, 0},
           Row{{.type = PARAM_SINE, .period = 3, .amplitude = 2, .offset = 1, .phase = -20}, 1 / 21.6f, 2},
           Row{{.type = PARAM_SINE, .period = 2, .amplitude = 3, .offset = 1, .max = 2}, 0.125f, 2},
           Row{{.type = PARAM_SINE, .period = infinity, .amplitude = 3, .max = 2}, 0.125f, 2},
       }) {
    Parameter parameter;
    fill(parameter, row.curve);
    EXPECT_NEAR(*static_cast<const float*>(parameter.evaluate(row.progress)), row.expected, 1e-5)
        << "type " << row.curve.type << " at " << row.progress;
  }
}

// With many cycles the ten decimals of pi show: the full constant gives another float.
TEST(Parameter, SineUsesPiOfTenDecimals) {
  Parameter parameter;
  fill(parameter, {.type = PARAM_SINE, .period = 1e6f, .amplitude = 1});
  const float expected = static_cast<float>(std::sin(2e6 * 3.1415926536));
  EXPECT_EQ(*static_cast<const float*>(parameter.evaluate(1)), expected);
  EXPECT_GT(expected, 1e-5f);
}

TEST(Parameter, GivesTheAddressOfWhatHolds) {
  Parameter parameter;
  fill(parameter, {.type = PARAM_LINEAR, .dots = {{0, -5}, {1, 5}}, .min = -1, .max = 1});
  EXPECT_EQ(parameter.evaluate(0), &parameter.min);
  EXPECT_EQ(parameter.evaluate(0.5f), &parameter.value);
  EXPECT_EQ(parameter.evaluate(1), &parameter.max);
  parameter.type = PARAM_STRING;
  std::snprintf(parameter.string, sizeof parameter.string, "%s", "data\\chrome");
  EXPECT_EQ(parameter.evaluate(0.5f), parameter.string);
  EXPECT_STREQ(parameter.string, "data\\chrome");
}

TEST(Parameter, FatalTexts) {
  struct Row {
    Curve curve;
    const char* text;
  };
  for (const Row& row : {
           Row{{.type = static_cast<ParameterType>(5)}, "Unknown parameter type\n"},
           Row{{.type = static_cast<ParameterType>(-1)}, "Unknown parameter type\n"},
           Row{{.type = PARAM_LINEAR}, "linear parameter height has no dots"},
       }) {
    Parameter parameter;
    std::snprintf(parameter.name, sizeof parameter.name, "height");
    fill(parameter, row.curve);
    EXPECT_EQ(fatalText([&] { parameter.evaluate(0.25f); }), row.text);
  }
}

}  // namespace
}  // namespace vex
