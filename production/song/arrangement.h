#pragma once

#include <array>
#include <cstddef>
#include <span>

// Which sections of the song are played, in order. Everything in a section, its cues, its notes and its
// pictures, counts from the section's first bar, which follows from the sections before it.

namespace vex::song {

enum class Section {
  prologue,
  box,
  alien,
  interludeOne,
  laboratory,
  interludeTwo,
  hell,
  skull,
  water,
  outro
};

constexpr int barCount(Section section) {
  constexpr std::array bars{8, 16, 16, 4, 20, 4, 16, 16, 16, 12};
  return bars[static_cast<std::size_t>(section)];
}

using Arrangement = std::span<const Section>;

inline constexpr std::array wholeSong{
    Section::prologue,     Section::box,  Section::alien, Section::interludeOne, Section::laboratory,
    Section::interludeTwo, Section::hell, Section::skull, Section::water,        Section::outro};

// What the show plays. A section joins when it has pictures; music, cues and time line follow.
inline constexpr std::array showSections = wholeSong;

constexpr int barCount(Arrangement sections) {
  int bars = 0;
  for (const Section section : sections) bars += barCount(section);
  return bars;
}

// First bar of a section, or -1 when it is not played.
constexpr int firstBar(Section wanted, Arrangement sections = showSections) {
  int bar = 0;
  for (const Section section : sections) {
    if (section == wanted) return bar;
    bar += barCount(section);
  }
  return -1;
}

}  // namespace vex::song
