#include "app/music.h"

#include "base/clock.h"
#include "base/current.h"
#include "base/files.h"
#include "base/options.h"
#include "base/report.h"
#include "platform/message.h"
#include "platform/sound_file.h"

namespace vex {

SoundLibrary soundLibrary = openAlLibrary;

namespace {

Music& music() {
  return current<Music>();
}

void disableSound(const char* text) {
  options().soundEnabled = false;
  warning("%s\nDisabling sound", text);
}

// The whole part, kept within the type for any number.
std::uint32_t wholePart(double value) {
  if (!(value > 0.0)) return 0;
  return value < 4294967295.0 ? static_cast<std::uint32_t>(value) : 0xffffffff;
}

void logState(SoundState state) {
  if (state == music().loggedState) return;
  music().loggedState = state;
  logPrintf("sound %s, going on with the system timer\n",
            state == SoundState::ended ? "stream ended" : "device lost");
}

}  // namespace

void openMusic(const char* name) {
  if (!options().soundEnabled) return;
  const MessagesJoined joined;  // without a sound card every step fails
  if (!soundLibrary.init()) disableSound("Couldn't initialize BASS!");
  if (!soundLibrary.start()) disableSound("Couldn't start BASS output!");
  const auto place = findFile(name);
  if (!place) {
    disableSound("Sound file not found!");
    return;
  }
  if (place->handle < 0) {
    logPrintf("opening sound file %s from physical file\n", name);
  } else {
    logPrintf("opening sound file %s from pak_file (index %d)\n", name, place->handle);
  }
  music().stream = soundLibrary.createStream(place->path.c_str(), place->offset, place->size);
  if (music().stream == 0) disableSound("BASS stream couldn't be opened!");
  music().opened = true;
  leadingSound() = {
      .active = musicActive, .position = musicPosition, .length = musicLength, .duration = musicDuration};
}

void startMusic() {
  if (!musicActive()) return;
  const MessagesJoined joined;
  int rate = 0;
  if (!soundLibrary.attributes(music().stream, rate)) disableSound("BASS attributes failed!");
  const int flags = soundLibrary.flags(music().stream);
  if (flags == -1) disableSound("BASS flags failed!");
  const double length = soundLibrary.length(music().stream);
  const int bytesPerSample = flags & soundFlag8Bit ? 1 : 2;
  const int channels = flags & soundFlagMono ? 1 : 2;
  music().duration = static_cast<float>(length / (static_cast<double>(rate) * bytesPerSample * channels));
  soundLibrary.setPosition(music().stream, wholePart(length * (demoClock().startTime / music().duration)));
  if (!soundLibrary.play(music().stream)) disableSound("BASS play failed!");
}

void restartMusic(const FilePlace& place) {
  if (!musicActive()) return;
  silenceMusic();
  soundLibrary.freeStream(music().stream);
  music().stream = soundLibrary.createStream(place.path.c_str(), place.offset, place.size);
  music().loggedState = SoundState::playing;
  if (music().stream == 0) disableSound("BASS stream couldn't be opened!");
  startMusic();
}

void silenceMusic() {
  if (musicActive()) soundLibrary.stop();
}

void reopenMusic(const char* name) {
  // What failed may have left the device open.
  soundLibrary.stop();
  soundLibrary.freeStream(music().stream);
  soundLibrary.free();
  leadingSound() = {};
  music() = {};
  options().soundEnabled = true;
  if (name[0] != '\0') openMusic(name);
}

bool musicActive() {
  return options().soundEnabled && music().opened;
}

std::uint32_t musicPosition() {
  const std::uint32_t position = soundLibrary.position(music().stream);
  logState(soundLibrary.state(music().stream));
  return position;
}

std::uint32_t musicLength() {
  return soundLibrary.length(music().stream);
}

float musicDuration() {
  return music().duration;
}

void shutDownMusic() {
  logPrintf("destroying sound\n");
  if (musicActive()) {
    soundLibrary.stop();
    soundLibrary.freeStream(music().stream);
    soundLibrary.free();
  }
  leadingSound() = {};
  music() = {};
}

}  // namespace vex
