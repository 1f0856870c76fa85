#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "timeline/parameter.h"
#include "timeline/project_file.h"
#include "timeline/project_rules.h"

// A project with everything that stands in its file (the format: timeline/project_file.h), also what the
// player passes over, so that the same bytes can be written again. Strings keep their carriage returns,
// numbers all bits of their doubles.

namespace vex {

inline constexpr std::size_t maxProjectName = projectLineSize - 2;      // characters, carriage returns apart
inline constexpr std::size_t maxProjectString = projectStringSize - 1;  // the same for a parameter's string
inline constexpr std::size_t maxProjectCount = 255;                     // of dots and calls, kept in a byte

struct ProjectDot {
  double x = 0;
  double y = 0;
};

struct ProjectParameter {
  int line = 0;  // in the text that it was read from
  std::int8_t type = PARAM_CONST;
  std::string name;
  double constant = 0;
  double sinPeriod = 0;
  double sinAmplitude = 0;
  double sinOffset = 0;
  double sinPhase = 0;
  std::vector<ProjectDot> dots;
  double min = 0;
  double max = 0;
  std::string string;
};

struct ProjectCall {
  int line = 0;
  std::string scene;
  std::string function;
  std::vector<ProjectParameter> parameters;
};

struct ProjectPart {
  int line = 0;
  std::string name;
  std::int32_t editorNumber = 0;
  double pos = 0;
  double start = 0;
  double length = 0;
  std::int8_t track = 0;
  bool editorFlag = false;
  double speed = 1;
  std::vector<ProjectCall> calls;

  // In the player's floats.
  ActiveSpan active() const {
    const auto begin = static_cast<float>(pos);
    return {begin, begin + static_cast<float>(length)};
  }
};

struct Project {
  std::string version{projectVersion};
  std::string executable = "vex";
  double startTime = 0;
  std::string functionsFile;
  double leftTime = 0;
  double totalTime = 0;
  double zoom = 1;
  std::string music;
  std::vector<double> ticks;
  std::vector<ProjectPart> parts;
  std::string trailing;  // bytes behind the end, which nobody reads
};

// The characters of a line of the project file that count.
std::string withoutCarriageReturns(std::string_view text);

// What the player makes of a line: the characters that count, up to the first zero byte.
std::string playedText(std::string_view text);

// Fills a fresh parameter as the player holds it, in floats.
void fillPlayed(Parameter& played, const ProjectParameter& parameter);

struct DecodedProject {
  Project project;
  std::string failure;  // the player's text about what no project file can look like; empty when read
};

// Judges what the format forbids, not what the rules of project_rules.h do. `name` stands in messages.
DecodedProject decodeProject(std::string_view bytes, const char* name);

// The project must keep the limits of the format.
std::string encodeProject(const Project& project);

}  // namespace vex
