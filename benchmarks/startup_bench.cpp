#include <GL/gl.h>
#include <benchmark/benchmark.h>
#include <malloc.h>
#include <turbojpeg.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/presentation.h"
#include "base/clock.h"
#include "base/files.h"
#include "base/pak_archive.h"
#include "base/window_size.h"
#include "benchmarks/figure.h"
#include "benchmarks/run_folder.h"
#include "models/model_loader.h"
#include "platform/offscreen_context.h"
#include "production/song/cues.h"
#include "textures/bmp.h"
#include "textures/gl_setup.h"
#include "textures/texture_cache.h"

// Start-up and frame rate of the staged presentation with the software renderer, and the size of its data.

namespace vex {

using namespace song;

namespace {

namespace fs = std::filesystem;

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start) {
  return std::chrono::duration<double>(Clock::now() - start).count();
}

// --- Start-up

// Memory that a repetition has touched stays with the process for the next one, on both sides, and the least
// of the repetitions counts: the program's own work, not the price of fresh pages, which is the system's, up
// to five times that work on a virtual machine, and met by any repetition whose blocks find the heap cut up.
void keepTouchedPages() {
  constexpr int allBlocks = std::numeric_limits<int>::max();
  mallopt(M_MMAP_THRESHOLD, allBlocks);
  mallopt(M_TRIM_THRESHOLD, allBlocks);
}

void startUp(benchmark::State& state) {
  keepTouchedPages();
  const RunFolder folder(state, 640, 360);
  if (!folder) return;
  for (auto _ : state) {
    std::optional<Presentation> presentation;
    presentation.emplace();
    presentation->load();
    presentation->begin();
    state.PauseTiming();
    presentation.reset();
    state.ResumeTiming();
  }
}
BENCHMARK(startUp)->Iterations(1)->Repetitions(5)->Unit(benchmark::kMillisecond);

std::vector<std::byte> readWhole(const std::string& name) {
  const int handle = fileOpen(name.c_str(), "rb");
  if (handle < 0) return {};
  std::vector<std::byte> bytes(fileRemaining(handle));
  if (!bytes.empty()) fileRead(bytes.data(), 1, bytes.size(), handle);
  fileClose(handle);
  return bytes;
}

// What start-up loads, by file.
struct LoadedFiles {
  std::vector<std::vector<std::byte>> jpegs;  // with their masks
  std::vector<std::string> bmps;
  std::vector<std::string> models;
  std::vector<Image> pixels;
};

LoadedFiles filesOfStartUp() {
  LoadedFiles files;
  Presentation presentation;
  presentation.load();
  for (int id = 0; id < textureCount(); ++id) {
    const TextureEntry& entry = textureEntry(id);
    if (entry.pixels.empty()) continue;
    const std::string stem = entry.name;
    std::vector<std::byte> jpeg = readWhole(stem + ".jpg"), mask = readWhole(stem + "_mask.jpg");
    if (jpeg.empty()) {
      files.bmps.push_back(stem + ".bmp");
    } else {
      files.jpegs.push_back(std::move(jpeg));
      if (!mask.empty()) files.jpegs.push_back(std::move(mask));
    }
    files.pixels.push_back(entry);
  }
  for (const PakMember& member : listPak("vex.pak"))
    if (const std::string_view name = member.name; name.ends_with(".hv3")) files.models.emplace_back(name);
  return files;
}

using Pixels = std::unique_ptr<unsigned char[]>;

Pixels decodeBare(const std::vector<std::byte>& jpeg) {
  static const tjhandle decoder = tjInitDecompress();
  int width = 0, height = 0, sampling = 0, colours = 0;
  const auto* bytes = reinterpret_cast<const unsigned char*>(jpeg.data());
  tjDecompressHeader3(decoder, bytes, jpeg.size(), &width, &height, &sampling, &colours);
  auto pixels = std::make_unique_for_overwrite<unsigned char[]>(static_cast<std::size_t>(width) *
                                                                static_cast<std::size_t>(height) * 4);
  tjDecompress2(decoder, bytes, jpeg.size(), pixels.get(), width, 0, height, TJPF_RGBA, TJFLAG_BOTTOMUP);
  return pixels;
}

// The parts that start-up cannot do without: decoding its JPEGs and nothing else into pixels that stay,
// reading its BMPs, handing its pixels to the GL, reading its models.
void startUpParts(benchmark::State& state) {
  keepTouchedPages();
  const RunFolder folder(state, 640, 360);
  if (!folder) return;
  const LoadedFiles files = filesOfStartUp();
  for (auto _ : state) {
    std::vector<Pixels> kept;
    for (const auto& jpeg : files.jpegs) kept.push_back(decodeBare(jpeg));
    for (const std::string& bmp : files.bmps) benchmark::DoNotOptimize(readBmpTexture(bmp.c_str()));
    GLuint name = 1;
    for (const Image& image : files.pixels) {
      glBindTexture(GL_TEXTURE_2D, name++);
      glTexImage2D(GL_TEXTURE_2D, 0, 4, image.width, image.height, 0, GL_RGBA, GL_UNSIGNED_BYTE,
                   image.pixels.data());
    }
    for (const std::string& model : files.models) {
      Scene scene;
      readModel({model}, &scene, [](const char*, bool) { return 0; });
    }
  }
}
BENCHMARK(startUpParts)->Iterations(1)->Repetitions(5)->Unit(benchmark::kMillisecond);

// --- Frame rate

// Every other second two neighbouring frames, the second of which counts: the first brings the GL up to date.
void drawShow(benchmark::State& state) {
  const RunFolder folder(state, 640, 360);
  if (!folder) return;
  for (auto _ : state) {
    Presentation presentation;
    presentation.load();
    presentation.begin();
    std::map<int, std::pair<double, int>> sections;  // seconds and frames by the bar of the section's cue
    double seconds = 0;
    int frames = 0;
    for (float time = presentation.timeLine().startTime; time < presentation.timeLine().totalTime;
         time += 2) {
      clockAdvanceTo(time);
      presentation.drawFrame();
      glFinish();
      clockAdvanceTo(time + 1.0f / 30);
      const auto start = Clock::now();
      presentation.drawFrame();
      glFinish();
      const double spent = secondsSince(start);
      int section = 0;
      for (const int bar : {prologueBar, boxBar, alienBar, interludeOneBar, laboratoryBar, interludeTwoBar,
                            hellBar, skullBar, waterBar, outroBar})
        if (bar >= 0 && cueSeconds(bar) <= double{time}) section = std::max(section, bar);
      sections[section].first += spent;
      ++sections[section].second;
      seconds += spent;
      ++frames;
    }
    double worst = std::numeric_limits<double>::max();
    for (const auto& [bar, spent] : sections) {
      const double rate = spent.second / spent.first;
      state.counters["bar " + std::to_string(bar)] = rate;
      worst = std::min(worst, rate);
    }
    state.counters["mean"] = frames / seconds;
    state.counters["worst"] = worst;
  }
}
BENCHMARK(drawShow)->Iterations(1)->Repetitions(1)->UseRealTime()->Unit(benchmark::kMillisecond);

// --- Size

void sizeOfData(benchmark::State& state) {
  const RunFolder folder(state, 16, 16);
  if (!folder) return;
  for (auto _ : state) {
    std::uint64_t bytes = 0;
    for (const PakMember& member : listPak("vex.pak"))
      if (!std::string_view(member.name).ends_with(".ogg")) bytes += member.size;
    state.counters["megabytes"] = 1e-6 * static_cast<double>(bytes);
  }
}
BENCHMARK(sizeOfData)->Iterations(1)->Repetitions(1);

constexpr const char* drawShowName = "drawShow/iterations:1";

const bool added =
    addFigure({.name = "startup_vs_decode",
               .unit = "ratio",
               .peer = "CPU of decoding the JPEGs alone, the BMPs, the uploads and the models",
               .limit = 1.3,
               .value =
                   [](const Measurements& m) {
                     return m.leastCpu("startUp/iterations:1") / m.leastCpu("startUpParts/iterations:1");
                   }}) &&
    addFigure({.name = "show_fps_360p",
               .unit = "fps",
               .peer = "none: the whole show, software renderer",
               .limit = {},
               .value = [](const Measurements& m) { return m.counter(drawShowName, "mean"); }}) &&
    addFigure({.name = "show_fps_360p_worst",
               .unit = "fps",
               .peer = "none: the slowest of its sections",
               .limit = {},
               .value = [](const Measurements& m) { return m.counter(drawShowName, "worst"); }}) &&
    addFigure(
        {.name = "data_megabytes",
         .unit = "MB",
         .peer = "the archive without the music",
         .limit = 24,
         .value = [](const Measurements& m) { return m.counter("sizeOfData/iterations:1", "megabytes"); }});

}  // namespace

}  // namespace vex
