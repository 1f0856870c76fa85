#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

// Streamed playback of one music file, as a record of calls so that another library (or a test's
// stand-in) can take the place of the one behind it. Positions and lengths count bytes of the
// decoded stream.

namespace vex {

using SoundStream = std::uint32_t;  // 0 is none

inline constexpr int soundFlag8Bit = 1;
inline constexpr int soundFlagMono = 2;

enum class SoundState { playing, ended, lost };

// A short piece of decoded sound: 8 bits unsigned or 16 bits in the machine's byte order.
struct SoundPiece {
  int rate = 0;
  int channels = 0;
  int bytesPerSample = 0;
  std::span<const std::byte> samples;
};

struct SoundLibrary {
  bool (*init)();   // opens the default device
  bool (*start)();  // turns its output on
  // From `size` bytes at `offset` of the file at `path`; 0 on failure.
  SoundStream (*createStream)(const char* path, std::uint32_t offset, std::uint32_t size);
  bool (*attributes)(SoundStream stream, int& rate);
  int (*flags)(SoundStream stream);  // soundFlag bits, -1 on failure
  std::uint32_t (*length)(SoundStream stream);
  void (*setPosition)(SoundStream stream, std::uint32_t bytes);  // before play
  bool (*play)(SoundStream stream);
  // Position of the sample that is heard now; never steps backwards. Also refills the queue, so it
  // is to be called in every frame. Once the stream has ended or the device is lost it goes on with
  // the steady clock, beyond the length too.
  std::uint32_t (*position)(SoundStream stream);
  SoundState (*state)(SoundStream stream);
  void (*stop)();
  void (*freeStream)(SoundStream stream);
  void (*free)();
  // Sounds beside the stream, in the place of the piece before. Once the output is on.
  void (*playPiece)(const SoundPiece& piece) = nullptr;
};

// OpenAL for output, openSoundFile for decoding. Holds one stream at a time and starts no thread of
// its own. Without a sound device init, start and createStream fail.
extern const SoundLibrary openAlLibrary;

// Follows `heard`, a position that moves in steps, smoothly: goes on for `seconds` at `rate` and
// mends the error gradually, within about a second. All in frames.
double followPosition(double position, double heard, double seconds, double rate);

}  // namespace vex
