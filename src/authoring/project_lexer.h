#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "authoring/project_places.h"

// The words of a project's text form. Blanks, line ends and comments (# to the end of the line) part them.

namespace vex {

enum class TokenKind : std::int8_t {
  end,
  word,    // a letter or _, then letters, digits and _
  number,  // begins with a digit or a sign; judged by who reads it
  string,  // what stands between the quotes, still escaped
  mark,    // one of { } ( ) , = .
};

struct Token {
  TokenKind kind = TokenKind::end;
  std::string_view text;
  int line = 0;
};

// Why a text cannot be read on from here.
struct TextFault {
  int line;
  std::string text;
};

class ProjectLexer {
 public:
  // The text must live as long. Reading begins at the offset, where `firstLine` is and no token, string or
  // comment may be cut; at the beginning a byte order mark is passed over.
  explicit ProjectLexer(std::string_view text, std::size_t offset = 0, int firstLine = 1);

  // The next token, none before the first call of resume().
  const Token& peek() const { return next; }

  // Throw TextFault where what comes next is no token.
  Token take();
  TextSpan spanOf(const Token& token) const;           // in the text, of a string with its quotes
  std::size_t takenEnd() const { return endOfTaken; }  // behind the token that was taken last
  void resume();  // finds a token to go on with, at the beginning and after skipping

  // After a fault in `faultLine`: leave the rest of that line, or of that part, which reaches to a line that
  // ends with } or before one that begins with "part".
  void skipLine(int faultLine);
  void skipPart(int faultLine);

 private:
  void read();
  void skipBlanks();
  void leaveLine();
  bool atPart() const;

  const char* start;      // of the text
  std::string_view rest;  // behind `next`
  int line;               // where `rest` begins
  std::size_t endOfTaken = 0;
  Token next;
  bool stale = true;  // `next` is not to be used
};

// A string as it stands in the text, with its quotes: a percent sign and two hexadecimal digits for
// quotes, percent signs, control bytes and what is no UTF-8. Backslashes stand for themselves.
std::string quoteText(std::string_view bytes);

// The token as messages name it: quoted, cut when long, or "the end of the text".
std::string describe(const Token& token);

// The bytes of a string token. Throws TextFault.
std::string unquoteText(const Token& token);

bool isProjectWord(std::string_view text);

// A name as it stands in the text: bare, or in quotes where it must be.
std::string nameText(std::string_view name);

}  // namespace vex
