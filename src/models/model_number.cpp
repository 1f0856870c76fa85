#include "models/model_number.h"

#include <bit>
#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <string>
#include <system_error>

namespace vex {

namespace {

// All exact in a double.
constexpr double powersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                  1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr int maxFraction = 22;
constexpr int safeDigits = 19;  // that many never overflow 64 bits
constexpr std::uint64_t exactIntegers = std::uint64_t{1} << 53;

bool isDigit(const char* p, const char* end) {
  return p != end && *p >= '0' && *p <= '9';
}

// A double that lies halfway between two floats may have been rounded to there.
bool isHalfway(double value) {
  return (std::bit_cast<std::uint64_t>(value) & 0x1fffffff) == 0x10000000;
}

// Everything that is not a short decimal number: exponents, many digits, inf, nan.
bool parseAny(const char*& text, const char* start, const char* end, bool negative, float& value) {
  float magnitude = 0.0f;
  const std::from_chars_result result = std::from_chars(start, end, magnitude);
  if (result.ec == std::errc::invalid_argument || result.ptr == start || *start == '-') return false;
  if (result.ec == std::errc::result_out_of_range) {
    magnitude = std::strtof(std::string(start, result.ptr).c_str(), nullptr);
  }
  value = negative ? -magnitude : magnitude;
  text = result.ptr;
  return true;
}

}  // namespace

bool parseNumber(const char*& text, const char* end, int& value) {
  const char* p = text;
  while (p != end && isBlank(*p)) ++p;
  const bool negative = p != end && *p == '-';
  if (p != end && (*p == '-' || *p == '+')) ++p;
  if (!isDigit(p, end)) return false;
  constexpr std::int64_t most = std::numeric_limits<int>::max();
  std::int64_t magnitude = 0;
  for (; isDigit(p, end); ++p) {
    magnitude = magnitude * 10 + (*p - '0');
    if (magnitude > most + negative) magnitude = most + negative;
  }
  value = static_cast<int>(negative ? -magnitude : magnitude);
  text = p;
  return true;
}

bool parseNumber(const char*& text, const char* end, float& value) {
  const char* p = text;
  while (p != end && isBlank(*p)) ++p;
  const bool negative = p != end && *p == '-';
  if (p != end && (*p == '-' || *p == '+')) ++p;
  const char* const start = p;
  std::uint64_t digits = 0;
  for (; isDigit(p, end); ++p) digits = digits * 10 + static_cast<std::uint64_t>(*p - '0');
  auto count = p - start;
  std::ptrdiff_t fraction = 0;
  if (p != end && *p == '.') {
    const char* const point = ++p;
    for (; isDigit(p, end); ++p) digits = digits * 10 + static_cast<std::uint64_t>(*p - '0');
    fraction = p - point;
    count += fraction;
  }
  const bool exponent = p != end && (*p == 'e' || *p == 'E');
  if (count > 0 && count <= safeDigits && !exponent && digits <= exactIntegers && fraction <= maxFraction) {
    // One division of exact numbers is rounded once.
    const double magnitude = static_cast<double>(digits) / powersOfTen[fraction];
    if (!isHalfway(magnitude)) {
      value = static_cast<float>(negative ? -magnitude : magnitude);
      text = p;
      return true;
    }
  }
  return start != end && parseAny(text, start, end, negative, value);
}

}  // namespace vex
