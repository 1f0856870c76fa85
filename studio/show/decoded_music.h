#pragma once

#include <memory>
#include <string>

#include "base/files.h"

// The music as plain samples in a file without a name: compressed music can be entered exactly only by
// decoding all before, which takes the better part of a second a few minutes into it.

namespace vex::studio {

class DecodedMusic {
 public:
  // Decodes in a thread of its own what lies there.
  explicit DecodedMusic(const FilePlace& place);
  ~DecodedMusic();  // ends the decoding; the file goes
  DecodedMusic(const DecodedMusic&) = delete;
  DecodedMusic& operator=(const DecodedMusic&) = delete;

  double seconds() const;  // as the music announces it; 0 where it cannot be read

  // The samples as a WAV file, once all are there. Never where there is no room for them.
  bool ready() const;
  FilePlace place() const;

 private:
  struct State;
  std::unique_ptr<State> state;
};

}  // namespace vex::studio
