#pragma once

#include <optional>
#include <string>
#include <vector>

#include "models/model_text.h"
#include "tools/exchange/report.h"
#include "tools/exchange/source_file.h"
#include "tools/exchange/texture_plan.h"

// Worlds from today's modelling tools: a file's scene to a model that the player reads, and the textures for
// it.

namespace vex {

enum class UpAxis { asFileSays, y, z };

struct ImportOptions {
  int framesPerSecond = 30;  // of the samples that keys are taken from
  double scale = 1;          // player's units a unit of the file
  UpAxis up = UpAxis::asFileSays;
  std::vector<std::string> only{};  // patterns of node names, with all below them; empty: all
  bool atRest = false;              // skinned and morphing meshes come in as they rest
  bool chrome = false;              // what is metal and smooth mirrors data\chrome
};

struct Imported {
  TextModel model{};
  std::vector<TexturePlan> textures{};
};

// What is left out or changed stands in the report by name. Fatal: nothing that is drawn, lights or looks
// came in; limits of the player that cannot be kept.
Imported importScene(const SourceFile& source, const ImportOptions& options, Report& report);

// The largest side of all that the meshes hold, at rest; 1 when they hold nothing.
double sizeOf(const TextModel& model);
Vector middleOf(const TextModel& model);

}  // namespace vex
