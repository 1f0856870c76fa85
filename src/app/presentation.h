#pragma once

#include <memory>
#include <optional>
#include <string>

#include "base/options.h"
#include "timeline/part_dispatcher.h"
#include "timeline/project_record.h"

namespace vex {

enum class Begins {
  once,
  often,  // keeps how all stands after loading: some 30 MB for our own show
};

// A running presentation, from its data to the picture of one frame: what the player and the recorder share.
// It owns the state of all that it runs on: clock, generator of chance, wish to quit, options, archive and
// open files, textures, scenes and time line, music, statistics. While it lives it is the one that
// clockTime() and its like speak of; when it goes, nothing of it is left. Whoever makes it brings the GL
// context, which must outlive it and is to be used by one show at a time.
class Presentation {
 public:
  // Opens the archive of the working folder, "vex.pak", and makes sure that there is a project to show:
  // otherwise the first file that a scene misses would be all that is said.
  // Fatal: "vex.pak holds no test.hvp", "no presentation in folder %s: neither vex.pak nor test.hvp is
  // there", what cannot be read (files.h).
  explicit Presentation(const Options& asked = options());

  // Of a project of its own: the folder needs none. `name` stands for it in messages. Otherwise as above.
  Presentation(const Options& asked, const Project& project, const std::string& name);

  // Stops the music, closes all files, then destroys the time line with scenes and parts, then the textures.
  ~Presentation();

  // Constructs the scenes in their fixed order, reads the project and everything else that the
  // show needs. The GL context is open.
  // Every failure is fatal but for the music's, which warns.
  void load(Begins begins = Begins::once);

  // Replays what lies before its start: `start` (seconds), or the project's own start time. Once after
  // load(), or as often as it was told: then everything stands as it did after loading, and the picture is
  // black.
  // Fatal: "Starting after end!".
  void begin(std::optional<float> start = std::nullopt);

  // Likewise at `start` (seconds), unseen and so in a hundredth of the time, and behind a run-in: all that
  // has a past, particles and water, is moved through `past` seconds before it, at 30 frames a second, though
  // not from before firstTime().
  void begin(float start, double past);

  // The earliest demo time, s: a show with music knows none before 0.
  float firstTime() const;

  // Another project for the same scenes, in a presentation that begins often: shows from the next begin() on,
  // which has to come before anything else. The music stays as it is. A project that is refused leaves the
  // one before.
  void setProject(const Project& project);

  // The scenes that are built around that model (path without extension, letter case ignored) are constructed
  // anew, as they were at loading; likewise to be followed by begin(). One that fails stays as it was. False
  // where there is none.
  bool reloadModel(const std::string& model);

  // Draws the frame at clockTime(): the active parts, then the statistics overlay.
  void drawFrame();

  const PartDispatcher& timeLine() const;

 private:
  struct State;
  std::unique_ptr<State> state;
};

}  // namespace vex
