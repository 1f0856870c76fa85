#include "production/song/score.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <set>

#include "production/cues.h"
#include "tests/support/fatal.h"

namespace vex {

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

TEST(Cues, AreInOrderAndNamedOnce) {
  std::set<std::string_view> names;
  double last = 0;
  for (const Cue& cue : cues) {
    EXPECT_GE(cueSeconds(cue), last) << cue.name;
    last = cueSeconds(cue);
    EXPECT_TRUE(names.insert(cue.name).second) << cue.name;
    EXPECT_EQ(cueSeconds(cue.name), cueSeconds(cue));
  }
  EXPECT_EQ(last, 90);
  EXPECT_EQ(cueSeconds(4, 2), 8.4375);
  EXPECT_EQ(fatalText([] { cueSeconds("encore"); }), "cue table: no cue is named encore");
}

// Pictures follow the cues: no second bar without one.
TEST(Cues, StandOnEverySecondBar) {
  for (int bar = 0; bar < songBars; bar += 2) {
    EXPECT_TRUE(std::any_of(cues.begin(), cues.end(), [&](const Cue& cue) {
      return cueSeconds(cue) == cueSeconds(bar);
    })) << bar;
  }
}

TEST(Cues, PrintAsSecondsAndNames) {
  const std::string lines = cueLines();
  EXPECT_TRUE(lines.starts_with("0.0000000 prologue\n0.9375000 first heartbeat\n")) << lines;
  EXPECT_NE(lines.find("\n45.0000000 alien\n"), std::string::npos) << lines;
  EXPECT_TRUE(lines.ends_with("\n90.0000000 end\n")) << lines;
}

TEST(Score, StaysInsideTheSong) {
  for (const DrumLine& line : drumScore()) {
    for (const DrumHit& hit : readDrums(line)) {
      EXPECT_GE(hit.bar, 0);
      EXPECT_LT(hit.bar, songBars) << line.drum;
    }
  }
  for (const NoteLine& line : noteScore()) {
    for (const Note& note : readNotes(line)) EXPECT_LE(note.bar + note.bars, songBars) << line.instrument;
  }
}

// The four notes in a row, in one instrument: once or more in each movement, in a voice that the
// movement before did not give it to. Only the last movement goes on to the A.
TEST(Score, EveryMovementStatesTheMotif) {
  std::vector<double> starts;
  for (const Cue& cue : cues) {
    if (cue.kind == CueKind::section) starts.push_back(cue.bar);
  }
  ASSERT_EQ(starts.size(), 5u);
  std::vector<int> statements(starts.size()), resolutions(starts.size());
  std::vector<std::set<std::string_view>> voices(starts.size());
  for (const NoteLine& line : noteScore()) {
    const std::vector<Note> notes = readNotes(line);
    const auto pitchClass = [&](std::size_t i) { return std::lround(notes[i].pitches.front()) % 12; };
    for (std::size_t i = 0; i + 3 < notes.size(); ++i) {
      if (pitchClass(i) != 2 || pitchClass(i + 1) != 3 || pitchClass(i + 2) != 9 || pitchClass(i + 3) != 8)
        continue;
      const auto section = std::upper_bound(starts.begin(), starts.end(), notes[i].bar) - starts.begin() - 1;
      ++statements[static_cast<std::size_t>(section)];
      voices[static_cast<std::size_t>(section)].insert(line.instrument);
      if (i + 4 < notes.size() && pitchClass(i + 4) == 9) ++resolutions[static_cast<std::size_t>(section)];
    }
  }
  for (std::size_t i = 0; i < starts.size(); ++i) {
    EXPECT_GE(statements[i], 1) << "bar " << starts[i];
    EXPECT_EQ(resolutions[i] > 0, i + 1 == starts.size()) << "bar " << starts[i];
    if (i > 0) {
      EXPECT_NE(voices[i], voices[i - 1]) << "bar " << starts[i];
    }
  }
}

// Drums lead into each cue of the kind that promises it, and nothing is struck while the music holds
// its breath but the clock.
TEST(Score, KeepsWhatTheCuesPromise) {
  for (std::size_t i = 0; i + 1 < cues.size(); ++i) {
    const double first = cueSeconds(cues[i]) / secondsPerBar, next = cueSeconds(cues[i + 1]) / secondsPerBar;
    int struck = 0;
    for (const DrumLine& line : drumScore()) {
      if (line.drum != "snare" && line.drum != "kick" && !line.drum.ends_with("tom")) continue;
      for (const DrumHit& hit : readDrums(line)) struck += hit.bar >= first && hit.bar < next ? 1 : 0;
    }
    if (cues[i].kind == CueKind::fill) {
      EXPECT_GE(struck, 3) << cues[i].name;
    } else if (cues[i].kind == CueKind::silence) {
      EXPECT_EQ(struck, 0) << cues[i].name;
    }
  }
}

// A voice that comes back after more than four bars counts as new, too.
TEST(Score, BringsSomethingNewAtLeastEveryEightBars) {
  std::map<std::string_view, std::vector<double>> played;
  for (const DrumLine& line : drumScore())
    for (const DrumHit& hit : readDrums(line)) played[line.drum].push_back(hit.bar);
  for (const NoteLine& line : noteScore())
    for (const Note& note : readNotes(line)) played[line.instrument].push_back(note.bar);
  std::vector<double> entries{0, songBars};
  for (auto& [name, bars] : played) {
    std::sort(bars.begin(), bars.end());
    for (std::size_t i = 0; i < bars.size(); ++i)
      if (i == 0 || bars[i] - bars[i - 1] > 4) entries.push_back(bars[i]);
  }
  std::sort(entries.begin(), entries.end());
  for (std::size_t i = 1; i < entries.size(); ++i) EXPECT_LE(entries[i] - entries[i - 1], 8) << entries[i];
}

TEST(Score, CurvesAreStraightBetweenTheirPoints) {
  EXPECT_EQ(curveAt("no such curve", 3, 0.25f), 0.25f);
  EXPECT_FLOAT_EQ(curveAt("fader", 0, 0), -7);
  EXPECT_FLOAT_EQ(curveAt("fader", 1.5, 0), -7.5f);
  EXPECT_FLOAT_EQ(curveAt("fader", 99, 0), curveAt("fader", songBars, 0));
  EXPECT_FLOAT_EQ(curveAt("low cut", 0, 0), 20) << "before the first point";
}

}  // namespace vex
