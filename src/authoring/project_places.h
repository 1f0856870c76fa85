#pragma once

#include <array>
#include <cstddef>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "timeline/tempo.h"

// Where the values of a project stand in the text that it was read from: what an editor needs that changes
// one value and leaves all the rest as it was written.

namespace vex {

// Bytes begin..end of the text, the end not included. Empty where the text does not give the value.
struct TextSpan {
  std::size_t begin = 0;
  std::size_t end = 0;

  bool given() const { return end > begin; }
};

// Bounds of the parameters of a name.
struct ParameterRange {
  double min = -std::numeric_limits<double>::infinity();
  double max = std::numeric_limits<double>::infinity();
};
struct StatedRange {
  std::string parameter;
  ParameterRange range;
};

// A time of the whole, with the tempo that holds where it stands.
struct TimePlace : TextSpan {
  std::optional<Tempo> tempo;
};

struct TickPlace : TimePlace {
  std::size_t statement = 0;  // where its "ticks" begins
};

struct DotPlace {
  TextSpan x;
  TextSpan y;
};

struct ParameterPlace {
  TextSpan whole;  // from the name to the last value
  TextSpan name;
  TextSpan value;                // what is played: a number, a text with its quotes, linear(...) and its like
  std::array<TextSpan, 4> sine;  // the numbers of cycles, amplitude, offset and phase
  std::vector<DotPlace> dots;
  TextSpan bounds;                // "in LEAST to MOST"
  std::vector<TextSpan> surplus;  // each "also" with its value
};

struct CallPlace {
  TextSpan whole;  // from the scene to the closing parenthesis
  TextSpan scene;
  TextSpan function;
  std::vector<ParameterPlace> parameters;  // as the project has them, wherever they stand in the text
};

struct PartPlace {
  TextSpan whole;  // from "part" to the closing brace
  TextSpan name;
  // The values behind their keys.
  TextSpan at;
  TextSpan start;
  TextSpan length;
  TextSpan until;
  TextSpan speed;
  TextSpan track;
  std::size_t keysEnd = 0;  // behind the last key, or behind the opening brace
  std::vector<CallPlace> calls;
  std::optional<Tempo> tempo;   // that holds in the part
  std::size_t rangesAbove = 0;  // how many of the stated ranges stand before it
};

struct ProjectPlaces {
  TimePlace total;
  TimePlace start;
  TextSpan music;
  std::vector<TickPlace> ticks;  // as many as the project has
  std::vector<StatedRange> ranges;
  std::vector<PartPlace> parts;
  // Behind the last statement before the first part, or where the text begins behind a byte order mark.
  std::size_t headEnd = 0;
  std::optional<Tempo> tempo;  // that holds there
  TextSpan tempoNumber;        // its beats a minute
};

}  // namespace vex
