#pragma once

#include <array>
#include <cstdint>
#include <string_view>

// The keywords of a model: what a line of text begins with and a command of the compiled stream is coded
// as, and who handles both.

namespace vex {

struct KeywordEntry {
  char text[64];      // lower case, matched as a prefix whatever the letter case
  std::uint8_t code;  // notRecorded: no command of the stream
  void (*handle)();
};

inline constexpr std::uint8_t notRecorded = 0xf0;
inline constexpr std::size_t keywordCount = 67;
extern const std::array<KeywordEntry, keywordCount> keywords;

// The row whose keyword the line (without leading blanks) begins with, or null. No line begins with two
// of them.
const KeywordEntry* findKeyword(std::string_view line);

// The last row of that code, or null.
const KeywordEntry* keywordOfCode(std::uint8_t code);

}  // namespace vex
