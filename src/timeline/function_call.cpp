#include "timeline/function_call.h"

#include "base/fatal_place.h"
#include "base/report.h"
#include "timeline/part_dispatcher.h"
#include "timeline/scene_function.h"

namespace vex {

FunctionCall::~FunctionCall() {
  logPrintf("    destroying function %s\n", name);
}

void FunctionCall::invoke(float sceneTime, float progress) {
  const FatalPlace place([this, sceneTime] {
    return formatted("%s.%s at %g s of part %s", scene ? scene->name : "no scene", name, sceneTime,
                     part ? part->name : "none");
  });
  if (!function) fatalError("No function call defined for %s!", name);
  const void* arguments[maxArguments] = {};
  int slot = 0;
  for (Parameter* parameter : parameters) {
    if (slot == maxArguments) fatalError("more than %d parameters in the call of %s", maxArguments, name);
    arguments[slot++] = parameter->evaluate(progress);
  }
  if (part && callTrace()) callTrace()(*part, *this, sceneTime, arguments);
  function(scene, sceneTime, arguments);
}

}  // namespace vex
