#include <utility>

#include "production/movements/words.h"

namespace vex {

using namespace screen;

namespace {

// --- The world

enum Camera { wide, jar, eyes, phone, ash, hose, door, above };

// How everything stands; fractions of their motions.
struct State {
  Curve turn = 0.3;                    // of the being: 0 its back, 1 past its face
  Curve lids = shut;                   // of its eyes
  Curve skin[4] = {1.5, 1.3, 1.2, 1};  // colour in the lamp's light, opacity
  Curve swell = 0;                     // of the hose
  Curve spray = 0;                     // drops in the air
  Curve alarm = 0;
  Curve shards = 0;  // flying about where the jar was
  Curve glass = 1;   // of the jar
  Curve open = 0;    // door

  static constexpr double shut = 0.06, wideOpen = 0.32;
};

ScriptCall labCall(const char* function, std::vector<ScriptParameter> parameters) {
  return {"SceneFetus", function, std::move(parameters)};
}

ScriptCall pose(const char* object, const Curve& fraction) {
  Curve name;
  name.kind = CurveKind::text;
  name.text = object;
  // The very end of a loop is its beginning.
  return labCall("setAnimationState", {{"object", name}, {"fraction", fraction, 0, 0.999}});
}

void addShot(Show& show, const char* name, double bar, double bars, Camera camera, double start, double speed,
             const State& state) {
  show.part(name, bar, bars, ground,
            {pose("fetus", state.turn), pose("eye01", state.lids), pose("eye02", state.lids),
             pose("door", state.open), pose("doorLight", state.open),
             labCall("morphHose", {{"swell", state.swell, 0, 1}}),
             labCall("setParticleCount", {{"particle count", state.spray, 0, 100}}),
             labCall("setSkinColor", {{"red", state.skin[0], 0, 2},
                                      {"green", state.skin[1], 0, 2},
                                      {"blue", state.skin[2], 0, 2},
                                      {"opacity", state.skin[3], 0, 1}}),
             labCall("setAlarmLight", {{"level", state.alarm, 0, 2}}),
             labCall("explode", {{"shards", state.shards, 0, 300}, {"glass", state.glass, 0, 1}}),
             draw(World{.scene = "SceneFetus", .camera = camera})},
            start, speed);
}

// --- What lies over it

// Haze in the lamp's beam that drifts before the lens and lights up on beats.
void addDust(Show& show, double bar, double bars, const std::vector<double>& beats, double level) {
  show.add("lamp haze", bar, bars, haze,
           Bitmap{.texture = "haze_teal",
                  .at = centred(swing(13, -0.35, 0.25), swing(9, -0.3, 0.1), 2.4, 1.4),
                  .alpha = flashes(beats, level, level * 0.4),
                  .blend = Blend::add});
}

// The room goes red with the alarm.
void addRed(Show& show, double bar, double bars, const std::vector<double>& beats) {
  show.add("red", bar, bars, flash - 1,
           Fade{.red = 0.62, .green = 0.02, .blue = 0.03, .alpha = flashes(beats, 0.4, 0.07)});
}

// Into the room; the lamp ticks as it warms.
void addRoom(Show& show) {
  const double start = laboratoryBar, dial = barOf("dialling");
  addShot(show, "into the room", start, dial - start, wide, 2, 3.6, {.turn = slide(0.4, 0.52), .open = 0});
  show.add(
      "lamp warms", start, 1, flash - 1,
      Fade{.alpha = line({{0, 0}, {0.3, 0.3}, {0.32, 0}, {1, 0.35}, {1.02, 0}, {2, 0.12}, {partEnd, 0}})});
  addDust(show, start, dial - start, {1, 4, 6}, 0.5);
}

// The telephone dials; the cigarette burns.
void addTable(Show& show) {
  const double start = barOf("dialling"), next = barOf("half time");
  addShot(show, "telephone", start, 1, phone, 3, 6, {.turn = slide(0.3, 0.34)});
  addShot(show, "cigarette", start + 1, next - start - 1, ash, 3, 6, {.turn = slide(0.36, 0.4)});
  addDust(show, start, next - start, {0, 1, 2, 3, 4, 6, 7}, 0.35);
}

void addBeam(Show& show) {
  const double start = barOf("half time"), next = barOf("jar");
  addShot(show, "with the beam", start, next - start, above, 1, 3.6, {.turn = slide(0.4, 0.55)});
  addDust(show, start, next - start, {0, 2, 4, 6}, 0.5);
}

void addJar(Show& show) {
  const double start = barOf("jar"), next = barOf("eyes");
  addShot(show, "around the jar", start, next - start, jar, 1, 4, {.turn = slide(0.34, 0.62)});
  addDust(show, start, next - start, {0, 2, 4, 6}, 0.3);
}

void addEyes(Show& show) {
  const double start = barOf("eyes"), next = barOf("hose");
  addShot(show, "it wakes", start, 1, eyes, 1, 4,
          {.turn = slide(0.52, 0.57),
           .lids = line({{0, 0.155}, {1, 0.165}, {2.5, 0.27}, {partEnd, 0.3}}),
           .skin = {line({{0, 2}, {partEnd, 1.7}}), 1.36, 1.1, 1}});
  addShot(show, "it sees", start + 1, next - start - 1, eyes, 12, 4,
          {.turn = slide(0.57, 0.68), .lids = line({{0, 0.3}, {2, 0.42}, {2.5, 0.51}, {partEnd, 0.64}})});
  show.add("the room holds its breath", start, 0.25, flash - 1,
           Fade{.alpha = line({{0, 0.5}, {partEnd, 0}})});
  addDust(show, start, next - start, {0, 4}, 0.25);
}

// The hose swells with the bass, the sprayer hisses.
void addHose(Show& show) {
  const double start = barOf("hose"), next = barOf("alarm");
  addShot(show, "hose", start, next - start, hose, 2, 4,
          {.turn = slide(0.98, 0.86),
           .lids = 0.33,
           .swell = spline({{0, 0},
                            {0.4, 0.9},
                            {2, 0.1},
                            {2.4, 1},
                            {4, 0.1},
                            {4.4, 0.9},
                            {6, 0.2},
                            {6.4, 1},
                            {partEnd, 0.6}}),
           .spray = line({{0, 0}, {2, 90}, {3.5, 20}, {4, 100}, {partEnd, 30}})});
  addDust(show, start, next - start, {0, 2, 4, 6}, 0.3);
}

// Flesh turns to glass in the red light; bones and a heart show.
void addAlarm(Show& show) {
  const double start = barOf("alarm"), doubles = barOf("alarm doubles"), fill = barOf("burst fill"),
               held = barOf("held breath"), burst = barOf("burst");
  const std::vector<double> slow{0, 2}, fast{0, 1, 2, 3};
  const auto glassy = [](double from, double to, const std::vector<double>& beats) {
    const auto along = [&](double flesh, double clear) {
      return slide(mix(flesh, clear, from), mix(flesh, clear, to));
    };
    return State{.lids = 0.33,
                 .skin = {along(1.5, 0.7), along(1.3, 1.7), along(1.2, 1.7), along(1, 0.34)},
                 .alarm = flashes(beats, 2, 0.2)};
  };
  State state = glassy(0, 0.2, slow);
  state.turn = slide(0.3, 0.36), state.spray = 20;
  addShot(show, "alarm in the room", start, 1, wide, 12, 3, state);
  state = glassy(0.2, 0.62, slow);
  state.turn = slide(0.46, 0.56);
  addShot(show, "skin clears", start + 1, 1, jar, 9, 3, state);
  addRed(show, start, doubles - start, {0, 2, 4, 6});
  state = glassy(0.62, 0.85, fast);
  state.turn = slide(0.6, 0.66), state.lids = slide(0.54, 0.8);
  addShot(show, "it stares", doubles, 1, eyes, 14, 4, state);
  state = glassy(0.85, 1, fast);
  state.turn = slide(0.4, 0.62), state.swell = flashes(fast, 1, 0.3);
  addShot(show, "glass within glass", fill, held - fill, jar, 12, 4, state);
  addRed(show, doubles, held - doubles, everyBeat);
  state = glassy(1, 1, {});
  state.turn = 0.62;
  addShot(show, "held", held, burst - held, eyes, 18, 0.5, state);
  show.add("breath held", held, burst - held, flash - 1, Fade{.alpha = line({{0, 0.55}, {partEnd, 0.85}})});
}

// The jar bursts; the door opens on white.
void addBurst(Show& show) {
  const double start = barOf("burst"), shards = barOf("shards"), opens = barOf("door"),
               white = barOf("white"), end = interludeTwoBar;
  State state{.turn = slide(0.5, 0.58),
              .lids = 0.33,
              .skin = {0.7, 1.7, 1.7, 0.36},
              .swell = 0.5,
              .alarm = flashes({0, 1, 2, 3}, 1.2, 0.2),
              .shards = line({{0, 300}, {1.0, 300}, {1.05, 0}, {partEnd, 0}}),
              .glass = 0};
  addShot(show, "burst", start, 1, jar, 7, 2.5, state);
  state.shards = line({{0, 160}, {1, 160}, {1.05, 0}, {partEnd, 0}}), state.turn = slide(0.58, 0.66);
  addShot(show, "shards", shards, 1, hose, 13, 3, state);
  state.shards = 0, state.alarm = 0.3;
  state.open = line({{0, 0}, {1, 0.12}, {4, 0.5}, {partEnd, 0.9}}), state.turn = slide(0.3, 0.1);
  addShot(show, "door", opens, end - opens, door, 1, 4.6, state);
  show.add("blow", start, 0.5, flash - 1,
           Bitmap{.texture = "rays_teal",
                  .at = centred(0, -0.05, zoom(1.6, 4.6, 2)),
                  .alpha = line({{0, 1}, {0.5, 0.6}, {partEnd, 0}}),
                  .blend = Blend::add});
  show.add("vexing", shards, 1, title,
           glitching(vex(ing, spline({{0, 1.4}, {0.4, 1.1}, {2, 1.12}, {partEnd, 1.24}}), 0, 0.4),
                     flashes({0, 1, 2, 3}, 1, 0.05), 3, swing(4, 1.04, 1.2)));
  for (const auto& [glow, aspect] : {std::pair{"haze_teal", 0.6}, {"rays_teal", 1.0}})
    show.add("light through the door", opens, end - opens, haze,
             Bitmap{.texture = glow,
                    .at = centred(travel(0.21, 0.03, 8), 0, zoom(1.3, 4.2, 8), aspect),
                    .alpha = line({{0, 0}, {1, 0.35}, {4, 0.7}, {partEnd, 1}}),
                    .blend = Blend::add});
  show.add("white", white, end - white, flash - 1,
           Fade{.red = 0.97,
                .green = 1,
                .blue = 0.98,
                .alpha = spline({{0, 0.1}, {1, 0.16}, {3, 0.75}, {3.7, 1}, {partEnd, 1}})});
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
}

}  // namespace vex
