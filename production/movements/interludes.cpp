#include "production/movements/words.h"

namespace vex {

using namespace screen;

// Sterile teal: shafts of light, a wall of lamps that sways, one mirror ball.
void addInterludeOne(Show& show) {
  const double start = interludeOneBar, opens = barOf("pad opens"), riser = barOf("riser");
  show.add("teal sky", start, 2, ground, Bitmap{.texture = "sky_teal", .at = covering(slide(1.1, 1.35))});
  show.add("cone", start, 2, backdrop,
           Waves{.texture = "ray_cone",
                 .at = covering(1.2, 0, slide(-0.1, 0.1)),
                 .speed = 0.9,
                 .amplitude = 0.05,
                 .alpha = fade(4, 0, 0.5),
                 .blend = Blend::add});
  show.add("lamp", start, 4, far,
           Bitmap{.texture = "rays_teal",
                  .at = centred(slide(-0.12, 0.12), -0.1, slide(2.4, 3.4)),
                  .alpha = flashes({0, 4, 8, 12, 14, 15}, 0.95, 0.5),
                  .blend = Blend::add});
  show.add("ball in the light", start, 2, subject,
           Waves{.texture = "orb_teal",
                 .at = centred(slide(-0.1, 0.1), slide(-0.2, -0.3), slide(0.7, 0.9)),
                 .speed = 2,
                 .amplitude = 0.01});
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
  show.add("shafts", opens, 2, smoke,
           Waves{.texture = "ray_cone",
                 .at = covering(zoom(1.1, 2.2, 8)),
                 .speed = 2,
                 .amplitude = 0.06,
                 .alpha = flashes({0, 2, 4, 5, 6, 6.5, 7, 7.5}, 0.8, 0.2),
                 .blend = Blend::add});
  const double word = barOf("title");
  show.add("vexillum", word, riser - word, title,
           glitching(vex(illum, spline({{0, 1.3}, {0.5, 1.05}, {4, 1.08}, {partEnd, 1.2}}), 0, 0.42),
                     flashes({0, 4, 6}, 0.9, 0.02), 2, swing(8, 1.03, 1.1)));
  show.add(
      "vexillum rises", riser, 1, title,
      glitching(vex(illum, zoom(1.1, 1.7, 4)), flashes({0, 1, 2, 2.5, 3, 3.5}, 1, 0.2), 4, slide(1.0, 1.35)));
}

namespace {

// Burning flakes that rise on paths of their own, lengths that never line up.
void addFlakes(Show& show, double bar, double bars) {
  std::vector<ScriptCall> calls;
  for (int i = 0; i < 12; ++i) {
    const double own = static_cast<double>((i * 7) % 12) / 12;
    calls.push_back(draw(
        Bitmap{.texture = i % 4 == 0   ? "flare_shine"
                          : i % 4 == 2 ? "flare_normal"
                                       : "flare_particle",
               .at = centred(swing(5 + 3 * own, -1.0 + 1.5 * own, -0.4 + 1.5 * own, 360 * own),
                             swing(7 + 4 * own, -0.8, 0.9, 97 * i), i % 4 == 0 ? 0.5 : 0.16 + 0.16 * own),
               .alpha = swing(1 + own, 0.35, 1, 200 * own),
               .blend = Blend::add}));
  }
  show.part("flakes", bar, bars, smoke + 1, calls);
}

Waves mirror(const Place& at, double amplitude) {
  return {.texture = "orb_ember", .at = at, .speed = 4, .amplitude = amplitude};
}

}  // namespace

// Ember: a covered sun, wobbling mirrors and flakes of fire; the last stroke and the title inside the sun.
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
  show.add("streamers", start, 1, backdrop,
           Bitmap{.texture = "corona_ember",
                  .at = centred(0.38, -0.16, zoom(2.5, 2.75, 4)),
                  .alpha = swing(2, 0.8, 1),
                  .blend = Blend::add});
  show.add("moon", start, 1, backdrop + 1,
           Bitmap{.texture = "moon", .at = centred(0.38, -0.16, zoom(1.0, 1.1, 4))});
  show.add("burning town", start, 1, far,
           Bitmap{.texture = "spires_ember", .at = {slide(-1.3, -1.4), slide(-0.05, -0.1), 2.8, 1.1}});
  show.add("watcher", start, 1, subject,
           Bitmap{.texture = "figure_ember",
                  .at = centred(slide(-0.42, -0.38), slide(0.2, 0.16), slide(1.7, 1.8), 0.5)});
  addFlakes(show, start, breath - start);
  show.add("sparks", start, 3.75, smoke,
           Noise{.texture = "sparks_ember", .speedX = 0.015, .speedY = 0.06, .alpha = fade(2, 6, 0.8)});

  // Mirrors before the fire, shaken by the roll.
  show.add("blaze", roll, breath - roll, backdrop,
           Bitmap{.texture = "rays_ember",
                  .at = centred(0, 0, zoom(2.8, 4.2, 7.5)),
                  .alpha = flashes({0, 1, 2, 3, 4, 4.5, 5, 5.5, 6, 6.25, 6.5, 6.75, 7, 7.25}, 1, 0.5),
                  .blend = Blend::add});
  show.add("mirrors", roll, doubles - roll, subject,
           mirror(centred(swing(7, -0.75, -0.55), swing(3, -0.2, 0.05), 0.8), 0.03),
           mirror(centred(swing(5, 0.5, 0.75), swing(4, 0.0, 0.3), 0.95), 0.03),
           mirror(centred(swing(6, -0.05, 0.1), swing(5, -0.45, -0.3), 0.5), 0.03));
  show.add(
      "vexedly", roll, doubles - roll, title,
      glitching(vex(edly, slide(1.0, 1.12), 0, 0.12), flashes({0, 2, 3}, 0.9, 0.03), 3, swing(4, 1.0, 1.18)));
  show.add("ember glass", doubles, breath - doubles, ground + 1,
           roseWall("glass_ember", zoom(1.3, 2.4, 3.5)));
  tunnel(show, "gate_ember", doubles, breath - doubles, 0.5);
  show.add("vexedly, louder", doubles, breath - doubles, title,
           glitching(vex(edly, slide(1.2, 1.5)), flashes({0, 1, 2, 2.5, 3}, 1, 0.1), 5, swing(4, 1.0, 1.3)));
  show.add("last breath", breath, stroke - breath, ground + 2, Fade{});

  const Curve discHeight = zoom(2.15, 1.8, 4);
  show.add("last streamers", stroke, 1, backdrop,
           Bitmap{.texture = "corona_bone",
                  .at = centred(0, 0, discHeight * 2.5),
                  .alpha = flashes({0, 2}, 1, 0.75),
                  .blend = Blend::add});
  show.add("last moon", stroke, 1, backdrop + 1, Bitmap{.texture = "moon", .at = centred(0, 0, discHeight)});
  show.add(
      "vexed at last", stroke, 1, title,
      glitching(vex(ed, slide(1.0, 0.9)), flashes({0, 2}, 0.8, 0.01), 5, line({{0, 1.25}, {partEnd, 1.9}})));
}

}  // namespace vex
