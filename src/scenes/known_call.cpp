#include "scenes/known_call.h"

#include <algorithm>

namespace vex {

namespace {

constexpr int moments = 64;

bool fits(const ProjectCall& call, const FunctionRow& row) {
  if (call.parameters.size() != row.parameters.size()) return false;
  for (std::size_t i = 0; i < call.parameters.size(); ++i) {
    const ProjectParameter& parameter = call.parameters[i];
    if ((parameter.type == PARAM_STRING) != isTextKind(row.parameters[i].kind)) return false;
    Parameter played;
    fillPlayed(played, parameter);
    if (findCurveFault(played)) return false;
  }
  return true;
}

}  // namespace

std::vector<KnownCall> knownCalls(const Project& project, std::span<const SceneTable> tables) {
  std::vector<KnownCall> known;
  for (std::size_t i = 0; i < project.parts.size(); ++i) {
    for (const ProjectCall& call : project.parts[i].calls) {
      const SceneTable* table = findSceneTable(tables, withoutCarriageReturns(call.scene));
      const FunctionRow* row = table ? findFunction(*table, withoutCarriageReturns(call.function)) : nullptr;
      if (row && fits(call, *row)) known.push_back({&project.parts[i], static_cast<int>(i), &call, row});
    }
  }
  return known;
}

bool isTextKind(ArgumentKind kind) {
  switch (kind) {
    case ArgumentKind::number:
    case ArgumentKind::wholeNumber:
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
  for (int i = 0; i < played.dotCount; ++i) {
    if (played.dotX[i] >= 0 && played.dotX[i] < 1) look(played.dotX[i]);
  }
  if (played.type == PARAM_LINEAR) {
    look(1);
    return range;
  }
  for (int i = 1; i <= moments; ++i) look(static_cast<float>(i) / moments);
  return range;
}

}  // namespace vex
