#include "timeline/project_rules.h"

#include <algorithm>
#include <cmath>
#include <functional>

#include "base/report.h"
#include "timeline/part_dispatcher.h"

namespace vex {

namespace {

std::string unusable(float value) {
  return formatted("is %g, not a usable number", static_cast<double>(value));
}

void noteNumbers(std::vector<CurveFault>& faults, const char* field, std::span<const float> values) {
  const auto odd =
      std::find_if_not(values.begin(), values.end(), [](float value) { return std::isfinite(value); });
  if (odd != values.end()) faults.push_back({field, unusable(*odd)});
}

// The dot behind one that does not lie before it.
CurveFault fallingDot(std::span<const float> x, std::size_t i) {
  return {"dot x", formatted("%g follows %g, the dots must ascend", static_cast<double>(x[i]),
                             static_cast<double>(x[i - 1]))};
}

void noteDots(std::vector<CurveFault>& faults, const Parameter& p) {
  const bool spline = p.type == PARAM_SPLINE;
  if (p.dotCount == 0) {
    faults.push_back({"curve", "has no dots", spline ? "calcSpline called with array size 0!" : nullptr});
    return;
  }
  const std::span x(p.dotX.get(), static_cast<std::size_t>(p.dotCount));
  noteNumbers(faults, "dot x", x);
  if (spline && x.size() > 2 && std::isnan(x[0]))
    faults.back().fatalText = "Critical error: t<x[0] in calc_spline!";
  noteNumbers(faults, "dot y", {p.dotY.get(), x.size()});
  const auto falls = std::adjacent_find(x.begin(), x.end(), std::greater<>());
  if (falls != x.end()) faults.push_back(fallingDot(x, static_cast<std::size_t>(falls - x.begin()) + 1));
  const auto stands = std::adjacent_find(x.begin(), x.end(), [](float a, float b) { return b - a == 0; });
  if (!spline || stands == x.end()) return;  // a step of straight lines is none
  faults.push_back(fallingDot(x, static_cast<std::size_t>(stands - x.begin()) + 1));
  if (x.size() > 2) faults.back().fatalText = "Critical error: d[]=0 in calc_spline!";
}

}  // namespace

std::optional<std::string> findNumberFault(float value) {
  if (std::isfinite(value)) return std::nullopt;
  return unusable(value);
}

bool lacksValue(const Parameter& parameter) {
  return parameter.type == PARAM_LINEAR && parameter.dotCount == 0;
}

std::vector<CurveFault> findCurveFaults(const Parameter& p) {
  std::vector<CurveFault> faults;
  if (p.type == PARAM_STRING) return faults;
  if (std::isnan(p.min)) faults.push_back({"min", unusable(p.min)});
  if (std::isnan(p.max)) faults.push_back({"max", unusable(p.max)});
  if (p.type == PARAM_CONST) noteNumbers(faults, "const", {&p.constant, 1});
  if (p.type == PARAM_SINE) {
    noteNumbers(faults, "sin period", {&p.sinPeriod, 1});
    noteNumbers(faults, "sin amplitude", {&p.sinAmplitude, 1});
    noteNumbers(faults, "sin offset", {&p.sinOffset, 1});
    noteNumbers(faults, "sin phase", {&p.sinPhase, 1});
  }
  if (p.type == PARAM_LINEAR || p.type == PARAM_SPLINE) noteDots(faults, p);
  return faults;
}

// The most parts are active when one begins.
std::optional<std::size_t> findCrowdedPart(std::span<const ActiveSpan> parts) {
  std::vector<std::size_t> byBeginning;
  std::vector<float> ends;
  for (std::size_t i = 0; i < parts.size(); ++i) {
    if (!(parts[i].begin < parts[i].end)) continue;
    byBeginning.push_back(i);
    ends.push_back(parts[i].end);
  }
  std::stable_sort(byBeginning.begin(), byBeginning.end(),
                   [&](std::size_t a, std::size_t b) { return parts[a].begin < parts[b].begin; });
  std::sort(ends.begin(), ends.end());
  std::size_t ended = 0;
  for (std::size_t i = 0; i < byBeginning.size(); ++i) {
    while (ends[ended] <= parts[byBeginning[i]].begin) ++ended;
    if (i + 1 - ended > maxActiveParts) return byBeginning[i];
  }
  return std::nullopt;
}

}  // namespace vex
