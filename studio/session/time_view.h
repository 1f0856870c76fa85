#pragma once

#include <optional>
#include <string>
#include <vector>

#include "timeline/project_record.h"
#include "timeline/tempo.h"

// Where times and tracks lie in the time line's pane, in pixels from its upper left corner.

namespace vex::studio {

// Time goes from left to right.
struct TimeView {
  double begin = 0;              // demo time at the left edge, s
  double secondsPerPixel = 0.1;  // greater than 0
  int width = 1;                 // pixels

  double timeAt(double x) const { return begin + x * secondsPerPixel; }
  double pixelOf(double time) const { return (time - begin) / secondsPerPixel; }
  double end() const { return timeAt(width); }

  // The time under pixel x stays where it is. `factor` below 1 shows more closely.
  void zoom(double factor, double x, double total);
  void scroll(double seconds, double total);
  void showAll(double total);
  void reveal(double time, double total);  // scrolls only when it is out of sight

 private:
  void hold(double total);
};

// A line of the ruler and what stands at it.
struct RulerMark {
  double time;
  bool strong;
  std::string label;  // may be empty
};

// Not closer than some 8 pixels, labels not closer than some 60.
std::vector<RulerMark> secondMarks(const TimeView& view);
std::vector<RulerMark> beatMarks(const TimeView& view, const Tempo& tempo);

// One lane a track that is in use, the first drawn one on top; parts of one track that overlap share rows
// below each other.
struct Lanes {
  struct Lane {
    int track;
    int firstRow;
    int rows;
  };
  std::vector<Lane> lanes;
  std::vector<int> rowOfPart;
  int rows = 0;

  // Above the first lane and below the last the tracks beside theirs.
  int trackOfRow(int row) const;
};
Lanes layOut(const Project& project);

// What a gesture of the mouse catches on.
enum class PartHandle : std::int8_t { none, body, begin, end };
struct PartHit {
  int part = -1;
  PartHandle handle = PartHandle::none;
};
// `row` counts from the top. Of parts on each other the last.
PartHit partAt(const Project& project, const Lanes& lanes, const TimeView& view, double x, int row);

}  // namespace vex::studio
