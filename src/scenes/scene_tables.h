#pragma once

#include <span>
#include <string>
#include <string_view>

#include "scenes/function_table.h"

// The tables of all scenes, for tools that know the functions without setting up a scene.

namespace vex {

struct SceneTable {
  const char* scene;    // as projects name it
  const char* summary;  // a paragraph in Markdown
  std::span<const FunctionRow> functions;
};

std::span<const SceneTable> sceneTables();

// Null where there is none of that exact name.
const SceneTable* findSceneTable(std::span<const SceneTable> tables, std::string_view scene);
const FunctionRow* findFunction(const SceneTable& table, std::string_view function);

// All of them as a Markdown document.
std::string functionsAsMarkdown(std::span<const SceneTable> tables);

}  // namespace vex
