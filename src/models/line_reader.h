#pragma once

#include <string>
#include <string_view>

// The lines of a model's text. Blanks at both ends are no part of a line, runs of blanks count as one.

namespace vex {

inline constexpr int modelLineSize = 1024;  // longer lines are cut into pieces of one less

class LineReader {
 public:
  // Starts over with another text.
  void open(std::string newText);
  void rewind();

  // Goes to the next line; false when it is empty, or when there is none. The text must not be at its
  // end without at least one call of atEnd() by the caller's loop.
  bool next();

  bool atEnd() const { return position == text.size(); }
  int lineNumber() const { return number; }
  std::size_t size() const { return text.size(); }

  // Without blanks at its ends, but as it stands inside; empty when next() was false.
  std::string_view line() const { return {first, static_cast<std::size_t>(last - first)}; }
  // With single blanks.
  std::string normalisedLine() const;
  bool beginsWith(char c) const { return first != last && *first == c; }
  void clearLine() { first = last; }

  struct Place {
    std::size_t position;
    int number;
    const char* first;
    const char* last;
  };
  Place place() const { return {position, number, first, last}; }
  void goTo(const Place& place);

 private:
  std::string text;
  std::size_t position = 0;
  int number = 0;  // of the current line, from 1
  const char* first = nullptr;
  const char* last = nullptr;
};

// Every run of blanks as one.
std::string normaliseBlanks(std::string_view text);

}  // namespace vex
