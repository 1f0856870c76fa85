#include "studio/document/snapping.h"

#include <gtest/gtest.h>

#include "authoring/project_text.h"

namespace vex::studio {
namespace {

// 2 beats a second, bars of 3, the first at 1 s.
const Tempo tempo{.beatsPerMinute = 120, .beatsPerBar = 3, .origin = 1};

TEST(Snapping, TakesTheNearestWithinReach) {
  const struct {
    double time;
    double secondsPerPixel;
    SnapGrid grid;
    std::vector<double> targets;
    double expected;
    double pixels = snapReach;
  } rows[]{
      {3.1, 0.1, SnapGrid::none, {3}, 3.1},
      {3.1, 0.1, SnapGrid::beats, {}, 3},
      {3.3, 0.1, SnapGrid::beats, {}, 3.5},
      {3.07, 0.01, SnapGrid::beats, {}, 3},
      {3.09, 0.01, SnapGrid::beats, {}, 3.09},
      {3.3, 0.1, SnapGrid::halfBeats, {}, 3.25},
      {3.1, 0.1, SnapGrid::quarterBeats, {}, 3.125},
      {3.2, 0.1, SnapGrid::bars, {}, 2.5},
      {3.3, 0.1, SnapGrid::bars, {}, 4},
      {0.4, 0.1, SnapGrid::bars, {}, 1},
      {-0.4, 0.1, SnapGrid::bars, {}, -0.5},
      {3.1, 0.1, SnapGrid::beats, {3.12, 3.05}, 3.12},
      {3.1, 0.1, SnapGrid::beats, {3.3}, 3},
      {3.1, 0.1, SnapGrid::beats, {3.2}, 3.2},
      {3.1, 0.005, SnapGrid::beats, {3.13, 9}, 3.13},
      {3.1, 0.002, SnapGrid::beats, {3.13}, 3.1},
      // Lines at least 24 pixels apart: quarter beats of 0.125 s, half beats, beats, bars of 1.5 s.
      {3.14, 0.005, SnapGrid::zoom, {}, 3.125},
      {3.2, 0.01, SnapGrid::zoom, {}, 3.25},
      {3.3, 0.02, SnapGrid::zoom, {}, 3.3},
      {3.4, 0.02, SnapGrid::zoom, {}, 3.5},
      {3.0, 0.1, SnapGrid::zoom, {}, 2.5},
      {3.3, 0.02, SnapGrid::zoom, {}, 3.5, newPartReach},
  };
  for (const auto& row : rows) {
    EXPECT_DOUBLE_EQ(snapped(row.time, tempo, row.secondsPerPixel, row.grid, row.targets, row.pixels),
                     row.expected)
        << &row - rows;
  }
}

TEST(Snapping, WithoutATempoKnowsTargetsOnly) {
  const std::vector<double> targets{3, 5};
  EXPECT_EQ(snapped(3.1, std::nullopt, 0.1, SnapGrid::zoom, targets), 3);
  EXPECT_EQ(snapped(3.1, std::nullopt, 0.1, SnapGrid::beats), 3.1);
}

TEST(Snapping, FindsItsTargets) {
  const Project project =
      readProjectText("total 9 ticks 7 part a { at 1 length 2 } part b { at 4 length 1 }").project;
  EXPECT_EQ(snapTargets(project, 0), (std::vector<double>{7, 9, 4, 5}));
  EXPECT_EQ(snapTargets(project, -1), (std::vector<double>{7, 9, 1, 3, 4, 5}));
}

}  // namespace
}  // namespace vex::studio
