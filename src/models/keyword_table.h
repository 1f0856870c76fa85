#pragma once

#include <span>
#include <string_view>

#include "models/command.h"

// The keywords of a model: what a line of text begins with and a command of the compiled stream is coded
// as, and who handles both.

namespace vex {

struct ModelLoad;

struct KeywordEntry {
  char text[64];  // lower case, matched as a prefix whatever the letter case
  Command code;   // none: no command of the stream
  const char*
      payload;  // the command's values: i a number of 32 bits, f a float, m a matrix of 9 floats, s a text
  void (*handle)(ModelLoad& load);
};

extern const std::span<const KeywordEntry> keywords;

// The row whose keyword the line (without leading blanks) begins with, or null. No line begins with two
// of them.
const KeywordEntry* findKeyword(std::string_view line);

// The row of that command, or null.
const KeywordEntry* keywordOfCode(Command code);

// As KeywordEntry, also of the ends of blocks and of the stream. Null: no such command.
const char* payloadOf(Command code);

}  // namespace vex
