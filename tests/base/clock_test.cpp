#include "base/clock.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <thread>
#include <vector>

#include "app/music.h"
#include "base/options.h"
#include "platform/steady_clock.h"
#include "tests/support/sound_files.h"
#include "tests/support/temporary_folder.h"

namespace vex {

namespace {

using Positions = std::vector<std::uint32_t>;

// A library that plays ten seconds of 16-bit stereo at 44100 Hz; its position is set by the test.
constexpr std::uint32_t byteRate = 44100 * 4;
std::uint32_t fakePosition = 0;

constexpr SoundLibrary fakeLibrary{
    .init = [] { return true; },
    .start = [] { return true; },
    .createStream = [](const char*, std::uint32_t, std::uint32_t) -> SoundStream { return 7; },
    .attributes = [](SoundStream, int& rate) { return rate = 44100, true; },
    .flags = [](SoundStream) { return 0; },
    .length = [](SoundStream) { return 10 * byteRate; },
    .setPosition = [](SoundStream, std::uint32_t bytes) { fakePosition = bytes; },
    .play = [](SoundStream) { return true; },
    .position = [](SoundStream) { return fakePosition; },
    .state = [](SoundStream) { return SoundState::playing; },
    .stop = [] {},
    .freeStream = [](SoundStream) {},
    .free = [] {},
};

struct ClockWithMusic : testing::Test {
  ClockWithMusic() {
    soundLibrary = fakeLibrary;
    options().soundEnabled = true;
    writeSoundFile("music.wav", {.frames = 1});
    openMusic("music.wav");
  }
  ~ClockWithMusic() override { shutDownMusic(); }

  float tickAt(double seconds) {
    fakePosition = static_cast<std::uint32_t>(seconds * byteRate);
    clockTick();
    return clockTime();
  }

  TemporaryFolder folder;
};

}  // namespace

TEST(SoundFilter, HoldsBackJumpsAndTurnsStepsBackwards) {
  struct Case {
    const char* what;
    Positions measured;
    Positions filtered;
  };
  const Case cases[] = {
      {"the first step is held back", {1000, 2000, 3000}, {0, 2000, 3000}},
      {"nothing moves yet", {0, 0, 500, 900}, {0, 0, 0, 900}},
      {"start in the middle", {5292000, 5294940, 5297880}, {0, 5294940, 5297880}},
      {"exactly twice the last step passes", {1000, 2000, 3000, 5000}, {0, 2000, 3000, 5000}},
      {"more than twice waits a frame", {1000, 2000, 3000, 5001, 6000}, {0, 2000, 3000, 4000, 6000}},
      {"a jump more than twice the held one waits again",
       {1000, 2000, 3000, 9000, 16001, 17000},
       {0, 2000, 3000, 4000, 5000, 17000}},
      {"backwards becomes 200 forwards", {1000, 2000, 3000, 2500, 4000}, {0, 2000, 3000, 3200, 4000}},
      {"backwards leaves the last step alone", {1000, 2000, 3000, 2500, 5300}, {0, 2000, 3000, 3200, 4200}},
      {"after a standing frame the next step waits",
       {1000, 2000, 2000, 2500, 2600},
       {0, 2000, 2000, 2000, 2600}},
      {"twice the last step wraps", {0x90000000, 0x90000010, 0x90000020}, {0, 0, 0}},
      {"200 forwards wraps", {0x7fffffff, 0xfffffffe, 5}, {0, 0xfffffffe, 198}},
  };
  for (const Case& c : cases) {
    SoundFilter filter;
    Positions filtered;
    for (const std::uint32_t measured : c.measured) filtered.push_back(filterPosition(filter, measured));
    EXPECT_EQ(filtered, c.filtered) << c.what;
  }
}

TEST_F(ClockWithMusic, FollowsTheStreamFromTheStartTime) {
  clockSetStartTime(4.0f);
  startMusic();
  EXPECT_EQ(fakePosition, 4 * byteRate);
  clockReset();
  EXPECT_EQ(demoClock().wallBase, 0.0f);

  EXPECT_EQ(tickAt(4.01), 0.0f);  // the jump from 0 is held back
  EXPECT_FLOAT_EQ(clockDelta(), 0.01f);
  EXPECT_NEAR(tickAt(4.02), 4.02f, 1e-5f);
  EXPECT_NEAR(clockDelta(), 4.02f, 1e-5f);
  EXPECT_NEAR(tickAt(4.04), 4.04f, 1e-5f);
  EXPECT_NEAR(clockDelta(), 0.02f, 1e-5f);
  EXPECT_NEAR(tickAt(5.04), 4.06f, 1e-5f);  // held back by a frame
  EXPECT_NEAR(tickAt(5.06), 5.06f, 1e-5f);
  EXPECT_NEAR(tickAt(5.00), 5.06f + 200.0f / byteRate, 1e-5f);
}

TEST_F(ClockWithMusic, GoesOnBeyondTheLength) {
  startMusic();
  for (const double seconds : {5.0, 9.0, 10.0, 11.0}) tickAt(seconds);
  EXPECT_NEAR(clockTime(), 11.0f, 1e-5f);
}

TEST_F(ClockWithMusic, FallsBackToTheTimerWhenPlayFails) {
  soundLibrary.play = [](SoundStream) { return false; };
  testing::internal::CaptureStderr();
  startMusic();
  testing::internal::GetCapturedStderr();
  clockReset();
  clockTick();
  EXPECT_NEAR(clockTime(), 0.0f, 0.1f);
  EXPECT_NEAR(demoClock().wallBase, timeGetTime() / 1000.0, 0.1);
}

TEST(ClockWithoutMusic, CountsFromResetOnTopOfTheStartTime) {
  options().soundEnabled = false;
  clockSetStartTime(12.5f);
  std::this_thread::sleep_for(std::chrono::milliseconds(30));  // loading does not count
  const std::uint32_t before = timeGetTime();
  clockReset();
  const std::uint32_t after = timeGetTime();
  for (int frame = 0; frame < 3; ++frame) {
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    const float previous = clockTime();
    const std::uint32_t earliest = timeGetTime();
    clockTick();
    const std::uint32_t latest = timeGetTime();
    EXPECT_GE(clockTime(), 12.5f + (earliest - after) / 1000.0f - 1e-4f);
    EXPECT_LE(clockTime(), 12.5f + (latest - before) / 1000.0f + 1e-4f);
    EXPECT_FLOAT_EQ(clockDelta(), frame == 0 ? clockTime() - (clockTime() - 0.01f) : clockTime() - previous);
  }
}

TEST(ClockByHand, StepsToTheGivenTimes) {
  const float times[] = {30.0f, 30.04f, 30.04f, 31.0f};
  const float deltas[] = {0.01f, 0.04f, 0.0f, 0.96f};
  for (std::size_t i = 0; i < std::size(times); ++i) {
    clockAdvanceTo(times[i]);
    EXPECT_EQ(clockTime(), times[i]);
    EXPECT_NEAR(clockDelta(), deltas[i], 1e-5f);
  }
}

}  // namespace vex
