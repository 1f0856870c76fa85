#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

// The smallest type that can be read: for what has no font of its own.

namespace vex {

inline constexpr int smallTypeWidth = 3;
inline constexpr int smallTypeHeight = 5;

// Of one character, rows from the top, each in its lowest three bits.
using SmallGlyph = std::array<std::uint8_t, smallTypeHeight>;

inline constexpr std::string_view smallCharacters = "0123456789.-: abcdefghijklmnopqrstuvwxyz";
inline constexpr std::array<SmallGlyph, smallCharacters.size()> smallGlyphs{
    {{7, 5, 5, 5, 7}, {2, 6, 2, 2, 7}, {7, 1, 7, 4, 7}, {7, 1, 7, 1, 7}, {5, 5, 7, 1, 1}, {7, 4, 7, 1, 7},
     {7, 4, 7, 5, 7}, {7, 1, 1, 1, 1}, {7, 5, 7, 5, 7}, {7, 5, 7, 1, 7}, {0, 0, 0, 0, 2}, {0, 0, 7, 0, 0},
     {0, 2, 0, 2, 0}, {0, 0, 0, 0, 0}, {2, 5, 7, 5, 5}, {6, 5, 6, 5, 6}, {3, 4, 4, 4, 3}, {6, 5, 5, 5, 6},
     {7, 4, 6, 4, 7}, {7, 4, 6, 4, 4}, {3, 4, 5, 5, 3}, {5, 5, 7, 5, 5}, {7, 2, 2, 2, 7}, {1, 1, 1, 5, 2},
     {5, 5, 6, 5, 5}, {4, 4, 4, 4, 7}, {5, 7, 7, 5, 5}, {6, 5, 5, 5, 5}, {2, 5, 5, 5, 2}, {6, 5, 6, 4, 4},
     {2, 5, 5, 6, 3}, {6, 5, 6, 5, 5}, {3, 4, 2, 1, 6}, {7, 2, 2, 2, 2}, {5, 5, 5, 5, 7}, {5, 5, 5, 5, 2},
     {5, 5, 7, 7, 5}, {5, 5, 2, 5, 5}, {5, 5, 2, 2, 2}, {7, 1, 2, 4, 7}}};

// Null where the type has no such character; capital letters look like small ones.
constexpr const SmallGlyph* smallGlyph(char character) {
  const bool capital = character >= 'A' && character <= 'Z';
  const std::size_t number =
      smallCharacters.find(capital ? static_cast<char>(character - 'A' + 'a') : character);
  return number == std::string_view::npos ? nullptr : &smallGlyphs[number];
}

}  // namespace vex
