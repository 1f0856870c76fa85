#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <numbers>
#include <random>
#include <string>

#include "tests/support/sound_files.h"
#include "tests/support/temporary_folder.h"

// Tempo and first beat of music, as `vexproject beats` finds them.

namespace vex {

namespace {

constexpr int rate = 22050;

// Struck at each beat: a tone of that frequency (Hz) that dies away; with a tick between two beats.
struct Clicks {
  double perMinute, first, hertz;
  bool ticks = false;
  SoundCoding coding = SoundCoding::wav;
};

double struck(double seconds, double hertz, double decay) {
  return seconds < 0 ? 0 : std::exp(-seconds / decay) * std::sin(2 * std::numbers::pi * hertz * seconds);
}

void writeClicks(const char* path, const Clicks& clicks) {
  writeSoundFile(path, {.coding = clicks.coding,
                        .rate = rate,
                        .channels = 1,
                        .frames = 20 * rate,
                        .sample = [&](int frame, int) {
                          const double period = 60 / clicks.perMinute;
                          const double since = static_cast<double>(frame) / rate - clicks.first;
                          if (since < 0) return 0.0f;
                          const double behind = std::fmod(since, period);
                          const double tick =
                              clicks.ticks ? 0.2 * struck(behind - period / 2, 4000, 0.005) : 0;
                          return static_cast<float>(0.8 * struck(behind, clicks.hertz, 0.03) + tick);
                        }});
}

Program beats(const std::string& file) {
  return runProgram(VEX_BIN "/vexproject beats " + file);
}

}  // namespace

TEST(Beats, OfMusicAreFoundToTheHundredth) {
  const TemporaryFolder folder;
  const Clicks cases[] = {
      {.perMinute = 128, .first = 0.25, .hertz = 1000},
      {.perMinute = 90, .first = 1.1, .hertz = 60, .ticks = true, .coding = SoundCoding::ogg},
      {.perMinute = 143.5, .first = 0, .hertz = 200, .ticks = true, .coding = SoundCoding::wav8Bit},
  };
  for (const Clicks& clicks : cases) {
    writeClicks("music", clicks);
    const Program found = beats("music");
    double perMinute = 0, first = 0;
    const std::size_t line = found.output.find("\ntempo ");
    ASSERT_NE(line, std::string::npos) << found.output << found.errors;
    EXPECT_EQ(std::sscanf(&found.output[line + 1], "tempo %lf from %lf\n", &perMinute, &first), 2)
        << found.output;
    EXPECT_DOUBLE_EQ(perMinute, clicks.perMinute);
    EXPECT_NEAR(first, clicks.first, 0.01) << clicks.perMinute;
    EXPECT_TRUE(found.output.starts_with("# sure: ")) << found.output;
    writeFile("show.txt", "total 10\n" + found.output);
    EXPECT_EQ(runProgram(VEX_BIN "/vexproject compile show.txt show.hvp").errors, "");
  }
}

TEST(Beats, AreNotTakenFromWhatHasNone) {
  const TemporaryFolder folder;
  std::mt19937 chance(3);
  std::uniform_real_distribution<float> anything(-0.3f, 0.3f);
  writeSoundFile("noise.wav", {.rate = rate, .channels = 1, .frames = 20 * rate, .sample = [&](int, int) {
                                 return anything(chance);
                               }});
  writeFile("text.wav", "no sound");
  writeFile("empty.wav", "");
  const struct {
    const char* file;
    const char* message;
  } cases[] = {
      {"noise.wav", "vexproject: music noise.wav: no steady beat was found\n"},
      {"text.wav",
       "vexproject: music text.wav cannot be played: it takes WAV, OGG, FLAC or MP3 with one or two "
       "channels\n"},
      {"none.wav", "vexproject: can't read none.wav: No such file or directory\n"},
      {"empty.wav", "vexproject: can't read empty.wav: nothing is in it\n"},
      {".", "vexproject: can't read .: Is a directory\n"},
  };
  for (const auto& [file, message] : cases) {
    const Program found = beats(file);
    EXPECT_EQ(found.exitCode, 255) << file;
    EXPECT_EQ(found.errors, message);
    EXPECT_EQ(found.output, "");
  }
}

}  // namespace vex
