#include <algorithm>
#include <cmath>

#include "production/models/water_parts.h"
#include "production/movements/words.h"

// Silence, rain, and what lives below: it rises, a ray from above finds it, everything dissolves in white.

namespace vex {

using namespace song;
using namespace show;

using namespace screen;

namespace {

enum Camera { wide = 1, low, above, face, moonlit, glide, under, leaving, facing, gate, struck };

// Cycles of the creature are 15 seconds of scene time.
struct Weather {
  Curve ray = 0, motes = 0, rain = 0, drop = 0.0028, flicker = 0;
};
ScriptCall draw(const Weather& w) {
  return {"SceneWater",
          "setRay",
          {{w.ray, 0, 1}, {w.motes, 0, 300}, {w.rain, 0, 3}, {w.drop, 0, 0.05}, {w.flicker, 0, 2}}};
}

const Vector rayHead = water::rayFoot + Vector(0, 420, 0);

// Where the world stands when the creature is seen near, and how fast it goes: its head looks past us then.
constexpr double isNearFrom = 0.1, isNearSpeed = 0.6, tuneFrom = 3.2, tuneSpeed = 0.9;
// Seen from above, while its neck is bent and its head in profile.
constexpr double aboveFrom = 8.9, aboveSpeed = 0.45;

// Where the cycle has the creature lowest, before it rises.
constexpr double inTheDeep = 0.86;

// The creature's own place in its cycle; below 0 it goes its own way again.
ScriptCall holdCreature(const Curve& state) {
  return {"SceneWater", "setAnimationState", {{text("WaterAlien")}, {state, -1, 0.999}}};
}

void addShot(Show& show, const char* name, double bar, double bars, Camera camera, double start,
             const Weather& weather, double speed = 1) {
  show.part(name, bar, bars, haze, {draw(weather), draw(World{.scene = "SceneWater", .camera = camera})},
            start, speed);
}

// A ring of light on the sea, `shape` times as wide as high, until the next cut.
void addRing(Show& show, double bar, double x, double y, double shape, double size, double level) {
  const double bars = std::min(1.0, std::floor(bar + 1.0001) - bar);
  show.add("ring", bar, bars, smoke - 1,
           glow("ring_teal",
                centred(x, y,
                        line({{0, 0.02 * size}, {0.25, 0.12 * size}, {partEnd, (0.12 + 0.45 * bars) * size}}),
                        shape),
                line({{0, level}, {0.25, 0.8 * level}, {bars * beatsPerBar, 0}})));
}

// It breaks through the surface: rings, and spray that is thrown up and falls.
void addSplash(Show& show, double bar) {
  constexpr double x = -0.3, y = 0.44, length = 0.5;
  std::vector<ScriptCall> rings;
  for (const double beat : {0.0, 0.35, 0.7})
    rings.push_back(screen::draw(glow(
        "ring_teal", centred(x + 0.14 * beat, y, line({{0, 0.01}, {beat + 0.01, 0.03}, {partEnd, 0.42}}), 5),
        line({{0, 0}, {beat + 0.01, 0}, {beat + 0.03, 1}, {partEnd, 0}}))));
  rings.push_back(screen::draw(
      glow("haze_teal", centred(x + 0.06, y - 0.06, 0.5, 1.6), line({{0, 0}, {0.1, 1}, {partEnd, 0}}))));
  show.part("splash", bar, length, smoke - 1, std::move(rings));
  show.part("spray", bar, length, smoke,
            {screen::draw(Viewport{.x = x - 0.36, .y = -y - 0.3, .w = 0.84, .h = 0.9}),
             screen::draw(Flare{"flare_highpass"}),
             screen::draw(Particles{.alpha = line({{0, 1}, {1, 0.8}, {partEnd, 0}}),
                                    .count = 90,
                                    .spread = 9,
                                    .speedY = line({{0, 16}, {0.7, 2}, {partEnd, -12}}),
                                    .scatter = 5}),
             screen::draw(Viewport{})});
}

// The first drop falls through the gate, before the moon.
constexpr double dropX = 0.06;

// Where rain strikes the sea seen from above: smaller the farther; and on each beat about what rises from it.
void addRainRings(Show& show, double bar) {
  std::vector<ScriptCall> calls;
  const auto add = [&](double beat, double x, double y, double size, double level) {
    const double fades = beat + 1.1;
    calls.push_back(screen::draw(glow(
        "ring_teal", centred(x, y, line({{0, 0.01}, {beat + 0.01, 0.02 * size}, {fades, 0.34 * size}}), 3.2),
        line({{0, 0}, {beat + 0.01, 0}, {beat + 0.03, level}, {fades, 0}}))));
  };
  for (int i = 0; i < 18; ++i) {
    const double near = std::fmod(0.618 * i + 0.2, 1), across = std::fmod(0.755 * i + 0.1, 1);
    add(i * 0.19, -0.9 + 1.8 * across, -0.2 + 0.85 * near, 0.4 + 0.8 * near, 0.8);
  }
  for (const double beat : {0.0, 1.0, 2.0}) add(beat, 0.0, 0.66, 2.2, 1);
  show.part("rain on the sea", bar, 1, smoke - 1, std::move(calls));
}

// The first drop falls on a dark sea; then, where the sea before us is free, each note of the tune drops a
// ring, across the sea by its pitch, and a beat later an echo of it.
void addRings(Show& show) {
  addRing(show, waterBar + 0.5, dropX, 0.45, 5, 1.6, 1);
  const double free = barOf("ray from above"), until = barOf("flood");
  for (const auto& [seconds, pitch] : notesOf("glass harp")) {
    const double bar = seconds / secondsPerBar;
    if (bar < free || bar >= until) continue;
    const double x = -0.75 + 1.5 * (pitch - 72) / 14, y = 0.62 + 0.05 * std::sin(pitch * 2.4);
    addRing(show, bar, x, y, 5, 1, 0.9);
    if (std::floor(bar + 0.25 + 1e-6) == std::floor(bar + 1e-6)) addRing(show, bar + 0.25, x, y, 5, 0.8, 0.4);
  }
}

// It lies in the deep, rises and goes its way.
void addCreature(Show& show) {
  const double rises = barOf("creature");
  show.part("creature below", waterBar, 2, ground + 1, {holdCreature(inTheDeep)});
  show.part("creature rises", rises, 1, ground + 1, {holdCreature(slide(inTheDeep, 0.999))});
  show.part("creature alone", rises + 1, 0.5, ground + 1, {holdCreature(-1)});
}

void addShots(Show& show) {
  const double creature = barOf("creature"), ripples = barOf("ripples"), again = barOf("tune again"),
               flood = barOf("flood");
  addShot(show, "nothing", waterBar, 1, gate, 1, {.drop = 0.002, .flicker = line({{0, 0.25}, {partEnd, 0}})});
  addShot(show, "rain comes", barOf("rain"), 1, moonlit, 5.6, {.rain = slide(0, 0.4), .drop = 0.0024}, 0.5);
  addShot(show, "it is there", creature, 1, wide, 0, {.rain = 0.3});
  addShot(show, "it is near", creature + 1, 1, glide, isNearFrom, {.rain = 0.3}, isNearSpeed);
  addShot(show, "tune", barOf("tune"), 2, glide, tuneFrom, {.rain = 0.4}, tuneSpeed);
  addShot(show, "ripples", ripples, 1, above, aboveFrom, {.rain = 0.8, .drop = 0.004}, aboveSpeed);
  addShot(show, "through the rain", ripples + 1, 1, low, 3.4, {.rain = 0.6});
  addShot(show, "tune again", again, 1, Camera::facing, 9.4, {.rain = 0.5}, 0.8);
  addShot(show, "face", again + 1, 1, face, 4.75, {.rain = 0.4}, 0.25);
  addShot(show, "ray from above", barOf("ray from above"), 2, struck, 5,
          {.ray = line({{0, 0}, {1, 0.4}, {partEnd, 0.7}}),
           .motes = line({{0, 0}, {2, 220}, {partEnd, 260}}),
           .rain = 0.4,
           .flicker = line({{0, 0}, {partEnd, 0.4}})});
  addShot(show, "flood", flood, 1, under, 4,
          {.ray = 0.9, .motes = 280, .rain = slide(1, 2.4), .drop = 0.004, .flicker = 0.4});
  addShot(show, "flood below", flood + 1, 1, low, 3,
          {.ray = 0.9, .motes = 280, .rain = 2.4, .drop = 0.004, .flicker = 0.4});
  addShot(show, "ebb", barOf("ebb"), 2, leaving, 5,
          {.ray = slide(0.8, 1), .motes = 200, .rain = slide(1, 0.2), .flicker = 0.2});
}

// It rains before the lens as well, in two layers.
void addRain(Show& show) {
  const double rain = barOf("rain"), rains = barOf("dissolve") + 0.5 - rain;
  const auto beat = [&](const char* cue, double bars = 0) {
    return (barOf(cue) + bars - rain) * beatsPerBar;
  };
  const Curve fall = line({{0, 0},
                           {2, 0.9},
                           {beat("ripples"), 0.6},
                           {beat("ray from above"), 0.35},
                           {beat("flood"), 0.5},
                           {beat("flood", 1), 1},
                           {beat("ebb"), 0.6},
                           {partEnd, 0.1}});
  show.add("rain before us", rain, rains, front,
           Noise{.texture = "rain", .speedX = -0.0925, .speedY = -0.74, .alpha = fall});
  show.add("rain behind that", rain, rains, front,
           Noise{.texture = "rain", .speedX = -0.0588, .speedY = -0.47, .alpha = fall * 0.6, .aspect = 1});
}

// The moon burns in its gate.
void addMoon(Show& show) {
  const auto moon = [&](double bar, Camera camera, double from, double speed, const Curve& rises) {
    const Sight seen = onScreen(water::cameras()[camera], from, speed, beatsPerBar, water::moonPlace);
    show.add("moon", bar, 1, flash + 2, glow("light3", centred(seen.x, seen.y, 0.9), rises * 0.5),
             glow("light7", centred(seen.x, seen.y, 0.34), rises * 0.6));
  };
  moon(waterBar, gate, 1, 1, line({{0, 0.8}, {2, 0.9}, {2.1, 1}, {partEnd, 1}}));
  // In the silence it comes out of its cloud: first it alone, then what it lights.
  const Sight alone = onScreen(water::cameras()[gate], 1, 1, beatsPerBar, water::moonPlace);
  const double x = alone.x.dots.front().y, y = alone.y.dots.front().y;
  show.add("moon comes out", waterBar, 0.5, flash + 2,
           glow("light7", centred(x, y, line({{0, 0.5}, {1, 0.76}, {2, 0.64}}))),
           glow("streak_bone", centred(x, y, line({{0, 0.07}, {1, 0.12}, {2, 0.1}}), 16),
                line({{0, 0.8}, {0.5, 1}, {2, 0.7}})),
           glow("light3", centred(x, 0.40, line({{0, 0.3}, {1.4, 0.8}, {2, 0.8}}), 0.9),
                line({{0, 0.1}, {2, 0.5}})));
  moon(barOf("rain"), moonlit, 5.6, 0.5, 1);
  moon(barOf("creature"), wide, 0, 1, 1);
  moon(barOf("creature") + 1, glide, isNearFrom, isNearSpeed, 0.15);
}

// Where neck and back leave the sea it foams, and on each beat a ring goes out from there.
void addFoam(Show& show) {
  const struct {
    double bar, bars;
    Camera camera;
    double from, speed;
  } shots[] = {{barOf("creature") + 1, 1, glide, isNearFrom, isNearSpeed},
               {barOf("tune"), 2, glide, tuneFrom, tuneSpeed},
               {barOf("ripples"), 1, above, aboveFrom, aboveSpeed},
               {barOf("ripples") + 1, 1, low, 3.4, 1},
               {barOf("ray from above"), 2, struck, 5, 1},
               {barOf("flood"), 1, under, 4, 1},
               {barOf("flood") + 1, 1, low, 3, 1},
               {barOf("ebb"), 2, leaving, 5, 1}};
  struct Contact {
    Vector place;  // of the body's line
    double wide;
  };
  const Contact contacts[] = {{Vector(3, 6, 22), 62},
                              {Vector(-5, 2, -62), 50},
                              {Vector(-10, -4, -134), 44},
                              {Vector(-4, -7, -184), 34}};
  for (const auto& shot : shots) {
    constexpr int drops = 5;  // of each
    std::vector<double> beats;
    for (double beat = 0; beat < shot.bars * beatsPerBar; ++beat) beats.push_back(beat);
    std::vector<ScriptCall> calls;
    for (const Contact& contact : contacts) {
      // Its near side hides the line where it leaves the sea.
      const StageCamera camera = water::cameras()[shot.camera];
      const Sight seen = onScreen(camera, shot.from, shot.speed, shot.bars * beatsPerBar, [&](float t) {
        const Vector place = water::beingPlace(contact.place, t);
        Vector near(camera.position.x - place.x, 0, camera.position.z - place.z);
        near.normalize();
        return Vector(place.x, -5, place.z) + near * static_cast<float>(0.46 * contact.wide);
      });
      const double flat = shot.camera == above ? 2.6 : 5.5;  // times as wide as high
      // Seen from higher up, the body goes on for a while under the water.
      const double below = shot.camera == above ? 30 : shot.camera == leaving ? 15 : 5;
      const auto lies = [&](double wide) {
        return centred(seen.x, seen.y + seen.unit * below, seen.unit * (contact.wide * wide / flat), flat);
      };
      calls.push_back(screen::draw(glow("light3", lies(2.0), flashes(beats, 1, 0.8))));
      calls.push_back(screen::draw(glow("light7", lies(1.3), flashes(beats, 0.9, 0.6))));
      calls.push_back(screen::draw(glow("ring_teal", lies(2.0), flashes(beats, 1, 0.5))));
      calls.push_back(screen::draw(
          glow("streak_bone",
               centred(seen.x, seen.y + seen.unit * (below - 1), seen.unit * 7, 0.34 * contact.wide),
               flashes(beats, 1, 0.75))));
      // Drops are thrown up and fall again, each beat anew.
      for (int i = 0; i < drops; ++i) {
        const double across = std::fmod(0.618 * i + 0.31, 1) - 0.5, high = 0.4 + std::fmod(0.755 * i, 0.6);
        const auto thrown = [&](double beat) {
          const double t = std::fmod(beat + 0.23 * i, 1);
          return std::pair{across * contact.wide * (0.7 + 0.9 * t),
                           4 * high * 0.55 * contact.wide * t * (1 - t)};
        };
        Curve x = seen.x, y = seen.y;
        for (std::size_t k = 0; k < seen.x.dots.size(); ++k) {
          const auto [aside, up] = thrown(seen.x.dots[k].x);
          const double unit = seen.unit.dots[k].y;
          x.dots[k].y += aside * unit * 9 / 16;
          y.dots[k].y -= up * unit;
        }
        calls.push_back(screen::draw(glow("light7", centred(x, y, seen.unit * (3.6 + 3.4 * high)), 0.9)));
      }
    }
    show.part("foam", shot.bar, shot.bars, smoke - 1, std::move(calls));
  }
}

// What the ray gives off: shafts about its head, light in the air beside it; the rest stays dark.
void addRay(Show& show) {
  const double flood = barOf("flood");
  const struct {
    double bar, bars;
    Camera camera;
    double from, rise, pool;
    double near = 0;  // its pool, to where the neck hides the sea behind it
  } rays[] = {{barOf("ray from above"), 2, struck, 5, 4, 1},
              {flood, 1, under, 4, 0.1, 0},
              {flood + 1, 1, low, 3, 0.1, 0},
              {barOf("ebb"), 2, leaving, 5, 0.1, 1, 0.07}};
  for (const auto& it : rays) {
    const auto seen = [&](const Vector& place) {
      return onScreen(water::cameras()[it.camera], it.from, 1, it.bars * beatsPerBar, place);
    };
    const Sight foot = seen(water::rayFoot), head = seen(rayHead), moon = seen(water::moonPlace);
    show.add("shafts", it.bar, it.bars, smoke,
             glow("rays_teal", centred(head.x, -1.0, 2.6), fade(it.rise, 0, 0.9)),
             glow("light3", centred(head.x, -0.85, 1.8, 0.5), fade(it.rise, 0, 0.55)),
             glow("haze_teal", centred(head.x, -0.85, 1.6, 0.6), fade(it.rise, 0, 0.7)));
    if (it.pool > 0)
      show.add("light on the sea", it.bar, it.bars, smoke,
               glow("haze_teal", centred(foot.x, foot.y + it.near + 0.06, 0.9, 3), fade(it.rise, 0, 0.8)),
               glow("light3", centred(foot.x, foot.y + it.near + 0.03, 0.30, 8), fade(it.rise, 0, 0.9)),
               glow("light7", centred(foot.x, foot.y + it.near + 0.01, 0.14, 9), fade(it.rise, 0, 0.9)),
               glow("light7", centred(moon.x, moon.y, 0.30), 0.6));
  }
}

// Light that answers the tune.
void addGlints(Show& show) {
  const auto glint = [&](double bar) {
    show.add("glint", bar, 0.25, flash,
             glow("haze_teal", centred(0, 0.1, spline({{0, 3.0}, {partEnd, 2.2}}), 1.78),
                  spline({{0, 0.5}, {0.3, 0.2}, {partEnd, 0}})));
  };
  glint(waterBar + 0.5);
  glint(barOf("rain"));
  for (const char* cue : {"creature", "tune", "ripples", "tune again", "ray from above", "flood"}) {
    glint(barOf(cue));
    glint(barOf(cue) + 1);
  }
  glint(barOf("ebb"));
  glint(barOf("dissolve"));
}

// White grows from where the ray comes from; what lies far from it stays dark until the last beat.
void addDissolve(Show& show) {
  const double dissolve = barOf("dissolve");
  const Sight source = onScreen(water::cameras()[leaving], 5 + secondsPerBar, 1, beatsPerBar, rayHead);
  const Place grows =
      centred(source.x.dots.back().y, -1.15,
              spline({{0, 1.6}, {0.5, 0.8}, {1, 1.0}, {2, 1.9}, {3, 3.6}, {3.4, 6}, {partEnd, 7.9}}));
  for (const char* texture : {"light3", "light7", "light7"})
    show.add("dissolve", dissolve, 1, flash, glow(texture, grows));
  show.add("white", dissolve, 1, flash + 1,
           Fade{1, 1, 0.97, line({{0, 0}, {3.4, 0}, {3.9, 1}, {partEnd, 1}})});
}

}  // namespace

void addWater(Show& show) {
  show.add("deep", waterBar, 16, ground, Fade{});
  addCreature(show);
  addShots(show);
  addRain(show);
  addRings(show);
  addRainRings(show, barOf("ripples"));
  addSplash(show, barOf("creature") + 0.45);
  addMoon(show);
  // A single drop gathers under the gate's crown, falls past the moon and strikes its path.
  const Curve falls = spline({{0, -0.37}, {0.6, -0.34}, {0.85, -0.12}, {1.06, 0.25}, {partEnd, 0.45}});
  show.add("it falls", waterBar + 0.85 / beatsPerBar, 1.15 / beatsPerBar, flash + 3,
           glow("light7", centred(dropX, falls, 0.13), line({{0, 0}, {0.6, 1}, {partEnd, 1}})),
           glow("light7", centred(dropX, falls + -0.1, 0.3, 0.07),
                line({{0, 0}, {0.6, 0}, {0.8, 1}, {partEnd, 1}})));
  // Mist between and before.
  show.add("mist", waterBar, 16, smoke,
           glow("haze_teal", centred(swing(31, -0.35, 0.35), 0.35, 2.0, 2.6), swing(19, 0.08, 0.2)));
  addFoam(show);
  addRay(show);
  addGlints(show);
  show.add("out of the dark", waterBar, 1, flash + 1,
           Fade{.alpha = line({{0, 0.62}, {1.9, 0.34}, {2.1, 0.06}, {2.6, 0}})});
  addDissolve(show);
}

}  // namespace vex
