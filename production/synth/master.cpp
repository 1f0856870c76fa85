#include "production/synth/master.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <vector>

#include "production/synth/filter.h"

namespace vex::synth {

namespace {

constexpr int taps = 12;
constexpr int phases = 4;

// Windowed sinc that finds the three values between two samples; the fourth is the sample itself.
const std::array<std::array<float, taps>, phases - 1>& interpolationFilters() {
  static const auto filters = [] {
    std::array<std::array<float, taps>, phases - 1> table{};
    for (int phase = 1; phase < phases; ++phase) {
      double sum = 0;
      std::array<double, taps> row{};
      for (int tap = 0; tap < taps; ++tap) {
        const double x = tap - (taps / 2 - 1) - phase / static_cast<double>(phases);
        const double window = 0.5 + 0.5 * std::cos(std::numbers::pi * x / (taps / 2 + 0.5));
        row[static_cast<std::size_t>(tap)] = std::sin(std::numbers::pi * x) / (std::numbers::pi * x) * window;
        sum += row[static_cast<std::size_t>(tap)];
      }
      for (int tap = 0; tap < taps; ++tap) {
        table[static_cast<std::size_t>(phase - 1)][static_cast<std::size_t>(tap)] =
            static_cast<float>(row[static_cast<std::size_t>(tap)] / sum);
      }
    }
    return table;
  }();
  return filters;
}

// Raises each peaks[i] to the highest magnitude from sample i to just before sample i + 1.
void raiseToPeaks(std::span<const float> samples, std::span<float> peaks) {
  const auto& filters = interpolationFilters();
  for (std::size_t i = 0; i < samples.size(); ++i) peaks[i] = std::max(peaks[i], std::abs(samples[i]));
  for (std::size_t i = taps / 2 - 1; i + taps / 2 < samples.size(); ++i) {
    const float* window = samples.data() + i - (taps / 2 - 1);
    for (const std::array<float, taps>& filter : filters) {
      float value = 0;
      for (std::size_t tap = 0; tap < taps; ++tap) value += filter[tap] * window[tap];
      peaks[i] = std::max(peaks[i], std::abs(value));
    }
  }
}

}  // namespace

void narrowLowEnd(std::span<float> left, std::span<float> right, float hertz, float rate) {
  StateVariableFilter first, second;
  first.set(hertz, 0.541f, rate);  // the two qualities of a fourth-order Butterworth
  second.set(hertz, 1.307f, rate);
  for (std::size_t i = 0; i < left.size(); ++i) {
    const float middle = 0.5f * (left[i] + right[i]);
    const float side = second.next(first.next(0.5f * (left[i] - right[i])).high).high;
    left[i] = middle + side;
    right[i] = middle - side;
  }
}

void compress(const Compressor& compressor, std::span<float> left, std::span<float> right, float rate) {
  constexpr std::size_t block = 32;
  const float blockSeconds = block / rate;
  const float attack = std::exp(-blockSeconds / compressor.attack);
  const float release = std::exp(-blockSeconds / compressor.release);
  StateVariableFilter keyLeft, keyRight;
  keyLeft.set(compressor.keyCut, 0.707f, rate);
  keyRight.set(compressor.keyCut, 0.707f, rate);
  float reduction = 0, lastGain = 1;  // dB below 0, and its gain
  for (std::size_t start = 0; start < left.size(); start += block) {
    const std::size_t count = std::min(block, left.size() - start);
    float energyLeft = 1e-12f, energyRight = 1e-12f;
    for (std::size_t i = start; i < start + count; ++i) {
      const float heardLeft = keyLeft.next(left[i]).high, heardRight = keyRight.next(right[i]).high;
      energyLeft += heardLeft * heardLeft;
      energyRight += heardRight * heardRight;
    }
    const float level = 10 * std::log10(std::max(energyLeft, energyRight) / static_cast<float>(count));
    const float wanted = std::min(0.0f, (compressor.threshold - level) * (1 - 1 / compressor.ratio));
    reduction = wanted + (reduction - wanted) * (wanted < reduction ? attack : release);
    const float gain = std::pow(10.0f, reduction / 20);
    for (std::size_t i = 0; i < count; ++i) {
      const float now = lastGain + (gain - lastGain) * static_cast<float>(i) / block;
      left[start + i] *= now;
      right[start + i] *= now;
    }
    lastGain = gain;
  }
}

float truePeak(std::span<const float> left, std::span<const float> right) {
  std::vector<float> peaks(left.size());
  raiseToPeaks(left, peaks);
  raiseToPeaks(right, peaks);
  return peaks.empty() ? 0 : *std::max_element(peaks.begin(), peaks.end());
}

void limit(std::span<float> left, std::span<float> right, float ceiling, float rate) {
  const std::size_t size = left.size();
  std::vector<float> gains(size);
  raiseToPeaks(left, gains);
  raiseToPeaks(right, gains);
  for (float& gain : gains) gain = gain > ceiling ? ceiling / gain : 1.0f;

  // Lowest gain of the coming samples: a queue of indices whose gains rise.
  const auto ahead = static_cast<std::size_t>(0.003f * rate);
  std::vector<float> lowest(size);
  std::vector<std::size_t> queue;
  queue.reserve(size);
  std::size_t head = 0, seen = 0;
  for (std::size_t i = 0; i < size; ++i) {
    for (; seen < std::min(size, i + ahead + 1); ++seen) {
      while (queue.size() > head && gains[queue.back()] >= gains[seen]) queue.pop_back();
      queue.push_back(seen);
    }
    while (queue[head] < i) ++head;
    lowest[i] = gains[queue[head]];
  }
  // Comes back slowly, and every step is spread over the look-ahead by a running mean.
  const float release = 1 - std::exp(-1 / (0.08f * rate));
  float held = 1;
  for (float& gain : lowest) gain = held = std::min(gain, held + (1 - held) * release);
  double sum = static_cast<double>(ahead);
  for (std::size_t i = 0; i < size; ++i) {
    sum += lowest[i] - (i >= ahead ? lowest[i - ahead] : 1.0f);
    const float gain = static_cast<float>(sum / static_cast<double>(ahead));
    left[i] *= gain;
    right[i] *= gain;
  }
}

}  // namespace vex::synth
