#include "tools/beats/beats.h"

#include <aubio/aubio.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <memory>
#include <span>
#include <vector>

namespace vex {

namespace {

constexpr double hopSeconds = 0.0116;       // of the tracker; a power of two of frames near it
constexpr std::ptrdiff_t attackBlocks = 5;  // that are compared before and behind the begin of a sound
constexpr double leastSureness = 6;         // the best of all grids over noise has 4
constexpr double driftAllowed = 0.01;  // s at the ends of the piece, for a rounder number of beats a minute
constexpr std::size_t stretch = 5;     // beats that the tracker has to tell; it loses clean clicks easily

constexpr double nothing = 0.01;      // s before the first beat; attacks are not told closer than that
constexpr double mostSeconds = 1800;  // that are listened to

struct DeleteTempo {
  void operator()(aubio_tempo_t* tempo) const { del_aubio_tempo(tempo); }
};
struct DeleteVector {
  void operator()(fvec_t* vector) const { del_fvec(vector); }
};

// What is heard of the music.
struct Hearing {
  std::vector<double> beats;  // as the tracker tells them, s; some hundredths off, and not the same all along
  std::vector<double> loudness;  // of blocks of a millisecond: mean squares
  double blockSeconds = 0;

  double seconds() const { return static_cast<double>(loudness.size()) * blockSeconds; }
};

float sampleAt(const std::byte* bytes, int bytesPerSample) {
  if (bytesPerSample == 1) return static_cast<float>(std::to_integer<int>(*bytes) - 128) / 128.0f;
  std::int16_t value = 0;
  std::memcpy(&value, bytes, sizeof value);
  return static_cast<float>(value) / 32768.0f;
}

Hearing hear(SoundFile& sound) {
  Hearing hearing;
  const auto hop = std::bit_floor(static_cast<unsigned>(std::max(64.0, sound.rate * hopSeconds * 1.4)));
  const std::unique_ptr<aubio_tempo_t, DeleteTempo> tracker(
      new_aubio_tempo("default", 2 * hop, hop, static_cast<unsigned>(sound.rate)));
  const std::unique_ptr<fvec_t, DeleteVector> input(new_fvec(hop)), output(new_fvec(1));
  if (!tracker || !input || !output) return hearing;
  const auto frameBytes = static_cast<std::size_t>(sound.frameBytes());
  const int blockFrames = sound.rate / 1000;
  hearing.blockSeconds = static_cast<double>(blockFrames) / sound.rate;
  std::vector<std::byte> bytes(hop * frameBytes);
  double sum = 0;
  int summed = 0;
  for (std::size_t got; hearing.seconds() < mostSeconds && (got = readSound(sound, bytes)) > 0;) {
    for (unsigned frame = 0; frame < hop; ++frame) {
      float mean = 0;
      for (int channel = 0; frame * frameBytes < got && channel < sound.channels; ++channel) {
        const auto at = frame * frameBytes + static_cast<std::size_t>(channel * sound.bytesPerSample);
        mean += sampleAt(&bytes[at], sound.bytesPerSample) / static_cast<float>(sound.channels);
      }
      input->data[frame] = mean;
      sum += double{mean} * double{mean};
      if (++summed < blockFrames) continue;
      hearing.loudness.push_back(sum / blockFrames);
      sum = summed = 0;
    }
    aubio_tempo_do(tracker.get(), input.get(), output.get());
    if (output->data[0] != 0) hearing.beats.push_back(double{aubio_tempo_get_last_s(tracker.get())});
  }
  return hearing;
}

// How much louder it gets at each block.
std::vector<float> attacksOf(const std::vector<double>& loudness) {
  std::vector<float> attacks(loudness.size());
  for (std::ptrdiff_t i = 0; i + attackBlocks <= std::ssize(loudness); ++i) {
    double earlier = 0, later = 0;
    for (std::ptrdiff_t j = 0; j < attackBlocks; ++j) {
      if (i > j) earlier += loudness[static_cast<std::size_t>(i - 1 - j)];
      later += loudness[static_cast<std::size_t>(i + j)];
    }
    attacks[static_cast<std::size_t>(i)] =
        static_cast<float>(std::max(0.0, std::sqrt(later) - std::sqrt(earlier)));
  }
  return attacks;
}

// Beat n of a steady beat is at origin + n * period, s.
struct Grid {
  double origin = 0, period = 0;
  double share = 0;  // of its beats that are marked, beyond what chance marks
};

// The music's attacks, and how grids fit them.
struct Attacks {
  std::vector<float> strength;
  double blockSeconds = 0;

  double seconds() const { return static_cast<double>(strength.size()) * blockSeconds; }

  struct Attack {
    double time = 0, strength = 0;
  };
  // The strongest that is no further than that from a time.
  Attack strongest(double time, double reach) const {
    const auto block = [this](double at) {
      return std::clamp<std::ptrdiff_t>(std::lround(at / blockSeconds), 0, std::ssize(strength));
    };
    const auto begin = strength.begin() + block(time - reach), end = strength.begin() + block(time + reach);
    const auto found = std::max_element(begin, end);
    if (found == end) return {};
    return {static_cast<double>(found - strength.begin()) * blockSeconds, double{*found}};
  }

  // Least squares over the attacks nearest to the beats up to `beats` away from the origin.
  Grid fitted(const Grid& grid, int beats) const {
    double weight = 0, n = 0, t = 0, nn = 0, nt = 0;
    for (int i = -beats; i <= beats; ++i) {
      const auto [time, strong] = strongest(grid.origin + i * grid.period, grid.period / 10);
      weight += strong, n += strong * i, t += strong * time, nn += strong * i * i, nt += strong * i * time;
    }
    const double divisor = weight * nn - n * n;
    if (!(divisor > 1e-9 * weight * nn)) return grid;
    const double period = (weight * nt - n * t) / divisor;
    return {(t - period * n) / weight, period};
  }

  // The grid from its first beat in the sound, and the same beats counted.
  Beats counted(const Grid& grid, double from) const {
    Beats beats{.perMinute = 60 / grid.period};
    beats.first = grid.origin + std::ceil((from - grid.origin) / grid.period) * grid.period;
    for (double beat = beats.first; beat < seconds(); beat += grid.period) {
      ++beats.count;
      const auto [time, strong] = strongest(beat, grid.period / 2);
      if (strong > 0 && std::abs(time - beat) <= Beats::tolerance) ++beats.marked;
    }
    return beats;
  }
};

// Widens what it fits step by step, so that an error of the period has not grown to half a beat where it
// counts.
Grid refined(Grid grid, const Attacks& attacks, double from) {
  const double asked = grid.period;
  const int all = static_cast<int>(attacks.seconds() / grid.period) + 1;
  for (int beats = 4; beats < 2 * all; beats *= 2) grid = attacks.fitted(grid, std::min(beats, all));
  if (std::abs(grid.period - asked) > 0.1 * asked) return {};
  const Beats beats = attacks.counted(grid, from);
  if (beats.count > 0) grid.share = static_cast<double>(beats.marked) / beats.count - beats.chance();
  return grid;
}

// Of two grids that fit alike, the one nearer to what feet tap.
double liking(const Grid& grid) {
  return grid.share - 0.1 * std::abs(std::log2(60 / grid.period / 125));
}

// The median, since the tracker leaves beats out.
double usualStep(std::span<const double> beats) {
  std::vector<double> steps;
  for (std::size_t i = 1; i < beats.size(); ++i) steps.push_back(beats[i] - beats[i - 1]);
  const auto middle = steps.begin() + std::ssize(steps) / 2;
  std::nth_element(steps.begin(), middle, steps.end());
  return *middle;
}

// From every stretch that the tracker heard, at half and double its tempo, too.
Grid steadyBeat(const Hearing& hearing, const Attacks& attacks, double from) {
  constexpr std::size_t tries = 24;
  const std::size_t last = hearing.beats.size() - stretch;
  Grid best;
  for (std::size_t i = 0; i <= last; i += std::max<std::size_t>(1, last / tries)) {
    const double period = usualStep(std::span(hearing.beats).subspan(i, stretch));
    for (const double part : {1.0, 0.5, 2.0}) {
      if (!(period * part > 0.2 && period * part < 2)) continue;  // 30 to 300 beats a minute
      const auto [attack, strong] = attacks.strongest(hearing.beats[i + stretch / 2], period / 4);
      const Grid grid = refined({attack, period * part}, attacks, from);
      if (grid.share > 0 && (best.share == 0 || liking(grid) > liking(best))) best = grid;
    }
  }
  return best;
}

// Whole beats a minute, halves or tenths, where the difference is not heard by the ends.
Grid rounded(const Grid& grid, double seconds) {
  const double perMinute = 60 / grid.period;
  const double middle = grid.origin + std::round((seconds / 2 - grid.origin) / grid.period) * grid.period;
  for (const double step : {1.0, 0.5, 0.1, 0.01}) {
    const double rounder = std::round(perMinute / step) * step;
    if (std::abs(rounder / perMinute - 1) * seconds / 2 <= driftAllowed) return {middle, 60 / rounder};
  }
  return grid;
}

double firstSound(const Hearing& hearing) {
  constexpr double audible = 1e-5;  // of the loudest mean square: 50 dB below
  const double loudest = *std::max_element(hearing.loudness.begin(), hearing.loudness.end());
  const auto first = std::find_if(hearing.loudness.begin(), hearing.loudness.end(),
                                  [&](double value) { return value > audible * loudest; });
  return static_cast<double>(first - hearing.loudness.begin()) * hearing.blockSeconds;
}

}  // namespace

std::optional<Beats> findBeats(SoundFile& sound) {
  const Hearing hearing = hear(sound);
  if (hearing.beats.size() < stretch) return std::nullopt;
  const Attacks attacks{attacksOf(hearing.loudness), hearing.blockSeconds};
  const double from = firstSound(hearing) - Beats::tolerance;
  const Grid grid = steadyBeat(hearing, attacks, from);
  if (!(grid.share > 0)) return std::nullopt;
  Beats beats = attacks.counted(rounded(grid, hearing.seconds()), from);
  if (beats.sureness() < leastSureness) return std::nullopt;
  if (beats.first < nothing) beats.first = 0;
  return beats;
}

}  // namespace vex
