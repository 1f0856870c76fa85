#include "production/movements/words.h"

namespace vex {

using namespace screen;

namespace {

constexpr int lidFrames = 24, lockFrames = 12;

// Acid green: a figure at a door, further off and nearer.
void addDoor(Show& show) {
  const double start = boxBar;
  for (const double near : {0.0, 1.0}) {
    const double bar = start + near;
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
  show.add("fumes", start, 2, smoke,
           Waves{.texture = "smoke_acid",
                 .at = covering(1.3, swing(24, -0.2, 0.2)),
                 .speed = 1.4,
                 .amplitude = 0.045,
                 .alpha = fade(2, 0, 0.6),
                 .blend = Blend::add});
}

// The reliquary, shut, from afar and nearer.
void addReliquary(Show& show) {
  const double start = barOf("pulse");
  show.add(
      "reliquary", start, 1, ground,
      Movie{.base = "lid", .at = covering(zoom(1.15, 1.3, 4), travel(0.14, 0.06, 4)), .first = 1, .last = 1});
  show.add("reliquary, nearer", start + 1, 1, ground,
           Movie{.base = "lid",
                 .at = covering(zoom(1.7, 1.95, 4), travel(-0.22, -0.1, 4), travel(-0.05, -0.12, 4)),
                 .first = 1,
                 .last = 1});
  show.add("light on iron", start, 2, haze,
           Bitmap{.texture = "haze_acid",
                  .at = centred(slide(-0.9, 0.9), -0.2, 2.6, 1.5),
                  .alpha = flashes(everyBeat, 1, 0.5),
                  .blend = Blend::add});
  show.add("thin fumes", start, 2, smoke,
           Waves{.texture = "smoke_acid",
                 .at = {-1.3, -0.1, 2.6, 1.4},
                 .speed = 1.2,
                 .amplitude = 0.04,
                 .alpha = 0.3,
                 .blend = Blend::add});
  show.add("hedge", start, 2, front,
           Bitmap{.texture = "thorn_acid", .at = {slide(-1.4, -1.7), slide(0.36, 0.26), 3.2, 0.9}});
}

// The lock turns, a beat later its bolts draw back.
void addLock(Show& show) {
  const double start = barOf("lock");
  show.add("lock turns", start, 1, ground,
           Movie{.base = "lock",
                 .at = covering(zoom(1.1, 1.25, 4), 0.05),
                 .first = 1,
                 .last = lockFrames,
                 .fps = lockFrames / 1.9});
  show.add("lock, nearer", start + 1, 1, ground,
           Movie{.base = "lock",
                 .at = covering(zoom(1.9, 2.3, 4), -0.04, 0.02),
                 .first = lockFrames,
                 .last = lockFrames});
  show.add("light in the lock", start, 2, haze,
           Bitmap{.texture = "rays_acid",
                  .at = centred(travel(0.05, -0.04, 8), 0, zoom(1.4, 3.2, 8)),
                  .alpha = flashes({0, 2, 4, 5, 6, 6.5, 7, 7.5}, 0.8, 0.12),
                  .blend = Blend::add});
  show.add("current", start, 2, smoke,
           Waves{.texture = "threads_acid",
                 .at = covering(1.25),
                 .speed = 2.2,
                 .amplitude = 0.05,
                 .alpha = flashes({2, 4, 5, 6, 7}, 0.8, 0.1),
                 .blend = Blend::add});
  show.add("bolt", start + 0.5, 0.25, title,
           Bitmap{.texture = "streak_acid",
                  .at = {slide(-1.6, -1.2), -0.2, 2.8, 0.4},
                  .alpha = fade(0, 0.9),
                  .blend = Blend::add});
}

// The mechanism winds itself up: iron gates turn up before the wall, then the eye behind them.
void addBuild(Show& show) {
  const double start = barOf("build"), hold = barOf("hold"), length = hold - start;
  const double beats = length * beatsPerBar;
  show.add(
      "iron", start, length, ground,
      Tiles{.texture = "plates_acid", .at = covering(zoom(1.25, 2.2, beats)), .across = 2.4, .down = 1.35});
  show.add("light behind", start, length, backdrop,
           Bitmap{.texture = "rays_acid",
                  .at = centred(0, 0, zoom(2.6, 5.5, beats)),
                  .alpha = flashes({0, 1, 2, 3, 4, 4.5, 5, 5.5, 6, 6.25, 6.5}, 1, 0.5),
                  .blend = Blend::add});
  show.add("gates turn up", start, length, subject,
           Bitmap{.texture = "gate_acid", .at = centred(0, 0, zoom(0.25, 1.7, beats)), .alpha = fade(1, 0)},
           Bitmap{.texture = "gate_acid", .at = centred(0, 0, zoom(0.6, 4.0, beats)), .alpha = fade(0.5, 0)});
  show.add("current rises", start, length, smoke,
           Waves{.texture = "threads_acid",
                 .at = covering(zoom(1.2, 2, beats)),
                 .speed = 3,
                 .amplitude = 0.06,
                 .alpha = slide(0, 0.8),
                 .blend = Blend::add});
  const double doubles = barOf("build doubles");
  show.add("vexing", doubles, hold - doubles, title, glitching(vex(ing, zoom(0.9, 1.4, 3)), 0.45, 3, 1.18));
  show.add("hold", hold, barOf("lid") - hold, ground, Fade{},
           Movie{.base = "eye", .at = covering(zoom(2.2, 2.35, 1)), .first = 32, .last = 32});
}

// The lid goes up; light and smoke pour out over two bars.
void addLid(Show& show) {
  const double start = barOf("lid");
  const double seconds = cueSeconds(1.5);
  show.add("lid lifts", start, 1.5, ground,
           Movie{.base = "lid",
                 .at = covering(zoom(1.1, 1.2, 6), travel(0.06, 0, 6), travel(-0.02, 0.14, 6)),
                 .first = 1,
                 .last = lidFrames,
                 .fps = (lidFrames - 0.5) / seconds});
  show.add("lid is up", start + 1.5, 0.5, ground,
           Movie{.base = "lid",
                 .at = covering(zoom(1.2, 1.25, 2), 0, travel(0.14, 0.17, 2)),
                 .first = lidFrames,
                 .last = lidFrames});
  show.add("light pours", start, 2, haze,
           Bitmap{.texture = "rays_acid",
                  .at = centred(0, travel(-0.02, 0.1, 8), zoom(1.6, 4.2, 8)),
                  .alpha = flashes({0, 1, 2, 3, 4, 5, 6, 7}, 1, 0.35),
                  .blend = Blend::add});
  show.add("smoke pours", start, 2, smoke,
           Waves{.texture = "smoke_acid",
                 .at = {-1.3, slide(0.2, -1.2), 2.6, slide(0.9, 2.4)},
                 .speed = 2.4,
                 .amplitude = 0.06,
                 .alpha = slide(0, 0.85),
                 .blend = Blend::add});
  show.add("sparks pour", start + 0.5, 1.5, smoke + 1,
           Noise{.texture = "sparks_acid", .speedX = 0.02, .speedY = 0.16, .alpha = fade(2, 0, 0.9)});
}

// Four layers of the title burn through the smoke, each before another side of the world that was let out.
void addLayers(Show& show) {
  const char* const names[] = {"layer 1", "layer 2", "layer 3", "layer 4"};
  const double starts[] = {barOf(names[0]), barOf(names[1]), barOf(names[2]), barOf(names[3])};
  show.add("box below", starts[0], 1, ground,
           Movie{.base = "lid",
                 .at = covering(zoom(1.5, 1.75, 4), travel(0.1, 0.0, 4), travel(0.22, 0.34, 4)),
                 .first = lidFrames,
                 .last = lidFrames});
  show.add("sky alight", starts[1], 3, ground,
           Bitmap{.texture = "sky_acid", .at = covering(slide(1.6, 1.2), 0.1, -0.15)});
  show.add("watcher", starts[1], 1, subject,
           Bitmap{.texture = "figure_acid",
                  .at = centred(slide(0.72, 0.68), slide(0.16, 0.12), slide(1.75, 1.85), 0.5)});
  show.add("town alight", starts[2], 1, far,
           Bitmap{.texture = "spires_acid", .at = {slide(-1.5, -1.7), slide(-0.42, -0.5), 3.2, 1.5}});
  // Brambles close in from below and, turned over, from above.
  show.add(
      "thorns below", starts[3], 1, front,
      Bitmap{.texture = "thorn_acid", .at = {slide(-1.2, -1.5), slide(0.25, 0.02), slide(2.4, 3.0), 0.95}});
  show.add("thorns above", starts[3], 1, front + 1,
           Bitmap{.texture = "thorn_acid",
                  .at = {slide(1.5, 1.2), slide(-0.25, -0.02), slide(-3.0, -2.4), -0.95}});
  for (int layer = 0; layer < 4; ++layer) {
    const double start = starts[layer];
    show.add(names[layer], start, 1, title,
             glitching(vex(ed, spline({{0, 1.75}, {0.5, 1.2}, {2, 1.22}, {partEnd, 1.32}}), 0,
                           layer == 2 ? -0.2 : 0),
                       flashes({0, 0.5, 2, 3}, 1, 0.02), layer + 1, swing(4, 1.08, 1.2)));
    show.add("burning edge", start, 1, title - 1,
             Bitmap{.texture = "rays_acid",
                    .at = centred(travel(-0.5, 0.5, 4), 0, zoom(1.6, 2.4, 4), 2.4),
                    .alpha = flashes({0, 1, 2, 3}, 0.9, 0.25),
                    .blend = Blend::add});
  }
  show.add("thick smoke", starts[0], 4, smoke,
           Waves{.texture = "smoke_acid",
                 .at = covering(1.35, 0, swing(16, -0.2, 0.2)),
                 .speed = 2,
                 .amplitude = 0.06,
                 .alpha = flashes({0, 4, 8, 12}, 0.95, 0.5),
                 .blend = Blend::add});
  show.add("flying sparks", starts[0], 4, smoke + 1,
           Noise{.texture = "sparks_acid", .speedX = 0.03, .speedY = 0.12, .alpha = 0.9});
}

// Everything runs backwards and is shut in.
void addBackwards(Show& show) {
  const double start = barOf("backwards"), second = barOf("backwards 2"), shut = barOf("shut");
  const double seconds = cueSeconds(second - start);
  show.part("lid falls", start, second - start, ground,
            {draw(Movie{.base = "lid",
                        .at = covering(zoom(1.4, 1.1, 4), 0, travel(0.1, 0, 4)),
                        .first = 1,
                        .last = lidFrames,
                        .fps = (lidFrames - 0.5) / seconds})},
            -0.001, -1);
  show.part("lock turns back", second, shut - second, ground,
            {draw(Movie{.base = "lock",
                        .at = covering(zoom(2.2, 1.15, 3)),
                        .first = 1,
                        .last = lockFrames,
                        .fps = (lockFrames - 0.5) / cueSeconds(shut - second)})},
            -0.001, -1);
  show.part("smoke returns", start, shut - start, smoke,
            {draw(Waves{.texture = "smoke_acid",
                        .at = {-1.3, slide(-1.2, 0.35), 2.6, slide(2.4, 0.7)},
                        .speed = 2.4,
                        .amplitude = 0.06,
                        .alpha = slide(0.85, 0.1),
                        .blend = Blend::add})},
            0, -1);
  show.add("light returns", start, shut - start, haze,
           Bitmap{.texture = "rays_acid",
                  .at = centred(0, travel(-0.1, 0, 7), zoom(4.2, 0.5, 7)),
                  .alpha = flashes({0, 1, 2, 3, 4, 4.5, 5, 5.5, 6, 6.25, 6.5, 6.75}, 1, 0.4),
                  .blend = Blend::add});
  show.add("layers fall in", start, shut - start, title,
           glitching(vex(ed, zoom(1.3, 0.12, 7)), flashes({0, 2, 4, 5, 6, 6.5}, 0.9, 0.05), 4,
                     swing(4, 1.05, 1.3)));
  show.add("shut", shut, alienBar - shut, ground, Fade{});
  show.add("last spark", shut, alienBar - shut, subject,
           Bitmap{.texture = "streak_acid",
                  .at = {slide(-1.0, -0.2), -0.08, slide(2.0, 0.4), 0.16},
                  .alpha = slide(1, 0),
                  .blend = Blend::add});
}

}  // namespace

void addBox(Show& show) {
  addDoor(show);
  addReliquary(show);
  addLock(show);
  addBuild(show);
  addLid(show);
  addLayers(show);
  addBackwards(show);
}

}  // namespace vex
