#include "production/synth/effects.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "production/synth/filter.h"
#include "production/synth/oscillator.h"

namespace vex::synth {

namespace {

struct DelayLine {
  std::vector<float> samples;
  std::size_t at = 0;

  explicit DelayLine(std::size_t size = 1) : samples(std::max<std::size_t>(1, size)) {}
  float oldest() const { return samples[at]; }
  void push(float value) {
    samples[at] = value;
    if (++at == samples.size()) at = 0;
  }
};

// Schroeder's all-pass: smears a click without colouring it.
struct Diffuser {
  DelayLine line;
  float next(float input) {
    const float late = line.oldest();
    const float early = input - 0.62f * late;
    line.push(early);
    return late + 0.62f * early;
  }
};

DelayLine makeDelay(float seconds, float rate) {
  return DelayLine(static_cast<std::size_t>(seconds * rate));
}

}  // namespace

void addReverb(const Reverb& reverb, std::span<const float> left, std::span<const float> right,
               std::span<float> wetLeft, std::span<float> wetRight, float rate) {
  // Milliseconds without common factors; their sum sets how dense the tail is.
  constexpr std::array milliseconds{29.7f, 37.1f, 41.3f, 47.9f, 55.3f, 61.1f, 68.9f, 79.7f};
  constexpr std::size_t lines = milliseconds.size();
  std::array<DelayLine, lines> delays;
  std::array<OnePole, lines> dampers;
  std::array<float, lines> keep{};
  for (std::size_t i = 0; i < lines; ++i) {
    delays[i] = makeDelay(milliseconds[i] / 1000, rate);
    dampers[i].set(reverb.damping, rate);
    keep[i] = std::pow(0.001f, milliseconds[i] / 1000 / reverb.seconds);
  }
  std::array<Diffuser, 4> diffusers{Diffuser{makeDelay(0.0047f, rate)}, Diffuser{makeDelay(0.0123f, rate)},
                                    Diffuser{makeDelay(0.0053f, rate)}, Diffuser{makeDelay(0.0131f, rate)}};
  DelayLine beforeLeft = makeDelay(reverb.before, rate), beforeRight = makeDelay(reverb.before, rate);
  OnePole rumbleLeft, rumbleRight;  // a room does not carry the lowest notes
  rumbleLeft.set(180, rate);
  rumbleRight.set(180, rate);

  const std::size_t size = std::min(wetLeft.size(), wetRight.size());
  for (std::size_t n = 0; n < size; ++n) {
    const float inLeft = beforeLeft.oldest(), inRight = beforeRight.oldest();
    beforeLeft.push(n < left.size() ? left[n] : 0);
    beforeRight.push(n < right.size() ? right[n] : 0);
    const float smearedLeft = diffusers[1].next(diffusers[0].next(inLeft - rumbleLeft.next(inLeft)));
    const float smearedRight = diffusers[3].next(diffusers[2].next(inRight - rumbleRight.next(inRight)));

    std::array<float, lines> out;
    float sum = 0;
    for (std::size_t i = 0; i < lines; ++i) {
      out[i] = dampers[i].next(delays[i].oldest()) * keep[i];
      sum += out[i];
    }
    sum *= 2.0f / lines;
    for (std::size_t i = 0; i < lines; ++i) {
      delays[i].push(out[i] - sum + 0.5f * (i % 2 == 0 ? smearedLeft : smearedRight));
    }
    wetLeft[n] += out[0] - out[2] + out[4] - out[6];
    wetRight[n] += out[1] - out[3] + out[5] - out[7];
  }
}

void addEcho(const Echo& echo, std::span<const float> left, std::span<const float> right,
             std::span<float> wetLeft, std::span<float> wetRight, float rate) {
  DelayLine near = makeDelay(echo.seconds, rate), far = makeDelay(echo.seconds, rate);
  StateVariableFilter lowCut, highCut;
  lowCut.set(echo.lowCut, 0.707f, rate);
  highCut.set(echo.highCut, 0.707f, rate);
  const std::size_t size = std::min(wetLeft.size(), wetRight.size());
  for (std::size_t n = 0; n < size; ++n) {
    const float first = near.oldest(), second = far.oldest();
    const float input = n < left.size() && n < right.size() ? 0.5f * (left[n] + right[n]) : 0;
    near.push(highCut.next(lowCut.next(input + echo.feedback * second).high).low);
    far.push(first);
    wetLeft[n] += first;
    wetRight[n] += echo.feedback * second + 0.3f * first;
  }
}

void applyChorus(std::span<float> left, std::span<float> right, float amount, float rate) {
  float side = 0;
  for (std::span<float> channel : {left, right}) {
    std::vector<float> line(static_cast<std::size_t>(0.05f * rate));
    std::size_t at = 0;
    std::array<float, 2> delay{};
    for (std::size_t n = 0; n < channel.size(); ++n) {
      if (n % controlBlock == 0) {
        const float t = static_cast<float>(n) / rate;
        delay[0] = rate * (0.012f + 0.0035f * sineOfTurns(0.43f * t + side));
        delay[1] = rate * (0.021f + 0.0042f * sineOfTurns(0.29f * t + 0.5f - side));
      }
      line[at] = channel[n];
      float wet = 0;
      for (const float back : delay) {
        const auto whole = static_cast<std::size_t>(back);
        const float part = back - static_cast<float>(whole);
        const std::size_t near = (at + line.size() - whole) % line.size();
        const std::size_t far = near == 0 ? line.size() - 1 : near - 1;
        wet += line[near] * (1 - part) + line[far] * part;
      }
      if (++at == line.size()) at = 0;
      channel[n] += amount * wet;
    }
    side = 0.25f;
  }
}

std::vector<float> makeDuckCurve(const Duck& duck, std::span<const DuckHit> hits, std::size_t size,
                                 float rate) {
  std::vector<float> curve(size, 1.0f);
  constexpr double fall = 0.004;
  for (const DuckHit& hit : hits) {
    const double start = hit.seconds - fall, stop = hit.seconds + duck.recover;
    const auto first = static_cast<std::size_t>(std::max(0.0, start * rate));
    const std::size_t last = std::min(size, static_cast<std::size_t>(std::max(0.0, stop * rate)));
    for (std::size_t i = first; i < last; ++i) {
      const double t = static_cast<double>(i) / rate - hit.seconds;
      const double back = std::max(0.0, t / duck.recover);
      // Stays low for a moment, then comes back along a raised cosine.
      const double share = t < 0 ? 1 + t / fall : 0.5 + 0.5 * std::cos(std::numbers::pi * back * back);
      curve[i] = std::min(curve[i], 1 - duck.depth * hit.weight * static_cast<float>(share));
    }
  }
  return curve;
}

}  // namespace vex::synth
