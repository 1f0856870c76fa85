#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "timeline/project_record.h"

// The running show of the studio: the engine with a time line that may be exchanged and a time that may jump.

namespace vex::studio {

// Why something could not be done, as a sentence; none where it was done.
using Trouble = std::optional<std::string>;

struct Loop {
  double begin = 0;  // demo time, s
  double end = 0;
};

// The working folder is the run folder, and the GL context is current in every call and outlives it. What the
// engine calls fatal comes back as trouble. After it the picture is black until something mends it; all calls
// stay possible.
class Show {
 public:
  Show();
  ~Show();
  Show(const Show&) = delete;
  Show& operator=(const Show&) = delete;

  // Scenes, models, textures and music of the run folder, and the project's time line. At the project's start
  // time then. `progress` hears of each step (percent, what).
  Trouble load(const Project& project, const std::function<void(int, const char*)>& progress);

  // Another time line for the same data, at the same time. On trouble the time line before goes on.
  Trouble setProject(const Project& project);

  // Files of the run folder have changed, named as the file layer does ("data\\vex01.jpg"): loads anew what
  // came from them, and only that, and stands at the same time. On trouble what was loaded before stays.
  Trouble reload(std::span<const std::string> names);

  // Where it stands, demo time in seconds.
  double time() const;
  double totalTime() const;

  // As if it had started there: the same picture as a recording from that time on. With a run-in (s, 0 at
  // first) all that has a past, particles and water, is moved through that long before, undrawn. Times
  // outside the show are taken for its begin or end. Without a show there is trouble, but time() moves.
  Trouble seek(double time);
  void setRunIn(double seconds);
  double runIn() const;

  // Playing, led by the music where there is some, otherwise by the system's clock. From the end it begins at
  // the start again, or at the loop's. The loop leads from its end to its begin, as a jump without run-in, in
  // the very next frame; who starts behind it plays on. At the end of the show it stands at the last picture,
  // whatever wish to quit the show has.
  Trouble play();
  void pause();
  bool playing() const;
  void setLoop(std::optional<Loop> loop);
  std::optional<Loop> loop() const;

  // A seek while the cursor is dragged, without run-in and playing no more: a short grain of the music from
  // there is heard.
  Trouble scrub(double time);

  // Size of the picture in pixels. It begins at the lower left of the context's drawable, since the engine
  // sets viewports of its own from there: the picture needs a GL window to itself.
  void setPicture(int width, int height);

  // Clears the window, goes on in time when playing, and draws the frame there; a picture that stands is
  // shown again as it was. Once for every frame of the window.
  Trouble drawFrame();

  double framesPerSecond() const;  // drawn, over the last second while playing
  bool hasMusic() const;
  std::string musicName() const;     // as the project names it; empty without
  std::string soundMessage() const;  // why there is no sound; empty where there is
  double musicSeconds() const;       // 0 without

 private:
  struct State;
  std::unique_ptr<State> state;
};

}  // namespace vex::studio
