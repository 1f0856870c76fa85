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

namespace {

// The logo with the middle of its letters at (x, y): how far they lie left of the logo's own middle, in
// sizes, depends on the length of the ending.
Logo lettering(const char* ending, double leftBy, const Curve& size, double x, double y) {
  Logo logo{.ending = ending};
  logo.x = size * leftBy + x;
  logo.y = y;
  logo.size = size;
  logo.fall = 0.3;
  return logo;
}
}  // namespace

Logo vexed(const Curve& size, double x, double y) {
  return lettering("end_ed01", 0.5, size, x, y);
}
Logo vexing(const Curve& size, double x, double y) {
  return lettering("end_ing01", 0.43, size, x, y);
}
Logo vexation(const Curve& size, double x, double y) {
  return lettering("end_ation01", 0.28, size, x, y);
}
Logo vexatious(const Curve& size, double x, double y) {
  return lettering("end_atious01", 0.22, size, x, y);
}
Logo vexer(const Curve& size, double x, double y) {
  return lettering("end_er01", 0.5, size, x, y);
}
Logo vexillum(const Curve& size, double x, double y) {
  return lettering("end_illum01", 0.28, size, x, y);
}
Logo vexedly(const Curve& size, double x, double y) {
  return lettering("end_edly01", 0.38, size, x, y);
}

Logo glitching(Logo logo, const Curve& glitch, int layers, const Curve& scale) {
  logo.glitch = glitch;
  logo.layers = layers;
  logo.scale = scale;
  return logo;
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
