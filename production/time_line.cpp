#include "production/time_line.h"

#include <algorithm>
#include <string>
#include <vector>

#include "production/music.h"
#include "production/show.h"

// The cue sheet: bars and beats as in cues.h, layers from the ground up.

namespace vex {

namespace {

using namespace screen;

enum Track {
  ground = 0,
  backdrop = 10,
  far = 30,  // a tunnel's gates take the tracks below it
  haze = 40,
  subject = 45,
  smoke = 50,
  front = 60,
  title = 70,
  flash = 80,
  grain = 100,
  vignette = 105,
  letterbox = 110,
  curtain = 120,
};

constexpr double barHeight = 0.243;  // leaves 2.35 : 1

const std::vector<double> everyBeat{0, 1, 2, 3, 4, 5, 6, 7};

Curve slide(double from, double to) {
  return line({{0, from}, {partEnd, to}});
}

// The logo with the middle of its letters at (x, y): how far they lie left of the logo's own middle, in
// sizes, depends on the length of the ending.
Logo lettering(const char* ending, double leftBy, const Curve& size, double x = 0, double y = 0) {
  Logo logo{.ending = ending};
  logo.x = size * leftBy + x;
  logo.y = y;
  logo.size = size;
  logo.fall = 0.3;
  return logo;
}
Logo vexed(const Curve& size, double x = 0, double y = 0) {
  return lettering("end_ed01", 0.5, size, x, y);
}
Logo vexing(const Curve& size, double x = 0, double y = 0) {
  return lettering("end_ing01", 0.43, size, x, y);
}
Logo vexation(const Curve& size, double x = 0, double y = 0) {
  return lettering("end_ation01", 0.28, size, x, y);
}
Logo vexatious(const Curve& size, double x = 0, double y = 0) {
  return lettering("end_atious01", 0.22, size, x, y);
}
Logo vexer(const Curve& size, double x = 0, double y = 0) {
  return lettering("end_er01", 0.5, size, x, y);
}
Logo vexillum(const Curve& size, double x = 0, double y = 0) {
  return lettering("end_illum01", 0.28, size, x, y);
}
Logo vexedly(const Curve& size, double x = 0, double y = 0) {
  return lettering("end_edly01", 0.38, size, x, y);
}

Logo glitching(Logo logo, const Curve& glitch, int layers, const Curve& scale) {
  logo.glitch = glitch;
  logo.layers = layers;
  logo.scale = scale;
  return logo;
}

// Three by three rose windows, the middle one about the middle of the screen, `height` high.
Tiles roseWall(const char* texture, const Curve& height) {
  return {.texture = texture, .at = centred(0, 0, height * 3), .across = 3, .down = 3};
}

// A gate flies past every `beats`.
void tunnel(Show& show, const char* texture, double fromBar, double bars, double beats) {
  const int count = static_cast<int>(bars * beatsPerBar / beats);
  for (int i = 0; i < count; ++i) {
    const double start = fromBar + i * beats / beatsPerBar;
    const double length = std::min(2 * beats / beatsPerBar, fromBar + bars - start);
    show.add(
        "gate", start, length, far - i,
        Bitmap{.texture = texture, .at = centred(0, 0, zoom(0.35, 7, 2 * beats)), .alpha = fade(0.3, 0)});
  }
}

// Bars 0 to 8: black, grain, two names in haze, and the eye.
void prologue(Show& show) {
  show.add("black", 0, 8, ground, Fade{});
  show.add("night", 0, 6, backdrop,
           Bitmap{.texture = "sky_bone", .at = covering(slide(1.02, 1.3)), .alpha = fade(10, 3)});
  show.add("far town", 1, 5, far,
           Bitmap{.texture = "spires_bone",
                  .at = {slide(-1.15, -1.5), slide(-0.02, -0.2), slide(2.3, 2.8), slide(1.0, 1.2)},
                  .alpha = fade(8, 2)});
  show.add("heartbeats", 0, 6, haze,
           Bitmap{.texture = "haze_bone",
                  .at = centred(swing(19, -0.15, 0.15), swing(13, -0.05, 0.12), 2.6, 1.7),
                  .alpha = flashes({2, 2.6, 6, 6.6, 10, 10.6, 14, 14.6, 18, 18.6, 22, 22.6}, 0.9, 0.3),
                  .blend = Blend::add});
  show.add("thorns", 0, 6, front,
           Bitmap{.texture = "thorn_bone",
                  .at = {slide(-1.15, -1.6), slide(0.42, 0.2), slide(2.3, 3.2), slide(0.8, 1.1)},
                  .alpha = fade(12, 0)});
  show.add("halvane", 2, 2.25, title,
           Bitmap{.texture = "halvane1",
                  .at = centred(0, -0.05, spline({{0, 0.6}, {2, 0.68}, {6, 0.71}, {partEnd, 0.8}}), 4),
                  .frames = 4,
                  .glitch = flashes({0, 4, 5.5, 8}, 0.9, 0.03),
                  .alpha = fade(1.5, 1),
                  .blend = Blend::add},
           Bitmap{.texture = "halvane1",
                  .at = centred(0, -0.05, slide(0.62, 1.0), 4),
                  .alpha = line({{0, 0}, {2, 0.22}, {5, 0.02}, {partEnd, 0}}),
                  .blend = Blend::add});
  show.add("threads", 3, 3, smoke,
           Waves{.texture = "threads_bone",
                 .at = covering(slide(1.1, 1.5)),
                 .speed = 0.8,
                 .amplitude = swing(16, 0.02, 0.06),
                 .alpha = fade(8, 1, 0.5),
                 .blend = Blend::add});
  show.add("presents", 4.25, 1.75, title,
           Bitmap{.texture = "presents1",
                  .at = centred(0, -0.03, slide(0.5, 0.6), 4),
                  .frames = 4,
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
            .last = 12,
            .fps = 6.4,
            .alpha = line(
                {{0, 0}, {0.4, 0.8}, {0.6, 0.3}, {1, 1}, {1.9, 0.9}, {2, 0.45}, {2.2, 1}, {partEnd, 1}})});
  show.add("threads on the lid", 6, 1.875, smoke,
           Waves{.texture = "threads_bone",
                 .at = covering(slide(1.5, 1.9)),
                 .speed = 0.8,
                 .amplitude = 0.05,
                 .alpha = slide(0.4, 0.12),
                 .blend = Blend::add});
  show.add(
      "eye opens", 7, 0.875, subject,
      Movie{
          .base = "eye", .at = covering(zoom(1.06, 1.3, 3.5), 0, 0.02), .first = 12, .last = 32, .fps = 13});
}

// Bars 8 to 16: acid green; a mechanism starts behind iron.
void pulse(Show& show) {
  for (const double bar : {8.0, 9.0}) {  // the second bar stands nearer
    const double near = bar - 8;
    show.add("acid sky", bar, 1, ground,
             Bitmap{.texture = "sky_acid", .at = covering(slide(1.05 + 0.2 * near, 1.15 + 0.2 * near))});
    show.add("town", bar, 1, far,
             Bitmap{.texture = "spires_acid",
                    .at = {slide(-1.3 - 0.3 * near, -1.22 - 0.35 * near), -0.05, 2.5 + 0.6 * near, 1.0}});
    show.add("glow in the door", bar, 1, haze,
             Bitmap{.texture = "rays_acid",
                    .at = centred(0, -0.05, zoom(2.0 + near, 2.3 + near, 4)),
                    .alpha = flashes({0, 1, 2, 3}, 0.85, 0.4),
                    .blend = Blend::add});
    show.add("at the door", bar, 1, subject,
             Bitmap{.texture = "figure_acid",
                    .at = centred(-0.04, 0.28, zoom(0.82 + 0.5 * near, 0.9 + 0.55 * near, 4), 0.5)});
    show.add("doorway", bar, 1, front,
             Bitmap{.texture = "arch_acid",
                    .at = covering(zoom(1.02 + 0.4 * near, 1.2 + 0.45 * near, 4), 0.02, 0.04)});
  }
  show.add("fumes", 8, 2, smoke,
           Waves{.texture = "smoke_acid",
                 .at = covering(1.3, swing(24, -0.2, 0.2)),
                 .speed = 1.4,
                 .amplitude = 0.045,
                 .alpha = fade(2, 0, 0.6),
                 .blend = Blend::add});

  show.add("plates", 10, 1, ground,
           Tiles{.texture = "plates_acid", .at = covering(zoom(1.0, 1.12, 4)), .across = 2.4, .down = 1.35});
  show.add("plates, nearer", 11, 1, ground,
           Tiles{.texture = "plates_acid",
                 .at = covering(zoom(1.5, 1.7, 4), -0.2, 0.1),
                 .across = 2.4,
                 .down = 1.35});
  show.add(
      "lamp", 10, 2, haze,
      Bitmap{.texture = "haze_acid", .at = centred(slide(-0.9, 0.9), -0.1, 2.8, 1.5), .blend = Blend::add},
      Bitmap{.texture = "rays_acid",
             .at = centred(slide(-0.9, 0.9), -0.1, 2.2),
             .alpha = flashes(everyBeat, 0.8, 0.3),
             .blend = Blend::add});
  show.add("current", 10, 2, smoke,
           Waves{.texture = "threads_acid",
                 .at = covering(1.25),
                 .speed = 2.2,
                 .amplitude = 0.05,
                 .alpha = flashes(everyBeat, 0.9, 0.15),
                 .blend = Blend::add});
  show.add("vexed", 10, 2, title,
           glitching(vexed(spline({{0, 1.5}, {0.5, 1.25}, {4, 1.3}, {partEnd, 1.42}})),
                     flashes({0, 2, 4, 6, 7, 7.5}, 0.95, 0.02), 2, swing(8, 1.08, 1.16)));

  for (const double bar : {12.0, 13.0}) {
    const double near = bar - 12;
    show.add("pale sky", bar, 1, ground,
             Bitmap{.texture = "sky_acid",
                    .at = covering(slide(1.45 + 0.4 * near, 1.35 + 0.4 * near), 0.1 - 0.2 * near, -0.15)});
    show.add("sun behind", bar, 1, backdrop,
             Bitmap{.texture = "rays_acid",
                    .at = centred(0.22 - 0.5 * near, -0.25, zoom(3.0, 3.5, 4)),
                    .alpha = flashes({0, 1, 2, 3}, 1, 0.5),
                    .blend = Blend::add});
    show.add("watcher", bar, 1, subject,
             Bitmap{.texture = "figure_acid",
                    .at = centred(slide(0.3 - 0.62 * near, 0.25 - 0.58 * near),
                                  slide(0.18 + 0.75 * near, 0.14 + 0.72 * near),
                                  slide(1.75 + 1.5 * near, 1.85 + 1.7 * near), 0.5)});
  }
  show.add("ground fumes", 12, 2, smoke,
           Waves{.texture = "smoke_acid",
                 .at = {-1.2, 0.1, 2.6, 1.2},
                 .speed = 1.8,
                 .amplitude = 0.05,
                 .alpha = 0.75,
                 .blend = Blend::add});
  show.add("drifting sparks", 12, 2, smoke + 1,
           Noise{.texture = "sparks_acid", .speedX = 0.03, .speedY = 0.05, .alpha = 0.8});
  show.add("hedge", 12, 2, front,
           Bitmap{.texture = "thorn_acid", .at = {slide(-1.4, -1.7), slide(0.3, 0.2), 3.2, 1.0}});

  show.add("iron again", 14, 1.75, ground,
           Tiles{.texture = "plates_acid", .at = covering(zoom(1.25, 2.2, 7)), .across = 2.4, .down = 1.35});
  show.add("light behind", 14, 1.75, far - 10,
           Bitmap{.texture = "rays_acid",
                  .at = centred(0, 0, zoom(2.6, 5.5, 7)),
                  .alpha = flashes({0, 1, 2, 3, 4, 4.5, 5, 5.5, 6, 6.25, 6.5}, 1, 0.5),
                  .blend = Blend::add});
  show.add("gates turn up", 14, 1.75, subject,
           Bitmap{.texture = "gate_acid", .at = centred(0, 0, zoom(0.25, 1.7, 7)), .alpha = fade(1, 0)},
           Bitmap{.texture = "gate_acid", .at = centred(0, 0, zoom(0.6, 4.0, 7)), .alpha = fade(0.5, 0)});
  show.add("current rises", 14, 1.75, smoke,
           Waves{.texture = "threads_acid",
                 .at = covering(zoom(1.2, 2, 7)),
                 .speed = 3,
                 .amplitude = 0.06,
                 .alpha = slide(0, 0.8),
                 .blend = Blend::add});
  show.add("vexing", 15, 0.75, title, glitching(vexing(zoom(0.9, 1.4, 3)), 0.45, 3, 1.18));
  show.add("hold", 15.75, 0.25, ground, Fade{},
           Movie{.base = "eye", .at = covering(zoom(2.2, 2.35, 1)), .first = 32, .last = 32});
}

// Bars 16 to 24: steel and magenta; cuts on bars, glitches on beats.
void drop(Show& show) {
  show.add("rose window", 16, 2, ground, roseWall("glass_violet", zoom(1.25, 2.0, 8)));
  show.add("beyond", 16, 2, backdrop,
           Bitmap{.texture = "rays_violet",
                  .at = centred(0, 0, 3.6),
                  .alpha = flashes(everyBeat, 1, 0.4),
                  .blend = Blend::add});
  tunnel(show, "gate_violet", 16, 2, 1);
  show.add("vexation", 17, 1, title,
           glitching(vexation(spline({{0, 1.5}, {0.4, 1.18}, {2, 1.2}, {partEnd, 1.32}})),
                     flashes({0, 1, 2, 2.5, 3}, 1, 0.05), 3, swing(4, 1.06, 1.25)));

  show.add(
      "stare", 18, 1, ground,
      Movie{
          .base = "eye", .at = covering(zoom(1.25, 1.5, 4), 0.05, 0.02), .first = 20, .last = 32, .fps = 12});
  show.add(
      "stare, nearer", 19, 1, ground,
      Movie{.base = "eye", .at = covering(zoom(2.3, 3.2, 4), -0.04, 0.1), .first = 30, .last = 32, .fps = 8});
  show.add("violet fumes", 18, 2, smoke,
           Waves{.texture = "smoke_violet",
                 .at = covering(1.5),
                 .speed = -2,
                 .amplitude = 0.06,
                 .alpha = flashes(everyBeat, 1, 0.7),
                 .blend = Blend::add});
  show.add("nerves", 18, 2, smoke + 1,
           Waves{.texture = "threads_violet",
                 .at = covering(zoom(1.2, 2.2, 8)),
                 .speed = 3,
                 .amplitude = swing(8, 0.03, 0.09),
                 .alpha = flashes(everyBeat, 1, 0.35),
                 .blend = Blend::add});
  show.add("lens", 18, 2, title - 1,
           Bitmap{.texture = "streak_violet",
                  .at = {slide(-1.8, -1.0), -0.35, 2.8, 0.5},
                  .alpha = flashes(everyBeat, 1, 0.2),
                  .blend = Blend::add});
  show.add("vexer", 19, 1, title, glitching(vexer(1.0, 0, 0.48), 0.35, 2, 1.1));

  // Two worlds side by side, the seam swinging, then three; each paints its own ground.
  show.add("between the worlds", 20, 2, ground - 1, Fade{});
  show.add("left half", 20, 1, ground, Viewport{.x = -1, .y = -1, .w = swing(4, 0.8, 1.2), .h = 2},
           Bitmap{.texture = "sky_violet", .at = covering(1.2)},
           Bitmap{.texture = "rays_violet",
                  .at = {-1.6, -1.3, 3.2, 2.4},
                  .alpha = flashes({0, 1, 2, 3}, 1, 0.4),
                  .blend = Blend::add},
           Bitmap{.texture = "figure_violet", .at = {-0.7, slide(-0.72, -0.85), 1.4, 2.1}});
  show.add("right half", 20, 1, ground + 1, Viewport{.x = swing(4, -0.2, 0.2), .y = -1, .w = 1.2, .h = 2},
           Tiles{.texture = "plates_acid", .at = covering(zoom(1.0, 1.3, 4)), .across = 1.3, .down = 1.4},
           Bitmap{.texture = "gate_acid", .at = centred(0, 0, zoom(1.2, 1.9, 4), 16.0 / 9)});
  show.add("left third", 21, 1, ground, Viewport{.x = -1, .y = -1, .w = 0.66, .h = 2},
           Bitmap{.texture = "sky_violet", .at = covering(slide(1.8, 1.5))},
           Bitmap{.texture = "figure_violet", .at = {slide(-1.25, -1.05), -0.75, 2.1, 2.2}});
  show.add("middle third", 21, 1, ground + 1, Viewport{.x = -0.335, .y = -1, .w = 0.68, .h = 2},
           Movie{.base = "eye",
                 .at = {-3.3, slide(-1.0, -1.15), 6.6, slide(2.0, 2.3)},
                 .first = 20,
                 .last = 32,
                 .fps = 8});
  show.add("right third", 21, 1, ground + 2, Viewport{.x = 0.34, .y = -1, .w = 0.67, .h = 2},
           Bitmap{.texture = "sky_violet", .at = covering(slide(1.5, 1.8))},
           Bitmap{.texture = "figure_violet", .at = {slide(1.05, 1.25), -0.75, -2.1, 2.2}});
  show.add("whole screen", 20, 2, ground + 3, Viewport{});
  show.add("violet haze", 20, 2, smoke,
           Waves{.texture = "smoke_violet",
                 .at = covering(1.4),
                 .speed = 2,
                 .amplitude = 0.05,
                 .alpha = flashes(everyBeat, 0.8, 0.35),
                 .blend = Blend::add});
  show.add("seams", 20, 2, title,
           Bitmap{.texture = "streak_violet",
                  .at = {-1.4, swing(4, -0.2, 0.1), 2.8, 0.3},
                  .alpha = flashes({0, 1, 2, 3, 4, 5, 5.5, 6, 6.5, 7}, 1, 0.3),
                  .blend = Blend::add});

  show.add("glass melts", 22, 2, ground,
           Waves{.texture = "glass_violet",
                 .at = centred(0, 0, zoom(2.6, 5.5, 8), 1.78),
                 .speed = 4,
                 .amplitude = swing(8, 0.02, 0.07)});
  show.add("green again", 22, 2, backdrop,
           Bitmap{.texture = "rays_acid",
                  .at = centred(0, 0, 3.8),
                  .alpha = flashes(everyBeat, 1, 0.3),
                  .blend = Blend::add});
  tunnel(show, "gate_acid", 22, 2, 0.5);
  show.add("vexatious", 22, 2, title,
           glitching(vexatious(spline({{0, 1.45}, {0.5, 1.2}, {4, 1.24}, {partEnd, 1.36}})),
                     flashes({0, 1, 2, 3, 4, 5, 6, 6.5, 7, 7.5}, 1, 0.1), 4, swing(4, 0.85, 1.25)));
}

// Bars 24 to 32: ember; the covered sun, the echoes, the end.
void climax(Show& show) {
  show.add("ember sky", 24, 8, ground, Bitmap{.texture = "sky_ember", .at = covering(slide(1.05, 1.5))});
  show.add("sparks", 24, 7, smoke,
           Noise{.texture = "sparks_ember", .speedX = 0.015, .speedY = 0.06, .alpha = fade(2, 6, 0.9)});
  for (const double bar : {24.0, 25.0}) {
    const double near = bar - 24;
    show.add("streamers", bar, 1, backdrop,
             Bitmap{.texture = "corona_ember",
                    .at = centred(0.3 * near, slide(0.0 - 0.1 * near, -0.06 - 0.1 * near),
                                  slide(2.3 + 0.9 * near, 2.45 + near)),
                    .alpha = swing(2, 0.8, 1),
                    .blend = Blend::add});
    show.add("moon", bar, 1, backdrop + 1,
             Bitmap{.texture = "moon",
                    .at = centred(0.3 * near, slide(0.0 - 0.1 * near, -0.06 - 0.1 * near),
                                  slide(0.92 + 0.36 * near, 0.98 + 0.4 * near))});
    show.add("burning town", bar, 1, far,
             Bitmap{.texture = "spires_ember",
                    .at = {slide(-1.1 - 0.9 * near, -1.2 - near), 0.05 - 0.25 * near, 2.3 + 1.2 * near,
                           1.0 + 0.35 * near}});
  }
  show.add("thorns", 24, 2, front,
           Bitmap{.texture = "thorn_ember", .at = {slide(-1.2, -1.45), slide(0.36, 0.22), 2.7, 0.9}});

  for (const double bar : {26.0, 27.0}) {
    const double near = bar - 26;
    const Place sun = centred(0.42 - 0.75 * near, -0.2, zoom(2.6 + near, 2.8 + 1.2 * near, 4)),
                disc = centred(0.42 - 0.75 * near, -0.2, zoom(1.04 + 0.4 * near, 1.12 + 0.48 * near, 4));
    show.add("great sun", bar, 1, backdrop,
             Bitmap{.texture = "corona_ember", .at = sun, .alpha = swing(2, 0.8, 1), .blend = Blend::add});
    show.add("great moon", bar, 1, backdrop + 1, Bitmap{.texture = "moon", .at = disc});
    show.add("watcher", bar, 1, subject,
             Bitmap{.texture = "figure_ember",
                    .at = centred(slide(-0.42 + 0.74 * near, -0.38 + 0.7 * near),
                                  slide(0.2 + 0.6 * near, 0.16 + 0.55 * near),
                                  slide(1.7 + 1.3 * near, 1.8 + 1.5 * near), 0.5)});
  }
  show.add("heat", 26, 2, backdrop - 1,
           Waves{.texture = "smoke_ember",
                 .at = covering(1.3),
                 .speed = 1.6,
                 .amplitude = 0.05,
                 .alpha = 0.7,
                 .blend = Blend::add});
  show.add("vexillum", 27, 1, title,
           glitching(vexillum(slide(0.95, 1.05), -0.36, 0.5), flashes({0, 2, 3}, 0.9, 0.02), 2,
                     swing(8, 1.04, 1.12)));

  show.add("ember glass", 28, 1, ground + 1, roseWall("glass_ember", zoom(1.3, 2.0, 4)));
  show.add("glass in the heat", 29, 0.875, ground + 1,
           Waves{.texture = "glass_ember",
                 .at = centred(0, 0, zoom(3.2, 6, 4), 1.78),
                 .speed = 3,
                 .amplitude = 0.06});
  show.add("blaze", 28, 1.875, backdrop,
           Bitmap{.texture = "rays_ember",
                  .at = centred(0, 0, 3.8),
                  .alpha = flashes(everyBeat, 1, 0.5),
                  .blend = Blend::add});
  tunnel(show, "gate_ember", 28, 1.875, 1);
  show.add("vexedly", 28, 1.875, title,
           glitching(vexedly(slide(1.15, 1.35)), flashes({0, 2, 4, 6, 7}, 0.9, 0.03), 5, swing(8, 1.0, 1.3)));
  show.add("last breath", 29.875, 0.125, ground + 2, Fade{});

  const Curve discHeight = zoom(2.15, 1.7, 8);
  show.add("last streamers", 30, 2, backdrop,
           Bitmap{.texture = "corona_bone",
                  .at = centred(0, 0, discHeight * 2.5),
                  .alpha = flashes({0, 6}, 1, 0.75),
                  .blend = Blend::add});
  show.add("last moon", 30, 2, backdrop + 1, Bitmap{.texture = "moon", .at = centred(0, 0, discHeight)});
  show.add(
      "vexed at last", 30, 2, title,
      glitching(vexed(slide(1.0, 0.86)), flashes({0, 6}, 0.8, 0.01), 5, line({{0, 1.25}, {partEnd, 1.9}})));
  show.add("ground after", 32, 1, ground, Fade{});
}

// A flash of that colour falls within half a beat.
void flashOn(Show& show, const std::vector<double>& bars, Fade colour) {
  colour.alpha = spline({{0, 0.34}, {0.12, 0.2}, {0.28, 0.06}, {partEnd, 0}});
  for (const double bar : bars) show.add("flash", bar, 0.125, flash, colour);
}

// What lies over all: flashes on the cuts, dirt, grain, vignette, bars.
void finish(Show& show) {
  flashOn(show, {8, 10, 12, 14}, Fade{0.8, 1, 0.55});
  flashOn(show, {16, 17, 17.625, 18, 19, 20, 21, 21.625, 22, 23}, Fade{1, 0.75, 0.95});
  flashOn(show, {24, 26, 28, 28.5, 29, 29.5, 30}, Fade{1, 0.86, 0.6});
  show.add("dust", 0, 8, grain - 1,
           Noise{.texture = "dust", .jitterX = 1, .jitterY = 1, .alpha = 0.5, .flicker = 0.3});
  show.add("grain", 0, 32, grain,
           Noise{.texture = "grain", .jitterX = 1, .jitterY = 1, .blend = Blend::darken});
  show.add("vignette", 0, 32, vignette, Bitmap{.texture = "vignette", .blend = Blend::darken});
  const Curve height = line({{0, 0.0},
                             {8, barHeight},
                             {64, barHeight},
                             {64.5, 0.12},
                             {96, 0.12},
                             {96.5, barHeight},
                             {partEnd, barHeight}});
  show.add("letterbox", 0, 32.5, letterbox, Bitmap{.texture = "bar", .at = {-1, -1, 2, height}},
           Bitmap{.texture = "bar", .at = {-1, height * -1 + 1, 2, height}});
  show.add("fade out", 31, 1, curtain, Fade{.alpha = slide(0, 1)});
  show.add("black at last", 32, 0.5, curtain, Fade{});
}

}  // namespace

Script presentationScript() {
  Show show;
  show.script.totalTime = cueSeconds(32);
  show.script.sound = "data\\vex.ogg";
  for (const Cue& cue : cues)
    if (cueSeconds(cue) <= show.script.totalTime) show.script.ticks.push_back(cueSeconds(cue));
  prologue(show);
  pulse(show);
  drop(show);
  climax(show);
  finish(show);
  return show.script;
}

Products timeLineFiles() {
  Product product;
  product.outputs = {"test.hvp", "used_textures.log"};
  product.sources = {"production/time_line.", "production/show.", "production/project_writer.",
                     "production/cues."};
  product.work = 0.1f;
  product.make = [](const Settings&) {
    const Script script = presentationScript();
    const std::string list = preloadList(script);
    const auto* text = reinterpret_cast<const std::byte*>(list.data());
    return std::vector<Bytes>{writeProject(script), Bytes(text, text + list.size())};
  };
  return {product};
}

Products musicFile() {
  Product product;
  product.outputs = {"data/vex.ogg"};
  product.sources = {"production/music.", "production/cues.", "production/song/", "production/synth/"};
  product.work = 40;
  product.make = [](const Settings& settings) {
    return std::vector<Bytes>{makeMusic(settings.draft ? MixQuality::draft : MixQuality::full)};
  };
  return {product};
}

}  // namespace vex
