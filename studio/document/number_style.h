#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "timeline/tempo.h"

// How a number stands in a show's text, and numbers that are written in the same manner.

namespace vex::studio {

enum class NumberUnit : std::int8_t {
  plain,    // 4.5
  seconds,  // 4.5s
  beats,    // 3:2.5, bars and beats
};

struct NumberStyle {
  NumberUnit unit = NumberUnit::plain;
  int decimals = 0;  // at least so many, of beats behind the colon
};

// Of a number as it stands in the text, and of one that is not there the plain style. Exponents,
// hexadecimal doubles and more than six decimals are the work of machines: they count as plain without
// decimals.
NumberStyle styleOf(std::string_view number);

enum class Precision : std::int8_t {
  shown,  // to 0.0001, small numbers to four digits; beats to 1/1000
  exact,  // to a hundred-millionth: what must give the same picture as before
};

// The fewest digits, from those of the style on, that give the value. Beats that are a multiple of 1/32 are
// exact. Without an exponent below 1e15; what is smaller than 1e-9 is 0. The value must be finite.
std::string writeNumber(double value, int decimals, Precision precision);

// Seconds that something lasts, and demo time. Bars and beats need a tempo, otherwise seconds are written.
std::string writeSpan(double seconds, const NumberStyle& style, const std::optional<Tempo>& tempo,
                      Precision precision);
std::string writeTime(double time, const NumberStyle& style, const std::optional<Tempo>& tempo,
                      Precision precision);

}  // namespace vex::studio
