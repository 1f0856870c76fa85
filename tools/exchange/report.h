#pragma once

#include <string>
#include <vector>

// What became of a file that was brought in or written out, one line a fact.

namespace vex {

struct Report {
  enum class Kind { came, changed, left };
  struct Line {
    Kind kind;
    std::string text;
  };
  std::vector<Line> lines;

  void came(std::string text) { lines.push_back({Kind::came, std::move(text)}); }
  void changed(std::string text) { lines.push_back({Kind::changed, std::move(text)}); }
  void left(std::string text) { lines.push_back({Kind::left, std::move(text)}); }
};

// A line each, with the kind before it.
std::string reportAsText(const Report& report);

// One object with three lists of texts: "came", "changed", "left".
std::string reportAsJson(const Report& report);

}  // namespace vex
