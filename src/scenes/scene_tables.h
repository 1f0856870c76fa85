#pragma once

#include <span>
#include <string>
#include <string_view>

#include "scenes/scene_entry.h"

// The list of all scenes.

namespace vex {

// In the order in which they are constructed, and with it that of their textures.
std::span<const SceneEntry> sceneEntries();

// Null where there is none of that exact name.
const SceneEntry* findSceneEntry(std::span<const SceneEntry> tables, std::string_view scene);
const FunctionRow* findFunction(const SceneEntry& table, std::string_view function);

// The tables of what they need, a section each, as Markdown.
std::string needsAsMarkdown(std::span<const SceneEntry> tables);

// All of them as a Markdown document.
std::string functionsAsMarkdown(std::span<const SceneEntry> tables);

}  // namespace vex
