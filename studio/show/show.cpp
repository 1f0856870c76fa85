#include "studio/show/show.h"

#include <GL/gl.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "app/presentation.h"
#include "app/recorder.h"
#include "base/clock.h"
#include "base/current.h"
#include "base/report.h"
#include "base/window_size.h"
#include "engine/drawing.h"
#include "studio/show/standing_picture.h"
#include "textures/gl_setup.h"

namespace vex::studio {

namespace {

constexpr const char* projectTitle = "text";  // in "project text: part ..."
constexpr int runInFrames = 30;               // a second

// What the engine calls fatal, and memory that is not there.
template <typename Work>
Trouble attempt(Work work) {
  const FatalErrorsThrown thrown;
  try {
    work();
  } catch (const std::exception& error) {
    return error.what();
  }
  return std::nullopt;
}

// Hands the steps of loading on while it lives.
class ProgressTold {
 public:
  explicit ProgressTold(const std::function<void(int, const char*)>& to) {
    told = &to;
    setLoadingDialog({.show = [](int percent, const char* what) {
      if (*told) (*told)(percent, what);
    }});
  }
  ~ProgressTold() { setLoadingDialog({}); }
  ProgressTold(const ProgressTold&) = delete;
  ProgressTold& operator=(const ProgressTold&) = delete;

 private:
  static inline const std::function<void(int, const char*)>* told = nullptr;
};

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

// A scene function that was left in its middle may have left matrices behind.
void unwindMatrices() {
  const struct {
    GLenum mode, depth;
  } stacks[] = {{GL_PROJECTION, GL_PROJECTION_STACK_DEPTH}, {GL_MODELVIEW, GL_MODELVIEW_STACK_DEPTH}};
  for (const auto& [mode, depth] : stacks) {
    glMatrixMode(mode);
    GLint count = 1;
    for (glGetIntegerv(depth, &count); count > 1; --count) glPopMatrix();
    glLoadIdentity();
  }
}

void clearPicture() {
  glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);
}

}  // namespace

// What the next frame of the window shows.
enum class Next {
  black,    // nothing, after trouble and before anything is loaded
  sought,   // the frame at the time, the first since the jump there
  goingOn,  // the frame that the clock says, or while it stands the one before again
};

struct Show::State {
  std::unique_ptr<Presentation> presentation;
  Project project;
  Next next = Next::black;
  bool jumped = false;  // the last picture was the first after a jump
  double time = 0;
  double runIn = 0;
  int width = 0, height = 0;
  StandingPicture picture;

  float firstTime() const;
  float lastTime() const;
  void begin(double at);
  Trouble seek(double at);
  Trouble drawNext();
};

// No show is begun at its end, and none with music before 0.
float Show::State::firstTime() const {
  const PartDispatcher& timeLine = presentation->timeLine();
  return timeLine.musicName[0] == '\0' ? std::min(timeLine.startTime, 0.0f) : 0.0f;
}

float Show::State::lastTime() const {
  return std::nextafter(presentation->timeLine().totalTime, std::numeric_limits<float>::lowest());
}

// As at the start of a recording, with a run-in as behind one that began so much earlier.
void Show::State::begin(double at) {
  next = Next::black;
  picture.forget();
  time = at;
  unwindMatrices();
  glDisable(GL_SCISSOR_TEST);
  glViewport(0, 0, width, height);
  const auto target = static_cast<float>(at);
  const auto steps = static_cast<int>(std::min(runIn, at - double{firstTime()}) * runInFrames);
  const auto from = steps > 0 ? static_cast<float>(at - static_cast<double>(steps) / runInFrames) : target;
  {
    const Undrawn undrawn;
    presentation->begin(from);
    for (int frame = 0; frame < steps; ++frame) {
      clockAdvanceTo(frameTime(from, frame, runInFrames));
      presentation->drawFrame();
    }
  }
  next = Next::sought;
}

Trouble Show::State::seek(double at) {
  if (!presentation) return "no show is loaded";
  at = std::clamp(at, double{firstTime()}, double{std::max(firstTime(), lastTime())});
  return attempt([&] { begin(at); });
}

Trouble Show::State::drawNext() {
  clockAdvanceTo(static_cast<float>(time));
  const Trouble trouble = attempt([this] { presentation->drawFrame(); });
  if (!trouble) {
    next = Next::goingOn;
    return trouble;
  }
  next = Next::black;
  unwindMatrices();
  clearPicture();
  return trouble;
}

Show::Show() : state(std::make_unique<State>()) {}
Show::~Show() = default;

Trouble Show::load(const Project& project, const std::function<void(int, const char*)>& progress) {
  state->next = Next::black;
  state->presentation.reset();
  const ProgressTold told(progress);
  const Trouble trouble = attempt([&] {
    if (glExtensions.arraysLocked) glExtensions.glUnlockArraysEXT();  // by who drew here before
    setUpGlState();
    state->project = project;
    state->presentation =
        std::make_unique<Presentation>(Options{.soundEnabled = false}, project, projectTitle);
    state->presentation->load(Begins::often);
  });
  if (!trouble) return seek(double{state->presentation->timeLine().startTime});
  state->presentation.reset();
  return trouble;
}

Trouble Show::setProject(const Project& project) {
  if (!state->presentation) return "no show is loaded";
  if (Trouble refused = attempt([&] { state->presentation->setProject(project); })) return refused;
  if (Trouble trouble = seek(state->time)) {
    state->presentation->setProject(state->project);
    seek(state->time);
    return trouble;
  }
  state->project = project;
  return std::nullopt;
}

double Show::time() const {
  return state->time;
}

double Show::totalTime() const {
  return state->presentation ? double{state->presentation->timeLine().totalTime} : 0;
}

Trouble Show::seek(double time) {
  return state->seek(time);
}

void Show::setRunIn(double seconds) {
  state->runIn = std::max(0.0, seconds);
}

double Show::runIn() const {
  return state->runIn;
}

void Show::setPicture(int width, int height) {
  state->width = width;
  state->height = height;
  setWindowSize(width, height);
}

Trouble Show::drawFrame() {
  State& s = *state;
  glViewport(0, 0, s.width, s.height);
  clearPicture();
  if (s.next == Next::black) return std::nullopt;
  if (s.next == Next::goingOn) {
    if (s.picture.fits(s.width, s.height)) {
      s.picture.draw();
      return std::nullopt;
    }
    // What the jump showed is shown in the new size, too.
    if (s.jumped) {
      if (Trouble trouble = s.seek(s.time)) return trouble;
    }
  }
  s.jumped = s.next == Next::sought;
  if (Trouble trouble = s.drawNext()) return trouble;
  s.picture.keep(s.width, s.height);
  return std::nullopt;
}

}  // namespace vex::studio
