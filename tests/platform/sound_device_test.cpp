#include "platform/sound_device.h"

#include <AL/alc.h>
#include <AL/alext.h>
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>

#include "app/music.h"
#include "base/clock.h"
#include "base/files.h"
#include "base/options.h"
#include "platform/steady_clock.h"
#include "tests/support/fatal.h"
#include "tests/support/sound_files.h"
#include "tests/support/temporary_folder.h"

namespace {

bool unplugged = false;

}  // namespace

// A program's symbols come before a library's: a device that somebody pulls out says so here.
extern "C" void alcGetIntegerv(ALCdevice* device, ALCenum what, ALCsizei size, ALCint* values) {
  static const auto real = reinterpret_cast<decltype(&alcGetIntegerv)>(dlsym(RTLD_NEXT, "alcGetIntegerv"));
  real(device, what, size, values);
  if (unplugged && what == ALC_CONNECTED) *values = ALC_FALSE;
}

namespace vex {

namespace {

void sleepFor(double seconds) {
  std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
}

float tone(int frame, int) {
  return 0.3f * std::sin(static_cast<float>(frame) * 0.05f);
}

// The silent device of the library under openAlLibrary.
struct SilentDevice : testing::Test {
  SilentDevice() {
    setenv("ALSOFT_DRIVERS", "null", 1);
    options().soundEnabled = true;
  }
  ~SilentDevice() override { shutDownMusic(); }

  // Position in seconds.
  static double heard() { return musicPosition() / static_cast<double>(musicLength()) * musicDuration(); }

  TemporaryFolder folder;
};

}  // namespace

TEST_F(SilentDevice, PlaysEachFormatFromLooseFileAndFromPak) {
  struct Case {
    const char* what;
    SoundRecipe recipe;
    std::uint32_t length;  // bytes
    bool inPak;
  };
  using enum SoundCoding;
  const Case cases[] = {
      {"wav", {.coding = wav, .frames = 88200, .sample = tone}, 88200 * 4, false},
      {"8-bit mono wav", {.coding = wav8Bit, .channels = 1, .frames = 88200, .sample = tone}, 88200, false},
      {"slow mono wav",
       {.coding = wav, .rate = 8000, .channels = 1, .frames = 16000, .sample = tone},
       32000,
       true},
      {"ogg", {.coding = ogg, .frames = 88200, .sample = tone}, 88200 * 4, false},
      {"ogg in pak", {.coding = ogg, .frames = 88200, .sample = tone}, 88200 * 4, true},
      {"flac", {.coding = flac, .frames = 88200, .sample = tone}, 88200 * 4, false},
      {"flac in pak", {.coding = flac, .frames = 88200, .sample = tone}, 88200 * 4, true},
      {"mp3", {.coding = mp3, .frames = 88200, .sample = tone}, 88200 * 4, false},
      {"mp3 in pak", {.coding = mp3, .frames = 88200, .sample = tone}, 88200 * 4, true},
  };
  for (const Case& c : cases) {
    writeSoundFile("music", c.recipe);
    writePakAround("vex.pak", "music");
    if (c.inPak) std::filesystem::remove("music");
    pakOpen("vex.pak");
    clockSetStartTime(1.0f);
    openMusic("music");
    const double begin = steadySeconds();
    startMusic();
    ASSERT_TRUE(musicActive()) << c.what;
    EXPECT_EQ(musicLength(), c.length) << c.what;
    EXPECT_NEAR(musicDuration(), 2.0f, 1e-6f) << c.what;
    EXPECT_GE(heard(), 1.0) << c.what;
    sleepFor(0.25);
    const double first = heard();
    const double firstAt = steadySeconds();
    // The latency of the silent device is 46 ms, its step 23 ms.
    EXPECT_NEAR(first, 1.0 + firstAt - begin - 0.05, 0.1) << c.what;
    for (int frame = 0; frame < 10; ++frame) {
      sleepFor(0.01);
      musicPosition();
    }
    EXPECT_NEAR(heard() - first, steadySeconds() - firstAt, 0.06) << c.what;
    shutDownMusic();
    fileCloseAll();
  }
}

TEST_F(SilentDevice, MovesEvenlyWithTheWallClock) {
  writeSoundFile("music.wav", {.frames = 44100 * 4, .sample = tone});
  openMusic("music.wav");
  startMusic();
  sleepFor(0.1);
  while (heard() == 0.0) sleepFor(0.005);
  // Once the follower has settled, position minus wall time stays the same.
  for (int frame = 0; frame < 60; ++frame) sleepFor(0.01), musicPosition();
  double last = heard();
  const double offset = last - steadySeconds();
  double worst = 0.0;
  for (int frame = 0; frame < 150; ++frame) {
    sleepFor(frame % 7 == 0 ? 0.03 : 0.008);  // uneven frames
    const double before = steadySeconds();
    const double position = heard();
    EXPECT_GE(position, last);
    last = position;
    worst = std::max(worst, std::abs(position - before - offset));
  }
  EXPECT_LT(worst, 0.04);
}

TEST_F(SilentDevice, GoesOnBeyondTheEndOfTheMusic) {
  writeSoundFile("music.ogg", {.coding = SoundCoding::ogg, .frames = 44100 / 4, .sample = tone});
  openMusic("music.ogg");
  startMusic();
  double last = 0.0;
  const double begin = steadySeconds();
  while (steadySeconds() < begin + 1.0) {
    const double position = heard();
    EXPECT_GE(position, last);
    last = position;
    EXPECT_NEAR(position, steadySeconds() - begin - 0.05, 0.1);
    sleepFor(0.01);
  }
  EXPECT_EQ(soundLibrary.state(1), SoundState::ended);
}

TEST_F(SilentDevice, GoesOnWhenItIsPulledOut) {
  writeSoundFile("music.wav", {.frames = 44100 * 5, .sample = tone});
  openMusic("music.wav");
  startMusic();
  sleepFor(0.2);
  const double before = heard(), pulled = steadySeconds();
  unplugged = true;
  for (int frame = 0; frame < 20; ++frame) {
    sleepFor(0.01);
    EXPECT_NEAR(heard(), before + steadySeconds() - pulled, 0.05);
  }
  EXPECT_EQ(soundLibrary.state(1), SoundState::lost);
  unplugged = false;
}

TEST_F(SilentDevice, GoesOnFromAStartBeyondTheEnd) {
  writeSoundFile("music.wav", {.frames = 44100, .sample = tone});
  clockSetStartTime(5.0f);
  openMusic("music.wav");
  startMusic();
  ASSERT_TRUE(musicActive());
  const double begin = steadySeconds();
  sleepFor(0.1);
  EXPECT_NEAR(heard(), 5.0 + steadySeconds() - begin, 0.02);
}

// A frame that takes longer than the queue lasts: the music waits, and so does the position.
TEST_F(SilentDevice, ResumesAfterAnUnderrun) {
  writeSoundFile("music.wav", {.frames = 44100 * 5, .sample = tone});
  openMusic("music.wav");
  startMusic();
  sleepFor(2.6);
  const double starved = heard();
  const double resumed = steadySeconds();
  EXPECT_NEAR(starved, 2.0, 1e-3);  // all that was queued
  for (int frame = 0; frame < 35; ++frame) {
    sleepFor(0.02);
    EXPECT_GE(heard(), starved);
  }
  EXPECT_NEAR(heard(), 2.0 + steadySeconds() - resumed - 0.05, 0.1);
  EXPECT_EQ(soundLibrary.state(1), SoundState::playing);
}

TEST_F(SilentDevice, BrokenMusicPlaysWhatItHas) {
  writeSoundFile("music.flac", {.coding = SoundCoding::flac, .frames = 44100, .sample = tone});
  std::string bytes = readFile("music.flac");
  bytes.resize(bytes.size() / 2);
  writeFile("music.flac", bytes);
  openMusic("music.flac");
  startMusic();
  ASSERT_TRUE(musicActive());
  EXPECT_EQ(musicLength(), 44100u * 4);
  const double begin = steadySeconds();
  while (steadySeconds() < begin + 1.0) sleepFor(0.01), musicPosition();
  EXPECT_EQ(soundLibrary.state(1), SoundState::ended);
  EXPECT_NEAR(heard(), steadySeconds() - begin - 0.05, 0.1);
}

// In a suite that runs before the others: the library looks for devices once in a process.
TEST(SoundDeviceDeathTest, MissingOneFailsEveryStepOfOpening) {
  const TemporaryFolder folder;
  writeSoundFile("music.wav", {.frames = 1000});
  const ChildResult result = runInChild([] {
    setenv("ALSOFT_DRIVERS", "none", 1);
    options().soundEnabled = true;
    openMusic("music.wav");
    startMusic();
    if (musicActive()) std::fprintf(stderr, "active\n");
    shutDownMusic();
  });
  const std::string name = std::string(program_invocation_short_name) + ": ";
  EXPECT_EQ(result.errorText, name + "Couldn't initialize BASS! Disabling sound\n" + name +
                                  "Couldn't start BASS output! Disabling sound\n" + name +
                                  "BASS stream couldn't be opened! Disabling sound\n");
  EXPECT_EQ(result.exitCode, 0);
}

TEST(SoundDeviceDeathTest, DamagedMusicOnlyWarns) {
  const TemporaryFolder folder;
  writeFile("music.wav", std::string(500, '\1'));
  const ChildResult result = runInChild([] {
    setenv("ALSOFT_DRIVERS", "null", 1);
    options().soundEnabled = true;
    openMusic("music.wav");
    startMusic();
    shutDownMusic();
  });
  EXPECT_EQ(result.errorText, std::string(program_invocation_short_name) +
                                  ": BASS stream couldn't be opened! Disabling sound\n");
}

// A device that reports blocks of 1024 frames, read at 60 frames a second from a start 50 ms off.
TEST(FollowPosition, SmoothsTheStaircase) {
  constexpr double rate = 44100.0;
  double position = -0.05 * rate;
  double squares = 0.0;
  int count = 0;
  for (int frame = 1; frame <= 1200; ++frame) {
    const double seconds = frame / 60.0 + 0.003 * std::sin(frame * 1.7);
    const double step = seconds - ((frame - 1) / 60.0 + 0.003 * std::sin((frame - 1) * 1.7));
    const double heard = std::floor(seconds * rate / 1024.0) * 1024.0;
    const double next = followPosition(position, heard, step, rate);
    EXPECT_GE(next, position);
    position = next;
    if (seconds < 5.0) continue;
    const double error = (position - (seconds * rate - 512.0)) / rate;  // the middle of the steps
    squares += error * error;
    ++count;
  }
  EXPECT_LT(std::sqrt(squares / count), 0.001);
}

}  // namespace vex
