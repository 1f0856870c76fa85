#pragma once

#include <array>
#include <cstdint>
#include <span>

// The program's icon as outlines, so that every size is drawn sharp: on a black plate with rounded
// corners a bone-coloured V that holds an acid green spark. Coordinates run 0 to 64 from the top
// left corner.

namespace vex::icon {

struct Point {
  float x, y;
};

struct Outline {
  std::uint32_t rgb;
  std::span<const Point> points;  // filled by the even-odd rule
};

inline constexpr float gridSize = 64;
inline constexpr float cornerRadius = 13;

inline constexpr std::uint32_t inkBlack = 0x15130F;
inline constexpr std::uint32_t bone = 0xEAE3D2;
inline constexpr std::uint32_t acidGreen = 0xB6EE22;

inline constexpr std::array letter{Point{9, 13},  Point{21, 13}, Point{32, 41}, Point{43, 13},
                                   Point{55, 13}, Point{37, 53}, Point{27, 53}};
inline constexpr std::array spark{Point{32, 8}, Point{37.5f, 17}, Point{32, 26}, Point{26.5f, 17}};

inline constexpr std::array outlines{Outline{bone, letter}, Outline{acidGreen, spark}};

}  // namespace vex::icon
