#include "studio/show/show.h"

#include <GL/gl.h>

#include <algorithm>
#include <cmath>
#include <deque>
#include <limits>
#include <utility>

#include "app/presentation.h"
#include "base/clock.h"
#include "base/report.h"
#include "base/window_size.h"
#include "platform/steady_clock.h"
#include "studio/show/messages_caught.h"
#include "studio/show/show_music.h"
#include "studio/show/standing_picture.h"
#include "textures/gl_setup.h"
#include "textures/texture_cache.h"
#include "textures/texture_table.h"

namespace vex::studio {

namespace {

constexpr const char* projectTitle = "text";  // in "project text: part ..."

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

// What a file was: whether the picture changes where it is.
enum class Reloaded { texture, other };

// Backslashes, and small letters.
std::string inFileLayer(std::string name) {
  for (char& c : name) c = c == '/' ? '\\' : lowerCase(c);
  return name;
}

enum class Sound { fromThere, goesOn };  // when the time jumps

// Frames of the last second.
class FrameRate {
 public:
  void add() {
    times.push_back(steadySeconds());
    while (times.back() - times.front() > 1) times.pop_front();
  }
  double perSecond() const {
    if (times.size() < 2) return 0;
    return static_cast<double>(times.size() - 1) / (times.back() - times.front());
  }

 private:
  std::deque<double> times;
};

struct Show::State {
  std::unique_ptr<Presentation> presentation;
  Project project;
  Next next = Next::black;
  bool jumped = false;  // the last picture was the first after a jump
  bool playing = false;
  double time = 0;
  double runIn = 0;
  std::optional<Loop> loop;
  int width = 0, height = 0;
  StandingPicture picture;
  FrameRate rate;
  ShowMusic music;

  float lastTime() const;
  float reachable(double at) const;
  void begin(float at, double past);
  void startClock(Sound sound);
  void stop();
  Trouble seek(double at, double past, Sound sound = Sound::fromThere);
  Reloaded reload(const std::string& name);
  Trouble goOn();
  Trouble drawNext();
};

// No show is begun at its end.
float Show::State::lastTime() const {
  return std::nextafter(presentation->timeLine().totalTime, std::numeric_limits<float>::lowest());
}

float Show::State::reachable(double at) const {
  const float first = presentation->firstTime();
  return std::clamp(static_cast<float>(at), first, std::max(first, lastTime()));
}

// As at the start of a recording; with a `past` (s) as behind one that began so much earlier.
void Show::State::begin(float at, double past) {
  next = Next::black;
  picture.forget();
  time = double{at};
  unwindMatrices();
  glDisable(GL_SCISSOR_TEST);
  glViewport(0, 0, width, height);
  presentation->begin(at, past);
  next = Next::sought;
}

void Show::State::startClock(Sound sound) {
  const auto at = static_cast<float>(time);
  if (sound == Sound::fromThere) {
    music.playFrom(at);
  } else {
    music.leadAgain(at);
  }
}

void Show::State::stop() {
  if (playing) music.silence();
  playing = false;
}

// Goes on playing from there when it plays.
Trouble Show::State::seek(double at, double past, Sound sound) {
  if (!presentation) {
    time = std::max(0.0, at);
    return "no show is loaded";
  }
  const Trouble trouble = attempt([&] { begin(reachable(at), past); });
  if (trouble) {
    stop();
  } else if (playing) {
    startClock(sound);
  }
  return trouble;
}

// What came from the file of that name; all that parts read as they are called, they read after a jump.
Reloaded Show::State::reload(const std::string& name) {
  const std::size_t dot = name.rfind('.');
  const std::string stem = name.substr(0, dot), extension = dot == name.npos ? "" : name.substr(dot);
  if (extension == ".jpg" || extension == ".bmp") {
    constexpr std::string_view mask = "_mask";
    const bool isMask = stem.ends_with(mask);
    const bool known = reloadTextures(isMask ? stem.substr(0, stem.size() - mask.size()) : stem);
    return known || isMask ? Reloaded::texture : Reloaded::other;
  }
  if (extension == ".ase" || extension == ".hv3") presentation->reloadModel(stem);
  if (!name.empty() && name == inFileLayer(music.name())) {
    music.reopen();
    if (playing) startClock(Sound::fromThere);
  }
  return Reloaded::other;
}

// Playing, up to what the clock says now; the end of the loop leads back, that of the show stays.
Trouble Show::State::goOn() {
  const double before = time;
  clockTick();
  // The first frame after a start holds the clock back.
  const double now = std::max(double{clockTime()}, before);
  const double last = double{lastTime()};
  if (loop && before < std::min(loop->end, last) && now >= std::min(loop->end, last)) {
    if (Trouble trouble = attempt([&] { begin(reachable(loop->begin), 0); })) {
      stop();
      return trouble;
    }
    startClock(Sound::fromThere);
  } else {
    time = std::min(now, last);
    if (now >= last) stop();
    demoClock().time = static_cast<float>(time);
  }
  return std::nullopt;
}

// The frame at `time`, for which the clock has been moved already when it goes on.
Trouble Show::State::drawNext() {
  const Trouble trouble = attempt([this] { presentation->drawFrame(); });
  if (!trouble) {
    next = Next::goingOn;
    return trouble;
  }
  stop();
  next = Next::black;
  unwindMatrices();
  clearPicture();
  return trouble;
}

Show::Show() : state(std::make_unique<State>()) {}
Show::~Show() = default;

Trouble Show::load(const Project& project, const std::function<void(int, const char*)>& progress) {
  State& s = *state;
  s.stop();
  s.next = Next::black;
  s.music = {};
  s.presentation.reset();
  const ProgressTold told(progress);
  const Trouble trouble = attempt([&] {
    if (glExtensions.arraysLocked) glExtensions.glUnlockArraysEXT();  // by who drew here before
    setUpGlState();
    s.project = project;
    s.presentation = std::make_unique<Presentation>(Options{}, project, projectTitle);
    s.presentation->load(Begins::often);
    s.music.open(s.presentation->timeLine().musicName);
  });
  if (!trouble) return seek(project.startTime);
  s.presentation.reset();
  return trouble;
}

Trouble Show::setProject(const Project& project) {
  State& s = *state;
  if (!s.presentation) return "no show is loaded";
  if (Trouble refused = attempt([&] { s.presentation->setProject(project); })) return refused;
  const Project before = std::exchange(s.project, project);
  const bool wasPlaying = s.playing;
  const double at = s.time;
  if (Trouble trouble = s.seek(at, s.runIn, Sound::goesOn)) {
    s.project = before;
    attempt([&] { s.presentation->setProject(before); });
    if (!seek(at) && wasPlaying) play();
    return trouble;
  }
  if (const char* name = s.presentation->timeLine().musicName; s.music.name() != name) {
    s.music.open(name);
    if (s.playing) s.startClock(Sound::fromThere);
  }
  return std::nullopt;
}

Trouble Show::reload(std::span<const std::string> names) {
  State& s = *state;
  if (!s.presentation) return "no show is loaded";
  Trouble first;
  bool onlyTextures = s.next != Next::black;
  for (const std::string& name : names) {
    const MessagesCaught messages;
    const Trouble trouble =
        attempt([&] { onlyTextures &= s.reload(inFileLayer(name)) == Reloaded::texture; });
    if (!first) first = trouble;
    if (!first && !messages.first().empty()) first = messages.first();
  }
  if (onlyTextures) {
    s.picture.forget();
  } else if (Trouble trouble = s.seek(s.time, s.runIn, Sound::goesOn); trouble && !first) {
    first = trouble;
  }
  return first;
}

double Show::time() const {
  return state->time;
}

double Show::totalTime() const {
  return state->presentation ? double{state->presentation->timeLine().totalTime} : 0;
}

Trouble Show::seek(double time) {
  return state->seek(time, state->runIn);
}

void Show::setRunIn(double seconds) {
  state->runIn = std::max(0.0, seconds);
}

double Show::runIn() const {
  return state->runIn;
}

Trouble Show::play() {
  State& s = *state;
  if (!s.presentation) return "no show is loaded";
  if (s.playing) return std::nullopt;
  if (s.next == Next::black || s.time >= double{s.lastTime()}) {
    const bool atEnd = s.time >= double{s.lastTime()};
    const double begin = s.loop ? s.loop->begin : s.project.startTime;
    if (Trouble trouble = s.seek(atEnd ? begin : s.time, s.runIn)) return trouble;
  }
  s.picture.forget();
  s.rate = {};
  s.playing = true;
  s.startClock(Sound::fromThere);
  return std::nullopt;
}

void Show::pause() {
  state->stop();
}

bool Show::playing() const {
  return state->playing;
}

void Show::setLoop(std::optional<Loop> loop) {
  const bool usable = loop && loop->end > loop->begin;
  state->loop = usable ? loop : std::nullopt;
}

std::optional<Loop> Show::loop() const {
  return state->loop;
}

Trouble Show::scrub(double time) {
  state->stop();
  if (Trouble trouble = state->seek(time, 0)) return trouble;
  state->music.scrub(state->time);
  return std::nullopt;
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
  if (s.next == Next::goingOn && !s.playing && s.picture.fits(s.width, s.height)) {
    s.picture.draw();
    return std::nullopt;
  }
  Trouble trouble;
  const bool ticks = s.next == Next::goingOn && s.playing;
  if (ticks) {
    s.jumped = false;
    trouble = s.goOn();
  } else if (s.next == Next::goingOn && s.jumped) {
    trouble = s.seek(s.time, s.runIn);  // what the jump showed is shown in another size, too
  }
  if (trouble) return trouble;
  if (s.next == Next::sought) s.jumped = true;
  if (s.next == Next::sought || !ticks) clockAdvanceTo(static_cast<float>(s.time));
  trouble = s.drawNext();
  if (trouble) return trouble;
  if (s.playing) {
    s.rate.add();
  } else {
    s.picture.keep(s.width, s.height);
  }
  return std::nullopt;
}

double Show::framesPerSecond() const {
  return state->playing ? state->rate.perSecond() : 0;
}

bool Show::hasMusic() const {
  return state->music.seconds() > 0;
}

std::string Show::musicName() const {
  return state->music.name();
}

std::string Show::soundMessage() const {
  return state->music.message();
}

double Show::musicSeconds() const {
  return state->music.seconds();
}

}  // namespace vex::studio
