#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "authoring/project_check.h"
#include "timeline/project_record.h"

// All checks of a project one after the other, as `vexproject check` runs them.

namespace vex {

// No statement of the text form begins with a digit, the version of a project file does.
bool isProjectFile(const std::string& bytes);

enum class CheckedData : std::int8_t { none, ofWorkingFolder };

struct CheckedProject {
  Project project;
  std::vector<Finding> findings;  // those of no line first, then in the order of the text
};

// A project in either form. `name` stands for its file in messages. With data, the file layer finds these and
// the archive of the working folder is open.
CheckedProject checkWhole(const std::string& bytes, const std::string& name, CheckedData data);

// "show.txt:12: remark: TEXT; hint: HINT"; of a project file with the part in place of the line.
std::string findingText(const std::string& file, const Project& project, const Finding& finding);

}  // namespace vex
