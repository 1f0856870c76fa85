#include "production/music.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <utility>

#include "base/report.h"
#include "platform/ogg_encoder.h"
#include "production/song/band.h"
#include "production/song/cues.h"
#include "production/song/score.h"
#include "production/synth/effects.h"
#include "production/synth/filter.h"
#include "production/synth/master.h"

namespace vex {

using namespace image;
using namespace synth;
using namespace song;

namespace {

std::vector<DuckHit> duckHits(const Score& score) {
  std::vector<DuckHit> hits;
  for (const DrumLine& line : score.drums) {
    if (line.drum != "kick") continue;
    for (const DrumHit& hit : readDrums(line)) hits.push_back({cueSeconds(hit.bar), hit.velocity});
  }
  return hits;
}

void multiply(StereoTrack& track, const std::vector<float>& curve) {
  for (std::vector<float>* channel : {&track.left, &track.right}) {
    for (std::size_t i = 0; i < channel->size(); ++i) (*channel)[i] *= curve[i];
  }
}

void add(StereoTrack& target, const StereoTrack& source, float gain) {
  for (std::size_t i = 0; i < target.left.size(); ++i) {
    target.left[i] += gain * source.left[i];
    target.right[i] += gain * source.right[i];
  }
}

// Brings the sides nearer to the middle, so that a single loudspeaker loses little of them.
void closeUp(StereoTrack& track) {
  constexpr float kept = 0.75f;
  for (std::size_t i = 0; i < track.left.size(); ++i) {
    const float middle = 0.5f * (track.left[i] + track.right[i]);
    const float side = kept * 0.5f * (track.left[i] - track.right[i]);
    track.left[i] = middle + side;
    track.right[i] = middle - side;
  }
}

// All buses, ducked and with their effects, in one track. Each bus is given up as soon as it is in the sum:
// four minutes of them all take most of a gigabyte.
StereoTrack mixDown(Mix& mix, const Score& score) {
  const std::size_t size = mix.track(Bus::free).left.size();
  const std::vector<DuckHit> hits = duckHits(score);
  StereoTrack sum = std::exchange(mix.track(Bus::drums), {});
  const auto take = [&](StereoTrack& track, Duck duck) {
    multiply(track, makeDuckCurve(duck, hits, size, mix.rate));
    add(sum, track, 1);
    track = {};
  };
  add(sum, std::exchange(mix.track(Bus::free), {}), 1);
  take(mix.track(Bus::bass), {.depth = 0.55f, .recover = 0.085f});
  take(mix.track(Bus::front), {.depth = 0.18f, .recover = 0.12f});
  StereoTrack& wide = mix.track(Bus::wide);
  applyChorus(wide.left, wide.right, 0.5f, mix.rate);
  closeUp(wide);
  take(wide, {.depth = 0.45f, .recover = 0.20f});

  constexpr Duck roomDuck{.depth = 0.5f, .recover = 0.3f};
  StereoTrack echoes{std::vector<float>(size), std::vector<float>(size)};
  StereoTrack& toEcho = mix.track(Bus::echo);
  addEcho({.seconds = static_cast<float>(0.75 * secondsPerBeat)}, toEcho.left, toEcho.right, echoes.left,
          echoes.right, mix.rate);
  toEcho = {};
  StereoTrack& toReverb = mix.track(Bus::reverb);
  add(toReverb, echoes, 0.3f);
  take(echoes, roomDuck);
  StereoTrack room{std::vector<float>(size), std::vector<float>(size)};
  addReverb({}, toReverb.left, toReverb.right, room.left, room.right, mix.rate);
  toReverb = {};
  closeUp(room);
  take(room, roomDuck);
  return sum;
}

// The score's passages that run backwards: what led up to them, mirrored, shut in more and more.
void rewind(StereoTrack& track, const Score& score, float rate) {
  for (const Rewind& passage : score.rewinds) {
    const auto middle = static_cast<std::size_t>(std::lround(cueSeconds(passage.bar) * rate));
    const auto count = static_cast<std::size_t>(std::lround(cueSeconds(passage.bars) * rate));
    const auto fade = static_cast<std::size_t>(0.006f * rate);
    for (std::vector<float>* channel : {&track.left, &track.right}) {
      std::array<StateVariableFilter, 2> cuts;
      for (std::size_t i = 0; i < count; ++i) {
        if (i % controlBlock == 0) {
          const double bar = static_cast<double>(middle + i) / rate / secondsPerBar;
          for (StateVariableFilter& cut : cuts) cut.set(curveAt(score, "rewind cut", bar, 20000), 0.9f, rate);
        }
        const std::size_t edge = std::min(i, count - i);
        const float gain = edge < fade ? static_cast<float>(edge) / static_cast<float>(fade) : 1.0f;
        (*channel)[middle + i] += gain * cuts[1].next(cuts[0].next((*channel)[middle - 1 - i]).low).low;
      }
    }
  }
}

// The score's curves of the whole mix, a block at a time.
void followCurves(StereoTrack& track, const Score& score, float rate) {
  constexpr std::size_t block = 64;
  std::array<StateVariableFilter, 2> cuts;
  float lastGain = 0;
  for (std::size_t start = 0; start < track.left.size(); start += block) {
    const double bar = static_cast<double>(start) / rate / secondsPerBar;
    const float gain = std::pow(10.0f, curveAt(score, "fader", bar, 0) / 20);
    for (StateVariableFilter& cut : cuts) cut.set(curveAt(score, "low cut", bar, 20), 0.707f, rate);
    const std::size_t stop = std::min(start + block, track.left.size());
    for (std::size_t i = start; i < stop; ++i) {
      const float now = lastGain + (gain - lastGain) * static_cast<float>(i - start) / block;
      track.left[i] = now * cuts[0].next(track.left[i]).high;
      track.right[i] = now * cuts[1].next(track.right[i]).high;
    }
    lastGain = gain;
  }
}

// Both ends are silent: 20 ms at the start, and all that is left of the tail is gone 0.1 s before the end.
void fadeEnds(StereoTrack& track, float rate) {
  const double length = static_cast<double>(track.left.size()) / rate;
  for (std::size_t i = 0; i < track.left.size(); ++i) {
    const double t = static_cast<double>(i) / rate;
    const double in = std::clamp((t - 0.02) / 0.05, 0.0, 1.0);
    const double out = std::clamp((length - 0.1 - t) / 1.2, 0.0, 1.0);
    const auto gain = static_cast<float>(in * out * out);
    track.left[i] *= gain;
    track.right[i] *= gain;
  }
}

}  // namespace

StereoSound renderMusic(MixQuality quality, Arrangement sections) {
  const int rate = quality == MixQuality::full ? 44100 : 22050;
  const auto rateHertz = static_cast<float>(rate);
  const Score score = writeScore(sections);
  Mix mix = makeMix(cueSeconds(barCount(sections)) + tailSeconds, rateHertz);
  playScore(mix, score);
  StereoTrack sum = mixDown(mix, score);

  // Figures found by measuring: -14 LUFS, and 0.5 dB between the ceiling and -1 dBFS for what the
  // encoder adds.
  constexpr float loudness = 0.61f;
  constexpr float ceiling = 0.81f;
  rewind(sum, score, rateHertz);
  followCurves(sum, score, rateHertz);
  narrowLowEnd(sum.left, sum.right, 120, rateHertz);
  compress({}, sum.left, sum.right, rateHertz);
  for (std::vector<float>* channel : {&sum.left, &sum.right}) {
    for (float& sample : *channel) sample *= loudness;
  }
  limit(sum.left, sum.right, ceiling, rateHertz);
  fadeEnds(sum, rateHertz);
  return {rate, std::move(sum.left), std::move(sum.right)};
}

std::vector<std::byte> makeMusic(MixQuality quality, Arrangement sections) {
  const StereoSound sound = renderMusic(quality, sections);
  std::string error;
  std::vector<std::byte> file = encodeOgg(sound.left, sound.right, sound.sampleRate, 0.6, error);
  if (file.empty()) fatalError("music: %s", error.c_str());
  return file;
}

Products musicFile() {
  Product product;
  product.outputs = {"data/vex.ogg"};
  product.source = __FILE__;
  product.work = 40;
  product.make = [](const Settings& settings) {
    return std::vector<Bytes>{makeMusic(settings.draft ? MixQuality::draft : MixQuality::full)};
  };
  return {product};
}

}  // namespace vex
