#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "authoring/project_places.h"
#include "timeline/project_record.h"
#include "timeline/tempo.h"

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
  std::optional<Tempo> tempo;         // the first that is stated
  ProjectPlaces places;
};

// Whether a reader keeps where the values stand, which takes as much time as reading.
enum class KeptPlaces : std::int8_t { none, all };

// Judges the limits of the format, and by project_rules.h what the player refuses.
ReadProjectText readProjectText(std::string_view text, KeptPlaces kept = KeptPlaces::all);

struct ReadParts {
  std::vector<ProjectPart> parts;
  std::vector<PartPlace> places;
};

// The parts in a piece of a text as readProjectText() reads them where the tempo and the ranges of `context`
// hold, a part of `places`. The piece begins with "part" in the line of that number. Nothing where there is
// a problem, or anything else than whole parts.
std::optional<ReadParts> readProjectParts(std::string_view text, TextSpan piece, int line,
                                          const ProjectPlaces& places, std::size_t context);

struct CompiledProject {
  std::string bytes;  // of a project that the player loads, names aside; only where there are no problems
  std::vector<TextProblem> problems;
};

// Also judges how many parts are active at a time.
CompiledProject compileProjectText(std::string_view text);

// Reading gives the same project back, bit by bit, when it is one that the player loads.
std::string writeProjectText(const Project& project);

}  // namespace vex
