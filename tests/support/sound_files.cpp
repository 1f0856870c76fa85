#include "tests/support/sound_files.h"

#include <gtest/gtest.h>
#include <sndfile.h>

#include <cmath>
#include <string>
#include <vector>

#include "tests/support/pak_builder.h"
#include "tests/support/temporary_folder.h"

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

void writePakAround(const char* pak, const char* path) {
  const std::string other(777, 'Z');
  writeFile(pak, pakBytes({{"before.raw", other}, {path, readFile(path)}, {"after.raw", other}}));
}

}  // namespace vex
