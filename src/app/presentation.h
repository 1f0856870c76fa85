#pragma once

#include <optional>

#include "timeline/part_dispatcher.h"

// The presentation from its data to the picture of one frame: what the player and the recorder share.
// Both bring their own GL context, clock and sound.

namespace vex {

// Opens the archive of the working folder, "vex.pak", and makes sure that there is a project to show:
// otherwise the first file that a scene misses would be all that is said.
// Fatal: "vex.pak holds no test.hvp", "no presentation in folder %s: neither vex.pak nor test.hvp is there",
// what cannot be read (files.h).
void openPresentation();

// Constructs the scenes in their fixed order, reads the project "test.hvp" and everything else that
// the show needs, and replays what lies before its start. The presentation and a GL context are
// open.
// `start` (seconds) takes the place of the project's own start time.
// Every failure is fatal but for the music's, which warns.
void loadPresentation(std::optional<float> start = std::nullopt);

const PartDispatcher& presentation();

// Draws the frame at clockTime(): the active parts, then the statistics overlay.
void drawFrame();

// Closes all files, then destroys the dispatcher with scenes and parts, then the textures.
void destroyPresentation();

}  // namespace vex
