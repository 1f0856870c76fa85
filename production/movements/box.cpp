#include <cmath>

#include "production/movements/words.h"

namespace vex {

using namespace song;
using namespace show;

using namespace screen;

namespace {

// --- The world

// How the reliquary stands: 0 shut, 1 open or wide.
struct Pose {
  Curve lock = 0;                // half a turn
  Curve lid = 0;                 // upright
  Curve light = 0;               // that fills it and falls on what lies around
  Curve beam = 0;                // that stands above it
  Curve seam = 0;                // light under the lid
  Curve keyhole = 0;             // open: shows what is drawn before the scene
  Curve letters[3] = {0, 0, 0};  // from left to right; see letterFront
};

// Letters lie in the box at 0, are up and turned aside at a third, look straight ahead here, and are turned
// to the other side at 1.
constexpr double letterFront = 2 / 3.0;

ScriptCall boxCall(const char* function, std::vector<ScriptParameter> parameters = {}) {
  return {"SceneIntroBox", function, std::move(parameters)};
}

ScriptCall pose(const char* object, const Curve& fraction) {
  return boxCall("setAnimationState", {{text(object)}, {fraction, 0, 1}});
}

ScriptCall particles(const Curve& count) {
  return boxCall("setParticleCount", {{count, 0, 200}});
}

ScriptCall smokeAlongTitle(const Curve& level) {
  return boxCall("showVex", {{level, 0, 1}});
}

// The three burning layers of the title, and as the fourth their light on the stone around: how bright, and
// at which second of their five (up from the box until 1.2, apart from 4.2).
struct Veils {
  Curve opacity[4] = {0, 0, 0, 0};
  Curve seconds[4] = {0, 0, 0, 0};
};
constexpr int spill = 3;

ScriptCall draw(const Veils& veils) {
  std::vector<ScriptParameter> parameters;
  for (const Curve& opacity : veils.opacity) parameters.push_back({opacity, 0, 1});
  for (const Curve& seconds : veils.seconds) parameters.push_back({seconds, 0, 5});
  return boxCall("setVexFog", std::move(parameters));
}

// Shots lie one behind the other on the camera's flight, each with a stretch before it.
enum Shot {
  fence,
  steps,
  arcade,
  lock,
  keyhole,
  seam,
  crane,
  titleComing,
  titleAbove,
  titleAlong,
  titleNear,
  above
};
constexpr double shotEvery = 36 / 30.0, shotLead = 3 / 30.0, shotLength = 30 / 30.0;  // seconds of the flight

std::vector<ScriptCall> draw(const Pose& stands) {
  return {pose("lock", stands.lock),          pose("top", stands.lid),
          pose("pool01", stands.light),       pose("pool02", stands.light),
          pose("mist", stands.light),         pose("shafts", stands.beam),
          pose("seam", stands.seam),          pose("keyhole", stands.keyhole),
          pose("letter1", stands.letters[0]), pose("letter2", stands.letters[1]),
          pose("letter3", stands.letters[2])};
}

void addShot(Show& show, const char* name, double fromBar, double bars, Shot shot, const Pose& stands,
             std::vector<ScriptCall> more = {}) {
  std::vector<ScriptCall> calls = draw(stands);
  calls.insert(calls.end(), more.begin(), more.end());
  calls.push_back(boxCall("animate"));
  show.part(name, fromBar, bars, backdrop, std::move(calls), static_cast<int>(shot) * shotEvery + shotLead,
            shotLength / cueSeconds(bars));
}

// One light behind the choir: in each shot it burns in another window, and barely behind the title.
void addNight(Show& show) {
  const double length = barOf("shut") - boxBar;
  const auto beat = [](std::string_view cue) { return (barOf(cue) - boxBar) * beatsPerBar; };
  const double steps = beat("pulse"), seam = beat("build"), crane = beat("lid"), title = beat("layer 1"),
               cut = 0.001;
  show.add("night", boxBar, length, ground, Fade{},
           Bitmap{.texture = "sky_acid",
                  .at = covering(1.6,
                                 line({{0, 0.3},
                                       {steps, 0.25},
                                       {steps + cut, 0.5},
                                       {seam, 0.55},
                                       {seam + cut, 0.42},
                                       {crane, 0.48},
                                       {crane + cut, 0.4},
                                       {title, 0.2},
                                       {title + cut, 0},
                                       {partEnd, 0}}),
                                 -0.1),
                  .alpha = line({{0, 1}, {title - 4, 1}, {title, 0.6}, {partEnd, 0.6}})});
  // Fumes drift through all of it.
  show.add("fumes", boxBar, barOf("lid") - boxBar, smoke,
           Waves{.texture = "smoke_acid",
                 .at = covering(1.4, swing(24, -0.25, 0.25), 0.3),
                 .speed = 1.1,
                 .amplitude = 0.04,
                 .alpha = fade(4, 0, 0.1),
                 .blend = Blend::add});
}

// Shut, nearer with each cut.
void addReliquary(Show& show) {
  const double start = boxBar, near = barOf("pulse");
  addShot(show, "through the fence", start, 2, fence, {});
  show.add("heart in the lock", start, 2, haze,
           glow("light2", centred(-0.06, 0.14, 0.34), flashes(everyBeat, 0.6, 0.1)));
  addShot(show, "before the steps", near, 1, steps, {});
  show.add("heart in the lock, nearer", near, 1, haze,
           glow("light2", centred(-0.066, 0.01, 0.5), flashes(everyBeat, 0.8, 0.2)));
  addShot(show, "along the arcade", near + 1, 1, arcade, {});
  show.add("light on brass", near, 2, haze,
           glow("haze_acid", centred(slide(-0.9, 0.9), -0.2, 2.6, 1.5), flashes(everyBeat, 0.5, 0.12)));
}

// Clockwork: the lock turns tick by tick and gives way with the bolt.
void addLock(Show& show) {
  const double start = barOf("lock");
  addShot(show, "the lock turns", start, 1, lock,
          {.lock = line({{0, 0},
                         {0.2, 0.07},
                         {0.3, 0.06},
                         {1, 0.06},
                         {1.2, 0.13},
                         {1.3, 0.12},
                         {2, 0.12},
                         {2.3, 0.53},
                         {2.5, 0.50}})});
  show.add(
      "light in the lock", start, 1, haze,
      glow("light2", centred(travel(-0.08, 0, 4), 0, zoom(0.7, 1.1, 4)), flashes({0, 1, 2, 2.3}, 0.5, 0.16)));
  show.add("current", start, 1, smoke + 1,
           Waves{.texture = "threads_acid",
                 .at = covering(1.25),
                 .speed = 2.2,
                 .amplitude = 0.05,
                 .alpha = flashes({2, 3}, 0.55, 0.0),
                 .blend = Blend::add});
}

// Through the keyhole something looks out, blinks, and is too near. Around it the lock runs on.
void addEyeInLock(Show& show) {
  const double start = barOf("lock") + 1;
  const auto looks = [&](double from, double to, int first, int last, double nearer = 1) {
    const auto size = [](double beat) { return 0.55 * std::pow(2.2, beat / 4); };
    const double beats = to - from, fps = (last - first + 0.95) / (beats * secondsPerBeat);
    show.add("an eye in the lock", start + from / beatsPerBar, beats / beatsPerBar, backdrop - 1, Fade{},
             Movie{.base = "eye",
                   .at = centred(0.02, 0.02, zoom(2 * size(from), 2 * size(to) * nearer, beats), 1),
                   .first = first,
                   .last = last,
                   .fps = fps},
             glow("light2", centred(0.02, 0.02, zoom(size(from), size(to) * nearer, beats), 1), 0.4));
  };
  looks(0, 1, 1, 6);
  looks(1, 2, 7, 13);
  looks(2, 2.2, 4, 5);
  looks(2.2, 3, 13, 13);
  looks(3, 4, 13, 13, 3);
  addShot(show, "into the lock", start, 1, keyhole,
          {.lock = line({{0, 0.50},
                         {0.2, 0.57},
                         {0.3, 0.56},
                         {1, 0.56},
                         {1.2, 0.63},
                         {1.3, 0.62},
                         {2, 0.62},
                         {2.2, 0.69},
                         {2.3, 0.68},
                         {2.5, 0.68},
                         {2.6, 0.72},
                         {3, 0.72},
                         {3.1, 0.76},
                         {3.5, 0.76},
                         {3.6, 0.80}}),
           .keyhole = 0.999});
  show.add("light around the eye", start, 1, haze,
           glow("light2", centred(0, 0, zoom(1.2, 2.6, 4)),
                line({{0, 0.3}, {0.5, 0.1}, {1, 0.3}, {1.5, 0.08}, {2, 0.25}, {2.5, 0.05}, {partEnd, 0}})));
}

// The lid strains against its hinges, a stroke each beat, then two.
void addBuild(Show& show) {
  const double start = barOf("build"), hold = barOf("hold"), length = hold - start;
  std::vector<CurveDot> lid{{0, 0}}, light{{0, 0}}, seamLight{{0, 0.1}};
  double level = 0.05;
  // Open for half of a stroke.
  const std::vector<double> strokes{0, 1, 2, 3, 4, 4.5, 5, 5.5, 6, 6.25, 6.5};
  for (std::size_t i = 0; i < strokes.size(); ++i) {
    const double beat = strokes[i], pace = i + 1 < strokes.size() ? strokes[i + 1] - beat : 0.25,
                 open = beat + 0.12 * pace + 0.02, sinks = beat + 0.55 * pace, closed = beat + 0.75 * pace,
                 peak = 0.4 * level + 0.014;
    lid.insert(lid.end(), {{beat + 0.01, 0.004}, {open, peak}, {sinks, 0.8 * peak}, {closed, 0.005}});
    light.insert(light.end(), {{beat + 0.01, 0.3 + level}, {open, 0.6 + level}, {closed, 0.3 + level}});
    seamLight.insert(seamLight.end(), {{beat + 0.01, 0.2}, {open, 0.999}, {sinks, 0.9}, {closed, 0.2}});
    level += 0.012;
  }
  Veils veils;
  veils.opacity[spill] = flashes({0, 1, 2, 3, 4, 4.5, 5, 5.5, 6, 6.25, 6.5}, 0.45, 0.05);
  addShot(show, "the lid strains", start, length, seam,
          {.lock = 0.8, .lid = line(lid), .light = line(light), .seam = line(seamLight)}, {draw(veils)});
  show.add("light behind", start, length, haze,
           glow("rays_acid", centred(0.05, 0.0, zoom(1.6, 4.0, length * beatsPerBar)),
                flashes({0, 1, 2, 3, 4, 4.5, 5, 5.5, 6, 6.25, 6.5}, 0.4, 0.05)));
  show.add("current rises", start, length, smoke + 1,
           Waves{.texture = "threads_acid",
                 .at = covering(zoom(1.2, 2, length * beatsPerBar)),
                 .speed = 3,
                 .amplitude = 0.06,
                 .alpha = slide(0, 0.5),
                 .blend = Blend::add});
  show.add("hold", hold, barOf("lid") - hold, title, Fade{},
           Movie{.base = "eye", .at = covering(zoom(2.2, 2.35, 1)), .first = 13, .last = 13});
}

// The lid goes up, light and smoke pour out, and in them the title rises.
void addLid(Show& show) {
  const double start = barOf("lid");
  // On three beats the letters come out of it.
  const auto comes = [](double beat) {
    return line(
        {{0, 0}, {beat, 0}, {beat + 0.7, 0.36}, {beat + 1.1, letterFront + 0.02}, {partEnd, letterFront}});
  };
  Veils veils;
  veils.opacity[0] = line({{0, 0}, {5.9, 0}, {6.5, 0.4}, {partEnd, 0.6}});
  veils.seconds[0] = 1.2;
  veils.opacity[spill] = line({{0, 0.5},
                               {0.6, 0.15},
                               {2, 0.2},
                               {3.99, 0.25},
                               {4, 0.9},
                               {4.4, 0.5},
                               {5, 0.7},
                               {5.6, 0.5},
                               {partEnd, 0.6}});
  addShot(show, "the lid lifts", start, 2, crane,
          {.lock = 0.8,
           .lid = spline({{0, 0.03},
                          {0.4, 0.16},
                          {1, 0.2},
                          {2, 0.3},
                          {5, 0.93},
                          {5.6, 0.99},
                          {6.2, 0.95},
                          {partEnd, 0.96}}),
           .light = line({{0, 0.12}, {0.3, 0.4}, {2, 0.4}, {5, 0.999}, {partEnd, 0.999}}),
           .beam = line({{0, 0.1}, {0.3, 0.35}, {2, 0.4}, {5, 0.999}, {6, 0.9}, {partEnd, 0.5}}),
           .letters = {comes(4), comes(5), comes(6)}},
          {particles(line({{0, 60}, {3, 150}, {partEnd, 180}})),
           smokeAlongTitle(line({{0, 0}, {3.5, 0}, {partEnd, 0.55}})), draw(veils)});
  show.add("light pours", start, 2, haze,
           glow("rays_acid", centred(0, travel(0.05, 0.16, 8), zoom(3.2, 5, 8)),
                flashes({0, 1, 2, 3, 4, 5, 6, 7}, 0.5, 0.15)));
  show.add("smoke pours", start, 2, smoke,
           Waves{.texture = "smoke_acid",
                 .at = covering(1.4, 0, slide(0.3, -0.3)),
                 .speed = 2.4,
                 .amplitude = 0.06,
                 .alpha = slide(0.06, 0.35),
                 .blend = Blend::add});
  show.add("sparks pour", start + 0.5, 1.5, smoke + 1,
           Noise{.texture = "sparks_acid", .speedX = 0.02, .speedY = 0.16, .alpha = fade(2, 0, 0.5)});
}

// The title burns in the smoke above the box: with each bar more of it, seen from elsewhere, and with each
// the hall lights up.
void addLayers(Show& show) {
  const double start = barOf("layer 1"), last = barOf("layer 4");
  const auto strike = [](double rest) { return line({{0, 0.4}, {0.03, 1}, {1, rest}, {partEnd, rest}}); };
  // Each beat strikes one of the letters, which swings back.
  const auto swings = [](double phase) {
    std::vector<CurveDot> dots{{0, letterFront}};
    double side = 0.07;
    for (double beat = phase; beat < 4; beat += 1.5, side = -side)
      dots.insert(dots.end(),
                  {{beat, letterFront}, {beat + 0.12, letterFront + side}, {beat + 1.2, letterFront}});
    return spline(dots);
  };
  const Pose open{.lock = 0.8,
                  .lid = swing(4, 0.97, 0.995),
                  .light = swing(2, 0.9, 0.999),
                  .beam = swing(2, 0.36, 0.42),
                  .letters = {swings(0.02), swings(0.5), swings(1)}};
  struct State {
    const char *cue, *name;
    Shot shot;
    int burning;  // layers
    double dimmest, spilled;
  };
  constexpr State states[] = {{"layer 1", "title in the smoke", titleComing, 1, 0.5, 0.55},
                              {"layer 2", "title from above", titleAbove, 2, 0.45, 0.6},
                              {"layer 3", "along the title", titleAlong, 3, 0.4, 0.65},
                              {"layer 4", "title, nearer", titleNear, 3, 0.5, 0.7}};
  double level = 0.55;  // of the smoke along it, which comes in jerks, on the off-beats
  for (const State& state : states) {
    std::vector<CurveDot> arriving{{0, level}};
    for (const double beat : {0.5, 1.5, 2.5, 3.5}) {
      level = std::min(level + 0.06, 1.0);
      arriving.insert(arriving.end(), {{beat, level - 0.06}, {beat + 0.05, level}});
    }
    Veils veils;
    const double own = barOf(state.cue) - start;  // 0 to 3
    for (int i = 0; i < state.burning; ++i) {
      veils.opacity[i] = strike(i == state.burning - 1 ? 0.6 : state.dimmest);
      veils.seconds[i] = slide(1.2 + 0.6 * own + 0.1 * i, 1.8 + 0.6 * own + 0.1 * i);
      if (state.shot == titleNear)
        veils.seconds[i] = line({{0, 3 + 0.1 * i}, {3, 3.6 + 0.1 * i}, {3.4, 4.3}, {partEnd, 4.75}});
    }
    veils.opacity[spill] = line({{0, 0.3},
                                 {0.03, 1},
                                 {0.3, 0.8},
                                 {0.9, state.spilled},
                                 {2, state.spilled},
                                 {2.03, state.spilled + 0.25},
                                 {partEnd, state.spilled}});
    addShot(show, state.name, barOf(state.cue), 1, state.shot, open,
            {particles(160), smokeAlongTitle(line(arriving)), draw(veils)});
  }
  show.add("burning edge", start, 4, haze,
           glow("rays_acid", centred(0, -0.15, swing(8, 1.7, 2.3), 2.2),
                flashes({0, 4, 8, 12, 13, 14, 14.5, 15, 15.5}, 0.3, 0.06)));
  show.add("flies apart", last + 3.4 / beatsPerBar, 0.6 / beatsPerBar, flash,
           Fade{0.98, 1, 0.85, line({{0, 0.22}, {0.15, 0.03}, {partEnd, 0}})},
           glow("rays_acid", centred(0, -0.15, slide(2, 5), 1.6), slide(0.9, 0)));
  show.add("thick smoke", start, 4, smoke,
           Waves{.texture = "smoke_acid",
                 .at = covering(1.35, 0, swing(16, -0.2, 0.2)),
                 .speed = 2,
                 .amplitude = 0.06,
                 .alpha = flashes({0, 4, 8, 12}, 0.4, 0.12),
                 .blend = Blend::add});
  show.add("flying sparks", start, 4, smoke + 1,
           Noise{.texture = "sparks_acid", .speedX = 0.03, .speedY = 0.12, .alpha = 0.4});
}

// Everything runs backwards and is shut in.
void addBackwards(Show& show) {
  const double start = barOf("backwards"), shut = barOf("shut"), length = shut - start;
  show.part("smoke sinks", start, length, backdrop - 1, {boxCall("reverseSmoke")});
  Veils veils;
  for (int i = 0; i < spill; ++i) {
    const double gone = 4.3 - 0.2 * i;  // before the lid comes down on them
    veils.opacity[i] = line({{0, 0.6}, {2, 0.5}, {3.6, 0.8}, {gone, 0}, {partEnd, 0}});
    veils.seconds[i] = line({{0, 4.4 - 0.2 * i}, {0.5, 3}, {2.2, 1.2}, {gone, 0}, {partEnd, 0}});
  }
  veils.opacity[spill] =
      line({{0, 1}, {0.5, 0.7}, {2.2, 0.4}, {4, 0.1}, {4.03, 0.5}, {5.6, 0.2}, {6.2, 0.8}, {6.4, 0}});
  // The last letter goes first.
  const auto sinks = [](double beat) {
    return line(
        {{0, letterFront}, {beat, letterFront + 0.04}, {beat + 0.4, 0.34}, {beat + 1.3, 0}, {partEnd, 0}});
  };
  addShot(show, "into the box", start, length, above,
          {.lock = line({{0, 0.8}, {4, 0.8}, {4.3, 0.55}, {5, 0.55}, {5.3, 0.3}, {6, 0.3}, {6.3, 0}}),
           .lid = line(
               {{0, 0.96}, {1, 0.9}, {2.2, 0.86}, {4.5, 0.5}, {6.2, 0.04}, {6.4, 0}, {6.5, 0.02}, {6.6, 0}}),
           .light = line({{0, 0.999}, {3, 0.6}, {6.2, 0.06}, {6.4, 0}}),
           .beam = line({{0, 0.4}, {2.2, 0.5}, {4, 0.95}, {5.2, 0.7}, {6.2, 0}}),
           .seam = line({{0, 0}, {4.8, 0}, {5.4, 0.6}, {6.2, 0.999}, {6.4, 0}}),
           .letters = {sinks(2.2), sinks(1.6), sinks(1)}},
          {draw(veils)});
  show.part("smoke returns", start, length, smoke,
            {screen::draw(Waves{.texture = "smoke_acid",
                                .at = covering(1.4, 0, slide(-0.3, 0.3)),
                                .speed = 2.4,
                                .amplitude = 0.06,
                                .alpha = slide(0.35, 0.04),
                                .blend = Blend::add})},
            0, -1);
  show.add("light returns", start, 6.2 / beatsPerBar, haze,
           glow("rays_acid", centred(travel(-0.1, 0, 6.2), 0.1, zoom(3.6, 0.5, 6.2)),
                flashes({0, 1, 2, 3, 4, 4.5, 5, 5.5}, 0.5, 0.12)));
  show.add("shut", shut, alienBar - shut, ground, Fade{});
  // As it is found when it is seen again.
  std::vector<ScriptCall> rest = draw(Pose{});
  rest.push_back(smokeAlongTitle(0));
  rest.push_back(draw(Veils{}));
  show.part("at rest", shut, alienBar - shut, ground, std::move(rest));
  show.add("last spark", shut, alienBar - shut, subject,
           glow("streak_acid", {slide(-1.0, -0.2), -0.08, slide(2.0, 0.4), 0.16}, slide(1, 0)));
}

}  // namespace

// Through its windows the hall shows the sky of where it stands now. The name burns above the box and sinks
// into it; light shines from the seam until the lid has shut it in.
void addLidCloses(Show& show, double from, double shut, double until) {
  const double beats = (shut - from) * beatsPerBar;
  const auto falling = [&](double open) {
    return line(
        {{0, open}, {0.4 * beats, 0.8 * open}, {beats, 0}, {beats + 0.12, 0.02 * open}, {beats + 0.25, 0}});
  };
  const auto sinks = [&](double start) {
    return line({{0, letterFront},
                 {start * beats, letterFront},
                 {(start + 0.2) * beats, 0.34},
                 {(start + 0.52) * beats, 0}});
  };
  Veils sinking;
  for (const auto& [layer, level] : {std::pair{0, 1.0}, {1, 1.0}, {2, 0.8}, {spill, 0.6}})
    sinking.opacity[layer] = line({{0, level}, {0.75 * beats, level}, {0.9 * beats, 0}});
  for (Curve& seconds : sinking.seconds) seconds = line({{0, 1.8}, {0.3 * beats, 1.3}, {0.9 * beats, 0}});
  addShot(show, "the lid closes", from, until - from, titleAbove,
          {.lock = line({{0, 0.8}, {beats, 0.8}, {beats + 0.5, 0}}),
           .lid = falling(0.96),
           .light = falling(0.999),
           .beam = falling(0.6),
           .seam = line({{0, 0}, {0.7 * beats, 0}, {beats - 0.1, 0.999}, {beats + 0.1, 0}}),
           .letters = {sinks(0.3), sinks(0.22), sinks(0.14)}},
          {draw(sinking)});
}

void addBox(Show& show) {
  addNight(show);
  addReliquary(show);
  addLock(show);
  addEyeInLock(show);
  addBuild(show);
  addLid(show);
  addLayers(show);
  addBackwards(show);
}

}  // namespace vex
