#include "production/movements/words.h"

namespace vex {

using namespace screen;

namespace {

// The creature breathes: its picture wobbles in place.
Waves beast(const Place& at, double speed, double amplitude) {
  return {.texture = "beast", .at = at, .speed = speed, .amplitude = amplitude};
}

Waves orb(const Place& at) {
  return {.texture = "orb", .at = at, .speed = 3, .amplitude = swing(3, 0.0, 0.012)};
}

// A bank of haze between two layers, lit on the beats.
void addHaze(Show& show, const char* name, double bar, double bars, int track, double level) {
  show.add(name, bar, bars, track,
           Bitmap{.texture = "haze_violet",
                  .at = centred(swing(11, -0.3, 0.3), 0.05, 2.6, 1.9),
                  .alpha = flashes(everyBeat, level, level * 0.55),
                  .blend = Blend::add});
}

// Down the hangar, rib after rib, to what hangs at its end.
void addApproach(Show& show) {
  const double start = alienBar;
  show.add("hangar", start, 2, ground, Bitmap{.texture = "hangar", .at = covering(zoom(1.0, 1.5, 8))});
  addHaze(show, "far haze", start, 2, backdrop, 0.9);
  show.add("hanging", start, 2, backdrop + 1,
           beast(centred(0.02, travel(-0.1, -0.02, 8), zoom(0.35, 1.5, 8)), 2, 0.012));
  tunnel(show, "rib", start, 2, 1, 2, 2.25);  // never so small that its outer edge shows
}

// Eye to eye.
void addFace(Show& show) {
  const double start = barOf("alien cut 2");
  show.add("face", start, 1, ground,
           Bitmap{.texture = "beast_near", .at = covering(zoom(1.05, 1.2, 4), travel(0.0, 0.08, 4), 0.02)});
  show.add("face, nearer", start + 1, 1, ground,
           Bitmap{.texture = "beast_near",
                  .at = covering(zoom(1.8, 2.3, 4), travel(0.2, 0.12, 4), travel(-0.1, 0.0, 4))});
  show.add("glint", start + 1, 1, haze + 1,
           Bitmap{.texture = "flare_highpass",
                  .at = centred(slide(0.1, 0.04), slide(-0.35, -0.28), 1.5),
                  .alpha = flashes({0, 1, 2, 3}, 1, 0),
                  .blend = Blend::add});
  show.add("gaze", start, 2, haze,
           Bitmap{.texture = "rays_violet",
                  .at = centred(slide(-0.02, 0.1), -0.2, 2.2),
                  .alpha = flashes(everyBeat, 0.6, 0.15),
                  .blend = Blend::add});
  show.add("limb across", start, 2, front,
           Waves{.texture = "tentacle",
                 .at = {slide(-1.9, -1.3), slide(0.15, 0.3), 2.2, 1.5},
                 .speed = 2.2,
                 .amplitude = 0.03});
  show.add("breath", start, 2, smoke,
           Waves{.texture = "smoke_violet",
                 .at = covering(1.4),
                 .speed = 1.8,
                 .amplitude = 0.05,
                 .alpha = 0.35,
                 .blend = Blend::add});
}

// The music stops: one mirror ball in the dark; then the rose window bursts open.
void addBreak(Show& show) {
  const double start = barOf("break"), over = barOf("break over"), next = barOf("split");
  show.add("dark", start, over - start, ground, Fade{});
  show.add("light on the ball", start, over - start, backdrop,
           Bitmap{.texture = "rays_violet",
                  .at = centred(0, 0, zoom(3.0, 3.4, 4)),
                  .alpha = flashes({0, 2, 2.5, 3, 3.25, 3.5, 3.75}, 0.9, 0.35),
                  .blend = Blend::add});
  show.add("ball", start, over - start, subject, orb(centred(travel(-0.05, 0.05, 4), 0, zoom(1.0, 1.35, 4))));
  show.add("rose window", over, next - over, ground, roseWall("glass_violet", zoom(1.25, 1.9, 4)));
  show.add("beyond", over, next - over, backdrop,
           Bitmap{.texture = "rays_violet",
                  .at = centred(0, 0, 3.4),
                  .alpha = flashes({0, 1, 2, 3}, 0.8, 0.25),
                  .blend = Blend::add});
  tunnel(show, "gate_violet", over, next - over, 1);
  show.add("vexation", over, next - over, title,
           glitching(vex(ation, spline({{0, 1.5}, {0.4, 1.18}, {2, 1.2}, {partEnd, 1.32}})),
                     flashes({0, 1, 2, 2.5, 3}, 1, 0.05), 3, swing(4, 1.06, 1.25)));
}

// Two worlds side by side, the seam swinging, then three; each paints its own ground.
void addSplit(Show& show) {
  const double start = barOf("split");
  show.add("between the worlds", start, 2, ground - 1, Fade{});
  show.add("left half", start, 1, ground, Viewport{.x = -1, .y = -1, .w = swing(4, 0.8, 1.2), .h = 2},
           Bitmap{.texture = "sky_violet", .at = covering(1.2)},
           Bitmap{.texture = "rays_violet",
                  .at = {-1.6, -1.3, 3.2, 2.4},
                  .alpha = flashes({0, 1, 2, 3}, 1, 0.4),
                  .blend = Blend::add},
           Bitmap{.texture = "figure_violet", .at = {-0.7, slide(-0.72, -0.85), 1.4, 2.1}});
  show.add("right half", start, 1, ground + 1, Viewport{.x = swing(4, -0.2, 0.2), .y = -1, .w = 1.2, .h = 2},
           Bitmap{.texture = "hangar", .at = {slide(-1.9, -1.6), -1.1, 3.6, 2.2}},
           beast({slide(-1.2, -1.05), slide(-0.95, -0.85), 2.2, 1.9}, 2.4, 0.014));
  show.add("left third", start + 1, 1, ground, Viewport{.x = -1, .y = -1, .w = 0.66, .h = 2},
           Bitmap{.texture = "hangar_side", .at = {slide(-2.2, -1.9), -1.1, 4.6, 2.2}},
           orb({slide(-0.8, -0.6), swing(4, -0.6, -0.4), 1.6, 0.95}));
  show.add("middle third", start + 1, 1, ground + 1, Viewport{.x = -0.335, .y = -1, .w = 0.68, .h = 2},
           Bitmap{.texture = "beast_near", .at = {slide(-3.0, -2.8), -1.1, 6.4, slide(2.2, 2.4)}});
  show.add("right third", start + 1, 1, ground + 2, Viewport{.x = 0.34, .y = -1, .w = 0.67, .h = 2},
           Bitmap{.texture = "sky_violet", .at = covering(slide(1.5, 1.8))},
           Bitmap{.texture = "figure_violet", .at = {slide(1.05, 1.25), -0.75, -2.1, 2.2}});
  // One a bar: when a late start catches up part by part, the last of each bar must be the whole screen.
  for (const double bar : {start, start + 1}) show.add("whole screen", bar, 1, ground + 3, Viewport{});
  show.add("violet haze", start, 2, smoke,
           Waves{.texture = "smoke_violet",
                 .at = covering(1.4),
                 .speed = 2,
                 .amplitude = 0.05,
                 .alpha = flashes(everyBeat, 0.55, 0.2),
                 .blend = Blend::add});
  show.add("seams", start, 2, title,
           Bitmap{.texture = "streak_violet",
                  .at = {-1.4, swing(4, -0.2, 0.1), 2.8, 0.3},
                  .alpha = flashes({0, 1, 2, 3, 4, 5, 5.5, 6, 6.5, 7}, 1, 0.3),
                  .blend = Blend::add});
}

// Past the flank of the hangar; two mirror balls circle the creature, one before and one behind it.
void addOrbit(Show& show) {
  const double start = barOf("counter voice");
  show.add("flank", start, 2, ground,
           Bitmap{.texture = "hangar_side", .at = covering(1.3, slide(0.25, -0.25), -0.03)});
  addHaze(show, "flank haze", start, 2, backdrop, 0.8);
  show.add("ball behind", start, 2, far,
           orb(centred(swing(8, -0.75, 0.85, 180), swing(8, -0.35, 0.1, 270), 0.42)));
  show.add("circled", start, 2, subject,
           beast(centred(slide(0.2, 0.0), slide(0.1, 0.0), slide(1.95, 2.3)), 2.2, 0.014));
  show.add("ball before", start, 2, smoke, orb(centred(swing(8, -0.8, 0.8), swing(8, -0.2, 0.45, 90), 0.62)));
  show.add("lens", start, 2, title - 1,
           Bitmap{.texture = "streak_violet",
                  .at = {slide(-1.8, -1.0), -0.35, 2.8, 0.5},
                  .alpha = flashes(everyBeat, 0.8, 0.1),
                  .blend = Blend::add});
  show.add("near limb", start, 2, front,
           Waves{.texture = "tentacle",
                 .at = {slide(1.9, 1.5), slide(-0.75, -0.6), -1.5, 1.0},
                 .speed = 2,
                 .amplitude = 0.03});
}

// The eye that let it in, and limbs over it.
void addStare(Show& show) {
  const double start = barOf("alien cut 6");
  show.add(
      "stare", start, 1, ground,
      Movie{
          .base = "eye", .at = covering(zoom(1.25, 1.5, 4), 0.05, 0.02), .first = 20, .last = 32, .fps = 12});
  show.add(
      "stare, nearer", start + 1, 1, ground,
      Movie{.base = "eye", .at = covering(zoom(2.3, 3.2, 4), -0.04, 0.1), .first = 30, .last = 32, .fps = 8});
  show.add("nerves", start, 2, smoke + 1,
           Waves{.texture = "threads_violet",
                 .at = covering(zoom(1.2, 2.2, 8)),
                 .speed = 3,
                 .amplitude = swing(8, 0.03, 0.09),
                 .alpha = flashes(everyBeat, 0.9, 0.3),
                 .blend = Blend::add});
  show.add("limb over the eye", start, 2, front,
           Waves{.texture = "tentacle",
                 .at = {slide(-2.0, -1.25), slide(0.0, 0.15), 2.3, 1.3},
                 .speed = 2.4,
                 .amplitude = 0.035});
  show.add("vexer", start + 1, 1, title, glitching(vex(er, 1.0, 0.1, -0.5), 0.35, 2, 1.1));
}

// The second break: glass, then nothing; then the creature over everything.
void addClimax(Show& show) {
  const double start = barOf("break 2"), hushed = barOf("break 2 hushed"), climax = barOf("climax");
  const double unison = barOf("unison");
  show.add("glass", start, hushed - start, ground, roseWall("glass_violet", zoom(2.2, 1.6, 2)));
  show.add("gate closes", start, hushed - start, subject,
           Bitmap{.texture = "gate_violet", .at = centred(0, 0, zoom(4.5, 1.2, 2))});
  show.add("hushed", hushed, climax - hushed, ground, Fade{});
  show.add("six eyes", hushed, climax - hushed, subject,
           Bitmap{.texture = "beast_near",
                  .at = covering(zoom(1.4, 1.5, 2), 0.1),
                  .alpha = line({{0, 0}, {0.5, 0.3}, {partEnd, 0.12}})});
  show.add("hangar alight", climax, unison - climax, ground,
           Bitmap{.texture = "hangar", .at = covering(zoom(1.8, 1.2, 4), 0, 0.05)});
  show.add("blaze behind", climax, unison - climax, backdrop,
           Bitmap{.texture = "rays_violet",
                  .at = centred(0, -0.05, zoom(3.0, 3.8, 4)),
                  .alpha = flashes({0, 1, 2, 3}, 1, 0.5),
                  .blend = Blend::add});
  show.add("it comes", climax, unison - climax, subject,
           beast(centred(0, travel(0.05, 0.12, 4), zoom(1.9, 3.1, 4)), 4, 0.02));
  show.add("limb left", climax, unison - climax, front,
           Waves{.texture = "tentacle",
                 .at = {slide(-1.7, -1.25), slide(-0.5, -0.2), 1.7, 1.2},
                 .speed = 3,
                 .amplitude = 0.03});
  show.add("limb right", climax, unison - climax, front + 1,
           Waves{.texture = "tentacle",
                 .at = {slide(1.7, 1.3), slide(0.1, 0.0), -1.7, 1.2},
                 .speed = 2.6,
                 .amplitude = 0.03});
}

// Four strokes, four pictures; glass melts, the title is struck with them.
void addUnison(Show& show) {
  const double first = barOf("unison"), second = barOf("unison 2"), third = barOf("unison 3"),
               fourth = barOf("unison 4");
  show.add("glass melts", first, second - first, ground,
           Waves{.texture = "glass_violet",
                 .at = centred(0, 0, zoom(2.6, 3.4, 2), 1.78),
                 .speed = 4,
                 .amplitude = 0.04});
  show.add("stroke of eyes", second, third - second, ground,
           Bitmap{.texture = "beast_near", .at = covering(zoom(2.6, 2.9, 2), 0.42, -0.2)});
  show.add("glass melts on", third, fourth - third, ground,
           Waves{.texture = "glass_violet",
                 .at = centred(0, 0, zoom(4.2, 5.5, 2), 1.78),
                 .speed = 4,
                 .amplitude = 0.07});
  show.add("stroke of the hangar", fourth, interludeOneBar - fourth, ground,
           Bitmap{.texture = "hangar", .at = covering(zoom(1.2, 2.8, 2))});
  show.add("struck", fourth, interludeOneBar - fourth, backdrop + 1,
           beast(centred(0, 0, zoom(0.9, 0.1, 2)), 4, 0.02));
  show.add("blows", first, 2, backdrop,
           Bitmap{.texture = "rays_violet",
                  .at = centred(0, 0, 3.6),
                  .alpha = flashes({0, 2, 4, 6}, 1, 0.2),
                  .blend = Blend::add});
  tunnel(show, "gate_violet", first, 2, 1);
  show.add("vexatious", first, 2, title,
           glitching(vex(atious, spline({{0, 1.45}, {0.5, 1.2}, {4, 1.24}, {partEnd, 1.36}})),
                     flashes({0, 2, 4, 6, 6.75, 7.25}, 1, 0.06), 4, swing(4, 0.9, 1.22)));
}

}  // namespace

void addAlien(Show& show) {
  addApproach(show);
  addFace(show);
  addBreak(show);
  addSplit(show);
  addOrbit(show);
  addStare(show);
  addClimax(show);
  addUnison(show);
}

}  // namespace vex
