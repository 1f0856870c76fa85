#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "scenes/scene_tables.h"
#include "timeline/project_record.h"

// What would go wrong, or look wrong, when a project is played: all of it at once, for its author.

namespace vex {

struct Finding {
  int line = 0;         // in the text that the project was read from; 0 for none
  int part = -1;        // index; -1 where it concerns no part
  std::string text;     // what is wrong, with the value
  std::string hint;     // what may be meant or done; may be empty
  bool remark = false;  // unusual, but nothing is wrong
  // What it concerns where that is not the project: a file with its line, a scene. Empty otherwise.
  std::string place = {};
};

// What the loader refuses beyond the format: for projects that come from a project file. (The reader of
// the text form reports the same with its own problems.)
std::vector<Finding> checkRules(const Project& project);

// Scenes, functions and parameters by the tables, and each part by itself and among the others: also what the
// player plays as it stands but nobody can mean. What the rules refuse is passed over.
std::vector<Finding> checkTimeLine(const Project& project, std::span<const SceneEntry> tables);

// Textures, masks, movies and music, as the file layer finds them.
std::vector<Finding> checkData(const Project& project, std::span<const SceneEntry> tables);

// What the player loads at the start, called or not, as the file layer finds it: the models of scenes with
// all that these ask for in them, their textures, the preload list; and what the calls ask of the models:
// cameras and objects. Nothing is written.
std::vector<Finding> checkStart(const Project& project, std::span<const SceneEntry> tables);

// Spans of the played time in which no call paints the ground (function_table.h). Looks at thirty moments
// a second. A call whose texture `hasMask` says yes to paints none.
std::vector<Finding> checkGround(const Project& project, std::span<const SceneEntry> tables,
                                 const std::function<bool(const std::string& texture)>& hasMask);

}  // namespace vex
