#include "production/synth/weather.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "production/synth/envelope.h"
#include "production/synth/render.h"

namespace vex::synth {

Voice makeBreath(const NoteCall& call) {
  const float throat = noteHertz(call.pitches.front());
  return renderSides(call.seconds, call.rate, [&](std::vector<float>& channel, float side) {
    std::array<StateVariableFilter, 3> bands;
    float level = 0;
    renderBlocks(
        channel, call.rate,
        [&](float t) {
          const float share = std::min(1.0f, t / call.seconds);
          const float wave = std::max(0.0f, sineOfTurns(0.5f * share));
          level = call.velocity * wave * std::sqrt(wave);
          const float open = 1 + 0.25f * wave + 0.02f * side;
          bands[0].set(throat * open, 3, call.rate);
          bands[1].set(throat * 2.7f * open, 4, call.rate);
          bands[2].set(throat * 6.1f * open, 2, call.rate);
        },
        [&] {
          const float air = call.noise->next();
          return level * (bands[0].next(air).band + 0.8f * bands[1].next(air).band +
                          (0.2f + 0.6f * call.brightness) * bands[2].next(air).band);
        });
  });
}

Voice makeRain(const NoteCall& call) {
  constexpr float ending = 2;  // s
  return renderSides(call.seconds, call.rate, [&](std::vector<float>& channel, float) {
    struct Drop {
      StateVariableFilter bubble;
      float push = 0;
    };
    std::array<Drop, 6> drops;
    std::size_t turn = 0;
    StateVariableFilter hissLow, hissHigh;
    hissLow.set(1800, 0.7f, call.rate);
    hissHigh.set(9000 + 5000 * call.brightness, 0.7f, call.rate);
    float level = 0, chance = 0;
    renderBlocks(
        channel, call.rate,
        [&](float t) {
          const float rise = std::min(1.0f, t / (0.25f * call.seconds));
          level = call.velocity * rise * std::clamp((call.seconds - t) / ending, 0.0f, 1.0f);
          chance = (8 + 50 * rise) / call.rate;  // drops a second
        },
        [&] {
          if (0.5f + 0.5f * call.noise->next() < chance) {
            Drop& drop = drops[turn++ % drops.size()];
            const float size = 0.5f + 0.5f * call.noise->next();
            drop.bubble.set(900 + 7600 * size * size, 14, call.rate);
            drop.push = 1.6f * (1.1f - size);
          }
          float sum = 0.13f * hissHigh.next(hissLow.next(call.noise->next()).high).low;
          for (Drop& drop : drops) {
            sum += drop.bubble.next(drop.push).band;
            drop.push *= 0.93f;
          }
          return level * sum;
        });
  });
}

Voice makeThunder(const NoteCall& call) {
  const float note = noteHertz(call.pitches.front());
  return renderSides(call.seconds, call.rate, [&](std::vector<float>& channel, float) {
    constexpr std::array ratios{1.0f, 1.4983f, 2.0f, 4.0f};
    constexpr std::array gains{1.0f, 0.6f, 0.8f, 0.3f};
    std::array<StateVariableFilter, ratios.size()> rings;
    for (std::size_t i = 0; i < rings.size(); ++i) rings[i].set(note * ratios[i], 14, call.rate);
    StateVariableFilter rumble, crack, splitLow, splitHigh;
    crack.set(1800, 0.5f, call.rate);
    splitLow.set(2000, 0.7f, call.rate);
    splitHigh.set(9000, 0.7f, call.rate);
    Sine sub;
    Decay flash(0.035f, call.rate), split(0.012f, call.rate);
    float again = 0.08f;  // s: the air splits twice
    float roll = 1, wanted = 1, level = 0, next = 0;
    renderBlocks(
        channel, call.rate,
        [&](float t) {
          // The roll jumps about nine times a second between loud and soft.
          if (t >= next) {
            wanted = 0.25f + 0.75f * std::abs(call.noise->next());
            next += 0.07f + 0.1f * std::abs(call.noise->next());
          }
          if (t >= again) {
            split.value = 1;
            again = call.seconds;
          }
          const float left = std::max(0.0f, 1 - t / call.seconds);
          level = call.velocity * left * left;
          rumble.set(120 + (300 + 2600 * call.brightness) * left * left * left, 0.7f, call.rate);
        },
        [&] {
          roll += 0.0006f * (wanted - roll);
          const float raw = call.noise->next();
          const float body = roll * raw;
          float sum = 0.8f * rumble.next(body).low + 1.6f * flash.next() * crack.next(raw).band;
          sum += 2.0f * split.next() * splitHigh.next(splitLow.next(raw).high).low;
          for (std::size_t i = 0; i < rings.size(); ++i) sum += 2.6f * gains[i] * rings[i].next(body).band;
          sum += 0.5f * roll * sub.next(note / call.rate);
          return softClip(1.2f * level * sum);
        });
  });
}

}  // namespace vex::synth
