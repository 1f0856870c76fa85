#include "timeline/project_rules.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <utility>
#include <vector>

#include "timeline/part_dispatcher.h"

namespace vex {

namespace {

std::string unusable(float value) {
  char text[64];
  std::snprintf(text, sizeof text, "is %g, not a usable number", static_cast<double>(value));
  return text;
}

}  // namespace

std::optional<std::string> findNumberFault(float value) {
  if (std::isfinite(value)) return std::nullopt;
  return unusable(value);
}

std::optional<CurveFault> findCurveFault(const Parameter& p) {
  if (p.type == PARAM_STRING) return std::nullopt;
  if (std::isnan(p.min)) return CurveFault{"min", unusable(p.min)};
  if (std::isnan(p.max)) return CurveFault{"max", unusable(p.max)};
  if (p.type == PARAM_CONST && !std::isfinite(p.constant)) return CurveFault{"const", unusable(p.constant)};
  if (p.type == PARAM_SINE) {
    for (const auto& [field, value] :
         {std::pair{"sin period", p.sinPeriod}, std::pair{"sin amplitude", p.sinAmplitude},
          std::pair{"sin offset", p.sinOffset}, std::pair{"sin phase", p.sinPhase}}) {
      if (!std::isfinite(value)) return CurveFault{field, unusable(value)};
    }
  }
  if (p.type != PARAM_LINEAR && p.type != PARAM_SPLINE) return std::nullopt;

  const bool spline = p.type == PARAM_SPLINE;
  if (p.dotCount == 0) {
    return CurveFault{"curve", "has no dots", spline ? "calcSpline called with array size 0!" : nullptr};
  }
  for (int i = 0; i < p.dotCount; ++i) {
    if (!std::isfinite(p.dotX[i])) return CurveFault{"dot x", unusable(p.dotX[i])};
    if (!std::isfinite(p.dotY[i])) return CurveFault{"dot y", unusable(p.dotY[i])};
    if (i == 0 || p.dotX[i] > p.dotX[i - 1]) continue;
    const bool equal = p.dotX[i] == p.dotX[i - 1];
    if (equal && !spline) continue;  // a step
    char complaint[96];
    std::snprintf(complaint, sizeof complaint, "%g follows %g, the dots must ascend",
                  static_cast<double>(p.dotX[i]), static_cast<double>(p.dotX[i - 1]));
    return CurveFault{"dot x", complaint,
                      equal && p.dotCount > 2 ? "Critical error: d[]=0 in calc_spline!\n" : nullptr};
  }
  return std::nullopt;
}

// The most parts are active when one begins.
std::optional<std::size_t> findCrowdedPart(std::span<const ActiveSpan> parts) {
  std::vector<std::size_t> byBeginning;
  std::vector<float> ends;
  for (std::size_t i = 0; i < parts.size(); ++i) {
    if (parts[i].end <= parts[i].begin) continue;
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
