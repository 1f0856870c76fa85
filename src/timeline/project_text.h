#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "timeline/project_record.h"

// The text form of projects (docs/project-text.md describes it): what a person writes and keeps under
// version control.

namespace vex {

struct TextProblem {
  int line;
  std::string text;
};

struct ReadProjectText {
  Project project;
  std::vector<TextProblem> problems;  // in order of discovery; where there are any, the project has holes
};

// A project without problems is one that the player loads, names aside: the format's limits and the rules
// of project_rules.h hold.
ReadProjectText readProjectText(std::string_view text);

// Reading gives the same project back, bit by bit, when it is one that the player loads.
std::string writeProjectText(const Project& project);

}  // namespace vex
