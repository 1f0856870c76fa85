#pragma once

#include <span>

#include "scenes/function_table.h"
#include "scenes/model_needs.h"

namespace vex {

// What the program knows of a scene before it is constructed.
struct SceneEntry {
  const char* name;     // as projects write it; begins with "Scene"
  const char* summary;  // a paragraph in Markdown
  std::span<const FunctionRow> functions;
  Scene* (*construct)();        // needs a GL context and the scene's data; whoever calls owns the scene
  const char* model = nullptr;  // path without extension, of a scene that is built around one
  ModelNeeds needs = {.cameras = 0};
};

}  // namespace vex
