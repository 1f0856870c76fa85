#include "studio/document/number_style.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace vex::studio {

namespace {

constexpr int mostDecimals = 6;  // that a person writes
constexpr double leastBeats = 1.0 / 32;

double parse(std::string_view text) {
  double value = 0;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return value;
}

double toleranceOf(double value, Precision precision) {
  const double size = std::abs(value);
  if (precision == Precision::exact) return 5e-9 * std::max(1.0, size);
  return size < 0.1 ? 5e-4 * size : 5e-5;
}

// The fewest decimals that come so near.
std::string decimalText(double value, int decimals, double tolerance) {
  constexpr int enough = 18;
  char text[64];
  for (int i = decimals;; ++i) {
    const char* end = std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, i).ptr;
    const std::string_view written(text, static_cast<std::size_t>(end - text));
    const double read = parse(written);
    if (std::abs(read - value) > tolerance && i < enough) continue;
    return std::string(read == 0 && written.front() == '-' ? written.substr(1) : written);
  }
}

// Bars and beats of a span that is not negative; nothing where there are too many bars.
std::optional<std::string> beatText(double beats, double beatsPerBar, int decimals, Precision precision) {
  const double clean = std::round(beats / leastBeats) * leastBeats;
  double tolerance = precision == Precision::exact ? 5e-9 : 5e-4;
  if (std::abs(beats - clean) < 1e-6) {
    beats = clean;
    tolerance = 1e-9;
  }
  double bars = std::floor(beats / beatsPerBar);
  std::string beat = decimalText(beats - bars * beatsPerBar, decimals, tolerance);
  if (parse(beat) >= beatsPerBar) {
    ++bars;
    beat = decimalText(0, decimals, tolerance);
  }
  if (bars > std::numeric_limits<std::uint32_t>::max()) return std::nullopt;
  return std::to_string(static_cast<std::uint32_t>(bars)) + ":" + beat;
}

}  // namespace

NumberStyle styleOf(std::string_view number) {
  NumberStyle style;
  if (number.starts_with("0x") || number.ends_with("inf")) return style;
  if (number.find(':') != std::string_view::npos) style.unit = NumberUnit::beats;
  if (number.ends_with('s')) {
    style.unit = NumberUnit::seconds;
    number.remove_suffix(1);
  }
  const std::size_t point = number.find('.');
  if (point == std::string_view::npos || number.find_first_of("eE") != std::string_view::npos) return style;
  const auto decimals = static_cast<int>(number.size() - point - 1);
  if (decimals <= mostDecimals) style.decimals = decimals;
  return style;
}

std::string writeNumber(double value, int decimals, Precision precision) {
  if (std::abs(value) < 1e-9) value = 0;
  if (std::abs(value) < 1e15) return decimalText(value, decimals, toleranceOf(value, precision));
  char text[40];
  return {text, std::to_chars(text, text + sizeof text, value).ptr};
}

std::string writeSpan(double seconds, const NumberStyle& style, const std::optional<Tempo>& tempo,
                      Precision precision) {
  if (style.unit == NumberUnit::beats && tempo) {
    const auto text = beatText(std::abs(seconds) * tempo->beatsPerMinute / 60, tempo->beatsPerBar,
                               style.decimals, precision);
    if (text) return (seconds < 0 && text->find_first_not_of("0:.") != std::string::npos ? "-" : "") + *text;
  }
  const int decimals = style.unit == NumberUnit::beats ? 0 : style.decimals;
  return writeNumber(seconds, decimals, precision) + (style.unit == NumberUnit::seconds ? "s" : "");
}

std::string writeTime(double time, const NumberStyle& style, const std::optional<Tempo>& tempo,
                      Precision precision) {
  const bool inBeats = style.unit == NumberUnit::beats && tempo;
  return writeSpan(inBeats ? time - tempo->origin : time, style, tempo, precision);
}

}  // namespace vex::studio
