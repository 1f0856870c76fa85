#include <algorithm>
#include <array>
#include <cmath>

#include "production/movements/words.h"

namespace vex {

using namespace song;
using namespace show;

using namespace screen;

namespace {

constexpr double roseY = -0.1;

// The rose's splinters fly at us, the nearer the faster, each before its own trail.
void addBurstingRose(Show& show, double bar, double bars) {
  const struct {
    const char* texture;
    double x, y, size;  // where to, and how large in the end
  } flights[] = {{"splinters1_teal", -0.10, 0.06, 5.2}, {"splinters2_teal", 0.06, -0.05, 3.0}};
  const double beats = bars * beatsPerBar;
  std::vector<ScriptCall> calls;
  for (const auto& it : flights)
    for (const double late : {0.16, 0.08, 0.0}) {
      const double reached = 1.75 * std::pow(it.size / 1.75, 1 - late);
      calls.push_back(
          draw(glow(it.texture, centred(slide(0, it.x), slide(roseY, roseY + it.y), slide(1.75, reached)),
                    line({{0, 1}, {0.45 * beats, late > 0 ? 0.35 : 1}, {beats, 0}}))));
    }
  show.part("rose bursts", bar, bars, ground + 1, calls);
}

// --- One

void addLamp(Show& show) {
  constexpr double start = interludeOneBar;
  show.add("teal sky", start, 2, ground, Bitmap{.texture = "sky_teal", .at = covering(slide(1.1, 1.35))});
  show.add("funnel", start, 2, backdrop, Rays{.alpha = fade(2, 0, 0.3)});
  show.add("before the light", start, 0.5, backdrop + 1, Fade{.alpha = line({{0, 0.9}, {2, 0}})});
  show.add("lamp", start, 2, far,
           glow("rays_teal", centred(slide(0, 0.03), -0.03, slide(2.4, 3.0)), flashes({0, 4}, 1, 0.45)),
           glow("light3", centred(slide(0, 0.03), -0.03, slide(2.2, 2.8)), fade(3, 0, 0.18)));
  show.add("light behind somebody", start, 2, haze,
           glow("light3", centred(travel(0.56, 0.5, 8), 0.06, 2.3), slide(0.26, 0.4)));
  show.add("somebody", start, 2, subject,
           Bitmap{.texture = "figure_teal",
                  .at = centred(travel(0.60, 0.56, 8), travel(0.26, 0.3, 8), zoom(1.45, 1.75, 8), 0.5)});
  show.add("teal haze", start, 2, haze, glow("haze_teal", centred(swing(13, -0.3, 0.3), 0.3, 2.2, 2), 0.5));
}

void addRose(Show& show) {
  const double opens = barOf("pad opens"), riser = barOf("riser");
  show.add("black behind the rose", opens, 2, ground, Fade{});
  // Blind windows to both sides, which it lights up.
  for (const double x : {-0.74, 0.74})
    show.add("windows beside the rose", opens, 1.75, ground + 1,
             glow("glass_teal", centred(x * 0.96, -0.14, zoom(0.96, 1.2, 7), 0.42),
                  line({{0, 0}, {2, 0.05}, {2.03, 0.2}, {3, 0.14}, {3.03, 0.4}, {4, 0.3}, {partEnd, 0.5}})));
  // Dark with a hole that leaps wider on each beat: hub, inner ring, petals, all of it.
  show.add("rose", opens, 1, ground + 1,
           glow("glass_teal", centred(0, roseY, slide(1.30, 1.42)), flashes({0, 1, 2, 3}, 1, 0.75)),
           Bitmap{.texture = "pinhole",
                  .at = centred(0, roseY,
                                spline({{0, 1.7},
                                        {0.3, 2.6},
                                        {0.97, 2.9},
                                        {1.3, 4.4},
                                        {1.97, 4.8},
                                        {2.3, 7},
                                        {2.97, 7.6},
                                        {4, 8}})),
                  .alpha = line({{0, 1}, {3, 1}, {3.4, 0}, {partEnd, 0}}),
                  .blend = Blend::darken});
  show.add("whole rose", riser, 0.75, ground + 1,
           glow("glass_teal", centred(0, roseY, slide(1.44, 1.72)), flashes({0, 1, 2, 2.5}, 1, 0.7)));
}

void addBurst(Show& show, double bar, double bars) {
  addBurstingRose(show, bar, bars);
  show.add("burst", bar, bars, far,
           glow("rays_teal", centred(0, roseY, spline({{0, 2}, {0.75, 5}})),
                spline({{0, 1}, {0.2, 0.7}, {0.75, 0}})),
           Fade{0.8, 1, 0.97, line({{0, 0.8}, {0.06, 0.8}, {0.2, 0}})});
  show.part("splinters", bar, bars, smoke,
            {draw(Flare{"flare_highpass"}),
             draw(Particles{.count = 240, .spread = 34, .speedZ = 40, .scatter = 8})});
}

void addRoseLight(Show& show, double opens) {
  const Curve rising = line({{0, 0.1},
                             {0.02, 0.5},
                             {0.99, 0.3},
                             {1.02, 0.6},
                             {1.99, 0.4},
                             {2.02, 0.65},
                             {2.99, 0.6},
                             {3.02, 0.9},
                             {4, 0.7},
                             {7, 1}});
  // It mirrors in a wet floor and lights the air.
  show.add(
      "rose in the floor", opens, 1.75, ground + 2,
      glow("glass_teal",
           {zoom(0.39, 0.54, 7) * -1, travel(1.05, 1.12, 7), zoom(0.78, 1.08, 7), zoom(0.52, 0.56, 7) * -1},
           rising * 0.9));
  show.add(
      "its light in the air", opens, 1.75, backdrop,
      glow("light3", centred(0, roseY, zoom(2.6, 3.2, 7)), rising * 0.6),
      glow("rays_teal", centred(0, roseY, zoom(2.4, 3.6, 7)), rising * 0.75),
      glow("light7", centred(0, roseY, zoom(0.62, 1.1, 7)), flashes({0, 1, 2, 3, 4, 5, 6, 6.5}, 1, 0.6)));
  show.add("somebody small", opens, 1.75, subject,
           Bitmap{.texture = "figure_teal",
                  .at = centred(travel(0.22, 0.3, 7), travel(0.36, 0.38, 7), zoom(0.84, 1.04, 7), 0.5)});
  // From the middle of the rose, shaken by the riser.
  show.part("funnel again", opens, 1.75, backdrop + 1,
            {draw(Rays{.alpha = flashes({0, 1, 2, 3, 4, 5, 6, 6.5}, 0.5, 0.2),
                       .eyeAcross = 1.7,
                       .eyeUp = 1.3,
                       .targetAcross = -1.1,
                       .targetUp = 0.9})},
            cueSeconds(2));
}

void addVexillum(Show& show, double riser) {
  const double word = barOf("title");
  show.add("dark behind the word", word, 1, title - 1, shadow(centred(-0.54, 0.54, 0.62, 3)));
  show.add("vexillum", word, 1, title,
           vex(illum, spline({{0, 0.64}, {0.4, 0.58}, {partEnd, 0.62}}), -0.5, 0.52));
  // With the word the light behind breaks through the clouds.
  for (const char* light : {"rays_teal", "light7"})
    show.add("breaks through", word, 1, far,
             glow(light, centred(0.015, -0.03, spline({{0, 3.4}, {0.4, 2.4}, {partEnd, 2.8}})),
                  flashes({0, 1, 2, 3}, light == std::string_view("light7") ? 0.7 : 1, 0.35)));
  // In the black beside the window.
  show.add("vexillum rises", riser, 0.75, title, vex(illum, zoom(0.46, 0.5, 3), -0.6, 0.6));
}

// --- Two

// The moon slides before the sun; the last light of its rim is a diamond.
void addEclipse(Show& show, double start) {
  constexpr double sunX = 0.38, sunY = -0.16, covered = 3;
  const Bitmap sun = glow("light6", centred(sunX, sunY, 2.2),
                          line({{0, 1}, {covered, 0.8}, {covered + 0.3, 0}, {partEnd, 0}}));
  show.add("sun", start, 1, backdrop, sun, sun, sun);
  show.add("streamers", start, 1, backdrop + 1,
           glow("corona_ember", centred(sunX, sunY, zoom(2.5, 2.75, 4)),
                line({{0, 0.25}, {covered - 0.5, 0.5}, {covered, 1}, {partEnd, 1}})));
  show.add("moon", start, 1, backdrop + 3,
           Bitmap{.texture = "moon",
                  .at = centred(line({{0, sunX + 0.17}, {covered, sunX}, {partEnd, sunX}}),
                                line({{0, sunY - 0.34}, {covered, sunY}, {partEnd, sunY}}), 1.06)});
  const Curve spark = line({{0, 0}, {covered - 0.3, 0}, {covered, 1}, {covered + 0.5, 0.5}, {partEnd, 0.15}});
  for (const char* light : {"rays_ember", "light7"})
    show.add("diamond", start, 1, backdrop + 4, glow(light, centred(sunX - 0.16, sunY + 0.42, 1.1), spark));
}

// Flakes of fire rise, then stream past, then burst.
void addFlakes(Show& show, double start, double roll, double doubles, double breath) {
  show.part(
      "flakes rise", start, roll - start, backdrop + 2,
      {draw(Flare{"flare_particle"}),
       draw(Particles{
           .alpha = fade(1, 0, 0.6), .count = 60, .spread = 6, .speedX = 5, .speedY = 11, .scatter = 24})});
  show.part("flakes stream", roll, doubles - roll, smoke + 1,
            {draw(Flare{"flare_particle"}),
             draw(Particles{.count = 110, .spread = 8, .speedY = 4, .speedZ = 26, .scatter = 26})},
            cueSeconds(roll - start));
  show.part(
      "flakes burst", doubles, breath - doubles, smoke + 1,
      {draw(Flare{"flare_particle"}),
       draw(Particles{.alpha = 0.7, .count = 50, .spread = slide(16, 36), .speedZ = 12, .scatter = 20})},
      cueSeconds(doubles - start));
}

// Middles of the mask: above the title, then beside it.
constexpr double maskY = -0.17, besideX = 0.40, besideY = -0.10;

// A mask before the fire, which burns in its eyes and its mouth, shaken by the roll.
void addMask(Show& show, double roll, double doubles, double breath) {
  // A step nearer with each beat.
  const Curve size = line(
      {{0, 1.5}, {0.98, 1.46}, {1, 1.62}, {1.98, 1.58}, {2, 1.74}, {2.98, 1.7}, {3, 1.86}, {partEnd, 1.94}});
  const Viewport raised{.x = size * -0.5, .y = size * -0.5 + -maskY, .w = size, .h = size};
  const Curve wide = line({{0, 1.9},
                           {0.98, 1.84},
                           {1, 2.1},
                           {1.98, 2.04},
                           {2, 2.3},
                           {2.48, 2.26},
                           {2.5, 2.45},
                           {2.98, 2.42},
                           {3, 2.6},
                           {partEnd, 2.8}});
  const Viewport close{.x = wide * -0.5 + besideX, .y = wide * -0.5 + -besideY, .w = wide, .h = wide};
  show.add("blaze", roll, doubles - roll, backdrop,
           glow("rays_ember", centred(0, maskY, zoom(2.8, 3.6, 4)), flashes({0, 1, 2, 3}, 0.9, 0.35)),
           glow("light6", centred(0, maskY, 1.5), flashes({0, 1, 2, 3}, 0.8, 0.5)));
  show.add("blaze beside", doubles, breath - doubles, backdrop,
           glow("rays_ember", centred(besideX, besideY, zoom(3.2, 4.2, 3.5)),
                flashes({0, 0.5, 1, 1.5, 2, 2.25, 2.5, 2.75, 3, 3.25}, 0.9, 0.4)));
  // The camera passes before the face, from below.
  show.part(
      "mask", roll, doubles - roll, subject,
      {draw(raised), draw(Mirrors{.speedX = 3, .speedY = 4.1, .speedZ = 2.3, .stillness = slide(0.88, 0.76)}),
       draw(Viewport{})},
      9);
  show.part("mask melts", doubles, breath - doubles, subject,
            {draw(close),
             draw(Mirrors{.speedX = slide(4, 12),
                          .speedY = slide(5, 14),
                          .speedZ = slide(3, 10),
                          .stillness = slide(0.8, 0.6)}),
             draw(Viewport{})},
            9.3);
}

// The word burns up with the fire on beats; what is torn of it glows.
void addBurningWord(Show& show, const char* name, double bar, double bars, const Word& word,
                    const std::vector<double>& beats) {
  show.add(name, bar, bars, title, word);
  const Curve left = word.size * (word.ending.leftBy - 1) + word.x, top = word.size * -0.25 + word.y,
              height = word.size * 0.5;
  const double whole = bars - 1 / double(beatsPerBar);
  for (const auto& [texture, at] :
       {std::pair{word.ending.vex, Place{left, top, word.size * 0.67, height}},
        std::pair{word.ending.texture, Place{left + word.size * 0.5, top, word.size * 1.5, height}}})
    show.add("it burns", bar, whole, title + 1, glow(texture, at, flashes(beats, 1, 0.35)));
  // White without its blue.
  show.add("it glows", bar + whole, bars - whole, title + 1,
           Bitmap{.texture = "light1",
                  .at = centred(word.x, word.y + 0.3, 1.8, 4),
                  .alpha = 0.8,
                  .blend = Blend::darken},
           Bitmap{.texture = "light3",
                  .at = centred(word.x, word.y + 0.36, 1.8, 4),
                  .alpha = 0.5,
                  .blend = Blend::darken});
}

void addVexedly(Show& show, double roll, double doubles, double breath) {
  show.add("dark under the title", roll, breath - roll, title - 1, shadow(centred(0, 0.6, 0.8, 3.6)),
           shadow(centred(0, 0.6, 0.8, 3.6)), shadow(centred(0, 0.6, 0.7, 3.4)));
  addBurningWord(show, "vexedly", roll, doubles - roll, vex(edly, slide(0.7, 0.76), 0, 0.55), {0, 1, 2});
  // The fire goes down; what is left burns behind the mask.
  show.add("embers", doubles, breath - doubles, ground + 1, Fade{0.16, 0.02, 0, slide(0.2, 0.35)},
           Tiles{.texture = "sparks_ember",
                 .at = covering(zoom(1, 1.6, 3.5)),
                 .across = 4.4,
                 .down = 2.5,
                 .alpha = 0.5,
                 .blend = Blend::add},
           glow("rays_ember", centred(besideX, besideY, zoom(2.6, 4.2, 3.5)), 1),
           glow("light6", centred(besideX, besideY, zoom(1.8, 2.9, 3.5)), slide(1, 0.8)),
           glow("light7", centred(besideX, besideY, zoom(0.9, 1.5, 3.5)), slide(0.8, 0.6)));
  addBurningWord(show, "vexedly, louder", doubles, breath - doubles,
                 vex(edly, slide(0.66, 0.74), -0.52, 0.55), {0, 0.5, 1, 1.5, 2, 2.25});
}

// The disc is small and far, and nothing is said.
void addLastStroke(Show& show, double stroke) {
  const Curve discHeight = line({{0, 1.44}, {1.99, 1.36}, {2, 0.62}, {partEnd, 0.54}});
  for (const double rest : {0.75, 0.0})  // twice as bright on the strokes
    show.add("last streamers", stroke, 1, backdrop,
             glow("corona_bone", centred(0, 0, discHeight * 2.5), flashes({0, 2}, 1, rest)));
  show.add("last moon", stroke, 1, backdrop + 1, Bitmap{.texture = "moon", .at = centred(0, 0, discHeight)});
  show.add("the sky goes out", stroke + 0.5, 0.5, ground + 1, Fade{.alpha = slide(0.75, 0.9)});
  show.add("vexed at last", stroke, 0.5, title, vex(ed, slide(0.66, 0.6)));
}

}  // namespace

// Sterile teal: somebody stands before a light; then before one rose window, which opens ring by ring and
// bursts.
void addInterludeOne(Show& show) {
  const double riser = barOf("riser");
  addLamp(show);
  addRose(show);
  addBurst(show, riser + 0.75, 0.1875);
  addRoseLight(show, barOf("pad opens"));
  addVexillum(show, riser);
  show.add("held breath", riser + 0.9375, 0.0625, curtain, Fade{});
}

// Ember: a covered sun, a mask of liquid metal and flakes of fire; the last stroke and the title inside the
// sun.
void addInterludeTwo(Show& show) {
  const double start = interludeTwoBar, roll = barOf("roll"), doubles = barOf("roll doubles"),
               breath = barOf("last breath"), stroke = barOf("last stroke");
  // Beside the second title it burns behind the mask.
  show.add("ember sky", start, doubles - start, ground,
           Bitmap{.texture = "sky_ember", .at = covering(slide(1.05, 1.25))});
  show.add("ember sky beside", doubles, breath - doubles, ground,
           Bitmap{.texture = "sky_ember", .at = covering(slide(1.62, 1.8), besideX + 0.05, -0.12)});
  show.add("ember sky goes out", stroke, 1, ground,
           Bitmap{.texture = "sky_ember", .at = covering(slide(1.38, 1.5))});
  show.add("heat", start, doubles - start, backdrop - 1,
           Waves{.texture = "smoke_ember",
                 .at = covering(1.3),
                 .speed = 1.6,
                 .amplitude = 0.05,
                 .alpha = 0.6,
                 .blend = Blend::add});
  addEclipse(show, start);
  show.add("burning town", start, 1, far,
           Bitmap{.texture = "spires_ember", .at = {slide(-1.3, -1.4), slide(-0.05, -0.1), 2.8, 1.1}});
  show.add("watcher", start, 1, subject,
           Bitmap{.texture = "figure_ember",
                  .at = centred(slide(watcher.x, watcher.x + 0.04), slide(watcher.y, watcher.y - 0.04),
                                slide(watcher.height, watcher.height + 0.1), 0.5)});
  addFlakes(show, start, roll, doubles, breath);
  show.add("sparks", start, breath - start, backdrop + 2,
           Noise{.texture = "sparks_ember", .speedX = 0.015, .speedY = 0.06, .alpha = fade(2, 1, 0.7)});
  show.add("one spark", breath, stroke - breath, smoke,
           glow("light6", centred(slide(0.02, 0.05), slide(0.05, -0.04), 0.14)));
  addMask(show, roll, doubles, breath);
  addVexedly(show, roll, doubles, breath);
  show.add("last breath", breath, stroke - breath, ground + 2, Fade{});
  addLastStroke(show, stroke);
}

}  // namespace vex
