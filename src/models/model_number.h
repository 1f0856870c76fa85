#pragma once

namespace vex {

// What a line of model text takes for white space: control characters, the blank, and bytes above 0x7F.
inline bool isBlank(char c) {
  return static_cast<signed char>(c) <= ' ';
}

// Numbers as scanf reads them, correctly rounded: blanks are skipped, and what follows the number does not
// matter. Each moves `text` behind the number; without a number it returns false and changes nothing.
// Integers stop at the ends of their range.
bool parseNumber(const char*& text, const char* end, int& value);
bool parseNumber(const char*& text, const char* end, float& value);

}  // namespace vex
