#include "platform/ogg_encoder.h"

#include <gtest/gtest.h>
#include <sndfile.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <numbers>

namespace vex {

namespace {

std::vector<float> makeTone(double hertz, std::size_t frames) {
  std::vector<float> samples(frames);
  for (std::size_t i = 0; i < frames; ++i) {
    samples[i] =
        static_cast<float>(0.5 * std::sin(2 * std::numbers::pi * hertz * static_cast<double>(i) / 44100));
  }
  return samples;
}

std::vector<std::byte> encodeTones(std::size_t frames = 20000) {
  std::string error;
  std::vector<std::byte> file = encodeOgg(makeTone(440, frames), makeTone(1000, frames), 44100, 0.6, error);
  EXPECT_EQ(error, "");
  return file;
}

// Amplitude of one frequency in one channel of interleaved stereo, by a plain Fourier sum.
double amplitudeAt(const std::vector<float>& samples, std::size_t channel, double hertz) {
  double real = 0, imaginary = 0;
  const std::size_t frames = samples.size() / 2;
  for (std::size_t i = 0; i < frames; ++i) {
    const double angle = 2 * std::numbers::pi * hertz * static_cast<double>(i) / 44100;
    real += samples[2 * i + channel] * std::cos(angle);
    imaginary += samples[2 * i + channel] * std::sin(angle);
  }
  return 2 * std::hypot(real, imaginary) / static_cast<double>(frames);
}

std::uint32_t wordAt(const std::vector<std::byte>& bytes, std::size_t at) {
  std::uint32_t value = 0;
  for (std::size_t i = 4; i-- > 0;) value = value << 8 | std::to_integer<std::uint32_t>(bytes[at + i]);
  return value;
}

}  // namespace

// libogg drops pages whose checksum is wrong, so a file that decodes whole has right ones.
TEST(OggEncoder, DecodesToWhatWentIn) {
  const std::vector<std::byte> bytes = encodeTones();
  const std::string path = testing::TempDir() + "ogg_encoder_test.ogg";
  std::FILE* file = std::fopen(path.c_str(), "wb");
  ASSERT_NE(file, nullptr);
  std::fwrite(bytes.data(), 1, bytes.size(), file);
  std::fclose(file);

  SF_INFO info{};
  SNDFILE* stream = sf_open(path.c_str(), SFM_READ, &info);
  ASSERT_NE(stream, nullptr);
  EXPECT_EQ(info.frames, 20000);
  EXPECT_EQ(info.channels, 2);
  EXPECT_EQ(info.samplerate, 44100);
  std::vector<float> samples(40000);
  EXPECT_EQ(sf_readf_float(stream, samples.data(), 20000), 20000);
  sf_close(stream);
  std::remove(path.c_str());
  EXPECT_NEAR(amplitudeAt(samples, 0, 440), 0.5, 0.02);
  EXPECT_NEAR(amplitudeAt(samples, 1, 1000), 0.5, 0.02);
  EXPECT_NEAR(amplitudeAt(samples, 0, 1000), 0, 0.01);
}

TEST(OggEncoder, GivesEqualBytesAndOneSerial) {
  const std::vector<std::byte> bytes = encodeTones();
  EXPECT_EQ(bytes, encodeTones());
  int pages = 0;
  for (std::size_t at = 0; at < bytes.size(); ++pages) {
    EXPECT_EQ(wordAt(bytes, at + 14), 0x766578u) << "page " << pages;
    const auto segments = std::to_integer<std::size_t>(bytes[at + 26]);
    std::size_t length = 27 + segments;
    for (std::size_t i = 0; i < segments; ++i) length += std::to_integer<std::size_t>(bytes[at + 27 + i]);
    at += length;
  }
  EXPECT_GE(pages, 3);
}

// Every prefix of the first pages that does not end on a page, in a buffer of exactly its size.
TEST(OggEncoder, LeavesBrokenPagesAlone) {
  const std::vector<std::byte> bytes = encodeTones(2000);
  int whole = 0;
  for (std::size_t size = 1; size < bytes.size(); size += size < 200 ? 1 : 37) {
    std::vector<std::byte> cut(bytes.begin(), bytes.begin() + static_cast<long>(size));
    const std::vector<std::byte> before = cut;
    if (setOggSerial(cut, 7)) {
      ++whole;
      EXPECT_NE(cut, before);
    } else {
      EXPECT_EQ(cut, before) << size;
    }
  }
  EXPECT_LE(whole, 3);
}

TEST(OggEncoder, SaysWhatIsWrong) {
  std::string error;
  EXPECT_TRUE(encodeOgg(makeTone(440, 10), makeTone(440, 11), 44100, 0.6, error).empty());
  EXPECT_EQ(error, "the channels differ in length");
  EXPECT_TRUE(encodeOgg(makeTone(440, 10), makeTone(440, 10), 0, 0.6, error).empty());
  EXPECT_NE(error, "");
}

}  // namespace vex
