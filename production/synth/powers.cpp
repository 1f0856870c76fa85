#include "production/synth/powers.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "production/synth/envelope.h"
#include "production/synth/render.h"

namespace vex::synth {

Voice makeSubBass(const NoteCall& call) {
  constexpr EnvelopeShape shape{0.008f, 0.6f, 0.8f, 0.12f};
  Sine sine, octave;
  float step = 0;
  return renderNote(
      call, shape, [&](float t) { step = glidedStep(call, t); },
      [&](float level) {
        const float raw = sine.next(step) + (0.1f + 0.4f * call.brightness) * octave.next(2 * step);
        return level * softClip(1.3f * raw);
      });
}

Voice makeFuzzBass(const NoteCall& call) {
  constexpr EnvelopeShape shape{0.002f, 0.4f, 0.75f, 0.03f};
  Saw first, second{0.31f}, upper{0.62f};
  Sine sub;
  StateVariableFilter open, growl, lowCut, tame;
  lowCut.set(100, 0.707f, call.rate);  // leaves the bottom to the clean sine
  tame.set(3200 + 4200 * call.brightness, 0.7f, call.rate);
  float step = 0;
  return renderNote(
      call, shape,
      [&](float t) {
        step = glidedStep(call, t);
        open.set(450 + 900 * call.brightness + (600 + 3600 * call.brightness) * std::exp(-t / 0.16f), 1.2f,
                 call.rate);
        growl.set(1050 + 550 * sineOfTurns(t * 4.267f + 0.75f), 2.5f, call.rate);  // once in half a beat
      },
      [&](float level) {
        const float raw =
            first.next(step * 1.005f) + second.next(step * 0.995f) + 0.6f * upper.next(step * 2.003f);
        const float driven = softClip(4.5f * open.next(raw).low);
        const float shaped = tame.next(0.6f * driven + 1.3f * growl.next(driven).band).low;
        return level * (0.62f * lowCut.next(shaped).high + 0.5f * sub.next(step));
      });
}

Voice makeOrgan(const NoteCall& call) {
  constexpr EnvelopeShape shape{0.018f, 1, 1, 0.16f};
  struct Rank {
    float ratio, gain, bright;  // gain at brightness 0, and what 1 adds
  };
  constexpr std::array ranks{Rank{0.5f, 0.30f, 0},  Rank{1, 0.55f, 0},     Rank{2, 0.30f, 0.10f},
                             Rank{3, 0.10f, 0.18f}, Rank{4, 0.08f, 0.20f}, Rank{6, 0, 0.16f},
                             Rank{8, 0, 0.14f},     Rank{10, 0, 0.08f}};
  const float gain = 1 / std::sqrt(static_cast<float>(call.pitches.size()));
  return renderSides(call.seconds + shape.release, call.rate, [&](std::vector<float>& channel, float side) {
    std::array<Sine, ranks.size()> pipes;
    std::vector<float> one(channel.size());
    for (const float pitch : call.pitches) {
      for (std::size_t r = 0; r < ranks.size(); ++r) pipes[r].phase = 0.5f + 0.49f * call.noise->next();
      const float base = noteHertz(pitch) * cents(2.5f * side) / call.rate;
      StateVariableFilter chiff;
      chiff.set(std::min(4 * noteHertz(pitch), 7000.0f), 3, call.rate);
      float level = 0, wind = 0, tremble = 1;
      std::array<float, ranks.size()> gains{};
      renderBlocks(
          one, call.rate,
          [&](float t) {
            level = gain * call.velocity * envelopeAt(shape, t, call.seconds);
            wind = 0.02f + 0.4f * std::exp(-t / 0.03f);
            tremble = 1 + 0.0012f * sineOfTurns(5.4f * t + 0.2f * side);
            for (std::size_t r = 0; r < ranks.size(); ++r)
              gains[r] = ranks[r].ratio * base > 0.4f ? 0 : ranks[r].gain + ranks[r].bright * call.brightness;
          },
          [&] {
            float sum = wind * chiff.next(call.noise->next()).band;
            for (std::size_t r = 0; r < ranks.size(); ++r)
              if (gains[r] > 0) sum += gains[r] * pipes[r].next(base * ranks[r].ratio * tremble);
            return level * sum;
          });
      for (std::size_t i = 0; i < channel.size(); ++i) channel[i] += one[i];
    }
  });
}

Voice makeSyncLead(const NoteCall& call) {
  constexpr EnvelopeShape shape{0.004f, 0.4f, 0.75f, 0.12f};
  return renderSides(call.seconds + shape.release, call.rate, [&](std::vector<float>& channel, float side) {
    float firstPhase = 0.25f * (1 + side), secondPhase = 0.6f;
    Sine under;
    StateVariableFilter cut;
    cut.set(8500, 0.7f, call.rate);
    float step = 0, ratio = 2;
    renderNote(
        channel, call, shape,
        [&](float t) {
          const float vibrato = 12 * std::clamp((t - 0.15f) / 0.25f, 0.0f, 1.0f) * sineOfTurns(t * 6.1f);
          step = noteHertz(glidedPitch(call, t)) * cents(vibrato + 3 * side) / call.rate;
          ratio = 1.5f + 4.5f * call.brightness * (0.35f + 0.65f * std::exp(-t / 0.18f)) +
                  0.4f * sineOfTurns(1.3f * t + 0.1f * side);
        },
        [&](float level) {
          const auto wave = [&](float& phase, float pace) {
            const float value = (1 - phase) * sineOfTurns(phase * ratio);
            phase = wrapPhase(phase + pace);
            return value;
          };
          const float raw =
              wave(firstPhase, step * 1.003f) + wave(secondPhase, step * 0.997f) + 0.9f * under.next(step);
          return level * cut.next(softClip(1.6f * raw)).low;
        });
  });
}

Voice makeGlassHarp(const NoteCall& call) {
  const EnvelopeShape shape{std::min(0.16f, 0.3f * call.seconds), 1, 0.85f, 0.7f};
  const float gain = 1 / std::sqrt(static_cast<float>(call.pitches.size()));
  return renderSides(call.seconds + shape.release, call.rate, [&](std::vector<float>& channel, float side) {
    std::vector<float> one(channel.size());
    for (const float pitch : call.pitches) {
      const float step = noteHertz(pitch) / call.rate;
      Sine rim, other, second, third;
      StateVariableFilter finger;
      finger.set(std::min(2 * noteHertz(pitch), 9000.0f), 5, call.rate);
      float level = 0, shiver = 1, gloss = 0;
      renderBlocks(
          one, call.rate,
          [&](float t) {
            level = gain * call.velocity * envelopeAt(shape, t, call.seconds);
            shiver = 1 + 0.14f * sineOfTurns(4.4f * t + 0.25f * side);
            gloss = call.brightness * (0.3f + 0.7f * std::exp(-t / 0.5f));
          },
          [&] {
            return level * shiver *
                   (0.5f * rim.next(step * 1.0005f) + 0.4f * other.next(step * 0.9995f) +
                    0.32f * gloss * second.next(step * 2.002f) + 0.32f * gloss * third.next(step * 4.01f) +
                    0.03f * finger.next(call.noise->next()).band);
          });
      for (std::size_t i = 0; i < channel.size(); ++i) channel[i] += one[i];
    }
  });
}

}  // namespace vex::synth
