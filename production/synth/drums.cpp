#include "production/synth/drums.h"

#include <array>
#include <cmath>
#include <span>

#include "production/synth/envelope.h"
#include "production/synth/filter.h"

namespace vex::synth {

namespace {

// A sine whose pitch falls from `high` to `low` hertz, through a soft clipper.
struct Drop {
  float high, low, fall;  // hertz, hertz, time constant in s
  float decay;            // of the loudness, s
  float drive;
  float seconds;
};

std::vector<float> makeDrop(const Drop& drop, float rate) {
  std::vector<float> samples(sampleCount(drop.seconds, rate));
  Decay fall(drop.fall, rate), loudness(drop.decay, rate);
  Sine sine;
  const float normal = 1 / softClip(drop.drive);
  for (std::size_t i = 0; i < samples.size(); ++i) {
    const float hertz = drop.low + (drop.high - drop.low) * fall.next();
    const float end = static_cast<float>(samples.size() - i) / (0.02f * rate);
    samples[i] =
        softClip(drop.drive * loudness.next() * sine.next(hertz / rate)) * normal * std::min(1.0f, end);
  }
  return samples;
}

// Adds noise between two cutoffs that dies away.
struct Burst {
  float lowCut, highCut;  // hertz
  float decay;            // s
  float gain;
  float start = 0;  // s
};

void addBurst(std::vector<float>& samples, const Burst& burst, float rate, NoiseSource& noise) {
  StateVariableFilter high, low;
  high.set(burst.lowCut, 0.8f, rate);
  low.set(burst.highCut, 0.707f, rate);
  Decay loudness(burst.decay, rate);
  for (std::size_t i = sampleCount(burst.start, rate); i < samples.size(); ++i) {
    samples[i] += burst.gain * loudness.next() * low.next(high.next(noise.next()).high).low;
  }
}

// Raises what comes in the first `seconds` of a hit and lowers the rest, as a transient shaper does.
void sharpen(std::vector<float>& samples, float seconds, float amount, float rate) {
  Decay accent(seconds, rate);
  for (float& sample : samples) sample *= 1 + amount * accent.next();
}

void endSoftly(std::vector<float>& samples, float seconds, float rate) {
  fadeEnd(samples, std::min(samples.size(), sampleCount(seconds, rate)));
}

// Six pulses that share no harmonics, above a high cut: the voice of all cymbals.
struct Cymbal {
  float pitch;           // factor on the six frequencies
  float cut;             // hertz
  float decay, seconds;  // s
  float ring, hiss;      // gains of pulses and noise
};
constexpr float cymbalTop = 10500;  // hertz: above it they would only hiss

Voice makeCymbal(const Cymbal& cymbal, float rate, NoiseSource& noise) {
  constexpr std::array hertz{205.3f, 304.4f, 369.6f, 522.7f, 540.0f, 800.0f};
  return renderSides(cymbal.seconds, rate, [&](std::vector<float>& channel, float) {
    std::array<Pulse, 6> pulses;
    for (Pulse& pulse : pulses) pulse.phase = 0.5f + 0.49f * noise.next();
    StateVariableFilter cut, top;
    top.set(cymbalTop, 0.6f, rate);
    cut.set(std::min(cymbal.cut, 0.33f * rate), 1.0f, rate);
    Decay loudness(cymbal.decay, rate);
    for (float& sample : channel) {
      float sum = 0;
      for (std::size_t p = 0; p < pulses.size(); ++p)
        sum += pulses[p].next(hertz[p] * cymbal.pitch / rate, 0.5f);
      const float struck = cut.next(cymbal.ring * sum / 6 + cymbal.hiss * noise.next()).high;
      sample = loudness.next() * top.next(struck).low;
    }
    endSoftly(channel, 0.3f * cymbal.seconds, rate);
  });
}

// Sines at fixed ratios, each with a decay of its own.
struct Mode {
  float hertz, gain, decay;
};

void addModes(std::vector<float>& samples, std::span<const Mode> modes, float rate) {
  for (const Mode& mode : modes) {
    if (mode.hertz > 0.45f * rate) continue;
    Sine sine;
    Decay loudness(mode.decay, rate);
    for (float& sample : samples) sample += mode.gain * loudness.next() * sine.next(mode.hertz / rate);
  }
}

// Of a wheel on an anchor.
struct Stroke {
  float seconds;
  std::array<Mode, 3> modes;
  Burst burst;
};

Voice makeStroke(const Stroke& stroke, float rate, NoiseSource& noise) {
  Voice voice{std::vector<float>(sampleCount(stroke.seconds, rate)), {}};
  addModes(voice.left, stroke.modes, rate);
  addBurst(voice.left, stroke.burst, rate, noise);
  endSoftly(voice.left, 0.02f, rate);
  return voice;
}

// A skin that is hit: its tone, the beater's noise, and how its start stands out.
struct Hit {
  Drop drop;
  Burst burst;
  float accentSeconds, accent;
};

Voice makeHit(const Hit& hit, float rate, NoiseSource& noise) {
  Voice voice{makeDrop(hit.drop, rate), {}};
  addBurst(voice.left, hit.burst, rate, noise);
  sharpen(voice.left, hit.accentSeconds, hit.accent, rate);
  return voice;
}

}  // namespace

Voice makeKick(float rate, NoiseSource& noise) {
  // Ends on G1: below the bass, and no tritone to D, E flat, A or G sharp.
  return makeHit({{340, 49, 0.013f, 0.075f, 2.2f, 0.34f}, {1500, 9000, 0.004f, 0.7f}, 0.012f, 0.35f}, rate,
                 noise);
}

Voice makeHeart(float rate, NoiseSource& noise) {
  Voice voice{makeDrop({92, 41, 0.035f, 0.12f, 1.6f, 0.5f}, rate), {}};
  addBurst(voice.left, {60, 240, 0.05f, 0.9f}, rate, noise);
  endSoftly(voice.left, 0.1f, rate);
  return voice;
}

Voice makeSnare(float rate, NoiseSource& noise) {
  Voice voice{makeDrop({330, 182, 0.02f, 0.075f, 1.8f, 0.32f}, rate), {}};
  constexpr std::array modes{Mode{286, 0.35f, 0.06f}, Mode{421, 0.18f, 0.045f}};
  addModes(voice.left, modes, rate);
  for (float& sample : voice.left) sample *= 0.6f;
  addBurst(voice.left, {1400, 14000, 0.085f, 0.75f}, rate, noise);
  addBurst(voice.left, {300, 3000, 0.03f, 0.4f}, rate, noise);
  sharpen(voice.left, 0.008f, 0.9f, rate);
  for (float& sample : voice.left) sample = softClip(1.2f * sample);
  endSoftly(voice.left, 0.1f, rate);
  return voice;
}

Voice makeClap(float rate, NoiseSource& noise) {
  return renderSides(0.35f, rate, [&](std::vector<float>& channel, float) {
    for (const float start : {0.0f, 0.010f, 0.021f}) {
      addBurst(channel, {850, 5200, 0.005f, 1.1f, start + 0.001f * noise.next() + 0.001f}, rate, noise);
    }
    addBurst(channel, {900, 7500, 0.075f, 0.9f, 0.031f}, rate, noise);
    endSoftly(channel, 0.1f, rate);
  });
}

Voice makeClosedHat(float rate, NoiseSource& noise) {
  return makeCymbal({1.55f, 7600, 0.034f, 0.16f, 0.9f, 0.55f}, rate, noise);
}

Voice makeOpenHat(float rate, NoiseSource& noise) {
  return makeCymbal({1.5f, 7000, 0.11f, 0.42f, 0.8f, 0.6f}, rate, noise);
}

Voice makeCrash(float rate, NoiseSource& noise) {
  return makeCymbal({1.83f, 3400, 0.50f, 2.2f, 0.9f, 0.35f}, rate, noise);
}

Voice makeRide(float rate, NoiseSource& noise) {
  return makeCymbal({2.1f, 5600, 0.2f, 0.7f, 1.1f, 0.2f}, rate, noise);
}

Voice makeHighTom(float rate, NoiseSource& noise) {
  return makeHit({{240, 147, 0.05f, 0.13f, 1.9f, 0.45f}, {500, 5000, 0.012f, 0.6f}, 0.012f, 0.5f}, rate,
                 noise);
}

Voice makeLowTom(float rate, NoiseSource& noise) {
  return makeHit({{165, 98, 0.06f, 0.17f, 1.9f, 0.55f}, {400, 4000, 0.014f, 0.6f}, 0.014f, 0.5f}, rate,
                 noise);
}

Voice makeTick(float rate, NoiseSource& noise) {
  return makeStroke({0.09f,
                     {Mode{2637, 0.35f, 0.011f}, Mode{4470, 0.30f, 0.008f}, Mode{7100, 0.22f, 0.006f}},
                     {3000, 15000, 0.0025f, 0.9f}},
                    rate, noise);
}

Voice makeTock(float rate, NoiseSource& noise) {
  return makeStroke({0.11f,
                     {Mode{1760, 0.4f, 0.014f}, Mode{2980, 0.3f, 0.010f}, Mode{5210, 0.2f, 0.006f}},
                     {1500, 12000, 0.003f, 0.8f}},
                    rate, noise);
}

Voice makeClank(float rate, NoiseSource& noise) {
  // Ratios of a free bar (1, 2.76, 5.40, 8.93) over D3, slightly apart in the two channels.
  return renderSides(1.6f, rate, [&](std::vector<float>& channel, float side) {
    const float base = side < 0 ? 146.8f : 148.1f;
    const std::array modes{Mode{base, 0.40f, 0.5f},          Mode{base * 2.76f, 0.45f, 0.38f},
                           Mode{base * 5.40f, 0.40f, 0.26f}, Mode{base * 8.93f, 0.30f, 0.17f},
                           Mode{base * 13.3f, 0.22f, 0.11f}, Mode{base * 18.6f, 0.15f, 0.07f}};
    addModes(channel, modes, rate);
    addBurst(channel, {700, 9000, 0.03f, 1.0f}, rate, noise);
    sharpen(channel, 0.02f, 0.8f, rate);
    endSoftly(channel, 0.4f, rate);
  });
}

Voice makeImpact(float rate, NoiseSource& noise) {
  Voice voice{makeDrop({130, 34, 0.09f, 0.5f, 1.7f, 2.2f}, rate), {}};
  voice.right = voice.left;
  for (std::vector<float>* channel : {&voice.left, &voice.right}) {
    addBurst(*channel, {90, 1400, 0.22f, 0.8f}, rate, noise);
    addBurst(*channel, {1400, 7000, 0.35f, 0.16f}, rate, noise);
    endSoftly(*channel, 0.6f, rate);
  }
  return voice;
}

Voice makeShatter(float rate, NoiseSource& noise) {
  return renderSides(1.5f, rate, [&](std::vector<float>& channel, float) {
    addBurst(channel, {900, 13000, 0.05f, 1.3f}, rate, noise);
    // Splinters that ring, first many and then few.
    for (int i = 0; i < 44; ++i) {
      const float late = 0.5f + 0.5f * noise.next();
      const float start = 0.6f * late * late * late;
      std::vector<float> splinter(sampleCount(0.5f, rate));
      const Mode mode{4600 + 3600 * noise.next(), 0.16f * (1 - 0.7f * late), 0.05f + 0.04f * noise.next()};
      addModes(splinter, std::span(&mode, 1), rate);
      endSoftly(splinter, 0.1f, rate);
      const std::size_t first = sampleCount(start, rate);
      for (std::size_t n = 0; n < splinter.size(); ++n) channel[first + n] += splinter[n];
    }
    endSoftly(channel, 0.4f, rate);
  });
}

Voice makeLaser(float rate, NoiseSource& noise) {
  // Falls to D, a little apart in the two channels.
  return renderSides(0.7f, rate, [&](std::vector<float>& channel, float side) {
    const float apart = side < 0 ? 0.994f : 1.006f;
    Decay fall(0.055f, rate), loudness(0.15f, rate), bite(0.04f, rate);
    Sine carrier, modulator;
    float phase = 0;
    for (float& sample : channel) {
      const float step = apart * (146.83f + 5200 * fall.next()) / rate;
      const float wave = sineOfTurns(phase + 0.5f * bite.next() * modulator.next(1.5f * step));
      phase = wrapPhase(phase + step);
      sample = softClip(2.2f * loudness.next() * wave);
    }
    addBurst(channel, {2500, 12000, 0.05f, 0.35f}, rate, noise);
    endSoftly(channel, 0.2f, rate);
  });
}

Voice makeDroplet(float rate, NoiseSource& noise) {
  // A bubble that closes: its note rises to D6.
  Voice voice;
  voice.left.resize(sampleCount(0.3f, rate));
  Decay closing(0.02f, rate), loudness(0.05f, rate);
  Sine sine;
  for (float& sample : voice.left)
    sample = 0.8f * loudness.next() * sine.next((1174.7f - 420 * closing.next()) / rate);
  addBurst(voice.left, {3000, 9000, 0.002f, 0.2f}, rate, noise);
  endSoftly(voice.left, 0.1f, rate);
  return voice;
}

}  // namespace vex::synth
