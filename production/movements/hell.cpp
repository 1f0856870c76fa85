#include "production/movements/words.h"

namespace vex {

using namespace screen;

namespace {

enum Camera { wide, low, close, crane, outwards, aisle, seams, shore, backlit, chained, core };

// The world fills the screen for a while; `start` is where its cameras' shots of twenty seconds are entered.
void addShot(Show& show, const char* name, double bar, double bars, Camera camera, double start,
             double speed = 1) {
  show.part(name, bar, bars, ground, {draw(World{.scene = "SceneHell", .camera = camera})}, start, speed);
}

// The fire behind it all breathes over the picture, about a middle.
void addFire(Show& show, const char* name, double bar, double bars, double x, double y, const Curve& alpha) {
  show.add(name, bar, bars, haze,
           Bitmap{.texture = "haze_ember",
                  .at = centred(x, y, swing(9, 2.7, 3.3)),
                  .alpha = alpha,
                  .blend = Blend::add});
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

// Ash and sparks before the lens, rising.
void addSparks(Show& show, const char* name, double bar, double bars, double rise, const Curve& alpha) {
  show.add(name, bar, bars, front,
           Noise{.texture = "sparks_ember", .speedX = 0.02, .speedY = rise, .alpha = alpha});
}

// Up the nave; then a hand above the lava.
void addArrival(Show& show) {
  const double start = hellBar, lake = barOf("lake of fire"), next = barOf("cathedral");
  addShot(show, "nave", start, lake - start, wide, 0.5, 2.2);
  addDusk(show, "light rises from the lake", start, lake - start,
          line({{0, 0.3}, {4, -0.55}, {partEnd, -1.1}}), line({{0, 0.75}, {4, 0.5}, {partEnd, 0.3}}));
  addFire(show, "fire in the choir", start + 0.5, lake - start - 0.5, 0.0, 0.1,
          flashes({0, 2, 3, 4, 5}, 0.22, 0.02));
  addSparks(show, "ash", start, next - start, 0.05, fade(1, 0, 0.55));
  addShot(show, "over the lava", lake, 1, shore, 1, 2.4);
  addDusk(show, "lit by the lava alone", lake, 1, -0.8, 0.9);
  addShot(show, "over the lava, nearer", lake + 1, 1, low, 12, 2);
  addHeat(show, "heat", lake, next - lake, flashes(everyBeat, 0.16, 0.03));
}

// Through the aisle and from the vault; then the sphere itself.
void addCathedral(Show& show) {
  const double start = barOf("cathedral"), sphere = barOf("black sphere"), next = barOf("under the lake");
  addShot(show, "aisle", start, 1, aisle, 8, 2.8);
  addShot(show, "vault", start + 1, 1, crane, 9, 3);
  addFire(show, "fire on stone", start, sphere - start, 0.1, 0.1, flashes(everyBeat, 0.18, 0.02));
  addShot(show, "black sphere", sphere, 1, close, 1, 2);
  addShot(show, "black sphere, its other side", sphere + 1, 1, close, 12, 2);
  addFire(show, "its light", sphere, next - sphere, 0.0, 0.0, flashes(everyBeat, 0.55, 0.10));
  addSparks(show, "more ash", start, next - start, 0.07, 0.5);
}

// Half the band is gone: as if the lake had closed over us. The furnace is heard before it opens.
void addDepths(Show& show) {
  const double start = barOf("under the lake"), embers = barOf("embers"), fill = barOf("furnace fill"),
               gasp = barOf("gasp"), next = barOf("eruption");
  addShot(show, "sunk", start, 1, outwards, 6, 1.2);
  addShot(show, "sunk, nearer", start + 1, 1, seams, 14, 0.9);
  show.add("under the melt", start, embers - start, backdrop,
           Fade{.red = 0.20, .green = 0.02, .blue = 0.006, .alpha = swing(4, 0.02, 0.08)});
  addNight(show, "the melt's dark", start, embers - start);
  addHeat(show, "melt over us", start, embers - start, swing(3, 0.08, 0.16));
  show.add("the seams shine through", start, embers - start, haze,
           Bitmap{.texture = "haze_ember",
                  .at = centred(-0.02, 0, swing(5, 0.85, 1.0)),
                  .alpha = swing(2, 0.5, 0.8),
                  .blend = Blend::add});
  addShot(show, "embers", embers, fill - embers, backlit, 7, 0.9);
  addShot(show, "furnace", fill, gasp - fill, crane, 2, 2.4);
  addShot(show, "gasp", gasp, next - gasp, seams, 10, 0.2);
  show.add("dark before the blow", gasp, next - gasp, backdrop,
           Fade{.alpha = line({{0, 0.5}, {partEnd, 0.9}})});
  addSparks(show, "embers rise", embers, gasp - embers, 0.11, slide(0.4, 1.0));
  addFire(show, "furnace opens", fill, gasp - fill, 0.0, 0.2, flashes({0, 1, 2, 2.5}, 0.7, 0.15));
}

// All of it at once, a camera a bar.
void addEruption(Show& show) {
  const double start = barOf("eruption"), next = barOf("sphere cracks");
  addShot(show, "eruption", start, 0.5, chained, 9, 3);
  addShot(show, "eruption at the sphere", start + 0.5, 0.5, close, 10, 3);
  addShot(show, "the heart lies open", start + 1, 0.5, core, 16.4, 1.6);
  addNight(show, "lit by the heart alone", start + 1, 0.5);
  addShot(show, "eruption from the choir", start + 1.5, 0.5, outwards, 12, 3);
  addFire(show, "eruption's light", start, next - start, 0.0, 0.0, flashes(everyBeat, 0.4, 0.05));
  addHeat(show, "eruption's smoke", start, next - start, flashes(everyBeat, 0.22, 0.04));
  addSparks(show, "eruption's sparks", start, next - start, 0.16, 0.9);
}

// Three blows and a fourth that leaves nothing; each nearer, the word struck with them.
void addCracks(Show& show) {
  const double first = barOf("sphere cracks"), second = barOf("sphere cracks 2"),
               third = barOf("sphere cracks 3"), fill = barOf("last hell fill"), burnt = barOf("scorched");
  addShot(show, "blow one", first, second - first, crane, 14, 1.4);
  addShot(show, "blow two", second, third - second, close, 9, 1.4);
  addShot(show, "blow three", third, fill - third, seams, 2, 1.2);
  addShot(show, "seams", fill, burnt - fill, seams, 9, 2.2);
  addFire(show, "blows of light", first, burnt - first, 0.0, 0.0,
          flashes({0, 2, 4, 5, 5.5, 6, 6.25, 6.5, 6.75}, 0.9, 0.1));
  addSparks(show, "last sparks", first, burnt - first, 0.2, 0.8);
  show.add("vexer in the fire", first, burnt - first, title,
           glitching(vex(er, spline({{0, 1.4}, {0.5, 1.1}, {4, 1.14}, {partEnd, 1.3}}), 0, 0.46),
                     flashes({0, 2, 4, 5, 5.5, 6, 6.5}, 1, 0.05), 4, swing(4, 0.94, 1.24)));
  addShot(show, "scorched", burnt, hellBar + barCount(Section::hell) - burnt, seams, 13, 0.2);
  show.add("burnt out", burnt, hellBar + barCount(Section::hell) - burnt, curtain - 1,
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
