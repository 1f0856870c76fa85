#include "scenes/scene_tables.h"

#include <array>
#include <cmath>
#include <cstdio>

#include "base/report.h"
#include "scenes/scene_alien.h"
#include "scenes/scene_fetus.h"
#include "scenes/scene_hell.h"
#include "scenes/scene_helper.h"
#include "scenes/scene_intro_box.h"
#include "scenes/scene_layer_particles.h"
#include "scenes/scene_layer_rays.h"
#include "scenes/scene_layer_rot_cubes.h"
#include "scenes/scene_layer_wide.h"
#include "scenes/scene_layer_wobbel.h"
#include "scenes/scene_outtro.h"
#include "scenes/scene_skull.h"
#include "scenes/scene_water.h"

namespace vex {

namespace {

std::string numberText(float value) {
  char text[32];
  std::snprintf(text, sizeof text, "%g", static_cast<double>(value));
  return text;
}

std::string valueText(const FunctionParameter& parameter) {
  std::string range = numberText(parameter.min) + " to " + numberText(parameter.max);
  if (std::isfinite(parameter.limit))
    range += formatted(", held at %.0f", static_cast<double>(parameter.limit));
  switch (parameter.kind) {
    case ArgumentKind::number:
      return range;
    case ArgumentKind::wholeNumber:
      return "whole number, " + range;
    case ArgumentKind::cameraNumber:
      return "one of the model's cameras, counted from 0";
    case ArgumentKind::frameNumber:
      return "number of a frame, " + range;
    case ArgumentKind::textureName:
      return "text: a texture, without extension";
    case ArgumentKind::movieName:
      return "text: a movie's frames, without number and extension";
    case ArgumentKind::fileName:
      return "text: a file";
    case ArgumentKind::objectName:
      return "text: an object of the scene";
  }
  return "";
}

std::string functionText(const FunctionRow& row) {
  std::string text = std::string("### ") + row.name + "\n\n" + row.summary + "\n";
  if (row.role == FunctionRole::sets) text += "Draws nothing: what it sets stays.\n";
  if (row.ground.paints) text += std::string("Paints the ground when ") + row.ground.when + ".\n";
  std::string loaders;
  for (const char* loader : row.after) loaders += (loaders.empty() ? "" : " and ") + std::string(loader);
  if (!loaders.empty()) text += "Calls of " + loaders + " must come before it.\n";
  if (row.parameters.empty()) return text + "\nNo parameters.\n\n";
  text += "\n| Parameter | Value |\n|---|---|\n";
  for (const FunctionParameter& parameter : row.parameters) {
    text += std::string("| ") + parameter.name + " | " + valueText(parameter) + " |\n";
  }
  return text + "\n";
}

}  // namespace

std::span<const SceneEntry> sceneEntries() {
  static const std::array entries{
      sceneHelper,
      modelEntry<sceneIntroBox>(),
      modelEntry<sceneWater>(),
      modelEntry<sceneFetus>(),
      modelEntry<sceneAlien>(),
      modelEntry<sceneSkull>(),
      modelEntry<sceneHell>(),
      modelEntry<sceneLayerParticles>(),
      modelEntry<sceneLayerWide>(),
      modelEntry<sceneLayerRotCubes>(),
      sceneOuttro,
      modelEntry<sceneLayerWobbel>(),
      modelEntry<sceneLayerRays>(),
  };
  return entries;
}

const SceneEntry* findSceneEntry(std::span<const SceneEntry> tables, std::string_view scene) {
  for (const SceneEntry& table : tables) {
    if (table.name == scene) return &table;
  }
  return nullptr;
}

const FunctionRow* findFunction(const SceneEntry& table, std::string_view function) {
  for (const FunctionRow& row : table.functions) {
    if (row.name == function) return &row;
  }
  return nullptr;
}

std::string needsAsMarkdown(std::span<const SceneEntry> tables) {
  std::string text;
  for (const SceneEntry& table : tables) {
    text += (text.empty() ? "## " : "\n## ") + std::string(table.name) + "\n\n" +
            needsText(table.model, table.needs);
  }
  return text;
}

std::string functionsAsMarkdown(std::span<const SceneEntry> tables) {
  std::string text =
      "# Scene functions\n\n"
      "<!-- Written by `vexproject functions`: change the tables of the scenes, not this file. -->\n\n"
      "What a part of the time line can call. A call gives all parameters: in any order by the names that "
      "stand here,\n"
      "or by other names in this order. The ranges are those that are useful; nothing enforces them, but "
      "greater values\n"
      "than the one at which a parameter is held count as that. Colour is never cleared: in every frame some "
      "call has to\n"
      "*paint the ground*, cover the whole screen with nothing showing through (with textures that have no "
      "transparent\n"
      "pixels).\n\n"
      "What a scene needs in its data stands before its functions; `vexproject scenes NAME` prints it. A "
      "scene is made at\n"
      "the start of every show, called or not, and with it its model and all textures that the model names. "
      "Textures are\n"
      "named without .jpg or .bmp. Every show loads `data\\Light1` to `7`, too, and what `used_textures.log` "
      "lists.\n\n";
  for (const SceneEntry& table : tables) {
    text += std::string("## ") + table.name + "\n\n" + table.summary + "\n\n";
    text += needsText(table.model, table.needs) + "\n";
    for (const FunctionRow& row : table.functions) text += functionText(row);
  }
  text.pop_back();
  return text;
}

}  // namespace vex
