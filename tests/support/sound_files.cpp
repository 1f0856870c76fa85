#include "tests/support/sound_files.h"

#include <gtest/gtest.h>
#include <sndfile.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>

namespace vex {

namespace {

int formatOf(SoundCoding coding) {
  switch (coding) {
    case SoundCoding::wav:
      return SF_FORMAT_WAV | SF_FORMAT_PCM_16;
    case SoundCoding::wav8Bit:
      return SF_FORMAT_WAV | SF_FORMAT_PCM_U8;
    case SoundCoding::wav24Bit:
      return SF_FORMAT_WAV | SF_FORMAT_PCM_24;
    case SoundCoding::wavFloat:
      return SF_FORMAT_WAV | SF_FORMAT_FLOAT;
    case SoundCoding::ogg:
      return SF_FORMAT_OGG | SF_FORMAT_VORBIS;
    case SoundCoding::flac:
      return SF_FORMAT_FLAC | SF_FORMAT_PCM_16;
    case SoundCoding::mp3:
      return SF_FORMAT_MPEG | SF_FORMAT_MPEG_LAYER_III;
  }
  return 0;
}

void append(std::vector<std::byte>& bytes, std::uint32_t value, int count) {
  for (int i = 0; i < count; ++i) bytes.push_back(static_cast<std::byte>(value >> 8 * i));
}

}  // namespace

void writeSoundFile(const char* path, const SoundRecipe& recipe) {
  SF_INFO info{};
  info.samplerate = recipe.rate;
  info.channels = recipe.channels;
  info.format = formatOf(recipe.coding);
  SNDFILE* file = sf_open(path, SFM_WRITE, &info);
  ASSERT_TRUE(file) << path << ": " << sf_strerror(nullptr);
  std::vector<float> samples;
  for (int frame = 0; frame < recipe.frames; ++frame) {
    for (int channel = 0; channel < recipe.channels; ++channel) {
      samples.push_back(recipe.sample ? recipe.sample(frame, channel) : 0.0f);
    }
  }
  if (recipe.coding == SoundCoding::wavFloat) {
    EXPECT_EQ(sf_writef_float(file, samples.data(), recipe.frames), recipe.frames);
  } else {
    // The library would scale floats by 32767.
    std::vector<short> words;
    for (const float sample : samples) words.push_back(static_cast<short>(std::lrint(sample * 32768.0f)));
    EXPECT_EQ(sf_writef_short(file, words.data(), recipe.frames), recipe.frames);
  }
  sf_close(file);
}

std::vector<std::byte> readWholeFile(const char* path) {
  std::ifstream stream(path, std::ios::binary);
  std::vector<std::byte> bytes(std::filesystem::file_size(path));
  stream.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  return bytes;
}

void writeWholeFile(const char* path, const std::vector<std::byte>& bytes) {
  std::ofstream stream(path, std::ios::binary);
  stream.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

void writePakAround(const char* pak, const char* path) {
  const std::vector<std::byte> other(777, std::byte{0x5a});
  const std::vector<std::byte> music = readWholeFile(path);
  std::vector<std::byte> archive;
  append(archive, 3, 2);
  std::uint32_t offset = 2 + 3 * 40;
  for (const auto& [name, size] :
       {std::pair{"before.raw", other.size()}, {path, music.size()}, {"after.raw", other.size()}}) {
    char field[32] = "";
    std::strncpy(field, name, sizeof field - 1);
    for (const char c : field) archive.push_back(static_cast<std::byte>(c));
    append(archive, offset, 4);
    append(archive, static_cast<std::uint32_t>(size), 4);
    offset += static_cast<std::uint32_t>(size);
  }
  for (const auto* member : {&other, &music, &other})
    archive.insert(archive.end(), member->begin(), member->end());
  writeWholeFile(pak, archive);
}

WorkingFolder::WorkingFolder() : before(std::filesystem::current_path()) {
  path = std::filesystem::temp_directory_path() / "vextestXXXXXX";
  if (!mkdtemp(path.data())) ADD_FAILURE() << "no temporary folder";
  std::filesystem::current_path(path);
}

WorkingFolder::~WorkingFolder() {
  std::filesystem::current_path(before);
  std::filesystem::remove_all(path);
}

}  // namespace vex
