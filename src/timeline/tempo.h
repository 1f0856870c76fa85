#pragma once

#include <cmath>
#include <string>

#include "base/report.h"

namespace vex {

// Bars and beats of a show's music, both counted from 0.
struct Tempo {
  double beatsPerMinute = 0;
  double beatsPerBar = 4;
  double origin = 0;  // demo time of bar 0, s

  double seconds(double bars, double beats) const {  // that so many last
    return (bars * beatsPerBar + beats) * 60 / beatsPerMinute;
  }

  // Bar and beat at a demo time, as in "12:2.5"; of a beat to hundredths.
  std::string text(double time) const {
    const double beats = std::round((time - origin) * beatsPerMinute / 60 * 100) / 100;
    const double bar = std::floor(beats / beatsPerBar);
    return formatted("%.0f:%g", bar, std::round((beats - bar * beatsPerBar) * 100) / 100);
  }
};

}  // namespace vex
