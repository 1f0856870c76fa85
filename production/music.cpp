#include "production/music.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>

#include "platform/ogg_encoder.h"
#include "production/cues.h"
#include "production/song/band.h"
#include "production/song/score.h"
#include "production/synth/effects.h"
#include "production/synth/filter.h"
#include "production/synth/master.h"
#include "shell/report.h"

namespace vex {

namespace {

std::vector<DuckHit> duckHits() {
  std::vector<DuckHit> hits;
  for (const DrumLine& line : drumScore()) {
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

// All buses, ducked and with their effects, in one track.
StereoTrack mixDown(Mix& mix) {
  const std::size_t size = mix.track(Bus::free).left.size();
  StereoTrack& wide = mix.track(Bus::wide);
  applyChorus(wide.left, wide.right, 0.5f, mix.rate);

  StereoTrack room{std::vector<float>(size), std::vector<float>(size)};
  StereoTrack& toEcho = mix.track(Bus::echo);
  StereoTrack& toReverb = mix.track(Bus::reverb);
  StereoTrack echoes{std::vector<float>(size), std::vector<float>(size)};
  addEcho({.seconds = static_cast<float>(0.75 * secondsPerBeat)}, toEcho.left, toEcho.right, echoes.left,
          echoes.right, mix.rate);
  add(toReverb, echoes, 0.3f);
  addReverb({}, toReverb.left, toReverb.right, room.left, room.right, mix.rate);

  const std::vector<DuckHit> hits = duckHits();
  const auto curve = [&](Duck duck) { return makeDuckCurve(duck, hits, size, mix.rate); };
  multiply(mix.track(Bus::bass), curve({.depth = 0.9f, .recover = 0.16f}));
  multiply(wide, curve({.depth = 0.7f, .recover = 0.33f}));
  multiply(mix.track(Bus::front), curve({.depth = 0.35f, .recover = 0.2f}));
  const std::vector<float> roomCurve = curve({.depth = 0.5f, .recover = 0.3f});
  multiply(room, roomCurve);
  multiply(echoes, roomCurve);

  StereoTrack sum{std::vector<float>(size), std::vector<float>(size)};
  for (const Bus bus : {Bus::drums, Bus::bass, Bus::front, Bus::wide, Bus::free}) add(sum, mix.track(bus), 1);
  add(sum, echoes, 1);
  add(sum, room, 1);
  return sum;
}

// The score's passages that run backwards: what led up to them, mirrored, shut in more and more.
void rewind(StereoTrack& track, float rate) {
  for (const Rewind& passage : rewindScore()) {
    const auto middle = static_cast<std::size_t>(std::lround(cueSeconds(passage.bar) * rate));
    const auto count = static_cast<std::size_t>(std::lround(cueSeconds(passage.bars) * rate));
    const auto fade = static_cast<std::size_t>(0.006f * rate);
    for (std::vector<float>* channel : {&track.left, &track.right}) {
      std::array<StateVariableFilter, 2> cuts;
      for (std::size_t i = 0; i < count; ++i) {
        if (i % controlBlock == 0) {
          const double bar = static_cast<double>(middle + i) / rate / secondsPerBar;
          for (StateVariableFilter& cut : cuts) cut.set(curveAt("rewind cut", bar, 20000), 0.9f, rate);
        }
        const std::size_t edge = std::min(i, count - i);
        const float gain = edge < fade ? static_cast<float>(edge) / static_cast<float>(fade) : 1.0f;
        (*channel)[middle + i] += gain * cuts[1].next(cuts[0].next((*channel)[middle - 1 - i]).low).low;
      }
    }
  }
}

// The score's curves of the whole mix, a block at a time.
void followCurves(StereoTrack& track, float rate) {
  constexpr std::size_t block = 64;
  std::array<StateVariableFilter, 2> cuts;
  float lastGain = 0;
  for (std::size_t start = 0; start < track.left.size(); start += block) {
    const double bar = static_cast<double>(start) / rate / secondsPerBar;
    const float gain = std::pow(10.0f, curveAt("fader", bar, 0) / 20);
    for (StateVariableFilter& cut : cuts) cut.set(curveAt("low cut", bar, 20), 0.707f, rate);
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
    const double out = std::clamp((length - 0.1 - t) / 2.2, 0.0, 1.0);
    const auto gain = static_cast<float>(in * out * out);
    track.left[i] *= gain;
    track.right[i] *= gain;
  }
}

}  // namespace

StereoSound renderMusic(MixQuality quality) {
  const int rate = quality == MixQuality::full ? 44100 : 22050;
  const auto rateHertz = static_cast<float>(rate);
  Mix mix = makeMix(musicSeconds, rateHertz);
  playScore(mix);
  StereoTrack sum = mixDown(mix);

  // Figures found by measuring: -14 LUFS, and 0.5 dB between the ceiling and -1 dBFS for what the
  // encoder adds.
  constexpr float loudness = 0.96f;
  constexpr float ceiling = 0.81f;
  rewind(sum, rateHertz);
  followCurves(sum, rateHertz);
  narrowLowEnd(sum.left, sum.right, 120, rateHertz);
  compress({}, sum.left, sum.right, rateHertz);
  for (std::vector<float>* channel : {&sum.left, &sum.right}) {
    for (float& sample : *channel) sample *= loudness;
  }
  limit(sum.left, sum.right, ceiling, rateHertz);
  fadeEnds(sum, rateHertz);
  return {rate, std::move(sum.left), std::move(sum.right)};
}

std::vector<std::byte> makeMusic(MixQuality quality) {
  const StereoSound sound = renderMusic(quality);
  std::string error;
  std::vector<std::byte> file = encodeOgg(sound.left, sound.right, sound.sampleRate, 0.6, error);
  if (file.empty()) fatalError("music: %s", error.c_str());
  return file;
}

}  // namespace vex
