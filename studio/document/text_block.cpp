#include "studio/document/text_block.h"

#include <algorithm>

namespace vex::studio {

namespace {

bool isBlank(char c) {
  return c == ' ' || c == '\t' || c == '\r';
}

std::size_t textBegin(const std::string& text) {
  return text.starts_with("\xef\xbb\xbf") ? 3 : 0;
}

std::size_t lineBegin(const std::string& text, std::size_t offset) {
  const std::size_t feed = offset == 0 ? std::string::npos : text.rfind('\n', offset - 1);
  return feed == std::string::npos ? textBegin(text) : feed + 1;
}

// What stands behind the blanks: a comment's #, a line feed, another character, or 0 at the end.
char behindBlanks(const std::string& text, std::size_t offset) {
  while (offset < text.size() && isBlank(text[offset])) ++offset;
  return offset < text.size() ? text[offset] : '\0';
}

bool isBlankLine(const std::string& text, std::size_t begin) {
  const char c = behindBlanks(text, begin);
  return c == '\n' || c == '\0';
}

// Where the lines above begin that are of that kind.
template <typename Test>
std::size_t linesAbove(const std::string& text, std::size_t begin, Test belongs) {
  while (begin > textBegin(text)) {
    const std::size_t above = lineBegin(text, begin - 1);
    if (!belongs(above)) return begin;
    begin = above;
  }
  return begin;
}

bool beginsLine(const std::string& text, std::size_t offset) {
  const std::size_t begin = lineBegin(text, offset);
  return std::all_of(text.begin() + static_cast<std::ptrdiff_t>(begin),
                     text.begin() + static_cast<std::ptrdiff_t>(offset), isBlank);
}

std::string linesOf(const std::string& text, const TextBlock& block) {
  std::string lines = text.substr(block.begin, block.end - block.begin);
  if (lines.ends_with('\n')) lines.pop_back();
  if (lines.ends_with('\r')) lines.pop_back();
  return lines;
}

}  // namespace

TextBlock blockOf(const std::string& text, TextSpan statement) {
  if (!beginsLine(text, statement.begin) || !endsItsLine(text, statement.end)) {
    return {false, statement.begin, statement.begin, statement.end};
  }
  TextBlock block{.ownLines = true, .end = lineEndBehind(text, statement.end)};
  block.begin = linesAbove(text, lineBegin(text, statement.begin),
                           [&](std::size_t line) { return behindBlanks(text, line) == '#'; });
  block.gap = linesAbove(text, block.begin, [&](std::size_t line) { return isBlankLine(text, line); });
  return block;
}

std::string lineEndOf(const std::string& text) {
  const std::size_t feed = text.find('\n');
  return feed != std::string::npos && feed > 0 && text[feed - 1] == '\r' ? "\r\n" : "\n";
}

std::string indentOf(const std::string& text, std::size_t offset) {
  if (!beginsLine(text, offset)) return "";
  const std::size_t begin = lineBegin(text, offset);
  return text.substr(begin, offset - begin);
}

bool endsItsLine(const std::string& text, std::size_t offset) {
  const char c = behindBlanks(text, offset);
  return c == '#' || c == '\n' || c == '\0';
}

std::size_t lineEndBehind(const std::string& text, std::size_t offset) {
  const std::size_t feed = text.find('\n', offset);
  return feed == std::string::npos ? text.size() : feed + 1;
}

std::string gapOf(const std::string& text, const TextBlock& block) {
  return text.substr(block.gap, block.begin - block.gap);
}

Replacement insertBlock(const std::string& text, const std::string& lines, const std::string& gap,
                        TextSpan beside, Side side) {
  const TextBlock block = blockOf(text, beside);
  const std::string end = lineEndOf(text);
  const auto at = [](std::size_t offset) { return TextSpan{offset, offset}; };
  if (side == Side::before) {
    if (block.ownLines) return {at(block.begin), lines + end + gap};
    if (beginsLine(text, beside.begin)) return {at(lineBegin(text, beside.begin)), lines + end + gap};
    return {at(beside.begin), end + lines + end};
  }
  if (!endsItsLine(text, beside.end)) return {at(beside.end), end + lines + end};
  const std::size_t behind = lineEndBehind(text, beside.end);
  const std::string parted = (block.ownLines ? gap : "") + lines;
  return {at(behind), text[behind - 1] == '\n' ? parted + end : end + parted};
}

// Blank lines above stay where nothing else would part the neighbours.
Replacement removeBlock(const std::string& text, TextSpan statement) {
  const TextBlock block = blockOf(text, statement);
  if (block.ownLines) {
    return {{isBlankLine(text, block.end) ? block.gap : block.begin, block.end}, ""};
  }
  std::size_t end = block.end;
  while (end < text.size() && isBlank(text[end]) && text[end] != '\r') ++end;
  return {{block.begin, end}, ""};
}

std::vector<Replacement> moveBlock(const std::string& text, TextSpan statement, TextSpan beside, Side side) {
  const TextBlock block = blockOf(text, statement);
  std::string gap = gapOf(text, block);
  if (gap.empty()) gap = gapOf(text, blockOf(text, beside));
  return {removeBlock(text, statement), insertBlock(text, linesOf(text, block), gap, beside, side)};
}

}  // namespace vex::studio
