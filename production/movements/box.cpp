#include <cmath>
#include <tuple>

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

// Letters lie in the box at 0, hang flat over it at `letterFlat`, stand up after it, look straight ahead at
// `letterFront` and again at `letterHeld`; from there to 1 they are blown towards us.
constexpr double letterFlat = 0.3, letterFront = 0.55, letterHeld = 0.7;

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
// at which second of their five: flat over the box at `veilFlat`, upright from `veilUp` to `veilHung`, drawn
// back into it at `veilDrawn`, on the floor from `veilOnFloor` for 0.8 s, apart from `veilApart` to 5.
struct Veils {
  Curve opacity[4] = {0, 0, 0, 0};
  Curve seconds[4] = {0, 0, 0, 0};
};
enum Veil { rim, split, hazy, spill };
constexpr double veilFlat = 1.2, veilUp = 1.8, veilHung = 2.2, veilDrawn = 3, veilOnFloor = 3.2,
                 veilApart = 4.4;

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
  overhead,
  titleBacklit,
  titleOnFloor,
  titleAlong,
  titleNear,
  titleBursts,
  above,
  closing
};
constexpr double shotEvery = 30 / 30.0, shotLead = 3 / 30.0, shotLength = 21 / 30.0;  // seconds of the flight

std::vector<ScriptCall> draw(const Pose& stands) {
  return {pose("lock", stands.lock),          pose("top", stands.lid),
          pose("pool01", stands.light),       pose("pool02", stands.light),
          pose("mist", stands.light),         pose("shafts", stands.beam),
          pose("seam", stands.seam),          pose("keyhole", stands.keyhole),
          pose("letter1", stands.letters[0]), pose("letter2", stands.letters[1]),
          pose("letter3", stands.letters[2])};
}

// Ink towards the edges of the picture, clear within a tenth of `height` of a place.
Bitmap darkAbout(double x, double y, const Curve& height) {
  return {.texture = "pinhole", .at = centred(x, y, height), .blend = Blend::darken};
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
  const double steps = beat("pulse"), seam = beat("build"), crane = beat("lid"), backlit = beat("layer 1"),
               dark = beat("layer 2"), bursts = beat("last layer fill"), backwards = beat("backwards"),
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
                                       {backlit, 0.2},
                                       {backlit + cut, -0.06},
                                       {dark, -0.16},
                                       {dark + cut, 1.2},
                                       {bursts, 1.1},
                                       {bursts + cut, 0},
                                       {backwards, 0},
                                       {backwards + cut, 1.5},
                                       {partEnd, 1.4}}),
                                 line({{0, -0.1},
                                       {backlit, -0.1},
                                       {backlit + cut, -0.26},
                                       {dark, -0.22},
                                       {dark + cut, -0.1},
                                       {bursts, -0.1},
                                       {bursts + cut, -0.35},
                                       {backwards, -0.35},
                                       {backwards + cut, -0.1},
                                       {partEnd, -0.1}})),
                  .alpha = line({{0, 1},
                                 {dark, 1},
                                 {dark + cut, 0.5},
                                 {bursts, 0.5},
                                 {bursts + cut, 1},
                                 {backwards, 1},
                                 {backwards + cut, 0.6},
                                 {partEnd, 0.6}})});
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
  // What it sees opens the pupil wide, at a jump.
  const double sees = 0.75 / beatsPerBar;
  const Place pupil = centred(0.02, -0.04, spline({{0, 0.6}, {0.04, 2}, {0.08, 1.68}, {partEnd, 1.75}}));
  show.add("pupil", hold + sees, barOf("lid") - hold - sees, title + 1, shadow(pupil), shadow(pupil),
           shadow(pupil));
}

// The lid goes up, light and smoke pour out.
void addLid(Show& show) {
  const double start = barOf("lid");
  Veils veils;
  veils.opacity[spill] = line({{0, 0.5}, {0.6, 0.15}, {2, 0.2}, {partEnd, 0.3}});
  addShot(show, "the lid lifts", start, 1, crane,
          {.lock = 0.8,
           .lid = spline(
               {{0, 0.03}, {0.4, 0.16}, {1, 0.22}, {2, 0.5}, {3.2, 0.95}, {3.6, 0.98}, {partEnd, 0.95}}),
           .light = line({{0, 0.12}, {0.3, 0.4}, {1.5, 0.4}, {3.2, 0.999}, {partEnd, 0.999}}),
           .beam = line({{0, 0.1}, {0.3, 0.35}, {1.5, 0.4}, {3.2, 0.999}, {partEnd, 0.9}})},
          {particles(line({{0, 60}, {3, 150}, {partEnd, 180}})), draw(veils)});
  show.add("light pours", start, 1, haze,
           glow("rays_acid", centred(0, travel(0.05, 0.16, 4), zoom(3.2, 5, 4)),
                flashes({0, 1, 2, 3}, 0.5, 0.15)));
  show.add("smoke pours", start, 2, smoke,
           Waves{.texture = "smoke_acid",
                 .at = covering(1.4, 0, slide(0.3, -0.3)),
                 .speed = 2.4,
                 .amplitude = 0.06,
                 .alpha = slide(0.06, 0.3),
                 .blend = Blend::add});
  show.add("sparks pour", start + 0.5, 1.5, smoke + 1,
           Noise{.texture = "sparks_acid", .speedX = 0.02, .speedY = 0.16, .alpha = fade(2, 0, 0.5)});
}

// Straight above it: on three beats the letters come up out of the light, and with the last their rims burn.
void addLettersRise(Show& show) {
  const double start = barOf("lid") + 1;
  const auto comes = [](double beat) {
    return line({{0, 0.02},
                 {beat, 0.02},
                 {beat + 0.35, 0.6 * letterFlat},
                 {beat + 0.8, letterFlat + 0.012},
                 {beat + 1.1, letterFlat - 0.004},
                 {partEnd, letterFlat}});
  };
  Veils veils;
  veils.opacity[rim] = line({{0, 0}, {2.8, 0}, {2.85, 1}, {3.2, 0.6}, {3.5, 0.75}, {partEnd, 0.9}});
  veils.seconds[rim] = veilFlat;
  veils.opacity[spill] = flashes({0, 1, 2, 2.8}, 0.6, 0.2);
  addShot(show, "the letters rise", start, 1, overhead,
          {.lock = 0.8,
           .lid = 0.97,
           .light = line(
               {{0, 0.7}, {0.02, 0.999}, {0.9, 0.6}, {1, 0.999}, {1.9, 0.6}, {2, 0.999}, {partEnd, 0.8}}),
           .beam = 0,
           .letters = {comes(0.02), comes(1), comes(2)}},
          {particles(180), smokeAlongTitle(0), draw(veils)});
  // What is far from that light lies in the dark.
  show.add("dark about the steps", start, 1, haze - 1, darkAbout(0, 0, 9));
  show.add("light from below", start, 1, haze,
           glow("light2", centred(0, 0, 1.5, 1.3), flashes({0, 1, 2, 2.8}, 0.9, 0.4)),
           glow("rays_acid", centred(0, 0.02, zoom(1.6, 2.2, 4), 1.5), flashes({0, 1, 2, 2.8}, 0.6, 0.12)));
}

// The title, lit in another way with each bar.
struct TitleLight {
  const char *cue, *name;
  double beats;
  Shot shot;
  Pose pose = {};
  Veils veils = {};
  int sparks = 100;
  Curve smoke = 0;
};

// Dark before the window: they stand up, are struck, and their rims catch fire.
TitleLight backlit() {
  const auto stands = [](double beat) {
    return line({{0, 0.36}, {beat, 0.36}, {beat + 0.4, letterFront + 0.03}, {beat + 0.9, letterFront}});
  };
  TitleLight light{"layer 1", "title before the window", 4, titleBacklit};
  light.pose = {.lock = 0.8,
                .lid = 0,
                .light = 0.999,
                .beam = 0.3,
                .letters = {stands(0.02), stands(0.25), stands(0.5)}};
  light.veils.opacity[hazy] = line({{0, 0}, {0.9, 0}, {0.95, 0.8}, {2, 0.5}, {2.03, 0.9}, {partEnd, 0.6}});
  light.veils.seconds[hazy] = slide(veilUp, veilHung);
  light.veils.opacity[rim] =
      line({{0, 0}, {2, 0}, {2.03, 1}, {2.6, 0.6}, {3, 0.6}, {3.03, 1}, {partEnd, 0.6}});
  light.veils.seconds[rim] = 2;
  light.veils.opacity[spill] =
      line({{0, 0.4}, {0.3, 0.1}, {2, 0.1}, {2.03, 0.5}, {2.6, 0.2}, {partEnd, 0.25}});
  light.smoke = line({{0, 0}, {2, 0.1}, {partEnd, 0.3}});
  return light;
}

// Its light runs out over the floor towards us.
TitleLight onFloor() {
  TitleLight light{"layer 2", "title on the floor", 4, titleOnFloor};
  light.pose = {.lock = 0.8,
                .lid = swing(4, 0.95, 0.98),
                .light = line({{0, 0.5}, {1.2, 0.999}, {partEnd, 0.999}}),
                .beam = 0.999,
                .letters = {0, 0, 0}};
  light.veils.opacity[rim] = line(
      {{0, 0.2}, {0.05, 1}, {1, 0.8}, {1.03, 1}, {2, 0.8}, {2.03, 1}, {3, 0.8}, {3.03, 1}, {partEnd, 0.85}});
  light.veils.seconds[rim] = line({{0, veilOnFloor},
                                   {0.2, veilOnFloor + 0.24},
                                   {1, veilOnFloor + 0.4},
                                   {1.2, veilOnFloor + 0.54},
                                   {2, veilOnFloor + 0.62},
                                   {2.2, veilOnFloor + 0.7},
                                   {partEnd, veilOnFloor + 0.8}});
  light.veils.opacity[spill] = flashes({0, 1, 2, 3}, 0.8, 0.12);
  light.sparks = 140;
  return light;
}

// So near that only bevels and rims are seen; from V to X they are struck.
TitleLight along() {
  TitleLight light{"layer 3", "along the title", 4, titleAlong};
  light.pose = {
      .lock = 0.8, .lid = 0, .light = 0.999, .beam = 0.2, .letters = {letterFront, letterFront, letterFront}};
  light.veils.opacity[rim] = line({{0, 0.5},
                                   {0.03, 1},
                                   {0.9, 0.4},
                                   {1, 0.4},
                                   {1.03, 1},
                                   {1.9, 0.4},
                                   {2, 0.4},
                                   {2.03, 1},
                                   {2.9, 0.4},
                                   {3, 0.4},
                                   {3.03, 1},
                                   {partEnd, 0.5}});
  light.veils.seconds[rim] = 2;
  light.veils.opacity[hazy] = swing(4, 0.25, 0.5);
  light.veils.seconds[hazy] = slide(veilUp, veilHung);
  light.veils.opacity[spill] = 0.1;
  light.smoke = line({{0, 0.3}, {partEnd, 0.6}});
  return light;
}

// Straight before us; cracks run through it.
TitleLight cracking() {
  TitleLight light{"layer 4", "title, nearer", 2, titleNear};
  light.pose = {
      .lock = 0.8, .lid = 0, .light = 0.999, .beam = 0.5, .letters = {letterFront, letterFront, letterFront}};
  light.veils.opacity[rim] =
      line({{0, 0.999}, {0.3, 0.25}, {1, 0.2}, {1.03, 0.6}, {1.3, 0.2}, {partEnd, 0.2}});
  light.veils.seconds[rim] = 2;
  light.veils.opacity[split] = line({{0, 0.2},
                                     {0.03, 0.8},
                                     {0.5, 0.6},
                                     {0.53, 0.999},
                                     {1, 0.7},
                                     {1.03, 0.999},
                                     {1.5, 0.8},
                                     {1.53, 0.999},
                                     {partEnd, 0.9}});
  light.veils.seconds[split] = 2;
  light.veils.opacity[spill] =
      line({{0, 0.6}, {0.4, 0.15}, {1, 0.15}, {1.03, 0.5}, {1.4, 0.2}, {partEnd, 0.2}});
  light.smoke = 0.4;
  return light;
}

// It gives way and is blown towards us, and its light flies apart where it hung.
TitleLight bursting() {
  const auto blown = [](double beat) {
    return line({{0, letterHeld},
                 {beat, letterHeld},
                 {beat + 0.05, letterHeld + 0.024},
                 {1.38, letterHeld + 0.03},
                 {partEnd, 0.95}});
  };
  TitleLight light{"last layer fill", "title bursts", 2, titleBursts};
  light.pose = {
      .lock = 0.8, .lid = 0, .light = 0.999, .beam = 0.8, .letters = {blown(0.03), blown(0.53), blown(1.03)}};
  light.veils.opacity[rim] =
      line({{0, 0.8}, {0.03, 1}, {0.5, 0.7}, {0.53, 1}, {1, 0.7}, {1.03, 1}, {1.4, 0.999}, {partEnd, 0.5}});
  light.veils.seconds[rim] = line({{0, veilApart}, {1.38, veilApart}, {partEnd, 4.99}});
  light.veils.opacity[split] = line({{0, 0.8},
                                     {0.03, 0.999},
                                     {0.5, 0.7},
                                     {0.53, 0.999},
                                     {1, 0.8},
                                     {1.03, 0.999},
                                     {1.38, 0.999},
                                     {1.42, 0},
                                     {partEnd, 0}});
  light.veils.seconds[split] = veilApart;
  light.veils.opacity[spill] = line({{0, 0.4}, {0.4, 0.2}, {1.38, 0.3}, {1.42, 0.999}, {partEnd, 0.4}});
  light.sparks = 180;
  light.smoke = 0.4;
  return light;
}

// The title burns above the box: with each bar in another light, seen from elsewhere.
void addLayers(Show& show) {
  const double start = barOf("layer 1"), last = barOf("layer 4");
  for (const TitleLight& light : {backlit(), onFloor(), along(), cracking(), bursting()})
    addShot(show, light.name, barOf(light.cue), light.beats / beatsPerBar, light.shot, light.pose,
            {particles(light.sparks), smokeAlongTitle(light.smoke), draw(light.veils)});
  show.add("flies apart", last + 3.4 / beatsPerBar, 0.6 / beatsPerBar, flash,
           Fade{0.98, 1, 0.85, line({{0, 0.22}, {0.15, 0.03}, {partEnd, 0}})},
           glow("rays_acid", centred(0, -0.1, slide(2, 5), 1.6), slide(0.9, 0)));
  show.add("sparks of the burst", last + 3.38 / beatsPerBar, 0.62 / beatsPerBar, smoke + 1,
           Noise{.texture = "sparks_acid", .speedX = 0.1, .speedY = 0.9, .alpha = slide(1, 0.7)});
  show.add("dark about the word", barOf("layer 2"), 1, haze - 1, darkAbout(0.02, 0.1, 9.5));
  show.add("glow of the floor", barOf("layer 2"), 1, haze,
           glow("haze_acid", centred(0, 0.55, 1.3, 2.4), flashes({0, 1, 2, 3}, 0.7, 0.3)),
           // What casts the word burns in the box.
           glow("light2", centred(slide(-0.06, -0.03), -0.36, 1.4, 1.3), flashes({0, 1, 2, 3}, 1, 0.45)));
  show.add("light behind the letters", barOf("layer 3"), 1, backdrop - 1,
           glow("light2", centred(slide(0.12, 0), 0.5, 2.6, 1.5), flashes({0, 1, 2, 3}, 1, 0.6)),
           glow("light2", centred(slide(0.12, 0), 0.52, 1.2, 2), flashes({0, 1, 2, 3}, 1, 0.6)));
  show.add("thick smoke", start, 4, smoke,
           Waves{.texture = "smoke_acid",
                 .at = covering(1.35, 0, swing(16, -0.2, 0.2)),
                 .speed = 2,
                 .amplitude = 0.06,
                 .alpha = flashes({0, 4, 8, 12}, 0.35, 0.09),
                 .blend = Blend::add});
  show.add("flying sparks", start, 4, smoke + 1,
           Noise{.texture = "sparks_acid", .speedX = 0.03, .speedY = 0.12, .alpha = 0.4});
}

// Everything runs backwards and is shut in.
void addBackwards(Show& show) {
  const double start = barOf("backwards"), shut = barOf("shut"), length = shut - start;
  show.part("smoke sinks", start, length, backdrop - 1, {boxCall("reverseSmoke")});
  // What flew apart comes together and is drawn back as smoke: no letter is solid any more.
  Veils veils;
  for (const auto& [layer, late, level] : {std::tuple{rim, 0.0, 0.9}, {split, 0.2, 0.6}, {hazy, 0.4, 0.7}}) {
    const double goes = 1 + late, gone = 3.4 + late;
    veils.opacity[layer] = line(
        {{0, 0.4 * level}, {0.9, level}, {goes, 0.8 * level}, {gone - 0.5, level}, {gone, 0}, {partEnd, 0}});
    veils.seconds[layer] = line({{0, 4.9},
                                 {0.9, veilApart},
                                 {0.91, veilHung},
                                 {goes, veilHung},
                                 {gone, veilDrawn},
                                 {partEnd, veilDrawn}});
  }
  veils.opacity[spill] =
      line({{0, 0.8}, {0.5, 0.4}, {2.2, 0.25}, {4, 0.1}, {4.03, 0.5}, {5.6, 0.2}, {6.2, 0.8}, {6.4, 0}});
  addShot(show, "into the box", start, length, above,
          {.lock = line({{0, 0.8}, {4, 0.8}, {4.3, 0.55}, {5, 0.55}, {5.3, 0.3}, {6, 0.3}, {6.3, 0}}),
           .lid = line(
               {{0, 0.96}, {1, 0.9}, {2.2, 0.86}, {4.5, 0.5}, {6.2, 0.04}, {6.4, 0}, {6.5, 0.02}, {6.6, 0}}),
           .light = line({{0, 0.999}, {3, 0.6}, {6.2, 0.06}, {6.4, 0}}),
           .beam = line({{0, 0.4}, {2.2, 0.5}, {4, 0.95}, {5.2, 0.7}, {6.2, 0}}),
           .seam = line({{0, 0}, {4.8, 0}, {5.4, 0.6}, {6.2, 0.999}, {6.4, 0}})},
          {draw(veils)});
  show.add("the dark closes in", start, length, haze - 1, darkAbout(0, 0.1, zoom(14, 8.5, 6)));
  show.part("smoke returns", start, length, smoke,
            {screen::draw(Waves{.texture = "smoke_acid",
                                .at = covering(1.4, 0, slide(-0.3, 0.3)),
                                .speed = 2.4,
                                .amplitude = 0.06,
                                .alpha = slide(0.35, 0.04),
                                .blend = Blend::add})},
            0, -1);
  show.add("sparks return", start, 5 / beatsPerBar, smoke + 1,
           Noise{.texture = "sparks_acid", .speedX = -0.02, .speedY = -0.3, .alpha = fade(0.3, 2, 0.6)});
  show.add("light returns", start, 6.2 / beatsPerBar, haze,
           glow("rays_acid", centred(travel(-0.1, 0, 6.2), 0.1, zoom(3.6, 0.5, 6.2)),
                flashes({0, 1, 2, 3, 4, 4.5, 5, 5.5}, 0.5, 0.12)));
  show.add("shut", shut, alienBar - shut, ground, Fade{});
  // As it is found when it is seen again.
  std::vector<ScriptCall> rest = draw(Pose{});
  rest.push_back(smokeAlongTitle(0));
  rest.push_back(draw(Veils{}));
  show.part("at rest", shut, alienBar - shut, ground, std::move(rest));
  show.add(
      "last spark", shut, alienBar - shut, subject,
      // Where the eyes of what comes next will be.
      glow("streak_acid", {slide(-1.0, -0.3), slide(-0.08, -0.36), slide(2.0, 0.4), 0.16}, slide(1, 0.2)),
      glow("light2", centred(slide(0, -0.1), slide(0, -0.28), slide(0.1, 0.5)), slide(0.2, 0.9)));
}

}  // namespace

// Through its windows the hall shows the sky of where it stands now. The name burns above the box and sinks
// into it; when the lid falls, light shines from the seam until it has shut it in.
void addLidCloses(Show& show, double from, double drawnIn, double shut, double until) {
  const double beats = (drawnIn - from) * beatsPerBar, last = (shut - from) * beatsPerBar;
  const auto falling = [&](double open) {
    return line({{0, open},
                 {beats, 0.92 * open},
                 {last - 1.2, 0.86 * open},
                 {last - 0.5, 0.6 * open},
                 {last, 0},
                 {last + 0.12, 0.02 * open},
                 {last + 0.25, 0}});
  };
  // Struck for the last time they turn to light, one by one, which is drawn into the box.
  const double taken = 0.4 * beats;
  const auto turnsToLight = [&](double share) {
    return line({{0, letterFront}, {share * taken, letterFront}, {share * taken + 0.01, 0}, {partEnd, 0}});
  };
  Veils sinking;
  sinking.opacity[rim] =
      line({{0, 1}, {0.9 * taken, 0.8}, {taken, 1}, {0.86 * beats, 0.9}, {0.9 * beats, 0}});
  sinking.seconds[rim] =
      line({{0, veilUp}, {taken, veilHung}, {0.9 * beats, veilDrawn}, {partEnd, veilDrawn}});
  sinking.opacity[split] =
      line({{0, 0}, {0.3 * taken, 0.2}, {taken, 1}, {0.9 * beats, 0.9}, {0.94 * beats, 0}});
  sinking.seconds[split] =
      line({{0, veilUp}, {1.1 * taken, veilHung}, {0.94 * beats, veilDrawn}, {partEnd, veilDrawn}});
  sinking.opacity[spill] = line({{0, 0.35}, {0.5 * beats, 0.2}, {last - 0.2, 0}});
  addShot(show, "the lid closes", from, until - from, closing,
          {.lock = line({{0, 0.8}, {last, 0.8}, {last + 0.5, 0}}),
           .lid = falling(0.96),
           .light = falling(0.999),
           .beam = falling(0.6),
           .seam = line({{0, 0}, {last - 0.8, 0}, {last - 0.1, 0.999}, {last + 0.1, 0}}),
           .letters = {turnsToLight(0.9), turnsToLight(0.6), turnsToLight(0.3)}},
          {draw(sinking)});
}

void addBox(Show& show) {
  addNight(show);
  addReliquary(show);
  addLock(show);
  addEyeInLock(show);
  addBuild(show);
  addLid(show);
  addLettersRise(show);
  addLayers(show);
  addBackwards(show);
}

}  // namespace vex
