#pragma once

#include <algorithm>
#include <array>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "production/song/arrangement.h"

// When things happen: the one table that the music and the time line both read, so that a moved cue
// moves both. Bars and beats count from 0; a bar has four beats.

namespace vex::song {

inline constexpr double beatsPerMinute = 128.0;
inline constexpr int beatsPerBar = 4;
inline constexpr double secondsPerBeat = 60.0 / beatsPerMinute;        // 0.46875, exact in binary
inline constexpr double secondsPerBar = beatsPerBar * secondsPerBeat;  // 1.875
inline constexpr int songBars = barCount(showSections);

// First bars of the sections that the show plays; -1 for the others.
inline constexpr int prologueBar = firstBar(Section::prologue);
inline constexpr int boxBar = firstBar(Section::box);
inline constexpr int alienBar = firstBar(Section::alien);
inline constexpr int interludeOneBar = firstBar(Section::interludeOne);
inline constexpr int laboratoryBar = firstBar(Section::laboratory);
inline constexpr int interludeTwoBar = firstBar(Section::interludeTwo);
inline constexpr int hellBar = firstBar(Section::hell);
inline constexpr int skullBar = firstBar(Section::skull);
inline constexpr int waterBar = firstBar(Section::water);
inline constexpr int outroBar = firstBar(Section::outro);

enum class CueKind {
  section,  // a section begins: the pictures change world
  cut,      // an accent strong enough for another camera
  accent,   // a flash, a jolt, a word
  fill,     // drums that lead into what follows begin
  silence,  // the music holds its breath up to the next cue
};

struct Cue {
  double bar;
  double beat;
  CueKind kind;
  std::string_view name;
};

constexpr double cueSeconds(double bar, double beat = 0) {
  return bar * secondsPerBar + beat * secondsPerBeat;
}

constexpr double cueSeconds(const Cue& cue) {
  return cueSeconds(cue.bar, cue.beat);
}

// Bars count from the section's first.
struct SectionCue {
  Section section;
  double bar;
  double beat;
  CueKind kind;
  std::string_view name;
};

// The sections in the order of the whole song, each in order of time; names are unique.
inline constexpr auto cueTable = [] {
  using enum Section;
  using enum CueKind;
  return std::to_array<SectionCue>({
      // Out of the dark: drone, heart, bells that run backwards, the motif once and far away.
      {prologue, 0, 0, section, "prologue"},
      {prologue, 0, 2, accent, "first heartbeat"},
      {prologue, 2, 0, cut, "first bell"},
      {prologue, 4, 0, cut, "far motif"},
      {prologue, 4, 2, accent, "far motif 2"},
      {prologue, 5, 0, accent, "far motif 3"},
      {prologue, 5, 2, accent, "far motif 4"},
      {prologue, 6, 0, cut, "eye opens"},
      {prologue, 7, 0, accent, "heart races"},
      {prologue, 7, 3.5, silence, "breath"},

      // Clockwork and choir; the lock gives way, the mechanism winds itself up.
      {box, 0, 0, section, "box"},
      {box, 2, 0, cut, "pulse"},
      {box, 3, 2, fill, "lock fill"},
      {box, 4, 0, cut, "lock"},
      {box, 4, 2, accent, "bolt"},
      {box, 5, 2, fill, "build fill"},
      {box, 6, 0, cut, "build"},
      {box, 7, 0, accent, "build doubles"},
      {box, 7, 3, silence, "hold"},
      // The kick comes in where the lid lifts; four strokes on the motif's roots for the layers of the logo.
      {box, 8, 0, cut, "lid"},
      {box, 9, 2, fill, "layer fill"},
      {box, 10, 0, accent, "layer 1"},
      {box, 11, 0, accent, "layer 2"},
      {box, 12, 0, accent, "layer 3"},
      {box, 13, 0, accent, "layer 4"},
      {box, 13, 2, fill, "last layer fill"},
      // Everything runs backwards and is shut in.
      {box, 14, 0, cut, "backwards"},
      {box, 15, 0, accent, "backwards 2"},
      {box, 15, 1, fill, "drop fill"},
      {box, 15, 3, silence, "shut"},

      // Broken drums, metal; cuts on every second bar, the music stops on two of them.
      {alien, 0, 0, section, "alien"},
      {alien, 1, 2.5, accent, "stab"},
      {alien, 2, 0, cut, "alien cut 2"},
      {alien, 3, 2, fill, "break fill"},
      {alien, 4, 0, silence, "break"},
      {alien, 4, 2, fill, "tom fill"},
      {alien, 5, 0, accent, "break over"},
      {alien, 6, 0, cut, "split"},
      {alien, 7, 2, fill, "half fill"},
      // Second half: a voice against the motif, plucked strings.
      {alien, 8, 0, cut, "counter voice"},
      {alien, 9, 2.5, accent, "stab 2"},
      {alien, 10, 0, cut, "alien cut 6"},
      {alien, 11, 2, fill, "break fill 2"},
      {alien, 12, 0, fill, "break 2"},
      {alien, 12, 2, silence, "break 2 hushed"},
      {alien, 13, 0, accent, "climax"},
      // The whole band strikes the motif, half a bar a note.
      {alien, 14, 0, cut, "unison"},
      {alien, 14, 2, accent, "unison 2"},
      {alien, 15, 0, accent, "unison 3"},
      {alien, 15, 2, accent, "unison 4"},
      {alien, 15, 2.75, fill, "alien fill"},

      // Drums out: one voice over a pad that opens.
      {interludeOne, 0, 0, section, "interlude one"},
      {interludeOne, 1, 0, accent, "title"},
      {interludeOne, 2, 0, cut, "pad opens"},
      {interludeOne, 3, 0, accent, "riser"},
      {interludeOne, 3, 2, fill, "interlude fill"},

      // A lamp over a table: somebody breathes, a telephone dials the motif; drums in half time, then the
      // alarm.
      {laboratory, 0, 0, section, "laboratory"},
      {laboratory, 1, 0, accent, "breathing"},
      {laboratory, 2, 0, cut, "dialling"},
      {laboratory, 3, 2, fill, "table fill"},
      {laboratory, 4, 0, cut, "half time"},
      {laboratory, 6, 0, cut, "jar"},
      {laboratory, 7, 2, fill, "jar fill"},
      {laboratory, 8, 0, cut, "eyes"},
      {laboratory, 10, 0, cut, "hose"},
      {laboratory, 11, 2, fill, "hose fill"},
      {laboratory, 12, 0, cut, "alarm"},
      {laboratory, 14, 0, cut, "alarm doubles"},
      {laboratory, 15, 0, fill, "burst fill"},
      {laboratory, 15, 3, silence, "held breath"},
      // A chord a bar, each on a note of the motif.
      {laboratory, 16, 0, cut, "burst"},
      {laboratory, 17, 0, accent, "shards"},
      {laboratory, 18, 0, cut, "door"},
      {laboratory, 19, 0, accent, "white"},
      {laboratory, 19, 2, fill, "white fill"},

      // Build and roll; the last stroke rings, and the motif comes to rest on the note it had been missing.
      {interludeTwo, 0, 0, section, "interlude two"},
      {interludeTwo, 1, 0, accent, "roll"},
      {interludeTwo, 2, 0, cut, "roll doubles"},
      {interludeTwo, 2, 2, fill, "last fill"},
      {interludeTwo, 2, 3.5, silence, "last breath"},
      {interludeTwo, 3, 0, cut, "last stroke"},
      {interludeTwo, 3, 2, accent, "rest"},

      // The full band in the Phrygian mode: choir stabs, an organ, iron.
      {hell, 0, 0, section, "hell"},
      {hell, 2, 0, cut, "lake of fire"},
      {hell, 3, 2, fill, "hell fill"},
      {hell, 4, 0, cut, "cathedral"},
      {hell, 6, 0, cut, "black sphere"},
      {hell, 7, 2, fill, "ember fill"},
      // Under the lake: drums of skin and a low choir, then the furnace.
      {hell, 8, 0, cut, "under the lake"},
      {hell, 10, 0, cut, "embers"},
      {hell, 11, 0, fill, "furnace fill"},
      {hell, 11, 3, silence, "gasp"},
      {hell, 12, 0, cut, "eruption"},
      {hell, 14, 0, cut, "sphere cracks"},
      {hell, 14, 2, accent, "sphere cracks 2"},
      {hell, 15, 0, accent, "sphere cracks 3"},
      {hell, 15, 1, fill, "last hell fill"},
      {hell, 15, 3, silence, "scorched"},

      // Double time under thunder; three bars belong to the lasers.
      {skull, 0, 0, section, "skull"},
      {skull, 1, 2, accent, "lightning"},
      {skull, 2, 0, cut, "storm"},
      {skull, 4, 0, cut, "spears"},
      {skull, 5, 2, fill, "crow fill"},
      {skull, 6, 0, cut, "laser 1"},
      {skull, 7, 0, accent, "crow 1 falls"},
      {skull, 8, 0, cut, "clouds race"},
      {skull, 8, 2, fill, "crow fill 2"},
      {skull, 9, 0, cut, "laser 2"},
      {skull, 10, 0, cut, "crow 2 falls"},
      {skull, 11, 2, fill, "crow fill 3"},
      {skull, 12, 0, cut, "laser 3"},
      {skull, 13, 0, accent, "crow 3 falls"},
      {skull, 14, 0, cut, "heart of the storm"},
      {skull, 15, 1, fill, "skull fill"},
      {skull, 15, 3, silence, "struck dumb"},

      // Nothing, a drop, rain; then the motif as the beginning of a tune that goes home.
      {water, 0, 0, section, "water"},
      {water, 0, 2, accent, "first drop"},
      {water, 1, 0, accent, "rain"},
      {water, 2, 0, cut, "creature"},
      {water, 4, 0, cut, "tune"},
      {water, 6, 0, cut, "ripples"},
      {water, 8, 0, cut, "tune again"},
      {water, 10, 0, cut, "ray from above"},
      {water, 11, 2, fill, "water fill"},
      {water, 12, 0, cut, "flood"},
      {water, 14, 0, cut, "ebb"},
      {water, 15, 0, accent, "dissolve"},
      {water, 15, 2, fill, "surface fill"},

      // Major at last, on three small voices and a kick.
      {outro, 0, 0, section, "outro"},
      {outro, 2, 0, cut, "copper bars"},
      {outro, 3, 2, fill, "copper fill"},
      {outro, 4, 0, cut, "first shape"},
      {outro, 6, 0, cut, "second shape"},
      {outro, 7, 2, fill, "shape fill"},
      {outro, 8, 0, cut, "third shape"},
      {outro, 10, 0, cut, "greetings"},
      {outro, 10, 2, fill, "closing fill"},
      {outro, 11, 0, cut, "last chord"},
  });
}();

// The cues of these sections, and "end" after the last.
constexpr std::vector<Cue> arrangeCues(Arrangement sections) {
  std::vector<Cue> all;
  for (const Section section : sections) {
    for (const SectionCue& cue : cueTable) {
      if (cue.section == section)
        all.push_back({firstBar(section, sections) + cue.bar, cue.beat, cue.kind, cue.name});
    }
  }
  all.push_back({static_cast<double>(barCount(sections)), 0, CueKind::silence, "end"});
  return all;
}

// The cues of the show, in order of time.
inline constexpr auto cues = [] {
  std::array<Cue, arrangeCues(showSections).size()> all{};
  std::ranges::copy(arrangeCues(showSections), all.begin());
  return all;
}();

// Seconds from the start of the music. Fatal: "cue table: no cue is named %s".
double cueSeconds(std::string_view name, std::span<const Cue> among = cues);

// The show's cues as lines "seconds name", ascending.
std::string cueLines();

// A note that an instrument plays; a chord is several.
struct PlayedNote {
  double seconds;
  float pitch;  // MIDI number
};
// All that an instrument plays in the show, ascending: pictures can follow a tune.
std::vector<PlayedNote> notesOf(std::string_view instrument);

}  // namespace vex::song
