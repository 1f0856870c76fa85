#include "production/movements/words.h"

namespace vex {

using namespace screen;

// Sterile teal: somebody stands at the end of a funnel of light; a wall of lamps that sways.
void addInterludeOne(Show& show) {
  const double start = interludeOneBar, opens = barOf("pad opens"), riser = barOf("riser");
  show.add("teal sky", start, 2, ground, Bitmap{.texture = "sky_teal", .at = covering(slide(1.1, 1.35))});
  show.add("funnel", start, 2, backdrop, Rays{.alpha = fade(2, 0)});
  show.add("lamp", start, 4, far,
           Bitmap{.texture = "rays_teal",
                  .at = centred(slide(-0.12, 0.12), -0.1, slide(2.4, 3.4)),
                  .alpha = flashes({0, 4, 8, 12, 14, 15}, 0.95, 0.5),
                  .blend = Blend::add});
  show.add("somebody", start, 2, subject,
           Bitmap{.texture = "figure_teal",
                  .at = centred(travel(0.5, 0.42, 8), travel(0.26, 0.3, 8), zoom(1.45, 1.75, 8), 0.5),
                  .alpha = fade(2, 0)});
  show.add("teal haze", start, 4, haze,
           Bitmap{.texture = "haze_teal",
                  .at = centred(swing(13, -0.3, 0.3), 0.3, 2.2, 2),
                  .alpha = 0.8,
                  .blend = Blend::add});
  show.add("lamps", opens, 1, ground,
           Tiles{.texture = "glass_teal", .at = covering(slide(1.0, 1.2)), .across = 16.0 / 3, .down = 3});
  show.add("lamps sway", riser, 1, ground,
           Waves{.texture = "glass_teal",
                 .at = centred(0, 0, zoom(2.6, 5.2, 4), 1.78),
                 .speed = 4,
                 .amplitude = slide(0.01, 0.08)});
  // Faster, and struck by the riser.
  show.part("funnel again", opens, 2, smoke,
            {draw(Rays{.alpha = flashes({0, 2, 4, 5, 6, 6.5, 7, 7.5}, 1, 0.75),
                       .eyeAcross = 1.7,
                       .eyeUp = 1.3,
                       .targetAcross = -1.1,
                       .targetUp = 0.9})},
            cueSeconds(2));
  const double word = barOf("title");
  show.add("vexillum", word, riser - word, title,
           glitching(vex(illum, spline({{0, 1.3}, {0.5, 1.05}, {4, 1.08}, {partEnd, 1.2}}), 0, 0.42),
                     flashes({0, 4, 6}, 0.9, 0.02), 2, swing(8, 1.03, 1.1)));
  show.add(
      "vexillum rises", riser, 1, title,
      glitching(vex(illum, zoom(1.1, 1.7, 4)), flashes({0, 1, 2, 2.5, 3, 3.5}, 1, 0.2), 4, slide(1.0, 1.35)));
}

// Ember: a covered sun, liquid mirrors and flakes of fire; the last stroke and the title inside the sun.
void addInterludeTwo(Show& show) {
  const double start = interludeTwoBar, roll = barOf("roll"), doubles = barOf("roll doubles"),
               breath = barOf("last breath"), stroke = barOf("last stroke");
  show.add("ember sky", start, stroke + 1 - start, ground,
           Bitmap{.texture = "sky_ember", .at = covering(slide(1.05, 1.5))});
  show.add("heat", start, doubles - start, backdrop - 1,
           Waves{.texture = "smoke_ember",
                 .at = covering(1.3),
                 .speed = 1.6,
                 .amplitude = 0.05,
                 .alpha = 0.6,
                 .blend = Blend::add});
  // The moon slides before the sun; the last light of its rim is a diamond.
  constexpr double sunX = 0.38, sunY = -0.16, covered = 3;
  const Bitmap sun{.texture = "light6",
                   .at = centred(sunX, sunY, 2.2),
                   .alpha = line({{0, 1}, {covered, 0.8}, {covered + 0.3, 0}, {partEnd, 0}}),
                   .blend = Blend::add};
  show.add("sun", start, 1, backdrop, sun, sun, sun);
  show.add("streamers", start, 1, backdrop + 1,
           Bitmap{.texture = "corona_ember",
                  .at = centred(sunX, sunY, zoom(2.5, 2.75, 4)),
                  .alpha = line({{0, 0.25}, {covered - 0.5, 0.5}, {covered, 1}, {partEnd, 1}}),
                  .blend = Blend::add});
  show.add("moon", start, 1, backdrop + 3,
           Bitmap{.texture = "moon",
                  .at = centred(line({{0, sunX + 0.17}, {covered, sunX}, {partEnd, sunX}}),
                                line({{0, sunY - 0.34}, {covered, sunY}, {partEnd, sunY}}), 1.06)});
  const Curve spark = line({{0, 0}, {covered - 0.3, 0}, {covered, 1}, {covered + 0.5, 0.5}, {partEnd, 0.15}});
  for (const char* light : {"rays_ember", "light7"})
    show.add("diamond", start, 1, backdrop + 4,
             Bitmap{.texture = light,
                    .at = centred(sunX - 0.16, sunY + 0.42, 1.1),
                    .alpha = spark,
                    .blend = Blend::add});
  show.add("burning town", start, 1, far,
           Bitmap{.texture = "spires_ember", .at = {slide(-1.3, -1.4), slide(-0.05, -0.1), 2.8, 1.1}});
  show.add("watcher", start, 1, subject,
           Bitmap{.texture = "figure_ember",
                  .at = centred(slide(watcher.x, watcher.x + 0.04), slide(watcher.y, watcher.y - 0.04),
                                slide(watcher.height, watcher.height + 0.1), 0.5)});
  // Flakes of fire rise, then stream past, then burst.
  const double passed = cueSeconds(roll - start), passedTwice = cueSeconds(doubles - start);
  show.part(
      "flakes rise", start, roll - start, backdrop + 2,
      {draw(Flare{"flare_particle"}),
       draw(Particles{
           .alpha = fade(1, 0, 0.6), .count = 60, .spread = 6, .speedX = 5, .speedY = 11, .scatter = 24})});
  show.part("flakes stream", roll, doubles - roll, smoke + 1,
            {draw(Flare{"flare_shine"}),
             draw(Particles{.count = 110, .spread = 8, .speedY = 4, .speedZ = 26, .scatter = 26})},
            passed);
  show.part("flakes burst", doubles, breath - doubles, smoke + 1,
            {draw(Flare{"flare_normal"}),
             draw(Particles{.count = 90, .spread = slide(20, 50), .speedZ = 30, .scatter = 9})},
            passedTwice);
  show.add("sparks", start, breath - start, smoke,
           Noise{.texture = "sparks_ember", .speedX = 0.015, .speedY = 0.06, .alpha = fade(2, 1, 0.7)});
  show.add("one spark", breath, stroke - breath, smoke,
           Bitmap{.texture = "light6",
                  .at = centred(slide(0.02, 0.05), slide(0.05, -0.04), 0.14),
                  .blend = Blend::add});

  // Mirrors before the fire, shaken by the roll.
  show.add("blaze", roll, breath - roll, backdrop,
           Bitmap{.texture = "rays_ember",
                  .at = centred(0, 0, zoom(2.8, 4.2, 7.5)),
                  .alpha = flashes({0, 1, 2, 3, 4, 4.5, 5, 5.5, 6, 6.25, 6.5, 6.75, 7, 7.25}, 1, 0.5),
                  .blend = Blend::add});
  const Viewport raised{.y = -0.72};  // above the title
  show.part(
      "mirrors", roll, doubles - roll, subject,
      {draw(raised), draw(Mirrors{.speedX = 3, .speedY = 4.1, .speedZ = 2.3, .stillness = slide(0.6, 0.3)}),
       draw(Viewport{})},
      2);
  show.part("mirrors melt", doubles, breath - doubles, subject,
            {draw(raised),
             draw(Mirrors{.speedX = slide(4, 12),
                          .speedY = slide(5, 14),
                          .speedZ = slide(3, 10),
                          .stillness = slide(0.5, 0),
                          .wavesX = 0.8,
                          .wavesY = 1,
                          .wavesZ = 0.7}),
             draw(Viewport{})},
            2 + passed);
  const Logo word =
      glitching(vex(edly, slide(0.78, 0.84), 0, 0.56), flashes({0, 2, 3}, 0.9, 0.03), 3, swing(4, 1.0, 1.18));
  show.add("vexedly", roll, doubles - roll, title, shadeBehind(word), word);
  // One window far behind, in the dark.
  show.add("ember glass", doubles, breath - doubles, ground + 1, roseWall("glass_ember", zoom(1.5, 2.2, 3.5)),
           Fade{.alpha = 0.78});
  const Logo louder = glitching(vex(edly, slide(0.86, 0.98), 0, 0.54), flashes({0, 1, 2, 2.5, 3}, 1, 0.1), 5,
                                swing(4, 1.0, 1.3));
  show.add("vexedly, louder", doubles, breath - doubles, title, shadeBehind(louder), louder);
  show.add("last breath", breath, stroke - breath, ground + 2, Fade{});

  const Curve discHeight = zoom(1.9, 1.66, 4);
  for (const double rest : {0.75, 0.0})  // twice as bright on the strokes
    show.add("last streamers", stroke, 1, backdrop,
             Bitmap{.texture = "corona_bone",
                    .at = centred(0, 0, discHeight * 2.5),
                    .alpha = flashes({0, 2}, 1, rest),
                    .blend = Blend::add});
  show.add("last moon", stroke, 1, backdrop + 1, Bitmap{.texture = "moon", .at = centred(0, 0, discHeight)});
  show.add(
      "vexed at last", stroke, 1, title,
      glitching(vex(ed, slide(0.88, 0.8)), flashes({0, 2}, 0.8, 0.01), 5, line({{0, 1.2}, {partEnd, 1.5}})));
}

}  // namespace vex
