#include "production/music.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "production/cues.h"

namespace vex {

namespace {

constexpr double pi = 3.141592653589793;

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

enum class Side { below, above };

// Two Butterworth sections after Bristow-Johnson's cookbook: 24 dB an octave.
std::vector<float> keep(Side kept, double hertz, const std::vector<float>& samples, int rate) {
  std::vector<float> out(samples);
  for (const double quality : {0.541, 1.307}) {
    const double w = 2 * pi * hertz / rate, alpha = std::sin(w) / (2 * quality), cosine = std::cos(w);
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

}  // namespace

TEST(Soundtrack, HasTheFiguresOfARelease) {
  const std::vector<std::byte> bytes = makeMusic(MixQuality::full);
  const Loudness loudness = measure(bytes);
  EXPECT_NEAR(loudness.integrated, -14, 1);
  EXPECT_LE(loudness.truePeak, -1);
  EXPECT_GT(loudness.truePeak, -3);
  // Short term, without the three seconds in which two movements are heard.
  ASSERT_GE(loudness.shortTerm.size(), 900u);
  const auto at = [&](double second) { return loudness.shortTerm.begin() + std::lround(second * 10); };
  const auto loudest = [&](const char* first, const char* last) {
    return *std::max_element(at(cueSeconds(first) + 3), at(cueSeconds(last)));
  };
  const auto softest = [&](const char* first, const char* last) {
    return *std::min_element(at(cueSeconds(first) + 3), at(cueSeconds(last)));
  };
  EXPECT_GE(softest("alien", "break") - loudest("prologue", "eye opens"), 8);
  EXPECT_GE(softest("lid", "backwards") - loudest("box", "lock"), 2);
  EXPECT_GE(softest("alien", "break"), softest("lid", "backwards"));
  EXPECT_GE(loudest("counter voice", "break 2"), loudest("alien", "break") + 0.3);
  EXPECT_LE(softest("interlude one", "interlude two"), loudest("climax", "interlude one") - 3);
  EXPECT_GE(loudest("interlude two", "end"), softest("interlude one", "interlude two") + 2);
}

TEST(Soundtrack, IsCleanFromEndToEnd) {
  const StereoSound sound = renderMusic(MixQuality::full);
  ASSERT_EQ(sound.sampleRate, 44100);
  ASSERT_EQ(sound.left.size(), 44100u * 92);
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
    EXPECT_EQ(meanSquare(*channel, 0, 0.02, 44100), 0);
    EXPECT_EQ(meanSquare(*channel, 91.91, 92, 44100), 0);
    EXPECT_GT(meanSquare(*channel, 90.5, 90.6, 44100), 1e-8) << "the tail is cut";
  }

  // Bottom in the middle, width above it.
  std::vector<float> middle(sound.left), side(sound.left);
  for (std::size_t i = 0; i < side.size(); ++i) {
    middle[i] = 0.5f * (sound.left[i] + sound.right[i]);
    side[i] = 0.5f * (sound.left[i] - sound.right[i]);
  }
  const auto power = [](const std::vector<float>& part, const char* first, const char* last) {
    return 10 * std::log10(meanSquare(part, cueSeconds(first), cueSeconds(last), 44100));
  };
  const auto share = [&](const std::vector<float>& part, const std::vector<float>& whole, const char* first,
                         const char* last) { return power(part, first, last) - power(whole, first, last); };
  const auto deepMiddle = keep(Side::below, 70, middle, 44100), deepSide = keep(Side::below, 70, side, 44100);
  const auto air = keep(Side::above, 8000, middle, 44100), sub = keep(Side::below, 80, middle, 44100);
  const auto highMiddle = keep(Side::above, 1000, middle, 44100),
             highSide = keep(Side::above, 1000, side, 44100);
  struct Full {
    const char *first, *last;
  };
  // Sub and air where the band is whole.
  for (const auto& [first, last] :
       {Full{"lid", "backwards"}, Full{"alien", "break"}, Full{"break over", "counter voice"},
        Full{"counter voice", "break 2"}, Full{"climax", "interlude one"}}) {
    EXPECT_LT(share(deepSide, deepMiddle, first, last), -25) << first;
    EXPECT_GT(share(highSide, highMiddle, first, last), -14) << first;
    EXPECT_GT(power(air, first, last), -36) << first;
    EXPECT_GT(share(sub, middle, first, last), -10) << first;
    EXPECT_LT(share(sub, middle, first, last), -2) << first;
  }
  // The prologue is far away, the interlude has no cymbals, and what runs backwards is shut in.
  EXPECT_LT(power(air, "prologue", "eye opens"), -55);
  EXPECT_LT(power(air, "title", "riser"), power(air, "climax", "interlude one") - 15);
  EXPECT_LT(power(air, "backwards 2", "shut"), power(air, "layer 4", "backwards") - 6);
}

// What the pictures cut to can be heard: the music jumps up there. The draft has the same song.
TEST(Soundtrack, StrikesOnTheCues) {
  const StereoSound sound = renderMusic(MixQuality::draft);
  EXPECT_EQ(sound.left.size(), static_cast<std::size_t>(sound.sampleRate) * 92);
  struct Case {
    const char* cue;
    double rise;  // dB from the 60 ms before to the 60 ms after
  };
  for (const auto& [cue, rise] :
       {Case{"first heartbeat", 10}, Case{"box", 10}, Case{"pulse", 3}, Case{"lock", 3}, Case{"lid", 10},
        Case{"layer 1", 1}, Case{"layer 2", 1}, Case{"layer 3", 1}, Case{"layer 4", 1}, Case{"alien", 12},
        Case{"tom fill", 10}, Case{"break over", 2}, Case{"counter voice", 1}, Case{"climax", 10},
        Case{"unison 2", 2}, Case{"unison 3", 1}, Case{"unison 4", 2}, Case{"interlude two", 2},
        Case{"last stroke", 12}}) {
    const double at = cueSeconds(cue);
    EXPECT_GT(levelOf(sound, at, at + 0.06) - levelOf(sound, at - 0.06, at), rise) << cue;
  }
  for (const Cue& cue : cues) {
    if (cue.kind != CueKind::silence || cue.name == "end") continue;
    const double at = cueSeconds(cue);
    EXPECT_LT(levelOf(sound, at + 0.04, at + 0.2), levelOf(sound, at - 0.3, at) - 4) << cue.name;
  }
}

TEST(Soundtrack, IsTheSameEveryTime) {
  const std::vector<std::byte> first = makeMusic(MixQuality::draft);
  EXPECT_EQ(first, makeMusic(MixQuality::draft));
  EXPECT_LE(measure(first).truePeak, 0);
}

}  // namespace vex
