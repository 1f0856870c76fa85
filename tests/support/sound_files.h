#pragma once

#include <functional>

// Music files for tests, written by libsndfile.

namespace vex {

enum class SoundCoding { wav, wav8Bit, wav24Bit, wavFloat, ogg, flac, mp3 };

struct SoundRecipe {
  SoundCoding coding = SoundCoding::wav;
  int rate = 44100;
  int channels = 2;
  int frames = 0;
  std::function<float(int frame, int channel)> sample = nullptr;  // null: silence
};

void writeSoundFile(const char* path, const SoundRecipe& recipe);

// An archive with the file at `path` as the member of that name, behind 899 bytes and before others.
inline constexpr unsigned soundMemberOffset = 2 + 3 * 40 + 777;
void writePakAround(const char* pak, const char* path);

}  // namespace vex
