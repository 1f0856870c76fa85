#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <string>

#include "tests/support/image_files.h"
#include "tests/support/png.h"
#include "tests/support/sound_files.h"
#include "tests/support/temporary_folder.h"

// The beginning of a show of one's own, and what it comes to when it is given away.

namespace vex {

namespace {

namespace fs = std::filesystem;

Program tool(const std::string& line) {
  return runProgram(VEX_BIN "/" + line);
}

void expectDone(const std::string& line) {
  const Program program = tool(line);
  EXPECT_EQ(program.exitCode, 0) << line;
  EXPECT_EQ(program.errors, "") << line;
}

// A tick each half second.
void writeTicks(const char* path) {
  writeSoundFile(path, {.rate = 8000, .channels = 1, .frames = 12 * 8000, .sample = [](int frame, int) {
                          const float since = static_cast<float>(frame % 4000) / 8000;
                          return 0.8f * std::exp(-30 * since) * std::sin(3000 * since);
                        }});
}

bool holds(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

}  // namespace

TEST(NewShow, IsCompleteAndIsGivenAwaySmall) {
  const TemporaryFolder folder;
  expectDone("vexproject new show");
  const Program checked = tool("vexproject check show/show.txt --dir show");
  EXPECT_EQ(checked.errors, "") << "not even a remark";
  EXPECT_EQ(checked.output, "no problems\n");

  // Two bitmaps of one's own, of which one is called.
  writeFile("show/data/large.bmp", bmpBytes(512, 512, plain({200, 30, 10})));
  writeFile("show/data/pattern.bmp", bmpBytes(256, 256, plain({1, 2, 3})));
  writeFile("show/data/pattern_mask.bmp", bmpBytes(256, 256, plain({255, 255, 255})));
  std::string text = readFile("show/show.txt");
  for (const char* name : {"large", "pattern"}) {
    text += std::string("part \"") + name +
            "\" {\n  at 2s until 4s track 30\n  SceneHelper.drawBitmapRepeat(texture = \"data\\" + name +
            "\", x = -1, y = -1, w = 1, h = 1, rx = 1, ry = 1, alpha = 1, blend = 0)\n}\n";
  }
  writeFile("show/show.txt", text);
  writeFile("show/data/unused with a name that no archive can take.bmp", "");
  expectDone("vexproject compile show/show.txt show/test.hvp");
  fs::create_directory("gift");
  const Program packed = tool("vexpak create gift/vex.pak show --used show/show.txt");
  EXPECT_EQ(packed.errors, "");
  for (const char* name :
       {"data/unused with a name that no archive can take.bmp", "show.txt", "data/flare_shine.bmp"})
    EXPECT_TRUE(holds(packed.output, std::string("left out  ") + name + "\n")) << packed.output;
  for (const char* name :
       {"large", "pattern", "first", "light1", "vex01", "hell.", "helltop", "font", "silence", "test."})
    EXPECT_FALSE(holds(packed.output, std::string("/") + name)) << packed.output;
  EXPECT_LT(fs::file_size("gift/vex.pak"), 2'000'000u);
  const Program played =
      tool("vexrecord --dir gift --stills 3 --from 3 --cold --out stills --size 64x48 --stats");
  EXPECT_EQ(played.errors, "");
  const Png png = readPng("stills/0003.000.png");
  EXPECT_EQ(png.at(16, 18), (std::vector<int>{1, 2, 3})) << "the second, over the first";
  EXPECT_EQ(png.at(60, 44), (std::vector<int>{8, 10, 18})) << "the ground";
}

TEST(NewShow, TakesTheMusicAndItsBeat) {
  const TemporaryFolder folder;
  writeTicks("my own ticks.wav");
  fs::create_directory("show");
  expectDone("vexproject new show --music 'my own ticks.wav'");
  const std::string text = readFile("show/show.txt");
  EXPECT_TRUE(holds(text, "\ntempo 120 from 0.000\ntotal 11.5s\nmusic \"data\\music.wav\"")) << text;
  EXPECT_EQ(readFile("show/data/music.wav"), readFile("my own ticks.wav"));
  const Program checked = tool("vexproject check show/test.hvp --dir show");
  EXPECT_EQ(checked.errors, "");

  fs::rename("my own ticks.wav", "t.wav");
  expectDone("vexproject new other --music t.wav --tempo 93.5");
  EXPECT_TRUE(holds(readFile("other/show.txt"), "\ntempo 93.5 from 0.000\n"));
  EXPECT_TRUE(holds(readFile("other/show.txt"), "\nmusic \"data\\t.wav\""));
}

TEST(NewShow, RefusesWhatWouldBeLostOrCannotBePlayed) {
  const TemporaryFolder folder;
  writeFile("full/.hidden", "mine");
  writeFile("text.wav", "no sound");
  writeSoundFile("short.wav", {.rate = 8000, .channels = 1, .frames = 8000});
  const struct {
    const char* line;
    int exitCode;
    const char* message;
  } cases[] = {
      {"vexproject new full", 255, "full isn't empty: a new show begins in a folder of its own"},
      {"vexproject new text.wav", 255, "text.wav isn't a folder"},
      {"vexproject new none --music none.wav", 255, "can't read none.wav: No such file or directory"},
      {"vexproject new none --music text.wav", 255, "music text.wav cannot be played: it takes WAV"},
      {"vexproject new none --music short.wav", 255, "music short.wav lasts 1 s, at least 2 are needed"},
      {"vexproject new none --tempo 0", 2, "--tempo 0: a number from 1 to 1000 is expected"},
      {"vexproject dump none --tempo 9", 2, "--music and --tempo belong to new"},
      {"vexpak list none --used x", 2, "--used belongs to create"},
      {"vexpak create x.pak full --used none.txt", 255, "can't read none.txt: No such file or directory"},
      {"vexpak create x.pak full --used text.wav", 255, "text.wav:1: "},
  };
  for (const auto& [line, exitCode, message] : cases) {
    const Program program = tool(line);
    EXPECT_EQ(program.exitCode, exitCode) << line << ": " << program.errors;
    EXPECT_TRUE(holds(program.errors, std::string(": ") + message)) << program.errors;
  }
  EXPECT_FALSE(fs::exists("none"));
  EXPECT_EQ(readFile("full/.hidden"), "mine");
}

// What is packed under the name of the project must be what was looked through.
TEST(NewShow, IsPackedAsItWasCompiled) {
  const TemporaryFolder folder;
  writeFile("show/test.hvp", "another");
  writeFile("show.txt", "total 3\n");
  EXPECT_EQ(tool("vexpak create x.pak show --used show.txt").errors,
            "vexpak: show/test.hvp is not what show.txt was compiled to\n");
}

}  // namespace vex
