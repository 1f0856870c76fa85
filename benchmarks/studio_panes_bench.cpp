#include <FL/Fl.H>
#include <FL/Fl_Double_Window.H>
#include <FL/x.H>
#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "benchmarks/figure.h"
#include "benchmarks/show_text.h"
#include "studio/panes/look.h"
#include "studio/panes/time_line_pane.h"
#include "tests/support/x_server.h"

// What the studio's window costs beside the picture.

namespace vex {

namespace {

namespace fs = std::filesystem;

constexpr int paneWidth = 1920, paneHeight = 300;

// A time line with 999 parts, until the server has drawn it, in an X server of its own.
void drawTimeLine(benchmark::State& state) {
  // Ends with the process, which keeps its connection.
  static const XServer* const server = new XServer(paneWidth, paneHeight);
  benchmark::DoNotOptimize(server);
  const fs::path file = fs::temp_directory_path() / "vexbench-999.txt";
  std::ofstream(file) << textOf999Parts();
  studio::prepareLook();
  studio::Session session(file.string());
  Fl_Double_Window window(paneWidth, paneHeight);
  studio::TimeLinePane pane(session);
  window.end();
  pane.resize(0, 0, paneWidth, paneHeight);
  window.show();
  window.wait_for_expose();
  for (auto _ : state) {
    pane.redraw();
    Fl::flush();
    XSync(fl_display, False);
  }
  window.hide();
  fs::remove(file);
}
BENCHMARK(drawTimeLine)->Iterations(20)->Repetitions(3)->UseRealTime()->Unit(benchmark::kMillisecond);

const bool added =
    addFigure({.name = "studio_own_ms",
               .unit = "ms",
               .peer = "none; a time line of 999 parts at 1920 x 300, with the server's drawing",
               .limit = 16,
               .value = [](const Measurements& m) { return 1e3 * m.wall("drawTimeLine/iterations:20"); }});

}  // namespace

}  // namespace vex
