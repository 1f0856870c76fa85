#include "authoring/known_call.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "timeline/scene_function.h"

namespace vex {

namespace {

bool fits(const ProjectCall& call, const FunctionRow& row) {
  if (call.parameters.size() != row.parameters.size()) return false;
  for (std::size_t i = 0; i < call.parameters.size(); ++i) {
    const ProjectParameter& parameter = call.parameters[i];
    if ((parameter.type == PARAM_STRING) != isTextKind(row.parameters[i].kind)) return false;
    if (!canBeEvaluated(parameter)) return false;
  }
  return true;
}

// Whether a sine passes its peak, or its trough, between two angles in degrees.
struct Turns {
  bool peak, trough;
};
Turns turnsOf(double from, double to) {
  if (!std::isfinite(from) || !std::isfinite(to)) return {};
  const auto passes = [low = std::min(from, to), high = std::max(from, to)](double angle) {
    return std::ceil((low - angle) / 360) * 360 + angle <= high;
  };
  return {passes(90), passes(270)};
}

}  // namespace

std::vector<KnownCall> knownCalls(const Project& project, std::span<const SceneEntry> tables) {
  std::vector<KnownCall> known;
  for (std::size_t i = 0; i < project.parts.size(); ++i) {
    for (const ProjectCall& call : project.parts[i].calls) {
      const SceneEntry* table = findSceneEntry(tables, playedText(call.scene));
      const FunctionRow* row = table ? findFunction(*table, playedText(call.function)) : nullptr;
      if (row && fits(call, *row)) known.push_back({&project.parts[i], static_cast<int>(i), &call, row});
    }
  }
  return known;
}

std::optional<std::vector<std::size_t>> orderByNames(const ProjectCall& call,
                                                     std::span<const SceneEntry> tables) {
  const SceneEntry* table = findSceneEntry(tables, playedText(call.scene));
  const FunctionRow* row = table ? findFunction(*table, playedText(call.function)) : nullptr;
  if (!row || call.parameters.size() != row->parameters.size()) return std::nullopt;
  std::vector<std::size_t> order;
  for (const FunctionParameter& parameter : row->parameters) {
    const auto named = std::find_if(call.parameters.begin(), call.parameters.end(), [&](const auto& given) {
      return playedText(given.name) == parameter.name;
    });
    if (named == call.parameters.end()) return std::nullopt;
    order.push_back(static_cast<std::size_t>(named - call.parameters.begin()));
  }
  if (std::is_sorted(order.begin(), order.end())) return std::nullopt;
  return order;
}

bool canBeEvaluated(const ProjectParameter& parameter) {
  Parameter played;
  fillPlayed(played, parameter);
  const auto faults = findCurveFaults(played);
  return !lacksValue(played) &&
         std::none_of(faults.begin(), faults.end(), [](const CurveFault& fault) { return fault.fatalText; });
}

bool isTextKind(ArgumentKind kind) {
  switch (kind) {
    case ArgumentKind::number:
    case ArgumentKind::wholeNumber:
    case ArgumentKind::cameraNumber:
    case ArgumentKind::frameNumber:
      return false;
    case ArgumentKind::textureName:
    case ArgumentKind::movieName:
    case ArgumentKind::fileName:
    case ArgumentKind::objectName:
      return true;
  }
  return false;
}

ValueRange valuesOf(const ProjectParameter& parameter) {
  Parameter played;
  fillPlayed(played, parameter);
  const auto at = [&played](float progress) { return *static_cast<const float*>(played.evaluate(progress)); };
  ValueRange range{at(0), at(0)};
  const auto look = [&](float progress) {
    const float value = at(progress);
    range.least = std::min(range.least, value);
    range.greatest = std::max(range.greatest, value);
  };
  if (played.type == PARAM_CONST) return range;
  look(1);
  if (played.type == PARAM_SINE) {
    const auto [peak, trough] = turnsOf(played.sinPhase, played.sinPhase + 360.0 * played.sinPeriod);
    const float offset = played.sinOffset, amplitude = played.sinAmplitude;
    played.type = PARAM_CONST;
    for (const auto& [passed, value] : {std::pair{peak, offset + amplitude}, {trough, offset - amplitude}}) {
      played.constant = value;
      if (passed) look(0);
    }
    return range;
  }
  for (int i = 0; i < played.dotCount; ++i) {
    // Right behind a dot the next line begins, in a step with another value.
    for (const float x : {played.dotX[i], std::nextafter(played.dotX[i], 2.0f)}) {
      if (x >= 0 && x < 1) look(x);
    }
  }
  if (played.type == PARAM_LINEAR) return range;
  for (int i = 1; i < curveMoments; ++i) look(static_cast<float>(i) / curveMoments);
  return range;
}

MovieFrames framesOf(const KnownCall& known) {
  MovieFrames frames;
  bool first = true;
  for (std::size_t i = 0; i < known.call->parameters.size(); ++i) {
    if (known.row->parameters[i].kind != ArgumentKind::frameNumber) continue;
    const ValueRange values = valuesOf(known.call->parameters[i]);
    if (first) frames.first = truncateNumber(values.least);
    frames.last = truncateNumber(values.greatest);
    first = false;
  }
  // The player counts upwards from the first frame all the same.
  if (frames.last < frames.first)
    frames.last = frames.first + std::max<std::int64_t>(frames.first - frames.last - 2, 0);
  return frames;
}

}  // namespace vex
