#include <cmath>

#include "production/image/environment.h"
#include "production/image/shape.h"
#include "production/textures/families.h"
#include "production/textures/mirror_worlds.h"

namespace vex {

namespace {

// A mirror ball, cut out of its own sphere map.
Canvas orb(const Settings& settings, const Environment& world) {
  const int side = settings.side(256);
  Canvas map = sphereMap(world, lookTowards(1.1f, -0.1f), side, 2);
  for (int y = 0; y < side; ++y)
    for (int x = 0; x < side; ++x) {
      const float half = static_cast<float>(side) / 2;
      map.at(x, y).a = coverage(
          std::hypot(static_cast<float>(x) + 0.5f - half, static_cast<float>(y) + 0.5f - half) - 0.9f * half,
          1.6f);
    }
  return map;
}

}  // namespace

Products chromePictures() {
  return {
      picture("orb_teal", PictureKind::maskedJpeg, "chrome", 1,
              [](const Settings& settings) { return orb(settings, laboratoryLight); }),
      picture("orb_ember", PictureKind::maskedJpeg, "chrome", 1,
              [](const Settings& settings) { return orb(settings, furnaceLight); }),
  };
}

}  // namespace vex
