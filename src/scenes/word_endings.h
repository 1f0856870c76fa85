#pragma once

#include <array>
#include <cstdio>
#include <string>

// The endings that follow the title word in the logo. The scene loads them, the production paints them.

namespace vex {

struct WordEnding {
  const char* text;         // as it is painted
  const char* textureStem;  // texture name without frame number
};

inline constexpr std::array wordEndings{
    WordEnding{"ed", "data\\end_ed"},       WordEnding{"ing", "data\\end_ing"},
    WordEnding{"ation", "data\\end_ation"}, WordEnding{"atious", "data\\end_atious"},
    WordEnding{"er", "data\\end_er"},       WordEnding{"illum", "data\\end_illum"},
    WordEnding{"edly", "data\\end_edly"},
};

inline constexpr int wordEndingFrames = 2;

inline constexpr const char* titleTextureStem = "data\\vex";
inline constexpr int titleFrames = 8;

inline constexpr int logoFrameDigits = 2;

// Texture name of a frame of the title word or of an ending: the stem and two digits, from 01.
inline std::string logoFrameName(const char* stem, int frame) {
  char number[16];
  std::snprintf(number, sizeof number, "%0*d", logoFrameDigits, frame);
  return std::string(stem) + number;
}

}  // namespace vex
