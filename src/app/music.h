#pragma once

#include <cstdint>

#include "base/files.h"
#include "platform/sound_device.h"

// The one music file of the presentation, what leads the demo clock. Every failure is a warning,
// clears options().soundEnabled and leaves the program silent.

namespace vex {

// What plays the music: openAlLibrary, unless a test puts stand-ins here.
extern SoundLibrary soundLibrary;

// What there is of it in a show.
struct Music {
  bool opened = false;
  SoundStream stream = 0;
  float duration = 0.0f;  // seconds
  SoundState loggedState = SoundState::playing;
};

// Only when options().soundEnabled is set. From here on the clock follows the music while it is active.
// Warnings: "Couldn't initialize BASS!...", "Couldn't start BASS output!...", "Sound file not found!...",
// "BASS stream couldn't be opened!...".
void openMusic(const char* name);

// Plays from the clock's start time, when the music is active. Warnings: "BASS attributes
// failed!...", "BASS flags failed!...", "BASS play failed!...".
void startMusic();

// From the clock's start time again, wherever it was: a new stream of the active music from `place`, which
// holds the same sound. Warnings as above.
void restartMusic(const FilePlace& place);

// The stream is silent until it is started again; the clock is not to be asked until then.
void silenceMusic();

// Other music, or the same of a changed file, or none for an empty name; tries again what failed before.
// Warnings: as openMusic.
void reopenMusic(const char* name);

// Sound is on and a stream was opened.
bool musicActive();

// Of the active music, bytes of the decoded stream. The position is to be read once a frame; when
// it goes on without the music, the log says so once.
std::uint32_t musicPosition();
std::uint32_t musicLength();

float musicDuration();  // seconds, known from startMusic() on

void shutDownMusic();

}  // namespace vex
