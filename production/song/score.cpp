#include "production/song/score.h"

#include <algorithm>

#include "production/song/movements.h"

namespace vex::song {

namespace {

Movement movementOf(Section section) {
  switch (section) {
    case Section::prologue:
      return prologue();
    case Section::box:
      return box();
    case Section::alien:
      return alien();
    case Section::interludeOne:
      return interludeOne();
    case Section::laboratory:
      return laboratory();
    case Section::interludeTwo:
      return interludeTwo();
    case Section::hell:
      return hell();
    case Section::skull:
      return skull();
    case Section::water:
      return water();
    case Section::outro:
      return outro();
  }
  return {};
}

void append(Score& score, const Movement& movement, int firstBar) {
  const auto add = [&](auto& all, auto element) {
    element.bar += firstBar;
    all.push_back(element);
  };
  for (const DrumLine& line : movement.drums) add(score.drums, line);
  for (const NoteLine& line : movement.notes) add(score.notes, line);
  for (const Rewind& rewind : movement.rewinds) add(score.rewinds, rewind);
  for (const CurvePoint& point : movement.curves) add(score.curves[point.name], point);
}

}  // namespace

Score writeScore(Arrangement sections) {
  Score score;
  for (const Section section : sections) {
    const int bar = firstBar(section, sections);
    append(score, movementOf(section), bar);
    if (section == Section::interludeTwo)
      append(score, section == sections.back() ? interludeTwoEnds() : interludeTwoGoesOn(), bar);
  }
  return score;
}

float curveAt(const Score& score, std::string_view name, double bar, float otherwise) {
  const auto found = score.curves.find(name);
  if (found == score.curves.end()) return otherwise;
  const std::vector<CurvePoint>& points = found->second;
  const auto after = std::upper_bound(points.begin(), points.end(), bar,
                                      [](double at, const CurvePoint& point) { return at < point.bar; });
  if (after == points.begin()) return after->value;
  const CurvePoint& before = *(after - 1);
  if (after == points.end()) return before.value;
  const double share = (bar - before.bar) / (after->bar - before.bar);
  return before.value + static_cast<float>(share) * (after->value - before.value);
}

}  // namespace vex::song
