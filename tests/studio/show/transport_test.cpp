#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "app/music.h"
#include "base/quit.h"
#include "platform/steady_clock.h"
#include "studio/show/show.h"
#include "tests/support/gl_fixture.h"
#include "tests/support/left_behind.h"
#include "tests/support/project_builder.h"
#include "tests/support/run_folder.h"
#include "tests/support/sound_files.h"
#include "tests/support/temporary_folder.h"

namespace vex::studio {
namespace {

namespace fs = std::filesystem;

constexpr int rate = 10000;  // mono, so that 20 000 bytes are a second
constexpr double bytesPerSecond = 2 * rate;

void sleepFor(double seconds) {
  std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
}

// A sound device whose time the test moves.
struct HandDevice {
  bool present = true;
  double heard = 0;               // s
  std::vector<double> startedAt;  // each time that a stream was started, s
  std::string path;               // of the stream
  int sounding = 0;
  std::vector<std::vector<std::byte>> pieces;
};
HandDevice device;

constexpr SoundLibrary handLibrary{
    .init = [] { return device.present; },
    .start = [] { return device.present; },
    .createStream = [](const char* path, std::uint32_t, std::uint32_t) -> SoundStream {
      device.path = path;
      return device.present;
    },
    .attributes = [](SoundStream, int& found) { return found = rate, true; },
    .flags = [](SoundStream) { return soundFlagMono; },
    .length = [](SoundStream) { return static_cast<std::uint32_t>(8 * bytesPerSecond); },
    .setPosition = [](SoundStream, std::uint32_t bytes) { device.heard = bytes / bytesPerSecond; },
    .play =
        [](SoundStream) {
          device.startedAt.push_back(device.heard);
          ++device.sounding;
          return true;
        },
    .position = [](SoundStream) { return static_cast<std::uint32_t>(device.heard * bytesPerSecond); },
    .state = [](SoundStream) { return SoundState::playing; },
    .stop = [] { device.sounding = 0; },
    .freeStream = [](SoundStream) {},
    .free = [] {},
    .playPiece =
        [](const SoundPiece& piece) {
          device.pieces.emplace_back(piece.samples.begin(), piece.samples.end());
        }};

ProjectData fourSeconds(const std::string& music) {
  return {.totalTime = 4,
          .music = music,
          .parts = {fillPart("red", 0, 2, 1, 0, 0), fillPart("green", 2, 2, 0, 1, 0)}};
}

Project asProject(const ProjectData& project) {
  return decodeProject(buildProject(project).bytes, "test").project;
}

class Transport : public GlTest {
 protected:
  void SetUp() override {
    GlTest::SetUp();
    setenv("XDG_CACHE_HOME", fs::absolute("cache").c_str(), 1);
    writeRunFolder(fourSeconds(""));
    device = {};
    soundLibrary = handLibrary;
  }
  void TearDown() override {
    show.reset();
    unsetenv("XDG_CACHE_HOME");
    GlTest::TearDown();
  }

  void load(const ProjectData& project) {
    show = std::make_unique<Show>();
    show->setPicture(glTestWidth, glTestHeight);
    ASSERT_EQ(show->load(asProject(project), {}), std::nullopt);
  }

  void loadWithMusic() {
    writeSoundFile(
        "data/music.wav",
        {.rate = rate, .channels = 1, .frames = 8 * rate, .sample = [](int, int) { return 0.5f; }});
    load(fourSeconds("data\\music.wav"));
  }

  // The time of the frame drawn when so much of the music has been heard (s).
  double frameWhenHeard(double seconds) {
    device.heard = seconds;
    EXPECT_EQ(show->drawFrame(), std::nullopt);
    return show->time();
  }

  TemporaryFolder folder;
  std::unique_ptr<Show> show;
};

// Two frames bring the clock's filter to the pace; from then on the picture is where the music is.
TEST_F(Transport, IsLedByTheMusicWhereverItStarts) {
  loadWithMusic();
  EXPECT_TRUE(show->hasMusic());
  EXPECT_EQ(show->soundMessage(), "");
  EXPECT_EQ(show->musicName(), "data\\music.wav");
  EXPECT_EQ(show->musicSeconds(), 8);
  EXPECT_EQ(device.sounding, 0);

  ASSERT_EQ(show->seek(1), std::nullopt);
  ASSERT_EQ(show->play(), std::nullopt);
  EXPECT_TRUE(show->playing());
  EXPECT_EQ(device.startedAt, (std::vector<double>{1}));
  EXPECT_EQ(frameWhenHeard(1), 1);
  frameWhenHeard(1.02);
  for (const double heard : {1.04, 1.06, 1.09, 1.12}) EXPECT_NEAR(frameWhenHeard(heard), heard, 1e-4);
  EXPECT_GT(readPixel(5, 5)[0], 200);

  // A jump takes the music along; another time line does not.
  ASSERT_EQ(show->seek(2.5), std::nullopt);
  EXPECT_EQ(device.startedAt, (std::vector<double>{1, 2.5}));
  frameWhenHeard(2.5);
  frameWhenHeard(2.52);
  EXPECT_NEAR(frameWhenHeard(2.54), 2.54, 1e-4);
  ASSERT_EQ(show->setProject(asProject(fourSeconds("data\\music.wav"))), std::nullopt);
  EXPECT_EQ(device.startedAt.size(), 2u);
  frameWhenHeard(2.56);
  frameWhenHeard(2.58);
  EXPECT_NEAR(frameWhenHeard(2.6), 2.6, 1e-4);

  show->pause();
  EXPECT_EQ(device.sounding, 0);
  EXPECT_NEAR(frameWhenHeard(3.5), 2.6, 1e-4);
  ASSERT_EQ(show->play(), std::nullopt);
  EXPECT_NEAR(device.startedAt.back(), 2.6, 1e-3);
}

TEST_F(Transport, LeadsFromTheEndOfTheLoopToItsBeginInTheNextFrame) {
  loadWithMusic();
  show->setLoop(Loop{1, 3});
  ASSERT_EQ(show->seek(2.9), std::nullopt);
  ASSERT_EQ(show->play(), std::nullopt);
  frameWhenHeard(2.9);
  frameWhenHeard(2.95);
  EXPECT_NEAR(frameWhenHeard(2.99), 2.99, 1e-4);
  EXPECT_GT(readPixel(5, 5)[1], 200);
  EXPECT_EQ(frameWhenHeard(3.01), 1);
  EXPECT_GT(readPixel(5, 5)[0], 200);
  EXPECT_EQ(device.startedAt, (std::vector<double>{2.9, 1}));

  // Behind the loop it plays on to the end, and from there to the loop's begin.
  ASSERT_EQ(show->seek(3.5), std::nullopt);
  frameWhenHeard(3.5);
  frameWhenHeard(3.6);
  EXPECT_NEAR(frameWhenHeard(3.7), 3.7, 1e-4);
  frameWhenHeard(4.2);
  frameWhenHeard(4.3);
  EXPECT_FALSE(show->playing());
  ASSERT_EQ(show->play(), std::nullopt);
  EXPECT_EQ(show->time(), 1);
  show->setLoop(Loop{3, 3});
  EXPECT_FALSE(show->loop());
}

TEST_F(Transport, StaysOnTheLastPictureWhateverAsksToQuit) {
  loadWithMusic();
  ASSERT_EQ(show->seek(3.9), std::nullopt);
  ASSERT_EQ(show->play(), std::nullopt);
  frameWhenHeard(3.9);
  requestQuit(1);
  frameWhenHeard(3.95);
  EXPECT_NEAR(frameWhenHeard(3.99), 3.99, 1e-4);
  EXPECT_TRUE(show->playing());
  EXPECT_NEAR(frameWhenHeard(4.03), 4, 1e-6);
  EXPECT_FALSE(show->playing());
  EXPECT_EQ(device.sounding, 0);
  EXPECT_GT(readPixel(5, 5)[1], 200);
  EXPECT_NEAR(frameWhenHeard(5), 4, 1e-6);
  EXPECT_GT(readPixel(5, 5)[1], 200);
  ASSERT_EQ(show->play(), std::nullopt);
  EXPECT_EQ(device.startedAt.back(), 0);
}

TEST_F(Transport, PlaysInSilenceByTheSystemsClock) {
  const struct {
    const char* music;
    bool device;
    const char* message;
  } cases[] = {
      {"", true, "The show names no music."},
      {"data\\none.wav", true, "Sound file not found! Disabling sound"},
      {"data\\music.wav", false, "Couldn't initialize BASS! Disabling sound"},
  };
  writeSoundFile("data/music.wav", {.rate = rate, .channels = 1, .frames = 8 * rate});
  for (const auto& [music, present, message] : cases) {
    device = {};
    device.present = present;
    load(fourSeconds(music));
    EXPECT_EQ(show->soundMessage(), message);
    ASSERT_EQ(show->seek(1), std::nullopt);
    ASSERT_EQ(show->drawFrame(), std::nullopt);
    sleepFor(0.1);  // that do not count
    ASSERT_EQ(show->play(), std::nullopt);
    const double begin = steadySeconds();
    for (int frame = 0; frame < 5; ++frame) {
      sleepFor(0.02);
      const double before = steadySeconds() - begin;
      ASSERT_EQ(show->drawFrame(), std::nullopt);
      EXPECT_GE(show->time(), 1 + before - 0.003) << music;
      EXPECT_LE(show->time(), 1 + (steadySeconds() - begin) + 0.003) << music;
    }
    EXPECT_GT(show->framesPerSecond(), 15);
    EXPECT_LT(show->framesPerSecond(), 51);
  }
}

// Other music in the text is opened, and what was missing is tried again.
TEST_F(Transport, OpensTheMusicThatTheTextNames) {
  load(fourSeconds("data\\none.wav"));
  writeSoundFile("data/music.wav", {.rate = rate, .channels = 1, .frames = 8 * rate});
  ASSERT_EQ(show->setProject(asProject(fourSeconds("data\\music.wav"))), std::nullopt);
  EXPECT_EQ(show->soundMessage(), "");
  ASSERT_EQ(show->seek(2), std::nullopt);
  ASSERT_EQ(show->play(), std::nullopt);
  EXPECT_EQ(device.startedAt, (std::vector<double>{2}));
  ASSERT_EQ(show->setProject(asProject(fourSeconds(""))), std::nullopt);
  EXPECT_EQ(device.sounding, 0);
  EXPECT_TRUE(show->playing());
}

// Its file has changed: it sounds from where the show is. What is no music leaves the one that plays.
TEST_F(Transport, LoadsTheMusicAnewWhenItsFileChanges) {
  loadWithMusic();
  ASSERT_EQ(show->seek(2), std::nullopt);
  ASSERT_EQ(show->play(), std::nullopt);
  frameWhenHeard(2);
  const std::vector<std::string> names{"data/Music.wav"};
  const std::string music = readFile("data/music.wav");
  writeFile("data/music.wav", "rubbish");
  EXPECT_EQ(show->reload(names), "Sound file data\\music.wav can't be read");
  EXPECT_EQ(device.startedAt, (std::vector<double>{2}));
  EXPECT_EQ(device.sounding, 1);
  fs::remove("data/music.wav");
  EXPECT_EQ(show->reload(names), "Sound file data\\music.wav not found");
  EXPECT_EQ(show->musicSeconds(), 8);
  EXPECT_TRUE(show->playing());

  writeSoundFile("data/music.wav", {.rate = rate, .channels = 1, .frames = 6 * rate});
  EXPECT_EQ(show->reload(names), std::nullopt);
  EXPECT_EQ(show->musicSeconds(), 6);
  EXPECT_EQ(device.startedAt, (std::vector<double>{2, 2}));
  EXPECT_EQ(show->soundMessage(), "");
}

// Compressed music is entered at once through its samples, and grains of it are heard one at a time.
TEST_F(Transport, EntersDecodedMusicAndSoundsGrainsOfIt) {
  loadWithMusic();
  EXPECT_EQ(device.path, "data\\music.wav");
  const double begin = steadySeconds();
  std::string path;
  for (; path.empty() && steadySeconds() < begin + 10; sleepFor(0.01)) {
    ASSERT_EQ(show->play(), std::nullopt);
    show->pause();
    if (device.path.starts_with("/proc/self/fd/")) path = device.path;
  }
  const std::string wave = readFile(path);
  ASSERT_EQ(wave.size(), 44 + 8 * static_cast<std::size_t>(bytesPerSecond));
  const std::string original = readFile("data/music.wav");
  EXPECT_EQ(wave.substr(44), original.substr(original.size() - (wave.size() - 44)));

  ASSERT_EQ(show->scrub(3), std::nullopt);
  ASSERT_EQ(show->scrub(3.01), std::nullopt);  // while the first one sounds
  EXPECT_NEAR(show->time(), 3.01, 1e-6);
  ASSERT_EQ(device.pieces.size(), 1u);
  sleepFor(0.09);
  ASSERT_EQ(show->scrub(3.02), std::nullopt);
  ASSERT_EQ(device.pieces.size(), 2u);
  const auto& grain = device.pieces[0];
  ASSERT_EQ(grain.size(), std::size_t{2} * 800);  // 80 ms
  const auto sample = [&grain](std::size_t i) {
    return static_cast<std::int16_t>(std::to_integer<int>(grain[2 * i]) |
                                     std::to_integer<int>(grain[2 * i + 1]) << 8);
  };
  for (const std::size_t i : {0u, 10u, 25u, 49u}) {  // 50 frames are 5 ms
    EXPECT_NEAR(sample(i), 16384 * (static_cast<double>(i) / 50), 2) << i;
    EXPECT_EQ(sample(799 - i), sample(i));
  }
  EXPECT_NEAR(sample(400), 16384, 2);
  device.pieces.clear();
  sleepFor(0.09);
  ASSERT_EQ(show->play(), std::nullopt);
  ASSERT_EQ(show->scrub(1), std::nullopt);
  EXPECT_FALSE(show->playing());
  EXPECT_EQ(device.sounding, 0);

  const int descriptors = openDescriptors();
  show.reset();
  EXPECT_LT(openDescriptors(), descriptors);
  EXPECT_TRUE(fs::is_empty("cache/vex"));
}

// The silent device takes samples in real time. A busy machine may hold one frame back, not half of them.
TEST_F(Transport, KeepsThePictureWithTheSamplesOfTheDevice) {
  setenv("ALSOFT_DRIVERS", "null", 1);
  soundLibrary = openAlLibrary;
  loadWithMusic();
  ASSERT_EQ(show->soundMessage(), "");
  ASSERT_EQ(show->seek(1), std::nullopt);
  ASSERT_EQ(show->play(), std::nullopt);
  sleepFor(0.1);
  std::vector<double> offsets;
  for (int frame = 0; frame < 120; ++frame) {
    sleepFor(frame % 7 == 0 ? 0.03 : 0.008);
    const double before = steadySeconds();
    ASSERT_EQ(show->drawFrame(), std::nullopt);
    offsets.push_back(show->time() - (before + steadySeconds()) / 2);
  }
  const auto median = [](std::vector<double> values) {
    std::ranges::nth_element(values, values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2));
    return values[values.size() / 2];
  };
  const double offset = median(offsets);
  for (double& value : offsets) value = std::abs(value - offset);
  EXPECT_LT(median(offsets), 0.005);
}

}  // namespace
}  // namespace vex::studio
