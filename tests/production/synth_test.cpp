#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "production/synth/airs.h"
#include "production/synth/effects.h"
#include "production/synth/envelope.h"
#include "production/synth/filter.h"
#include "production/synth/machines.h"
#include "production/synth/master.h"
#include "production/synth/powers.h"
#include "production/synth/struck.h"
#include "production/synth/tones.h"
#include "production/synth/weather.h"

namespace vex {

using namespace synth;

namespace {

constexpr float rate = 44100;

// Amplitude of one frequency, by a plain Fourier sum under a Hann window.
double amplitudeAt(std::span<const float> samples, double hertz) {
  double real = 0, imaginary = 0;
  const auto size = static_cast<double>(samples.size());
  for (std::size_t i = 0; i < samples.size(); ++i) {
    const auto n = static_cast<double>(i);
    const double window = 1 - std::cos(2 * std::numbers::pi * (n + 0.5) / size);
    real += samples[i] * window * std::cos(2 * std::numbers::pi * hertz * n / rate);
    imaginary += samples[i] * window * std::sin(2 * std::numbers::pi * hertz * n / rate);
  }
  return 2 * std::hypot(real, imaginary) / size;
}

std::vector<float> makeSine(double hertz, std::size_t size, double amplitude = 1, double turns = 0) {
  std::vector<float> samples(size);
  for (std::size_t i = 0; i < size; ++i) {
    samples[i] = static_cast<float>(
        amplitude * std::sin(2 * std::numbers::pi * (turns + hertz * static_cast<double>(i) / rate)));
  }
  return samples;
}

double energy(std::span<const float> samples) {
  double sum = 0;
  for (const float sample : samples) sum += static_cast<double>(sample) * sample;
  return sum;
}

double decibels(double ratio) {
  return 20 * std::log10(ratio);
}

}  // namespace

TEST(Oscillators, SineAgreesWithTheLibrary) {
  for (double turns = -3; turns < 3; turns += 0.001) {
    EXPECT_NEAR(sineOfTurns(static_cast<float>(turns)),
                std::sin(2 * std::numbers::pi * static_cast<float>(turns)), 5e-6);
  }
}

// Harmonic n of a saw is 2 / (pi n); what would lie above half the rate must not fold back.
TEST(Oscillators, SawHasItsHarmonicsAndLittleElse) {
  constexpr double hertz = 3001;
  Saw saw;
  std::vector<float> samples(44100);
  for (float& sample : samples) sample = saw.next(static_cast<float>(hertz / rate));
  for (const int harmonic : {1, 2, 3}) {
    EXPECT_NEAR(decibels(amplitudeAt(samples, harmonic * hertz)), decibels(2 / (std::numbers::pi * harmonic)),
                2)
        << harmonic;
  }
  for (const int harmonic : {10, 11, 12}) {
    const double folded = std::abs(harmonic * hertz - rate);
    EXPECT_LT(decibels(amplitudeAt(samples, folded)), decibels(2 / (std::numbers::pi * harmonic)) - 12)
        << harmonic;
  }
}

// Transfer functions of a second-order section at the warped frequency.
TEST(Filters, StateVariableFollowsItsFormula) {
  struct Case {
    float cutoff, quality;
    double hertz;
  };
  for (const auto& [cutoff, quality, hertz] :
       {Case{1000, 0.707f, 1000}, Case{1000, 0.707f, 4000}, Case{1000, 4, 1000}, Case{300, 2, 900},
        Case{9000, 1, 12000}}) {
    StateVariableFilter filter;
    filter.set(cutoff, quality, rate);
    std::vector<float> low, band, high;
    for (const float sample : makeSine(hertz, 44100)) {
      const Bands bands = filter.next(sample);
      low.push_back(bands.low);
      band.push_back(bands.band);
      high.push_back(bands.high);
    }
    const double w = std::tan(std::numbers::pi * hertz / rate) / std::tan(std::numbers::pi * cutoff / rate);
    const double denominator = std::hypot(1 - w * w, w / quality);
    const auto settled = [&](const std::vector<float>& all) {
      return amplitudeAt(std::span(all).subspan(22050), hertz);
    };
    EXPECT_NEAR(settled(low), 1 / denominator, 0.01) << cutoff << ' ' << hertz;
    EXPECT_NEAR(settled(band), w / quality / denominator, 0.01) << cutoff << ' ' << hertz;
    EXPECT_NEAR(settled(high), w * w / denominator, 0.01) << cutoff << ' ' << hertz;
  }
}

TEST(Filters, LadderFallsByTwentyFourDecibelsAnOctave) {
  LadderFilter filter;
  filter.set(500, 0, rate);
  std::array<double, 2> levels{};
  for (std::size_t i = 0; i < levels.size(); ++i) {
    const double hertz = i == 0 ? 2000 : 4000;
    std::vector<float> out;
    for (const float sample : makeSine(hertz, 22050, 0.05)) out.push_back(filter.next(sample));
    levels[i] = decibels(amplitudeAt(std::span(out).subspan(11025), hertz));
  }
  EXPECT_NEAR(levels[0] - levels[1], 24, 2);
}

TEST(Envelopes, StartAndEndAtNothing) {
  constexpr EnvelopeShape shape{0.01f, 0.1f, 0.5f, 0.2f};
  EXPECT_EQ(envelopeAt(shape, 0, 1), 0);
  EXPECT_FLOAT_EQ(envelopeAt(shape, 0.005f, 1), 0.5f);
  EXPECT_NEAR(envelopeAt(shape, 0.01f, 1), 1, 1e-5);
  EXPECT_NEAR(envelopeAt(shape, 0.9f, 1), 0.5, 1e-3);
  EXPECT_NEAR(envelopeAt(shape, 1.1f, 1), 0.5 * 0.25, 1e-3);
  EXPECT_EQ(envelopeAt(shape, 1.2f, 1), 0);
}

// The strongest frequency near the fundamental lies where the key says: 440 * 2^((n - 69) / 12).
TEST(Voices, AreInTune) {
  struct Case {
    const char* name;
    Voice (*make)(const NoteCall&);
    float pitch;
    double tolerance;  // cents
  };
  for (const auto& [name, make, pitch, tolerance] :
       {Case{"pluck", makePluck, 50, 4}, Case{"pluck", makePluck, 81, 6}, Case{"pluck", makePluck, 86, 6},
        Case{"arp", makeArp, 74, 3}, Case{"pulse bass", makePulseBass, 38, 5},
        Case{"drive bass", makeDriveBass, 45, 5}, Case{"metal bass", makeMetalBass, 45, 5},
        Case{"music box", makeTine, 86, 4}, Case{"bell", makeBell, 74, 3},
        Case{"sub bass", makeSubBass, 38, 3}, Case{"fuzz bass", makeFuzzBass, 38, 5},
        Case{"organ", makeOrgan, 74, 3}, Case{"sync lead", makeSyncLead, 74, 8},
        Case{"glass harp", makeGlassHarp, 74, 3}, Case{"telephone", makeDialTone, 65, 3},
        Case{"alarm", makeAlarm, 69, 3}, Case{"chip lead", makeChipLead, 86, 3},
        Case{"chip bass", makeChipBass, 38, 3}}) {
    NoiseSource noise;
    const NoteCall call{rate, 1.0f, std::span(&pitch, 1), 0, 0.8f, 0.7f, &noise};
    Voice voice = make(call);
    if (!voice.right.empty()) {
      for (std::size_t i = 0; i < voice.left.size(); ++i) voice.left[i] += voice.right[i];
    }
    voice.left.resize(std::min<std::size_t>(voice.left.size(), 40000));
    double best = 0, bestCents = 0;
    for (double cents = -50; cents <= 50; cents += 1) {
      const double level = amplitudeAt(voice.left, 440 * std::exp2((pitch - 69) / 12.0 + cents / 1200));
      if (level > best) best = level, bestCents = cents;
    }
    EXPECT_NEAR(bestCents, 0, tolerance) << name << ' ' << pitch;
    EXPECT_GT(best, 0.003) << name;
  }
}

TEST(Voices, ReversedBellIsLoudestAtItsEnd) {
  NoiseSource noise;
  const float pitch = 74;
  const Voice voice = makeReversedBell({rate, 1.5f, std::span(&pitch, 1), 0, 1, 0.5f, &noise});
  ASSERT_EQ(voice.left.size(), 66150u);
  const auto part = [&](std::size_t first) { return energy(std::span(voice.left).subspan(first, 11025)); };
  EXPECT_GT(part(55000), 3 * part(22050));
  EXPECT_GT(part(22050), 2 * part(0));
}

// When it is struck, its partials stand apart, the hum in the middle: decibels of the sides below the middle.
TEST(Voices, BellStandsAroundTheListener) {
  for (const float pitch : {50.0f, 62.0f, 74.0f}) {
    NoiseSource noise;
    const Voice voice = makeBell({rate, 2.0f, std::span(&pitch, 1), 0, 0.8f, 0.5f, &noise});
    double middle = 0, side = 0;
    for (std::size_t i = 0; i < 4410; ++i) {
      const double sum = voice.left[i] + voice.right[i], difference = voice.left[i] - voice.right[i];
      middle += sum * sum, side += difference * difference;
    }
    const double share = 10 * std::log10(side / middle);
    EXPECT_GT(share, -9) << pitch;
    EXPECT_LT(share, -3) << pitch;
  }
}

TEST(Voices, SwellGrowsToItsEnd) {
  NoiseSource noise;
  const float pitch = 62;
  const Voice voice = makeSwell({rate, 2.0f, std::span(&pitch, 1), 0, 1, 0.5f, &noise});
  const auto part = [&](double second) {
    return energy(std::span(voice.left).subspan(static_cast<std::size_t>(second * rate), 8820));
  };
  EXPECT_GT(part(1.0), 3 * part(0.4));
  EXPECT_GT(part(1.7), 1.5 * part(1.0));
  EXPECT_EQ(voice.left.size(), static_cast<std::size_t>(2.25f * rate)) << "soon gone";
}

// The iron rings above the note and is gone; what stays is the note.
TEST(Voices, MetalBassLosesItsMetal) {
  NoiseSource noise;
  const float pitch = 38;
  const Voice voice = makeMetalBass({rate, 1.0f, std::span(&pitch, 1), 0, 1, 0.8f, &noise});
  const auto metal = [&](double second) {
    std::vector<float> part(voice.left.begin() + std::lround(second * rate),
                            voice.left.begin() + std::lround((second + 0.1) * rate));
    const double whole = energy(part);
    StateVariableFilter cut;
    cut.set(1500, 0.707f, rate);
    for (float& sample : part) sample = cut.next(sample).high;
    return energy(part) / whole;
  };
  EXPECT_GT(metal(0.005), 8 * metal(0.6));
  EXPECT_GT(metal(0.005), 0.02);
}

// Chords that are not played at once: the siren changes in the middle, the console goes round.
TEST(Voices, BreakTheirChords) {
  NoiseSource noise;
  constexpr std::array<float, 2> pitches{69, 75};
  const std::array hertz{440.0, 440 * std::exp2(0.5)};
  const NoteCall call{rate, 1.0f, pitches, 0, 1, 0.5f, &noise};
  const Voice siren = makeAlarm(call), console = makeChipLead(call);
  for (std::size_t turn = 0; turn < 4; ++turn) {
    const std::size_t tone = turn % 2;
    const auto stands = [&](const Voice& voice, double second, std::size_t size, std::size_t expected) {
      const auto part = std::span(voice.left).subspan(static_cast<std::size_t>(second * rate), size);
      EXPECT_GT(amplitudeAt(part, hertz[expected]), 1.5 * amplitudeAt(part, hertz[1 - expected])) << turn;
    };
    stands(siren, 0.1 + 0.2 * static_cast<double>(turn) + (turn > 1 ? 0.1 : 0.0), 4410, turn / 2);
    stands(console, static_cast<double>(turn) / 34.1, 1290, tone);
  }
}

// Its roll is louder on the note and the fifth than between them, and is gone at the end.
TEST(Voices, ThunderRingsInItsPitch) {
  NoiseSource noise;
  const float pitch = 38;
  const Voice voice = makeThunder({rate, 4.0f, std::span(&pitch, 1), 0, 1, 0.7f, &noise});
  const auto roll = std::span(voice.left).first(88200);
  for (const double ratio : {1.0, 1.4983, 2.0}) {
    const auto around = [&](double semitones) {
      double sum = 0;
      for (double cents = -15; cents <= 15; cents += 3)
        sum += std::pow(amplitudeAt(roll, 73.416 * ratio * std::exp2(semitones / 12 + cents / 1200)), 2);
      return sum;
    };
    EXPECT_GT(around(0), 1.5 * around(2.5)) << ratio;
  }
  const auto part = [&](double second) {
    return energy(std::span(voice.left).subspan(static_cast<std::size_t>(second * rate), 8820));
  };
  EXPECT_GT(part(0.1), 100 * part(3.7));
}

TEST(Voices, RainGrows) {
  NoiseSource noise;
  const float pitch = 62;
  const Voice voice = makeRain({rate, 12.0f, std::span(&pitch, 1), 0, 1, 0.5f, &noise});
  const auto part = [&](std::size_t second) {
    return energy(std::span(voice.left).subspan(second * 44100, 44100));
  };
  EXPECT_GT(part(5), 4 * part(0));
  EXPECT_GT(part(5), 4 * part(11));
}

TEST(Effects, ReverbLosesSixtyDecibelsInItsTime) {
  std::vector<float> click(static_cast<std::size_t>(3 * rate)), silence(click.size()), left(click.size()),
      right(click.size());
  click[0] = 1;
  addReverb({.seconds = 1.5f, .damping = 20000}, click, click, left, right, rate);
  const auto level = [&](double second) {
    return 10 * std::log10(energy(std::span(left).subspan(static_cast<std::size_t>(second * rate), 8820)));
  };
  EXPECT_NEAR(level(0.3) - level(1.3), 60 / 1.5, 6);
  EXPECT_EQ(energy(std::span(left).first(static_cast<std::size_t>(0.02 * rate))), 0) << "before the delay";
}

TEST(Effects, EchoesCrossFromSideToSide) {
  std::vector<float> click(44100), left(44100), right(44100);
  for (std::size_t i = 0; i < 2000; ++i) click[i] = makeSine(1000, 2000)[i];
  addEcho({.seconds = 0.25f, .feedback = 0.5f}, click, click, left, right, rate);
  const auto at = [&](const std::vector<float>& side, int turn) {
    return std::sqrt(energy(std::span(side).subspan(static_cast<std::size_t>(turn) * 11025, 2000)));
  };
  EXPECT_EQ(at(left, 0), 0);
  EXPECT_GT(at(left, 1), 2 * at(right, 1));
  EXPECT_GT(at(right, 2), 2 * at(left, 2));
  EXPECT_NEAR(at(left, 3) / at(left, 1), 0.5, 0.05);
}

TEST(Effects, DuckFallsAtEachHitAndComesBack) {
  constexpr std::array hits{DuckHit{0.5, 1.0f}, DuckHit{0.9, 0.5f}};
  const std::vector<float> curve = makeDuckCurve({.depth = 0.8f, .recover = 0.2f}, hits, 44100, rate);
  const auto at = [&](double second) { return curve[static_cast<std::size_t>(second * rate)]; };
  EXPECT_EQ(at(0.49), 1);
  EXPECT_NEAR(at(0.5005), 0.2, 0.01);
  EXPECT_NEAR(at(0.6), 1 - 0.8 * (0.5 + 0.5 * std::cos(std::numbers::pi / 4)), 0.01);
  EXPECT_EQ(at(0.71), 1);
  EXPECT_NEAR(at(0.9005), 0.6, 0.01);
}

// A sine at a quarter of the rate that is sampled 45 degrees off its peaks shows only 0.707 of them.
TEST(Master, TruePeakSeesBetweenTheSamples) {
  const std::vector<float> sine = makeSine(rate / 4, 4000, 1, 0.125);
  EXPECT_NEAR(*std::max_element(sine.begin(), sine.end()), std::sqrt(0.5), 1e-3);
  EXPECT_NEAR(truePeak(sine, sine), 1, 0.02);
}

// Peaks afterwards by a long windowed sinc, sixteen points a sample.
TEST(Master, LimiterHoldsItsCeiling) {
  std::vector<float> left = makeSine(rate / 4, 20000, 0.4, 0.125), right = makeSine(3000, 20000, 0.3);
  NoiseSource noise;
  StateVariableFilter soften;
  soften.set(8000, 0.707f, rate);
  for (std::size_t i = 5000; i < 9000; ++i) left[i] += 2 * soften.next(noise.next()).low;
  for (std::size_t i = 12000; i < 12010; ++i) right[i] = 2;
  const std::vector<float> before = left;
  limit(left, right, 0.5f, rate);
  double peak = 0;
  for (const std::vector<float>* channel : {&left, &right}) {
    for (std::size_t i = 4800; i < 12200; ++i) {
      for (int phase = 0; phase < 16; ++phase) {
        double value = 0;
        for (int tap = -32; tap <= 32; ++tap) {
          const double x = tap - phase / 16.0;
          const double window = 0.5 + 0.5 * std::cos(std::numbers::pi * x / 33);
          const double sinc = x == 0 ? 1 : std::sin(std::numbers::pi * x) / (std::numbers::pi * x);
          value += (*channel)[static_cast<std::size_t>(static_cast<int>(i) + tap)] * sinc * window;
        }
        peak = std::max(peak, std::abs(value));
      }
    }
  }
  EXPECT_LT(peak, 0.5 * 1.06);
  EXPECT_GT(peak, 0.45);
  for (std::size_t i = 0; i < 4000; ++i) EXPECT_EQ(left[i], before[i]) << i;
}

TEST(Master, CompressorSettlesOnItsRatio) {
  // -6 dB of mean square, 10 above the threshold: 3 : 1 leaves a third of those.
  std::vector<float> left = makeSine(1000, 88200, std::sqrt(2) * std::pow(10, -6 / 20.0)), right = left;
  compress({.threshold = -16, .ratio = 3, .attack = 0.01f, .release = 0.1f}, left, right, rate);
  const double level = decibels(amplitudeAt(std::span(left).subspan(44100), 1000) / std::sqrt(2));
  EXPECT_NEAR(level, -16 + 10 / 3.0, 0.5);
}

TEST(Master, LowEndIsNarrow) {
  for (const auto& [hertz, kept] : {std::pair{50.0, 0.04}, std::pair{120.0, 0.707}, std::pair{1000.0, 1.0}}) {
    std::vector<float> left = makeSine(hertz, 44100), right = makeSine(hertz, 44100, -1);
    narrowLowEnd(left, right, 120, rate);
    EXPECT_NEAR(amplitudeAt(std::span(left).subspan(22050), hertz), kept, 0.02) << hertz;
    std::vector<float> same = makeSine(hertz, 1000), also = same;
    narrowLowEnd(same, also, 120, rate);
    EXPECT_NEAR(same[700], makeSine(hertz, 1000)[700], 1e-5);
  }
}

}  // namespace vex
