#include <GL/gl.h>
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "app/presentation.h"
#include "authoring/project_text.h"
#include "base/clock.h"
#include "base/files.h"
#include "base/pak_archive.h"
#include "benchmarks/figure.h"
#include "benchmarks/run_folder.h"
#include "benchmarks/sound_clock.h"
#include "platform/replace_file.h"
#include "platform/steady_clock.h"
#include "studio/session/session.h"
#include "studio/show/show.h"
#include "tests/support/left_behind.h"

// The running show of the studio on the staged presentation: jumps, a changed text, memory, and its clock.

namespace vex {

namespace {

namespace fs = std::filesystem;

constexpr int pictureWidth = 640, pictureHeight = 360;

Project projectOfFolder() {
  const OpenFile file(fileOpen("test.hvp", "rb"));
  return decodeProject(fileReadRest<std::string>(file), "test.hvp").project;
}

// Null, with the benchmark skipped, where it cannot be loaded.
std::unique_ptr<studio::Show> loadShow(benchmark::State& state, const Project& project) {
  auto show = std::make_unique<studio::Show>();
  show->setPicture(pictureWidth, pictureHeight);
  if (const studio::Trouble trouble = show->load(project, {})) {
    state.SkipWithError(trouble->c_str());
    return nullptr;
  }
  return show;
}

template <typename Work>
double millisecondsOf(Work work) {
  const double begin = steadySeconds();
  work();
  glFinish();
  return 1000 * (steadySeconds() - begin);
}

class RandomTimes {
 public:
  explicit RandomTimes(const Project& project) : anywhere(0, project.totalTime) {}
  double next() { return anywhere(chance); }

 private:
  std::mt19937 chance{14};
  std::uniform_real_distribution<double> anywhere;
};

// The frame that is drawn there once more is its own drawing. Before, all have been seen once: what the GL
// compiles and what textures are loaded then is the drawing's, too.
void seekStudio(benchmark::State& state) {
  const RunFolder folder(state, pictureWidth, pictureHeight);
  if (!folder) return;
  const Project project = projectOfFolder();
  const auto show = loadShow(state, project);
  if (!show) return;
  RandomTimes anywhere(project);
  constexpr int jumps = 60;
  std::vector<double> times;
  for (int i = 0; i < jumps; ++i) times.push_back(anywhere.next());
  const auto jump = [&](double time) {
    show->seek(time);
    show->drawFrame();
  };
  for (const double time : times) jump(time);
  for (auto _ : state) {
    double sum = 0, most = 0, run = 0;
    for (const double time : times) {
      const double whole = millisecondsOf([&] { jump(time); });
      show->seek(time);
      glFinish();
      const double own = millisecondsOf([&] { show->drawFrame(); });
      sum += whole - own;
      most = std::max(most, whole - own);
      show->setRunIn(2);
      run += millisecondsOf([&] { show->seek(time); });
      show->setRunIn(0);
    }
    state.counters["mean_ms"] = sum / jumps;
    state.counters["most_ms"] = most;
    state.counters["run_in_ms"] = run / jumps;
  }
}
BENCHMARK(seekStudio)->Iterations(1)->Repetitions(1)->Unit(benchmark::kMillisecond);

// The window's next frame, of sixty a second.
void awaitFrame() {
  constexpr double period = 1.0 / 60;
  const double now = steadySeconds(), next = (std::floor(now / period) + 1) * period;
  std::this_thread::sleep_for(std::chrono::duration<double>(next - now));
}

// From the saving of the text by another program to the first frame that shows it, as the window goes on.
void reloadStudio(benchmark::State& state) {
  const RunFolder folder(state, pictureWidth, pictureHeight);
  if (!folder) return;
  const Project project = projectOfFolder();
  const std::string path = "/tmp/vexbench." + std::to_string(getpid()) + ".txt";
  const std::string text = writeProjectText(project);
  std::ofstream(path) << text;
  studio::Session session(path);
  session.show().setPicture(pictureWidth, pictureHeight);
  session.open({});
  RandomTimes times(project);
  constexpr int texts = 30;
  for (auto _ : state) {
    double sum = 0, most = 0;
    for (int i = 0; i < texts; ++i) {
      session.seek(times.next());
      session.update();
      session.show().drawFrame();
      awaitFrame();
      const std::uint64_t before = session.document().revision();
      const double taken = millisecondsOf([&] {
        replaceFile(path, text + "# " + std::to_string(i) + "\n");
        while (session.document().revision() == before) {
          awaitFrame();
          session.update();
        }
        session.show().drawFrame();
      });
      sum += taken;
      most = std::max(most, taken);
    }
    state.counters["mean_ms"] = sum / texts;
    state.counters["most_ms"] = most;
  }
  fs::remove(path);
}
BENCHMARK(reloadStudio)->Iterations(1)->Repetitions(1)->Unit(benchmark::kMillisecond);

std::vector<std::string> filesOfShow() {
  std::vector<std::string> names;
  for (const PakMember& member : listPak("vex.pak"))
    if (!std::string_view(member.name).ends_with(".ogg")) names.emplace_back(member.name);
  return names;
}

// On the heap, where the software renderer keeps its textures, too.
void memoryOfStudio(benchmark::State& state) {
  const RunFolder folder(state, pictureWidth, pictureHeight);
  if (!folder) return;
  const Project project = projectOfFolder();
  constexpr float time = 60;
  const auto playerBytes = [&] {
    const std::size_t before = allocatedBytes();
    Presentation presentation;
    presentation.load();
    presentation.begin(time);
    clockAdvanceTo(time);
    presentation.drawFrame();
    glFinish();
    return static_cast<double>(allocatedBytes() - before);
  };
  playerBytes();  // what the driver keeps
  for (auto _ : state) {
    const double player = playerBytes();
    const std::size_t before = allocatedBytes();
    const auto show = loadShow(state, project);
    if (!show) return;
    const auto bytes = [&] {
      show->seek(time);
      show->drawFrame();
      glFinish();
      return static_cast<double>(allocatedBytes() - before);
    };
    const double studio = bytes();
    const std::vector<std::string> files = filesOfShow();
    for (int i = 0; i < 2; ++i) show->reload(files);
    const double twice = bytes();
    for (int i = 0; i < 50; ++i) show->reload(files);
    state.counters["megabytes"] = 1e-6 * studio;
    state.counters["ratio"] = studio / player;
    state.counters["growth"] = 100 * (bytes() / twice - 1);
  }
}
BENCHMARK(memoryOfStudio)->Iterations(1)->Repetitions(1)->Unit(benchmark::kMillisecond);

// Of an empty show with silent music.
void clockOfStudio(benchmark::State& state) {
  const RunFolder folder(state, pictureWidth, pictureHeight);
  if (!folder) return;
  setenv("ALSOFT_DRIVERS", "null", 1);
  const std::string path = "/tmp/vexbench." + std::to_string(getpid()) + ".wav";
  writeSilence(path.c_str());
  Project project;
  project.totalTime = 1000;
  project.music = path;
  const auto show = loadShow(state, project);
  if (!show) return;
  const LedClock clock{.open =
                           [&] {
                             show->pause();
                             show->seek(0);
                             show->drawFrame();
                           },
                       .start = [&] { return !show->play() && show->soundMessage().empty(); },
                       .frame =
                           [&] {
                             show->drawFrame();
                             return show->time();
                           }};
  for (auto _ : state) state.counters["mean_ms"] = meanClockError(state, clock);
  fs::remove(path);
}
BENCHMARK(clockOfStudio)->Iterations(1)->Repetitions(1)->Unit(benchmark::kMillisecond);

double counterOf(const Measurements& m, const char* benchmark, const char* name) {
  return m.counter(std::string(benchmark) + "/iterations:1", name);
}

const bool added =
    addFigure({.name = "studio_seek_ms",
               .unit = "ms",
               .peer = "mean of 60 random jumps to a drawn frame, beyond that frame's own drawing",
               .limit = 30,
               .value = [](const Measurements& m) { return counterOf(m, "seekStudio", "mean_ms"); }}) &&
    addFigure({.name = "studio_run_in_ms",
               .unit = "ms",
               .peer = "none: a jump with a run-in of 2 s",
               .limit = {},
               .value = [](const Measurements& m) { return counterOf(m, "seekStudio", "run_in_ms"); }}) &&
    addFigure({.name = "studio_reload_ms",
               .unit = "ms",
               .peer = "mean of 30 savings of the show's text by another program, each to the first frame "
                       "that shows it",
               .limit = 200,
               .value = [](const Measurements& m) { return counterOf(m, "reloadStudio", "mean_ms"); }}) &&
    addFigure({.name = "studio_memory_megabytes",
               .unit = "MB",
               .peer = "none: the running show, on the heap",
               .limit = {},
               .value = [](const Measurements& m) { return counterOf(m, "memoryOfStudio", "megabytes"); }}) &&
    addFigure({.name = "studio_memory_vs_player",
               .unit = "ratio",
               .peer = "the player at the same time",
               .limit = 1.3,
               .value = [](const Measurements& m) { return counterOf(m, "memoryOfStudio", "ratio"); }}) &&
    addFigure({.name = "studio_memory_growth_percent",
               .unit = "%",
               .peer = "before all files of the show were loaded again 50 times",
               .limit = 1,
               .value = [](const Measurements& m) { return counterOf(m, "memoryOfStudio", "growth"); }}) &&
    addFigure({.name = "studio_clock_error_ms",
               .unit = "ms",
               .peer = "what the silent device has consumed, mean over 20 s",
               .limit = 5.0,
               .value = [](const Measurements& m) { return counterOf(m, "clockOfStudio", "mean_ms"); }});

}  // namespace

}  // namespace vex
