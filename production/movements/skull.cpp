#include <algorithm>
#include <cmath>

#include "production/models/skull_parts.h"
#include "production/movements/words.h"
#include "production/textures/storm.h"

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
  face,
  crane,
  socket,
  far,
  left,
  right,
  fallen,
  landing,
  stalked,
  hunted,
  alongside,
  roar
};

// --- Words of this world

ScriptParameter number(const Curve& curve, double least, double most) {
  return {curve, least, most};
}
ScriptCall set(const char* function, std::vector<ScriptParameter> parameters) {
  return {"SceneSkull", function, std::move(parameters)};
}

// `eyes` burn, `storm` is the cold light from above.
ScriptCall lights(const Curve& eyes, const Curve& storm) {
  return set("setLights", {number(eyes, 0, 4), number(storm, 0, 4), number(0.55, 0, 1), number(0.7, 0, 1),
                           number(0.85, 0, 1)});
}
ScriptCall lightning(const Curve& rate) {
  return set("setSparkRate", {number(rate, 0, 1)});
}
ScriptCall aim(const char* target, const Curve& rate) {
  return set("setLaser", {{text(target)}, number(rate, 0, 1)});
}
ScriptCall beams(const Curve& leftBeam, const Curve& rightBeam) {
  return set("setLaserOpacity", {number(leftBeam, 0, 1), number(rightBeam, 0, 1)});
}
ScriptCall trail(int crow, double count) {
  return set("setParticleCount", {number(crow, 0, 2), number(count, 0, 100)});
}

// The world fills the screen for a while; `start` is where its cameras' shots of twenty seconds are entered.
struct Shot {
  const char* name;
  double bar, bars;  // from the movement's beginning
  Camera camera;
  double start, speed = 1;
};
constexpr Shot shots[] = {{"across the plain", 0, 1.5, wide, 1, 2.2},
                          {"face of rock", 1.5, 0.5, face, 3},
                          {"over the crown", 2, 1, crane, 9.6, 3},
                          {"under its teeth", 3, 1, low, 3, 2},
                          {"spears from afar", 4, 1, Camera::far, 3, 2},
                          {"spears before", 5, 1, right, 1, 2.5},
                          {"eye 1", 6, 0.5, socket, 4, 4},
                          {"hunt 1", 6.5, 1.5, left, 4, 1.5},
                          {"clouds race", 8, 0.5, low, 12, 2.5},
                          {"beside a crow", 8.5, 0.5, alongside, 5},
                          {"eyes 2", 9, 0.5, crane, 14, 2},
                          {"hunt 2", 9.5, 0.5, stalked, 3},
                          {"falls before it", 10, 1.5, landing, 8},
                          {"it roars", 11.5, 0.5, roar, skull::roarOpens - 0.47},
                          {"eye 3", 12, 0.5, socket, 1, 5},
                          {"hunt 3", 12.5, 0.5, hunted, 10},
                          {"falls before us", 13, 1, fallen, 2, 4},
                          {"heart of the storm", 14, 1, low, 15, 2.4},
                          {"into the eye", 15, 0.75, socket, 6, 3.4},
                          {"struck dumb", 15.75, 0.25, face, 9.4}};

void addShots(Show& show) {
  for (const Shot& shot : shots)
    show.part(shot.name, skullBar + shot.bar, shot.bars, backdrop,
              {draw(World{.scene = "SceneSkull", .camera = shot.camera})}, shot.start, shot.speed);
}

// Light over a place of the world: `units` high there; the place by seconds since the light's beginning.
struct Glow {
  double units;
  Bitmap light;
  std::function<Vector(double seconds)> place;
  double wide = 1;  // times as wide as high
};

// Each shot sees it where it is.
void addGlows(Show& show, const char* name, double bar, double bars, const std::vector<Glow>& glows) {
  for (const Shot& shot : shots) {
    const double from = std::max(bar, skullBar + shot.bar),
                 to = std::min(bar + bars, skullBar + shot.bar + shot.bars);
    if (to - from < 0.01) continue;
    const double start = shot.start + (from - skullBar - shot.bar) * secondsPerBar * shot.speed;
    std::vector<ScriptCall> calls;
    for (const Glow& glow : glows) {
      const Sight sight = onScreen(
          skull::cameras()[shot.camera], start, shot.speed, (to - from) * beatsPerBar,
          [&](float t) { return glow.place((from - bar) * secondsPerBar + (t - start) / shot.speed); });
      // Beside the lens or behind it, it is not seen.
      const auto strays = [](const Curve& curve, double least) {
        return std::any_of(curve.dots.begin(), curve.dots.end(),
                           [=](const CurveDot& dot) { return std::fabs(dot.y) > least; });
      };
      if (strays(sight.x, 3) || strays(sight.y, 3) || strays(sight.unit * glow.units, 6)) continue;
      Bitmap light = glow.light;
      light.at = centred(sight.x, sight.y, sight.unit * glow.units, glow.wide);
      light.blend = Blend::add;
      calls.push_back(draw(light));
    }
    if (!calls.empty()) show.part(name, from, to - from, haze, std::move(calls));
  }
}

constexpr int settings = ground + 1;

// --- The crows, laps of which each is shot in a place that its laser can reach.

struct Prey {
  const char* name;
  int number;
  double from;  // of a lap, at the movement's beginning
  double to;    // where it is shot
  const char* aimed;
  const char* shot;  // cues
};
constexpr Prey preys[] = {{"Crow01", 0, 0.02, 0.589, "laser 1", "crow 1 falls"},
                          {"Crow02", 1, 0.80, 0.731, "laser 2", "crow 2 falls"},
                          {"Crow03", 2, 0.35, 0.036, "laser 3", "crow 3 falls"}};

void addPrey(Show& show, const Prey& prey) {
  const double start = skullBar, aimed = barOf(prey.aimed), shot = barOf(prey.shot);
  // One lap's end may lie between.
  const double way = (prey.to > prey.from ? 0 : 1) + prey.to - prey.from;
  Curve flight = slide(prey.from, prey.to);
  if (prey.to < prey.from) {
    const double turn = (1 - prey.from) / way * (shot - start) * beatsPerBar;
    flight = line({{0, prey.from}, {turn, 0.999}, {turn + 0.01, 0}, {partEnd, prey.to}});
  }
  show.part(prey.name, start, shot - start, settings,
            {set("setAnimationState", {{text(prey.name)}, number(flight, 0, 0.999)})});

  // Light on the beats of a bar; it holds the crow for a beat when it has hit.
  const double bars = shot - aimed, hold = 0.25;
  show.part("aim", aimed, bars + hold, settings,
            {aim(prey.name, 1), beams(flashes({0, 1, 2, 3, bars * beatsPerBar}, 1, 0.25),
                                      flashes({0, 1, 2, 3, bars * beatsPerBar}, 1, 0.25))});
  show.part("lasers out", shot + hold, 0.5, settings, {aim("", 0)});

  // It falls burning until the ground has it.
  show.part("fall", shot, 2, settings,
            {set("killCrow", {number(prey.number, 0, 2)}), trail(prey.number, 100)});
  // A show that starts later finds it there, not in mid-air.
  show.part("burnt out", shot + 2, 0.5, settings,
            {set("killCrow", {number(prey.number, 0, 2)}), trail(prey.number, 0)}, cueSeconds(2), 0);
}

constexpr double fallBars = 1.36;  // to the ground

// Where one flies.
Vector flightPlace(const Prey& prey, double bar) {
  const double way = (prey.to > prey.from ? 0 : 1) + prey.to - prey.from;
  const double lap = prey.from + way * (bar - skullBar) / (barOf(prey.shot) - skullBar);
  return skull::crowPlace(prey.number, static_cast<float>(lap));
}

// A crow falls as the player lets it.
Vector fallPlace(const Prey& prey, double seconds) {
  const auto t = static_cast<float>(seconds);
  return skull::crowPlace(prey.number, static_cast<float>(prey.to)) + Vector(0, -30 * t * t, -70 * t);
}

// What burns is a body of flame in the light that it throws about; where a beam burns through, a blow of it.
void addFires(Show& show) {
  for (const Prey& prey : preys) {
    const double shot = barOf(prey.shot);
    const auto falling = [&](double seconds) { return fallPlace(prey, seconds); };
    // The plain shines under it.
    const auto below = [&](double seconds) {
      const Vector place = fallPlace(prey, seconds);
      return Vector(place.x, skull::groundHeight(place.x, place.z), place.z);
    };
    // It leaves flames behind and above.
    const auto trailing = [&](double by) {
      return [&, by](double seconds) { return fallPlace(prey, std::max(0.0, seconds - by)); };
    };
    addGlows(show, "fire", shot, fallBars,
             {{420, {.texture = "haze_ember", .alpha = 0.55}, falling},
              {90, {.texture = "flare_fire1", .alpha = swing(0.37, 0.3, 0.7)}, trailing(0.05)},
              {110, {.texture = "flare_fire3", .alpha = swing(0.29, 0.6, 1)}, trailing(0.16)},
              {80, {.texture = "flare_fire2", .alpha = swing(0.23, 0.4, 0.9)}, trailing(0.3)},
              {26, {.texture = "light6", .alpha = flashes(everyBeat, 0.9, 0.45)}, falling},
              {150, {.texture = "haze_ember", .alpha = line({{0, 0.2}, {partEnd, 1}})}, below, 6}});
    addGlows(show, "hit", shot, 0.25,
             {{400, {.texture = "light7", .alpha = line({{0, 1}, {partEnd, 0}})}, falling}});
  }
  // The second is seen to strike the plain.
  const auto grave = [](double) { return fallPlace(preys[1], fallBars * secondsPerBar); };
  addGlows(show, "strikes the plain", barOf(preys[1].shot) + fallBars, 2 - fallBars,
           {{500, {.texture = "haze_ember", .alpha = line({{0, 1}, {0.5, 0.6}, {partEnd, 0.4}})}, grave},
            {260, {.texture = "light7", .alpha = line({{0, 1}, {0.6, 0}})}, grave},
            {90, {.texture = "flare_fire2", .alpha = swing(0.31, 0.6, 1)}, grave},
            {60, {.texture = "light6", .alpha = line({{0, 1}, {partEnd, 0.4}})}, grave}});
}

// The sockets blaze while they aim.
void addBlazes(Show& show) {
  const auto blaze = [](float side) {
    return Glow{75, {.texture = "light4", .alpha = flashes(everyBeat, 0.9, 0.35)}, [side](double) {
                  return skull::eye(side);
                }};
  };
  for (const Prey& prey : preys) {
    const double aimed = barOf(prey.aimed), shot = barOf(prey.shot);
    addGlows(show, "blaze", aimed, shot + 0.25 - aimed, {blaze(1), blaze(-1)});
    // What they touch burns white, and sparks fly off it.
    const auto touched = [&](double seconds) { return flightPlace(prey, aimed + seconds / secondsPerBar); };
    addGlows(show, "singed", aimed, shot - aimed,
             {{150, {.texture = "light4", .alpha = flashes(everyBeat, 0.9, 0.3)}, touched},
              {170, {.texture = "rays_ember", .alpha = flashes(everyBeat, 0.9, 0.1)}, touched},
              {44, {.texture = "light7", .alpha = flashes(everyBeat, 1, 0.5)}, touched}});
  }
}

// Fire stands in its throat while it roars.
void addRoars(Show& show) {
  const auto throat = [](double) {
    return mix(skull::jawHinge(), skull::eye(1) * 0.5f + skull::eye(-1) * 0.5f, 0.62f) - Vector(0, 46, 0);
  };
  const auto add = [&](double bar, double bars) {
    // Tongues of flame that lick out of it, and what they light.
    const auto tongue = [&](float x, float y) {
      return [=](double seconds) {
        const auto t = static_cast<float>(seconds);
        return throat(0) + Vector(x + 5 * std::sin(19 * t + x), y + 7 * std::sin(13 * t + y), 14);
      };
    };
    addGlows(
        show, "fire in its throat", bar, bars,
        {{70, {.texture = "flare_fire1", .alpha = swing(0.31, 0.5, 1)}, tongue(-16, -4)},
         {84, {.texture = "flare_fire2", .alpha = swing(0.23, 0.6, 1)}, tongue(2, 4)},
         {66, {.texture = "flare_fire3", .alpha = swing(0.27, 0.5, 1, 90)}, tongue(19, -2)},
         {110, {.texture = "flare_fire3", .alpha = swing(0.37, 0.2, 0.7, 180)}, tongue(-2, 24)},
         {330, {.texture = "haze_ember", .alpha = line({{0, 0.9}, {0.6, 0.6}, {partEnd, 0.5}})}, throat}});
  };
  add(skullBar + 11.75, 0.25);
  add(skullBar + 14.5, 0.5);
}

// The last of it: one socket's fire swallows the picture.
void addInferno(Show& show) {
  const double start = skullBar + 15, bars = 0.75;
  for (const char* light : {"light4", "rays_ember", "light7"})
    show.add("inferno", start, bars, flash,
             glow(light,
                  centred(line({{0, -0.33}, {1.75, -0.34}, {3, 0}}),
                          line({{0, -0.13}, {1.75, -0.17}, {3, 0}}), line({{0, 0.5}, {1.75, 1.1}, {3, 8}})),
                  light == std::string("light7") ? line({{0, 0}, {1.75, 0.4}, {3, 1}})
                                                 : line({{0, 0.5}, {1.75, 1}})));
  show.add("white of the eye", start, bars, flash + 1,
           Fade{.red = 1, .green = 0.96, .blue = 0.92, .alpha = line({{0, 0}, {2.4, 0}, {3, 1}})});
}

// In the dark it is hardly seen any more; what burnt in its sockets dies last.
void addSilence(Show& show) {
  const double start = skullBar + 15.75, bars = 0.25;
  show.add("night falls", start, bars, haze - 1,
           Fade{.alpha = line({{0, 0.6}, {0.4, 0.82}, {partEnd, 0.93}})});
  const auto dying = [](float side) {
    return Glow{110,
                {.texture = "light4", .alpha = line({{0, 1}, {0.5, 0.9}, {partEnd, 0.25}})},
                [side](double) { return skull::eye(side); }};
  };
  addGlows(show, "its eyes die", start, bars, {dying(1), dying(-1)});
}

// --- Storm

// Strokes of lightning on beats from a bar on, each struck again a quarter of a beat later: the sparks, their
// light from behind, and the sky. Between strokes there is none. Unseen bolts only light.
enum class Bolts { seen, unseen };
void addStrokes(Show& show, double bar, double bars, const std::vector<double>& beats, double eyes,
                Bolts bolts = Bolts::seen) {
  std::vector<double> struck;
  std::vector<CurveDot> white;
  for (const double beat : beats) {
    if (!struck.empty() && struck.back() == beat) struck.pop_back();
    struck.insert(struck.end(), {beat, beat + 0.25});
    // The whole sky is white at most three times in two beats.
    if (!white.empty() && beat - white.back().x < 0.3) continue;
    if (beat > 0) white.push_back({beat - 0.01, 0});
    white.insert(white.end(), {{beat, 0.08}, {beat + 0.1, 0.03}, {beat + 0.2, 0}});
  }
  if (white.empty()) white.push_back({0, 0});
  show.part("storm", bar, bars, settings,
            {lights(flashes(everyBeat, eyes * 1.4, eyes), flashes(struck, 3.4, 0.6)),
             lightning(flashes(struck, bolts == Bolts::seen ? 1 : 0))});
  show.add("stroke", bar, bars, flash - 1,
           glow("haze_teal", centred(swing(7, -0.5, 0.5), -0.9, 3.4, 1.9), flashes(struck, 1, 0)),
           glow("haze_teal", centred(swing(7, 0.4, -0.4), -1.3, 2.6, 2.6), flashes(struck, 0.6, 0)),
           Fade{.red = 0.86, .green = 0.95, .blue = 1, .alpha = line(white)});
}

// A wide faint halo about the bolts, where a shot has them.
void addHalos(Show& show) {
  const struct {
    double bar, bars;
    std::vector<double> beats;
    double x, y;
  } halos[] = {{skullBar, 1.5, {0, 0.25, 3, 3.25, 4, 4.25}, -0.28, -0.62},
               {skullBar, 1.5, {0, 0.25, 3, 3.25, 4, 4.25}, 0.26, -0.60},
               {barOf("spears") + 1, 1, {0, 0.25, 1, 1.25, 1.5, 2, 2.5, 3}, 0.26, -0.44},
               {barOf("clouds race"), 0.5, {0, 0.25, 1.5}, 0.32, -0.42},
               {barOf("crow 3 falls"), 1, {0, 1.25, 1.5, 2.5}, -0.42, -0.50}};
  for (const auto& halo : halos)
    show.add("halo", halo.bar, halo.bars, haze,
             glow("light3", centred(halo.x, halo.y, 1.9, 0.8), flashes(halo.beats, 0.26, 0)));
}

void addStorm(Show& show) {
  const double start = skullBar;
  show.add("zenith", start, 16, ground,
           Fade{.red = stormZenith.r, .green = stormZenith.g, .blue = stormZenith.b});
  addStrokes(show, start, 2, {0, 3, 4, 6, 7.25}, 0.8);
  addStrokes(show, barOf("storm"), 1, {0, 2.5}, 0.9, Bolts::unseen);  // they would strike the lens
  addStrokes(show, barOf("storm") + 1, 1, {0, 2, 3, 3.5}, 0.9);
  addStrokes(show, barOf("spears"), 2, {0, 1, 2, 3, 4, 5, 5.25, 6, 6.5, 7, 7.5}, 0.9);
  addStrokes(show, barOf("laser 1"), 2, {4, 6.5}, 1.7);
  addStrokes(show, barOf("clouds race"), 1, {0, 1.5, 2, 2.5, 3, 3.25}, 0.9);
  addStrokes(show, barOf("laser 2"), 1, {}, 1.7);
  addStrokes(show, barOf("crow 2 falls"), 2, {0, 2.5, 4, 5, 6, 7, 7.25, 7.5}, 1.4);
  addStrokes(show, barOf("laser 3"), 2, {4, 5.25, 6.5}, 1.7);
  addStrokes(show, barOf("heart of the storm"), 2, {0, 0.5, 1, 2, 2.5, 3, 4, 4.5, 5, 6, 6.5}, 1.8);
}

}  // namespace

void addSkull(Show& show) {
  addStorm(show);
  addHalos(show);
  addFires(show);
  addBlazes(show);
  addRoars(show);
  addInferno(show);
  for (const Prey& prey : preys) addPrey(show, prey);
  addShots(show);
  addSilence(show);
}

}  // namespace vex
