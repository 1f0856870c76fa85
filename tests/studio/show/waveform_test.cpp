#include "studio/show/waveform.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>

#include "base/files.h"
#include "platform/steady_clock.h"
#include "studio/show/peak_cache.h"
#include "tests/support/sound_files.h"
#include "tests/support/temporary_folder.h"

namespace vex::studio {
namespace {

namespace fs = std::filesystem;

struct WaveformTest : testing::Test {
  WaveformTest() { setenv("XDG_CACHE_HOME", fs::absolute("cache").c_str(), 1); }
  ~WaveformTest() override { unsetenv("XDG_CACHE_HOME"); }

  // Until the peaks have come, or the reason why they do not.
  void read(const std::string& name) {
    waveform.read(name);
    const double begin = steadySeconds();
    while (!waveform.fresh() && waveform.message().empty() && steadySeconds() < begin + 10)
      std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }

  TemporaryFolder folder;
  Waveform waveform;
};

// Half a second of each level, between which the second channel is turned round.
float steps(int frame, int channel) {
  constexpr float levels[] = {0, 0.25f, 0.5f, 0.9f};
  return (channel == 0 ? 1.0f : -1.0f) * levels[frame / 4000 % 4];
}

TEST_F(WaveformTest, HasTheLeastAndTheMostOfEachHundredthOfASecond) {
  const struct {
    SoundCoding coding;
    int channels;
    double within;  // of 127
  } cases[] = {{SoundCoding::wav, 2, 1},      {SoundCoding::wav, 1, 1},  {SoundCoding::wav8Bit, 2, 2},
               {SoundCoding::wavFloat, 2, 1}, {SoundCoding::flac, 2, 1}, {SoundCoding::ogg, 2, 40}};
  for (const auto& [coding, channels, within] : cases) {
    fs::remove_all("data");
    fs::create_directory("data");
    writeSoundFile("data/music.x",
                   {.coding = coding, .rate = 8000, .channels = channels, .frames = 16000, .sample = steps});
    read("data\\music.x");
    const Peaks* peaks = waveform.peaks();
    ASSERT_TRUE(peaks) << waveform.message();
    EXPECT_FALSE(waveform.fresh());
    EXPECT_DOUBLE_EQ(peaks->seconds, 0.01);
    ASSERT_EQ(peaks->peaks.size(), 200u);
    for (const std::size_t i : {5u, 55u, 105u, 155u, 195u}) {
      const double level = 127 * double{steps(static_cast<int>(i) * 80, 0)};
      EXPECT_NEAR(peaks->peaks[i].high, level, within) << i;
      EXPECT_NEAR(peaks->peaks[i].low, channels == 1 ? level : -level, within) << i;
    }
  }
}

TEST_F(WaveformTest, SaysWhyThereIsNone) {
  fs::create_directory("data");
  writeFile("data/rubbish.ogg", "OggS and nothing more");
  const struct {
    const char* name;
    const char* message;
  } cases[] = {{"", ""},
               {"data\\none.ogg", "Sound file data\\none.ogg not found"},
               {"data\\rubbish.ogg", "Sound file data\\rubbish.ogg can't be read"}};
  for (const auto& [name, message] : cases) {
    waveform.read(name);
    for (int i = 0; i < 500 && waveform.message() != message; ++i)
      std::this_thread::sleep_for(std::chrono::milliseconds(2));
    EXPECT_EQ(waveform.message(), message);
    EXPECT_FALSE(waveform.peaks());
    EXPECT_FALSE(waveform.fresh());
  }
}

// The cache is known by what nobody else would have written: one peak of another height.
TEST_F(WaveformTest, TakesTheCacheOfThisMusicOnly) {
  const auto writeMusic = [](int frames) {
    writeSoundFile("data/music.wav", {.rate = 8000, .channels = 1, .frames = frames, .sample = steps});
  };
  const std::string cache = "data/.music.wav.peaks";
  fs::create_directory("data");
  writeMusic(16000);
  read("data\\music.wav");
  const std::string bytes = readFile(cache);
  ASSERT_EQ(bytes.size(), 40u + 400);
  MusicStamp stamp{.size = fs::file_size("data/music.wav")};
  for (int i = 7; i >= 0; --i)
    stamp.changed = stamp.changed << 8 | static_cast<std::uint8_t>(bytes[16 + static_cast<std::size_t>(i)]);
  Peaks marked = *readPeaks(bytes, stamp);
  EXPECT_NEAR(marked.seconds, 0.01, 1e-9);
  marked.peaks[0].high = 99;
  const std::string good = peakBytes(marked, stamp);

  const auto firstOf = [&](const std::string& cached) {
    writeFile(cache, cached);
    read("data\\music.wav");
    return waveform.peaks() ? waveform.peaks()->peaks[0].high : -1;
  };
  EXPECT_EQ(firstOf(good), 99);
  for (std::size_t size = 0; size < good.size(); size += size < 48 ? 1 : 37)
    ASSERT_EQ(readPeaks(good.substr(0, size), stamp), std::nullopt) << size;
  for (std::size_t i = 0; i < good.size(); i += i < 48 ? 1 : 37) {
    std::string damaged = good;
    damaged[i] = static_cast<char>(damaged[i] ^ 4);
    ASSERT_EQ(readPeaks(damaged, stamp), std::nullopt) << i;
  }
  EXPECT_EQ(firstOf(good.substr(0, 100)), 0);
  EXPECT_EQ(readFile(cache), bytes);  // made anew

  writeFile(cache, good);
  const auto changed = fs::last_write_time("data/music.wav");
  writeMusic(16000);
  fs::last_write_time("data/music.wav", changed + std::chrono::seconds(1));
  EXPECT_EQ(firstOf(good), 0);
  writeMusic(12000);
  fs::last_write_time("data/music.wav", changed);
  EXPECT_EQ(firstOf(good), 0);
  ASSERT_TRUE(waveform.peaks());
  EXPECT_EQ(waveform.peaks()->peaks.size(), 150u);
}

// In the archive, and where nothing can be written beside the music.
TEST_F(WaveformTest, KeepsTheCacheOfTheUserWhereTheFolderTakesNone) {
  fs::create_directory("data");
  writeSoundFile("data/music.wav", {.rate = 8000, .channels = 1, .frames = 16000, .sample = steps});
  writePakAround("vex.pak", "data/music.wav");
  fs::remove_all("data");
  pakOpen("vex.pak");
  const std::string member = "data/music.wav";
  read(member);
  ASSERT_TRUE(waveform.peaks()) << waveform.message();
  EXPECT_EQ(waveform.peaks()->peaks.size(), 200u);
  int caches = 0;
  for (const auto& entry : fs::directory_iterator("cache/vex"))
    caches += entry.path().filename().native().starts_with("music.wav.");
  EXPECT_EQ(caches, 1);
  EXPECT_FALSE(fs::exists("data"));
  fileCloseAll();
}

}  // namespace
}  // namespace vex::studio
