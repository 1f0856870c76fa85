#include "production/synth/mix.h"

#include <algorithm>
#include <cmath>

namespace vex::synth {

Mix makeMix(double seconds, float rate) {
  Mix mix;
  mix.rate = rate;
  const auto size = static_cast<std::size_t>(std::lround(seconds * rate));
  for (StereoTrack& track : mix.tracks) {
    track.left.resize(size);
    track.right.resize(size);
  }
  return mix;
}

void addVoice(Mix& mix, const Voice& voice, const Placement& place, double seconds, float gain) {
  const long start = std::lround(seconds * mix.rate);
  const long size = static_cast<long>(mix.track(place.bus).left.size());
  const long skip = std::max(0L, -start);
  const long count = std::min(static_cast<long>(voice.left.size()), size - start);
  const std::vector<float>& voiceRight = voice.right.empty() ? voice.left : voice.right;
  const auto add = [&](std::vector<float>& target, const std::vector<float>& source, float amount) {
    if (amount == 0) return;
    for (long i = skip; i < count; ++i) {
      target[static_cast<std::size_t>(start + i)] += amount * source[static_cast<std::size_t>(i)];
    }
  };
  const float level = gain * place.gain;
  const float left = level * std::min(1.0f, 1 - place.pan), right = level * std::min(1.0f, 1 + place.pan);
  for (const auto& [bus, share] :
       {std::pair{place.bus, 1.0f}, std::pair{Bus::reverb, place.reverb}, std::pair{Bus::echo, place.echo}}) {
    add(mix.track(bus).left, voice.left, left * share);
    add(mix.track(bus).right, voiceRight, right * share);
  }
}

}  // namespace vex::synth
