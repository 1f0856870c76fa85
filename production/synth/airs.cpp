#include "production/synth/airs.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "production/synth/envelope.h"
#include "production/synth/render.h"

namespace vex::synth {

namespace {

struct Formant {
  float closed, open;          // hertz for "oo" and for "ah"
  float closedGain, openGain;  // peak gains
  float quality;
};

// Averages of sung vowels between tenor and alto.
constexpr std::array formants{
    Formant{360, 740, 1.00f, 1.00f, 6},
    Formant{700, 1180, 0.35f, 0.60f, 8},
    Formant{2500, 2850, 0.06f, 0.34f, 10},
    Formant{3300, 3650, 0.03f, 0.22f, 11},
};

struct Singer {
  Saw saw;
  float step, vibratoPace, vibratoPhase;
};

Voice sing(const NoteCall& call, const EnvelopeShape& shape) {
  return renderSides(call.seconds + shape.release, call.rate, [&](std::vector<float>& channel, float) {
    std::vector<Singer> singers;
    for (const float pitch : call.pitches) {
      for (int i = 0; i < 2; ++i) {
        const float detune = cents(9 * call.noise->next());
        singers.push_back({{0.5f + 0.49f * call.noise->next()},
                           noteHertz(pitch) * detune / call.rate,
                           5.2f + 0.7f * call.noise->next(),
                           call.noise->next()});
      }
    }
    const float gain = 1.3f / std::sqrt(static_cast<float>(singers.size()));
    std::vector<float> bends(singers.size());
    std::array<StateVariableFilter, formants.size()> filters;
    std::array<float, formants.size()> gains{};
    StateVariableFilter body;
    body.set(420, 0.7f, call.rate);
    renderNote(
        channel, call, shape,
        [&](float t) {
          const float open = std::clamp(call.brightness * (0.55f + 0.6f * t / call.seconds), 0.0f, 1.0f);
          for (std::size_t f = 0; f < formants.size(); ++f) {
            const Formant& formant = formants[f];
            filters[f].set(formant.closed + (formant.open - formant.closed) * open, formant.quality,
                           call.rate);
            gains[f] = formant.closedGain + (formant.openGain - formant.closedGain) * open;
          }
          for (std::size_t s = 0; s < singers.size(); ++s) {
            bends[s] = singers[s].step *
                       (1 + 0.0055f * sineOfTurns(t * singers[s].vibratoPace + singers[s].vibratoPhase));
          }
        },
        [&](float level) {
          float raw = 0.10f * call.noise->next();
          for (std::size_t s = 0; s < singers.size(); ++s) raw += gain * singers[s].saw.next(bends[s]);
          float sum = 0.14f * body.next(raw).low;
          for (std::size_t f = 0; f < formants.size(); ++f) sum += gains[f] * filters[f].next(raw).band;
          return level * sum;
        });
  });
}

// Noise and a saw whose pitch and loudness follow `climb`, 0 to 1.
template <typename Climb>
Voice makeSweep(const NoteCall& call, Climb climb) {
  return renderSides(call.seconds, call.rate, [&](std::vector<float>& channel, float side) {
    StateVariableFilter band, toneCut;
    Saw first, second{0.3f};
    float level = 0, step = 0;
    renderBlocks(
        channel, call.rate,
        [&](float t) {
          const float rise = climb(t / call.seconds);
          const float ends = std::min({1.0f, t / 0.02f, (call.seconds - t) / 0.004f});
          level = call.velocity * rise * rise * ends;
          band.set(300 * std::exp2(5.2f * rise), 1.4f + 1.6f * rise, call.rate);
          step = noteHertz(call.pitches.front() + 24 * rise) * (1 + 0.004f * side) / call.rate;
          toneCut.set(400 + 5000 * rise, 0.8f, call.rate);
        },
        [&] {
          const float tone = toneCut.next(first.next(step) + second.next(step * 1.498f)).low;
          return level * (0.9f * band.next(call.noise->next()).band + 0.16f * tone);
        });
  });
}

}  // namespace

Voice makeChoir(const NoteCall& call) {
  return sing(call,
              {std::min(0.5f, 0.3f * call.seconds), 1, 0.95f, std::min(0.8f, 0.25f + 0.3f * call.seconds)});
}

Voice makeSwell(const NoteCall& call) {
  return sing(call, {0.96f * call.seconds, 1, 1, 0.25f});
}

Voice makeChoirStab(const NoteCall& call) {
  return sing(call, {0.012f, 0.3f, 0.5f, 0.22f});
}

Voice makeRiser(const NoteCall& call) {
  return makeSweep(call, [](float t) { return t; });
}

Voice makeFall(const NoteCall& call) {
  return makeSweep(call, [](float t) { return (1 - t) * (1 - t); });
}

Voice makeCrackle(const NoteCall& call) {
  return renderSides(call.seconds, call.rate, [&](std::vector<float>& channel, float) {
    StateVariableFilter snap, rumble;
    rumble.set(700, 0.7f, call.rate);
    float spark = 0;
    for (std::size_t i = 0; i < channel.size(); ++i) {
      const float t = static_cast<float>(i) / call.rate;
      const float ends = std::min({1.0f, t / 1.5f, (call.seconds - t) / 0.5f});
      // Nine sparks a second on average, of uneven size and colour.
      if (call.noise->next() > 1 - 18 / call.rate) {
        const float size = call.noise->next();
        spark = size * size * size;
        snap.set(2600 + 1900 * call.noise->next(), 2.5f, call.rate);
      }
      const float hiss = 0.006f * call.noise->next() + 0.02f * rumble.next(call.noise->next()).low;
      channel[i] = call.velocity * ends * (1.5f * snap.next(spark).band + hiss);
      spark *= 0.9f;
    }
  });
}

}  // namespace vex::synth
