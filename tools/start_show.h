#pragma once

#include <optional>
#include <string>

// What `vexproject new` and `vexproject beats` do.

namespace vex {

// A run folder for a show of one's own: neutral data, a text `show.txt`, its project file. `music` is copied
// there, and the show is as long as it allows; without one (empty) it is a minute of silence. The tempo is
// given in beats a minute or looked for in the music. Fatal: a folder with something in it, music that cannot
// be played or lasts less than two seconds, what cannot be written.
void startShow(const std::string& folder, const std::string& music, std::optional<double> beatsPerMinute);

// A comment on how sure it is, and a tempo line for the text. Fatal: music that cannot be played or has no
// steady beat.
std::string beatsOf(const std::string& music);

}  // namespace vex
