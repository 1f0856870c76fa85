#include "studio/session/time_view.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <map>

#include "base/report.h"

namespace vex::studio {

namespace {

constexpr double closest = 1.0 / 2000;  // seconds a pixel
constexpr double overhang = 0.05;       // of the show that may be seen behind its end
constexpr double leastLine = 8;         // pixels between lines of a ruler
constexpr double leastLabel = 60;
constexpr double handleWidth = 6;

// Lines at multiples of `step` from `origin`, every `strongEvery`th of them strong and labelled.
template <typename Label>
std::vector<RulerMark> marksEvery(const TimeView& view, double origin, double step, long strongEvery,
                                  Label label) {
  std::vector<RulerMark> marks;
  const auto first = static_cast<long>(std::ceil((view.begin - origin) / step));
  const auto last = static_cast<long>(std::floor((view.end() - origin) / step));
  for (long i = std::max(first, 0L); i <= last; ++i) {
    const bool strong = i % strongEvery == 0;
    marks.push_back({origin + static_cast<double>(i) * step, strong, strong ? label(i) : std::string()});
  }
  return marks;
}

std::string clockLabel(double seconds, bool tenths) {
  const double shown = tenths ? std::round(seconds * 100) / 100 : std::round(seconds);
  const double minutes = std::floor(shown / 60);
  return formatted(tenths ? "%.0f:%05.2f" : "%.0f:%02.0f", minutes, shown - minutes * 60);
}

}  // namespace

void TimeView::hold(double total) {
  const double whole = std::max(total, 1.0) * (1 + overhang);
  secondsPerPixel = std::clamp(secondsPerPixel, closest, std::max(whole / std::max(width, 1), closest));
  begin = std::clamp(begin, 0.0, std::max(0.0, whole - width * secondsPerPixel));
}

void TimeView::zoom(double factor, double x, double total) {
  const double time = timeAt(x);
  secondsPerPixel *= factor;
  hold(total);
  begin = time - x * secondsPerPixel;
  hold(total);
}

void TimeView::scroll(double seconds, double total) {
  begin += seconds;
  hold(total);
}

void TimeView::showAll(double total) {
  begin = 0;
  secondsPerPixel = std::max(total, 1.0) * (1 + overhang / 2) / std::max(width, 1);
  hold(total);
}

void TimeView::reveal(double time, double total) {
  if (time >= begin && time <= end()) return;
  begin = time - 0.1 * width * secondsPerPixel;
  hold(total);
}

std::vector<RulerMark> secondMarks(const TimeView& view) {
  // Seconds between lines, and how many lines make a strong one; ten times as many from the last on.
  struct Step {
    double seconds;
    long strongEvery;
  };
  static constexpr std::array<Step, 9> steps{
      {{0.01, 10}, {0.05, 10}, {0.1, 10}, {0.5, 10}, {1, 5}, {1, 10}, {5, 6}, {10, 6}, {60, 10}}};
  const auto fits = [&](const Step& step) {
    const double line = step.seconds / view.secondsPerPixel;
    return line >= leastLine && line * static_cast<double>(step.strongEvery) >= leastLabel;
  };
  Step step = steps.back();
  if (const auto first = std::ranges::find_if(steps, fits); first != steps.end()) step = *first;
  while (!fits(step)) step.seconds *= 10;
  const bool fine = step.seconds * static_cast<double>(step.strongEvery) < 1;
  return marksEvery(view, 0, step.seconds, step.strongEvery,
                    [&](long i) { return clockLabel(static_cast<double>(i) * step.seconds, fine); });
}

std::vector<RulerMark> beatMarks(const TimeView& view, const Tempo& tempo) {
  if (tempo.seconds(1, 0) / view.secondsPerPixel < 1e-6) return {};  // nothing that could be told apart
  const double beat = tempo.seconds(0, 1);
  const auto beatsPerBar = static_cast<long>(std::max(1.0, std::round(tempo.beatsPerBar)));
  const double barPixels = beat * static_cast<double>(beatsPerBar) / view.secondsPerPixel;
  long barsPerLabel = 1;
  while (barPixels * static_cast<double>(barsPerLabel) < leastLabel / 2) barsPerLabel *= 2;
  const auto barLabel = [&](long bar) { return std::to_string(bar); };
  if (beat / view.secondsPerPixel >= leastLine && barsPerLabel == 1)
    return marksEvery(view, tempo.origin, beat, beatsPerBar,
                      [&](long i) { return barLabel(i / beatsPerBar); });
  const double bar = beat * static_cast<double>(beatsPerBar);
  long barsPerLine = 1;
  while (barPixels * static_cast<double>(barsPerLine) < leastLine) barsPerLine *= 2;
  return marksEvery(view, tempo.origin, bar * static_cast<double>(barsPerLine),
                    std::max(1L, barsPerLabel / barsPerLine),
                    [&](long i) { return barLabel(i * barsPerLine); });
}

int Lanes::trackOfRow(int row) const {
  if (lanes.empty()) return 0;
  if (row < 0) return lanes.front().track - 1;
  for (const Lane& lane : lanes)
    if (row < lane.firstRow + lane.rows) return lane.track;
  return lanes.back().track + 1;
}

Lanes layOut(const Project& project) {
  // The first free row of each track; parts come by ascending beginning, mostly.
  std::map<int, std::vector<double>> endsOfTrack;
  Lanes layout;
  std::vector<int> rowInLane;
  for (const ProjectPart& part : project.parts) {
    std::vector<double>& ends = endsOfTrack[part.track];
    auto free = std::ranges::find_if(ends, [&](double end) { return end <= part.pos + 1e-6; });
    if (free == ends.end()) free = ends.insert(ends.end(), 0.0);
    *free = part.pos + part.length;
    rowInLane.push_back(static_cast<int>(free - ends.begin()));
  }
  std::map<int, int> firstRow;
  for (const auto& [track, ends] : endsOfTrack) {
    const int rows = static_cast<int>(ends.size());
    firstRow[track] = layout.rows;
    layout.lanes.push_back({track, layout.rows, rows});
    layout.rows += rows;
  }
  for (std::size_t i = 0; i < project.parts.size(); ++i)
    layout.rowOfPart.push_back(firstRow[project.parts[i].track] + rowInLane[i]);
  return layout;
}

PartHit partAt(const Project& project, const Lanes& lanes, const TimeView& view, double x, int row) {
  PartHit hit;
  for (std::size_t i = 0; i < project.parts.size() && i < lanes.rowOfPart.size(); ++i) {
    if (lanes.rowOfPart[i] != row) continue;
    const ProjectPart& part = project.parts[i];
    const double left = view.pixelOf(part.pos), right = view.pixelOf(part.pos + part.length);
    // Narrow parts are widened to what can be met.
    if (x < left - 1 || x > std::max(right, left + 3)) continue;
    const double handle = std::min(handleWidth, (right - left) / 4);
    hit.part = static_cast<int>(i);
    hit.handle = x >= right - handle  ? PartHandle::end
                 : x <= left + handle ? PartHandle::begin
                                      : PartHandle::body;
    if (right - left < 4) hit.handle = PartHandle::body;
  }
  return hit;
}

}  // namespace vex::studio
