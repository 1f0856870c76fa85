#include "authoring/whole_check.h"

#include <algorithm>
#include <span>
#include <utility>

#include "authoring/picture_check.h"
#include "authoring/project_lexer.h"
#include "authoring/project_text.h"
#include "base/files.h"
#include "base/report.h"
#include "scenes/scene_tables.h"

namespace vex {

namespace {

// What is wrong with the project by itself.
bool readEither(const std::string& bytes, const std::string& name, CheckedProject& checked) {
  if (isProjectFile(bytes)) {
    DecodedProject decoded = decodeProject(bytes, name.c_str());
    checked.project = std::move(decoded.project);
    std::replace(decoded.failure.begin(), decoded.failure.end(), '\n', ' ');
    if (decoded.failure.empty()) checked.findings = checkRules(checked.project);
    if (!decoded.failure.empty()) checked.findings.push_back({.text = decoded.failure, .hint = ""});
    return decoded.failure.empty();
  }
  ReadProjectText read = readProjectText(bytes);
  for (TextProblem& problem : read.problems) {
    checked.findings.push_back({.line = problem.line, .text = std::move(problem.text), .hint = ""});
  }
  checked.project = std::move(read.project);
  return true;
}

// The player takes what lies in its folder, not the text.
std::vector<Finding> compareWithPlayed(const Project& project) {
  constexpr const char* played = "test.hvp";
  const OpenFile file(fileOpen(played, "rb"));
  if (!file.found() || fileReadRest<std::string>(file) == encodeProject(project)) return {};
  return {{.text = "the player plays this, which is not the project that is checked",
           .hint = "vexproject compile makes it",
           .remark = true,
           .place = played}};
}

}  // namespace

bool isProjectFile(const std::string& bytes) {
  const std::size_t first = bytes.find_first_not_of('\r');
  return first != std::string::npos && bytes[first] >= '0' && bytes[first] <= '9';
}

CheckedProject checkWhole(const std::string& bytes, const std::string& name, CheckedData data) {
  CheckedProject checked;
  const bool readable = readEither(bytes, name, checked);
  // Holes where something could not be read would look like problems of the whole show.
  const bool whole = checked.findings.empty();
  const bool inFolder = data == CheckedData::ofWorkingFolder;
  const auto add = [&checked, whole](std::vector<Finding> more) {
    for (Finding& finding : more) {
      const bool placed = finding.line > 0 || finding.part >= 0 || !finding.place.empty();
      if (whole || placed) checked.findings.push_back(std::move(finding));
    }
  };
  const auto tables = sceneEntries();
  if (readable) add(checkTimeLine(checked.project, tables));
  if (readable && inFolder) add(checkData(checked.project, tables));
  if (inFolder) add(checkStart(checked.project, tables));
  if (whole && inFolder) add(compareWithPlayed(checked.project));
  if (whole) {
    add(checkGround(checked.project, tables,
                    [inFolder](const std::string& texture) { return inFolder && textureHasMask(texture); }));
  }
  std::stable_sort(checked.findings.begin(), checked.findings.end(), [](const auto& a, const auto& b) {
    return std::pair(a.line, a.part) < std::pair(b.line, b.part);
  });
  return checked;
}

std::string findingText(const std::string& file, const Project& project, const Finding& finding) {
  std::string place = file;
  if (!finding.place.empty()) {
    place = finding.place;
  } else if (finding.line > 0) {
    place = formatted("%s:%d", file.c_str(), finding.line);
  } else if (finding.part >= 0) {
    const std::string& name = project.parts[static_cast<std::size_t>(finding.part)].name;
    place += formatted(": part %s (%d)", quoteText(name).c_str(), finding.part + 1);
  }
  if (finding.remark) place += ": remark";
  return place + ": " + finding.text + (finding.hint.empty() ? "" : "; hint: " + finding.hint);
}

}  // namespace vex
