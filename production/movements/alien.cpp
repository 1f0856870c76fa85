#include <cmath>

#include "production/movements/words.h"

namespace vex {

using namespace screen;

namespace {

enum Camera { wide, face, low, crane, back, flank, beckoned, idol };

// The world fills the screen for a while; `start` is where its cameras' shots of twenty seconds are entered.
void addShot(Show& show, const char* name, double bar, double bars, Camera camera, double start,
             double speed = 1) {
  show.part(name, bar, bars, ground, {draw(World{.scene = "SceneAlien", .camera = camera})}, start, speed);
}

// A lamp's streak through the lens, on beats.
void addStreak(Show& show, const char* name, double bar, double bars, double y, const Curve& alpha) {
  show.add(name, bar, bars, title - 1,
           Bitmap{.texture = "streak_violet",
                  .at = {slide(-1.7, -1.1), y, 2.8, 0.4},
                  .alpha = alpha,
                  .blend = Blend::add});
}

// Breath before the lens, brighter on beats.
void addBreath(Show& show, const char* name, double bar, double bars, const Curve& alpha) {
  show.add(name, bar, bars, smoke, smokeBefore("smoke_violet", 1.4, 1.8, alpha));
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
  addShot(show, "approach", start, stab - start, wide, 1, 2.6);
  addShot(show, "struck", stab, next - stab, face, 7.5, 0.7);
  addBreath(show, "breath, far", start, next - start, flashes(everyBeat, 0.12, 0.04));
  addStreak(show, "lamp", start, next - start, -0.62, flashes({0, 2, 4, 5, 6.5, 7}, 0.6, 0.05));
}

// Eye to eye, then on the wet floor between its claws.
void addFace(Show& show) {
  const double start = barOf("alien cut 2");
  addShot(show, "face", start, 1, face, 1.5, 1.5);
  addShot(show, "claws", start + 1, 1, low, 2, 2);
  addBreath(show, "breath", start, 2, flashes(everyBeat, 0.14, 0.04));
  addStreak(show, "glint", start, 2, -0.25, flashes({0, 2, 3, 4, 6, 7}, 0.7, 0));
}

// The music stops and with it the world, a silhouette about two eyes in a frame of cubes; then it bursts open
// from above.
void addBreak(Show& show) {
  const double start = barOf("break"), over = barOf("break over"), next = barOf("split");
  addShot(show, "held", start, over - start, low, 9, 0.25);
  show.add("dark", start, over - start, backdrop,
           Fade{.alpha = flashes({0, 2, 2.5, 3, 3.25, 3.5, 3.75}, 0.15, 0.5)});
  show.add("light in the dark", start, over - start, backdrop + 1,
           Bitmap{.texture = "rays_violet",
                  .at = centred(-0.09, -0.52, zoom(2.4, 2.9, 4)),
                  .alpha = flashes({0, 2, 2.5, 3, 3.25, 3.5, 3.75}, 0.3, 0.04),
                  .blend = Blend::add});
  addCubes(show, "cubes", start, over - start, {-0.09, 0.5},
           {.alpha = flashes({0, 2, 2.5, 3, 3.25, 3.5, 3.75}, 0.6, 0.3), .field = zoom(115, 95, 4)}, 4, 1.5);
  addShot(show, "from above", over, next - over, crane, 9, 2.6);
  addStreak(show, "lamps above", over, next - over, -0.3, flashes({0, 1, 2, 2.5, 3}, 0.8, 0.1));
  show.add("vexation", over, next - over, title,
           glitching(vex(ation, spline({{0, 1.4}, {0.4, 1.1}, {2, 1.12}, {partEnd, 1.24}}), 0, 0.46),
                     flashes({0, 1, 2, 2.5, 3}, 1, 0.05), 3, swing(4, 1.06, 1.25)));
}

// Two panes across each other, then four, each of the screen's own shape; each cuts on its own beats.
struct Pane {
  Curve x, y;   // left lower corner
  double size;  // of the screen's 2
  std::vector<double> cutBeats;
  std::vector<Camera> cameras;
  double start;
};

void addPane(Show& show, const char* name, double bar, double bars, int track, const Pane& pane) {
  std::vector<CurveDot> dots{{0, static_cast<double>(pane.cameras[0])}};
  for (std::size_t i = 0; i < pane.cutBeats.size(); ++i) {
    dots.push_back({pane.cutBeats[i] - 0.01, dots.back().y});
    dots.push_back({pane.cutBeats[i], static_cast<double>(pane.cameras[i + 1])});
  }
  show.part(name, bar, bars, track,
            {draw(Viewport{.x = pane.x, .y = pane.y, .w = pane.size, .h = pane.size}),
             draw(World{.scene = "SceneAlien", .camera = line(dots)})},
            pane.start, 1.4);
}

void addSplit(Show& show) {
  const double start = barOf("split");
  show.add("behind the panes", start, 2, ground - 1, Fade{.red = 0.03, .green = 0.012, .blue = 0.035});
  show.add("light behind", start, 2, ground,
           Bitmap{.texture = "rays_violet",
                  .at = centred(0, 0, 3.4),
                  .alpha = flashes(everyBeat, 0.8, 0.2),
                  .blend = Blend::add});
  addPane(show, "pane 1", start, 1, ground + 1, {slide(-0.98, -0.92), -0.28, 1.25, {2}, {face, back}, 4});
  addPane(show, "pane 2", start, 1, ground + 2,
          {slide(-0.22, -0.3), -0.97, 1.25, {1, 3}, {wide, low, face}, 11});
  addPane(show, "north west", start + 1, 1, ground + 1, {-1.0, 0.0, 1, {2}, {wide, crane}, 9});
  addPane(show, "north east", start + 1, 1, ground + 2, {0.0, 0.0, 1, {1, 3}, {face, flank, low}, 12});
  addPane(show, "south west", start + 1, 1, ground + 3, {-1.0, -1.0, 1, {3}, {low, face}, 5});
  addPane(show, "south east", start + 1, 1, ground + 4, {0.0, -1.0, 1, {1, 2}, {back, face, crane}, 7});
  // One a bar: when a late start catches up part by part, the last of each bar must be the whole screen.
  for (const double bar : {start, start + 1}) show.add("whole screen", bar, 1, ground + 5, Viewport{});
  addStreak(show, "seams", start, 2, -0.2, flashes({0, 1, 2, 3, 4, 5, 5.5, 6, 6.5, 7}, 1, 0.3));
}

// Around its side to its face, as it lifts a claw.
void addOrbit(Show& show) {
  const double start = barOf("counter voice"), stab = barOf("stab 2"), next = barOf("alien cut 6");
  addShot(show, "around", start, stab - start, beckoned, 5, 3.4);
  addShot(show, "struck again", stab, next - stab, face, 15, 0.7);
  addBreath(show, "breath behind", start, next - start, flashes(everyBeat, 0.1, 0.03));
  addStreak(show, "lens", start, next - start, -0.4, flashes({0, 1, 2, 3, 4, 5, 6.5, 7}, 0.6, 0.05));
}

// Along its flank, a mirror sphere close by; then up from the floor.
void addFlank(Show& show) {
  const double start = barOf("alien cut 6");
  addShot(show, "flank", start, 1, flank, 6, 2);
  addShot(show, "rising", start + 1, 1, crane, 1, 2.6);
  addBreath(show, "breath aside", start, 2, flashes(everyBeat, 0.12, 0.04));
  show.add("vexer", start + 1, 1, title, glitching(vex(er, 1.0, 0.1, -0.5), 0.35, 2, 1.1));
}

// The second break: nearly dark, then nothing but eyes; then the whole creature under all its lamps.
void addClimax(Show& show) {
  const double start = barOf("break 2"), hushed = barOf("break 2 hushed"), climax = barOf("climax");
  const double unison = barOf("unison");
  addShot(show, "gaze", start, climax - start, face, 10, 0.3);
  show.add("lights out", start, climax - start, backdrop,
           Fade{.alpha = line({{0, 0.15}, {1.9, 0.4}, {2, 0.72}, {2.5, 0.5}, {partEnd, 0.68}})});
  addStreak(show, "last lamp", start, hushed - start, -0.2, flashes({0, 1, 1.5}, 0.8, 0));
  addCubes(show, "cubes again", start, hushed - start, {0.07, 0.28},
           {.alpha = flashes({0, 0.5, 1, 1.5}, 0.5, 0.25), .field = zoom(105, 140, 2)}, 11, 2);
  addShot(show, "it comes", climax, unison - climax, wide, 12.5, 3);
  show.add("blaze behind", climax, unison - climax, backdrop,
           Bitmap{.texture = "rays_violet",
                  .at = centred(0, -0.1, zoom(2.6, 3.8, 4)),
                  .alpha = flashes({0, 1, 2, 3}, 0.5, 0.08),
                  .blend = Blend::add});
}

// Four strokes, four cameras; the title stands for a bar before it is torn.
void addUnison(Show& show) {
  const double strokes[] = {barOf("unison"), barOf("unison 2"), barOf("unison 3"), barOf("unison 4"),
                            interludeOneBar};
  const char* names[] = {"stroke one", "stroke two", "stroke three", "stroke four"};
  const Camera cameras[] = {flank, idol, crane, face};
  const double starts[] = {14, 4, 15, 5};
  for (int i = 0; i < 4; ++i)
    addShot(show, names[i], strokes[i], strokes[i + 1] - strokes[i], cameras[i], starts[i], 1.5);
  show.add("blows", strokes[0], 2, backdrop,
           Bitmap{.texture = "rays_violet",
                  .at = centred(0, 0, 3.6),
                  .alpha = flashes({0, 2, 4, 6}, 0.4, 0.02),
                  .blend = Blend::add});
  show.add("vexatious", strokes[0], 2, title,
           glitching(vex(atious, spline({{0, 1.3}, {0.5, 1.05}, {4, 1.08}, {partEnd, 1.2}}), 0, 0.5),
                     flashes({4, 6, 6.75, 7.25}, 0.8, 0), 2, swing(8, 1.01, 1.06)));
}

}  // namespace

void addAlien(Show& show) {
  addApproach(show);
  addFace(show);
  addBreak(show);
  addSplit(show);
  addOrbit(show);
  addFlank(show);
  addClimax(show);
  addUnison(show);
}

}  // namespace vex
