#include "platform/sound_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "tests/support/sound_files.h"
#include "tests/support/temporary_folder.h"

namespace vex {

namespace {

using Bytes = std::string;  // of files
using Samples = std::vector<std::byte>;

constexpr SoundCoding lossless[] = {SoundCoding::wav, SoundCoding::flac};
constexpr SoundCoding everyCoding[] = {SoundCoding::wav, SoundCoding::flac, SoundCoding::ogg,
                                       SoundCoding::mp3};

Samples decodeRest(SoundFile& file) {
  Samples bytes;
  Samples part(4096 * static_cast<std::size_t>(file.frameBytes()));
  while (const std::size_t size = readSound(file, part)) {
    bytes.insert(bytes.end(), part.begin(), part.begin() + static_cast<std::ptrdiff_t>(size));
    if (bytes.size() > 64 << 20) {
      ADD_FAILURE() << "endless music";
      break;
    }
  }
  return bytes;
}

int sampleAt(const Samples& bytes, std::size_t index) {
  std::int16_t value = 0;
  std::memcpy(&value, bytes.data() + 2 * index, 2);
  return value;
}

// Every 16-bit value turns up, and neighbours differ.
float scrambled(int frame, int channel) {
  const auto value = static_cast<std::int16_t>(static_cast<unsigned>(frame) * 40503u +
                                               static_cast<unsigned>(channel) * 12345u);
  return static_cast<float>(value) / 32768.0f;
}

// A tone whose pitch rises, so that every place sounds different.
float rising(int frame, int channel) {
  const double seconds = frame / 44100.0;
  return static_cast<float>(0.4 * std::sin(2.0 * M_PI * (200.0 + 300.0 * seconds) * seconds + channel));
}

void put(Bytes& bytes, std::size_t at, std::uint32_t value, int count) {
  for (int i = 0; i < count; ++i) bytes[at + static_cast<std::size_t>(i)] = static_cast<char>(value >> 8 * i);
}

}  // namespace

TEST(SoundFile, ReportsTheFormatOfTheFile) {
  const TemporaryFolder folder;
  struct Case {
    SoundCoding coding;
    int rate, channels;
    int bytesPerSample;
    int frames;
  };
  const Case cases[] = {
      {SoundCoding::wav, 44100, 2, 2, 1000},      {SoundCoding::wav8Bit, 22050, 1, 1, 777},
      {SoundCoding::wav8Bit, 44100, 2, 1, 5},     {SoundCoding::wav24Bit, 48000, 2, 2, 100},
      {SoundCoding::wavFloat, 96000, 1, 2, 1},    {SoundCoding::flac, 44100, 1, 2, 5000},
      {SoundCoding::ogg, 44100, 2, 2, 20000},     {SoundCoding::ogg, 22050, 1, 2, 9001},
      {SoundCoding::mp3, 44100, 2, 2, 1152 * 20},
  };
  for (const Case& c : cases) {
    writeSoundFile("music", {.coding = c.coding, .rate = c.rate, .channels = c.channels, .frames = c.frames});
    SoundFile file = openSoundFile("music", 0, wholeFile);
    ASSERT_TRUE(file.decoder) << static_cast<int>(c.coding);
    EXPECT_EQ(file.rate, c.rate);
    EXPECT_EQ(file.channels, c.channels);
    EXPECT_EQ(file.bytesPerSample, c.bytesPerSample);
    EXPECT_EQ(file.frames, static_cast<std::uint32_t>(c.frames));
    EXPECT_EQ(decodeRest(file).size(), static_cast<std::size_t>(c.frames * c.channels * c.bytesPerSample));
  }
}

TEST(SoundFile, KeepsEverySampleOfLosslessMusic) {
  const TemporaryFolder folder;
  for (const SoundCoding coding : lossless) {
    writeSoundFile("music", {.coding = coding, .frames = 65536, .sample = scrambled});
    SoundFile file = openSoundFile("music", 0, wholeFile);
    ASSERT_TRUE(file.decoder);
    const Samples bytes = decodeRest(file);
    ASSERT_EQ(bytes.size(), 65536u * 4);
    for (int i = 0; i < 2 * 65536; ++i) {
      ASSERT_EQ(sampleAt(bytes, static_cast<std::size_t>(i)), std::lrint(scrambled(i / 2, i % 2) * 32768.0f));
    }
  }
}

TEST(SoundFile, ConvertsOtherWidths) {
  const TemporaryFolder folder;
  const float levels[] = {0.0f, 0.5f, -0.5f, -1.0f, 127.0f / 128.0f};
  const auto level = [&](int frame, int) { return levels[frame]; };
  writeSoundFile("eight", {.coding = SoundCoding::wav8Bit, .channels = 1, .frames = 5, .sample = level});
  SoundFile eight = openSoundFile("eight", 0, wholeFile);
  const int unsignedLevels[] = {128, 192, 64, 0, 255};
  const Samples bytes = decodeRest(eight);
  ASSERT_EQ(bytes.size(), 5u);
  for (std::size_t i = 0; i < 5; ++i) EXPECT_EQ(static_cast<int>(bytes[i]), unsignedLevels[i]);

  const float loud[] = {0.25f, 1.5f, -1.5f, 1.0f, -1.0f};
  writeSoundFile("float",
                 {.coding = SoundCoding::wavFloat, .channels = 1, .frames = 5, .sample = [&](int frame, int) {
                    return loud[frame];
                  }});
  SoundFile floats = openSoundFile("float", 0, wholeFile);
  const int limited[] = {8192, 32767, -32768, 32767, -32768};
  const Samples words = decodeRest(floats);
  ASSERT_EQ(words.size(), 10u);
  for (std::size_t i = 0; i < 5; ++i) EXPECT_EQ(sampleAt(words, i), limited[i]);
}

TEST(SoundFile, ReadsOutOfTheMiddleOfAnArchive) {
  const TemporaryFolder folder;
  for (const SoundCoding coding : everyCoding) {
    writeSoundFile("music", {.coding = coding, .frames = 30000, .sample = rising});
    writePakAround("vex.pak", "music");
    const auto size = static_cast<std::uint32_t>(readFile("music").size());
    SoundFile loose = openSoundFile("music", 0, wholeFile);
    SoundFile member = openSoundFile("vex.pak", soundMemberOffset, size);
    ASSERT_TRUE(loose.decoder && member.decoder) << static_cast<int>(coding);
    EXPECT_EQ(member.frames, loose.frames);
    const Samples bytes = decodeRest(loose);
    EXPECT_EQ(bytes.size(), loose.frames * 4);
    EXPECT_TRUE(decodeRest(member) == bytes) << static_cast<int>(coding);
  }
}

TEST(SoundFile, SeeksToTheFrame) {
  const TemporaryFolder folder;
  constexpr std::uint32_t frames = 44100 * 6;
  for (const SoundCoding coding : everyCoding) {
    writeSoundFile("music", {.coding = coding, .frames = frames, .sample = rising});
    SoundFile file = openSoundFile("music", 0, wholeFile);
    ASSERT_TRUE(file.decoder);
    const Samples reference = decodeRest(file);
    for (std::uint32_t frame = 1; frame < file.frames; frame += 4999) {
      ASSERT_TRUE(seekSound(file, frame)) << static_cast<int>(coding) << " at " << frame;
      Samples part(std::min<std::size_t>(1000, file.frames - frame) * 4);
      ASSERT_EQ(readSound(file, part), part.size());
      int worst = 0;
      for (std::size_t i = 0; i < part.size() / 2; ++i) {
        worst = std::max(worst, std::abs(sampleAt(part, i) - sampleAt(reference, frame * 2 + i)));
      }
      EXPECT_LE(worst, 1) << static_cast<int>(coding) << " at " << frame;
    }
    EXPECT_TRUE(seekSound(file, file.frames));
    EXPECT_EQ(decodeRest(file).size(), 0u);
    EXPECT_FALSE(seekSound(file, file.frames + 1));
    EXPECT_EQ(decodeRest(file).size(), 0u);
  }
}

TEST(SoundFile, RefusesWhatIsNoMusic) {
  const TemporaryFolder folder;
  writeFile("empty", "");
  writeFile("text", Bytes(100, 'a'));
  writeSoundFile("wav", {.frames = 100});
  writeSoundFile("silent", {.frames = 0});
  writeSoundFile("three", {.channels = 3, .frames = 100});
  writeSoundFile("slow", {.rate = 999, .frames = 100});
  writeSoundFile("fast", {.rate = 192001, .frames = 100});
  const auto size = static_cast<std::uint32_t>(readFile("wav").size());
  struct Case {
    const char* path;
    std::uint32_t offset, size;
  };
  for (const auto& [path, offset, bytes] :
       {Case{"nowhere", 0, wholeFile}, Case{"empty", 0, wholeFile}, Case{"text", 0, wholeFile},
        Case{".", 0, wholeFile}, Case{"silent", 0, wholeFile}, Case{"three", 0, wholeFile},
        Case{"slow", 0, wholeFile}, Case{"fast", 0, wholeFile}, Case{"wav", 0, 0}, Case{"wav", 0, 44},
        Case{"wav", 1, wholeFile}, Case{"wav", size, wholeFile}, Case{"wav", size + 1, wholeFile},
        Case{"wav", 0xffffffff, 0xffffffff}}) {
    EXPECT_FALSE(openSoundFile(path, offset, bytes).decoder) << path << " at " << offset << ", " << bytes;
  }
  EXPECT_TRUE(openSoundFile("wav", 0, size).decoder);
}

TEST(SoundFile, TakesNoMoreThanLyingHeadersHold) {
  const TemporaryFolder folder;
  writeSoundFile("music", {.frames = 1000});
  Bytes wav = readFile("music");
  put(wav, 4, 0xffffffff, 4);   // size of the RIFF chunk
  put(wav, 40, 0xffffffff, 4);  // size of the data chunk
  writeFile("music", wav);
  writePakAround("vex.pak", "music");
  SoundFile member = openSoundFile("vex.pak", soundMemberOffset, static_cast<std::uint32_t>(wav.size()));
  ASSERT_TRUE(member.decoder);
  EXPECT_EQ(decodeRest(member).size(), 4000u);

  writeSoundFile("music", {.coding = SoundCoding::flac, .frames = 1000});
  Bytes flac = readFile("music");
  for (std::size_t i = 22; i < 26; ++i) flac[i] = '\xff';  // low 32 bits of the total frames
  writeFile("music", flac);
  SoundFile file = openSoundFile("music", 0, wholeFile);
  ASSERT_TRUE(file.decoder);
  EXPECT_EQ(file.frames, 0xffffffffu / 4);  // the length is cut to 32 bits
  EXPECT_LE(decodeRest(file).size(), 4000u);
}

TEST(SoundFile, SurvivesDamage) {
  const TemporaryFolder folder;
  std::mt19937 random(1);
  testing::internal::CaptureStderr();  // the MP3 library complains at length
  const auto digest = [](const Bytes& bytes) {
    writeFile("damaged", bytes);
    SoundFile file = openSoundFile("damaged", 0, wholeFile);
    if (!file.decoder) return;
    decodeRest(file);
    if (seekSound(file, file.frames / 2)) decodeRest(file);
  };
  for (const SoundCoding coding : everyCoding) {
    writeSoundFile("music", {.coding = coding, .frames = 3000, .sample = rising});
    const Bytes whole = readFile("music");
    for (std::size_t size = 0; size < whole.size(); size += 1 + size / 50) {
      digest(whole.substr(0, size));
    }
    for (int round = 0; round < 150; ++round) {
      Bytes damaged = whole;
      // Headers are hit as often as all the rest.
      const std::size_t reach = round % 2 ? damaged.size() : std::min<std::size_t>(64, damaged.size());
      for (int hit = 0; hit < 4; ++hit) damaged[random() % reach] = static_cast<char>(random());
      digest(damaged);
    }
  }
  for (const char* tag : {"RIFF", "OggS", "fLaC", "ID3\4", "\xff\xfb\x90\x64"}) {
    for (int round = 0; round < 20; ++round) {
      Bytes noise(2000, '\0');
      for (char& b : noise) b = static_cast<char>(random());
      std::memcpy(noise.data(), tag, 4);
      digest(noise);
    }
  }
  testing::internal::GetCapturedStderr();
}

}  // namespace vex
