#pragma once

#include <functional>

#include "base/current.h"
#include "engine/owned_array.h"
#include "engine/scene.h"
#include "timeline/parameter.h"

namespace vex {

struct Part;
struct FunctionCall;

// Called right before each scene function that a part calls, with what it is about to be given. Empty
// when nobody looks.
struct CallTrace {
  std::function<void(const Part& part, const FunctionCall& call, float sceneTime,
                     const void* const* arguments)>
      told;
};

inline auto& callTrace() {
  return current<CallTrace>().told;
}

// One call of a scene function by a part.
struct FunctionCall {
  char name[projectNameSize] = "";  // of the function, from the project
  SceneFunction* function = nullptr;
  Scene* scene = nullptr;  // not owned
  OwnedArray<Parameter> parameters;
  const Part* part = nullptr;  // whose call it is, for the trace

  FunctionCall() = default;
  FunctionCall(const FunctionCall&) = delete;
  FunctionCall& operator=(const FunctionCall&) = delete;
  ~FunctionCall();  // logs "    destroying function %s\n"

  // Evaluates the parameters at the progress and calls the function.
  // Fatal: "No function call defined for %s!".
  void invoke(float sceneTime, float progress);
};

}  // namespace vex
