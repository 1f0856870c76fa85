#include "studio/show/show_music.h"

#include "app/music.h"
#include "base/clock.h"
#include "base/report.h"
#include "platform/steady_clock.h"
#include "studio/show/grain.h"
#include "studio/show/messages_caught.h"

namespace vex::studio {

void ShowMusic::open(const std::string& name) {
  nameOfIt = name;
  grains = {};
  decoded.reset();
  const MessagesCaught messages;
  reopenMusic(name.c_str());
  trouble = name.empty() ? "The show names no music." : messages.first();
  if (const auto found = findFile(name.c_str()); found && !name.empty())
    decoded = std::make_unique<DecodedMusic>(*found);
}

void ShowMusic::reopen() {
  const auto found = findFile(nameOfIt.c_str());
  if (!found) fatalError("Sound file %s not found", nameOfIt.c_str());
  if (!openSoundFile(found->path.c_str(), found->offset, found->size).decoder)
    fatalError("Sound file %s can't be read", nameOfIt.c_str());
  open(std::string(nameOfIt));
}

FilePlace ShowMusic::place() const {
  if (decoded && decoded->ready()) return decoded->place();
  return findFile(nameOfIt.c_str()).value_or(FilePlace{.path = nameOfIt});
}

void ShowMusic::playFrom(float seconds) {
  clockSetStartTime(seconds);
  const bool wasActive = musicActive();
  const MessagesCaught messages;
  if (wasActive) restartMusic(place());
  if (wasActive && !musicActive()) trouble = messages.first();
  leadAgain(seconds);
}

void ShowMusic::leadAgain(float seconds) {
  clockSetStartTime(seconds);
  clockReset();
}

void ShowMusic::silence() {
  silenceMusic();
}

void ShowMusic::scrub(double seconds) {
  if (!musicActive() || !soundLibrary.playPiece || !decoded || !decoded->ready()) return;
  const double now = steadySeconds();
  if (lastGrain >= 0 && now - lastGrain < grainSeconds) return;
  if (!grains.decoder) {
    const FilePlace samples = decoded->place();
    grains = openSoundFile(samples.path.c_str(), samples.offset, samples.size);
  }
  if (!grains.decoder) return;
  const auto samples = readGrain(grains, seconds);
  if (samples.empty()) return;
  lastGrain = now;
  soundLibrary.playPiece({.rate = grains.rate,
                          .channels = grains.channels,
                          .bytesPerSample = grains.bytesPerSample,
                          .samples = samples});
}

}  // namespace vex::studio
