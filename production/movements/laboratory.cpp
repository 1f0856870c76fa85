#include <algorithm>

#include "production/models/fetus_parts.h"
#include "production/models/stage.h"
#include "production/movements/words.h"

namespace vex {

using namespace image;
using namespace geometry;
using namespace song;
using namespace show;

namespace lab = laboratory;
using namespace screen;

namespace {

// --- The world

enum Camera {
  room,
  phone,
  ash,
  above,
  beam,
  jar,
  wakes,
  sees,
  hose,
  sprayer,
  alarm,
  stares,
  glass,
  blow,
  splinters,
  door
};

// A piece of the movement; bars count from its first.
struct Shot {
  const char* name;
  double bar, bars;
  Camera camera;

  double from() const { return laboratoryBar + bar; }
  double beats() const { return bars * beatsPerBar; }
  double start() const { return lab::sceneTime(bar); }
  double speed() const { return (lab::sceneTime(bar + bars) - start()) / (bars * secondsPerBar); }
};

// In the lamp's light.
constexpr double fleshRed = 1.4, fleshGreen = 1.22, fleshBlue = 1.12;
constexpr double dimRed = 0.9, dimGreen = 0.78, dimBlue = 0.74;  // out of it
constexpr double wideOpen = 0.999;                               // of lids

// How everything stands; fractions of their motions.
struct State {
  Curve turn = 0.3;  // of the being: 0 its back, 0.9 past its face, then it sits down
  Curve lids = 0;    // of its eyes
  Curve gaze = 0.5;  // from its right to its left
  Curve skin[4] = {fleshRed, fleshGreen, fleshBlue, 1};  // colour, opacity
  Curve heart = 0;                                       // how far it swells
  Curve swell = 0;                                       // of the hose
  Curve spray = 0;                                       // drops in the air
  Curve alarm = 0;
  Curve burst = 0;               // how far the jar has flown apart
  Curve shards = 0;              // that fall, and splinters
  Curve glass = 1;               // of the jar
  Curve open = 0;                // door
  Curve dial = 0, receiver = 0;  // of the telephone
};

ScriptCall labCall(const char* function, std::vector<ScriptParameter> parameters) {
  return {"SceneFetus", function, std::move(parameters)};
}

ScriptCall pose(const char* object, const Curve& fraction) {
  // The very end of a loop is its beginning.
  return labCall("setAnimationState", {{text(object)}, {fraction, 0, 0.999}});
}

void addShot(Show& show, const Shot& shot, const State& state) {
  std::vector<ScriptCall> calls;
  const struct {
    const char* object;
    const Curve& fraction;
  } poses[] = {{"fetus", state.turn},        {"eye01", state.lids},     {"eye02", state.lids},
               {"ball01", state.gaze},       {"ball02", state.gaze},    {"heart", state.heart},
               {"door", state.open},         {"doorLight", state.open}, {"dial", state.dial},
               {"receiver", state.receiver}, {"burst01", state.burst},  {"burst02", state.burst},
               {"burst03", state.burst},     {"burst04", state.burst}};
  for (const auto& [object, fraction] : poses) calls.push_back(pose(object, fraction));
  calls.push_back(labCall("morphHose", {{state.swell, 0, 1}}));
  calls.push_back(labCall("setParticleCount", {{state.spray, 0, 100}}));
  calls.push_back(
      labCall("setSkinColor",
              {{state.skin[0], 0, 2}, {state.skin[1], 0, 2}, {state.skin[2], 0, 2}, {state.skin[3], 0, 1}}));
  calls.push_back(labCall("setAlarmLight", {{state.alarm, 0, 2}}));
  calls.push_back(labCall("explode", {{state.shards, 0, 300}, {state.glass, 0, 1}}));
  calls.push_back(draw(World{.scene = "SceneFetus", .camera = shot.camera}));
  show.part(shot.name, shot.from(), shot.bars, ground, std::move(calls), shot.start(), shot.speed());
}

// --- Light that lies over it

Sight sightOf(const Shot& shot, const Vector& place) {
  return onScreen(lab::cameras()[shot.camera], shot.start(), shot.speed(), shot.beats(), place);
}

// A glow about a place in the room, as wide and high as it would be there.
void addGlow(Show& show, const Shot& shot, const char* texture, const Sight& sight, double height,
             const Curve& alpha, double aspect = 1) {
  show.add("glow", shot.from(), shot.bars, haze,
           glow(texture, centred(sight.x, sight.y, sight.unit * height, aspect), alpha));
}

void addGlow(Show& show, const Shot& shot, const char* texture, const Vector& place, double height,
             const Curve& alpha, double aspect = 1) {
  addGlow(show, shot, texture, sightOf(shot, place), height, alpha, aspect);
}

// What hangs in the lamp's beam lights up on beats.
void addBeam(Show& show, const Shot& shot, const std::vector<double>& beats, double level) {
  addGlow(show, shot, "haze_teal", mix(lab::lampPlace, lab::lampTarget, 0.6f), 260,
          flashes(beats, 0.6 * level, 0.35 * level), 0.8);
}

// The lamp, too; `size` of its light, of the usual one.
void addLamp(Show& show, const Shot& shot, const std::vector<double>& beats, double level, double size = 1) {
  const Vector mouth = mix(lab::lampPlace, lab::lampTarget, 0.12f);
  addGlow(show, shot, "rays_teal", mouth, 190 * size, flashes(beats, level, level * 0.7));
  addGlow(show, shot, "light7", mouth, 150 * size, flashes(beats, level, level * 0.7));
  addBeam(show, shot, beats, level);
}

void addGloom(Show& show, double bar, double bars, const Curve& level) {
  show.add("gloom", bar, bars, smoke, Fade{.alpha = level});
}

// On each stroke the teal is taken away for a while, and the beacon glows; between two it is gloomy.
void addStrokes(Show& show, const Shot& shot, const std::vector<double>& beats, double gloom) {
  constexpr double lit = 0.4;  // of a beat
  for (const double beat : beats)
    for (const double share : {1.0, 0.5})
      show.add("red light", shot.from() + beat / beatsPerBar, lit * share / beatsPerBar, haze - 1,
               Bitmap{.texture = "haze_teal", .at = centred(0, 0, 5, 1.78), .blend = Blend::darken});
  addGloom(show, shot.from(), shot.bars, flashes(beats, 0, gloom));
  show.add("red", shot.from(), shot.bars, smoke,
           Fade{.red = 0.55, .green = 0.01, .blue = 0.02, .alpha = flashes(beats, 0.3, 0.0)});
  addGlow(show, shot, "light4", lab::beaconPlace, 420, flashes(beats, 1, 0.25));
  addGlow(show, shot, "light4", lab::beaconPlace, 60, flashes(beats, 1, 0), 26);
  addGlow(show, shot, "light7", lab::beaconPlace, 110, flashes(beats, 1, 0));
}

// Into the room; the lamp ticks as it warms. With the breath the child is black against the window.
void addRoom(Show& show) {
  const Shot into{"into the room", 0, 1, room}, against{"against the lamp", 1, 1, door};
  addShot(show, into, {.turn = slide(0.44, 0.48)});
  addGloom(show, into.from(), into.bars,
           line({{0, 1},
                 {0.05, 0.35},
                 {0.3, 0.62},
                 {0.32, 0.12},
                 {1, 0.6},
                 {1.02, 0.05},
                 {2, 0.3},
                 {2.04, 0},
                 {partEnd, 0}}));
  addLamp(show, into, {0.32, 1.02, 2.04}, 1, 1.7);
  // What it falls on, and the window that the jar stands before.
  for (const Shot& shot : {into, against})
    addGlow(show, shot, "light3", Vector(8, lab::tableHeight, 4), 90, flashes({0.32, 1.02, 2.04}, 0.9, 0.7),
            3.4);
  addGlow(show, into, "light3", lab::windowMiddle, 260, flashes({1.02, 2.04}, 0.6, 0.45), 1.2);
  addShot(show, against, {.turn = slide(0.5, 0.56), .skin = {0.2, 0.2, 0.2, 1}});
  // Its heart shows through it, and its breath on the glass.
  const std::vector<double> heart{0, 0.5, 1, 1.5, 2, 2.5, 3, 3.5};
  addGlow(show, against, "light4", lab::heartPlace, 64, flashes(heart, 1, 0.4));
  addGlow(show, against, "light4", lab::heartPlace, 30, flashes(heart, 1, 0.3));
  const Curve breath = spline({{0, 0}, {0.3, 0.9}, {1.6, 0.1}, {2, 0}, {2.3, 1}, {3.6, 0.15}, {partEnd, 0}});
  addGlow(show, against, "haze_teal", Vector(-27, 3, 18), 46, breath * 0.55);
}

// The telephone dials the motif; the cigarette burns.
void addTable(Show& show) {
  const Shot ring{"telephone", 2, 1, phone}, smoulder{"cigarette", 3, 1, ash};
  // The disc is drawn to the stop and runs back; the receiver trembles with each ring.
  State state{.turn = slide(0.4, 0.46)};
  state.dial = line({{0, 0},
                     {0.3, 0.35},
                     {0.8, 0},
                     {1, 0},
                     {1.3, 0.5},
                     {1.9, 0},
                     {2, 0},
                     {2.3, 0.8},
                     {2.9, 0},
                     {3, 0},
                     {3.3, 0.95},
                     {partEnd, 0.1}});
  state.receiver = swing(1.0 / 6, 0.3, 0.7);
  addShot(show, ring, state);
  addGlow(show, ring, "rays_teal", lab::lampTarget, 300, flashes({0, 1, 2, 3}, 0.25, 0.1));
  addShot(show, smoulder, {.turn = slide(0.46, 0.5)});
  const Vector ember = lab::emberPlace;
  addGlow(show, smoulder, "light6", ember, 5, swing(2, 0.25, 0.7));
  addGlow(show, smoulder, "light4", ember, 7, swing(2, 0.5, 1));
  // Its smoke stands before the dark and comes apart above.
  const struct {
    double aside, up, wide, high, level, phase;  // units of the room, level
  } puffs[] = {{0, 8, 8, 20, 0.3, 0},
               {1.5, 17, 12, 24, 0.4, 0.3},
               {-1, 29, 17, 24, 0.5, 0.55},
               {3, 42, 27, 30, 0.4, 0.8},
               {-5, 56, 36, 34, 0.3, 0.1}};
  for (const auto& it : puffs) {
    const Sight puff =
        sightOf(smoulder, ember + Vector(static_cast<float>(it.aside), static_cast<float>(it.up), 0));
    addGlow(show, smoulder, "haze_teal", puff, it.high, swing(3, 0.6 * it.level, it.level, it.phase),
            it.wide / it.high);
  }
}

void addBeam(Show& show) {
  const Shot high{"with the beam", 4, 1, above}, low{"up the beam", 5, 1, beam};
  addShot(show, high, {.turn = slide(0.4, 0.48)});
  addLamp(show, high, {0, 2}, 0.6);
  addShot(show, low, {.turn = slide(0.5, 0.58)});
  addLamp(show, low, {0, 1, 2, 3}, 1);
}

// It sleeps, and kicks once.
void addJar(Show& show) {
  const Shot shot{"around the jar", 6, 1.5, jar}, seenThrough{"seen through", 7.5, 0.5, jar};
  addShot(show, shot, {.turn = line({{0, 0.36}, {4.98, 0.545}, {5.1, 0.525}, {5.6, 0.56}, {partEnd, 0.6}})});
  addBeam(show, shot, {0, 2, 4}, 0.5);
  // From its side, dark before the window, until the drums that lead on shine through it: bones, and a heart.
  const std::vector<double> drums{0, 0.5, 1, 1.5};
  State state{.turn = slide(0.45, 0.47)};
  state.skin[0] = flashes(drums, 0.5, 0.3), state.skin[1] = flashes(drums, 1.4, 0.26),
  state.skin[2] = flashes(drums, 1.4, 0.26), state.skin[3] = flashes(drums, 0.22, 0.97);
  state.heart = flashes(drums, 0.999);
  addShot(show, seenThrough, state);
  addGlow(show, seenThrough, "haze_teal", Vector(0, 10, -30), 260, flashes(drums, 0.8, 0.1));
  addGlow(show, seenThrough, "light4", lab::heartPlace, 30, flashes(drums, 0.9, 0.2));
  // Bubbles rise within the glass.
  const Sight jar = sightOf(shot, Vector(0, 0, 0));
  const Curve width = jar.unit * (2 * 0.8 * lab::jarRadius * 9 / 16), height = jar.unit * 74;
  show.part(
      "bubbles", shot.from(), shot.bars, haze + 1,
      {draw(Viewport{.x = jar.x + width * -0.5, .y = jar.y * -1 + height * -0.5, .w = width, .h = height}),
       draw(Flare{"flare_normal"}),
       draw(Particles{.alpha = fade(0.5, 0.2, 0.4), .count = 26, .spread = 1.5, .speedY = 5, .scatter = 12}),
       draw(Viewport{})});
}

// What is left of its face lies in the dark, and so does what is below its eyes.
void addDarkHalf(Show& show, const Shot& shot, const Curve& x) {
  for (int layer = 0; layer < 2; ++layer)
    show.add("dark half", shot.from(), shot.bars, smoke + 1, shadow(centred(x, 0.1, 1.6, 0.6)),
             shadow(centred(-0.1, 0.62, 0.8, 2)));
}

// Dark but for the window; the light finds it, its lids open.
void addEyes(Show& show) {
  const Shot opening{"it wakes", 8, 1, wakes}, staring{"it sees", 9, 1, sees};
  addShot(show, opening,
          {.turn = slide(0.52, 0.57),
           .lids = line({{0, 0}, {0.9, 0.04}, {1.3, 0.45}, {1.6, 0.2}, {2.1, 0.7}, {partEnd, 0.8}}),
           .gaze = slide(0.6, 0.45),
           .skin = {dimRed, dimGreen, dimBlue, 1}});
  // Only its face, then a little more; half of it stays dark.
  show.add("but for its face", opening.from(), opening.bars, smoke,
           Bitmap{.texture = "pinhole",
                  .at = centred(-0.04, -0.06, line({{0, 4.3}, {0.95, 4.6}, {1.1, 6.4}, {partEnd, 7.2}})),
                  .blend = Blend::darken});
  addDarkHalf(show, opening, slide(-0.32, -0.34));
  addShot(show, staring,
          {.turn = slide(0.58, 0.62),
           .lids = line({{0, 0.72}, {1.4, 0.74}, {1.5, 0}, {1.65, 0.1}, {1.9, 0.76}, {partEnd, 0.78}}),
           .gaze = line({{0, 0.2}, {0.9, 0.2}, {1, 0.75}, {1.9, 0.75}, {2, 0.5}, {partEnd, 0.5}}),
           .skin = {dimRed, dimGreen, dimBlue, 1}});
  show.add("but for one eye", staring.from(), staring.bars, smoke,
           Bitmap{.texture = "pinhole",
                  .at = centred(slide(-0.05, 0.05), slide(-0.04, 0), slide(6.8, 6)),
                  .blend = Blend::darken});
  addDarkHalf(show, staring, slide(-0.34, -0.3));
}

// What the sprayer throws at the glass: hot at the nozzle, wider and fainter from there.
void addJet(Show& show, const Shot& shot, const std::vector<double>& beats) {
  const Vector glass(35, 15, 14);
  addGlow(show, shot, "light7", lab::nozzlePlace, 30, flashes(beats, 1, 0.6));
  for (const float share : {0.2f, 0.45f, 0.7f, 1.0f})
    addGlow(show, shot, "light3", mix(lab::nozzlePlace, glass, share), 12 + 34 * share,
            flashes(beats, 1 - 0.4 * share, 0.35 - 0.2 * share));
  addGlow(show, shot, "haze_teal", glass, 90, flashes(beats, 0.9, 0.3));
}

// The hose swells with the bass, the sprayer hisses.
void addHose(Show& show) {
  const Shot along{"hose", 10, 1, hose}, over{"sprayer", 11, 0.5, sprayer},
      aimed{"before the nozzle", 11.5, 0.5, wakes};
  State state{.turn = slide(0.6, 0.64),
              .lids = 0.7,
              .gaze = slide(0.35, 0.6),
              .skin = {dimRed, dimGreen, dimBlue, 1}};
  state.swell = spline({{0, 0}, {0.4, 0.9}, {2, 0.1}, {2.4, 1}, {partEnd, 0.1}});
  state.spray = line({{0, 0}, {1.99, 0}, {2, 40}, {partEnd, 30}});
  addShot(show, along, state);
  state.turn = slide(0.73, 0.68), state.swell = spline({{0, 0.1}, {0.4, 0.9}, {partEnd, 0.2}});
  state.lids = 0.75;
  state.spray = line({{0, 100}, {1.5, 60}, {partEnd, 60}});
  addShot(show, over, state);
  // The light gives way but for the nozzle; on the last beat it looks at us.
  state.turn = slide(0.69, 0.74), state.swell = spline({{0, 0.3}, {0.2, 1}, {partEnd, 0.2}});
  state.lids = line({{0, 0.1}, {0.3, 0.9}, {partEnd, wideOpen}});
  state.gaze = line({{0, 0.25}, {0.95, 0.25}, {1.1, 0.6}, {partEnd, 0.6}});
  state.spray = 100;
  addShot(show, aimed, state);
  addJet(show, aimed, {0, 1});
  show.add("but for what it sees", aimed.from(), aimed.bars, haze - 1,
           Bitmap{.texture = "pinhole",
                  .at = centred(0.08, -0.16, line({{0, 14}, {0.3, 9}, {partEnd, 8}})),
                  .blend = Blend::darken});
  addGlow(show, aimed, "rays_teal", lab::nozzlePlace, 110, flashes({0, 1}, 1, 0.4));
  addLamp(show, along, {0, 2}, 0.5);
  addJet(show, over, {0, 1});
}

// Flesh turns to glass in the red light, step by step; bones and a heart show.
void addAlarm(Show& show) {
  const std::vector<double> slow{0, 2}, fast{0, 1, 2, 3};
  // From flesh to glass, a step each of `beats`.
  const auto glassy = [](double from, double to, const std::vector<double>& beats) {
    const auto along = [&](double flesh, double clear) {
      std::vector<CurveDot> dots;
      const auto count = static_cast<double>(beats.size());
      for (std::size_t i = 0; i < beats.size(); ++i) {
        const auto k = static_cast<double>(i);
        const double before = mix(flesh, clear, mix(from, to, k / count)),
                     after = mix(flesh, clear, mix(from, to, (k + 1) / count));
        dots.push_back({beats[i], before});
        dots.push_back({beats[i] + 0.15, after});
        dots.push_back({i + 1 < beats.size() ? beats[i + 1] - 0.01 : partEnd, after});
      }
      return line(dots);
    };
    State state;
    state.lids = 0.75;
    state.skin[0] = along(fleshRed, 0.7), state.skin[1] = along(fleshGreen, 1.6),
    state.skin[2] = along(fleshBlue, 1.6), state.skin[3] = along(1, 0.34);
    state.alarm = flashes(beats, 2, 0.1);
    state.heart = flashes(beats, 0.999);
    return state;
  };
  const Shot first{"alarm in the room", 12, 1, alarm}, second{"skin clears", 13, 1, jar},
      third{"it stares", 14, 1, stares}, fourth{"glass within glass", 15, 0.75, glass},
      fifth{"held", 15.75, 0.25, stares};
  State state = glassy(0, 0.15, slow);
  state.turn = slide(0.5, 0.54), state.spray = 10;
  addShot(show, first, state);
  state = glassy(0.15, 0.6, slow);
  state.turn = slide(0.54, 0.6);
  addShot(show, second, state);
  state = glassy(0.6, 0.85, fast);
  state.turn = slide(0.58, 0.64), state.lids = line({{0, 0.8}, {partEnd, 1}}),
  state.gaze = line({{0, 0.7}, {1.9, 0.7}, {2, 0.45}, {partEnd, 0.5}});
  addShot(show, third, state);
  state = glassy(0.85, 1, {0, 1, 2});
  state.turn = slide(0.4, 0.62), state.swell = flashes({0, 1, 2}, 1, 0.3);
  addShot(show, fourth, state);
  state = glassy(1, 1, {0});
  state.turn = 0.64, state.lids = wideOpen, state.gaze = slide(0.5, 0.42), state.alarm = 0, state.heart = 0;
  addShot(show, fifth, state);
  addGloom(show, fifth.from(), fifth.bars, line({{0, 0.4}, {partEnd, 0.7}}));
  addGlow(show, fifth, "light4", lab::heartPlace, 34, line({{0, 1}, {partEnd, 0.5}}));
  addStrokes(show, first, slow, 0.3);
  addStrokes(show, second, slow, 0.18);
  addStrokes(show, third, fast, 0.1);
  addStrokes(show, fourth, {0, 1, 2}, 0.25);
  for (const Shot& shot : {second, third, fourth})
    addGlow(
        show, shot, "light4", lab::heartPlace, 30,
        flashes(shot.bars < 1 ? std::vector<double>{0, 0.5, 1, 1.5, 2, 2.25, 2.5, 2.75} : fast, 0.9, 0.25));
}

// The jar bursts, and time all but stands; it runs again, and all that hung in the air falls.
void addBurst(Show& show) {
  const Shot still{"burst", lab::burstBar, 1, blow}, falls{"shards", lab::burstBar + 1, 1, splinters};
  State state;
  state.skin[0] = 0.7, state.skin[1] = 1.6, state.skin[2] = 1.6, state.skin[3] = 0.34;
  // It flinches.
  state.lids = line({{0, wideOpen}, {0.1, 0.1}, {0.9, 0.2}, {1.2, wideOpen}, {partEnd, wideOpen}});
  state.glass = 0, state.turn = line({{0, 0.46}, {0.12, 0.5}, {partEnd, 0.72}});
  state.heart = flashes({0, 2}, 0.999), state.alarm = flashes({0}, 1.6, 0.1);
  state.burst = line({{0, 0}, {0.06, 0.32}, {0.3, 0.5}, {partEnd, 0.999}});
  addShot(show, still, state);
  state.burst = line({{0, 0.3}, {partEnd, 0.6}});
  state.shards = line({{0, 300}, {0.4, 300}, {0.45, 0}, {partEnd, 0}});
  // It looks away from them, black in the light above, its eyes shut; its bones are what can be seen.
  state.turn = slide(0.5, 0.46), state.lids = 0, state.alarm = 0.1;
  state.skin[0] = 0.16, state.skin[1] = 0.5, state.skin[2] = 0.52, state.skin[3] = 0.5;
  addShot(show, falls, state);
  addGlow(show, still, "rays_teal", Vector(0, 6, 0), 330,
          line({{0, 1}, {0.3, 0.7}, {1, 0.5}, {1.99, 0.35}, {2, 0.7}, {partEnd, 0.25}}));
  addGlow(show, still, "haze_teal", Vector(0, 6, 0), 500, line({{0, 1}, {0.1, 0.8}, {0.5, 0}, {partEnd, 0}}));
  addGlow(show, still, "light7", Vector(0, 6, 0), 260, line({{0, 1}, {0.15, 0.6}, {0.5, 0}, {partEnd, 0}}));
  addGlow(show, still, "light4", lab::heartPlace, 44, flashes({0, 2}, 1, 0.45));
  addGlow(show, falls, "light4", lab::heartPlace, 30, flashes({0, 1, 2, 3}, 0.8, 0.25));
  addLamp(show, falls, {0}, 0.9);
  addGloom(show, still.from(), still.bars, line({{0, 0}, {0.2, 0.05}, {0.8, 0.14}, {partEnd, 0.1}}));
  // Behind the child stands the blow's light; drops of what was in the jar hang in it, then fall at the lens.
  addGlow(show, still, "light3", Vector(0, 12, -20), 210, flashes({0, 1, 2, 3}, 0.9, 0.4));
  addGlow(show, falls, "rays_teal", Vector(-4, 84, -44), 230, flashes({0, 1, 2, 3}, 0.9, 0.5));
  addGlow(show, falls, "light3", Vector(-4, 84, -44), 150, flashes({0, 1, 2, 3}, 0.7, 0.4));
  show.part("drops hang", still.from(), 1, haze + 1,
            {draw(Flare{"flare_highpass"}), draw(Particles{.alpha = line({{0, 0}, {0.2, 1}, {partEnd, 0.8}}),
                                                           .count = 90,
                                                           .spread = 9,
                                                           .speedY = 1,
                                                           .speedZ = 3,
                                                           .scatter = 9})});
  show.part(
      "drops fall", falls.from(), 1, haze + 1,
      {draw(Flare{"flare_highpass"}),
       draw(Particles{
           .alpha = fade(0, 1), .count = 110, .spread = 9, .speedY = -12, .speedZ = 14, .scatter = 16})});
  show.add("vexing", falls.from(), 1, title,
           vex(ing, spline({{0, 0.66}, {0.4, 0.55}, {2, 0.56}, {partEnd, 0.6}}), -0.6, 0.56));
}

// The door opens on white, and on somebody who then stands there when all else has gone.
void addDoor(Show& show) {
  const Shot shot{"door", lab::burstBar + 2, 2, door};
  State state;
  state.skin[0] = 0.08, state.skin[1] = 0.22, state.skin[2] = 0.24, state.skin[3] = 0.8;
  state.glass = 0, state.turn = 0.985, state.lids = 0, state.heart = flashes({0, 2, 4, 6}, 0.999);
  state.open = line({{0, 0}, {1, 0.12}, {2, 0.3}, {3, 0.75}, {4, 0.86}, {partEnd, 0.95}});
  addShot(show, shot, state);
  // The middle of the opening, which begins as a slit at the right post.
  const Sight opening =
      onScreen(lab::cameras()[shot.camera], shot.start(), shot.speed(), shot.beats(), [&](float t) {
        const auto beat =
            static_cast<float>((static_cast<double>(t) - shot.start()) / shot.speed() / secondsPerBeat);
        return Vector(212 - 54 * smoothStep(0.4f, 3.4f, beat), -70, -326);
      });
  addGlow(show, shot, "light7", opening, 420, line({{0, 0}, {0.3, 0.8}, {2, 1}, {3, 0}, {partEnd, 0}}), 0.07);
  addGlow(show, shot, "rays_teal", opening, 600,
          line({{0, 0}, {0.5, 0}, {1, 0.2}, {4, 0.5}, {partEnd, 0.3}}));
  addGlow(show, shot, "haze_teal", opening, 620, line({{0, 0}, {1, 0.35}, {4, 0.8}, {partEnd, 1}}), 0.5);
  addGlow(show, shot, "light7", opening, 330, line({{0, 0}, {1, 0.2}, {4, 0.7}, {partEnd, 1}}), 0.4);
  show.add(
      "white", barOf("white"), interludeTwoBar - barOf("white"), vignette + 1,
      Fade{.red = 0.97, .green = 1, .blue = 0.98, .alpha = line({{0, 0}, {2.5, 0}, {3.2, 1}, {partEnd, 1}})});
  // Somebody steps out of the light, black from the first, a stride each half beat, and comes to stand on the
  // threshold as he does before the covered sun.
  const auto walks = [&](float t) {
    const auto half =
        static_cast<float>((static_cast<double>(t) - shot.start()) / shot.speed() / secondsPerBeat * 2);
    const float stride = std::floor(half) + smoothStep(0, 0.7f, half - std::floor(half));
    return mix(lab::thresholdPlace + Vector(84, 0, -104), lab::thresholdPlace, clamp01((stride - 5) / 4));
  };
  const Sight feet = onScreen(lab::cameras()[shot.camera], shot.start(), shot.speed(), shot.beats(), walks);
  constexpr double appears = 2.5;  // beats; the door stands wide enough
  const Curve there = line({{0, 0}, {appears - 0.01, 0}, {appears + 0.04, 1}, {partEnd, 1}});
  constexpr double tall = 190;
  const Shot stands{"stands there", shot.bar + 1, 1, door};
  const Sight threshold = sightOf(stands, lab::thresholdPlace);
  show.add(
      "shadow in the door", stands.from(), stands.bars, haze + 1,
      shadow(centred(threshold.x, threshold.y + threshold.unit * 6, threshold.unit * 44, 3), fade(0.5, 0)));
  // The light behind him throws his shadow towards us, from under his hem.
  const double walksFor = 7 - appears;
  const Sight hem =
      onScreen(lab::cameras()[shot.camera], shot.start() + appears * secondsPerBeat * shot.speed(),
               shot.speed(), walksFor, walks);
  show.add("his shadow", shot.from() + appears / beatsPerBar, walksFor / beatsPerBar, vignette + 2,
           shadow(centred(hem.x, hem.y + hem.unit * -16, hem.unit * 22, 3.2)),
           shadow(centred(hem.x, hem.y + hem.unit * 22, hem.unit * 110, 0.6)));
  show.add("somebody in the door", shot.from(), shot.bars, vignette + 2,
           Bitmap{.texture = "figure_ember",
                  .at = centred(feet.x, feet.y + feet.unit * (-0.5 * tall), feet.unit * tall, 0.5),
                  .alpha = there});
}

}  // namespace

void addLaboratory(Show& show) {
  show.add("dark", laboratoryBar, interludeTwoBar - laboratoryBar, ground - 1, Fade{});
  show.add("motes", laboratoryBar, barOf("burst") - laboratoryBar, grain - 1,
           Noise{.texture = "dust",
                 .jitterX = 0.2,
                 .jitterY = 0.2,
                 .speedX = 0.02,
                 .speedY = 0.03,
                 .alpha = 0.14,
                 .flicker = 0.1});
  addRoom(show);
  addTable(show);
  addBeam(show);
  addJar(show);
  addEyes(show);
  addHose(show);
  addAlarm(show);
  addBurst(show);
  addDoor(show);
}

}  // namespace vex
