#include "production/synth/struck.h"

#include <algorithm>
#include <cmath>

#include "production/synth/effects.h"
#include "production/synth/envelope.h"
#include "production/synth/filter.h"

namespace vex::synth {

namespace {

struct FmPair {
  float carrier, modulator;  // ratios to the note
  float index;               // turns of phase at the start
  float gain, decay, indexDecay;
  float aside;  // -1 to 1: how far to the left or right it is heard, the hum in the middle
};

// A minor third and a hum below, as founders tune bells; the modulators are inharmonic.
constexpr FmPair bellPairs[] = {
    {1.0f, 3.514f, 0.42f, 0.60f, 1.30f, 0.55f, -0.45f},
    {2.0f, 1.414f, 0.25f, 0.30f, 0.80f, 0.30f, 0.65f},
    {0.5f, 2.756f, 0.12f, 0.25f, 1.90f, 0.70f, 0},
    {2.378f, 4.071f, 0.20f, 0.14f, 0.45f, 0.12f, -0.8f},
};

// `side` is -1 for the left channel and 1 for the right one.
void addBell(std::vector<float>& samples, float hertz, float side, const NoteCall& call) {
  const float detune = 1 - 0.0008f * side;
  for (const FmPair& pair : bellPairs) {
    Sine modulator;
    float phase = 0;
    Decay loudness(pair.decay, call.rate), bite(pair.indexDecay, call.rate);
    const float step = hertz * pair.carrier * detune / call.rate;
    const float modulatorStep = hertz * pair.modulator / call.rate;
    if (modulatorStep > 0.3f) continue;
    const float gain = pair.gain * (1 + side * pair.aside) / std::sqrt(1 + pair.aside * pair.aside);
    const float index = pair.index * (0.4f + 0.6f * call.velocity);
    for (float& sample : samples) {
      sample +=
          gain * loudness.next() * sineOfTurns(phase + index * bite.next() * modulator.next(modulatorStep));
      phase = wrapPhase(phase + step);
    }
  }
}

void fadeOut(std::vector<float>& samples, float share) {
  fadeEnd(samples, static_cast<std::size_t>(share * static_cast<float>(samples.size())));
}

}  // namespace

Voice makeBell(const NoteCall& call) {
  const std::size_t size = sampleCount(std::max(call.seconds, 3.2f), call.rate);
  Voice voice{std::vector<float>(size), std::vector<float>(size)};
  const float gain = call.velocity / std::sqrt(static_cast<float>(call.pitches.size()));
  for (const float pitch : call.pitches) {
    addBell(voice.left, noteHertz(pitch), -1, call);
    addBell(voice.right, noteHertz(pitch), 1, call);
  }
  for (std::vector<float>* channel : {&voice.left, &voice.right}) {
    for (float& sample : *channel) sample *= gain;
    fadeOut(*channel, 0.4f);
  }
  return voice;
}

Voice makeReversedBell(const NoteCall& call) {
  NoteCall struck = call;
  struck.velocity = std::min(1.0f, call.velocity);
  Voice voice = makeBell(struck);
  voice.left.resize(sampleCount(call.seconds, call.rate));
  voice.right.resize(voice.left.size());
  Voice room{std::vector<float>(voice.left.size()), std::vector<float>(voice.left.size())};
  addReverb({.seconds = 1.8f, .damping = 5200}, voice.left, voice.right, room.left, room.right, call.rate);
  const auto turn = [](std::vector<float>& dry, const std::vector<float>& wet) {
    for (std::size_t i = 0; i < dry.size(); ++i) dry[i] = 0.6f * dry[i] + 0.9f * wet[i];
    fadeOut(dry, 0.7f);
    std::reverse(dry.begin(), dry.end());
  };
  turn(voice.left, room.left);
  turn(voice.right, room.right);
  fadeOut(voice.left, 0.004f);  // the cut at the end, without a click
  fadeOut(voice.right, 0.004f);
  return voice;
}

Voice makeTine(const NoteCall& call) {
  struct Mode {
    float ratio, gain, decay;  // of the decay: s at A5
  };
  // Overtones of a bar that is clamped at one end; the pair at the bottom beats slowly.
  constexpr Mode modes[] = {{0.9992f, 0.5f, 0.42f}, {1.0008f, 0.4f, 0.38f}, {6.267f, 0.22f, 0.07f}};
  Voice voice{std::vector<float>(sampleCount(1.6f, call.rate)), {}};
  for (const float pitch : call.pitches) {
    const float hertz = noteHertz(pitch);
    for (const Mode& mode : modes) {
      const float step = hertz * mode.ratio / call.rate;
      if (step > 0.4f) continue;
      Sine sine;
      Decay loudness(mode.decay * std::sqrt(880 / hertz), call.rate);
      const float gain = call.velocity * mode.gain;
      for (float& sample : voice.left) sample += gain * loudness.next() * sine.next(step);
    }
  }
  // The pin lets go.
  StateVariableFilter snap;
  snap.set(std::min(5200.0f, 0.3f * call.rate), 1.2f, call.rate);
  Decay click(0.003f, call.rate);
  for (std::size_t i = 0; i < sampleCount(0.02f, call.rate); ++i) {
    voice.left[i] += 0.3f * call.velocity * click.next() * snap.next(call.noise->next()).band;
  }
  fadeOut(voice.left, 0.2f);
  return voice;
}

Voice makePluck(const NoteCall& call) {
  const std::size_t size = sampleCount(call.seconds + 0.9f, call.rate);
  Voice voice{std::vector<float>(size), {}};
  for (const float pitch : call.pitches) {
    const float period = call.rate / noteHertz(pitch) - 0.5f;  // the averaging filter delays by half a sample
    const auto length = static_cast<std::size_t>(period);
    const float fraction = period - static_cast<float>(length);
    std::vector<float> line(length + 1);
    OnePole soft;
    soft.set(900 + 7000 * call.velocity * call.velocity, call.rate);
    float mean = 0;
    for (float& value : line) mean += value = soft.next(call.noise->next());
    mean /= static_cast<float>(line.size());
    for (float& value : line) value = 2 * (value - mean);
    // Loses 60 dB in 1.1 s while held, and quickly once it is let go.
    const float keep = std::pow(0.001f, 1 / (1.1f * noteHertz(pitch)));
    const float damp = std::pow(0.001f, 1 / (0.22f * noteHertz(pitch)));
    float last = 0;
    std::size_t at = 0;
    for (std::size_t i = 0; i < size; ++i) {
      const std::size_t after = at + 1 == line.size() ? 0 : at + 1;
      const float value = line[after] * (1 - fraction) + line[at] * fraction;
      const float held = static_cast<float>(i) < call.seconds * call.rate ? keep : damp;
      line[at] = held * 0.5f * (value + last);
      last = value;
      at = after;
      voice.left[i] += call.velocity * value;
    }
  }
  fadeOut(voice.left, 0.2f);
  return voice;
}

}  // namespace vex::synth
