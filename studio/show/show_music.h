#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/sound_file.h"
#include "studio/show/decoded_music.h"

// The music of the running show, which starts anywhere and leads its clock while it plays.

namespace vex::studio {

class ShowMusic {
 public:
  // Opens the music of that name (empty: none), in place of the one before.
  void open(const std::string& name);

  // Once its file is another. Fatal: one that holds no music; what was open stays.
  void reopen();

  // The clock runs from there (s), led by the music where there is some.
  void playFrom(float seconds);

  // The clock is another one, the music plays on.
  void leadAgain(float seconds);

  void silence();

  // A grain from there, unless one is still heard.
  void scrub(double seconds);

  const std::string& name() const { return nameOfIt; }
  const std::string& message() const { return trouble; }  // why there is no sound
  double seconds() const { return decoded ? decoded->seconds() : 0; }

 private:
  FilePlace place() const;

  std::string nameOfIt;
  std::string trouble;
  std::unique_ptr<DecodedMusic> decoded;
  SoundFile grains;  // of the decoded music, from the first one on
  double lastGrain = -1;
};

}  // namespace vex::studio
