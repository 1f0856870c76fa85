#include <GL/gl.h>

#include <algorithm>
#include <filesystem>
#include <string>

#include "app/presentation.h"
#include "base/clock.h"
#include "base/window_size.h"
#include "benchmarks/endure/endure.h"
#include "platform/offscreen_context.h"
#include "tests/support/left_behind.h"
#include "tests/support/temporary_folder.h"
#include "textures/gl_setup.h"

namespace vex::endure {

namespace {

namespace fs = std::filesystem;

constexpr int width = 160, height = 90;  // the pictures are not looked at
constexpr float step = 0.5f;             // seconds of the show a frame
constexpr int leastRounds = 10;
constexpr int warmUp = 5;  // rounds in which the GL driver still takes memory

struct Held {
  double heap = 0;    // bytes
  double memory = 0;  // KiB
  double handles = 0, textures = 0;
};

Held measure() {
  const std::string status = readFile("/proc/self/status");
  return {static_cast<double>(allocatedBytes()), std::stod(status.substr(status.find("VmRSS:") + 6)),
          static_cast<double>(openDescriptors()), static_cast<double>(liveTextures())};
}

}  // namespace

bool endureLoops(const std::string& runFolder, double seconds) {
  Account account("loops");
  const fs::path before = fs::current_path();
  fs::current_path(runFolder);
  const std::string reason = openOffscreenContext(width, height);
  if (!reason.empty()) {
    account.fail("no OpenGL: " + reason);
    return false;
  }
  setUpGlState();
  setWindowSize(width, height);
  glViewport(0, 0, width, height);
  {
    Presentation show(Options{});
    show.load(Begins::often);
    const float start = show.timeLine().startTime;
    const float end = std::min(show.timeLine().totalTime, start + static_cast<float>(seconds / leastRounds));
    Held first, last;
    int rounds = 0, frames = 0;
    double shown = 0;
    const double begun = now();
    // At the same moment of every round: after it has begun.
    for (; shown < seconds || rounds < leastRounds; ++rounds) {
      show.begin();
      glFinish();
      last = measure();
      if (rounds == warmUp) first = last;
      for (float time = start; time < end; time += step, ++frames) {
        clockAdvanceTo(time);
        show.drawFrame();
        glFinish();  // as a frame that is shown
      }
      shown += double{end} - start;
    }
    const double took = now() - begun;
    account.figure(std::to_string(static_cast<int>(shown)) + " s of the show in " + std::to_string(rounds) +
                   " rounds of " + std::to_string(frames / rounds) + " frames, " +
                   std::to_string(static_cast<int>(took)) + " s of the clock");
    account.standsStill("heap", first.heap, last.heap, "bytes");
    account.standsStill("memory", first.memory, last.memory, "KiB");
    account.standsStill("handles", first.handles, last.handles, "");
    account.standsStill("textures", first.textures, last.textures, "");
  }
  closeOffscreenContext();
  fs::current_path(before);
  return account.clean();
}

}  // namespace vex::endure
