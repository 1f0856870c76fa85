#include "authoring/project_lexer.h"

#include <algorithm>
#include <cstdio>

namespace vex {

namespace {

constexpr std::size_t longestShown = 60;  // bytes of a token in a message

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}
bool isLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}
bool isWordCharacter(char c) {
  return isLetter(c) || isDigit(c);
}
bool isNumberCharacter(char c) {
  return isWordCharacter(c) || c == '.' || c == ':' || c == '+' || c == '-';
}

template <typename Test>
std::size_t lengthOf(std::string_view text, Test belongs) {
  return static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), belongs) - text.begin());
}

int hexValue(char c) {
  if (isDigit(c)) return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

void appendEscaped(std::string& out, char c) {
  constexpr const char* digits = "0123456789ABCDEF";
  const auto byte = static_cast<unsigned char>(c);
  out += {'%', digits[byte >> 4], digits[byte & 15]};
}

// Bytes of the UTF-8 character that the text begins with; 0 where it begins with none.
std::size_t utf8Length(std::string_view text) {
  const auto byte = [&](std::size_t i) {
    return static_cast<unsigned char>(i < text.size() ? text[i] : '\0');
  };
  const auto first = byte(0);
  const std::size_t length = first < 0x80   ? 1
                             : first < 0xc2 ? 0
                             : first < 0xe0 ? 2
                             : first < 0xf0 ? 3
                             : first < 0xf5 ? 4
                                            : 0;
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xc0) != 0x80) return 0;
  }
  const auto second = byte(1);
  const bool tooLong = (first == 0xe0 && second < 0xa0) || (first == 0xf0 && second < 0x90);
  const bool surrogate = first == 0xed && second > 0x9f;
  const bool beyond = first == 0xf4 && second > 0x8f;
  return tooLong || surrogate || beyond ? 0 : length;
}

}  // namespace

ProjectLexer::ProjectLexer(std::string_view text, std::size_t offset, int firstLine)
    : start(text.data()), rest(text.substr(offset)), line(firstLine), endOfTaken(offset) {
  if (offset > 0 || !rest.starts_with("\xef\xbb\xbf")) return;
  rest.remove_prefix(3);
  endOfTaken = 3;
}

TextSpan ProjectLexer::spanOf(const Token& token) const {
  if (token.kind == TokenKind::end) return {endOfTaken, endOfTaken};
  const auto begin = static_cast<std::size_t>(token.text.data() - start);
  const std::size_t quotes = token.kind == TokenKind::string ? 1 : 0;
  return {begin - quotes, begin + token.text.size() + quotes};
}

void ProjectLexer::skipBlanks() {
  while (!rest.empty()) {
    const char c = rest.front();
    if (c == '#') {
      rest.remove_prefix(std::min(rest.find('\n'), rest.size()));
      continue;
    }
    if (c != ' ' && c != '\t' && c != '\r' && c != '\n') return;
    if (c == '\n') ++line;
    rest.remove_prefix(1);
  }
}

void ProjectLexer::read() {
  skipBlanks();
  next = {TokenKind::end, {}, line};
  stale = false;
  if (rest.empty()) return;
  const char c = rest.front();
  std::size_t length = 1;
  if (isLetter(c)) {
    next.kind = TokenKind::word;
    length = lengthOf(rest, isWordCharacter);
  } else if (isDigit(c) || c == '-' || c == '+') {
    next.kind = TokenKind::number;
    length = lengthOf(rest, isNumberCharacter);
  } else if (c == '"') {
    rest.remove_prefix(1);
    length = lengthOf(
        rest, [](char s) { return s != '"' && (s == '\t' || static_cast<unsigned char>(s) >= 0x20); });
    next.text = rest.substr(0, length);
    if (length == rest.size() || rest[length] == '\n' || rest[length] == '\r') {
      throw TextFault{
          line, "the string " + quoteText(next.text.substr(0, longestShown)) + " is not closed on its line"};
    }
    if (rest[length] != '"') {
      char text[80];
      const unsigned byte = static_cast<unsigned char>(rest[length]);
      std::snprintf(text, sizeof text, "byte 0x%02x in a string, must be written %%%02X", byte, byte);
      throw TextFault{line, text};
    }
    next.kind = TokenKind::string;
    rest.remove_prefix(length + 1);
    return;
  } else if (std::string_view("{}(),=.").find(c) != std::string_view::npos) {
    next.kind = TokenKind::mark;
  } else {
    char text[64];
    const unsigned byte = static_cast<unsigned char>(c);
    const bool shown = byte > 0x20 && byte < 0x7f;
    std::snprintf(text, sizeof text, shown ? "unexpected character %c" : "unexpected byte 0x%02x", byte);
    throw TextFault{line, text};
  }
  next.text = rest.substr(0, length);
  rest.remove_prefix(length);
}

Token ProjectLexer::take() {
  const Token taken = next;
  endOfTaken = spanOf(taken).end;
  read();
  return taken;
}

void ProjectLexer::resume() {
  if (stale) read();
}

void ProjectLexer::leaveLine() {
  rest.remove_prefix(std::min(rest.find('\n'), rest.size()));
}

void ProjectLexer::skipLine(int faultLine) {
  if (next.line > faultLine) return;
  leaveLine();
  stale = true;
}

bool ProjectLexer::atPart() const {
  std::string_view text = rest;
  text.remove_prefix(lengthOf(text, [](char c) { return c == ' ' || c == '\t'; }));
  if (!text.starts_with("part")) return false;
  text.remove_prefix(4);
  const std::size_t blanks = lengthOf(text, [](char c) { return c == ' ' || c == '\t'; });
  return blanks > 0 && blanks < text.size() && text[blanks] != '.';
}

void ProjectLexer::skipPart(int faultLine) {
  if (!next.text.empty()) {
    rest = {next.text.data(), static_cast<std::size_t>(rest.data() + rest.size() - next.text.data())};
  }
  line = next.line;
  stale = true;
  while (line <= faultLine || !atPart()) {
    std::string_view skipped = rest.substr(0, rest.find('\n'));
    leaveLine();
    skipped = skipped.substr(0, skipped.find_last_not_of(" \t\r") + 1);
    if (skipped.ends_with('}') || rest.empty()) return;
    rest.remove_prefix(1);
    ++line;
  }
}

std::string quoteText(std::string_view bytes) {
  std::string out = "\"";
  while (!bytes.empty()) {
    const char c = bytes.front();
    const std::size_t length = utf8Length(bytes);
    if (length == 0 || static_cast<unsigned char>(c) < 0x20 || c == 0x7f || c == '"' || c == '%') {
      appendEscaped(out, c);
      bytes.remove_prefix(1);
      continue;
    }
    out += bytes.substr(0, length);
    bytes.remove_prefix(length);
  }
  return out += '"';
}

std::string describe(const Token& token) {
  if (token.kind == TokenKind::end) return "the end of the text";
  const std::string shown(token.text.substr(0, longestShown));
  const char* dots = token.text.size() > longestShown ? "..." : "";
  return token.kind == TokenKind::string ? "\"" + shown + dots + "\"" : shown + dots;
}

std::string unquoteText(const Token& token) {
  std::string bytes;
  std::string_view text = token.text;
  while (true) {
    const std::size_t escape = text.find('%');
    bytes += text.substr(0, escape);
    if (escape == std::string_view::npos) return bytes;
    text.remove_prefix(escape + 1);
    const int high = text.size() < 2 ? -1 : hexValue(text[0]);
    const int low = text.size() < 2 ? -1 : hexValue(text[1]);
    if (high < 0 || low < 0) {
      throw TextFault{token.line, "two hexadecimal digits must follow % in the string " + describe(token) +
                                      ", a percent sign itself is %25"};
    }
    bytes += static_cast<char>(high * 16 + low);
    text.remove_prefix(2);
  }
}

bool isProjectWord(std::string_view text) {
  return !text.empty() && isLetter(text.front()) && std::all_of(text.begin(), text.end(), isWordCharacter);
}

std::string nameText(std::string_view name) {
  return isProjectWord(name) ? std::string(name) : quoteText(name);
}

}  // namespace vex
