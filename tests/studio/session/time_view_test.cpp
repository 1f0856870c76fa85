#include "studio/session/time_view.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vex::studio {

namespace {

using testing::DoubleNear;
using testing::ElementsAre;

TEST(TimeView, ZoomsAboutThePixelUnderThePointer) {
  TimeView view{.begin = 20, .secondsPerPixel = 0.1, .width = 800};
  for (const double factor : {0.5, 0.01, 1.5}) {
    TimeView zoomed = view;
    zoomed.zoom(factor, 300, 240);
    EXPECT_NEAR(zoomed.timeAt(300), 50, 1e-9) << factor;
    EXPECT_NEAR(zoomed.secondsPerPixel, 0.1 * factor, 1e-9) << factor;
  }
}

TEST(TimeView, StaysWithinTheShow) {
  TimeView view{.begin = 20, .secondsPerPixel = 0.1, .width = 800};
  view.scroll(-100, 240);
  EXPECT_EQ(view.begin, 0);
  view.scroll(1000, 240);
  EXPECT_NEAR(view.end(), 240 * 1.05, 1e-9);
  view.zoom(1000, 400, 240);
  EXPECT_EQ(view.begin, 0);
  EXPECT_NEAR(view.end(), 240 * 1.05, 1e-9);
  view.zoom(1e-9, 400, 240);
  EXPECT_GT(view.secondsPerPixel, 0);
}

TEST(TimeView, RevealsOnlyWhatIsOutOfSight) {
  TimeView view{.begin = 20, .secondsPerPixel = 0.1, .width = 800};
  view.reveal(99, 240);
  EXPECT_EQ(view.begin, 20);
  view.reveal(150, 240);
  EXPECT_LT(view.begin, 150);
  EXPECT_GT(view.end(), 150);
}

TEST(Ruler, LinesAreFarEnoughApartAndLabelled) {
  for (double secondsPerPixel = 0.0005; secondsPerPixel < 1e6; secondsPerPixel *= 1.3) {
    const TimeView view{.begin = 12.3, .secondsPerPixel = secondsPerPixel, .width = 1000};
    for (const Tempo& tempo : {Tempo{128, 4, 0}, Tempo{90, 3, 0.25}}) {
      for (const auto& marks : {secondMarks(view), beatMarks(view, tempo)}) {
        double lastLabel = -1e9;
        for (std::size_t i = 0; i < marks.size(); ++i) {
          EXPECT_GE((marks[i].time - marks[i == 0 ? 0 : i - 1].time) / secondsPerPixel, i == 0 ? 0 : 7.9);
          if (marks[i].label.empty()) continue;
          EXPECT_TRUE(marks[i].strong);
          EXPECT_GE((marks[i].time - lastLabel) / secondsPerPixel, 29) << marks[i].label;
          lastLabel = marks[i].time;
        }
      }
    }
  }
}

TEST(Ruler, NamesTimesAndBars) {
  const auto labelsOf = [](const std::vector<RulerMark>& marks) {
    std::vector<std::string> labels;
    for (const RulerMark& mark : marks)
      if (!mark.label.empty()) labels.push_back(mark.label);
    return labels;
  };
  EXPECT_THAT(labelsOf(secondMarks({.begin = 58, .secondsPerPixel = 0.1, .width = 125})),
              ElementsAre("1:00", "1:10"));
  EXPECT_THAT(labelsOf(secondMarks({.begin = 1.45, .secondsPerPixel = 0.001, .width = 200})),
              ElementsAre("0:01.50", "0:01.60"));
  // Bars of 2 s from 1 s on.
  EXPECT_THAT(labelsOf(beatMarks({.begin = 0, .secondsPerPixel = 0.02, .width = 275}, {120, 4, 1})),
              ElementsAre("0", "1", "2"));
  const auto beats = beatMarks({.begin = 0, .secondsPerPixel = 0.02, .width = 100}, {120, 4, 1});
  ASSERT_EQ(beats.size(), 3u);
  EXPECT_NEAR(beats[1].time, 1.5, 1e-9);
  EXPECT_FALSE(beats[1].strong);
}

Project threeParts() {
  Project project;
  const auto add = [&](double pos, double length, int track) {
    ProjectPart part;
    part.pos = pos;
    part.length = length;
    part.track = static_cast<std::int8_t>(track);
    project.parts.push_back(part);
  };
  add(0, 10, 5);
  add(4, 4, -1);
  add(5, 10, 5);   // meets the first
  add(10, 10, 5);  // begins as the first ends
  return project;
}

TEST(Lanes, FollowTracksAndKeepPartsApart) {
  const Lanes lanes = layOut(threeParts());
  ASSERT_EQ(lanes.lanes.size(), 2u);
  EXPECT_EQ(lanes.lanes[0].track, -1);
  EXPECT_EQ(lanes.lanes[1].track, 5);
  EXPECT_EQ(lanes.rows, 3);
  EXPECT_THAT(lanes.rowOfPart, ElementsAre(1, 0, 2, 1));
  EXPECT_EQ(lanes.trackOfRow(0), -1);
  EXPECT_EQ(lanes.trackOfRow(2), 5);
  EXPECT_EQ(lanes.trackOfRow(9), 6);
  EXPECT_EQ(lanes.trackOfRow(-1), -2);
}

TEST(Lanes, PartsAreMetByBodyAndEnds) {
  const Project project = threeParts();
  const Lanes lanes = layOut(project);
  const TimeView view{.begin = 0, .secondsPerPixel = 0.1, .width = 300};
  struct Row {
    double x;
    int row;
    int part;
    PartHandle handle;
  };
  const Row rows[]{{50, 1, 0, PartHandle::body},  {2, 1, 0, PartHandle::begin},
                   {98, 1, 0, PartHandle::end},   {50, 0, 1, PartHandle::body},
                   {20, 0, -1, PartHandle::none}, {102, 1, 3, PartHandle::begin},
                   {150, 2, 2, PartHandle::end},  {250, 1, -1, PartHandle::none}};
  for (const Row& row : rows) {
    const PartHit hit = partAt(project, lanes, view, row.x, row.row);
    EXPECT_EQ(hit.part, row.part) << row.x << ", " << row.row;
    EXPECT_EQ(hit.handle, row.handle) << row.x << ", " << row.row;
  }
}

TEST(Lanes, NarrowPartsAreMovedNotTrimmed) {
  Project project = threeParts();
  project.parts[0].length = 0.2;  // two pixels
  const PartHit hit =
      partAt(project, layOut(project), {.begin = 0, .secondsPerPixel = 0.1, .width = 300}, 2, 1);
  EXPECT_EQ(hit.part, 0);
  EXPECT_EQ(hit.handle, PartHandle::body);
}

}  // namespace

}  // namespace vex::studio
