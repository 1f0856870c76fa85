#include "production/song/score.h"

#include <algorithm>
#include <map>

#include "production/song/movements.h"

namespace vex {

namespace {

// All movements together, in order of time, with bars that count from the start of the song.
struct Score {
  std::vector<DrumLine> drums;
  std::vector<NoteLine> notes;
  std::vector<Rewind> rewinds;
  std::map<std::string_view, std::vector<CurvePoint>> curves;
};

Score gather() {
  std::vector movements{prologue(), box(), alien(), interludeOne(), interludeTwo()};
  std::sort(movements.begin(), movements.end(),
            [](const Movement& p, const Movement& q) { return p.firstBar < q.firstBar; });
  Score score;
  const auto append = [](auto& all, auto element, int firstBar) {
    element.bar += firstBar;
    all.push_back(element);
  };
  for (const Movement& movement : movements) {
    for (const DrumLine& line : movement.drums) append(score.drums, line, movement.firstBar);
    for (const NoteLine& line : movement.notes) append(score.notes, line, movement.firstBar);
    for (const Rewind& rewind : movement.rewinds) append(score.rewinds, rewind, movement.firstBar);
    for (const CurvePoint& point : movement.curves)
      append(score.curves[point.name], point, movement.firstBar);
  }
  return score;
}

const Score& score() {
  static const Score all = gather();
  return all;
}

}  // namespace

std::span<const DrumLine> drumScore() {
  return score().drums;
}
std::span<const NoteLine> noteScore() {
  return score().notes;
}
std::span<const Rewind> rewindScore() {
  return score().rewinds;
}

float curveAt(std::string_view name, double bar, float otherwise) {
  const auto found = score().curves.find(name);
  if (found == score().curves.end()) return otherwise;
  const std::vector<CurvePoint>& points = found->second;
  const auto after = std::upper_bound(points.begin(), points.end(), bar,
                                      [](double at, const CurvePoint& point) { return at < point.bar; });
  if (after == points.begin()) return after->value;
  const CurvePoint& before = *(after - 1);
  if (after == points.end()) return before.value;
  const double share = (bar - before.bar) / (after->bar - before.bar);
  return before.value + static_cast<float>(share) * (after->value - before.value);
}

}  // namespace vex
