#include "production/movements/words.h"

#include <algorithm>

namespace vex {

using namespace screen;

Curve slide(double from, double to) {
  return line({{0, from}, {partEnd, to}});
}

double barOf(std::string_view cue) {
  return cueSeconds(cue) / secondsPerBar;
}

Logo vex(const Ending& ending, const Curve& size, double x, double y) {
  Logo logo{.ending = ending.texture};
  logo.x = size * ending.leftBy + x;
  logo.y = y;
  logo.size = size;
  logo.fall = 0.25;
  return logo;
}

Logo glitching(Logo logo, const Curve& glitch, int layers, const Curve& scale) {
  logo.glitch = glitch;
  logo.layers = layers;
  logo.scale = scale;
  return logo;
}

Waves smokeBefore(const char* texture, double reach, double speed, const Curve& alpha) {
  return {.texture = texture,
          .at = covering(reach),
          .speed = speed,
          .amplitude = 0.05,
          .alpha = alpha,
          .blend = Blend::add};
}

Bitmap shadeBehind(const Logo& logo, const Curve& x) {
  return {.texture = "shade", .at = centred(x, logo.y, logo.size * 0.9, 3.9), .blend = Blend::darken};
}

Tiles roseWall(const char* texture, const Curve& height) {
  return {.texture = texture, .at = centred(0, 0, height * 3), .across = 3, .down = 3};
}

void tunnel(Show& show, const char* texture, double fromBar, double bars, double beats, double aspect,
            double height) {
  const int count = static_cast<int>(bars * beatsPerBar / beats);
  for (int i = 0; i < count; ++i) {
    const double start = fromBar + i * beats / beatsPerBar;
    const double length = std::min(2 * beats / beatsPerBar, fromBar + bars - start);
    show.add("gate", start, length, far - i,
             Bitmap{.texture = texture,
                    .at = centred(0, 0, zoom(height, 7, 2 * beats), aspect),
                    .alpha = fade(0.3, 0)});
  }
}

}  // namespace vex
