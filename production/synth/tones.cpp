#include "production/synth/tones.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "production/synth/envelope.h"
#include "production/synth/filter.h"
#include "production/synth/render.h"

namespace vex::synth {

namespace {

// Saws side by side, for all pitches of a chord, spread in cents and different in each channel.
struct SawStack {
  std::vector<Saw> saws;
  std::vector<float> steps;

  SawStack(const NoteCall& call, int perNote, float spread, float offset) {
    for (const float pitch : call.pitches) {
      for (int i = 0; i < perNote; ++i) {
        const float place =
            perNote == 1 ? 0.0f : 2.0f * static_cast<float>(i) / static_cast<float>(perNote - 1) - 1;
        steps.push_back(noteHertz(pitch) * cents(spread * place + offset) / call.rate);
        saws.push_back({0.5f + 0.499f * call.noise->next()});
      }
    }
  }

  float next(float bend = 1) {
    float sum = 0;
    for (std::size_t i = 0; i < saws.size(); ++i) sum += saws[i].next(steps[i] * bend);
    return sum;
  }

  float gain() const { return 1 / std::sqrt(static_cast<float>(saws.size())); }
};

}  // namespace

Voice makeDrone(const NoteCall& call) {
  constexpr EnvelopeShape shape{2.6f, 1, 1, 1.2f};
  return renderSides(call.seconds + shape.release, call.rate, [&](std::vector<float>& channel, float side) {
    SawStack saws(call, 2, 5, 6 * side);
    LadderFilter filter;
    const float phase = side * 0.25f;  // it opens on one side while it closes on the other
    renderNote(
        channel, call, shape,
        [&](float t) {
          const float rise = t / call.seconds;
          const float wave = sineOfTurns(t / 7.3f + phase) + 0.5f * sineOfTurns(t / 3.1f - phase);
          filter.set((130 + 700 * rise * rise * rise) * std::exp2(0.5f * wave), 1.6f, call.rate);
        },
        [&](float level) { return level * filter.next(0.7f * saws.gain() * saws.next()); });
    // Overtones of the lowest note, each swelling at its own pace.
    constexpr std::array partials{5.0f, 7.02f, 9.0f, 11.03f, 13.0f, 16.05f, 21.0f, 27.1f};
    for (std::size_t p = 0; p < partials.size(); ++p) {
      Sine sine;
      const float step = noteHertz(call.pitches.front()) * partials[p] / call.rate;
      const float pace = 2.3f + 1.37f * static_cast<float>(p);
      std::vector<float> partial(channel.size());
      float loud = 0;
      renderBlocks(
          partial, call.rate,
          [&](float t) {
            const float wave = std::max(0.0f, sineOfTurns(t / pace + 0.21f * side * static_cast<float>(p)));
            loud = call.velocity * 0.022f * wave * wave * envelopeAt(shape, t, call.seconds);
          },
          [&] { return loud * sine.next(step); });
      for (std::size_t i = 0; i < partial.size(); ++i) channel[i] += partial[i];
    }
  });
}

Voice makePulseBass(const NoteCall& call) {
  constexpr EnvelopeShape shape{0.003f, 0.25f, 0.55f, 0.05f};
  Pulse pulse;
  Sine sub;
  LadderFilter filter;
  float step = 0;
  return renderNote(
      call, shape,
      [&](float t) {
        step = glidedStep(call, t);
        filter.set(110 + (350 + 2600 * call.brightness) * call.velocity * std::exp(-t / 0.09f), 2.1f,
                   call.rate);
      },
      [&](float level) {
        return level * (0.75f * filter.next(pulse.next(step, 0.38f)) + 0.6f * sub.next(step));
      });
}

Voice makeDriveBass(const NoteCall& call) {
  constexpr EnvelopeShape shape{0.003f, 0.35f, 0.75f, 0.035f};
  Saw first, second{0.37f};
  Pulse pulse;
  Sine sub;
  LadderFilter filter;
  StateVariableFilter lowCut;
  lowCut.set(95, 0.707f, call.rate);  // leaves the bottom to the clean sine
  float step = 0;
  return renderNote(
      call, shape,
      [&](float t) {
        step = glidedStep(call, t);
        const float wobble = 1 + 0.25f * sineOfTurns(t * 8.533f);  // once in a quarter of a beat
        filter.set(
            (160 + 500 * call.brightness + 4200 * call.brightness * call.velocity * std::exp(-t / 0.11f)) *
                wobble,
            2.4f, call.rate);
      },
      [&](float level) {
        const float raw =
            0.7f * (first.next(step * 1.006f) + second.next(step * 0.994f)) + 0.5f * pulse.next(step, 0.3f);
        const float driven = softClip(2.6f * filter.next(1.3f * raw));
        return level * (0.62f * lowCut.next(driven).high + 0.6f * sub.next(step));
      });
}

Voice makeMetalBass(const NoteCall& call) {
  constexpr EnvelopeShape shape{0.002f, 0.22f, 0.6f, 0.04f};
  Sine body, clang, grit, sub;
  float carrier = 0;
  StateVariableFilter lowCut;
  lowCut.set(95, 0.707f, call.rate);  // leaves the bottom to the clean sine
  float step = 0, bodyIndex = 0, clangIndex = 0, gritIndex = 0;
  return renderNote(
      call, shape,
      [&](float t) {
        step = glidedStep(call, t);
        // Indices in turns of phase. The iron rings at once and is gone; a growl stays.
        const float wobble = 1 + 0.3f * sineOfTurns(t * 4.267f);  // once in half a beat
        bodyIndex = (0.10f + 0.16f * call.brightness) * wobble;
        clangIndex = (0.10f + 0.75f * call.brightness * call.velocity) * std::exp(-t / 0.11f);
        gritIndex = 0.35f * call.brightness * std::exp(-t / 0.05f);
      },
      [&](float level) {
        const float phase = carrier + bodyIndex * body.next(step) + clangIndex * clang.next(step * 3.517f) +
                            gritIndex * grit.next(step * 11.39f);
        carrier = wrapPhase(carrier + step);
        const float driven = softClip(2.2f * sineOfTurns(phase));
        return level * (0.6f * lowCut.next(driven).high + 0.6f * sub.next(step));
      });
}

Voice makeLead(const NoteCall& call) {
  constexpr EnvelopeShape shape{0.006f, 0.5f, 0.72f, 0.16f};
  return renderSides(call.seconds + shape.release, call.rate, [&](std::vector<float>& channel, float side) {
    SawStack saws(call, 3, 11, 3.5f * side);
    Pulse pulse{0.25f};
    StateVariableFilter filter;
    float bend = 1, width = 0.5f;
    const float step = noteHertz(call.pitches.front()) / call.rate;
    renderNote(
        channel, call, shape,
        [&](float t) {
          const float vibrato = 9 * std::clamp((t - 0.22f) / 0.3f, 0.0f, 1.0f) * sineOfTurns(t * 5.6f);
          bend = std::exp2((glidedPitch(call, t) - call.pitches.front()) / 12) * cents(vibrato);
          width = 0.42f + 0.12f * sineOfTurns(t * 0.9f + 0.25f * side);
          const float open = 1700 + 7500 * call.brightness * (0.45f + 0.55f * std::exp(-t / 0.25f));
          filter.set(open, 1.1f, call.rate);
        },
        [&](float level) {
          const float raw = 0.55f * saws.gain() * saws.next(bend) + 0.35f * pulse.next(step * bend, width);
          return level * softClip(1.7f * filter.next(raw).low) * 0.8f;
        });
  });
}

Voice makeCounter(const NoteCall& call) {
  constexpr EnvelopeShape shape{0.012f, 0.4f, 0.7f, 0.2f};
  return renderSides(call.seconds + shape.release, call.rate, [&](std::vector<float>& channel, float side) {
    Pulse first, second{0.4f};
    StateVariableFilter filter;
    float step = 0, width = 0.2f;
    renderNote(
        channel, call, shape,
        [&](float t) {
          const float vibrato = 7 * std::min(1.0f, t / 0.4f) * sineOfTurns(t * 5.1f);
          step = noteHertz(glidedPitch(call, t)) * cents(vibrato + 4 * side) / call.rate;
          width = 0.22f + 0.08f * sineOfTurns(t * 0.7f + 0.2f * side);
          filter.set(900 + 3600 * call.brightness, 1.6f, call.rate);
        },
        [&](float level) {
          return level * 0.6f *
                 filter.next(0.7f * (first.next(step, width) + second.next(step * 0.5f, 0.5f))).low;
        });
  });
}

Voice makeStab(const NoteCall& call) {
  constexpr EnvelopeShape shape{0.002f, 0.3f, 0.45f, 0.14f};
  return renderSides(call.seconds + shape.release, call.rate, [&](std::vector<float>& channel, float side) {
    SawStack saws(call, 3, 16, 5 * side);
    StateVariableFilter filter, lowCut;
    lowCut.set(160, 0.707f, call.rate);
    float dust = 0;
    renderNote(
        channel, call, shape,
        [&](float t) {
          dust = 0.9f * std::exp(-t / 0.012f);
          filter.set(500 + 9000 * call.velocity * std::exp(-t / 0.13f), 1.3f, call.rate);
        },
        [&](float level) {
          const float raw = saws.gain() * saws.next() + dust * call.noise->next();
          return level * lowCut.next(softClip(1.6f * filter.next(raw).low)).high;
        });
  });
}

Voice makePad(const NoteCall& call) {
  constexpr EnvelopeShape shape{0.35f, 1, 0.9f, 0.7f};
  return renderSides(call.seconds + shape.release, call.rate, [&](std::vector<float>& channel, float side) {
    SawStack saws(call, 2, 9, 4 * side);
    StateVariableFilter filter, lowCut;
    lowCut.set(140, 0.707f, call.rate);
    renderNote(
        channel, call, shape,
        [&](float t) {
          filter.set(500 + 3800 * call.brightness * (0.8f + 0.2f * sineOfTurns(t / 3.7f + 0.2f * side)), 0.8f,
                     call.rate);
        },
        [&](float level) { return level * lowCut.next(filter.next(saws.gain() * saws.next()).low).high; });
  });
}

Voice makeArp(const NoteCall& call) {
  constexpr EnvelopeShape shape{0.002f, 0.12f, 0.25f, 0.06f};
  Pulse pulse;
  StateVariableFilter filter;
  const float step = noteHertz(call.pitches.front()) / call.rate;
  return renderNote(
      call, shape,
      [&](float t) { filter.set(700 + 6500 * call.brightness * std::exp(-t / 0.06f), 1.5f, call.rate); },
      [&](float level) { return level * 0.7f * filter.next(pulse.next(step, 0.5f)).low; });
}

}  // namespace vex::synth
