#include "studio/document/curve_text.h"

#include <algorithm>
#include <array>

namespace vex::studio {

namespace {

// The comma between two numbers, where comments may stand.
std::size_t commaBetween(const std::string& text, std::size_t begin, std::size_t end) {
  for (std::size_t i = begin; i < end; ++i) {
    if (text[i] == ',') return i;
    if (text[i] == '#') i = std::min(text.find('\n', i), end);
  }
  return end;
}

}  // namespace

Replacement sineNumberAt(const Draft& draft, const ParameterPlace& place, SineField field, double value,
                         Precision precision) {
  static constexpr std::array keys{"cycles", "amplitude", "offset", "phase"};
  const auto index = static_cast<std::size_t>(field);
  const TextSpan span = place.sine[index];
  const std::string written(draft.text(), span.begin, span.end - span.begin);
  const std::string number = writeNumber(value, styleOf(written).decimals, precision);
  if (span.given()) return {span, number};
  const std::size_t end = place.value.end - 1;  // before the closing parenthesis
  const bool first = std::ranges::none_of(place.sine, &TextSpan::given);
  return {{end, end}, (first ? "" : ", ") + std::string(keys[index]) + " " + number};
}

std::string curveText(ParameterType kind, std::span<const ProjectDot> dots) {
  std::string text = kind == PARAM_SPLINE ? "spline(" : "linear(";
  for (const ProjectDot& dot : dots) {
    if (text.back() != '(') text += ", ";
    text += writeNumber(dot.x, 0, Precision::shown) + " " + writeNumber(dot.y, 0, Precision::shown);
  }
  return text + ")";
}

std::vector<Replacement> dotRemoved(const Draft& draft, const ParameterPlace& place, int dot) {
  const std::string& text = draft.text();
  const auto index = static_cast<std::size_t>(dot);
  const DotPlace& at = place.dots[index];
  const bool last = index + 1 == place.dots.size();
  const TextSpan between = last ? TextSpan{place.dots[index - 1].y.end, at.x.begin}
                                : TextSpan{at.y.end, place.dots[index + 1].x.begin};
  if (text.substr(between.begin, between.end - between.begin).find('#') == std::string::npos) {
    return {{{last ? between.begin : at.x.begin, last ? at.y.end : between.end}, ""}};
  }
  const std::size_t comma = commaBetween(text, between.begin, between.end);
  return {{{at.x.begin, at.y.end}, ""}, {{comma, comma + 1}, ""}};
}

}  // namespace vex::studio
