#include "production/movements/words.h"

namespace vex {

using namespace screen;

// Black, grain, filaments, two names in haze, and the eye.
void addPrologue(Show& show) {
  // Widths: from the far motif on the layers part.
  const Curve spires = spline({{0, 2.3}, {12, 2.65}, {partEnd, 3.5}}),
              brambles = spline({{0, 2.3}, {16, 2.8}, {partEnd, 4.4}});
  show.add("black", 0, 8, ground, Fade{});
  show.add("night", 0, 6, backdrop,
           Bitmap{.texture = "sky_bone",
                  .at = covering(spline({{0, 1.02}, {16, 1.25}, {partEnd, 1.65}})),
                  .alpha = fade(10, 0)});
  show.add("far lightning", 1, 1, far - 1,
           Bitmap{.texture = "haze_bone",
                  .at = centred(-0.3, 0.25, 1.7, 2.4),
                  .alpha = line({{0, 0.9}, {0.2, 0.35}, {0.35, 0.7}, {1.6, 0}, {partEnd, 0}}),
                  .blend = Blend::add});
  show.add(
      "far town", 1, 5, far,
      Bitmap{.texture = "spires_bone", .at = {spires * -0.5, spires * -0.43 + 1, spires, spires * 0.43}});
  show.add("heartbeats", 0, 6, haze,
           Bitmap{.texture = "haze_bone",
                  .at = centred(swing(19, -0.15, 0.15), swing(13, -0.05, 0.12), 2.6, 1.7),
                  .alpha = flashes({2, 2.6, 6, 6.6, 10, 10.6, 14, 14.6, 18, 18.6, 22, 22.6}, 0.9, 0.3),
                  .blend = Blend::add});
  show.add("thorns", 0, 6, front,
           Bitmap{.texture = "thorn_bone",
                  // They grow from below the picture.
                  .at = {brambles * -0.5, spline({{0, 1}, {4, 0.95}, {11, 0.42}, {16, 0.36}, {partEnd, 0.1}}),
                         brambles, brambles * 0.35}});
  // Out of the dark they run together; for two beats from the first bell they are the name, then they fly
  // apart, and still lie on the lid when the eye opens.
  const auto filaments = [&](const char* name, double fromBar, double bars, double start, double speed,
                             const Curve& alpha) {
    show.part(name, fromBar, bars, smoke,
              {screen::draw(Filaments{.alpha = alpha, .across = 0.21, .up = 0.13, .depth = 0.17})}, start,
              speed);
  };
  filaments("filaments meet", 0, 2, -cueSeconds(2), 1, line({{0, 0}, {6, 0.7}, {partEnd, 0.9}}));
  filaments("filaments are the name", 2, 0.5, 0, 0, line({{0, 1}, {1, 0.9}, {partEnd, 0.8}}));
  filaments(
      "filaments part", 2.5, 5.375, 0, 1,
      line({{0, 0.8}, {2, 0.35}, {6, 0.35}, {7, 0.5}, {13, 0.5}, {14, 0.3}, {15.5, 0.12}, {partEnd, 0.04}}));
  show.add("halvane", 2.25, 2, title,
           Bitmap{.texture = "halvane1",
                  .at = centred(0, -0.05, spline({{0, 0.67}, {1, 0.68}, {5, 0.71}, {partEnd, 0.8}}), 4),
                  .frames = 4,
                  .glitch = flashes({3, 4.5, 7}, 0.9, 0.03),
                  .alpha = fade(1.5, 1),
                  .blend = Blend::add});
  show.add("presents", 4.25, 1.75, title,
           Bitmap{.texture = "presents1",
                  .at = centred(0, -0.03, slide(0.5, 0.6), 4),
                  .frames = 2,
                  .glitch = flashes({1, 3, 5}, 0.9, 0.03),
                  .alpha = fade(1, 1),
                  .blend = Blend::add});
  show.add("far motif", 4, 2, title - 1,
           Bitmap{.texture = "streak_bone",
                  .at = {slide(-1.6, -1.2), -0.17, 2.8, 0.3},
                  .alpha = flashes({0, 2, 4, 6}, 0.8, 0.05),
                  .blend = Blend::add});

  show.add(
      "lid trembles", 6, 1, subject,
      Movie{.base = "eye",
            .at = covering(slide(1.0, 1.06)),
            .first = 1,
            .last = 6,
            .fps = 3.2,
            .alpha = line(
                {{0, 0}, {0.4, 0.8}, {0.6, 0.3}, {1, 1}, {1.9, 0.9}, {2, 0.45}, {2.2, 1}, {partEnd, 1}})});
  show.add(
      "eye opens", 7, 0.875, subject,
      Movie{
          .base = "eye", .at = covering(zoom(1.06, 1.3, 3.5), 0, 0.02), .first = 6, .last = 13, .fps = 4.85});
}

}  // namespace vex
