#include "production/models/hell_parts.h"
#include "production/movements/words.h"

namespace vex {

using namespace screen;

namespace {

enum Camera {
  wide,
  low,
  close,
  crane,
  aisle,
  beneath,
  sunk,
  sunkenSphere,
  shore,
  backlit,
  choir,
  rose,
  core,
  open,
  openNearer,
  child
};

// The world fills the screen for a while; `start` is the time at which its camera moves and its events come.
void addShot(Show& show, const char* name, double bar, double bars, Camera camera, double start) {
  show.part(name, bar, bars, ground, {draw(World{.scene = "SceneHell", .camera = camera})}, start);
}

// The fire behind it all breathes over the picture, about a middle.
void addFire(Show& show, const char* name, double bar, double bars, double x, double y, const Curve& alpha) {
  show.add(name, bar, bars, haze,
           Bitmap{.texture = "haze_ember",
                  .at = centred(x, y, swing(9, 2.7, 3.3)),
                  .alpha = alpha,
                  .blend = Blend::add});
}

// Rays from what burns there, on beats.
void addRays(Show& show, const char* name, double bar, double bars, const Curve& x, const Curve& y,
             const Curve& height, const Curve& alpha) {
  show.add(name, bar, bars, haze,
           Bitmap{.texture = "rays_ember", .at = centred(x, y, height), .alpha = alpha, .blend = Blend::add});
}

void addHeat(Show& show, const char* name, double bar, double bars, const Curve& alpha) {
  show.add(name, bar, bars, smoke, smokeBefore("smoke_ember", 1.35, 1.7, alpha));
}

// Darkens all but the lower middle of the picture, where the lake shines; `height` moves what stays light.
void addDusk(Show& show, const char* name, double bar, double bars, const Curve& height, const Curve& alpha) {
  show.add(
      name, bar, bars, backdrop,
      Bitmap{.texture = "hell_dusk", .at = covering(1.6, 0, height), .alpha = alpha, .blend = Blend::darken});
}

// Darkens the borders and leaves what is about the middle.
void addNight(Show& show, const char* name, double bar, double bars) {
  show.add(name, bar, bars, backdrop,
           Bitmap{.texture = "vignette", .at = covering(1), .blend = Blend::darken});
}

// Sparks that fly in depth; `start` keeps two shots from the same ones.
void addSparks(Show& show, const char* name, double bar, double bars, double start,
               const Particles& particles) {
  show.part(name, bar, bars, front, {draw(Flare{"flare_particle"}), draw(particles)}, start);
}

// Up the nave; then a hand above the lava.
void addArrival(Show& show) {
  const double start = hellBar, lake = barOf("lake of fire"), next = barOf("cathedral");
  addShot(show, "nave", start, lake - start, wide, 0.5);
  addDusk(show, "light rises from the lake", start, lake - start,
          line({{0, -0.4}, {4, -0.7}, {partEnd, -1.1}}), line({{0, 0.2}, {partEnd, 0.1}}));
  addRays(show, "windows flare", start, lake - start, line({{0, 0.14}, {partEnd, 0.03}}),
          line({{0, 0.22}, {partEnd, 0.26}}), 2.2, flashes({0, 2, 3, 4, 5, 6, 7}, 0.8, 0.22));
  show.add("downbeat", start, 1, haze,
           Bitmap{.texture = "light6",
                  .at = centred(0.13, 0.23, 3.4, 1.4),
                  .alpha = flashes({0, 2, 3}, 0.8, 0.25),
                  .blend = Blend::add});
  addFire(show, "fire in the choir", start, lake - start, 0.0, 0.1, flashes({0, 2, 3, 4, 5}, 0.6, 0.12));
  addSparks(show, "ash", start, lake - start, 0,
            {.alpha = fade(1, 0, 0.8), .count = 60, .spread = 5, .speedY = 7, .scatter = 26});
  addShot(show, "over the lava", lake, 1, shore, 1);
  addShot(show, "over the lava, nearer", lake + 1, 1, low, 3);
  addRays(show, "windows over the lava", lake, 1, -0.11, -0.12, 2.2, flashes(everyBeat, 0.7, 0.25));
  addRays(show, "windows over the lava, nearer", lake + 1, 1, 0.05, 0.42, 2.4, flashes(everyBeat, 0.7, 0.25));
  addFire(show, "the lake's light", lake, next - lake, 0, 0.3, flashes(everyBeat, 0.3, 0.08));
  addHeat(show, "heat", lake, next - lake, flashes(everyBeat, 0.12, 0.02));
}

// Through the aisle and from the vault; then the sphere itself.
void addCathedral(Show& show) {
  const double start = barOf("cathedral"), sphere = barOf("black sphere"), next = barOf("under the lake");
  addShot(show, "aisle", start, 1, aisle, 8.5);
  addShot(show, "vault", start + 1, 1, crane, 5);
  addFire(show, "fire on stone", start, sphere - start, 0.1, 0.1, flashes(everyBeat, 0.25, 0.04));
  addShot(show, "black sphere", sphere, 1, close, 1);
  addShot(show, "black sphere from the lake", sphere + 1, 1, beneath, 8);
  addFire(show, "its light", sphere, next - sphere, 0.0, 0.0, flashes(everyBeat, 0.45, 0.05));
  addSparks(show, "sparks from the seams", sphere, next - sphere, 5,
            {.count = 40, .spread = 8, .speedY = 6, .scatter = 24});
}

// What hangs over the roof of fire is a black sun: its light stands about it.
void addEclipse(Show& show, double bar, Camera camera, double start) {
  const Sight sight =
      onScreen(hell::cameras()[camera], start, 1, beatsPerBar, hell::inLake(hell::sphereCentre));
  show.add("eclipse", bar, 1, haze,
           Bitmap{.texture = "corona_ember",
                  .at = centred(sight.x, sight.y, sight.unit * 122),
                  .alpha = flashes({0, 2}, 1, 0.6),
                  .blend = Blend::add});
}

// Half the band is gone: the lake has closed over us. The furnace is heard before it opens.
void addDepths(Show& show) {
  const double start = barOf("under the lake"), embers = barOf("embers"), fill = barOf("furnace fill"),
               gasp = barOf("gasp"), next = barOf("eruption");
  addShot(show, "sunk", start, 1, sunk, 5);
  addShot(show, "sunken sphere", start + 1, 1, sunkenSphere, 8);
  for (const int bar : {0, 1})
    addEclipse(show, start + bar, bar == 0 ? sunk : sunkenSphere, bar == 0 ? 5 : 8);
  addNight(show, "the melt's dark", start, embers - start);
  addHeat(show, "melt about us", start, embers - start, swing(3, 0.14, 0.3));
  addFire(show, "the roof's light", start, embers - start, 0, -0.7, swing(2, 0.25, 0.5));
  addShot(show, "embers", embers, fill - embers, backlit, 7);
  addRays(show, "windows behind the sphere", embers, fill - embers, line({{0, 0.17}, {partEnd, 0.12}}), 0.29,
          2.4, flashes(everyBeat, 0.6, 0.2));
  addSparks(show, "embers rise", embers, gasp - embers, 10,
            {.alpha = slide(0.6, 1), .count = 110, .spread = 7, .speedY = 14, .scatter = 24});
  addShot(show, "furnace", fill, gasp - fill, choir, 8);
  addRays(show, "furnace opens", fill, gasp - fill, 0, 0.36, line({{0, 1.6}, {partEnd, 3}}),
          flashes({0, 1, 2, 2.5}, 1, 0.3));
  addShot(show, "gasp", gasp, next - gasp, rose, 10.4);
  show.add("dark before the blow", gasp, next - gasp, backdrop,
           Fade{.alpha = line({{0, 0.5}, {partEnd, 0.92}})});
  show.add("breath held", gasp, next - gasp, haze,
           Bitmap{.texture = "haze_ember",
                  .at = centred(0.015, -0.165, line({{0, 1.9}, {partEnd, 0.8}})),
                  .alpha = 0.8,
                  .blend = Blend::add},
           Bitmap{.texture = "light6",
                  .at = centred(0.015, -0.165, line({{0, 0.7}, {partEnd, 0.16}})),
                  .alpha = line({{0, 0.7}, {partEnd, 1}}),
                  .blend = Blend::add});
}

// The rose bursts out of the wall; behind it the fire breaks through, and the sphere opens.
void addEruption(Show& show) {
  const double start = barOf("eruption"), heart = start + 1, next = barOf("sphere cracks");
  addShot(show, "rose bursts", start, 1, rose, 11);
  addRays(show, "fire through the rose", start, 1, 0.015, -0.165, line({{0, 1.4}, {1, 3.4}, {partEnd, 4.6}}),
          line({{0, 1}, {2, 0.8}, {partEnd, 0.4}}));
  addRays(show, "fire through the rose again", start, 1, 0.015, -0.165, line({{0, 0.8}, {partEnd, 2.2}}),
          flashes({0, 1, 2, 3}, 1, 0.3));
  show.add("white of the blow", start, 0.25, flash,
           Fade{.red = 1, .green = 0.93, .blue = 0.8, .alpha = line({{0, 0.95}, {0.1, 0.4}, {0.3, 0}})});
  addSparks(show, "eruption's sparks", start, 1, 0,
            {.count = 200, .spread = 26, .speedY = 4, .speedZ = 34, .scatter = 10});
  addShot(show, "the heart lies open", heart, 1, core, 14.5);
  addNight(show, "lit by the heart alone", heart, 1);
  show.add("heart's corona", heart, next - heart, haze,
           Bitmap{.texture = "corona_ember",
                  .at = centred(0.12, 0, zoom(2.9, 3.5, 4)),
                  .alpha = flashes(everyBeat, 0.9, 0.12),
                  .blend = Blend::add});
  addFire(show, "eruption's light", start, next - start, 0.0, 0.0, flashes(everyBeat, 0.3, 0.05));
}

// Three blows and a fourth that leaves nothing; each nearer, the word struck with them.
void addCracks(Show& show) {
  const double first = barOf("sphere cracks"), second = barOf("sphere cracks 2"),
               third = barOf("sphere cracks 3"), fill = barOf("last hell fill"), burnt = barOf("scorched"),
               next = hellBar + barCount(Section::hell);
  addShot(show, "blow one", first, second - first, open, 17);
  addShot(show, "blow two", second, third - second, openNearer, 17);
  addShot(show, "blow three", third, burnt - third, child, 17);
  // The child stays black: no light lies over it in the last shot.
  addFire(show, "blows of light", first, third - first, 0.0, 0.0, flashes({0, 2}, 0.7, 0.1));
  show.add("its eye opens", fill + 0.25, 0.25, flash,
           Bitmap{.texture = "light7",
                  .at = centred(-0.115, -0.31, line({{0, 0.05}, {0.3, 0.22}, {partEnd, 0.18}}), 1.3),
                  .blend = Blend::add});
  addSparks(show, "last sparks", first, fill - first, 3,
            {.count = 120, .spread = 14, .speedY = 8, .speedZ = 12, .scatter = 22});
  const Word word = vex(er, spline({{0, 1.1}, {0.5, 0.9}, {4, 0.94}, {partEnd, 1.05}}), 0, 0.52);
  show.add("dark under the word", first, burnt - first, haze + 1,
           Bitmap{.texture = "hell_dusk",
                  .at = {.x = -1.1, .y = 1, .w = 2.2, .h = -1.45},
                  .alpha = line({{0, 1}, {-3, 1}, {partEnd, 0}}),
                  .blend = Blend::darken});
  show.add("vexer in the fire", first, fill - first, title, word);
  addShot(show, "scorched", burnt, next - burnt, child, 19.3);
  show.add("burnt out", burnt, next - burnt, curtain - 1,
           Fade{.alpha = line({{0, 0.55}, {0.5, 1}, {partEnd, 1}})});
}

}  // namespace

void addHell(Show& show) {
  addArrival(show);
  addCathedral(show);
  addDepths(show);
  addEruption(show);
  addCracks(show);
}

}  // namespace vex
