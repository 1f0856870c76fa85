#include "app/music.h"

#include <cstdio>

#include "base/clock.h"
#include "base/files.h"
#include "base/options.h"
#include "base/report.h"
#include "platform/paths.h"
#include "platform/sound_file.h"

namespace vex {

SoundLibrary soundLibrary = openAlLibrary;

namespace {

bool streamOpened = false;
SoundStream stream = 0;
float duration = 0.0f;
SoundState loggedState = SoundState::playing;

void disableSound(const char* text) {
  options.soundEnabled = false;
  warning("%s\nDisabling sound", text);
}

bool isLooseFile(const char* name) {
  std::FILE* file = openLooseFile(name, "rb");
  if (file) std::fclose(file);
  return file != nullptr;
}

// The whole part, kept within the type for any number.
std::uint32_t wholePart(double value) {
  if (!(value > 0.0)) return 0;
  return value < 4294967295.0 ? static_cast<std::uint32_t>(value) : 0xffffffff;
}

void logState(SoundState state) {
  if (state == loggedState) return;
  loggedState = state;
  logPrintf("sound %s, going on with the system timer\n",
            state == SoundState::ended ? "stream ended" : "device lost");
}

}  // namespace

void openMusic(const char* name) {
  if (!options.soundEnabled) return;
  if (!soundLibrary.init()) disableSound("Couldn't initialize BASS!");
  if (!soundLibrary.start()) disableSound("Couldn't start BASS output!");
  if (isLooseFile(name)) {
    logPrintf("opening sound file %s from physical file\n", name);
    stream = soundLibrary.createStream(name, 0, wholeFile);
  } else {
    const int handle = fileOpen(name, "rb");
    if (handle < 0) {
      disableSound("Sound file not found!");
      return;
    }
    logPrintf("opening sound file %s from pak_file (index %d)\n", name, handle);
    stream = soundLibrary.createStream(pakFileName(), pakMemberOffset(handle), pakMemberSize(handle));
    fileClose(handle);
  }
  if (stream == 0) disableSound("BASS stream couldn't be opened!");
  streamOpened = true;
  leadingSound = {
      .active = musicActive, .position = musicPosition, .length = musicLength, .duration = musicDuration};
}

void startMusic() {
  if (!musicActive()) return;
  int rate = 0;
  if (!soundLibrary.attributes(stream, rate)) disableSound("BASS attributes failed!");
  const int flags = soundLibrary.flags(stream);
  if (flags == -1) disableSound("BASS flags failed!");
  const double length = soundLibrary.length(stream);
  const int bytesPerSample = flags & soundFlag8Bit ? 1 : 2;
  const int channels = flags & soundFlagMono ? 1 : 2;
  duration = static_cast<float>(length / (static_cast<double>(rate) * bytesPerSample * channels));
  soundLibrary.setPosition(stream, wholePart(length * (demoClock.startTime / duration)));
  if (!soundLibrary.play(stream)) disableSound("BASS play failed!");
}

bool musicActive() {
  return options.soundEnabled && streamOpened;
}

std::uint32_t musicPosition() {
  const std::uint32_t position = soundLibrary.position(stream);
  logState(soundLibrary.state(stream));
  return position;
}

std::uint32_t musicLength() {
  return soundLibrary.length(stream);
}

float musicDuration() {
  return duration;
}

void shutDownMusic() {
  logPrintf("destroying sound\n");
  if (musicActive()) {
    soundLibrary.stop();
    soundLibrary.freeStream(stream);
    soundLibrary.free();
  }
  streamOpened = false;
  leadingSound = {};
  stream = 0;
  loggedState = SoundState::playing;
}

}  // namespace vex
