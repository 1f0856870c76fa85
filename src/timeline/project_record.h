#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "timeline/parameter.h"
#include "timeline/project_rules.h"

// The project file, written by an editing tool: little-endian doubles (8 bytes), ints (4 bytes), bytes,
// bools (a byte, 0 or 1) and strings. A string is its characters and a line feed; carriage returns do
// not count. In order:
//
//   version "0.17", executable name*, start time, functions file name*, left time*, total time, zoom*,
//   music name (below 2 characters: none), int n and n ticks (doubles)*, int n and n parts
//   part:      name, int*, pos, start, length (doubles), track (signed byte), bool*, active (bool, must
//              be true), speed (double), byte n and n calls
//   call:      scene name, function name, byte n (at most 9) and n parameters
//   parameter: name, type (byte, 0 to 4), const, sin period, sin amplitude, sin offset, sin phase
//              (doubles), byte n and n dots (double x, double y), min, max (doubles), string (at most 31
//              characters)
//
// Fields marked * serve the editing tool and are passed over.
//
// The record keeps everything that stands in the file, also what the player passes over, so that the same
// bytes can be written again: numbers with all bits of their doubles, strings with their carriage returns
// where the source keeps them.

namespace vex {

inline constexpr std::string_view projectVersion = "0.17";
inline constexpr std::size_t maxProjectName = 126;                      // characters, carriage returns apart
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

// All before the parts.
struct ProjectHead {
  std::string version{projectVersion};
  std::string executable = "vex";
  double startTime = 0;
  std::string functionsFile;
  double leftTime = 0;
  double totalTime = 0;
  double zoom = 1;
  std::string music;
  std::vector<double> ticks;
};

struct Project : ProjectHead {
  std::vector<ProjectPart> parts;
  std::string trailing;  // bytes behind the end, which nobody reads
};

// The characters of a line of the project file that count.
std::string withoutCarriageReturns(std::string_view text);

// What the player makes of a line: the characters that count, up to the first zero byte.
std::string playedText(std::string_view text);

// Fills a fresh parameter as the player holds it, in floats.
void fillPlayed(Parameter& played, const ProjectParameter& parameter);

// Where the bytes of a project file come from.
struct ProjectSource {
  const bool keepsCarriageReturns;  // in the strings of the record

  explicit ProjectSource(bool keepReturns) : keepsCarriageReturns(keepReturns) {}

  // Fills the target. False when the file ends before.
  virtual bool read(std::span<std::uint8_t> target) = 0;

 protected:
  ~ProjectSource() = default;
};

struct MemorySource final : ProjectSource {
  std::string_view rest;

  explicit MemorySource(std::string_view bytes) : ProjectSource(true), rest(bytes) {}
  bool read(std::span<std::uint8_t> target) override;
};

// Who waits for fields as they are read: each is told before the next is read, right after its line in the
// log. Texts are as the player sees them.
struct ProjectListener {
  // What no project file can look like, in the player's last words: "double != 8 bytes (0 read)\n", "int != 4
  // bytes (0 read)\n", "byte != 1 byte (0 read)\n", "char != 1 byte (0 read)\n" where a whole value is not
  // there, "unknown boolean values\n" and so on, with file, field and value behind them. Does not return.
  virtual void refuse(const std::string& text) = 0;

  virtual void startTime(float) {}
  virtual void totalTime(float) {}
  virtual void music(const std::string&) {}  // not without one
  virtual void take(ProjectHead) {}          // whole
  virtual void parts(int) {}                 // their number
  virtual void beginPart() {}
  virtual void calls(const ProjectPart&, int) {}  // the part without calls, and their number
  virtual void scene(const std::string&) {}       // a call begins
  virtual void function(const std::string&) {}
  virtual void parameters(int) {}  // their number
  virtual void parameter(const ProjectParameter&) {}
  virtual void take(ProjectPart) {}  // whole

 protected:
  ~ProjectListener() = default;
};

// Reads a project and logs what it reads. Judges what the format forbids, not what the rules of
// project_rules.h do. `name` stands in messages.
void decodeProject(ProjectSource& source, const char* name, ProjectListener& listener);

struct DecodedProject {
  Project project;
  std::string failure;  // as ProjectListener::refuse; empty when all was read
};
DecodedProject decodeProject(std::string_view bytes, const char* name);

// The project must keep the limits of the format.
std::string encodeProject(const Project& project);

}  // namespace vex
