#include "studio/show/grain.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <span>

namespace vex::studio {

namespace {

// One sample, moved towards silence.
void scaleSample(std::byte* sample, int bytesPerSample, double factor) {
  if (bytesPerSample == 1) {
    const int value = std::to_integer<int>(*sample) - 128;
    *sample = static_cast<std::byte>(128 + static_cast<int>(value * factor));
    return;
  }
  std::int16_t value = 0;
  std::memcpy(&value, sample, sizeof value);
  value = static_cast<std::int16_t>(value * factor);
  std::memcpy(sample, &value, sizeof value);
}

}  // namespace

std::vector<std::byte> readGrain(SoundFile& music, double seconds) {
  const auto frameBytes = static_cast<std::size_t>(music.frameBytes());
  std::vector<std::byte> samples(static_cast<std::size_t>(grainSeconds * music.rate) * frameBytes);
  const double first = std::floor(std::max(0.0, seconds) * music.rate);
  if (!(first < music.frames) || !seekSound(music, static_cast<std::uint32_t>(first))) return {};
  samples.resize(readSound(music, samples));
  const std::size_t frames = samples.size() / frameBytes;
  const double fade = grainFadeSeconds * music.rate;
  for (std::size_t frame = 0; frame < frames; ++frame) {
    const auto fromEnd = static_cast<double>(std::min(frame, frames - 1 - frame));
    if (fromEnd >= fade) continue;
    for (int channel = 0; channel < music.channels; ++channel)
      scaleSample(&samples[frame * frameBytes + static_cast<std::size_t>(channel * music.bytesPerSample)],
                  music.bytesPerSample, fromEnd / fade);
  }
  return samples;
}

}  // namespace vex::studio
