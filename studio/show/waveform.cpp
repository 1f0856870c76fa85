#include "studio/show/waveform.h"

#include <sys/stat.h>

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <span>
#include <thread>
#include <utility>

#include "base/files.h"
#include "platform/paths.h"
#include "platform/replace_file.h"
#include "platform/sound_file.h"
#include "platform/user_folder.h"
#include "studio/show/peak_cache.h"

namespace vex::studio {

namespace {

namespace fs = std::filesystem;

constexpr int peaksPerSecond = 100;
constexpr std::size_t readAtOnce = 1 << 16;        // bytes, whole frames of any music
constexpr std::uintmax_t largestCache = 64 << 20;  // bytes: nine hours

// What the worker is given, none of which belongs to the engine.
struct Task {
  std::string name;  // in messages
  FilePlace place;
  MusicStamp stamp;
  std::vector<std::string> caches;  // by preference
};

struct Result {
  Peaks peaks;
  std::string message;
  bool decoded = false;  // not from a cache
};

std::string cacheBeside(const std::string& path) {
  return hiddenName(path) + ".peaks";
}

// Musics of the same name lie in many folders.
std::string cacheOfUser(const std::string& path) {
  const std::string folder = userCacheFolder();
  if (folder.empty()) return {};
  std::error_code error;
  const std::size_t number = std::hash<std::string>{}(fs::absolute(path, error).native());
  return (fs::path(folder) / (fs::path(path).filename().native() + "." + std::to_string(number) + ".peaks"))
      .native();
}

Task taskOf(const std::string& name, const FilePlace& place) {
  Task task{.name = name, .place = place, .stamp = {}, .caches = {}};
  const std::string holder = resolvePath(place.path.c_str());
  struct stat status {};
  stat(holder.c_str(), &status);
  task.stamp.size = place.size == wholeFile ? static_cast<std::uint64_t>(status.st_size) : place.size;
  task.stamp.changed = std::int64_t{status.st_mtim.tv_sec} * 1'000'000'000 + status.st_mtim.tv_nsec;
  task.stamp.offset = place.offset;
  const std::string music = resolvePath(name.c_str());
  for (const std::string& cache : {cacheBeside(music), cacheOfUser(music)})
    if (!cache.empty()) task.caches.push_back(cache);
  return task;
}

std::optional<Peaks> readCache(const std::string& path, const MusicStamp& stamp) {
  std::error_code error;
  if (!fs::is_regular_file(path, error) || fs::file_size(path, error) > largestCache) return std::nullopt;
  std::ifstream file(path, std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(file), {}};
  return readPeaks(bytes, stamp);
}

// -127 to 127.
std::int8_t valueOf(const std::byte* sample, int bytesPerSample) {
  constexpr int widest = 127;
  int value = std::to_integer<int>(*sample) - 128;
  if (bytesPerSample == 2) {
    std::int16_t wide = 0;
    std::memcpy(&wide, sample, sizeof wide);
    value = wide / (32767 / widest);
  }
  return static_cast<std::int8_t>(std::clamp(value, -widest, widest));
}

class PeakMaker {
 public:
  explicit PeakMaker(const SoundFile& music)
      : bytesPerSample(static_cast<std::size_t>(music.bytesPerSample)),
        samplesPerPeak(static_cast<std::size_t>(std::max(1, music.rate / peaksPerSecond) * music.channels)) {}

  void add(std::span<const std::byte> samples, std::vector<Peak>& peaks) {
    for (std::size_t i = 0; i < samples.size(); i += bytesPerSample) {
      const std::int8_t value = valueOf(&samples[i], static_cast<int>(bytesPerSample));
      if (taken++ % samplesPerPeak == 0) peaks.push_back({value, value});
      peaks.back().low = std::min(peaks.back().low, value);
      peaks.back().high = std::max(peaks.back().high, value);
    }
  }

  double seconds(const SoundFile& music) const {
    return static_cast<double>(samplesPerPeak) / music.channels / music.rate;
  }

 private:
  std::size_t bytesPerSample, samplesPerPeak, taken = 0;
};

// Empty peaks where it was stopped.
Result readMusic(const Task& task, const std::stop_token& stop) {
  SoundFile music = openSoundFile(task.place.path.c_str(), task.place.offset, task.place.size);
  if (!music.decoder)
    return {.peaks = {}, .message = "Sound file " + task.name + " can't be read", .decoded = true};
  PeakMaker maker(music);
  Result result{.peaks = {.seconds = maker.seconds(music), .peaks = {}}, .message = {}, .decoded = true};
  std::vector<std::byte> samples(readAtOnce);
  double frames = 0;
  for (std::size_t got = readAtOnce; got == readAtOnce;) {
    if (stop.stop_requested()) return {};
    got = readSound(music, samples);
    maker.add(std::span(samples).first(got), result.peaks.peaks);
    frames += static_cast<double>(got) / music.frameBytes();
  }
  if (frames < music.frames) {
    char text[64];
    std::snprintf(text, sizeof text, " ends at %.2f s, %.2f s are announced", frames / music.rate,
                  static_cast<double>(music.frames) / music.rate);
    result.message = "Sound file " + task.name + text;
  }
  return result;
}

Result peaksOf(const Task& task, const std::stop_token& stop) {
  for (const std::string& cache : task.caches)
    if (auto peaks = readCache(cache, task.stamp)) return {.peaks = *std::move(peaks), .message = {}};
  return readMusic(task, stop);
}

// What is cut off may still be on its way here.
void writeCache(const Task& task, const Result& result) {
  if (!result.decoded || !result.message.empty()) return;
  const std::string bytes = peakBytes(result.peaks, task.stamp);
  for (const std::string& cache : task.caches)
    if (replaceFile(cache, bytes)) return;
}

}  // namespace

struct Waveform::State {
  Task task;
  Result result;  // the worker's until `done`
  std::atomic<bool> done = false;
  bool told = false;
  std::jthread worker;
};

Waveform::Waveform() : state(std::make_unique<State>()) {}
Waveform::~Waveform() = default;

void Waveform::read(const std::string& name) {
  state = std::make_unique<State>();
  State& s = *state;
  const auto place = name.empty() ? std::nullopt : findFile(name.c_str());
  if (!place) {
    if (!name.empty()) s.result.message = "Sound file " + name + " not found";
    s.done = true;
    return;
  }
  s.task = taskOf(name, *place);
  s.worker = std::jthread([&s](const std::stop_token& stop) {
    s.result = peaksOf(s.task, stop);
    s.done = true;
  });
}

const Peaks* Waveform::peaks() const {
  return state->done && !state->result.peaks.peaks.empty() ? &state->result.peaks : nullptr;
}

bool Waveform::fresh() {
  if (!peaks() || std::exchange(state->told, true)) return false;
  writeCache(state->task, state->result);
  return true;
}

std::string Waveform::message() const {
  return state->done ? state->result.message : std::string{};
}

}  // namespace vex::studio
