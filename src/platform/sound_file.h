#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include "platform/paths.h"

// Decoding of music: WAV, OGG, FLAC or MP3, as a file of its own or in the middle of another one.

namespace vex {

struct SoundDecoder;
struct CloseSound {
  void operator()(SoundDecoder* decoder) const;
};

struct SoundFile {
  int rate = 0;              // frames a second
  int channels = 0;          // 1 or 2
  int bytesPerSample = 0;    // 1: unsigned, as the file has it; 2: signed in the machine's byte order
  std::uint32_t frames = 0;  // as the file announces it, cut so that the decoded bytes count in 32 bits
  std::unique_ptr<SoundDecoder, CloseSound> decoder;

  int frameBytes() const { return bytesPerSample * channels; }
};

// The music in the `size` bytes from `offset` of the file at `path` (resolved as all loose files).
// Without a decoder: no such file, another format, damaged at the start, no sound in it, more than
// two channels, or a rate outside 1000 to 192000.
SoundFile openSoundFile(const char* path, std::uint32_t offset, std::uint32_t size);

// Decodes on into whole frames; the number of bytes written. Less than was asked for only at the end
// of the music or where it is damaged; 0 from then on.
std::size_t readSound(SoundFile& file, std::span<std::byte> bytes);

// Whether decoding now goes on at `frame`.
bool seekSound(SoundFile& file, std::uint32_t frame);

}  // namespace vex
