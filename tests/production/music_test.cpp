#include "production/music.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <numbers>
#include <string>

#include "production/song/cues.h"
#include "tests/support/draft.h"
#include "tests/support/temporary_folder.h"

namespace vex {

using namespace song;

namespace {

struct Loudness {
  double integrated = 0, truePeak = 0;  // LUFS, dBFS
  std::vector<double> shortTerm;        // LUFS of the three seconds before each tenth of a second
};

// As ffmpeg's EBU R 128 meter hears the finished file.
Loudness measure(const std::vector<std::byte>& bytes) {
  const std::string path = testing::TempDir() + "music_test_" + std::to_string(getpid()) + ".ogg";
  std::FILE* file = std::fopen(path.c_str(), "wb");
  if (file == nullptr) return {};
  std::fwrite(bytes.data(), 1, bytes.size(), file);
  std::fclose(file);
  Loudness loudness;
  const std::string command =
      "ffmpeg -nostdin -nostats -hide_banner -i '" + path + "' -af ebur128=peak=true -f null - 2>&1";
  if (std::FILE* pipe = popen(command.c_str(), "r"); pipe != nullptr) {
    std::array<char, 512> line;
    while (std::fgets(line.data(), line.size(), pipe) != nullptr) {
      const std::string text(line.data());
      const auto number = [&](const char* label, double& value) {
        const std::size_t at = text.find(label);
        if (at != std::string::npos) value = std::atof(text.c_str() + at + std::string_view(label).size());
        return at != std::string::npos;
      };
      double value = 0;
      if (number(" S:", value))
        loudness.shortTerm.push_back(value);
      else if (!number(" I:", loudness.integrated))
        number(" Peak:", loudness.truePeak);
    }
    pclose(pipe);
  }
  std::remove(path.c_str());
  return loudness;
}

double meanSquare(const std::vector<float>& samples, double from, double to, int rate) {
  double sum = 0;
  const auto first = static_cast<std::size_t>(from * rate), last = static_cast<std::size_t>(to * rate);
  for (std::size_t i = first; i < last; ++i) sum += static_cast<double>(samples[i]) * samples[i];
  return sum / static_cast<double>(last - first);
}

double levelOf(const StereoSound& sound, double from, double to) {
  return 10 * std::log10(0.5 * (meanSquare(sound.left, from, to, sound.sampleRate) +
                                meanSquare(sound.right, from, to, sound.sampleRate)) +
                         1e-12);
}

// Of both channels together, under a Hann window.
double amplitudeAt(const StereoSound& sound, double hertz, double from, double to) {
  const auto first = static_cast<std::size_t>(from * sound.sampleRate);
  const auto size = static_cast<std::size_t>((to - from) * sound.sampleRate);
  double real = 0, imaginary = 0;
  for (std::size_t i = 0; i < size; ++i) {
    const double turns = static_cast<double>(i) / static_cast<double>(size);
    const double value =
        (1 - std::cos(2 * std::numbers::pi * turns)) * (sound.left[first + i] + sound.right[first + i]);
    const double angle = 2 * std::numbers::pi * hertz * static_cast<double>(i) / sound.sampleRate;
    real += value * std::cos(angle);
    imaginary += value * std::sin(angle);
  }
  return std::hypot(real, imaginary) / static_cast<double>(size);
}

enum class Side { below, above };

// Two Butterworth sections after Bristow-Johnson's cookbook: 24 dB an octave.
std::vector<float> keep(Side kept, double hertz, const std::vector<float>& samples, int rate) {
  std::vector<float> out(samples);
  for (const double quality : {0.541, 1.307}) {
    const double w = 2 * std::numbers::pi * hertz / rate, alpha = std::sin(w) / (2 * quality),
                 cosine = std::cos(w);
    const double middle = kept == Side::below ? 1 - cosine : -(1 + cosine), outer = std::abs(middle) / 2;
    double x1 = 0, x2 = 0, y1 = 0, y2 = 0;
    for (float& sample : out) {
      const double x = sample;
      const double y =
          (outer * x + middle * x1 + outer * x2 + 2 * cosine * y1 - (1 - alpha) * y2) / (1 + alpha);
      x2 = x1, x1 = x, y2 = y1, y1 = y;
      sample = static_cast<float>(y);
    }
  }
  return out;
}

const std::vector<Cue>& wholeCues() {
  static const std::vector<Cue> all = arrangeCues(wholeSong);
  return all;
}

double at(const char* cue) {
  return cueSeconds(cue, wholeCues());
}

double decibels(double power) {
  return 10 * std::log10(power + 1e-12);
}

}  // namespace

TEST(Soundtrack, HasTheFiguresOfARelease) {
  const Loudness loudness = measure(makeMusic(MixQuality::full, wholeSong));
  EXPECT_NEAR(loudness.integrated, -14, 1);
  EXPECT_LE(loudness.truePeak, -1);
  EXPECT_GT(loudness.truePeak, -3);
  ASSERT_GE(loudness.shortTerm.size(), 2400u);
  // Loudest and softest three seconds, without those in which two passages are heard.
  const auto range = [&](const char* first, const char* last) {
    const auto second = [&](double time) { return loudness.shortTerm.begin() + std::lround(time * 10); };
    return std::minmax_element(second(at(first) + 3), second(at(last)));
  };
  struct Step {
    const char *softFirst, *softLast, *loudFirst, *loudLast;
    double rise;  // LU, from the loudest of one passage to the softest of the other
  };
  for (const Step& step :
       {Step{"prologue", "eye opens", "box", "lock", 3}, Step{"prologue", "eye opens", "alien", "break", 8},
        Step{"box", "lock", "lid", "backwards", 2}, Step{"interlude one", "riser", "alien", "break", 2.5},
        Step{"laboratory", "half time", "half time", "alarm", 1.5},
        Step{"half time", "alarm", "burst", "white", 1}, Step{"laboratory", "half time", "burst", "white", 4},
        Step{"half time", "alarm", "hell", "under the lake", 1.5},
        Step{"under the lake", "furnace fill", "eruption", "last hell fill", 1.5},
        Step{"interlude two", "last breath", "eruption", "last hell fill", 1},
        Step{"creature", "tune", "tune again", "flood", 4}, Step{"tune", "ripples", "flood", "ebb", 1},
        Step{"flood", "outro", "first shape", "last chord", 2},
        Step{"creature", "ebb", "eruption", "last hell fill", 3}})
    EXPECT_GE(*range(step.loudFirst, step.loudLast).first - *range(step.softFirst, step.softLast).second,
              step.rise)
        << step.softFirst << " to " << step.loudFirst;
}

TEST(Soundtrack, IsCleanFromEndToEnd) {
  const StereoSound sound = renderMusic(MixQuality::draft, wholeSong);
  const int rate = sound.sampleRate;
  ASSERT_EQ(sound.left.size(), static_cast<std::size_t>(rate) * 244);
  ASSERT_EQ(sound.right.size(), sound.left.size());
  for (const std::vector<float>* channel : {&sound.left, &sound.right}) {
    double sum = 0;
    float peak = 0;
    for (const float sample : *channel) {
      ASSERT_TRUE(std::isfinite(sample));
      sum += sample;
      peak = std::max(peak, std::abs(sample));
    }
    EXPECT_LT(std::abs(sum / static_cast<double>(channel->size())), 1e-4) << "steady part";
    EXPECT_LT(peak, 1);
    EXPECT_EQ(meanSquare(*channel, 0, 0.02, rate), 0);
    EXPECT_EQ(meanSquare(*channel, 243.91, 244, rate), 0);
    EXPECT_GT(meanSquare(*channel, 241, 242, rate), 1e-5) << "the last chord is cut";
  }

  // Bottom in the middle, width above it.
  std::vector<float> middle(sound.left), side(sound.left);
  for (std::size_t i = 0; i < side.size(); ++i) {
    middle[i] = 0.5f * (sound.left[i] + sound.right[i]);
    side[i] = 0.5f * (sound.left[i] - sound.right[i]);
  }
  const auto power = [&](const std::vector<float>& part, const char* first, const char* last) {
    return decibels(meanSquare(part, at(first), at(last), rate));
  };
  const auto share = [&](const std::vector<float>& part, const std::vector<float>& whole, const char* first,
                         const char* last) { return power(part, first, last) - power(whole, first, last); };
  const auto deepMiddle = keep(Side::below, 70, middle, rate), deepSide = keep(Side::below, 70, side, rate);
  const auto air = keep(Side::above, 7000, middle, rate), sub = keep(Side::below, 80, middle, rate);
  const auto highMiddle = keep(Side::above, 1000, middle, rate),
             highSide = keep(Side::above, 1000, side, rate);
  const auto presence = keep(Side::below, 4000, highMiddle, rate);
  struct Full {
    const char *first, *last;
  };
  // Sub, presence and air where the band is whole.
  for (const auto& [first, last] :
       {Full{"lid", "backwards"}, Full{"alien", "break"}, Full{"break over", "counter voice"},
        Full{"counter voice", "break 2"}, Full{"climax", "interlude one"}, Full{"half time", "alarm"},
        Full{"burst", "white"}, Full{"hell", "cathedral"}, Full{"cathedral", "under the lake"},
        Full{"eruption", "scorched"}, Full{"storm", "laser 1"}, Full{"crow 1 falls", "laser 2"},
        Full{"crow 3 falls", "struck dumb"}, Full{"outro", "first shape"},
        Full{"first shape", "last chord"}}) {
    EXPECT_LT(share(deepSide, deepMiddle, first, last), -22) << first;
    EXPECT_GT(share(highSide, highMiddle, first, last), -14) << first;
    EXPECT_LT(share(highSide, highMiddle, first, last), 1) << first;
    EXPECT_GT(share(presence, middle, first, last), -20) << first;
    EXPECT_GT(share(air, middle, first, last), -22) << first;
    EXPECT_LT(share(air, middle, first, last), -9) << first;
    EXPECT_GT(share(sub, middle, first, last), -10) << first;
    EXPECT_LT(share(sub, middle, first, last), -1.5) << first;
  }
  // The prologue is far away, the interlude has no cymbals, what runs backwards is shut in.
  EXPECT_LT(power(air, "prologue", "eye opens"), -50);
  EXPECT_LT(power(air, "title", "riser"), power(air, "climax", "interlude one") - 12);
  EXPECT_LT(power(air, "backwards 2", "shut"), power(air, "layer 4", "backwards") - 5);
  // Rain is heard, far below the storm's cymbals.
  const double rainBelow = power(air, "heart of the storm", "skull fill") - power(air, "tune", "flood");
  EXPECT_GT(rainBelow, 8);
  EXPECT_LT(rainBelow, 15);
}

// What the pictures cut to can be heard: the music jumps up there. Where it holds its breath, it falls.
TEST(Soundtrack, StrikesOnTheCues) {
  const StereoSound sound = renderMusic(MixQuality::draft, wholeSong);
  struct Case {
    const char* cue;
    double rise;  // dB from the 60 ms before to the 60 ms after
  };
  for (const auto& [cue, rise] : {Case{"first heartbeat", 10},
                                  Case{"box", 10},
                                  Case{"pulse", 3},
                                  Case{"lock", 3},
                                  Case{"lid", 10},
                                  Case{"layer 1", 1},
                                  Case{"layer 2", 1},
                                  Case{"layer 3", 1},
                                  Case{"layer 4", 1},
                                  Case{"alien", 12},
                                  Case{"tom fill", 10},
                                  Case{"break over", 2},
                                  Case{"counter voice", 1},
                                  Case{"climax", 10},
                                  Case{"unison 2", 2},
                                  Case{"unison 3", 1},
                                  Case{"unison 4", 2},
                                  Case{"half time", 3},
                                  Case{"burst", 15},
                                  Case{"interlude two", 2},
                                  Case{"last stroke", 12},
                                  Case{"hell", 2},
                                  Case{"eruption", 10},
                                  Case{"sphere cracks", 1},
                                  Case{"skull", 10},
                                  Case{"laser 1", 1},
                                  Case{"laser 2", 1},
                                  Case{"laser 3", 1},
                                  Case{"first drop", 10},
                                  Case{"outro", 4},
                                  Case{"last chord", 2}}) {
    EXPECT_GT(levelOf(sound, at(cue), at(cue) + 0.06) - levelOf(sound, at(cue) - 0.06, at(cue)), rise) << cue;
  }
  for (const Cue& cue : wholeCues()) {
    if (cue.kind != CueKind::silence || cue.name == "end") continue;
    const double time = cueSeconds(cue);
    EXPECT_LT(levelOf(sound, time + 0.04, time + 0.2), levelOf(sound, time - 0.3, time) - 4) << cue.name;
  }
  // A whole beat of nothing before the jar bursts, and between the storm and the first drop.
  EXPECT_LT(levelOf(sound, at("held breath") + 0.1, at("burst") - 0.01), -35);
  EXPECT_LT(levelOf(sound, at("water"), at("first drop") - 0.01), -55);
}

// Each note of the motif stands out of the whole band, 10 dB above the quarter tones beside it.
TEST(Soundtrack, SingsTheMotifInEverySection) {
  const StereoSound sound = renderMusic(MixQuality::draft, wholeSong);
  struct Statement {
    const char* voice;
    Section section;
    std::array<const char*, 4> pitches;
    std::array<double, 5> bars;  // of the notes and of the end, from the section's first
  };
  const Statement statements[] = {
      {"far bell", Section::prologue, {"D5", "Eb5", "A5", "G#5"}, {4, 4.5, 5, 5.5, 6}},
      {"low strings", Section::box, {"D3", "Eb3", "A3", "G#3"}, {0, 0.375, 0.75, 1, 1.6}},
      {"lead", Section::alien, {"D6", "Eb6", "A5", "G#5"}, {14, 14.5, 15, 15.5, 16}},
      {"soprano", Section::interludeOne, {"D5", "Eb5", "A5", "G#5"}, {0, 1, 2, 3, 4}},
      {"telephone", Section::laboratory, {"D5", "Eb5", "A5", "G#5"}, {2, 2.5, 3, 3.5, 3.8}},
      {"lead", Section::interludeTwo, {"D5", "Eb5", "A5", "G#5"}, {0, 1, 2, 2.5, 2.8}},
      {"organ", Section::hell, {"D5", "Eb5", "A5", "G#5"}, {4, 4.25, 4.5, 4.75, 5}},
      {"organ", Section::hell, {"Ab5", "A5", "Eb6", "D6"}, {6, 6.25, 6.5, 6.75, 7}},
      {"organ", Section::hell, {"Eb5", "E5", "Bb5", "A5"}, {14, 14.5, 15, 15.25, 15.7}},
      {"lead", Section::box, {"D5", "Eb5", "A5", "G#5"}, {8, 8.1875, 8.375, 8.5, 9}},
      {"sync lead", Section::skull, {"D6", "Eb6", "A5", "G#5"}, {13, 13.25, 13.5, 13.75, 14}},
      {"glass harp", Section::water, {"D5", "Eb5", "A5", "G#5"}, {4, 4.5, 5, 5.75, 6}},
      {"chip lead", Section::outro, {"D6", "Eb6", "A5", "G#5"}, {4, 4.5, 5, 5.5, 6}},
  };
  for (const Statement& statement : statements) {
    const int first = firstBar(statement.section, wholeSong);
    for (std::size_t note = 0; note < 4; ++note) {
      const int semitones[] = {9, 11, 0, 2, 4, 5, 7};
      const std::string name = statement.pitches[note];
      const int accidental = name[1] == '#' ? 1 : name[1] == 'b' ? -1 : 0;
      const double hertz =
          440 * std::exp2((semitones[name[0] - 'A'] + accidental - 9) / 12.0 + name.back() - '4');
      const double from = cueSeconds(first + statement.bars[note]) + 0.04;
      const double to = cueSeconds(first + statement.bars[note + 1]) - 0.02;
      const double level = amplitudeAt(sound, hertz, from, to), quarterTone = std::exp2(1 / 24.0);
      for (const double beside : {hertz * quarterTone, hertz / quarterTone}) {
        EXPECT_GT(level, 3 * amplitudeAt(sound, beside, from, to))
            << statement.voice << " in bar " << first << ": " << name;
      }
    }
  }
}

// As in the process that has made the draft.
TEST(Soundtrack, IsTheSameEveryTime) {
  const std::vector<std::byte> music = makeMusic(MixQuality::draft);
  const auto* bytes = reinterpret_cast<const char*>(music.data());
  EXPECT_TRUE(readFile(sharedDraft() / "data/vex.ogg") == std::string(bytes, music.size()));
  EXPECT_LE(measure(music).truePeak, 0);
}

}  // namespace vex
