#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

// The music's outline for the time line.

namespace vex::studio {

struct Peak {
  std::int8_t low = 0;  // -127 to 127
  std::int8_t high = 0;

  bool operator==(const Peak&) const = default;
};

struct Peaks {
  double seconds = 0;  // that one peak covers
  std::vector<Peak> peaks;

  bool operator==(const Peaks&) const = default;
};

// Reads the music's peaks in a thread of its own, or from the cache that it keeps beside the music
// ("data/.music.ogg.peaks", hidden from archives and listings; in the user's cache folder where that cannot
// be written), which counts for a music of the same size and time of change only. One that is damaged is made
// anew.
class Waveform {
 public:
  Waveform();
  ~Waveform();  // ends the reading
  Waveform(const Waveform&) = delete;
  Waveform& operator=(const Waveform&) = delete;

  // Of the music that the file layer finds by that name; leaves the one before.
  void read(const std::string& name);

  // Null until they are all read, and where there are none. `fresh` tells once that they have come,
  // and writes the cache.
  const Peaks* peaks() const;
  bool fresh();
  std::string message() const;  // why there are none, or fewer than the music announces: damaged, missing

 private:
  struct State;
  std::unique_ptr<State> state;
};

}  // namespace vex::studio
