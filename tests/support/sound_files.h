#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

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

std::vector<std::byte> readWholeFile(const char* path);
void writeWholeFile(const char* path, const std::vector<std::byte>& bytes);

// An archive with the file at `path` as the member of that name, between two others.
void writePakAround(const char* pak, const char* path);

// An empty working folder for the life of the object.
struct WorkingFolder {
  WorkingFolder();
  ~WorkingFolder();
  WorkingFolder(const WorkingFolder&) = delete;
  WorkingFolder& operator=(const WorkingFolder&) = delete;

  std::string before;
  std::string path;
};

}  // namespace vex
