#include "studio/document/curve_keeping.h"

#include <cmath>
#include <utility>
#include <vector>

#include "studio/document/curve_text.h"
#include "studio/document/edit_target.h"

namespace vex::studio {

namespace {

// Calls back with each parameter of the part.
template <typename Visit>
void forEachParameter(const Draft& draft, int part, Visit visit) {
  const int calls = static_cast<int>(findPart(draft, part).part.calls.size());
  for (int c = 0; c < calls; ++c) {
    const int parameters = static_cast<int>(findCall(draft, {part, c}).call.parameters.size());
    for (int p = 0; p < parameters; ++p) visit(findParameter(draft, {part, c, p}), c, p);
  }
}

bool hasDots(const ProjectParameter& parameter) {
  return parameter.type == PARAM_LINEAR || parameter.type == PARAM_SPLINE;
}

const ProjectParameter& parameterOf(const ProjectPart& part, int call, int parameter) {
  return part.calls[static_cast<std::size_t>(call)].parameters[static_cast<std::size_t>(parameter)];
}

// A dot's x as written: progress, or seconds from the part's beginning.
Replacement dotAt(const Draft& draft, const ParameterTarget& target, std::size_t dot, double seconds,
                  Precision precision) {
  const TextSpan span = target.parameterPlace.dots[dot].x;
  if (styleOf(textOf(draft, span)).unit == NumberUnit::plain) {
    return numberAt(draft, span, seconds / target.part.length, precision);
  }
  return spanAt(draft, span, seconds, target.place.tempo, precision);
}

void keepDots(const Draft& draft, const ParameterTarget& target, const ProjectPart& before,
              const ProjectParameter& dotsBefore, std::vector<Replacement>& replacements) {
  const double moved = target.part.pos - before.pos;
  for (std::size_t i = 0; i < dotsBefore.dots.size(); ++i) {
    const double seconds = dotsBefore.dots[i].x * before.length - moved;
    if (!differ(seconds / target.part.length, target.parameter.dots[i].x)) continue;
    replacements.push_back(dotAt(draft, target, i, seconds, Precision::exact));
  }
}

// Degrees of an angle in the turn that begins at 0.
double inOneTurn(double degrees) {
  const double rest = std::fmod(degrees, 360);
  return rest < 0 ? rest + 360 : rest;
}

void keepSine(const Draft& draft, const ParameterTarget& target, const ProjectPart& before,
              std::vector<Replacement>& replacements) {
  const ProjectParameter& sine = target.parameter;
  const double cycles = sine.sinPeriod * target.part.length / before.length;
  const double moved = (target.part.pos - before.pos) / before.length;
  const double phase = sine.sinPhase + 360 * sine.sinPeriod * moved;
  if (differ(cycles, sine.sinPeriod)) {
    replacements.push_back(
        sineNumberAt(draft, target.parameterPlace, SineField::cycles, cycles, Precision::exact));
  }
  if (!differ(phase, sine.sinPhase)) return;
  replacements.push_back(
      sineNumberAt(draft, target.parameterPlace, SineField::phase, inOneTurn(phase), Precision::exact));
}

}  // namespace

void keepCurves(Draft& draft, int part, const ProjectPart& before) {
  if (!(before.length > 0)) return;
  std::vector<Replacement> replacements;
  forEachParameter(draft, part, [&](const ParameterTarget& target, int call, int parameter) {
    if (hasDots(target.parameter)) {
      keepDots(draft, target, before, parameterOf(before, call, parameter), replacements);
    } else if (target.parameter.type == PARAM_SINE) {
      keepSine(draft, target, before, replacements);
    }
  });
  draft.rewrite(std::move(replacements));
}

void stretchCurves(Draft& draft, int part, const ProjectPart& before) {
  std::vector<Replacement> replacements;
  forEachParameter(draft, part, [&](const ParameterTarget& target, int call, int parameter) {
    if (!hasDots(target.parameter)) return;
    const std::vector<ProjectDot>& dots = parameterOf(before, call, parameter).dots;
    for (std::size_t i = 0; i < dots.size(); ++i) {
      if (!differ(dots[i].x, target.parameter.dots[i].x)) continue;
      replacements.push_back(dotAt(draft, target, i, dots[i].x * target.part.length, Precision::shown));
    }
  });
  draft.rewrite(std::move(replacements));
}

void dropUnseenDots(Draft& draft, int part) {
  std::vector<Replacement> replacements;
  forEachParameter(draft, part, [&](const ParameterTarget& target, int, int) {
    if (target.parameter.type != PARAM_LINEAR) return;
    const std::vector<ProjectDot>& dots = target.parameter.dots;
    std::size_t first = 0, last = dots.size() - 1;
    while (first < last && dots[first + 1].x < 0) ++first;
    while (last > first && dots[last - 1].x > 1) --last;
    const std::vector<DotPlace>& places = target.parameterPlace.dots;
    for (const TextSpan unseen : {TextSpan{places[0].x.begin, places[first].x.begin},
                                  TextSpan{places[last].y.end, places.back().y.end}}) {
      const bool commented = textOf(draft, unseen).find('#') != std::string_view::npos;
      if (unseen.given() && !commented) replacements.push_back({unseen, ""});
    }
  });
  draft.rewrite(std::move(replacements));
}

}  // namespace vex::studio
