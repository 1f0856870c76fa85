#include "studio/document/snapping.h"

#include <array>
#include <cmath>
#include <utility>

namespace vex::studio {

namespace {

constexpr double leastLineDistance = 24;  // pixels

// Beats between the lines; nothing where no line lies close enough to the next to be of use.
std::optional<double> lineDistance(const Tempo& tempo, double secondsPerPixel, SnapGrid grid) {
  switch (grid) {
    case SnapGrid::none:
      return std::nullopt;
    case SnapGrid::bars:
      return tempo.beatsPerBar;
    case SnapGrid::beats:
      return 1;
    case SnapGrid::halfBeats:
      return 0.5;
    case SnapGrid::quarterBeats:
      return 0.25;
    case SnapGrid::zoom:
      break;
  }
  for (const double beats : std::array{0.25, 0.5, 1.0}) {
    if (tempo.seconds(0, beats) >= leastLineDistance * secondsPerPixel) return beats;
  }
  return tempo.beatsPerBar;
}

}  // namespace

double snapped(double time, const std::optional<Tempo>& tempo, double secondsPerPixel, SnapGrid grid,
               std::span<const double> targets, double pixels) {
  if (grid == SnapGrid::none) return time;
  double nearest = time;
  double reach = pixels * secondsPerPixel;
  for (const double target : targets) {
    if (std::abs(target - time) > reach) continue;
    reach = std::abs(target - time);
    nearest = target;
  }
  if (!tempo) return nearest;
  const double width = tempo->seconds(0, lineDistance(*tempo, secondsPerPixel, grid).value());
  const double line = tempo->origin + std::round((time - tempo->origin) / width) * width;
  const bool nearer = nearest == time ? std::abs(line - time) <= reach : std::abs(line - time) < reach;
  return nearer ? line : nearest;
}

std::vector<double> snapTargets(const Project& project, int exceptPart) {
  std::vector<double> targets = project.ticks;
  targets.push_back(project.totalTime);
  for (std::size_t i = 0; i < project.parts.size(); ++i) {
    if (static_cast<int>(i) == exceptPart) continue;
    const ProjectPart& part = project.parts[i];
    targets.push_back(part.pos);
    targets.push_back(part.pos + part.length);
  }
  return targets;
}

}  // namespace vex::studio
