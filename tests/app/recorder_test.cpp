#include "app/recorder.h"

#include <gtest/gtest.h>

namespace vex {

TEST(RecordedFrames, TimesAreRoundedOnceAndTheLastReachesTheEnd) {
  const struct {
    float start, end;
    int framesPerSecond;
    int last;
  } cases[] = {
      {0.0f, 1.0f, 30, 30},  // frame 30 stands at exactly 1 s
      {0.0f, 1.01f, 30, 31},
      {0.5f, 1.0f, 30, 15},
      {0.0f, 0.01f, 30, 1},
      {3.3f, 3.4f, 30, 4},  // 3.3 and 3.4 as floats lie more than three frames apart
      {0.1f, 100.1f, 60, 6000},
      {20.0f, 243.5f, 25, 5588},  // 223.5 s are 5587.5 frames
      {-2.0f, 1.0f, 30, 90},
      {16777216.0f, 16777218.0f, 1000, 1001},  // neighbouring floats: half way and a frame on
  };
  for (const auto& [start, end, framesPerSecond, last] : cases) {
    EXPECT_EQ(lastFrame(start, end, framesPerSecond), last) << start << " to " << end;
    EXPECT_GE(frameTime(start, last, framesPerSecond), end);
    EXPECT_LT(frameTime(start, last - 1, framesPerSecond), end);
  }
  EXPECT_EQ(frameTime(0.0f, 1, 3), static_cast<float>(1.0 / 3.0));
  EXPECT_EQ(frameTime(0.1f, 100000, 30), static_cast<float>(static_cast<double>(0.1f) + 100000.0 / 30.0));
}

}  // namespace vex
