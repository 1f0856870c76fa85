#include "production/song/score.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <set>

#include "production/music.h"
#include "production/song/cues.h"
#include "tests/support/fatal.h"

namespace vex {

using namespace song;

TEST(Notation, ReadsPitches) {
  struct Case {
    const char* name;
    float midi;
  };
  for (const auto& [name, midi] : {Case{"C4", 60}, Case{"A4", 69}, Case{"Eb3", 51}, Case{"G#5", 80},
                                   Case{"B1", 35}, Case{"C#6", 85}, Case{"D1", 26}}) {
    EXPECT_EQ(readPitch(name), midi) << name;
  }
}

TEST(Notation, ReadsDrums) {
  const std::vector<DrumHit> hits = readDrums({8, 2, "kick", "X... ..o. .... ...r"});
  ASSERT_EQ(hits.size(), 8u);
  const double bars[] = {8, 8.375, 8.9375, 8.96875, 9, 9.375, 9.9375, 9.96875};
  for (std::size_t i = 0; i < hits.size(); ++i) EXPECT_EQ(hits[i].bar, bars[i]) << i;
  EXPECT_GT(hits[0].velocity, hits[1].velocity);
}

TEST(Notation, ReadsNotes) {
  const std::vector<Note> notes = readNotes({4, "lead", "D4:4 -:2 ~F4+A4:10! | Eb4:16?"});
  ASSERT_EQ(notes.size(), 3u);
  EXPECT_EQ(notes[0].bar, 4);
  EXPECT_EQ(notes[0].bars, 0.25);
  EXPECT_EQ(notes[0].fromPitch, 0);
  EXPECT_EQ(notes[1].bar, 4.375);
  EXPECT_EQ(notes[1].bars, 0.625);
  EXPECT_EQ(notes[1].pitches, (std::vector<float>{65, 69}));
  EXPECT_EQ(notes[1].fromPitch, 62);
  EXPECT_EQ(notes[2].bar, 5);
  EXPECT_GT(notes[1].velocity, notes[0].velocity);
  EXPECT_LT(notes[2].velocity, notes[0].velocity);
}

TEST(Notation, RefusesWhatItCannotRead) {
  EXPECT_EQ(fatalText([] { readPitch("H4"); }), "score: H4 is no pitch");
  EXPECT_EQ(fatalText([] { readPitch("Ebb4"); }), "score: Ebb4 is no pitch");
  EXPECT_EQ(fatalText([] { readPitch(""); }), "score:  is no pitch");
  EXPECT_EQ(fatalText([] {
              readDrums({3, 1, "kick", "x...x...x...x.."});
            }),
            "score: the drum line in bar 3 has 15 steps, not whole bars");
  EXPECT_EQ(fatalText([] { readDrums({3, 1, "kick", "x..y"}); }), "score: y in bar 3 is no drum stroke");
  EXPECT_EQ(fatalText([] { readNotes({5, "lead", "D4:16 E4"}); }), "score: E4 in bar 5 has no length");
  EXPECT_EQ(fatalText([] {
              readNotes({5, "lead", "D4:99999999999"});
            }),
            "score: D4:99999999999 in bar 5 has no length");
  EXPECT_EQ(fatalText([] {
              readNotes({5, "lead", "D4:12"});
            }),
            "score: the lead in bar 5 plays 12 steps, not whole bars");
  EXPECT_EQ(fatalText([] {
              readNotes({5, "lead", "D4:15 | D4:1"});
            }),
            "score: a bar line of the lead in bar 5 stands at step 15");
}

namespace {

struct Song {
  const char* name;
  Arrangement sections;
  std::vector<Cue> cues;
  Score score;
  int bars;

  Song(const char* songName, Arrangement played)
      : name(songName),
        sections(played),
        cues(arrangeCues(played)),
        score(writeScore(played)),
        bars(barCount(played)) {}

  // Position in `sections` of the one in which that bar lies.
  std::size_t sectionAt(double bar) const {
    std::size_t at = 0;
    while (at + 1 < sections.size() && firstBar(sections[at + 1], sections) <= bar) ++at;
    return at;
  }
  std::string_view sectionName(std::size_t at) const {
    const int first = firstBar(sections[at], sections);
    return std::find_if(cues.begin(), cues.end(), [&](const Cue& cue) { return cue.bar == first; })->name;
  }
  // Everything that one instrument plays.
  std::map<std::string_view, std::vector<Note>> parts() const {
    std::map<std::string_view, std::vector<Note>> all;
    for (const NoteLine& line : score.notes)
      for (const Note& note : readNotes(line)) all[line.instrument].push_back(note);
    for (auto& [instrument, notes] : all)
      std::stable_sort(notes.begin(), notes.end(),
                       [](const Note& p, const Note& q) { return p.bar < q.bar; });
    return all;
  }
};

const Song& theWhole() {
  static const Song song("whole", wholeSong);
  return song;
}
const Song& theShow() {
  static const Song song("show", showSections);
  return song;
}

}  // namespace

TEST(Arrangement, SectionsFollowEachOther) {
  EXPECT_EQ(barCount(wholeSong), 128);
  struct Case {
    Section section;
    int bar;
  };
  for (const auto& [section, bar] :
       {Case{Section::box, 8}, Case{Section::alien, 24}, Case{Section::interludeOne, 40},
        Case{Section::laboratory, 44}, Case{Section::interludeTwo, 64}, Case{Section::hell, 68},
        Case{Section::skull, 84}, Case{Section::water, 100}, Case{Section::outro, 116}})
    EXPECT_EQ(firstBar(section, wholeSong), bar);

  // Any other order takes its cues, its notes and its end along.
  constexpr std::array two{Section::water, Section::box};
  const Song song("two", two);
  EXPECT_EQ(song.bars, 32);
  EXPECT_EQ(cueSeconds("rain", song.cues), 1.875);
  EXPECT_EQ(cueSeconds("lid", song.cues), 24 * 1.875);
  EXPECT_EQ(cueSeconds("end", song.cues), 60);
  EXPECT_EQ(firstBar(Section::hell, two), -1);
  const auto parts = song.parts();
  EXPECT_EQ(parts.at("glass harp").front().bar, 4);
  EXPECT_EQ(parts.at("drive bass").front().bar, 24);
  EXPECT_FLOAT_EQ(curveAt(song.score, "rewind cut", 30, 0), 9000);
}

TEST(Cues, AreInOrderAndNamedOnce) {
  for (const Song* song : {&theWhole(), &theShow()}) {
    std::set<std::string_view> names;
    double last = 0;
    for (const Cue& cue : song->cues) {
      EXPECT_GE(cueSeconds(cue), last) << cue.name;
      last = cueSeconds(cue);
      EXPECT_TRUE(names.insert(cue.name).second) << cue.name;
      EXPECT_EQ(cueSeconds(cue.name, song->cues), cueSeconds(cue));
    }
    EXPECT_EQ(last, song->bars * 1.875);
  }
  EXPECT_EQ(songBars, theShow().bars);
  EXPECT_EQ(cueSeconds(4, 2), 8.4375);
  EXPECT_EQ(fatalText([] { cueSeconds("encore"); }), "cue table: no cue is named encore");
}

// Pictures follow the cues: no second bar without one.
TEST(Cues, StandOnEverySecondBar) {
  for (int bar = 0; bar < theWhole().bars; bar += 2) {
    EXPECT_TRUE(std::any_of(theWhole().cues.begin(), theWhole().cues.end(), [&](const Cue& cue) {
      return cueSeconds(cue) == cueSeconds(bar);
    })) << bar;
  }
}

TEST(Cues, PrintAsSecondsAndNames) {
  const std::string lines = cueLines();
  EXPECT_TRUE(lines.starts_with("0.0000000 prologue\n0.9375000 first heartbeat\n")) << lines;
  EXPECT_NE(lines.find("\n45.0000000 alien\n"), std::string::npos) << lines;
  EXPECT_TRUE(lines.ends_with(" end\n")) << lines;
}

TEST(Score, StaysInsideTheSong) {
  for (const Song* song : {&theWhole(), &theShow()}) {
    for (const DrumLine& line : song->score.drums) {
      for (const DrumHit& hit : readDrums(line)) {
        EXPECT_GE(hit.bar, 0);
        EXPECT_LT(hit.bar, song->bars) << line.drum;
      }
    }
    for (const NoteLine& line : song->score.notes)
      for (const Note& note : readNotes(line)) {
        // The last chord rings through the tail.
        const double room = line.bar == song->bars - 1 ? tailSeconds / secondsPerBar : 0;
        EXPECT_LE(note.bar + note.bars, song->bars + room) << line.instrument;
      }
  }
}

// The four notes in a row, in one instrument: once or more in each section, in a voice that the section
// before did not give it to. It goes on to the A in the water and after it, or where the show ends.
TEST(Score, EverySectionStatesTheMotif) {
  for (const Song* song : {&theWhole(), &theShow()}) {
    const std::size_t count = song->sections.size();
    std::vector<int> resolutions(count);
    std::vector<std::set<std::string_view>> voices(count);
    for (const auto& [instrument, notes] : song->parts()) {
      const auto pitchClass = [&](std::size_t i) { return std::lround(notes[i].pitches.front()) % 12; };
      for (std::size_t i = 0; i + 3 < notes.size(); ++i) {
        if (pitchClass(i) != 2 || pitchClass(i + 1) != 3 || pitchClass(i + 2) != 9 || pitchClass(i + 3) != 8)
          continue;
        const std::size_t section = song->sectionAt(notes[i].bar);
        voices[section].insert(instrument);
        const bool goesOn = i + 4 < notes.size() && song->sectionAt(notes[i + 4].bar) == section;
        if (goesOn && pitchClass(i + 4) == 9) ++resolutions[section];
      }
    }
    for (std::size_t i = 0; i < count; ++i) {
      EXPECT_FALSE(voices[i].empty()) << song->name << ' ' << song->sectionName(i);
      const bool home = song->sections[i] == Section::water || song->sections[i] == Section::outro ||
                        (song->sections[i] == Section::interludeTwo && i + 1 == count);
      EXPECT_EQ(resolutions[i] > 0, home) << song->name << ' ' << song->sectionName(i);
      if (i > 0) {
        EXPECT_NE(voices[i], voices[i - 1]) << song->sectionName(i);
      }
    }
  }
}

// Weighs how long each degree above the home note sounds: the third tells minor from major, the flat second
// is the Phrygian colour. Home is D; in hell it climbs by minor thirds and erupts on E flat.
TEST(Score, IsMinorUntilTheOutroAndPhrygianInHell) {
  const auto home = [](double bar) {
    const double inHell = bar - firstBar(Section::hell, wholeSong);
    if (inHell >= 12 && inHell < 16) return 3;
    return inHell >= 4 && inHell < 8 ? 2 + 3 * (static_cast<int>(inHell) - 4) : 2;
  };
  std::vector<std::array<double, 12>> weights(theWhole().sections.size());
  for (const auto& [instrument, notes] : theWhole().parts())
    for (const Note& note : notes)
      for (const float pitch : note.pitches)
        weights[theWhole().sectionAt(note.bar)]
               [static_cast<std::size_t>((std::lround(pitch) - home(note.bar)) % 12)] += note.bars;
  constexpr std::size_t flatThird = 3, sharpThird = 4, flatSecond = 1, second = 2;
  for (std::size_t i = 1; i < weights.size(); ++i) {
    const Section section = theWhole().sections[i];
    const auto& weight = weights[i];
    if (section == Section::outro) {
      EXPECT_EQ(weight[flatThird], 0);
      EXPECT_GT(weight[sharpThird], 5);
    } else {
      EXPECT_GT(weight[flatThird], 8 * weight[sharpThird]) << theWhole().sectionName(i);
    }
    if (section == Section::hell || section == Section::skull) {
      EXPECT_GT(weight[flatSecond], 4 * weight[second]) << theWhole().sectionName(i);
    }
  }
}

// Drums lead into each cue of the kind that promises it, and nothing is struck while the music holds
// its breath but the clock.
TEST(Score, KeepsWhatTheCuesPromise) {
  const std::vector<Cue>& all = theWhole().cues;
  for (std::size_t i = 0; i + 1 < all.size(); ++i) {
    const double first = cueSeconds(all[i]) / secondsPerBar, next = cueSeconds(all[i + 1]) / secondsPerBar;
    int struck = 0;
    for (const DrumLine& line : theWhole().score.drums) {
      if (!line.drum.ends_with("snare") && line.drum != "kick" && !line.drum.ends_with("tom")) continue;
      for (const DrumHit& hit : readDrums(line)) struck += hit.bar >= first && hit.bar < next ? 1 : 0;
    }
    if (all[i].kind == CueKind::fill) {
      EXPECT_GE(struck, 3) << all[i].name;
    } else if (all[i].kind == CueKind::silence) {
      EXPECT_EQ(struck, 0) << all[i].name;
    }
  }
}

// A voice that comes back after more than four bars counts as new, too.
TEST(Score, BringsSomethingNewAtLeastEveryEightBars) {
  std::map<std::string_view, std::vector<double>> played;
  for (const DrumLine& line : theWhole().score.drums)
    for (const DrumHit& hit : readDrums(line)) played[line.drum].push_back(hit.bar);
  for (const auto& [instrument, notes] : theWhole().parts())
    for (const Note& note : notes) played[instrument].push_back(note.bar);
  std::vector<double> entries{0, static_cast<double>(theWhole().bars)};
  for (auto& [name, bars] : played) {
    std::sort(bars.begin(), bars.end());
    for (std::size_t i = 0; i < bars.size(); ++i)
      if (i == 0 || bars[i] - bars[i - 1] > 4) entries.push_back(bars[i]);
  }
  std::sort(entries.begin(), entries.end());
  for (std::size_t i = 1; i < entries.size(); ++i) EXPECT_LE(entries[i] - entries[i - 1], 8) << entries[i];
}

TEST(Score, CurvesAreStraightBetweenTheirPoints) {
  const Score& score = theWhole().score;
  EXPECT_EQ(curveAt(score, "no such curve", 3, 0.25f), 0.25f);
  EXPECT_FLOAT_EQ(curveAt(score, "fader", 0, 0), -6);
  EXPECT_FLOAT_EQ(curveAt(score, "fader", 1.5, 0), -6.5f);
  EXPECT_FLOAT_EQ(curveAt(score, "fader", 999, 0), curveAt(score, "fader", 128, 0));
  EXPECT_FLOAT_EQ(curveAt(score, "low cut", 0, 0), 20) << "before the first point";
  // Between the points of a section, and of one that follows, nothing goes backwards.
  for (const auto& [name, points] : score.curves)
    for (std::size_t i = 1; i < points.size(); ++i) EXPECT_LE(points[i - 1].bar, points[i].bar) << name;
}

}  // namespace vex
