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

}  // namespace

Products rainPictures() {
  return {picture("rain", PictureKind::jpeg, "rain", 1, rain)};
}

}  // namespace vex
