#include <cmath>

#include "production/image/filter.h"
#include "production/image/noise.h"
#include "production/textures/families.h"
#include "production/textures/palette.h"

namespace vex {

using namespace image;

namespace {

// Threads of rain near the lens, driven aslant, each thin at its upper end; the player shows it upside down.
// Additive, tiles.
Canvas rain(const Settings& settings) {
  constexpr int columns = 72, drops = 6;  // of each column
  constexpr int driven = 9;               // columns from edge to edge
  const int side = settings.side(512);
  return paintSmooth(side, side, 2, [](float u, float v) {
    const float place = u * columns + v * driven;
    const int column = static_cast<int>(place) % columns;
    float light = 0;
    for (int i = 0; i < drops; ++i) {
      const auto chance = [&](std::uint32_t seed) { return hashUnit(column, i, seed); };
      const float across = (place - std::floor(place) - 0.2f - 0.6f * chance(990)) / 0.075f;
      const float nearness = chance(993) * chance(994), length = 0.05f + 0.22f * nearness;
      const float along = (v - chance(992) - std::floor(v - chance(992))) / length;
      if (along > 1) continue;
      light += (0.3f + 0.9f * nearness) * std::exp(-across * across) * along * smoothStep(1.0f, 0.9f, along);
    }
    return gradient(tealRamp, 0.72f * light);
  });
}

// The ring that a drop throws, its crest sharp outside and lit from behind, broken by the swell; it fades to
// nothing at the borders. Additive.
Canvas ring(const Settings& settings) {
  const int side = settings.side(256);
  return paint(side, side, [](float u, float v) {
    const float r = std::hypot(2 * u - 1, 2 * v - 1);
    const float crest = std::exp(-std::pow((r - 0.80f) / (r < 0.80f ? 0.10f : 0.035f), 2.0f));
    const float second = std::exp(-std::pow((r - 0.52f) / (r < 0.52f ? 0.10f : 0.04f), 2.0f));
    const float angle = std::atan2(2 * v - 1, 2 * u - 1), behind = 0.5f - 0.5f * std::sin(angle);
    const float swell = 0.5f + 0.5f * gradientNoise(std::cos(angle) * 5 + 9, std::sin(angle) * 5 + 9, 0, 995);
    const float lit = (0.22f + 0.78f * behind * behind) * (0.35f + 0.65f * smoothStep(0.3f, 0.7f, swell));
    return gradient(tealRamp, lit * (0.95f * crest + 0.4f * second) * smoothStep(0.97f, 0.86f, r));
  });
}

}  // namespace

Products rainPictures() {
  return {picture("rain", PictureKind::jpeg, 1, rain), picture("ring_teal", PictureKind::jpeg, 0.2f, ring)};
}

}  // namespace vex
