#include "studio/document/parameter_edits.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <utility>
#include <vector>

#include "authoring/known_call.h"
#include "authoring/project_lexer.h"
#include "studio/document/curve_text.h"
#include "studio/document/edit_target.h"

namespace vex::studio {

namespace {

constexpr double closestDots = 0.0005;  // of a spline, in progress
constexpr int sinePoints = 9;

std::string named(const ProjectParameter& parameter) {
  return quoteText(parameter.name);
}

void requireKind(const ProjectParameter& parameter, ParameterType kind, const char* wanted) {
  if (parameter.type != kind) throw Refusal{named(parameter) + " is " + wanted + "."};
}

ParameterTarget findCurve(const Draft& draft, ParameterAt at) {
  const ParameterTarget target = findParameter(draft, at);
  if (target.parameter.type == PARAM_LINEAR || target.parameter.type == PARAM_SPLINE) return target;
  throw Refusal{named(target.parameter) + " has no dots."};
}

void requireDot(const ProjectParameter& parameter, int dot) {
  if (dot >= 0 && static_cast<std::size_t>(dot) < parameter.dots.size()) return;
  throw Refusal{named(parameter) + " has no dot number " + std::to_string(dot + 1) + "."};
}

double valueAt(const ProjectParameter& parameter, double progress) {
  if (!canBeEvaluated(parameter)) throw Refusal{"The curve of " + named(parameter) + " has no value."};
  Parameter played;
  fillPlayed(played, parameter);
  played.evaluate(static_cast<float>(progress));
  return static_cast<double>(played.value);
}

// Of evenly spaced moments.
std::vector<ProjectDot> pointsOf(const ProjectParameter& parameter, int count) {
  std::vector<ProjectDot> points;
  for (int i = 0; i < count; ++i) {
    const double x = static_cast<double>(i) / (count - 1);
    points.push_back({x, valueAt(parameter, x)});
  }
  return points;
}

// One cycle over all values that the curve takes.
std::string sineText(const ProjectParameter& parameter) {
  const std::vector<ProjectDot> points = pointsOf(parameter, curveMoments + 1);
  const auto [least, greatest] = std::ranges::minmax(points, {}, &ProjectDot::y);
  return "sine(cycles 1, amplitude " + writeNumber((greatest.y - least.y) / 2, 0, Precision::shown) +
         ", offset " + writeNumber((greatest.y + least.y) / 2, 0, Precision::shown) + ")";
}

std::string valueText(const Draft& draft, const ParameterTarget& target, ParameterType kind,
                      double progress) {
  const ProjectParameter& parameter = target.parameter;
  const std::string written(textOf(draft, target.parameterPlace.value));
  const bool hasDots = parameter.type == PARAM_LINEAR || parameter.type == PARAM_SPLINE;
  const std::string keyword = kind == PARAM_SPLINE ? "spline" : "linear";
  if (kind == PARAM_CONST) return writeNumber(valueAt(parameter, progress), 0, Precision::shown);
  if (kind == PARAM_SINE) return sineText(parameter);
  if (hasDots) return keyword + written.substr(keyword.size());
  if (parameter.type == PARAM_CONST) return keyword + "(0 " + written + ", 1 " + written + ")";
  return curveText(kind, pointsOf(parameter, sinePoints));
}

// Which value a surplus is of; the two curves of dots are one.
ParameterType kindOfSurplus(const Draft& draft, TextSpan surplus) {
  ProjectLexer lexer(textOf(draft, surplus));
  lexer.resume();
  lexer.take();  // also
  const Token& value = lexer.peek();
  if (value.kind == TokenKind::string) return PARAM_STRING;
  if (value.text == "sine") return PARAM_SINE;
  return value.text == "dots" ? PARAM_LINEAR : PARAM_CONST;
}

// A value that is played may not stand among what is not.
void dropSurplus(const Draft& draft, const ParameterPlace& place, ParameterType kind,
                 std::vector<Replacement>& replacements) {
  const std::string& text = draft.text();
  for (const TextSpan surplus : place.surplus) {
    if (kindOfSurplus(draft, surplus) != (kind == PARAM_SPLINE ? PARAM_LINEAR : kind)) continue;
    std::size_t begin = surplus.begin;
    while (text[begin - 1] == ' ') --begin;
    replacements.push_back({{begin, surplus.end}, ""});
  }
}

// Between its neighbours and 0 and 1, which dots may lie outside of where their part was cut.
double keptBetween(const ProjectParameter& parameter, std::size_t dot, double x) {
  const std::vector<ProjectDot>& dots = parameter.dots;
  const double apart = parameter.type == PARAM_SPLINE ? closestDots : 0;
  const double least = dot > 0 ? std::max(0.0, dots[dot - 1].x + apart) : 0;
  const double most = dot + 1 < dots.size() ? std::min(1.0, dots[dot + 1].x - apart) : 1;
  return least <= most ? std::clamp(x, least, most) : dots[dot].x;
}

bool ascend(const ProjectParameter& parameter) {
  const bool strictly = parameter.type == PARAM_SPLINE;
  const auto falls = [strictly](const ProjectDot& a, const ProjectDot& b) {
    return strictly ? !(a.x < b.x) : b.x < a.x;
  };
  return std::ranges::adjacent_find(parameter.dots, falls) == parameter.dots.end();
}

// The manner of the dots: times where one of them is.
NumberStyle dotStyle(const Draft& draft, const ParameterPlace& place) {
  for (const DotPlace& dot : place.dots) {
    const NumberStyle style = styleOf(textOf(draft, dot.x));
    if (style.unit != NumberUnit::plain) return style;
  }
  return {};
}

std::string dotText(const ParameterTarget& target, const NumberStyle& style, double x, Precision precision) {
  if (style.unit == NumberUnit::plain) return writeNumber(x, style.decimals, precision);
  return writeSpan(x * target.part.length, style, target.place.tempo, precision);
}

// As it is shown, and with more digits where that would pass a neighbour.
template <typename Make>
void rewriteAscending(Draft& draft, ParameterAt at, Make makeReplacements) {
  const bool ascended = ascend(findParameter(draft, at).parameter);
  draft.rewrite(makeReplacements(Precision::shown));
  if (!ascended || ascend(findParameter(draft, at).parameter)) return;
  draft.takeBack(draft.changes().size() - 1);
  draft.rewrite(makeReplacements(Precision::exact));
}

}  // namespace

void setConstant(Draft& draft, ParameterAt at, double value) {
  const ParameterTarget target = findParameter(draft, at);
  requireKind(target.parameter, PARAM_CONST, "no constant");
  requireNumber(named(target.parameter), value);
  if (!differ(value, target.parameter.constant)) return;
  draft.rewrite({numberAt(draft, target.parameterPlace.value, value)});
}

void setString(Draft& draft, ParameterAt at, const std::string& value) {
  const ParameterTarget target = findParameter(draft, at);
  requireKind(target.parameter, PARAM_STRING, "no text");
  requireText("The text of " + named(target.parameter), value, maxProjectString);
  if (value == target.parameter.string) return;
  draft.rewrite({{target.parameterPlace.value, quoteText(value)}});
}

void setSine(Draft& draft, ParameterAt at, SineField field, double value) {
  const ParameterTarget target = findParameter(draft, at);
  const ProjectParameter& sine = target.parameter;
  requireKind(sine, PARAM_SINE, "no sine");
  requireNumber(named(sine), value);
  const std::array values{sine.sinPeriod, sine.sinAmplitude, sine.sinOffset, sine.sinPhase};
  if (!differ(value, values[static_cast<std::size_t>(field)])) return;
  draft.rewrite({sineNumberAt(draft, target.parameterPlace, field, value, Precision::shown)});
}

void setKind(Draft& draft, ParameterAt at, ParameterType kind, double progress) {
  const ParameterTarget target = findParameter(draft, at);
  const auto now = static_cast<ParameterType>(target.parameter.type);
  if (kind == now) return;
  if (kind == PARAM_STRING || now == PARAM_STRING) {
    throw Refusal{named(target.parameter) + " is " + (now == PARAM_STRING ? "a text" : "a number") +
                  " and stays one."};
  }
  std::vector<Replacement> replacements{
      {target.parameterPlace.value, valueText(draft, target, kind, progress)}};
  dropSurplus(draft, target.parameterPlace, kind, replacements);
  draft.rewrite(std::move(replacements));
  const ProjectParameter& changed = findParameter(draft, at).parameter;
  if (kind == PARAM_SPLINE && !ascend(changed)) {
    throw Refusal{"The dots of a spline ascend, those of " + named(changed) + " do not."};
  }
}

int setDot(Draft& draft, ParameterAt at, int dot, double x, double y) {
  const ProjectParameter& parameter = findCurve(draft, at).parameter;
  requireDot(parameter, dot);
  requireNumber("The place of a dot", x);
  requireNumber("The value of a dot", y);
  const auto index = static_cast<std::size_t>(dot);
  const ProjectDot now = parameter.dots[index];
  const double kept = differ(x, now.x) ? keptBetween(parameter, index, x) : now.x;
  rewriteAscending(draft, at, [&](Precision precision) {
    const ParameterTarget target = findParameter(draft, at);
    const DotPlace& place = target.parameterPlace.dots[index];
    std::vector<Replacement> replacements;
    if (differ(kept, now.x)) {
      const NumberStyle style = styleOf(textOf(draft, place.x));
      replacements.push_back({place.x, dotText(target, style, kept, precision)});
    }
    if (differ(y, now.y)) replacements.push_back(numberAt(draft, place.y, y));
    return replacements;
  });
  return dot;
}

int addDot(Draft& draft, ParameterAt at, double x, double y) {
  const ProjectParameter& parameter = findCurve(draft, at).parameter;
  requireNumber("The place of a dot", x);
  requireNumber("The value of a dot", y);
  if (parameter.dots.size() == maxProjectCount) {
    throw Refusal{named(parameter) + " has " + std::to_string(maxProjectCount) +
                  " dots, more are not possible."};
  }
  const double kept = std::clamp(x, 0.0, 1.0);
  const auto next = std::ranges::upper_bound(parameter.dots, kept, {}, &ProjectDot::x);
  const auto index = static_cast<std::size_t>(next - parameter.dots.begin());
  rewriteAscending(draft, at, [&](Precision precision) {
    const ParameterTarget target = findParameter(draft, at);
    const std::vector<DotPlace>& dots = target.parameterPlace.dots;
    const std::string text = dotText(target, dotStyle(draft, target.parameterPlace), kept, precision) + " " +
                             writeNumber(y, 0, Precision::shown);
    if (index < dots.size()) {
      return std::vector<Replacement>{{{dots[index].x.begin, dots[index].x.begin}, text + ", "}};
    }
    const std::size_t end = dots.empty() ? target.parameterPlace.value.end - 1 : dots.back().y.end;
    return std::vector<Replacement>{{{end, end}, dots.empty() ? text : ", " + text}};
  });
  const ProjectParameter& changed = findParameter(draft, at).parameter;
  if (changed.type == PARAM_SPLINE && !ascend(changed)) {
    throw Refusal{named(changed) + " is a spline and has a dot there already."};
  }
  return static_cast<int>(index);
}

int removeDot(Draft& draft, ParameterAt at, int dot) {
  const ParameterTarget target = findCurve(draft, at);
  requireDot(target.parameter, dot);
  if (target.parameter.dots.size() == 1) {
    throw Refusal{"The last dot of " + named(target.parameter) + " stays."};
  }
  const int last = static_cast<int>(target.parameter.dots.size()) - 2;
  draft.rewrite(dotRemoved(draft, target.parameterPlace, dot));
  return std::min(dot, last);
}

}  // namespace vex::studio
