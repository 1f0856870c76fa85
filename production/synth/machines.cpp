#include "production/synth/machines.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "production/synth/envelope.h"
#include "production/synth/render.h"

namespace vex::synth {

namespace {

// Volume as a register of four bits holds it.
float inSixteenSteps(float level) {
  return std::round(15 * level) / 15;
}

// Noise that holds each value for a time, dying in steps.
void addRegister(std::vector<float>& samples, float hertz, float decay, float gain, float rate,
                 NoiseSource& noise) {
  Decay loudness(decay, rate);
  float phase = 0, held = 1;
  for (float& sample : samples) {
    phase += hertz / rate;
    if (phase >= 1) {
      phase -= 1;
      held = noise.next() < 0 ? -1.0f : 1.0f;
    }
    sample += gain * held * inSixteenSteps(loudness.next());
  }
}

}  // namespace

Voice makeDialTone(const NoteCall& call) {
  constexpr EnvelopeShape shape{0.004f, 1, 1, 0.012f};
  std::vector<Sine> tones(call.pitches.size());
  StateVariableFilter line;
  line.set(3200, 0.7f, call.rate);
  Voice voice = renderNote(
      call, shape, [](float) {},
      [&](float level) {
        float sum = 0.01f * call.noise->next();
        for (std::size_t i = 0; i < tones.size(); ++i)
          sum += tones[i].next(noteHertz(call.pitches[i]) / call.rate);
        // An old microphone of carbon bends the wave a little.
        const float drive = 0.4f + 1.6f * call.brightness;
        return 0.6f * level * line.next(softClip(drive * (sum + 0.15f * sum * sum)) / drive).low;
      });
  OnePole steady;  // what the bend left of it
  steady.set(30, call.rate);
  for (float& sample : voice.left) sample -= steady.next(sample);
  return voice;
}

Voice makeAlarm(const NoteCall& call) {
  constexpr EnvelopeShape shape{0.004f, 0.3f, 0.7f, 0.05f};
  Pulse horn;
  Saw reed{0.4f};
  StateVariableFilter bell, cut;
  bell.set(1500, 1.6f, call.rate);
  cut.set(1200 + 4200 * call.brightness, 0.8f, call.rate);
  float step = 0;
  return renderNote(
      call, shape,
      [&](float t) {
        // The motor needs 40 ms from one tone to the other.
        const float turn = std::clamp((t - 0.5f * call.seconds) / 0.04f, 0.0f, 1.0f);
        step =
            noteHertz(call.pitches.front() + turn * (call.pitches.back() - call.pitches.front())) / call.rate;
      },
      [&](float level) {
        const float raw = cut.next(0.6f * horn.next(step, 0.35f) + 0.5f * reed.next(step * 1.007f)).low;
        return level * softClip(1.5f * bell.next(raw).band + 0.35f * raw);
      });
}

Voice makeChipLead(const NoteCall& call) {
  constexpr EnvelopeShape shape{0.001f, 0.5f, 0.6f, 0.05f};
  constexpr float arpeggioSeconds = 1 / 34.1f;  // a quarter of a sixteenth
  Voice voice{std::vector<float>(sampleCount(call.seconds + shape.release, call.rate)), {}};
  Pulse pulse;
  const float width = 0.5f - 0.375f * std::clamp(call.brightness, 0.0f, 1.0f);
  // What a pulse that is not square leaves of steady level.
  const float steady = 2 * width - 1;
  float level = 0, step = 0;
  renderBlocks(
      voice.left, call.rate,
      [&](float t) {
        level = call.velocity * inSixteenSteps(envelopeAt(shape, t, call.seconds));
        const auto turn = static_cast<std::size_t>(t / arpeggioSeconds) % call.pitches.size();
        const float pitch = call.pitches.size() > 1 ? call.pitches[turn] : glidedPitch(call, t);
        const float vibrato = 14 * std::clamp((t - 0.25f) / 0.2f, 0.0f, 1.0f) * sineOfTurns(t * 6.2f);
        step = noteHertz(pitch) * cents(vibrato) / call.rate;
      },
      [&] { return 0.6f * level * (pulse.next(step, width) - steady); });
  return voice;
}

Voice makeChipBass(const NoteCall& call) {
  constexpr EnvelopeShape shape{0.002f, 1, 1, 0.02f};
  OnePole soften;
  soften.set(6000, call.rate);
  float step = 0, phase = 0.25f;
  return renderNote(
      call, shape, [&](float t) { step = glidedStep(call, t); },
      [&](float level) {
        const float triangle = 4 * std::abs(phase - 0.5f) - 1;
        phase = wrapPhase(phase + step);
        return level * soften.next((std::floor(7.5f * triangle) + 0.5f) / 7.5f);
      });
}

Voice makeChipSnare(float rate, NoiseSource& noise) {
  Voice voice{std::vector<float>(sampleCount(0.22f, rate)), {}};
  Pulse body;
  Decay fall(0.02f, rate), loudness(0.04f, rate);
  for (float& sample : voice.left)
    sample = 0.5f * loudness.next() * body.next((160 + 260 * fall.next()) / rate, 0.5f);
  addRegister(voice.left, 11000, 0.055f, 0.55f, rate, noise);
  return voice;
}

Voice makeChipHat(float rate, NoiseSource& noise) {
  Voice voice{std::vector<float>(sampleCount(0.08f, rate)), {}};
  addRegister(voice.left, 21000, 0.016f, 0.5f, rate, noise);
  StateVariableFilter cut;
  cut.set(5000, 0.7f, rate);
  for (float& sample : voice.left) sample = cut.next(sample).high;
  return voice;
}

}  // namespace vex::synth
