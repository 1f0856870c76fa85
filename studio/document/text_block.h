#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "studio/document/draft.h"

// Statements with their lines and the comments that belong to them: what is moved, removed and inserted as a
// whole.

namespace vex::studio {

// A part or a call that has its lines to itself takes them whole, with a comment behind it and the lines of
// comment directly above it. Another one is what stands between its own first and last byte.
struct TextBlock {
  bool ownLines = false;
  std::size_t gap = 0;  // where the blank lines above begin; `begin` where there are none
  std::size_t begin = 0;
  std::size_t end = 0;  // behind its line end
};
TextBlock blockOf(const std::string& text, TextSpan statement);

std::string lineEndOf(const std::string& text);  // as the text's first line ends

// The blanks that its first line begins with, nothing where it does not begin its line.
std::string indentOf(const std::string& text, std::size_t offset);

// Whether nothing but a comment follows in the line.
bool endsItsLine(const std::string& text, std::size_t offset);

// Behind the line end; the text's end where that has none.
std::size_t lineEndBehind(const std::string& text, std::size_t offset);

enum class Side : std::int8_t { before, behind };

// Lines without their last line end, to stand beside a statement as a block of their own, parted from it by
// blank lines.
Replacement insertBlock(const std::string& text, const std::string& lines, const std::string& gap,
                        TextSpan beside, Side side);
Replacement removeBlock(const std::string& text, TextSpan statement);
std::vector<Replacement> moveBlock(const std::string& text, TextSpan statement, TextSpan beside, Side side);

std::string gapOf(const std::string& text, const TextBlock& block);

}  // namespace vex::studio
