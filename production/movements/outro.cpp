#include <cmath>
#include <functional>
#include <numbers>
#include <tuple>

#include "production/models/balls.h"
#include "production/movements/words.h"
#include "production/show/scroller.h"

// The party: stars, copper bars, shapes of balls and a scroller; the title rings out with the last chord.

namespace vex {

using namespace song;
using namespace show;

using namespace screen;

namespace {

ScriptParameter number(const Curve& curve, double least = -1000, double most = 1000) {
  return {curve, least, most};
}
ScriptCall call(const char* function, std::vector<ScriptParameter> parameters) {
  return {"SceneOuttro", function, std::move(parameters)};
}

struct Stars {
  Curve x = 0, y = 0, z = 0;  // 500 units a second each; negative z comes nearer
};
ScriptCall draw(const Stars& stars) {
  return call("drawStars", {number(stars.x), number(stars.y), number(stars.z)});
}

struct Copper {
  Curve count = 1, endScale = 0.4;
  int mode = 0;
  Curve speed = 1, spacing = 1, amplitude = 0.5;
  Curve red = 1, green = 1, blue = 1;
};
ScriptCall draw(const Copper& bars) {
  return call("showCopperBars",
              {number(bars.count, 0, 100), number(bars.endScale, 0.05, 4), number(bars.mode),
               number(bars.speed), number(bars.spacing, 0.01, 10), number(bars.amplitude, 0, 2),
               number(bars.red, 0, 1), number(bars.green, 0, 1), number(bars.blue, 0, 1)});
}

struct BallShow {
  Curve size = 12, turns = 0.25, distance = 300, field = 60, height = 0.1;
};
ScriptCall draw(const BallShow& balls) {
  return call("showVectorBalls",
              {number(balls.size, 0, 100), number(balls.turns), number(balls.distance, 1, 10000),
               number(balls.field, 10, 170), number(balls.height)});
}

struct Scroller {
  Curve zoom = -1;
  int mode = 0;
  Curve waveSpeed = 0, waveLength = 1, amplitude = 0, y = -0.7;
};

// --- When things are said

constexpr double beatsOfText = 44;  // from the first letter at the right edge to the last chord

// Letters in units of ten a second: all of the text but its blanks at the end passes before the last chord.
double scrollSpeed() {
  return static_cast<double>(scrollerWords().size()) / (beatsOfText * secondsPerBeat * 10);
}

ScriptCall draw(const Scroller& line) {
  return call("drawScroller",
              {number(scrollSpeed()), number(line.zoom, -1, 4), number(line.mode), number(line.waveSpeed),
               number(line.waveLength, 0.01, 10), number(line.amplitude, 0, 1), number(line.y, -2, 2)});
}

// A stretch of a function of the beats since a section began, over beats `from` to `to` of it.
Curve stretch(const std::function<double(double)>& f, double from, double to) {
  constexpr int steps = 8;
  std::vector<CurveDot> dots;
  for (int i = 0; i <= steps; ++i) {
    const double beat = (to - from) * i / steps;
    dots.push_back({beat, f(from + beat)});
  }
  return line(std::move(dots));
}

// --- The layers

// Loaded before the show begins.
void addPreloads(Show& show) {
  show.part("outro loads", -2, 1, ground,
            {call("preloadFont", {{file("scroller")}}), call("preloadText", {{file("scroller.txt")}})});
}

void addSky(Show& show) {
  const double start = outroBar, chord = barOf("last chord"), end = songBars + blackSeconds / secondsPerBar;
  show.add(
      "copper sky", start, end + 1 - start, ground,
      Bitmap{.texture = "sky_copper", .at = covering(1.3, swing(53, -0.2, 0.2), swing(37, -0.15, 0.15))});
  show.add("copper dawn", start, end - start, backdrop - 1,
           glow("haze_ember", centred(swing(23, -0.4, 0.4), 0.75, 2.0, 2.2), swing(8, 0.7, 1)));
  show.part("stars", start, 2, backdrop, {draw(Stars{.z = line({{0, -2.2}, {2, -0.5}, {partEnd, -0.3}})})});
  show.part("stars drift", start + 2, 2, backdrop, {draw(Stars{.x = 0.12, .y = 0.03, .z = -0.15})});
  show.part("stars fly", start + 4, 4, backdrop, {draw(Stars{.z = -0.35})});
  show.part("stars race", start + 8, chord - start - 8, backdrop,
            {draw(Stars{.x = swing(8, -0.1, 0.1), .z = -0.7})});
  show.part("stars rest", chord, end - chord, backdrop,
            {draw(Stars{.z = line({{0, -1.2}, {1, -0.12}, {partEnd, -0.02}})})});
}

// A bar's hue, brighter on each beat.
struct BarHue {
  double red, green, blue;
};
Copper lit(Copper bars, const BarHue& hue, int beats) {
  std::vector<double> all;
  for (int beat = 0; beat < beats; ++beat) all.push_back(beat);
  const auto level = [&](double most) { return flashes(all, std::min(1.0, most), 0.8 * most); };
  bars.red = level(hue.red), bars.green = level(hue.green), bars.blue = level(hue.blue);
  return bars;
}

// Each shape has the hue of a world that was crossed behind it; first of all they are copper.
void addBars(Show& show) {
  const double bars = barOf("copper bars"), first = barOf("first shape"), second = barOf("second shape"),
               third = barOf("third shape"), greetings = barOf("greetings"), closing = barOf("closing fill"),
               chord = barOf("last chord");
  const auto add = [&](const char* name, double from, double until, Copper look, const BarHue& hue) {
    show.part(name, from, until - from, far,
              {draw(lit(std::move(look), hue, static_cast<int>((until - from) * beatsPerBar + 0.5)))});
  };
  add("copper bars", bars, first,
      {.count = line({{0, 1}, {6, 9}, {partEnd, 9}}),
       .endScale = 0.5,
       .speed = 0.75,
       .spacing = 0.62,
       .amplitude = spline({{0, 0}, {1, 0.42}, {4, 0.5}, {partEnd, 0.62}})},
      {1.0, 0.88, 0.66});
  add("bars in file", first, second,
      {.count = 8, .endScale = 0.4, .speed = 0.5, .spacing = 0.5, .amplitude = swing(8, 0.6, 0.8, 90)},
      {0.42, 0.86, 0.24});
  add("bars entwined", second, third,
      {.count = 9, .endScale = 0.35, .mode = 1, .speed = 0.6, .spacing = 0.6, .amplitude = 0.8},
      {0.26, 0.60, 1.0});
  const Copper chorus{.count = 7,
                      .endScale = 0.4,
                      .mode = 1,
                      .speed = 0.9,
                      .spacing = 0.8,
                      .amplitude = swing(12, 0.65, 0.85)};
  add("bars of the chorus", third, greetings, chorus, {0.34, 0.96, 1.0});
  add("bars of gold", greetings, closing, chorus, {1.0, 0.72, 0.30});
  // They gather where the balls will lie.
  Copper gathered = chorus;
  gathered.amplitude = line({{0, 0.7}, {0.9, 0.1}, {1, 0.8}, {partEnd, 0.5}});
  add("bars struck", closing, chord, gathered, {0.34, 0.96, 1.0});
  // The world comes out of its sun's light.
  show.add("light behind the world", outroBar, bars - outroBar, far + 1,
           glow("rays_ember", centred(0, -0.12, slide(3.4, 2.8)), flashes(everyBeat, 0.9, 0.45)),
           glow("haze_ember", centred(0, -0.12, 2.6, 1.5), flashes(everyBeat, 1, 0.7)));
  // Then it hides a sun: its streamers flare on the beat.
  for (const double rest : {0.7, 0.2})
    show.add("sun behind", bars, first - bars, far + 1,
             glow("corona_ember", centred(0, -0.16, slide(2.3, 2.45)), flashes(everyBeat, 1, rest)));
  // Then one light behind each shape: fire behind the box and the word, a cold sky behind the skull.
  for (const auto& [from, until, haze] :
       {std::tuple{first, second, "haze_ember"}, {second, third, "haze_teal"}, {third, chord, "haze_ember"}})
    show.add("glow behind", from, until - from, far + 1,
             glow(haze, centred(0, -0.12, 2.6, 1.5), swing(1, 0.65, 1, 90)));
  show.add("storm behind", second, third - second, far + 2,
           glow("rays_teal", centred(0, -0.12, slide(3.2, 3.8)), flashes(everyBeat, 0.9, 0.4)),
           glow("light3", centred(0, -0.12, 1.9), flashes(everyBeat, 0.7, 0.45)));
  show.add(
      "more glow", third, chord - third, far + 2,
      glow("rays_ember", centred(0, -0.12, 3.4), flashes({0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}, 0.8, 0.35)));
}

using Look = std::function<BallShow(double from, double to)>;

// A stage of a shape over beats `from` to `to` of the shape's own time.
void addStage(Show& show, const char* shape, int stage, double start, double from, double to,
              const Look& look) {
  show.part(shape, start + from / beatsPerBar, (to - from) / beatsPerBar, subject,
            {call("preloadVectorBalls", {{file(ballFile(shape, stage))}}), draw(look(from, to))});
}

double swell(double beat) {
  return std::exp(-4 * (beat - std::floor(beat + 1e-6)));
}
double smooth(double from, double to, double share) {
  share = std::min(1.0, std::max(0.0, share));
  return from + (to - from) * share * share * (3 - 2 * share);
}

// To one side and to the other, `reach` turns far: face to face at every second beat.
constexpr double sway = 4, reach = 0.055;  // beats, turns

Curve swaying(double from, double to) {
  constexpr double pace = reach * 2 * std::numbers::pi / (sway * secondsPerBeat);
  return stretch([](double beat) { return pace * std::cos(2 * std::numbers::pi * beat / sway); }, from, to);
}

// What leaves the shape's middle `rise` units above the middle of the screen.
double heightFor(double rise, double distance) {
  return rise / distance;
}

// Out of the white a sealed world falls away from us; with the fill it is thrown open, and we fall into its
// light.
void addWorldOfBalls(Show& show) {
  const double seen = outroBar, opens = barOf("copper fill"), first = barOf("first shape");
  const double opened = (opens - seen) * beatsPerBar, beats = (first - seen) * beatsPerBar;
  const auto look = [&](double from, double to) {
    return BallShow{
        .size = stretch([](double beat) { return 14 + 3 * swell(beat); }, from, to),
        .turns = turnsAboutWorld / ((first - seen) * secondsPerBar),
        .distance = stretch(
            [&](double beat) {
              const double in = std::max(0.0, (beat - opened) / (beats - opened));
              return 220 + 220 * (1 - std::exp(-1.6 * beat)) - 70 * std::sqrt(in) - 150 * in * in * in * in;
            },
            from, to),
        .height = stretch([](double beat) { return 0.05 + 0.03 * std::sin(beat / 3); }, from, to)};
  };
  addStage(show, "world", 1, seen, 0, 1, look);
  addStage(show, "world", 1, seen, 1, opened, look);
  addStage(show, "world", 2, seen, opened, beats, look);
  show.add("light of the world", opens, first - opens, subject + 1,
           glow("rays_ember", centred(0, -0.10, spline({{0, 1.6}, {1, 2.6}, {partEnd, 5.2}})),
                spline({{0, 1}, {0.5, 0.6}, {1, 0.9}, {partEnd, 1}})),
           glow("light7", centred(0, -0.06, spline({{0, 0.5}, {1, 0.6}, {partEnd, 3.2}}), 1.9),
                spline({{0, 1}, {0.5, 0.7}, {partEnd, 1}})));
}

// What opens out of it is the box.
void addBoxOfBalls(Show& show, double first, double second) {
  const auto look = [&](double from, double to) {
    return BallShow{.size = stretch([](double beat) { return 13 + 3 * swell(beat); }, from, to),
                    .turns = swaying(from, to),
                    .distance = stretch([](double beat) { return smooth(350, 306, beat / 5); }, from, to),
                    .height = 0.06};
  };
  addStage(show, "box", 1, first, 0, 1, look);
  addStage(show, "box", 2, first, 1, (second - first) * beatsPerBar, look);
}

// A skull sings on every other beat, and with the fill swallows us.
void addSkullOfBalls(Show& show, double second) {
  constexpr double swallows = 7, gone = 8;
  const auto distance = [](double beat) {
    const double in = std::max(0.0, beat - swallows);
    return smooth(330, 285, beat / 2) - 190 * in * in * in;
  };
  const auto rise = [](double beat) {
    return 30 + (-skullScale * skullMouth.y - 30) * smooth(0, 1, (beat - swallows) / 0.7);
  };
  const Look look = [&](double from, double to) {
    return BallShow{
        .size = stretch([](double beat) { return 10.5 + 1.5 * swell(beat); }, from, to),
        .turns = swaying(from, to),
        .distance = stretch(distance, from, to),
        .height = stretch([&](double beat) { return heightFor(rise(beat), distance(beat)); }, from, to)};
  };
  // Where a place of it is seen.
  const auto addLight = [&](const char* name, const char* texture, Vector place, double size, double from,
                            double to, const Curve& level) {
    place *= skullScale;
    const auto depth = [&](double beat, bool across) {
      const double angle = 2 * std::numbers::pi * reach * std::sin(2 * std::numbers::pi * beat / sway);
      const double c = std::cos(angle), s = std::sin(angle);
      return across ? place.x * c - place.z * s : distance(beat) - place.x * s - place.z * c;
    };
    const double tangent = std::tan(22.5 * std::numbers::pi / 180);
    const auto seen = [&](const std::function<double(double)>& value) {
      return stretch([&](double beat) { return value(beat) / (depth(beat, false) * tangent); }, from, to);
    };
    show.add(name, second + from / beatsPerBar, (to - from) / beatsPerBar, subject + 1,
             glow(texture,
                  centred(seen([&](double beat) { return depth(beat, true) * 9 / 16; }),
                          seen([&](double beat) { return -place.y - rise(beat); }),
                          seen([&](double) { return size; })),
                  level));
  };
  const auto sings = [&](double from, double to) {
    addStage(show, "skull", 2, second, from, to, look);
    for (const char* light : {"haze_ember", "light6"})
      addLight("song", light, skullMouth, light[0] == 'h' ? 150 : 70, from, to, slide(1, 0.7));
  };
  for (double beat = 0; beat < swallows; beat += 2) {
    addStage(show, "skull", 1, second, beat, beat + 1, look);
    if (beat + 1 < swallows) sings(beat + 1, beat + 2);
  }
  sings(swallows, gone);
  for (const double side : {1.0, -1.0})
    for (double beat = 0; beat < gone; ++beat) {
      const Vector eye(static_cast<float>(side) * skullEye.x, skullEye.y, skullEye.z - 4);
      addLight("eyes", "light4", eye, 74, beat, beat + 1, flashes({0, 0.5}, 1, 0.75));
      addLight("eyes", "light7", eye, 22, beat, beat + 1, flashes({0, 0.5}, 1, 0.7));
    }
  show.add("swallowed", second + swallows / beatsPerBar, (gone - swallows) / beatsPerBar, flash + 1,
           Fade{.alpha = spline({{0, 0}, {0.7, 0}, {1, 0.8}})});
}

// Out of a heap leaps the title; it greets with a turn about itself, and falls into the heap again.
void addWordOfBalls(Show& show, double third) {
  const double greetings = (barOf("greetings") - third) * beatsPerBar,
               closing = (barOf("closing fill") - third) * beatsPerBar,
               chord = (barOf("last chord") - third) * beatsPerBar;
  const double leapt = 1, struck = closing + 1;
  const Look look = [&](double from, double to) {
    const auto height = [&](double beat) {
      if (beat < closing) return 0.1;
      // Up a little and down; then the heap bounces, each time half as long.
      double t = beat - closing;
      if (t < 1) return 0.1 + 0.16 * t - 0.28 * t * t;
      double hop = 0.5;
      for (t -= 1; t >= hop && hop > 0.1; hop /= 2) t -= hop;
      return -0.02 + 1.6 * std::max(0.0, t * (hop - t));
    };
    return BallShow{
        .size = stretch([](double beat) { return 13 + 4 * swell(beat); }, from, to),
        .turns = swaying(from, to),
        .distance = stretch([](double beat) { return smooth(360, 310, beat / 4) + 10 * std::sin(beat / 2); },
                            from, to),
        .height = stretch(height, from, to)};
  };
  addStage(show, "word", 1, third, 0, leapt, look);
  addStage(show, "word", 2, third, leapt, greetings, look);
  addStage(show, "word", 2, third, greetings, closing, [&](double from, double to) {
    const auto share = [=](double beat) {
      return 0.5 - 0.5 * std::cos(2 * std::numbers::pi * (beat - from) / (to - from));
    };
    BallShow turning = look(from, to);
    turning.turns =
        stretch([&](double beat) { return 2 * share(beat) / ((to - from) * secondsPerBeat); }, from, to);
    turning.height = stretch([&](double beat) { return 0.1 + 0.05 * share(beat); }, from, to);
    // What turns towards us keeps its distance.
    turning.distance =
        stretch([&](double beat) { return 310 + 10 * std::sin(beat / 2) + 80 * share(beat); }, from, to);
    return turning;
  });
  addStage(show, "word", 2, third, closing, struck, look);
  addStage(show, "word", 1, third, struck, chord, look);
  // It glows until it leaps.
  show.add("heap glows", third, leapt / beatsPerBar, subject + 1,
           glow("rays_ember", centred(0, 0.02, spline({{0, 0.9}, {partEnd, 3}}), 1.3),
                line({{0, 0.6}, {partEnd, 1}})),
           glow("haze_ember", centred(0, 0.06, spline({{0, 0.7}, {partEnd, 1.5}}), 2.6), slide(0.6, 1)),
           glow("light7", centred(0, 0.06, spline({{0, 0.2}, {partEnd, 0.8}}), 2.6), slide(0.5, 1)));
  show.add("struck", third + struck / beatsPerBar, 0.25, flash,
           glow("haze_ember", centred(0, 0.42, spline({{0, 0.5}, {partEnd, 1.4}}), 3.4),
                spline({{0, 1}, {0.3, 0.5}, {partEnd, 0}})));
  // It glows through the heap, until the chord.
  show.add("heap burns", third + struck / beatsPerBar, (chord - struck) / beatsPerBar, subject + 1,
           glow("rays_ember", centred(0, 0.18, spline({{0, 0.6}, {partEnd, 2.6}}), 1.3),
                line({{0, 0.4}, {partEnd, 1}})),
           glow("light7", centred(0, 0.26, spline({{0, 0.3}, {partEnd, 1.1}}), 2.6), slide(0.2, 1)));
  // They fly apart past us.
  show.part("word bursts", barOf("last chord"), 0.25, subject,
            {draw(BallShow{.size = line({{0, 17}, {0.6, 8}, {partEnd, 0}}),
                           .turns = 0,
                           .distance = line({{0, 310}, {0.6, 90}, {partEnd, 40}}),
                           .height = -0.02})});
}

void addShapes(Show& show) {
  const double first = barOf("first shape"), second = barOf("second shape"), third = barOf("third shape");
  addWorldOfBalls(show);
  addBoxOfBalls(show, first, second);
  addSkullOfBalls(show, second);
  addWordOfBalls(show, third);
  // The world's star, and the light in the box.
  show.add("star", outroBar, first - outroBar, haze,
           glow("light7", centred(line({{0, -0.62}, {partEnd, -0.80}}), -0.70, 0.55)),
           glow("streak_bone", {line({{0, -1.82}, {partEnd, -2.0}}), -0.80, 2.4, 0.2}, swing(4, 0.6, 1)));
  show.add("light within", first, second - first, subject + 1,
           glow("rays_ember", centred(0, -0.20, 2.4), flashes(everyBeat, 0.9, 0.35)),
           glow("light7", centred(0, -0.18, 0.5, 1.5), flashes(everyBeat, 1, 0.6)));
  // The shape is whole: light; and once more on the bar.
  for (const double bar : {outroBar + 1.0, barOf("copper fill"), first + 0.25, first + 1, third + 0.25})
    show.add("whole", bar, 0.25, flash,
             glow("haze_ember", centred(0, -0.1, spline({{0, 2.6}, {partEnd, 1.8}}), 1.78),
                  spline({{0, 0.7}, {0.3, 0.2}, {partEnd, 0}})));
  for (const double bar : {second, second + 1})
    show.add("struck by the storm", bar, 0.25, flash,
             glow("haze_teal", centred(0, -0.1, spline({{0, 2.6}, {partEnd, 1.8}}), 1.78),
                  spline({{0, 0.7}, {0.3, 0.2}, {partEnd, 0}})));
}

void addScroller(Show& show) {
  const double start = outroBar, first = barOf("first shape"), second = barOf("second shape"),
               third = barOf("third shape"), greetings = barOf("greetings"), chord = barOf("last chord");
  show.add("band", start, chord - start, front - 1, shadow({-2.2, 0.28, 4.4, 0.86}));
  show.part(
      "scroller", start, first - start, front,
      {draw(Scroller{.zoom = line({{0, -0.85}, {7.5, -0.85}, {8.5, -0.95}, {partEnd, -0.95}}), .y = -0.71})});
  show.part("scroller rides", first, second - first, front,
            {draw(Scroller{.zoom = -0.95,
                           .mode = 1,
                           .waveSpeed = 0.12,
                           .waveLength = 0.9,
                           .amplitude = fade(2, 0, 0.1),
                           .y = -0.7})});
  show.part(
      "scroller rides on", second, third - second, front,
      {draw(Scroller{
          .zoom = -0.9, .mode = 1, .waveSpeed = -0.2, .waveLength = 0.6, .amplitude = 0.09, .y = -0.74})});
  show.part(
      "scroller dances", third, greetings - third, front,
      {draw(Scroller{
          .zoom = -0.9, .mode = 2, .waveSpeed = 0.1, .waveLength = 1.1, .amplitude = 0.13, .y = -0.68})});
  show.part("scroller greets", greetings, chord - greetings, front,
            {draw(Scroller{.zoom = spline({{0, -0.9}, {2, -0.8}, {partEnd, -0.8}}),
                           .mode = 2,
                           .waveSpeed = 0.14,
                           .waveLength = 1.0,
                           .amplitude = line({{0, 0.13}, {2, 0}, {partEnd, 0}}),
                           .y = spline({{0, -0.64}, {2, -0.68}, {3, -0.8}, {partEnd, -0.8}})})});
}

// When the balls have flown past us the open box drinks its letters; over it the title is struck once, stands
// in copper, and when it has been read the lid falls.
void addLastWord(Show& show) {
  constexpr double shuts = 4;  // beats after the title is struck
  const double chord = barOf("last chord"), named = songBars, end = songBars + blackSeconds / secondsPerBar;
  addLidCloses(show, chord + 0.25, named, named + shuts / beatsPerBar, end);
  show.add("light of the chord", chord, 0.5, haze,
           glow("haze_ember", centred(0, 0, spline({{0, 3.6}, {partEnd, 2.4}}), 2),
                line({{0, 1}, {0.6, 0.7}, {partEnd, 0}})));
  for (int layer = 0; layer < 2; ++layer)
    show.add("dark behind the name", named, end - named, title - 2, shadow(centred(0, -0.53, 0.9, 4)));
  // What it is struck with glows on behind it.
  show.add("light of the name", named, end - named, title - 1,
           glow("rays_ember", centred(0, -0.52, spline({{0, 3.4}, {1, 2.4}, {partEnd, 2.0}}), 1.6),
                line({{0, 1}, {0.5, 0.7}, {2, 0.5}, {shuts, 0.5}, {shuts + 0.3, 0.25}, {7.2, 0}})),
           glow("streak_bone", {-1.6, -0.72, 3.2, 0.4}, line({{0, 1}, {0.5, 0.5}, {2, 0}})));
  // It runs over the letters once more as they cool, and the lock beats a last time or two.
  show.add("glint over the name", named + 0.25, end - named - 0.25, title + 1,
           glow("streak_bone", {line({{0, -2.4}, {5, 0.6}, {partEnd, 1}}), -0.66, 1.8, 0.22},
                line({{0, 0}, {0.5, 0.8}, {4, 0.7}, {5, 0}})));
  show.add(
      "last heart-beats", named, end - named, haze,
      glow("haze_ember", centred(0, 0.3, 1.5, 1.2), flashes({1, 1.6, 3, 3.6, shuts, 5, 5.6}, 0.8, 0.12)));
  // What it has drunk shines out of it until then.
  show.add("light of the open box", named - 0.25, 0.25 + (shuts - 0.2) / beatsPerBar, haze,
           glow("haze_acid", centred(0.02, 0.02, 1.3, 1.5),
                line({{0, 0}, {1, 1}, {1.6, 0.75}, {shuts - 0.2, 0.8}, {partEnd, 0}})),
           glow("rays_acid", centred(0.02, 0.16, swing(3, 1.5, 1.8)),
                line({{0, 0}, {1, 1}, {1.6, 0.6}, {shuts - 0.2, 0.7}, {partEnd, 0}})));
  show.add("lid falls", named + shuts / beatsPerBar, 0.25, haze + 1,
           glow("streak_acid", {-1.3, 0.12, 2.6, 0.3}, line({{0, 1}, {0.2, 0.6}, {partEnd, 0}})),
           glow("haze_acid", centred(0, 0.28, 1.6, 2), line({{0, 0.8}, {partEnd, 0}})));
  constexpr double struck = 0.25;  // beats
  const Curve falls = slide(1.35, 1.2);
  show.add("vexation struck", named, struck / beatsPerBar, title,
           Logo{.ending = ation.texture,
                .x = falls * ation.leftBy,
                .y = -0.55,
                .size = falls,
                .glitch = slide(0.8, 0.2)});
  Word word = vex(ation, spline({{0, 1.2}, {2, 1.15}, {partEnd, 1.05}}), 0, -0.55);
  word.tear = 0;
  show.add("vexation", named + struck / beatsPerBar, end - named - struck / beatsPerBar, title, word);
  show.add("last veil", named, end + 1 - named, curtain,
           Fade{.alpha = line({{0, 0}, {5, 0}, {7.2, 1}, {partEnd, 1}})});
}

}  // namespace

void addOutro(Show& show) {
  addPreloads(show);
  addSky(show);
  addBars(show);
  addShapes(show);
  addScroller(show);
  addLastWord(show);
  // Out of the white in which the last world ended, through copper.
  show.add("out of white", outroBar, 0.5, curtain,
           glow("haze_ember", centred(0, -0.1, spline({{0, 5}, {partEnd, 2.4}}), 1.78),
                line({{0, 1}, {0.6, 1}, {partEnd, 0}})),
           Fade{1, 0.97, 0.92, line({{0, 0.9}, {0.12, 0.2}, {0.25, 0}, {partEnd, 0}})});
}

}  // namespace vex
