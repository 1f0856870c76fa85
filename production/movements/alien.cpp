#include <cmath>

#include "production/movements/words.h"

namespace vex {

using namespace song;
using namespace show;

using namespace screen;

namespace {

enum Camera {
  wide,
  face,
  low,
  crane,
  back,
  flank,
  beckoned,
  idol,
  gaze,
  overhead,
  strokeFar,
  strokeLow,
  strokeHigh,
  strokeFace,
  caged,
  hushedEyes
};
constexpr double struckFrom = 10.2;  // the last five begin there

// The world fills the screen for a while; `start` is where its cameras' shots of twenty seconds are entered.
void addShot(Show& show, const char* name, double bar, double bars, Camera camera, double start,
             double speed = 1) {
  show.part(name, bar, bars, ground, {draw(World{.scene = "SceneAlien", .camera = camera})}, start, speed);
}

// A lamp's streak through the lens, on beats.
void addStreak(Show& show, const char* name, double bar, double bars, double y, const Curve& alpha) {
  show.add(name, bar, bars, title - 1, glow("streak_violet", {slide(-1.7, -1.1), y, 2.8, 0.4}, alpha));
}

// Breath before the lens, brighter on beats.
void addBreath(Show& show, const char* name, double bar, double bars, const Curve& alpha) {
  show.add(name, bar, bars, smoke, smokeBefore("smoke_violet", 1.4, 1.8, alpha));
}

// All goes into ink but what lies within `radius`, 0.3 to 0.64, of a place (y down).
void addPinhole(Show& show, const char* name, double bar, double bars, double x, double y,
                const Curve& radius) {
  constexpr double halfRadius = 0.16;  // of the picture's half height
  show.add(
      name, bar, bars, backdrop,
      Bitmap{.texture = "pinhole", .at = centred(x, y, radius * (2 / halfRadius)), .blend = Blend::darken});
}

// A dark floor for a word: what stands there is of the same chrome.
void addPad(Show& show, double bar, double bars, double x, double y, double width, double height) {
  for (int layer = 0; layer < 2; ++layer)
    show.add("pad", bar, bars, title - 1, shadow({x - width / 2, y - height / 2, width, height}));
}

// Its eyes from afar: a glow about them that each beat fans.
void addEyeshine(Show& show, double bar, double bars, double x, double y) {
  show.add("eyeshine", bar, bars, backdrop,
           glow("light5", centred(x, y, 0.6, 1.5), flashes({0, 1, 2, 3}, 0.8, 0.3)));
}

// Cubes about a place (y up) off the screen's middle.
void addCubes(Show& show, const char* name, double bar, double bars, CurveDot middle,
              const TurningCubes& cubes, double start, double speed) {
  const double size = 2 - 2 * std::fabs(middle.x);  // panes begin on the screen
  const Viewport pane{.x = middle.x - size / 2, .y = middle.y - size / 2, .w = size, .h = size};
  show.part(name, bar, bars, far, {draw(pane), draw(cubes), draw(Viewport{})}, start, speed);
}

// Down the hangar to what stands at its end; the stab throws us before its face.
void addApproach(Show& show) {
  const double start = alienBar, stab = barOf("stab"), next = barOf("alien cut 2");
  addShot(show, "approach", start, stab - start, wide, 0.4, 1.8);
  // The lamp behind it strikes on the drop; until then there are eyes and a rim.
  show.add(
      "dark before it", start, 0.5, backdrop,
      Fade{.alpha = line({{0, 0}, {0.2, 0.55}, {0.98, 0.6}, {1, 0.1}, {1.4, 0.35}, {1.98, 0.4}, {2, 0}})});
  // Lamps go on, arch after arch towards us.
  const struct {
    double beat, x, y, height;
  } lamps[] = {{0, 0.2, -0.46, 0.5}, {1, 0.36, -0.38, 0.7}, {2, 0.56, -0.42, 1.0}, {3, 0.86, -0.5, 1.5}};
  std::vector<ScriptCall> lit;
  for (const auto& lamp : lamps)
    for (const double side : {-1.0, 1.0})
      for (const char* light : {"light5", "light7"})
        lit.push_back(screen::draw(glow(
            light, centred(lamp.x * side - 0.05, lamp.y, light[5] == '7' ? lamp.height * 0.4 : lamp.height),
            line({{0, lamp.beat > 0 ? 0.0 : 0.9},
                  {lamp.beat + 0.01, lamp.beat > 0 ? 0.0 : 0.9},
                  {lamp.beat + 0.04, 0.9},
                  {lamp.beat + 0.5, 0.4},
                  {partEnd, 0.25}}))));
  show.part("lamps go on", start, stab - start, haze, std::move(lit));
  addShot(show, "struck", stab, next - stab, face, 10.4, 0.7);
  addBreath(show, "breath, far", start, next - start, flashes(everyBeat, 0.1, 0.03));
  addStreak(show, "lamp", start, next - start, -0.62, flashes({0, 2, 4, 5, 6.5, 7}, 0.6, 0.05));
}

// Eye to eye until a sphere wipes it away; then on the wet floor between its claws.
void addFace(Show& show) {
  const double start = barOf("alien cut 2");
  addShot(show, "face", start, 1, face, 4.9, 1.5);
  addShot(show, "claws", start + 1, 1, low, 9.4, 1.8);
  addEyeshine(show, start + 1, 1, -0.08, -0.58);
  addBreath(show, "breath", start, 2, flashes(everyBeat, 0.1, 0.03));
  addStreak(show, "glint", start, 1, -0.25, flashes({0, 2, 3}, 0.7, 0));
}

// The music stops and with it the light. Eyes open in a cage of cubes; each tick shows for three frames how
// much nearer they have come; then it bursts open from above.
void addBreak(Show& show) {
  const double start = barOf("break"), over = barOf("break over"), next = barOf("split");
  const struct {
    double beat;
    Camera camera;
    double start;
  } ticks[] = {{0, caged, 8}, {2, idol, 14},         {2.5, face, 9.6},
               {3, face, 13}, {3.5, hushedEyes, 10}, {4, hushedEyes, 10}};
  for (int i = 0; i < 5; ++i)
    addShot(show, "nearer", start + ticks[i].beat / 4, (ticks[i + 1].beat - ticks[i].beat) / 4,
            ticks[i].camera, ticks[i].start, 0.3);
  // In the cage there is nothing but eyes, and once all of it.
  addPinhole(show, "black about the eyes", start, 0.5, 0, 0,
             line({{0, 0.3}, {0.99, 0.3}, {1, 0.64}, {1.3, 0.3}, {partEnd, 0.3}}));
  show.add(
      "dark", start, over - start, backdrop,
      Fade{.alpha = line({{0, 0.35},   {0.99, 0.25}, {1, 0.05},   {1.2, 0.05}, {1.45, 0.25}, {1.99, 0.35},
                          {2, 0.1},    {2.3, 0.1},   {2.4, 0.88}, {2.49, 0.9}, {2.5, 0.08},  {2.8, 0.1},
                          {2.9, 0.86}, {2.99, 0.9},  {3, 0.05},   {3.3, 0.1},  {3.4, 0.84},  {3.49, 0.9},
                          {3.5, 0},    {3.75, 0.1},  {3.9, 0.9}})});
  show.add("eyes in the dark", start, 0.5, backdrop + 1,
           glow("light5", centred(0, 0, 0.8, 1.6),
                line({{0, 0}, {0.1, 0.25}, {0.7, 0.25}, {0.75, 0}, {0.85, 0}, {0.9, 0.25}, {2, 0.25}})));
  addCubes(show, "cage", start, 0.5, {0, 0},
           {.alpha = flashes({0, 0.5, 1, 1.5}, 0.8, 0.3), .field = zoom(50, 44, 2), .blend = Blend::over},
           4.6, 0.7);
  addShot(show, "from above", over, next - over, overhead, struckFrom);
  addPad(show, over + 0.25, next - over - 0.25, 0.5, 0.52, 1.5, 0.8);
  show.add("vexation", over + 0.25, next - over - 0.25, title,
           vex(chromeAtion, spline({{0, 0.8}, {0.3, 0.64}, {2, 0.65}, {partEnd, 0.68}}), 0.48, 0.52));
}

// What it sees: five lenses of an eye, a great one between small ones, none as near as another. One after
// another they look elsewhere, and at last they all see its eyes.
struct Lens {
  double x, y, w, h;
  std::vector<double> cutBeats;
  std::vector<Camera> cameras;
};

void addLens(Show& show, double bar, int number, const Lens& lens) {
  std::vector<CurveDot> dots{{0, static_cast<double>(lens.cameras[0])}};
  for (std::size_t i = 0; i < lens.cutBeats.size(); ++i) {
    dots.push_back({lens.cutBeats[i] - 0.01, dots.back().y});
    dots.push_back({lens.cutBeats[i], static_cast<double>(lens.cameras[i + 1])});
  }
  show.part("lens", bar, 2, ground + 1 + number,
            {draw(Viewport{.x = lens.x, .y = lens.y, .w = lens.w, .h = lens.h}),
             draw(World{.scene = "SceneAlien", .camera = line(dots)}),
             draw(glow("light5", centred(0, 0, 3, 1.2), flashes(lens.cutBeats, 0.7)))},
            9.4 + 1.7 * number, 0.9);
}

void addCompoundEye(Show& show) {
  const double start = barOf("split");
  show.add("within the eye", start, 2, ground, Fade{});
  const double great = 0.76, right = 0.38, w = 1 - right, h = 0.74;
  const Lens lenses[] = {{-great, -great, 2 * great, 2 * great, {2, 5, 7}, {face, idol, back, gaze}},
                         {-1, 0, w, h, {1, 6}, {wide, low, gaze}},
                         {right, -h, w, h, {3, 6.5}, {flank, wide, gaze}},
                         {-1, -h, w, h, {4, 7}, {gaze, low, gaze}},
                         {right, 0, w, h, {1.5, 5.5}, {back, wide, gaze}}};
  int number = 0;
  for (const Lens& lens : lenses) addLens(show, start, number++, lens);
  // One a bar: when a late start catches up part by part, the last of each bar must be the whole screen.
  for (const double bar : {start, start + 1}) show.add("whole screen", bar, 1, ground + 6, Viewport{});
  show.add("chitin", start, 2, ground + 7, Bitmap{.texture = "chitin", .at = {-1, -0.757, 2, 1.514}});
}

// Around its side to its face, as it lifts a claw.
void addOrbit(Show& show) {
  const double start = barOf("counter voice"), stab = barOf("stab 2"), next = barOf("alien cut 6");
  addShot(show, "around", start, stab - start, beckoned, 14.3, 0.5);
  addShot(show, "struck again", stab, next - stab, face, 15, 0.7);
  addBreath(show, "breath behind", start, next - start, flashes(everyBeat, 0.1, 0.03));
  addStreak(show, "lens", start, next - start, -0.4, flashes({0, 1, 2, 3, 4, 5, 6.5, 7}, 0.6, 0.05));
}

// Along its flank; then what it carries behind it.
void addFlank(Show& show) {
  const double start = barOf("alien cut 6");
  addShot(show, "flank", start, 1, flank, 1.6, 1.2);
  // The lamp behind it dims and magenta gathers about it, until it strikes on the fourth beat.
  const double strike = 1.75, lead = 0.125;
  addShot(show, "sting", start + 1, strike - lead - 1, back, 5.6, 2.1);
  addShot(show, "sting darts", start + strike - lead, 2 - strike + lead, strokeFar,
          5 + cueSeconds(0.25 - lead));
  show.add("it gathers", start + strike - lead, 2 - strike + lead, backdrop,
           Fade{.alpha = line({{0, 0.35}, {0.47, 0.6}, {0.5, 0}, {0.65, 0}, {partEnd, 0.35}})},
           glow("light5", centred(-0.4, -0.45, 0.6), line({{0, 0.3}, {0.47, 0.8}, {0.5, 0}})));
  addPinhole(show, "but for the sting", start + strike, 2 - strike, -0.44, -0.12,
             line({{0, 0.64}, {0.2, 0.6}, {partEnd, 0.5}}));
  // What drips from it catches the lamp as it strikes.
  show.add("venom", start + 1.5, 0.5, haze,
           glow("light5", centred(slide(-0.64, -0.6), -0.2, 0.5), flashes({1}, 0.9)),
           glow("light7", centred(slide(-0.64, -0.6), -0.2, 0.2), flashes({1}, 1)));
  addStreak(show, "the lamp answers", start + 1.5, 0.5, -0.2, flashes({1}, 0.8));
  addBreath(show, "breath aside", start, 2, flashes(everyBeat, 0.1, 0.03));
  addPad(show, start + 1, 1, 0.5, 0.54, 1.5, 0.9);
  show.add("vexer", start + 1, 1, title, vex(chromeEr, 0.74, 0.52, 0.55));
}

// The second break: its eyes on every tom, then nothing but them; then the whole creature under all its
// lamps.
void addClimax(Show& show) {
  const double start = barOf("break 2"), hushed = barOf("break 2 hushed"), climax = barOf("climax"),
               unison = barOf("unison");
  addShot(show, "gaze", start, hushed - start, gaze, 9.4, 0.6);
  addPinhole(show, "the room goes", start + 0.125, hushed - start - 0.125, 0.16, -0.05,
             line({{0, 0.6}, {0.24, 0.46}, {0.25, 0.64}, {0.7, 0.48}, {partEnd, 0.4}}));
  // Its eyes shut one after the other; the lids move with the head.
  const struct {
    double beat, x, y, height;  // where it is at beat 1.5
  } lids[] = {{0.5, 0.484, -0.139, 0.24},  {0.75, -0.089, -0.097, 0.3}, {1, 0.33, -0.258, 0.24},
              {1.25, 0.128, -0.258, 0.25}, {1.5, 0.437, 0.078, 0.46},   {1.75, 0.07, 0.097, 0.5}};
  for (const auto& lid : lids) {
    const double length = hushed - start - lid.beat / beatsPerBar;
    const auto drifts = [&](double at, double perBeat) {
      return slide(at + (lid.beat - 1.5) * perBeat, at + 0.5 * perBeat);
    };
    const Curve falls = line({{0, 0}, {0.12, 1}, {partEnd, 1}});
    const Place shut{drifts(lid.x, -0.055) + -lid.height * 9 / 16, drifts(lid.y, -0.089) + -lid.height / 2,
                     lid.height * 9 / 8, falls * lid.height};
    show.add("lid", start + lid.beat / beatsPerBar, length, backdrop + 1, shadow(shut), shadow(shut),
             shadow(shut));
  }
  // On the second beat it has lifted a claw into the light.
  addShot(show, "six eyes", hushed, 0.25, hushedEyes, 10, 0.5);
  addPinhole(show, "but for eyes", hushed, 0.25, 0.1, -0.02, line({{0, 0.5}, {0.6, 0.4}, {partEnd, 0.34}}));
  addShot(show, "a claw", hushed + 0.25, climax - hushed - 0.25, strokeFace, 3.2);
  show.add("it goes into the dark", hushed + 0.25, climax - hushed - 0.25, backdrop,
           Fade{.alpha = line({{0, 0}, {0.45, 0.1}, {0.8, 0.85}, {partEnd, 0.96}})});
  addShot(show, "it comes", climax, unison - climax, wide, 11.8, 1.4);
  addEyeshine(show, climax, unison - climax, 0.03, -0.53);
  show.add("blaze behind", climax, unison - climax, backdrop,
           glow("rays_violet", centred(0, -0.1, zoom(2.6, 3.8, 4)), flashes({0, 1, 2, 3}, 0.4, 0.04)));
}

// Four strokes, four cameras; the title is struck in the dark beside it, smaller each time, before it is
// torn.
void addUnison(Show& show) {
  struct Stroke {
    std::string_view cue;
    const char* name;
    Camera camera;
    double x, size;  // of the title
  };
  constexpr Stroke strokes[] = {{"unison", "stroke one", strokeFar, -0.42, 0.66},
                                {"unison 2", "stroke two", strokeLow, 0.44, 0.64},
                                {"unison 3", "stroke three", strokeHigh, -0.44, 0.62},
                                {"unison 4", "stroke four", strokeFace, 0.46, 0.6}};
  constexpr double length = 0.5;
  for (const Stroke& stroke : strokes) {
    const double start = barOf(stroke.cue);
    addShot(show, stroke.name, start, length, stroke.camera, struckFrom);
    addPad(show, start, length, stroke.x, 0.52, 1.5, 0.8);
    Word word = vex(atious, stroke.size, stroke.x, 0.52);
    if (stroke.camera != strokeFace) word.tear = 0;
    show.add("vexatious", start, length, title, word);
  }
  // Seen from above, what it stands over burns.
  show.add("the pool burns", barOf("unison 3"), length, backdrop,
           glow("light5", centred(0.26, 0.34, slide(1.3, 1.4)), flashes({0, 1}, 0.8, 0.3)),
           glow("light7", centred(0.26, 0.34, 0.7), flashes({0, 1}, 0.8, 0.35)));
  show.add("blows", barOf("unison"), 2, backdrop,
           glow("rays_violet", centred(0.32, -0.47, 3.6), flashes({0, 2, 4, 6}, 0.4, 0)));
}

}  // namespace

void addAlien(Show& show) {
  addApproach(show);
  addFace(show);
  addBreak(show);
  addCompoundEye(show);
  addOrbit(show);
  addFlank(show);
  addClimax(show);
  addUnison(show);
}

}  // namespace vex
