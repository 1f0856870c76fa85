#pragma once

#include <optional>

#include "scenes/function_table.h"
#include "timeline/parameter.h"
#include "timeline/project_record.h"

namespace vex::studio {

// A parameter as the player evaluates it.
class PlayedCurve {
 public:
  explicit PlayedCurve(const ProjectParameter& parameter);

  // Progress from 0 to 1. None for texts and where evaluating would end the show.
  std::optional<float> at(double progress);

 private:
  Parameter played;
};

// Progress of a part at a demo time; not held to 0 to 1.
double progressAt(const ProjectPart& part, double time);

// What the scene says of the parameter in that slot; null for unknown calls and surplus parameters.
const FunctionParameter* describe(const ProjectCall& call, int parameter);

}  // namespace vex::studio
