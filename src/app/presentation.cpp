#include "app/presentation.h"

#include <array>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <system_error>
#include <vector>

#include "app/music.h"
#include "base/clock.h"
#include "base/files.h"
#include "base/options.h"
#include "base/report.h"
#include "models/model_loader.h"
#include "scenes/scene_tables.h"
#include "textures/preload_list.h"
#include "textures/stat_text.h"
#include "textures/texture_cache.h"

namespace vex {

namespace {

constexpr const char* projectName = "test.hvp";

std::unique_ptr<PartDispatcher> dispatcher;

// The glows take consecutive texture ids.
void loadGlows() {
  for (int i = 1; i <= 7; ++i) {
    char name[textureNameSize];
    std::snprintf(name, sizeof name, "data\\Light%d", i);
    loadTexture(name, false);
  }
}

// Frame rate over the last 20 frame intervals, worked out anew every 21 frames.
struct FrameStatistics {
  std::array<float, 21> times{};
  int index = 0;
  float averageFps = 0.0f;

  void add(float time) {
    ++index;
    times[static_cast<std::size_t>(index)] = time;
    if (index == 20) {
      averageFps = 20.0f / (times[20] - times[0]);
      index = -1;
    }
  }
};

FrameStatistics statistics;

void drawStatistics() {
  statistics.add(clockTime());
  drawText(0, 0, "fps: %.2f", 1.0f / clockDelta());
  drawText(0, 1, "avg: %.2f", statistics.averageFps);
  drawText(0, 2, "time: %.2f", clockTime());
}

}  // namespace

void openPresentation() {
  pakOpen("vex.pak");
  if (fileExists(projectName)) return;
  refuseUnreadable(projectName);
  if (pakFileName()[0] != '\0') fatalError("%s holds no %s", pakFileName(), projectName);
  std::error_code ignored;
  fatalError("no presentation in folder %s: neither vex.pak nor %s is there",
             std::filesystem::current_path(ignored).c_str(), projectName);
}

void loadPresentation(std::optional<float> start) {
  statistics = {};
  forgetMaterials();
  dispatcher = std::make_unique<PartDispatcher>();
  std::vector<Scene*> scenes;
  setLoadingSteps(static_cast<int>(sceneEntries().size()) + 2);  // the project, and what remains
  for (const SceneEntry& entry : sceneEntries()) scenes.push_back(entry.construct());
  for (Scene* scene : scenes) scene->prepare(options.useStripCache);
  for (Scene* scene : scenes) dispatcher->addScene(scene);
  dispatcher->openMusic = openMusic;
  dispatcher->loadProject(projectName);
  loadingProgress("Starting up");
  if (options.showStats) loadStatFont("data\\font.raw");
  loadGlows();
  preloadTextures();
  if (start) {
    dispatcher->startTime = *start;
    clockSetStartTime(*start);
  }
  dispatcher->startTimeline();
}

const PartDispatcher& presentation() {
  return *dispatcher;
}

void drawFrame() {
  dispatcher->runFrame(clockTime());
  if (options.showStats) drawStatistics();
}

void destroyPresentation() {
  fileCloseAll();
  dispatcher.reset();
  destroyTextures();
}

}  // namespace vex
