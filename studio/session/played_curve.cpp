#include "studio/session/played_curve.h"

#include "base/report.h"
#include "scenes/scene_tables.h"

namespace vex::studio {

PlayedCurve::PlayedCurve(const ProjectParameter& parameter) {
  fillPlayed(played, parameter);
}

std::optional<float> PlayedCurve::at(double progress) {
  if (played.type == PARAM_STRING) return std::nullopt;
  const FatalErrorsThrown thrown;
  try {
    return *static_cast<const float*>(played.evaluate(static_cast<float>(progress)));
  } catch (const FatalError&) {
    return std::nullopt;
  }
}

double progressAt(const ProjectPart& part, double time) {
  return part.length > 0 ? (time - part.pos) / part.length : 0;
}

const FunctionParameter* describe(const ProjectCall& call, int parameter) {
  const SceneEntry* scene = findSceneEntry(sceneEntries(), call.scene);
  const FunctionRow* row = scene ? findFunction(*scene, call.function) : nullptr;
  if (!row || parameter < 0 || static_cast<std::size_t>(parameter) >= row->parameters.size()) return nullptr;
  return &row->parameters[static_cast<std::size_t>(parameter)];
}

}  // namespace vex::studio
