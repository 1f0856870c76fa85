#include "production/models/hell_parts.h"
#include "production/movements/words.h"

namespace vex {

using namespace image;
using namespace geometry;
using namespace song;
using namespace show;

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
  rosette,
  core,
  open,
  openNearer,
  child
};

// A piece of the movement; its camera moves and the world's events come from scene time `start` on.
struct Shot {
  const char* name;
  double bar, bars;
  Camera camera;
  double start;
};

const Vector windows(0, 70, hell::choirPlace), windowsFoot(0, 24, hell::choirPlace),
    rose(0, hell::roseHeight, hell::choirPlace);

void addShot(Show& show, const Shot& shot) {
  show.part(shot.name, shot.bar, shot.bars, ground,
            {draw(World{.scene = "SceneHell", .camera = shot.camera})}, shot.start);
}

Sight sightOf(const Shot& shot, const Vector& place) {
  return onScreen(hell::cameras()[shot.camera], shot.start, 1, shot.bars * beatsPerBar, place);
}

// Light about a place in the world, as wide and high as it would be there.
void addGlow(Show& show, const Shot& shot, const char* texture, const Vector& place, double height,
             const Curve& alpha) {
  const Sight sight = sightOf(shot, place);
  show.add("glow", shot.bar, shot.bars, haze,
           glow(texture, centred(sight.x, sight.y, sight.unit * height), alpha));
}

// A corona stands about the sphere.
void addCorona(Show& show, const Shot& shot, const std::vector<double>& beats, double level) {
  addGlow(show, shot, "corona_ember", hell::sphereCentre, 170, flashes(beats, level, 0.25 * level));
}

void addHeat(Show& show, const char* name, double bar, double bars, const Curve& alpha) {
  show.add(name, bar, bars, smoke, smokeBefore("smoke_ember", 1.35, 1.7, alpha));
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
  const double start = hellBar, lake = barOf("lake of fire");
  const Shot nave{"nave", start, lake - start, wide, 0.5}, over{"over the lava", lake, 1, shore, 1},
      nearer{"over the lava, nearer", lake + 1, 1, low, 3};
  const std::vector<double> strokes{0, 2, 3, 4, 5, 6, 7};
  addShot(show, nave);
  addGlow(show, nave, "rays_ember", windows, 640, flashes(strokes, 1, 0.3));
  addGlow(show, nave, "light6", windows, 330, flashes(strokes, 1, 0.35));
  addGlow(show, nave, "light7", windowsFoot, 190, flashes(strokes, 1, 0.6));
  addCorona(show, nave, strokes, 0.7);
  addSparks(show, "ash", start, lake - start, 0,
            {.alpha = fade(1, 0, 0.8), .count = 40, .spread = 5, .speedY = 7, .scatter = 26});
  for (const Shot& shot : {over, nearer}) {
    addShot(show, shot);
    addGlow(show, shot, "rays_ember", windows, 520, flashes(everyBeat, 0.8, 0.25));
    addGlow(show, shot, "light7", windowsFoot, 190, flashes(everyBeat, 1, 0.6));
    addCorona(show, shot, everyBeat, 0.8);
    addHeat(show, "heat", shot.bar, shot.bars, flashes(everyBeat, 0.08, 0.01));
  }
}

// Along the piers and from the vault; then the sphere itself.
void addCathedral(Show& show) {
  const double start = barOf("cathedral"), sphere = barOf("black sphere"), next = barOf("under the lake");
  const Shot past{"aisle", start, 1, aisle, 8.5}, above{"vault", start + 1, 1, crane, 5},
      before{"black sphere", sphere, 1, close, 1},
      under{"black sphere from the lake", sphere + 1, 0.5, beneath, 8},
      along{"along the chain", sphere + 1.5, 0.5, close, 10};
  for (const Shot& shot : {past, above, before, under, along}) addShot(show, shot);
  addGlow(show, past, "rays_ember", windows, 420, flashes({0, 2}, 0.8, 0.25));
  addGlow(show, past, "light7", windows, 150, flashes({0, 1, 2, 3}, 1, 0.5));
  for (const Shot& shot : {past, above}) addCorona(show, shot, everyBeat, 1);
  addCorona(show, before, everyBeat, 1);
  addNight(show, "the nave's dark", sphere, 1);
  for (const char* light : {"rays_ember", "light6"})
    addGlow(show, before, light, windows, 420, flashes(everyBeat, 0.9, 0.35));
  // From below it eclipses what burns; the stone about it stays dark.
  for (const double rest : {0.5, 0.1})
    addGlow(show, under, "corona_ember", hell::sphereCentre, 170, flashes(everyBeat, 1, rest));
  addNight(show, "the vault's dark", sphere + 1, 0.5);
  // The sky burns behind it.
  addGlow(show, under, "haze_ember", Vector(40, 300, 60), 620, flashes({0, 2}, 1, 0.6));
  // Fire runs down two chains into the ring, where it strikes on the second beat.
  for (const Vector& out : {unit(Vector(-1, 0, 0.75f)), unit(Vector(1, 0, -0.75f))}) {
    const Vector ring = transformed(hell::shackleTilt(), out * (hell::sphereRadius + 17));
    const Vector fixed(out.x > 0 ? 95.0f : -95.0f, out.x > 0 ? 110.0f : 122.0f, out.x > 0 ? -83.0f : 83.0f);
    const Sight running = onScreen(
        hell::cameras()[along.camera], along.start, 1, along.bars * beatsPerBar,
        [&](float t) { return mix(fixed, ring, clamp01((t - static_cast<float>(along.start)) / 0.47f)); });
    for (const double size : {16.0, 40.0})
      show.add("fire runs down a chain", along.bar, along.bars, haze,
               glow("light6", centred(running.x, running.y, running.unit * size),
                    line({{0, 1}, {1, 1}, {1.5, 0.2}, {partEnd, 0}})));
  }
  addCorona(show, along, {0, 1}, 1.2);
  for (const double height : {60.0, 120.0})
    addGlow(show, along, "light6", hell::sphereCentre, height, flashes({0, 1}, 1));
  // The lake right of it does not vie with it.
  show.add("dark lake", along.bar, along.bars, backdrop, shadow(centred(0.52, 0.42, 1.1, 2)));
  addSparks(show, "sparks from the seams", sphere, next - sphere, 5,
            {.count = 30, .spread = 8, .speedY = 6, .scatter = 24});
}

// Half the band is gone: the lake has closed over us. The furnace is heard before it opens.
void addDepths(Show& show) {
  const double start = barOf("under the lake"), coals = barOf("embers"), fill = barOf("furnace fill"),
               breath = barOf("gasp"), next = barOf("eruption");
  const Shot deep{"sunk", start, 1, sunk, 5}, nearer{"sunken sphere", start + 1, 1, sunkenSphere, 8},
      embers{"embers", coals, fill - coals, backlit, 7}, furnace{"furnace", fill, breath - fill, choir, 8},
      gasp{"gasp", breath, next - breath, rosette, hell::roseBursts - 0.6};
  // What hangs under the roof of fire is a black sun: its light stands about it.
  const Vector image = hell::inLake(hell::sphereCentre), end(0, -46, hell::choirPlace);
  for (const Shot& shot : {deep, nearer}) {
    addShot(show, shot);
    // Fire falls in at the nave's end.
    addGlow(show, shot, "rays_ember", end, 900, flashes({0, 1, 2, 3}, 1, 0.6));
    addGlow(show, shot, "light6", end, 420, flashes({0, 1, 2, 3}, 1, 0.7));
    addGlow(show, shot, "light7", end, 150, flashes({0, 1, 2, 3}, 1, 0.7));
    addGlow(show, shot, "corona_ember", image, 168, flashes({0, 2}, 1, 0.8));
    const Sight disc = sightOf(shot, image);
    show.add("black sun", shot.bar, shot.bars, haze + 1,
             Bitmap{.texture = "moon", .at = centred(disc.x, disc.y, disc.unit * 68)});
  }
  addGlow(show, nearer, "rays_ember", image, 420, flashes({0, 2}, 1, 0.3));
  // The melt closes over us.
  for (const double y : {-0.4, 0.5})
    show.add("through the melt", start, 0.375, haze - 1,
             glow("haze_ember", centred(0, line({{0, y}, {1.5, y - 2.2}}), 3, 2),
                  line({{0, 1}, {0.5, 0.9}, {1.5, 0}})));
  // What sinks past us shows how deep it is.
  addSparks(show, "slag sinks", start, 1, 2,
            {.alpha = fade(0.5, 0, 0.9), .count = 46, .spread = 3, .speedZ = 11, .scatter = 22});
  addSparks(show, "slag sinks faster", start + 1, 1, 6,
            {.alpha = 1, .count = 70, .spread = 4, .speedZ = 20, .scatter = 22});
  addShot(show, embers);
  // The windows' light stands below the sphere.
  addGlow(show, embers, "rays_ember", windowsFoot, 300, flashes(everyBeat, 1, 0.5));
  addGlow(show, embers, "light6", windowsFoot, 190, flashes(everyBeat, 1, 0.6));
  addGlow(show, embers, "light7", windowsFoot, 90, flashes(everyBeat, 1, 0.5));
  addGlow(show, embers, "rays_ember", rose, 200, flashes(everyBeat, 0.7, 0.3));
  addCorona(show, embers, everyBeat, 1.2);
  addSparks(show, "embers rise", coals, breath - coals, 10,
            {.alpha = slide(0.6, 1), .count = 70, .spread = 7, .speedY = 14, .scatter = 24});
  addShot(show, furnace);
  for (const char* light : {"rays_ember", "light6"})
    addGlow(show, furnace, light, windows, 460, flashes({0, 1, 2, 2.5}, 1, 0.4));
  // The light goes out but for the rose's eye.
  addShot(show, gasp);
  addGlow(show, gasp, "rays_ember", rose, 130, line({{0, 0.8}, {partEnd, 0.3}}));
  addGlow(show, gasp, "light6", rose, 60, line({{0, 0.6}, {partEnd, 1}}));
  addGlow(show, gasp, "haze_ember", rose, 150, line({{0, 0.6}, {partEnd, 0.25}}));
  const Sight eye = sightOf(gasp, rose);
  show.add("dark before the blow", breath, next - breath, backdrop,
           Fade{.alpha = line({{0, 0}, {partEnd, 0.7}})},
           Bitmap{.texture = "pinhole", .at = centred(eye.x, eye.y, 4.4), .blend = Blend::darken});
}

// The rose bursts out of the wall; behind it the fire breaks through, and the sphere opens.
void addEruption(Show& show) {
  const double start = barOf("eruption"), heart = start + 1, next = barOf("sphere cracks");
  const Shot bursts{"rose bursts", start, 1, rosette, hell::roseBursts},
      open{"the heart lies open", heart, next - heart, core, 14.5};
  addShot(show, bursts);
  // Behind it stands a sun.
  for (const double height : {70.0, 110.0})
    addGlow(show, bursts, "light7", rose, height, line({{0, 1}, {2, 0.9}, {partEnd, 0.8}}));
  addGlow(show, bursts, "light6", rose, 260, flashes({0, 1, 2, 3}, 1, 0.7));
  addGlow(show, bursts, "corona_ember", rose, 186, line({{0, 0}, {0.6, 0.2}, {2, 1}, {partEnd, 1}}));
  addGlow(show, bursts, "rays_ember", rose, 420, flashes({0, 1, 2, 3}, 1, 0.6));
  show.add("white of the blow", start, 0.25, flash,
           Fade{.red = 1, .green = 0.93, .blue = 0.8, .alpha = line({{0, 0.95}, {0.1, 0.4}, {0.3, 0}})});
  addSparks(show, "eruption's sparks", start, 1, 0,
            {.count = 90, .spread = 40, .speedY = 4, .speedZ = 46, .scatter = 7});
  addShot(show, open);
  addNight(show, "lit by the heart alone", heart, 1);
  addGlow(show, open, "corona_ember", hell::sphereCentre, 118, flashes(everyBeat, 0.9, 0.3));
}

// Three blows and a fourth that leaves nothing; each nearer, the word struck with them.
void addCracks(Show& show) {
  const double first = barOf("sphere cracks"), second = barOf("sphere cracks 2"),
               third = barOf("sphere cracks 3"), fill = barOf("last hell fill"), burnt = barOf("scorched"),
               next = hellBar + barCount(Section::hell);
  const Shot one{"blow one", first, second - first, open, 17},
      two{"blow two", second, third - second, openNearer, 17},
      three{"blow three", third, burnt - third, child, 17}, end{"scorched", burnt, next - burnt, child, 19.3};
  for (const Shot& shot : {one, two, three, end}) addShot(show, shot);
  addNight(show, "lit by the heart alone", first, burnt - first);
  // The child stays black: light stands only around it.
  for (const Shot& shot : {one, two})
    addGlow(show, shot, "corona_ember", hell::sphereCentre, 118, flashes({0}, 1, 0.3));
  const Shot wakes{"its eye opens", fill + 0.25, 0.25, child,
                   three.start + (fill + 0.25 - third) * secondsPerBar};
  for (const double height : {3.0, 9.0})
    addGlow(show, wakes, "light7", hell::childsEye(), height, line({{0, 0}, {0.3, 1}, {partEnd, 0.8}}));
  addSparks(show, "last sparks", first, fill - first, 3,
            {.count = 60, .spread = 14, .speedY = 8, .speedZ = 12, .scatter = 22});
  show.add("dark under the word", first, fill - first, haze + 1, shadow(centred(-0.54, 0.54, 1.15, 2.4)),
           shadow(centred(-0.54, 0.54, 1.15, 2.4)), shadow(centred(-0.54, 0.54, 1.15, 2.4)));
  // Its letters burn: they are added twice.
  std::vector<ScriptCall> word =
      draw(vex(er, spline({{0, 0.9}, {0.5, 0.72}, {4, 0.76}, {partEnd, 0.84}}), -0.54, 0.53));
  word.insert(word.end(), {word[2], word[3]});
  show.part("vexer in the fire", first, fill - first, title, std::move(word));
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
