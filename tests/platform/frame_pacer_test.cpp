#include "platform/frame_pacer.h"

#include <gtest/gtest.h>

namespace vex {

namespace {

using std::chrono::microseconds;

// Time that a number of frames take, in seconds, when drawing one takes `work` and the screen makes
// a swap wait for `wait`.
double timeOfFrames(FramePacer& pacer, int frames, microseconds work, microseconds wait) {
  FramePacer::Time now{};
  for (int i = 0; i < frames; ++i) {
    now += std::max(work, wait);
    now = std::max(now, pacer.afterSwap(now));
  }
  return std::chrono::duration<double>(now.time_since_epoch()).count();
}

}  // namespace

TEST(FramePacer, HoldsFramesToTheRefreshRate) {
  const struct {
    const char* what;
    double rate;
    bool vsync;
    int workUs, waitUs;
    double secondsFor600;
    bool clocked;
  } cases[] = {
      {"no vertical sync", 60, false, 100, 0, 10.0, true},
      {"faster screen", 144, false, 100, 0, 600 / 144.0, true},
      {"honoured", 60, true, 100, 16667, 10.0, false},
      {"honoured by a rounded clock", 60, true, 100, 16500, 9.9, false},
      {"accepted but not honoured", 60, true, 100, 0, 9.67, true},  // the first twenty cost nothing
      {"slow drawing", 60, true, 40000, 0, 24.0, false},
      {"slow drawing without vertical sync", 60, false, 40000, 0, 24.0, true},
  };
  for (const auto& row : cases) {
    FramePacer pacer(row.rate, row.vsync);
    EXPECT_NEAR(timeOfFrames(pacer, 600, microseconds(row.workUs), microseconds(row.waitUs)),
                row.secondsFor600, 0.04)
        << row.what;
    EXPECT_EQ(pacer.pacedByClock(), row.clocked) << row.what;
  }
}

TEST(FramePacer, NoticesWhenTheScreenStopsToMakeSwapsWait) {
  FramePacer pacer(60, true);
  FramePacer::Time now{};
  for (int i = 0; i < 200; ++i) {
    now += microseconds(i < 100 ? 16667 : 100);
    now = std::max(now, pacer.afterSwap(now));
    if (i == 99) {
      EXPECT_FALSE(pacer.pacedByClock());
    }
  }
  EXPECT_TRUE(pacer.pacedByClock());
}

TEST(FramePacer, DoesNotMakeUpForALateFrame) {
  FramePacer pacer(50, false);
  FramePacer::Time now{};
  pacer.afterSwap(now);
  now += std::chrono::seconds(1);
  EXPECT_LE(pacer.afterSwap(now), now);
  EXPECT_EQ(pacer.afterSwap(now), now + std::chrono::milliseconds(20));
}

}  // namespace vex
