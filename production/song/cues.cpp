#include "production/song/cues.h"

#include <algorithm>
#include <cstdio>

#include "base/report.h"
#include "production/song/score.h"

namespace vex::song {

double cueSeconds(std::string_view name, std::span<const Cue> among) {
  for (const Cue& cue : among) {
    if (cue.name == name) return cueSeconds(cue);
  }
  fatalError("cue table: no cue is named %.*s", static_cast<int>(name.size()), name.data());
}

std::string cueLines() {
  std::string lines;
  for (const Cue& cue : cues) {
    char seconds[32];
    std::snprintf(seconds, sizeof seconds, "%.7f ", cueSeconds(cue));
    lines.append(seconds).append(cue.name) += '\n';
  }
  return lines;
}

std::vector<PlayedNote> notesOf(std::string_view instrument) {
  std::vector<PlayedNote> played;
  const Score score = writeScore(showSections);
  for (const NoteLine& line : score.notes) {
    if (line.instrument != instrument) continue;
    for (const Note& note : readNotes(line))
      for (const float pitch : note.pitches) played.push_back({cueSeconds(note.bar), pitch});
  }
  std::stable_sort(played.begin(), played.end(),
                   [](const PlayedNote& p, const PlayedNote& q) { return p.seconds < q.seconds; });
  return played;
}

}  // namespace vex::song
