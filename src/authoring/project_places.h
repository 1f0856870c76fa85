#pragma once

#include <array>
#include <cstddef>
#include <optional>
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
  TextSpan bounds;  // "in LEAST to MOST"
};

struct CallPlace {
  TextSpan whole;  // from the scene to the closing parenthesis
  TextSpan scene;
  TextSpan function;
  std::vector<ParameterPlace> parameters;
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
  std::optional<Tempo> tempo;  // that holds in the part
};

struct ProjectPlaces {
  TextSpan total;
  TextSpan start;
  TextSpan music;
  std::vector<TextSpan> ticks;  // as many as the project has
  std::vector<PartPlace> parts;
  std::size_t headEnd = 0;     // behind the last statement before the first part
  std::optional<Tempo> tempo;  // that holds there
};

}  // namespace vex
