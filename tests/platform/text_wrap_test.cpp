#include "platform/text_wrap.h"

#include <gtest/gtest.h>

namespace vex {

TEST(TextWrap, CutsAtFeedsBlanksAndLongWords) {
  const struct {
    const char* text;
    std::vector<std::string> lines;  // at ten characters a line
  } cases[] = {
      {"", {""}},
      {"short", {"short"}},
      {"ten letter", {"ten letter"}},
      {"ten letters", {"ten", "letters"}},
      {"one two three four", {"one two", "three four"}},
      {"two   blanks    here", {"two", "blanks", "here"}},
      {"abcdefghijklmnopqrstuvwxyz", {"abcdefghij", "klmnopqrst", "uvwxyz"}},
      {"an abcdefghijklm", {"an", "abcdefghij", "klm"}},
      {"first\nsecond\n\nlast\n\n", {"first", "second", "", "last"}},
      {"tail      ", {"tail      "}},
  };
  const auto measure = [](std::string_view part) { return static_cast<double>(part.size()); };
  for (const auto& row : cases)
    EXPECT_EQ(wrapText(row.text, 10, measure), row.lines) << '"' << row.text << '"';
}

TEST(TextWrap, NeverCutsInsideACharacter) {
  const auto measure = [](std::string_view part) { return static_cast<double>(part.size()); };
  const std::vector<std::string> expected{"\xC3\xA4\xC3\xB6", "\xC3\xBC\xE2\x82\xAC", "x"};
  EXPECT_EQ(wrapText("\xC3\xA4\xC3\xB6\xC3\xBC\xE2\x82\xACx", 5, measure), expected);
}

TEST(TextWrap, EndsWhenNothingFits) {
  const auto measure = [](std::string_view) { return 100.0; };
  EXPECT_EQ(wrapText("abc", 10, measure), (std::vector<std::string>{"a", "b", "c"}));
}

}  // namespace vex
