#include "platform/encoder.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <random>
#include <vector>

#include "tests/support/temporary_folder.h"

namespace vex {
namespace {

constexpr int width = 320, height = 180, framesPerSecond = 30, seconds = 4;

// Bits a second of a video that is nothing but noise.
double bitRateOfNoise(const char* path, int quality) {
  VideoEncoder encoder;
  EXPECT_EQ(encoder.start(path, {width, height, framesPerSecond, quality}, {}), "");
  std::mt19937 random(1);
  std::vector<std::byte> frame;
  for (int i = 0; i < seconds * framesPerSecond; ++i) {
    frame.resize(std::size_t{width} * height * 4);
    for (std::byte& sample : frame) sample = static_cast<std::byte>(random() & 255);
    EXPECT_TRUE(encoder.write(frame));
  }
  EXPECT_EQ(encoder.finish(VideoEncoder::Result::complete), "");
  return 8.0 * static_cast<double>(std::filesystem::file_size(path)) / seconds;
}

TEST(VideoEncoder, HoldsTheBitRateOfGrain) {
  const TemporaryFolder folder;
  const double limit = 6e6 * width * height / (1280 * 720);
  const double one = bitRateOfNoise("one.mp4", 1);
  EXPECT_LT(one, 1.6 * limit);  // the buffer holds two seconds of it
  EXPECT_GT(one, 0.5 * limit);
  EXPECT_GT(bitRateOfNoise("three.mp4", 3), 2 * one);
}

// The codec takes no slice beyond a certain size.
TEST(VideoEncoder, TakesLosslessFramesOfEverySize) {
  const TemporaryFolder folder;
  for (const auto& [wide, high] : {std::pair{16, 16}, {6144, 3456}}) {
    VideoEncoder encoder;
    EXPECT_EQ(encoder.start("a.mkv", {wide, high, framesPerSecond}, {}), "");
    std::vector<std::byte> frame(std::size_t{4} * static_cast<std::size_t>(wide) *
                                 static_cast<std::size_t>(high));
    EXPECT_TRUE(encoder.write(frame));
    EXPECT_EQ(encoder.finish(VideoEncoder::Result::complete), "") << wide << "x" << high;
    EXPECT_TRUE(std::filesystem::exists("a.mkv"));
    std::filesystem::remove("a.mkv");
  }
}

}  // namespace
}  // namespace vex
