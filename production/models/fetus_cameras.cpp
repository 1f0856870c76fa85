#include <algorithm>
#include <cmath>

#include "production/geometry/forms.h"
#include "production/models/fetus_parts.h"
#include "production/song/cues.h"
#include "production/textures/palette.h"

// Where the laboratory is seen from: each move takes as long as its shot and begins when that does.

namespace vex::laboratory {

using namespace image;
using namespace geometry;
using namespace song;

double sceneTime(double bar) {
  constexpr double begin = 1.25;  // the loop's ends lie on a cut
  const double slow = std::clamp(bar - burstBar, 0.0, 1.0) * (1 - burstPace);
  return begin + (bar - slow) * secondsPerBar;
}

namespace {

struct Move {
  double bar, bars;  // of the laboratory
  std::vector<Vector> eye, target;
};

// From move to move, and back to the first one.
std::function<Vector(float)> through(const std::vector<Move>& moves, std::vector<Vector> Move::*knots) {
  constexpr double loop = shotSeconds;
  return [=](float t) {
    for (std::size_t i = 0;; ++i) {
      const Move &move = moves[i], &next = moves[(i + 1) % moves.size()];
      const double begin = sceneTime(move.bar), length = sceneTime(move.bar + move.bars) - begin;
      const double since = std::fmod(t - begin + 2 * loop, loop);
      const double rest = std::fmod(sceneTime(next.bar) - begin - 0.001 + 2 * loop, loop) - length;
      if (i + 1 < moves.size() && since > length + rest) continue;
      const std::vector<Vector> curve = smoothPath(move.*knots, 64);
      if (since > length)
        return mix(curve.back(), (next.*knots).front(),
                   smoothStep(0, static_cast<float>(rest), static_cast<float>(since - length)));
      const auto place = static_cast<float>(since / length * static_cast<double>(curve.size() - 1));
      const auto k = std::min(static_cast<std::size_t>(place), curve.size() - 2);
      return mix(curve[k], curve[k + 1], place - static_cast<float>(k));
    }
  };
}

StageCamera camera(const char* name, float fieldDegrees, const std::vector<Move>& moves, int every = 8) {
  StageCamera made{.name = name, .fieldDegrees = fieldDegrees, .far = 1500};
  made.positions = positionKeys(shotSeconds, every, through(moves, &Move::eye));
  made.targets = positionKeys(shotSeconds, every, through(moves, &Move::target));
  made.position = made.positions.front().value;
  made.target = made.targets.front().value;
  return made;
}

}  // namespace

std::vector<StageCamera> cameras() {
  return {
      // Into the room, under the lamp.
      camera("view_room", 74, {{0, 1, {{182, 4, 336}, {126, 0, 324}}, {{-26, 58, 0}, {-20, 54, 0}}}}),
      // The telephone, which nobody answers.
      camera("view_phone", 70, {{2, 1, {{98, -31, 168}, {72, -32, 152}}, {{64, -17, 0}, {60, -15, 0}}}}),
      // The cigarette before the dark.
      camera("view_ash", 60, {{3, 1, {{-28, -29, 104}, {-31, -28, 108}}, {{-67, -35, 44}, {-70, -35, 46}}}}),
      // From under the ceiling, with the beam.
      camera("view_above", 74, {{4, 1, {{128, 214, 150}, {66, 226, 128}}, {{2, -20, 4}, {-2, -20, 0}}}}),
      // From the table up along the beam.
      camera("view_beam", 84, {{5, 1, {{112, -42, 204}, {84, -40, 196}}, {{6, 43, 8}, {2, 48, 4}}}}),
      // Around the jar; once more when the skin clears.
      camera("view_jar", 62,
             {{13, 1, {{14, 2, 120}, {38, 8, 104}}, {{0, 4, 0}, {-2, 5, 0}}},
              {6,
               2,
               {{-64, -4, 120}, {-24, -8, 132}, {16, 0, 134}, {58, 10, 118}},
               {{12, 4, 0}, {10, 4, 0}, {-4, 4, 0}, {-12, 6, 0}}}}),
      // It wakes.
      camera("view_wakes", 46,
             {{8, 1, {{-44, 24, 124}, {-32, 21, 108}}, {{6, 13, 0}, {2, 15, 0}}},
              {11.5, 0.5, {{46, -14, 118}, {36, -12, 104}}, {{14, 12, 4}, {13, 13, 4}}}}),
      // Into the one eye.
      camera("view_sees", 36,
             {{9,
               1,
               {{-30, 20, 138}, {-20, 18, 122}, {-10, 17, 108}},
               {{-2, 15, 0}, {-2, 15.5f, 0}, {-1, 16, 0}}}}),
      // Along the hose to the jar.
      camera("view_hose", 64, {{10, 1, {{130, -14, 168}, {110, -4, 148}}, {{46, 2, -14}, {36, 6, -10}}}}),
      // Over the sprayer.
      camera("view_sprayer", 58, {{11, 1, {{58, 22, 138}, {40, 26, 142}}, {{16, 7, 4}, {12, 8, 4}}}}),
      // Under the beacon.
      camera("view_alarm", 66, {{12, 1, {{74, -12, 278}, {34, -8, 250}}, {{66, 34, -100}, {56, 32, -100}}}}),
      // Eye to eye.
      camera("view_stares", 44,
             {{14,
               2,
               {{-50, 16, 138}, {-26, 14, 130}, {-14, 14, 122}, {-10, 14, 116}},
               {{5, 8, 0}, {2, 9, 0}, {0, 10, 0}, {-1, 10, 0}}},
              {7.5, 0.5, {{-18, 3, 152}, {-12, 4, 132}}, {{0, 1, 0}, {0, 2, 0}}}}),
      // Past what is in the glass.
      camera(
          "view_glass", 62,
          {{15, 0.75, {{-64, -6, 112}, {-16, 2, 134}, {40, 10, 124}}, {{6, 2, 0}, {0, 3, 0}, {-6, 4, 0}}}}),
      // Around the burst, which hardly moves.
      camera("view_burst", 66,
             {{burstBar,
               1,
               {{-92, -18, 112}, {-30, -8, 142}, {40, 6, 138}, {96, 22, 108}},
               {{4, 4, 0}, {0, 4, 0}, {-2, 4, 0}, {-4, 5, 0}}}},
             3),
      // Up from the table.
      camera("view_shards", 70, {{17, 1, {{50, -40, 84}, {36, -41, 82}}, {{-26, 10, 6}, {-24, 13, 6}}}}),
      // The child against the window; past it to the door and whoever stands in it.
      camera("view_door", 64,
             {{1, 1, {{64, 2, 138}, {48, 0, 112}}, {{-12, 3, 0}, {-10, 3, 0}}},
              {18,
               2,
               {{-166, 3, 4}, {-170, 5, -8}, {-174, 6, -24}, {-146, -25, -106}, {-12, -83, -117}},
               {{30, -22, -84}, {26, -23, -90}, {21, -25, -102}, {6, -60, -214}, {71, -83, -173}}}}),
  };
}

}  // namespace vex::laboratory
