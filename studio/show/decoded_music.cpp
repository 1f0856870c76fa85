#include "studio/show/decoded_music.h"

#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <span>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "platform/sound_file.h"
#include "platform/user_folder.h"
#include "platform/wave_header.h"

namespace vex::studio {

namespace {

// In the user's cache folder, or where temporary files go. It ends with the last descriptor.
std::FILE* openUnnamed() {
  const std::string folder = userCacheFolder();
  const int descriptor =
      folder.empty() ? -1 : open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, S_IRUSR | S_IWUSR);
  return descriptor < 0 ? std::tmpfile() : fdopen(descriptor, "w+b");
}

}  // namespace

struct DecodedMusic::State {
  SoundFile music;
  double seconds = 0;
  std::FILE* file = nullptr;
  std::atomic<bool> ready = false;
  std::jthread worker;

  void decode(const std::stop_token& stop);
  bool write(std::string_view bytes) {
    return std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
  }
  bool writeHeader(std::uint32_t size) {
    return std::fseek(file, 0, SEEK_SET) == 0 &&
           write(waveHeader(music.rate, music.channels, music.bytesPerSample, size));
  }
};

void DecodedMusic::State::decode(const std::stop_token& stop) {
  std::vector<std::byte> samples(1 << 16);
  std::uint32_t size = 0;
  bool written = writeHeader(0);
  for (std::size_t got = samples.size(); written && got > 0 && !stop.stop_requested();
       size += static_cast<std::uint32_t>(got)) {
    got = readSound(music, samples);
    written = write({reinterpret_cast<const char*>(samples.data()), got});
  }
  ready = written && !stop.stop_requested() && size > 0 && writeHeader(size) && std::fflush(file) == 0;
}

DecodedMusic::DecodedMusic(const FilePlace& place) : state(std::make_unique<State>()) {
  State& s = *state;
  s.music = openSoundFile(place.path.c_str(), place.offset, place.size);
  if (!s.music.decoder) return;
  s.seconds = static_cast<double>(s.music.frames) / s.music.rate;
  s.file = openUnnamed();
  if (s.file) s.worker = std::jthread([&s](const std::stop_token& stop) { s.decode(stop); });
}

DecodedMusic::~DecodedMusic() {
  state->worker = {};  // asks it to stop, and waits
  if (state->file) std::fclose(state->file);
}

double DecodedMusic::seconds() const {
  return state->seconds;
}

bool DecodedMusic::ready() const {
  return state->ready;
}

FilePlace DecodedMusic::place() const {
  return {.path = "/proc/self/fd/" + std::to_string(fileno(state->file))};
}

}  // namespace vex::studio
