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
  // The sky answers each beat of the heart.
  show.add("beating sky", 0, 6, backdrop + 1,
           Bitmap{.texture = "sky_bone",
                  .at = covering(spline({{0, 1.02}, {16, 1.25}, {partEnd, 1.65}})),
                  .alpha = flashes({0, 2, 2.6, 6, 6.6, 10, 10.6, 14, 14.6, 18, 18.6, 22, 22.6}, 0.75),
                  .blend = Blend::add});
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
  // Out of the dark they run together; for three beats from the first bell they are the name. Where they fly
  // on, the camera has turned its back on the letters.
  const auto filaments = [&](const char* name, double fromBar, double bars, double start, double speed,
                             const Curve& alpha) {
    show.part(name, fromBar, bars, smoke,
              {screen::draw(Filaments{.alpha = alpha, .across = 0.21, .up = 0.13, .depth = 0.17})}, start,
              speed);
  };
  filaments("filaments meet", 0, 2, -cueSeconds(2), 1, line({{0, 0}, {0.2, 0.5}, {6, 0.8}, {partEnd, 1}}));
  filaments("filaments are the name", 2, 0.75, 0, 0, line({{0, 1}, {1, 1}, {2.2, 0}, {partEnd, 0}}));
  filaments("filaments fly on", 2.75, 4.25, 14, 1,
            line({{0, 0}, {1, 0.3}, {5, 0.3}, {12, 0.55}, {13.5, 0.5}, {14.5, 0.15}, {partEnd, 0}}));
  // Dark lies behind the words.
  show.add("dark behind the name", 2.25, 1.75, title - 2,
           Bitmap{.texture = "shade",
                  .at = centred(0, -0.05, 0.62, 6),
                  .alpha = fade(1.5, 0),
                  .blend = Blend::darken});
  show.add(
      "halvane", 2.25, 1.75, title,
      Bitmap{.texture = "halvane1",
             .at = centred(0, -0.05, spline({{0, 0.67}, {1, 0.68}, {5, 0.71}, {partEnd, 0.8}}), 4),
             .frames = 3,
             .glitch = line(
                 {{0, 0.03}, {2.98, 0.03}, {3, 0.9}, {3.3, 0.03}, {-0.7, 0.03}, {-0.3, 0.9}, {partEnd, 1}}),
             .alpha = line({{0, 0}, {0.9, 1}, {partEnd, 1}}),
             .blend = Blend::add});
  show.add("dark behind presents", 4, 2, title - 2,
           Bitmap{.texture = "shade",
                  .at = centred(0, -0.03, 0.5, 6),
                  .alpha = fade(0.1, 0),
                  .blend = Blend::darken});
  show.add("presents", 4, 2, title,
           Bitmap{.texture = "presents1",
                  .at = centred(0, -0.03, line({{0, 0.7}, {0.4, 0.58}, {partEnd, 0.68}}), 4),
                  .frames = 2,
                  .glitch = flashes({0, 6}, 0.9, 0.03),
                  .alpha = fade(0.1, 0.6),
                  .blend = Blend::add});
  // Each of the four notes strikes elsewhere: through the word, left of the town, right of it, everywhere.
  show.add("far motif", 4, 0.5, title - 1,
           Bitmap{.texture = "streak_bone",
                  .at = {slide(-1.6, -1.2), -0.17, 2.8, 0.3},
                  .alpha = flashes({0}, 1),
                  .blend = Blend::add});
  const auto bolt = [&](const char* name, double bar, const Place& at) {
    show.add(name, bar, 0.5, far - 1,
             Bitmap{.texture = "haze_bone",
                    .at = at,
                    .alpha = line({{0, 1}, {0.15, 0.3}, {0.25, 0.9}, {1, 0.2}, {partEnd, 0}}),
                    .blend = Blend::add});
  };
  bolt("far motif 2", 4.5, centred(-0.62, 0, 1.5, 1));
  bolt("far motif 3", 5, centred(0.62, 0.05, 1.5, 1));
  bolt("far motif 4", 5.5, centred(0, 0.1, 2.2, 2));
  show.add("far motif 4, near", 5.5, 0.5, title - 1,
           Bitmap{.texture = "streak_bone",
                  .at = {slide(-1.2, -1.6), 0.1, 2.8, 0.3},
                  .alpha = flashes({0}, 0.9),
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
