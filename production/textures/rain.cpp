#include <cmath>

#include "production/image/filter.h"
#include "production/image/noise.h"
#include "production/textures/families.h"
#include "production/textures/palette.h"

namespace vex {

namespace {

// Threads of rain near the lens, each thin at its upper end; the player shows it upside down. Additive,
// tiles.
Canvas rain(const Settings& settings) {
  constexpr int columns = 64, drops = 3;  // of each column
  const int side = settings.side(512);
  return paintSmooth(side, side, 2, [](float u, float v) {
    const int column = static_cast<int>(u * columns);
    float light = 0;
    for (int i = 0; i < drops; ++i) {
      const auto chance = [&](std::uint32_t seed) { return hashUnit(column, i, seed); };
      const float across = (u * columns - static_cast<float>(column) - 0.2f - 0.6f * chance(990)) / 0.075f;
      const float length = 0.05f + 0.11f * chance(991);
      const float along = (v - chance(992) - std::floor(v - chance(992))) / length;
      if (along > 1) continue;
      light += chance(993) * std::exp(-across * across) * along * smoothStep(1.0f, 0.9f, along);
    }
    return gradient(tealRamp, 0.62f * light);
  });
}

// The ring that a drop throws, its crest sharp outside; it fades to nothing at the borders. Additive.
Canvas ring(const Settings& settings) {
  const int side = settings.side(256);
  return paint(side, side, [](float u, float v) {
    const float r = std::hypot(2 * u - 1, 2 * v - 1);
    const float crest = std::exp(-std::pow((r - 0.80f) / (r < 0.80f ? 0.10f : 0.035f), 2.0f));
    const float second = std::exp(-std::pow((r - 0.52f) / (r < 0.52f ? 0.10f : 0.04f), 2.0f));
    return gradient(tealRamp, (0.85f * crest + 0.32f * second) * smoothStep(0.97f, 0.86f, r));
  });
}

}  // namespace

Products rainPictures() {
  return {picture("rain", PictureKind::jpeg, "rain", 1, rain),
          picture("ring_teal", PictureKind::jpeg, "rain", 0.2f, ring)};
}

}  // namespace vex
