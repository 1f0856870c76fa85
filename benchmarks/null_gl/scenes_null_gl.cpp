// Plays the whole presentation of a run folder over a GL that does nothing, and prints for each scene that
// appears in it what its calls cost a frame: the name, then the mean and the 95th percentile in milliseconds
// of CPU time over the frames in which the scene is called.
//
//   scenes_null_gl RUNDIR

#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <numeric>
#include <unordered_map>
#include <vector>

#include "app/presentation.h"
#include "base/clock.h"
#include "base/files.h"
#include "base/window_size.h"

namespace vex {
namespace {

constexpr int framesPerSecond = 30;

double cpuMilliseconds() {
  timespec now;
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return 1e3 * static_cast<double>(now.tv_sec) + 1e-6 * static_cast<double>(now.tv_nsec);
}

const FunctionCall* announced = nullptr;
std::unordered_map<const FunctionCall*, SceneFunction*> functions;
std::map<const Scene*, double> frameCosts;

void announce(const Part&, const FunctionCall& call, float, const void* const*) {
  announced = &call;
}

// Stands in the place of every function of the time line.
void timeFunction(Scene* scene, float sceneTime, const void* const* arguments) {
  SceneFunction* const function = functions.at(announced);
  double& cost = frameCosts[scene];
  const double before = cpuMilliseconds();
  function(scene, sceneTime, arguments);
  cost += cpuMilliseconds() - before;
}

void timeAllFunctions(const PartDispatcher& timeLine) {
  for (const Part* part : timeLine.parts) {
    for (FunctionCall* call : part->calls) {
      functions[call] = call->function;
      call->function = timeFunction;
    }
  }
  callTrace() = announce;
}

void measure() {
  setWindowSize(1280, 720);
  Presentation presentation;
  presentation.load();
  presentation.begin();
  const PartDispatcher& timeLine = presentation.timeLine();
  timeAllFunctions(timeLine);
  std::map<const Scene*, std::vector<double>> costs;
  const float start = timeLine.startTime, end = timeLine.totalTime;
  for (int frame = 0; start + static_cast<float>(frame) / framesPerSecond < end; ++frame) {
    clockAdvanceTo(start + static_cast<float>(frame) / framesPerSecond);
    frameCosts.clear();
    presentation.drawFrame();
    for (const auto& [scene, cost] : frameCosts) costs[scene].push_back(cost);
  }
  for (auto& [scene, values] : costs) {
    std::sort(values.begin(), values.end());
    const double mean =
        std::accumulate(values.begin(), values.end(), 0.0) / static_cast<double>(values.size());
    std::printf("%s %g %g\n", scene->name, mean, values[values.size() * 95 / 100]);
  }
  callTrace() = {};
}

}  // namespace
}  // namespace vex

int main(int argc, char** argv) {
  if (argc != 2 || chdir(argv[1]) != 0) {
    std::fprintf(stderr, "Usage: scenes_null_gl RUNDIR\n");
    return 2;
  }
  vex::measure();
}
