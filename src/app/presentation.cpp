#include "app/presentation.h"

#include <GL/gl.h>
#include <strings.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <memory>
#include <system_error>
#include <vector>

#include "app/music.h"
#include "base/clock.h"
#include "base/current.h"
#include "base/file_table.h"
#include "base/files.h"
#include "base/options.h"
#include "base/quit.h"
#include "base/random.h"
#include "base/report.h"
#include "engine/drawing.h"
#include "engine/glow_textures.h"
#include "engine/scene_state.h"
#include "models/model_load.h"
#include "scenes/scene_tables.h"
#include "textures/preload_list.h"
#include "textures/stat_text.h"
#include "textures/texture_cache.h"
#include "textures/texture_table.h"

namespace vex {

namespace {

constexpr const char* projectName = "test.hvp";

constexpr int runInFrames = 30;  // a second

// As long as it lives nothing is drawn: meshes and flares never reach the GL, which drops all else before it
// looks at a pixel.
class Undrawn {
 public:
  Undrawn() {
    glEnable(GL_SCISSOR_TEST);
    glScissor(0, 0, 0, 0);
  }
  ~Undrawn() { glDisable(GL_SCISSOR_TEST); }
  Undrawn(const Undrawn&) = delete;
  Undrawn& operator=(const Undrawn&) = delete;

 private:
  Owned<Drawing> drawing{true};
};

// The glows take consecutive texture ids.
void loadGlows() {
  for (int i = 1; i <= glowCount; ++i) loadTexture(glowTexture(i).data(), false);
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

using SceneOwner = std::unique_ptr<Scene, void (*)(Scene*)>;

// What the construction of a scene begins with.
struct SceneOrigin {
  RandomGenerator random = current<RandomGenerator>();
  ModelMaterials materials = current<ModelMaterials>();

  void restore() const {
    current<RandomGenerator>() = random;
    current<ModelMaterials>() = materials;
  }
};

// How all stands after loading.
struct Beginning {
  std::vector<SceneState> scenes;
  std::vector<bool> textureWraps;
  RandomGenerator random;
  float startTime;  // of the project
};

}  // namespace

struct Presentation::State {
  explicit State(const Options& asked) : options(asked) { pakOpen("vex.pak"); }

  Owned<Options> options;
  Owned<DemoClock> clock;
  Owned<LeadingSound> leadingSound;
  Owned<RandomGenerator> random;
  Owned<QuitWish> quitWish;
  Owned<FileTable> files;
  Owned<TextureTable> textures;
  Owned<ModelMaterials> materials;
  Owned<Music> music;
  FrameStatistics statistics;
  std::unique_ptr<PartDispatcher> dispatcher;
  std::optional<Beginning> beginning;
  std::vector<SceneOrigin> origins;
  std::string projectBytes;  // empty for that of the folder
  std::string projectTitle = projectName;

  void constructScenes();
  void loadProject();
  void reloadScene(int index);
  void keepBeginning();
  void restoreBeginning();
  void drawStatistics();
};

void Presentation::State::constructScenes() {
  std::vector<SceneOwner> scenes;
  for (const SceneEntry& entry : sceneEntries()) {
    origins.emplace_back();
    Scene* scene = entry.construct();
    scenes.emplace_back(scene, scene->destroy);
  }
  for (const SceneOwner& scene : scenes) scene->prepare(vex::options().useStripCache);
  for (SceneOwner& scene : scenes) dispatcher->addScene(scene.release());
}

void Presentation::State::reloadScene(int index) {
  struct Now : SceneOrigin {
    ~Now() { restore(); }
  } const now;
  const auto place = static_cast<std::size_t>(index);
  origins[place].restore();
  Scene* constructed = sceneEntries()[place].construct();
  SceneOwner scene(constructed, constructed->destroy);
  scene->prepare(vex::options().useStripCache);
  beginning->scenes[place] = SceneState(*scene);
  dispatcher->replaceScene(index, scene.release());
}

void Presentation::State::loadProject() {
  if (projectBytes.empty()) return dispatcher->loadProject(projectName);
  loadingProgress("Loading project");
  MemorySource source(projectBytes);
  dispatcher->readProject(source, projectTitle.c_str());
}

void Presentation::State::keepBeginning() {
  beginning = {.scenes = {},
               .textureWraps = vex::textureWraps(),
               .random = current<RandomGenerator>(),
               .startTime = dispatcher->startTime};
  for (int i = 0; i < dispatcher->sceneCount; ++i) beginning->scenes.emplace_back(*dispatcher->scenes[i]);
}

void Presentation::State::restoreBeginning() {
  current<RandomGenerator>() = beginning->random;
  current<QuitWish>() = {};
  demoClock() = {};
  clockSetStartTime(beginning->startTime);
  statistics = {};
  dispatcher->startTime = beginning->startTime;
  dispatcher->cursor = 0;
  restoreTextures(beginning->textureWraps);
  int i = 0;
  for (const SceneState& scene : beginning->scenes) scene.restore(*dispatcher->scenes[i++]);
  glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);
}

void Presentation::State::drawStatistics() {
  statistics.add(clockTime());
  drawText(0, 0, "fps: %.2f", 1.0f / clockDelta());
  drawText(0, 1, "avg: %.2f", statistics.averageFps);
  drawText(0, 2, "time: %.2f", clockTime());
}

Presentation::Presentation(const Options& asked) : state(std::make_unique<State>(asked)) {
  if (fileExists(projectName)) return;
  refuseUnreadable(projectName);
  if (pakFileName()[0] != '\0') fatalError("%s holds no %s", pakFileName(), projectName);
  std::error_code ignored;
  fatalError("no presentation in folder %s: neither vex.pak nor %s is there",
             std::filesystem::current_path(ignored).c_str(), projectName);
}

Presentation::Presentation(const Options& asked, const Project& project, const std::string& name)
    : state(std::make_unique<State>(asked)) {
  state->projectBytes = encodeProject(project);
  state->projectTitle = name;
}

Presentation::~Presentation() {
  shutDownMusic();
  fileCloseAll();
  state->dispatcher.reset();
  destroyTextures();
}

void Presentation::load(Begins begins) {
  PartDispatcher& dispatcher = *(state->dispatcher = std::make_unique<PartDispatcher>());
  setLoadingSteps(static_cast<int>(sceneEntries().size()) + 2);  // the project, and what remains
  state->constructScenes();
  dispatcher.openMusic = openMusic;
  state->loadProject();
  loadingProgress("Starting up");
  if (options().showStats) loadStatFont("data\\font.raw");
  loadGlows();
  preloadTextures();
  if (begins == Begins::often) state->keepBeginning();
}

void Presentation::begin(std::optional<float> start) {
  if (state->beginning) state->restoreBeginning();
  PartDispatcher& dispatcher = *state->dispatcher;
  if (start) {
    dispatcher.startTime = *start;
    clockSetStartTime(*start);
  }
  dispatcher.startTimeline();
}

void Presentation::begin(float start, double past) {
  PartDispatcher& dispatcher = *state->dispatcher;
  const double before = std::min(past, double{start} - double{firstTime()});
  const int steps = start < dispatcher.totalTime ? static_cast<int>(before * runInFrames) : 0;
  const Undrawn undrawn;
  if (steps <= 0) return begin(start);
  const auto from = static_cast<float>(double{start} - static_cast<double>(steps) / runInFrames);
  begin(from);
  for (int frame = 0; frame < steps; ++frame) {
    clockAdvanceTo(static_cast<float>(double{from} + static_cast<double>(frame) / runInFrames));
    drawFrame();
  }
  dispatcher.startTime = start;
  clockSetStartTime(start);
}

float Presentation::firstTime() const {
  const bool hasMusic = state->dispatcher->musicName[0] != '\0';
  const float start = state->beginning ? state->beginning->startTime : state->dispatcher->startTime;
  return hasMusic ? 0.0f : std::min(start, 0.0f);
}

void Presentation::setProject(const Project& project) {
  const std::string bytes = encodeProject(project);
  MemorySource source(bytes);
  state->dispatcher->replaceProject(source, state->projectTitle.c_str());
  state->beginning->startTime = state->dispatcher->startTime;
}

bool Presentation::reloadModel(const std::string& model) {
  bool found = false;
  int index = 0;
  for (const SceneEntry& entry : sceneEntries()) {
    if (entry.model && strcasecmp(entry.model, model.c_str()) == 0) {
      state->reloadScene(index);
      found = true;
    }
    ++index;
  }
  return found;
}

void Presentation::drawFrame() {
  state->dispatcher->runFrame(clockTime());
  if (options().showStats) state->drawStatistics();
}

const PartDispatcher& Presentation::timeLine() const {
  return *state->dispatcher;
}

}  // namespace vex
