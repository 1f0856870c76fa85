#include "production/movements/words.h"

// What lies over all: flashes on the cuts, dirt, grain, vignette, bars, the last curtain.

namespace vex {

using namespace song;
using namespace show;

using namespace screen;

namespace {

constexpr double barHeight = 0.2435;  // leaves 2.35 : 1

// What a flash is made of in one world.
struct LightCards {
  const char *haze, *rays, *orb, *streak;
};
constexpr LightCards acid{"haze_acid", "rays_acid", "light2", "streak_acid"},
    violet{"haze_violet", "rays_violet", "light5", "streak_violet"},
    teal{"haze_teal", "rays_teal", "light3", "streak_bone"},
    ember{"haze_ember", "rays_ember", "light6", "streak_bone"};

enum class Burst { rays, orb, streak };

// Light springs from where it comes from in the picture; the rest of the screen is barely touched.
struct Flash {
  const char* cue;
  Burst burst = Burst::rays;
  double x = 0, y = 0, size = 1, strength = 1;
};

Bitmap burstOf(const LightCards& light, const Flash& it) {
  switch (it.burst) {
    case Burst::rays:
      return {.texture = light.rays,
              .at = centred(it.x, it.y, spline({{0, 1.5 * it.size}, {partEnd, 2.3 * it.size}})),
              .alpha = spline({{0, 0.85 * it.strength}, {0.1, 0.6 * it.strength}, {partEnd, 0}})};
    case Burst::orb:
      return {.texture = light.orb,
              .at = centred(it.x, it.y, spline({{0, 1.5 * it.size}, {partEnd, 0.9 * it.size}})),
              .alpha = spline({{0, 0.7 * it.strength}, {0.1, 0.5 * it.strength}, {partEnd, 0}})};
    case Burst::streak: {
      const Curve width = spline({{0, 1.8 * it.size}, {partEnd, 3 * it.size}});
      const double height = 0.24 * it.size;
      return {.texture = light.streak,
              .at = {width * -0.5 + it.x, it.y - height / 2, width, height},
              .alpha = spline({{0, it.strength}, {0.1, 0.7 * it.strength}, {partEnd, 0}})};
    }
  }
  return {};
}

void addFlashes(Show& show, const LightCards& light, const std::vector<Flash>& flashes) {
  for (const Flash& it : flashes) {
    const double bars = it.burst == Burst::orb ? 0.0625 : 0.125;  // a quarter or half a beat
    Bitmap burst = burstOf(light, it);
    burst.blend = Blend::add;
    show.add("flash", barOf(it.cue), bars, flash, burst,
             glow(light.haze, centred(it.x, it.y, 3.4, 1.78),
                  spline({{0, 0.2 * it.strength}, {0.1, 0.1 * it.strength}, {partEnd, 0}})));
  }
}

// The light gives way for a moment: where drums begin to lead into what follows, and on strokes without a
// cut.
void addBlinks(Show& show) {
  const struct {
    double bar, depth;
  } blinks[] = {
      {3, 0.7},
      {barOf("far motif"), 0.6},
      {9, 0.35},
      {barOf("build fill"), 0.35},
      {barOf("build doubles"), 0.35},
      {barOf("layer fill"), 0.35},
      {barOf("last layer fill"), 0.35},
      {barOf("backwards 2"), 0.35},
      {barOf("drop fill"), 0.35},
      {33, 0.2},
      {barOf("alien fill"), 0.25},
      {barOf("break fill"), 0.3},
      {barOf("break fill 2"), 0.25},
      {barOf("break 2 hushed"), 0.6},
      {barOf("table fill"), 0.25},
      {51, 0.25},
      {barOf("jar fill"), 0.25},
      {barOf("white"), 0.2},
      {barOf("white fill"), 0.14},
      {barOf("crow fill 2"), 0.35},
      {barOf("water fill"), 0.3},
      {barOf("surface fill"), 0.15},
  };
  for (const auto& [bar, depth] : blinks)
    show.add("blink", bar, 0.0625, flash, Fade{0, 0, 0, line({{0, depth}, {partEnd, 0}})});
  // Over mirrors that melt no dark would be seen.
  show.add("strobe", barOf("last fill"), 0.0625, flash, Fade{1, 0.9, 0.7, line({{0, 0.2}, {partEnd, 0}})});
}

}  // namespace

void addFinish(Show& show) {
  using enum Burst;
  addBlinks(show);
  addFlashes(show, acid,
             {{"box", orb, -0.05, 0.0, 0.8},
              {"pulse", streak, 0, 0},
              {"lock", orb, -0.09, 0, 0.7},
              {"bolt", rays, 0, 0, 0.8},
              {"build", streak, 0, 0},
              {"lid", rays, 0, 0.1, 1.1},
              {"layer 1", orb, 0, -0.2, 1.2},
              {"layer 2", streak, 0, -0.2, 1.4},
              {"layer 3", orb, 0, -0.1, 1.8, 0.5},
              {"layer 4", rays, 0, -0.2, 1.1},
              {"backwards", orb, 0, 0.2}});
  addFlashes(show, violet,
             {{"alien", orb, -0.1, -0.3, 0.8},
              {"break over", rays, -0.62, -0.22, 0.6, 0.8},
              {"split", streak, 0, 0},
              {"counter voice", rays, -0.22, -0.3, 0.7},
              {"alien cut 6", orb, 0.17, -0.55, 0.6},
              {"climax", rays, 0.02, -0.5, 1},
              {"unison", streak, 0.05, -0.1, 1.2},
              {"unison 2", orb, 0.04, -0.6, 0.7},
              {"unison 3", streak, 0, 0.1, 1.2},
              {"unison 4", orb, 0.04, -0.45}});
  addFlashes(show, teal,
             {{"interlude one", rays, 0, -0.1, 1.1},
              {"pad opens", orb, 0, 0, 1.2},
              {"half time", rays, 0, -0.1, 0.8, 0.6},
              {"jar", orb, 0, 0, 1, 0.6},
              {"shards", orb, 0, 0},
              {"first drop", orb, -0.1, 0.45, 0.5}});
  addFlashes(show, ember, {{"roll", rays, 0, -0.34}, {"roll doubles", rays, 0.40, -0.10}});

  // The film's finish ends where the party begins.
  const double film = outroBar;
  // In the black breath before the box there is grain alone.
  show.add("dust", prologueBar, boxBar - prologueBar - 0.125, grain - 1,
           Noise{.texture = "dust", .jitterX = 1, .jitterY = 1, .alpha = 0.3, .flicker = 0.2});
  show.add("grain", 0, film, grain,
           Noise{.texture = "grain", .jitterX = 1, .jitterY = 1, .alpha = 0.17, .blend = Blend::add});
  const double lastBeat = film * beatsPerBar;
  // It leaves past the edges while the last world turns white.
  show.add("vignette", 0, film, vignette,
           Bitmap{.texture = "vignette",
                  .at = covering(line({{0, 1}, {lastBeat - 8, 1}, {partEnd, 3}})),
                  .blend = Blend::darken});
  // The bars slide in with the prologue and open on the white in which the last world ends; they stay ink.
  const Curve height =
      line({{0, 0.0}, {8, barHeight}, {lastBeat - 4, barHeight}, {lastBeat - 0.5, 0}, {partEnd, 0}});
  // They reach beyond the screen, so that no edge of theirs shows but the inner one.
  const double beyond = 0.5;
  show.add("letterbox", 0, film, curtain + 1,
           Bitmap{.texture = "bar", .at = {-1 - beyond, -1 - beyond, 2 + 2 * beyond, height + beyond}},
           Bitmap{.texture = "bar", .at = {-1 - beyond, height * -1 + 1, 2 + 2 * beyond, height + beyond}});
  // That white lies over grain and vignette, too, before the party begins.
  show.add("white", film - 0.25, 0.25, curtain, Fade{1, 0.97, 0.92, line({{0, 0}, {0.7, 0}, {partEnd, 1}})});
}

}  // namespace vex
