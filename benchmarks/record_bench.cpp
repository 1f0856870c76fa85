#include <benchmark/benchmark.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>

#include "benchmarks/figure.h"

// Recording half a minute of the staged presentation, against its two halves: drawing the frames, and
// encoding them.

namespace vex {

namespace {

namespace fs = std::filesystem;

constexpr const char* span = " --size 640x360 --fps 30 --to 30";

fs::path binFolder() {
  return fs::read_symlink("/proc/self/exe").parent_path();
}

double cpuOfChildren() {
  rusage usage;
  getrusage(RUSAGE_CHILDREN, &usage);
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
  };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

// Runs a shell command; false when it fails. Its CPU time, with that of its own children, and its wall
// time become counters.
void runCommand(benchmark::State& state, const std::string& command) {
  for (auto _ : state) {
    const double before = cpuOfChildren();
    if (std::system((command + " >/dev/null").c_str()) != 0) state.SkipWithError(command.c_str());
    state.counters["cpu"] = cpuOfChildren() - before;
  }
}

std::string recorder(const std::string& output) {
  return (binFolder() / "vexrecord").native() + " --dir " + (binFolder().parent_path() / "run").native() +
         span + output;
}

std::string temporary(const std::string& name) {
  return (fs::temp_directory_path() / ("vexbench." + std::to_string(getpid()) + name)).native();
}

void recordVideo(benchmark::State& state) {
  const std::string video = temporary(".mp4");
  runCommand(state, recorder(" --out " + video));
  fs::remove(video);
}
BENCHMARK(recordVideo)->Iterations(1)->Repetitions(1)->UseRealTime()->Unit(benchmark::kMillisecond);

// A trace makes every frame be drawn, but none be read back.
void renderOnly(benchmark::State& state) {
  const std::string trace = temporary(".tsv");
  runCommand(state, recorder(" --trace-calls " + trace));
  fs::remove(trace);
}
BENCHMARK(renderOnly)->Iterations(1)->Repetitions(1)->UseRealTime()->Unit(benchmark::kMillisecond);

// The same frames from a lossless file, decoded beforehand to raw ones, through the same encoder.
void encodeOnly(benchmark::State& state) {
  const std::string lossless = temporary(".mkv"), raw = temporary(".raw"), video = temporary(".encoded.mp4");
  const bool prepared =
      std::system((recorder(" --out " + lossless) + " >/dev/null").c_str()) == 0 &&
      std::system(("ffmpeg -v error -y -i " + lossless + " -an -pix_fmt bgra -f rawvideo " + raw).c_str()) ==
          0;
  if (!prepared) state.SkipWithError("no frames to encode");
  runCommand(state,
             "ffmpeg -v error -y -f rawvideo -pixel_format bgra -framerate 30 -video_size 640x360 -i " + raw +
                 " -i " + lossless +
                 " -map 0:v -map 1:a -vf vflip,scale=out_color_matrix=bt709:out_range=tv"
                 " -pix_fmt yuv420p -c:v libx264 -preset veryfast -crf 17 -threads 2 -c:a aac -b:a 256k " +
                 video);
  for (const std::string& file : {lossless, raw, video}) fs::remove(file);
}
BENCHMARK(encodeOnly)->Iterations(1)->Repetitions(1)->UseRealTime()->Unit(benchmark::kMillisecond);

const bool added = addFigure(
    {.name = "record_360p30_vs_parts",
     .unit = "ratio",
     .peer = "drawing alone, or (CPU of drawing + CPU of encoding) / cores, whichever is more",
     .limit = 1.25,
     .value = [](const Measurements& m) {
       const double cores = std::thread::hardware_concurrency();
       const double shared =
           (m.counter("renderOnly/iterations:1", "cpu") + m.counter("encodeOnly/iterations:1", "cpu")) /
           cores;
       return m.wall("recordVideo/iterations:1") / std::max(m.wall("renderOnly/iterations:1"), shared);
     }});

}  // namespace

}  // namespace vex
