#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <vector>

#include "base/report.h"
#include "tests/support/image_files.h"
#include "tests/support/png.h"
#include "tests/support/run_folder.h"
#include "tests/support/sound_files.h"
#include "tests/support/temporary_folder.h"

namespace vex {

namespace {

namespace fs = std::filesystem;

Program vexrecord(const std::string& arguments, const std::string& environment = "") {
  return runProgram(environment + " " VEX_BIN "/vexrecord " + arguments);
}

// With a script in ffmpeg's place; its file is "$last".
Program vexrecordWith(const std::string& script, const std::string& arguments) {
  writeFile("bin/ffmpeg", "#!/bin/sh\nfor last; do :; done\n" + script);
  fs::permissions("bin/ffmpeg", fs::perms::all);
  return vexrecord(arguments, "PATH=$PWD/bin:$PATH");
}

// Red for a second, then green, then blue.
ProjectData threeColours() {
  ProjectData project{.totalTime = 3.0};
  project.parts = {fillPart("red", 0, 1, 1, 0, 0), fillPart("green", 1, 1, 0, 1, 0),
                   fillPart("blue", 2, 9, 0, 0, 1)};
  return project;
}

std::string probe(const std::string& arguments) {
  return runProgram("ffprobe -v error -of csv=p=0 " + arguments).output;
}

// Where the sound is loud, s from the first frame.
std::pair<double, double> loudSpan(const std::string& video) {
  const Program levels = runProgram(
      "ffmpeg -y -v error -i " + video +
      " -af aresample=async=1:first_pts=0 -f s16le -ac 1 -ar 44100 raw && od -An -v -t d2 -w2 raw | "
      "awk '{ if ($1 > 5000 || $1 < -5000) { if (!first) first = NR; last = NR } } END { print first, last "
      "}'");
  double first = -1, last = -1;
  EXPECT_EQ(std::sscanf(levels.output.c_str(), "%lf %lf", &first, &last), 2) << levels.output;
  return {first / 44100, last / 44100};
}

}  // namespace

TEST(Vexrecord, StillsShowTheFramesNearestToTheirTimes) {
  const TemporaryFolder folder;
  writeRunFolder(threeColours());
  const Program program = vexrecord("--stills 0.98,0.99,1.5,3 --out pictures --size 32x16 --fps 30");
  ASSERT_EQ(program.exitCode, 0) << program.errors;
  const struct {
    const char* name;
    std::vector<int> colour;
  } stills[] = {
      {"pictures/0000.980.png", {255, 0, 0}},  // frame 29
      {"pictures/0000.990.png", {0, 255, 0}},  // frame 30, at 1 s
      {"pictures/0001.500.png", {0, 255, 0}},
      {"pictures/0003.000.png", {0, 0, 255}},
  };
  for (const auto& [name, colour] : stills) {
    const Png png = readPng(name);
    ASSERT_EQ(png.width, 32) << name;
    ASSERT_EQ(png.height, 16) << name;
    EXPECT_EQ(png.at(5, 5), colour) << name;
  }
  EXPECT_EQ(std::distance(fs::directory_iterator("pictures"), fs::directory_iterator()), 4);
}

TEST(Vexrecord, StillsEndTheRunWithTheLastOfThem) {
  const TemporaryFolder folder;
  ProjectData project = threeColours();
  project.totalTime = 100000;
  writeRunFolder(project);
  const Program program =
      runProgram("timeout 20 " VEX_BIN "/vexrecord --stills 2.5,1.5 --out pictures --size 32x16");
  EXPECT_EQ(program.exitCode, 0);
  EXPECT_EQ(readPng("pictures/0002.500.png").at(5, 5), (std::vector<int>{0, 0, 255}));
  EXPECT_EQ(readPng("pictures/0001.500.png").at(5, 5), (std::vector<int>{0, 255, 0}));
}

TEST(Vexrecord, PicturesStandUprightAndRunsAreEqual) {
  const TemporaryFolder folder;
  ProjectData project = threeColours();
  // A bitmap over the upper half; the glitch draws from the generator in every frame.
  project.parts[0].calls.push_back(
      {.scene = "SceneHelper",
       .function = "drawBitmap",
       .parameters = {text("name", "data\\vex01"), constant("x", -1), constant("y", -1), constant("w", 2),
                      constant("h", 1), constant("n", 8), constant("glitch", 0.5), constant("alpha", 1),
                      constant("b", 0)}});
  // Of what comes then the left half shows.
  project.parts[0].calls.push_back(
      {.scene = "SceneHelper",
       .function = "setViewport",
       .parameters = {constant("x", -1), constant("y", -1), constant("w", 1), constant("h", 2)}});
  project.parts[0].calls.push_back(fillPart("left", 0, 1, 0, 0, 1).calls[0]);
  writeRunFolder(project);
  writeFile("Demo.log", "of another run\n");
  ASSERT_EQ(vexrecord("--stills 0.5 --out a --size 32x16 --stats").exitCode, 0);
  EXPECT_FALSE(readFile("Demo.log").starts_with("of another run"));
  ASSERT_EQ(vexrecord("--stills 0.5 --out b --size 32x16 --stats").exitCode, 0);
  const Png png = readPng("a/0000.500.png");
  EXPECT_EQ(png.at(14, 13), (std::vector<int>{0, 0, 255}));
  EXPECT_EQ(png.at(16, 2), (std::vector<int>{255, 255, 255}));
  EXPECT_EQ(png.at(16, 13), (std::vector<int>{255, 0, 0}));
  EXPECT_EQ(readFile("a/0000.500.png"), readFile("b/0000.500.png"));
}

TEST(Vexrecord, SupersamplingAveragesBlocksOfPixels) {
  const TemporaryFolder folder;
  ProjectData project = threeColours();
  // White over red, with edges that fall between pixels.
  project.parts[0].calls.push_back(
      {.scene = "SceneHelper",
       .function = "drawBitmap",
       .parameters = {text("name", "data\\vex01"), constant("x", -0.71), constant("y", -0.52),
                      constant("w", 0.97), constant("h", 0.83), constant("n", 8), constant("glitch", 0),
                      constant("alpha", 1), constant("b", 0)}});
  writeRunFolder(project);
  constexpr int width = 33, height = 17, n = 3;
  ASSERT_EQ(vexrecord("--stills 0.5 --out smooth --size 33x17 --supersample 3").errors, "");
  ASSERT_EQ(vexrecord("--stills 0.5 --out large --size 99x51").errors, "");
  const Png smooth = readPng("smooth/0000.500.png"), large = readPng("large/0000.500.png");
  ASSERT_EQ(smooth.pixels.size(), std::size_t{3} * width * height);
  int mixed = 0;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      for (std::size_t channel = 0; channel < 3; ++channel) {
        double sum = 0;
        for (int i = 0; i < n * n; ++i) sum += large.at(n * x + i % n, n * y + i / n)[channel];
        ASSERT_EQ(smooth.at(x, y)[channel], std::round(sum / (n * n))) << x << ", " << y;
      }
      if (const int green = smooth.at(x, y)[1]; green > 0 && green < 255) ++mixed;
    }
  }
  EXPECT_GT(mixed, 40);
}

TEST(Vexrecord, ContactSheetHoldsAPictureForEveryStep) {
  const TemporaryFolder folder;
  writeRunFolder(threeColours());
  const Program program = vexrecord("--contact-sheet sheet.png --every 1 --size 64x32");
  ASSERT_EQ(program.exitCode, 0) << program.errors;
  const Png png = readPng("sheet.png");
  ASSERT_EQ(png.width, 8 + 4 * (320 + 8)) << "0, 1, 2 and 3 s";
  const std::vector<int> colours[] = {{255, 0, 0}, {0, 255, 0}, {0, 0, 255}, {0, 0, 255}};
  for (int i = 0; i < 4; ++i) EXPECT_EQ(png.at(8 + i * 328 + 160, 8 + 80), colours[i]) << i << " s";
}

TEST(Vexrecord, TracesEveryCallInOrder) {
  const TemporaryFolder folder;
  ProjectData project = threeColours();
  project.parts[1].start = 0.25;
  project.parts[1].speed = 2;
  project.parts[2].track = -1;
  project.parts[1].length = 1.5;
  project.parts[2].calls[0].function = "drawBitmapRepeat";
  project.parts[2].calls[0].parameters = {text("name", "data\\vex01"),
                                          constant("x", 0),
                                          constant("y", 0),
                                          constant("w", 1),
                                          constant("h", 1),
                                          constant("sx", 1),
                                          constant("sy", 1),
                                          {.name = "alpha", .type = 3, .sinOffset = 0.1},
                                          constant("b", 0)};
  writeRunFolder(project);
  const Program program = vexrecord("--trace-calls calls.tsv --from 1.5 --to 2.3 --fps 2 --size 32x16");
  ASSERT_EQ(program.exitCode, 0) << program.errors;
  EXPECT_EQ(
      readFile("calls.tsv"),
      "frame\ttime\tpart\tscene\tfunction\tsceneTime\tp0\tp1\tp2\tp3\tp4\tp5\tp6\tp7\tp8\n"
      "-1\t0.5\tred\tSceneHelper\tfadeScreen\t0.5\t1\t0\t0\t1\n"
      "0\t1.5\tgreen\tSceneHelper\tfadeScreen\t1.25\t0\t1\t0\t1\n"
      "1\t2\tblue\tSceneHelper\tdrawBitmapRepeat\t0\tdata\\vex01\t0\t0\t1\t1\t1\t1\t0.100000001\t0\n"
      "1\t2\tgreen\tSceneHelper\tfadeScreen\t2.25\t0\t1\t0\t1\n"
      "2\t2.5\tblue\tSceneHelper\tdrawBitmapRepeat\t0.5\tdata\\vex01\t0\t0\t1\t1\t1\t1\t0.100000001\t0\n");
}

// What moves by chance, as glitches do, stands behind the run-in where it stands in the whole show.
TEST(Vexrecord, WhatBeginsInMidShowHasAPast) {
  const TemporaryFolder folder;
  ProjectData project = threeColours();
  for (PartData& part : project.parts) {
    part.calls.push_back(
        {.scene = "SceneHelper",
         .function = "drawBitmap",
         .parameters = {text("name", "data\\vex01"), constant("x", -0.5), constant("y", -0.5),
                        constant("w", 1), constant("h", 1), constant("n", 8), constant("glitch", 0.5),
                        constant("alpha", 1), constant("b", 0)}});
  }
  writeRunFolder(project);
  for (int i = 1; i <= 8; ++i)
    writeFile(formatted("data/vex0%d.bmp", i), bmpBytes(4, 4, plain({30 * i, 30 * i, 30 * i})));
  const auto recorded = [](const std::string& options) {
    EXPECT_EQ(vexrecord(options + " --out stills --size 64x48 --trace-calls calls.tsv").errors, "");
    return readFile("stills/0001.500.png");
  };
  const auto before = [] {  // the first frame
    const std::string calls = readFile("calls.tsv");
    return calls.substr(calls.find('\n') + 1, calls.find("\n0\t") - calls.find('\n'));
  };
  const std::string whole = recorded("--stills 1.5");
  EXPECT_NE(recorded("--stills 1.5 --from 1.5 --cold"), whole);
  const std::string cold = before();
  EXPECT_EQ(std::count(cold.begin(), cold.end(), '\n'), 2) << "red is replayed: " << cold;
  EXPECT_EQ(recorded("--stills 1.5 --from 1.5"), whole);
  const std::string ranIn = before();
  EXPECT_TRUE(ranIn.starts_with("-1\t0\tred\tSceneHelper\tfadeScreen\t0\t")) << ranIn;
  EXPECT_NE(ranIn.find("\n-1\t1.4666667\tgreen"), ranIn.npos) << ranIn;
}

TEST(Vexrecord, VideoHasAllFramesAndTheMusicFromItsPlace) {
  const TemporaryFolder folder;
  ProjectData project = threeColours();
  project.music = "data\\music.wav";
  writeRunFolder(project);
  // Silent but for half a second from 1.5 s on.
  writeSoundFile("data/music.wav", {.frames = 3 * 44100, .sample = [](int frame, int) {
                                      const bool loud = frame >= 66150 && frame < 88200;
                                      return loud ? 0.6f * std::sin(0.1f * static_cast<float>(frame)) : 0.0f;
                                    }});
  const Program program = vexrecord("--out video.mp4 --from 1 --size 64x32 --fps 25");
  ASSERT_EQ(program.exitCode, 0) << program.errors;
  EXPECT_EQ(probe("-count_frames -select_streams v -show_entries "
                  "stream=codec_name,width,height,nb_read_frames video.mp4"),
            "h264,64,32,51\n");
  EXPECT_NEAR(std::stod(probe("-show_entries format=duration video.mp4")), 51 / 25.0, 0.06);
  const auto [first, last] = loudSpan("video.mp4");
  EXPECT_NEAR(first, 0.5, 0.02) << "1.5 s of the music, 1 s cut off";
  EXPECT_NEAR(last, 1.0, 0.02);
  EXPECT_FALSE(fs::exists(".video.partial.mp4"));
}

// As the player does, whose clock is the music's: without music the start is what the project says.
TEST(Vexrecord, NothingComesBeforeTheMusic) {
  const TemporaryFolder folder;
  ProjectData project = threeColours();
  project.startTime = -1.5;
  project.parts.insert(project.parts.begin(), fillPart("early", -1.5, 1, 1, 1, 1));
  const auto beginning = [&] {
    writeRunFolder(project);
    const Program program = vexrecord("--out video.mkv --trace-calls calls.tsv --to 1 --fps 2 --size 32x16");
    EXPECT_EQ(program.exitCode, 0) << program.errors;
    const std::string calls = readFile("calls.tsv");
    const std::size_t first = calls.find('\n') + 1;
    return calls.substr(first, calls.find("\tSceneHelper") - first);
  };
  EXPECT_EQ(beginning(), "0\t-1.5\tearly");
  project.music = "data\\music.wav";
  // Loud from its beginning, for half a second.
  writeSoundFile("data/music.wav", {.frames = 2 * 44100, .sample = [](int frame, int) {
                                      return frame < 22050 ? 0.6f * std::sin(0.1f * static_cast<float>(frame))
                                                           : 0.0f;
                                    }});
  EXPECT_EQ(beginning(), "0\t0\tred");
  const auto [first, last] = loudSpan("video.mkv");
  EXPECT_NEAR(first, 0, 0.02);
  EXPECT_NEAR(last, 0.5, 0.02);
}

TEST(Vexrecord, MusicThatCannotBeReadLeavesASilentVideo) {
  const TemporaryFolder folder;
  ProjectData project = threeColours();
  project.music = "data\\noise.ogg";
  writeRunFolder(project);
  writeFile("data/noise.ogg", "no music");
  EXPECT_EQ(vexrecord("--out video.mp4 --size 32x16").errors,
            "vexrecord: Sound file data\\noise.ogg can't be read at 0 s, the video has no sound\n");
  fs::remove("data/noise.ogg");
  const Program program = vexrecord("--out video.mp4 --size 32x16");
  EXPECT_EQ(program.exitCode, 0);
  EXPECT_EQ(program.errors, "vexrecord: Sound file data\\noise.ogg not found, the video has no sound\n");
  EXPECT_EQ(probe("-show_entries stream=codec_type video.mp4"), "video\n");
}

TEST(Vexrecord, LosslessVideoKeepsEveryPixelAndSample) {
  const TemporaryFolder folder;
  ProjectData project = threeColours();
  project.music = "data\\music.wav";
  writeRunFolder(project);
  writeSoundFile("data/music.wav", {.frames = 4 * 44100, .sample = [](int frame, int channel) {
                                      return static_cast<float>((frame * 7919 + channel * 31) % 30000) /
                                             32768.0f;
                                    }});
  const Program program = vexrecord("--out video.mkv --frames frames --to 1.5 --size 33x17 --fps 10");
  ASSERT_EQ(program.exitCode, 0) << program.errors;
  // The decoded frames equal the PNGs, the decoded sound the beginning of the file.
  ASSERT_EQ(
      runProgram("ffmpeg -v error -i video.mkv decoded-%06d.png && ffmpeg -v error -i video.mkv -f s16le raw")
          .exitCode,
      0);
  for (int i = 0; i < 16; ++i) {
    char name[32];
    std::snprintf(name, sizeof name, "-%06d.png", i + 1);
    const Png decoded = readPng(("decoded" + std::string(name)).c_str());
    std::snprintf(name, sizeof name, "frames/%06d.png", i);
    const Png frame = readPng(name);
    ASSERT_EQ(frame.width, 33) << name;
    EXPECT_EQ(decoded.pixels, frame.pixels) << name;
    EXPECT_EQ(frame.at(16, 8), (i < 10 ? std::vector<int>{255, 0, 0} : std::vector<int>{0, 255, 0})) << name;
  }
  EXPECT_FALSE(fs::exists("frames/000016.png"));
  const std::string sound = readFile("raw");
  EXPECT_EQ(sound.size(), 4u * 44100 * 16 / 10);
  EXPECT_EQ(sound, readFile("data/music.wav").substr(44, sound.size()));
}

// White flashes and loud clicks at the same times.
TEST(Vexrecord, PictureAndSoundStayTogether) {
  constexpr double flashes[] = {0.2, 10.0, 19.6};
  const TemporaryFolder folder;
  ProjectData project{.totalTime = 20.0, .music = "data\\music.ogg"};
  project.parts = {fillPart("ground", 0, 21, 0, 0, 0)};
  for (const double time : flashes) {
    project.parts.push_back(fillPart("flash", time, 0.1, 1, 1, 1));
    project.parts.back().track = 1;
  }
  writeRunFolder(project);
  writeSoundFile("data/music.ogg",
                 {.coding = SoundCoding::ogg, .frames = 22 * 44100, .sample = [&](int frame, int) {
                    for (const double time : flashes) {
                      const double since = frame / 44100.0 - time;
                      if (since >= 0 && since < 0.1) return frame % 40 < 20 ? 0.8f : -0.8f;
                    }
                    return 0.0f;
                  }});
  const Program program = vexrecord("--out video.mp4 --size 32x16 --fps 30");
  ASSERT_EQ(program.exitCode, 0) << program.errors;
  // Both streams as the times at which they rise.
  ASSERT_EQ(runProgram("ffmpeg -v error -i video.mp4 -vf scale=1:1 -pix_fmt gray -f rawvideo picture && "
                       "ffmpeg -v error -i video.mp4 -ac 1 -ar 44100 -f s16le sound")
                .exitCode,
            0);
  std::vector<double> seen, heard;
  const std::string picture = readFile("picture"), sound = readFile("sound");
  for (std::size_t i = 1; i < picture.size(); ++i) {
    if (static_cast<unsigned char>(picture[i]) > 128 && static_cast<unsigned char>(picture[i - 1]) <= 128) {
      seen.push_back(static_cast<double>(i) / 30);
    }
  }
  for (std::size_t i = 0; i + 1 < sound.size(); i += 2) {
    const int sample = static_cast<short>(static_cast<unsigned char>(sound[i]) | sound[i + 1] * 256);
    const double time = static_cast<double>(i) / 2 / 44100;
    if (std::abs(sample) > 8000 && (heard.empty() || time > heard.back() + 1)) heard.push_back(time);
  }
  ASSERT_EQ(seen.size(), 3u);
  ASSERT_EQ(heard.size(), 3u);
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_NEAR(seen[i], flashes[i], 1 / 30.0);
    EXPECT_NEAR(heard[i], flashes[i], 1 / 30.0);
    EXPECT_NEAR(seen[i], heard[i], 1 / 30.0);
  }
}

TEST(Vexrecord, CuesBecomeNamedStills) {
  const TemporaryFolder folder;
  writeRunFolder(threeColours());
  writeFile("cues", "# the show\n\n0.5 first/red\n  2 blue at last\n");
  const Program program = vexrecord("--cues cues --out pictures --size 32x16");
  ASSERT_EQ(program.exitCode, 0) << program.errors;
  EXPECT_EQ(readPng("pictures/0000.500 first_red.png").at(5, 5), (std::vector<int>{255, 0, 0}));
  EXPECT_EQ(readPng("pictures/0002.000 blue at last.png").at(5, 5), (std::vector<int>{0, 0, 255}));
  for (const char* bad : {"x name", "1", "1 ", "name 1"}) {
    writeFile("cues", std::string("0 a\n") + bad + "\n");
    const Program refused = vexrecord("--cues cues --out pictures --size 32x16");
    EXPECT_EQ(refused.exitCode, 255);
    EXPECT_EQ(refused.errors,
              std::string("vexrecord: cues cues, line 2, ") + bad + ": seconds and a name are expected\n");
  }
  EXPECT_EQ(runProgram("timeout 20 " VEX_BIN "/vexrecord --cues /dev/zero --out pictures").errors,
            "vexrecord: cues /dev/zero are longer than 1048576 bytes\n");
  EXPECT_EQ(vexrecord("--cues none --out pictures").errors,
            "vexrecord: can't read cues none: No such file or directory\n");
}

TEST(Vexrecord, AMissingOrFailingFfmpegLeavesNoFile) {
  const TemporaryFolder folder;
  writeRunFolder(threeColours());
  Program program = vexrecord("--out video.mp4 --size 32x16", "PATH=/none");
  EXPECT_EQ(program.exitCode, 255);
  EXPECT_EQ(program.errors,
            "vexrecord: ffmpeg (Debian package ffmpeg) can't be started: No such file or directory\n");

  // One that dies at once, and two that end after some frames and leave a file.
  const struct {
    const char* script;
    const char* complaint;
  } cases[] = {
      {"echo 'no such codec' >&2\necho more >&2\nexit 3\n", " (exit code 3): no such codec\n"},
      {"head -c 9000 > \"$last\"\necho 'no such codec' >&2\nexit 3\n", " (exit code 3): no such codec\n"},
      {"head -c 9000 > \"$last\"\n", " (exit code 0): it said nothing\n"},
  };
  for (const auto& [script, complaint] : cases) {
    program = vexrecordWith(script, "--out video.mp4 --size 32x16");
    EXPECT_EQ(program.exitCode, 255);
    EXPECT_EQ(program.errors,
              "vexrecord: ffmpeg failed on " + (folder.path() / "video.mp4").native() + complaint);
    EXPECT_FALSE(fs::exists("video.mp4"));
    EXPECT_FALSE(fs::exists(".video.partial.mp4"));
  }
}

TEST(Vexrecord, AFullDiskLeavesNoHalfFile) {
  const TemporaryFolder folder;
  writeRunFolder(threeColours());
  // The scenes write what they compile of their models before the disk is full.
  ASSERT_EQ(vexrecord("--stills 0 --size 32x16 --out models").exitCode, 0);
  const auto limited = [](int kilobytes, const std::string& arguments) {
    return runProgram("ulimit -f " + std::to_string(kilobytes) + "; " VEX_BIN "/vexrecord " + arguments);
  };
  for (const char* output : {"--out x.mp4", "--out x.mkv", "--contact-sheet x.png --every 0.04",
                             "--trace-calls x.tsv --fps 100", "--frames x"}) {
    const Program program = limited(1, output + std::string(" --size 320x180 >progress"));
    EXPECT_EQ(program.exitCode, 255) << output;
    EXPECT_NE(program.errors.find("File too large"), std::string::npos) << program.errors;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(".")) {
      if (entry.path().filename() == "x") continue;
      EXPECT_FALSE(entry.path().native().starts_with("./x")) << "left behind: " << entry;
    }
  }
}

TEST(Vexrecord, AFailureElsewhereEndsFfmpegAndItsFile) {
  const TemporaryFolder folder;
  writeRunFolder(threeColours());
  fs::create_directories("pictures/000000.png");
  const Program program = vexrecordWith("sleep 0.3; echo $$ > started; cat > \"$last\"\n",
                                        "--out video.mp4 --frames pictures --size 32x16");
  EXPECT_EQ(program.exitCode, 255);
  EXPECT_EQ(program.errors, "vexrecord: can't write " + (folder.path() / "pictures/000000.png").native() +
                                ": Is a directory\n");
  runProgram("sleep 0.6");
  EXPECT_FALSE(fs::exists(".video.partial.mp4"));
  EXPECT_FALSE(fs::exists("started"));
}

TEST(Vexrecord, AnInterruptWhileLoadingLeavesNothing) {
  const TemporaryFolder folder;
  ProjectData project = threeColours();
  project.ticks.assign(200000, 1.0);  // each a line in the log: a second or more
  writeRunFolder(project);
  const Program program =
      runProgram(VEX_BIN
                 "/vexrecord --out video.mp4 --trace-calls calls.tsv --stats --size 32x16 & "
                 "id=$!; while ! ls .calls.tsv.* >list 2>&1; do :; done; kill -TERM $id; wait $id");
  EXPECT_EQ(program.exitCode, 130);
  EXPECT_EQ(program.errors, "vexrecord: interrupted\n");
  EXPECT_EQ(readFile("Demo.log").find("destroying part dispatcher"), std::string::npos)
      << "it was no interrupt while loading";
  for (const fs::directory_entry& entry : fs::directory_iterator(".")) {
    const std::string name = entry.path().filename().native();
    EXPECT_FALSE(name.starts_with(".") || name.starts_with("calls") || name.starts_with("video"))
        << "left behind: " << name;
  }
}

TEST(Vexrecord, AnInterruptKeepsAPlayablePart) {
  const TemporaryFolder folder;
  ProjectData project = threeColours();
  project.totalTime = 100000;
  writeRunFolder(project);
  const Program program = runProgram(
      VEX_BIN
      "/vexrecord --out video.mp4 --trace-calls calls.tsv --size 32x16 > progress & id=$!; "
      "while { [ ! -s .video.partial.mp4 ] || [ ! -s progress ]; } && kill -0 $id; do sleep 0.1; done; "
      "kill -TERM $id; wait $id");
  EXPECT_EQ(program.exitCode, 130);
  EXPECT_NE(program.errors.find("s are in " + (folder.path() / "video.partial.mp4").native()),
            std::string::npos)
      << program.errors;
  EXPECT_FALSE(fs::exists("video.mp4"));
  EXPECT_GT(std::atoi(probe("-count_frames -show_entries stream=nb_read_frames video.partial.mp4").c_str()),
            0);
}

TEST(Vexrecord, ProgressIsABarOnATerminalAndLinesElsewhere) {
  const TemporaryFolder folder;
  writeRunFolder(threeColours());
  const std::string command = VEX_BIN "/vexrecord --stills 1 --out pictures --size 32x16 --fps 4";
  const std::string lines =
      "recording 20 %\nrecording 40 %\nrecording 60 %\nrecording 80 %\nrecording 100 %\n";
  EXPECT_EQ(runProgram(command).output, lines);
  const std::string bar = runProgram("script -qec '" + command + "' /dev/null").output;
  EXPECT_NE(bar.find("\rrecording [####"), std::string::npos) << bar;
  EXPECT_NE(bar.find("] 100 %"), std::string::npos) << bar;
}

// A stuck encoder would keep the recording from ending in order.
TEST(Vexrecord, ASecondSignalEndsAtOnce) {
  const TemporaryFolder folder;
  writeRunFolder(threeColours());
  const Program program = vexrecordWith("echo half > \"$last\"; sleep 1000\n",
                                        "--out video.mp4 --size 640x360 > progress & id=$!; "
                                        "while [ ! -s .video.partial.mp4 ]; do sleep 0.1; done; "
                                        "kill -TERM $id; sleep 0.1; kill -HUP $id; wait $id");
  EXPECT_EQ(program.exitCode, 130);
  EXPECT_EQ(program.errors, "vexrecord: interrupted\n");
  EXPECT_FALSE(fs::exists(".video.partial.mp4"));
}

// While it takes no frames, and when it has all of them.
TEST(Vexrecord, OneSignalEndsARecordingWhoseFfmpegStandsStill) {
  for (const char* size : {"640x360", "32x16"}) {
    const TemporaryFolder folder;
    writeRunFolder(threeColours());
    const Program program =
        vexrecordWith("echo half > \"$last\"; sleep 1000\n",
                      std::string("--out video.mp4 --size ") + size +
                          " > progress & id=$!; (sleep 40; kill -KILL $id) & guard=$!; "
                          "while [ ! -s .video.partial.mp4 ]; do sleep 0.1; done; "
                          "sleep 1; kill -TERM $id; wait $id; code=$?; kill $guard; exit $code");
    EXPECT_EQ(program.exitCode, 255) << size;
    EXPECT_EQ(program.errors, "vexrecord: ffmpeg failed on " + (folder.path() / "video.mp4").native() +
                                  " (signal 9): it stood still\n");
    EXPECT_FALSE(fs::exists(".video.partial.mp4"));
  }
}

TEST(Vexrecord, UnreadableFilesAreNamedAsSuch) {
  const TemporaryFolder folder;
  const struct {
    const char* path;
    const char* name;
  } cases[] = {{"test.hvp", "test.hvp"},
               {"vex.pak", "vex.pak"},
               {"data/light3.bmp", "data\\light3.bmp"},
               {"data/light3.jpg", "data\\light3.jpg"},
               {"data/font.raw", "data\\font.raw"},
               {"data/skull.ase", "data\\skull.ase"}};
  for (const auto& [path, name] : cases) {
    writeRunFolder(threeColours());
    fs::remove("data/skull.hv3");
    fs::remove(path);
    fs::create_symlink(fs::path(path).filename(), path);  // leads to itself
    const Program program = vexrecord("--stills 0 --stats --size 32x16 --out pictures");
    EXPECT_EQ(program.exitCode, 255) << path;
    EXPECT_EQ(program.errors,
              std::string("vexrecord: can't read ") + name + ": Too many levels of symbolic links\n");
    fs::remove(path);
  }
}

// Half a second a beat, two seconds a bar.
TEST(Vexrecord, TimesMayBeBarsAndBeats) {
  const TemporaryFolder folder;
  writeRunFolder(threeColours());
  writeFile("show.txt", "total 3\ntempo 120 from 0.25\n");
  const auto written = [](const std::string& arguments) {
    const Program program = vexrecord("--size 16x16 --fps 20 --out stills " + arguments);
    EXPECT_EQ(program.exitCode, 0) << program.errors;
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator("stills")) names.insert(entry.path().filename());
    fs::remove_all("stills");
    return names;
  };
  EXPECT_EQ(written("--tempo 120 --stills 0:1,1:0.5,2.5"),
            (std::set<std::string>{"0000.500.png", "0002.250.png", "0002.500.png"}));
  EXPECT_EQ(written("--stills 0:1 --tempo show.txt"), (std::set<std::string>{"0000.750.png"}));
  EXPECT_EQ(written("--stills 1.6 --tempo 120 --from 0:3"), (std::set<std::string>{"0001.600.png"}));
  const Program early = vexrecord("--stills 1.4 --tempo 120 --from 0:3 --out stills");
  EXPECT_EQ(early.errors, "vexrecord: no frame at 1.4 s: the recording runs from 1.5 to 3 s\n");

  // A sheet is the same but for what it says below its pictures, a rows of 16 pixels.
  EXPECT_EQ(vexrecord("--size 16x16 --contact-sheet a.png --every 0:2 --tempo 120").exitCode, 0);
  EXPECT_EQ(vexrecord("--size 16x16 --contact-sheet b.png --every 1").exitCode, 0);
  EXPECT_EQ(vexrecord("--size 16x16 --contact-sheet c.png --every 1 --tempo 60").exitCode, 0);
  const std::string inBars = readFile("a.png"), inSeconds = readFile("b.png"), slower = readFile("c.png");
  EXPECT_NE(inBars, inSeconds);
  EXPECT_NE(inBars, slower);

  writeFile("none.txt", "total 3\n");
  const struct {
    const char* arguments;
    int exitCode;
    const char* message;
  } cases[] = {
      {"--stills 1:0 --out x", 2, "--stills 1:0: bars and beats need --tempo"},
      {"--from 1:x --tempo 120 --out x.mp4", 2, "--from x: a number from 0 to 100000 is expected"},
      {"--from -1:0 --tempo 120 --out x.mp4", 2, "--from -1: a number from 0 to 100000 is expected"},
      {"--tempo 0 --out x.mp4", 2, "--tempo 0: a number from 1 to 1000 is expected"},
      {"--tempo none.txt --out x.mp4", 255, "none.txt states no tempo"},
      {"--tempo nofile.txt --out x.mp4", 255, "can't read nofile.txt: No such file or directory"},
  };
  for (const auto& [arguments, exitCode, message] : cases) {
    const Program program = vexrecord(arguments);
    EXPECT_EQ(program.exitCode, exitCode) << arguments << ": " << program.errors;
    EXPECT_TRUE(program.errors.starts_with(std::string("vexrecord: ") + message)) << program.errors;
  }
}

TEST(Vexrecord, RefusesWhatCannotBe) {
  const TemporaryFolder folder;
  writeRunFolder(threeColours());
  const std::string here = fs::current_path().string();
  const struct {
    const char* arguments;
    int exitCode;
    std::string message;
  } cases[] = {
      {"", 2, "nothing to write: give --out, --frames, --contact-sheet or --trace-calls"},
      {"--wrong", 2, "unknown option --wrong"},
      {"--out", 2, "--out needs a value"},
      {"--out x.avi", 2, "--out x.avi: a name that ends in .mp4 or .mkv is expected"},
      {"--out x.mp4 --size 33x16", 2, "--size 33x16: a video with this ending needs even numbers"},
      {"--out x.mp4 --size 33", 2, "--size 33: WIDTHxHEIGHT is expected"},
      {"--out x.mp4 --supersample 9", 2, "--supersample 9: a number from 1 to 8 is expected"},
      {"--out x.mp4 --fps 0", 2, "--fps 0: a number from 1 to 1000 is expected"},
      {"--out x.mp4 --fps 30x", 2, "--fps 30x: a number from 1 to 1000 is expected"},
      {"--out x.mp4 --from nan", 2, "--from nan: a number from 0 to 1000000 is expected"},
      {"--stills 1", 2, "stills need --out DIR"},
      {"--stills 1,,2 --out x", 2, "--stills : a number from 0 to 1000000 is expected"},
      {"--every 1 --out x.mp4", 2, "--every needs --contact-sheet FILE.png"},
      {"--cold --out x.mp4", 2, "--cold needs --from T"},
      {"--dir none --out x.mp4", 255, "can't go to folder none: No such file or directory"},
      {"--dir data --out x.mp4", 255, "no presentation in folder " + here + "/data: neither"},
      {"--stills 9 --out x", 255, "no frame at 9 s: the recording runs from 0 to 3 s"},
      {"--from 3 --out x.mp4", 255, "Starting after end!"},
      {"--to 4 --out x.mp4", 255, "--to 4 lies outside the presentation, 0 to 3 s"},
      {"--trace-calls none/x", 255, "can't write trace " + here + "/none/x: No such file or directory\n"},
      {"--contact-sheet none/x.png", 255, "can't write " + here + "/none/x.png: No such file or directory\n"},
      {"--contact-sheet data", 255, "can't write " + here + "/data: Is a directory\n"},
      {"--contact-sheet x.png --every 0.001", 255,
       "--every 0.001 gives 3001 pictures, at most 1000 fit on a sheet"},
  };
  for (const auto& [arguments, exitCode, message] : cases) {
    const Program program = vexrecord(arguments);
    EXPECT_EQ(program.exitCode, exitCode) << arguments << ": " << program.errors;
    EXPECT_TRUE(program.errors.starts_with("vexrecord: " + message)) << program.errors;
  }
  for (const fs::directory_entry& entry : fs::directory_iterator(".")) {
    EXPECT_FALSE(entry.path().filename().native().starts_with("x")) << "left behind: " << entry;
  }
}

}  // namespace vex
