#include "production/movements/words.h"

namespace vex {

using namespace song;
using namespace show;

using namespace screen;

namespace {

// Beats of the heart in a movement that the picture feels: a stroke and the weaker one that follows.
const std::vector<double> heart{2, 2.75, 4, 4.75, 8, 8.75, 12, 12.75};
const std::vector<double> lightningAndHeart{0, 0.18, 2, 2.75, 4, 4.75, 8, 8.75, 12, 12.75};
const std::vector<double> oneStroke{0, 0.75};  // in the half bar of a view

// The town at night, as one of the four notes shows it: how near the sky is and where, how wide a town is and
// where two of them meet, the same of the far town, how high the brambles stand, and where the word does.
struct View {
  const char* cue;
  double sky, skyX, skyY;
  double town, seam, foot;
  double farTown, farSeam;
  double brambles, brambleX, brambleTop;
  double wordX, wordY;
  double walkerX = 0;  // of somebody who goes along the roofs, if it is not 0
};
constexpr View views[] = {
    {"far motif", 1.8, 0.16, 0.3, 1.8, 0.1, 0.84, 1.3, 0.7, 0, 0, 0, 0, -0.47},
    {"far motif 2", 2.0, 0.42, 0.28, 3.0, -0.28, 0.86, 1.5, 0.2, 0, 0, 0, -0.31, -0.47},
    {"far motif 3", 2.6, -0.5, 0.4, 2.1, 0.55, 0.8, 1.2, -0.1, 3.4, -0.3, 0.02, 0.3, -0.44, -0.66},
    {"far motif 4", 3.6, 0.14, 0.4, 5.15, -1.78, 1.1, 2.2, 0.3, 4.6, 0.5, 0.2, 0.39, -0.55}};

Bitmap townAt(const Curve& width, double seam, double foot, double left) {
  return {.texture = "spires_bone", .at = {width * left + seam, width * -0.43 + foot, width, width * 0.43}};
}

Bitmap lit(Bitmap town, const Curve& alpha) {
  town.alpha = alpha, town.blend = Blend::add;
  return town;
}

// Nearer with each note; on it the cloud flares, and the heart runs as light over stone, mist and word.
void addView(Show& show, const View& view) {
  const double start = barOf(view.cue), bars = 0.5;
  const Place sky = covering(slide(view.sky, view.sky * 1.1), view.skyX, view.skyY);
  show.add("night", start, bars, backdrop, Bitmap{.texture = "sky_bone", .at = sky},
           glow("sky_bone", sky,
                line({{0, 1}, {0.15, 0.5}, {0.25, 0.9}, {0.7, 0.45}, {0.75, 0.9}, {partEnd, 0.3}})));
  show.add("night about it", start, bars, front + 1,
           Bitmap{.texture = "vignette", .at = covering(1), .alpha = 0.75, .blend = Blend::darken});
  // A far town, mist before it, and the near one, each faster than the one behind it.
  const Curve farWidth = slide(view.farTown, view.farTown * 1.06), width = slide(view.town, view.town * 1.25);
  const double farFoot = view.foot - 0.12;
  show.add("far town", start, bars, far - 2, townAt(farWidth, view.farSeam, farFoot, -1),
           townAt(farWidth, view.farSeam, farFoot, 0));
  show.add(
      "light behind the roofs", start, bars, far - 1,
      glow("haze_bone", centred(slide(view.skyX - 0.2, view.skyX + 0.2), view.foot - 0.2, 1.1, 3),
           line({{0, 0.9}, {0.3, 0.6}, {0.74, 0.5}, {0.75, 0.8}, {partEnd, 0.45}})),
      glow("haze_bone", centred(slide(view.skyX + 0.7, view.skyX - 0.5), view.foot - 0.08, 0.6, 4), 0.5));
  const Bitmap leftTown = townAt(width, view.seam, view.foot, -1),
               rightTown = townAt(width, view.seam, view.foot, 0);
  const Curve rim = flashes(oneStroke, 1);
  show.add("town", start, bars, far, leftTown, rightTown, lit(leftTown, rim), lit(rightTown, rim));
  // Black before the burning cloud, gone with the next note.
  if (view.walkerX != 0)
    show.add("somebody", start, bars, far + 1,
             Bitmap{.texture = "figure_ember",
                    .at = centred(slide(view.walkerX - 0.1, view.walkerX + 0.08), swing(0.5, 0.2, 0.215), 0.9,
                                  0.5)});
  if (view.brambles > 0)
    show.add(
        "brambles", start, bars, front,
        Bitmap{.texture = "thorn_bone",
               .at = {slide(view.brambleX - view.brambles * 0.5, view.brambleX - view.brambles * 0.56),
                      slide(view.brambleTop + 0.08, view.brambleTop), view.brambles, view.brambles * 0.35}});
  show.add("streak", start, bars, title - 1,
           glow("streak_bone", {slide(view.skyX - 1.7, view.skyX - 1.3), view.skyY + 0.06, 3, 0.3},
                flashes({0}, 0.9)));
  show.add("dark behind presents", start, bars, title - 2,
           shadow(centred(view.wordX, view.wordY, 1.0, 4), 0.45));
  const Bitmap word{.texture = "presents1",
                    .at = centred(view.wordX, view.wordY, slide(0.58, 0.62), 4),
                    .frames = 2,
                    .glitch = line({{0, 0.9}, {0.3, 0.03}, {1.5, 0.03}, {partEnd, view.town > 5 ? 1 : 0.03}}),
                    .blend = Blend::add};
  Bitmap stroke = word;
  stroke.frames = 0, stroke.glitch = 0, stroke.alpha = flashes(oneStroke, 1);
  show.add("presents", start, bars, title, word, stroke);
}

void addNight(Show& show, double motif) {
  const Curve spires = spline({{0, 2.2}, {2, 2.34}, {8, 2.62}, {partEnd, 3.1}}),
              brambles = spline({{0, 2.3}, {partEnd, 2.8}});
  const Place sky = covering(spline({{0, 1.02}, {partEnd, 1.25}}));
  show.add("night", 0, motif, backdrop,
           Bitmap{.texture = "sky_bone", .at = sky, .alpha = line({{0, 0.55}, {8, 1}, {partEnd, 1}})});
  // The sky answers each beat of the heart.
  show.add("beating sky", 0, motif, backdrop + 1, glow("sky_bone", sky, flashes(lightningAndHeart, 1)));
  show.add("far lightning", 1, 1, far - 1,
           glow("haze_bone", centred(-0.3, 0.25, 1.7, 2.4),
                line({{0, 0.9}, {0.2, 0.35}, {0.35, 0.7}, {1.6, 0}, {partEnd, 0}})));
  const Bitmap town{.texture = "spires_bone",
                    .at = {spires * -0.5, spires * -0.43 + 1, spires, spires * 0.43}};
  // It is there before anything else: a light that dies behind the first letters, and the towers before it.
  show.add("first lightning", 0, 0.5, far - 1,
           glow("haze_bone", centred(slide(-0.5, -0.1), 0.05, 2.1, 1.9),
                line({{0, 0.9}, {0.1, 0.5}, {0.18, 0.9}, {1.5, 0.15}, {partEnd, 0}})));
  show.add("far town", 0, motif, far, town, lit(town, flashes(lightningAndHeart, 0.9)));
  show.add("heartbeats", 0, motif, haze,
           glow("haze_bone", centred(swing(19, -0.15, 0.15), swing(13, -0.05, 0.12), 2.6, 1.7),
                flashes(heart, 0.7, 0.12)),
           // Mist drifts between the roofs.
           glow("haze_bone", centred(slide(-0.9, 0.7), 0.52, 0.55, 4), 0.4),
           glow("haze_bone", centred(slide(0.9, -0.4), 0.62, 0.5, 3), 0.35));
  show.add("thorns", 0, motif, front,
           Bitmap{.texture = "thorn_bone",
                  // They grow from below the picture.
                  .at = {brambles * -0.5, spline({{0, 1}, {4, 0.95}, {11, 0.42}, {partEnd, 0.36}}), brambles,
                         brambles * 0.35}});
}

// Out of the dark they rush together, and from the first beat of the heart on slowly; for three beats from
// the first bell they are the name. Where they fly on, the camera has turned its back on the letters.
void addFilaments(Show& show, double motif) {
  const auto filaments = [&](const char* name, double fromBar, double bars, double start, double speed,
                             const Curve& alpha) {
    show.part(name, fromBar, bars, smoke,
              {screen::draw(Filaments{.alpha = alpha, .across = 0.12, .up = 0.04, .depth = 0.09})}, start,
              speed);
  };
  const double rush = 0.5, meet = cueSeconds(2) - cueSeconds(rush), hurry = 2.8;
  filaments("filaments rush", 0, rush, -meet - hurry * cueSeconds(rush), hurry,
            line({{0, 0.9}, {partEnd, 0.8}}));
  filaments("filaments meet", rush, 2 - rush, -meet, 1, line({{0, 0.8}, {4, 0.95}, {partEnd, 1}}));
  // Once more where the heart beats.
  filaments("heart in the filaments", rush, 2 - rush, -meet, 1, flashes({0, 0.75, 2, 2.75}, 1));
  filaments("filaments are the name", 2, 0.75, 0, 0, line({{0, 1}, {1, 1}, {2.2, 0}, {partEnd, 0}}));
  filaments("filaments fly on", 2.75, motif - 2.75, 34, 1, line({{0, 0}, {1, 0.5}, {partEnd, 0.5}}));
  filaments("heart in what flies on", 3, motif - 3, 34 + cueSeconds(0.25), 1, flashes({0, 0.75}, 1));
}

// Dark lies behind the name, which rises clear of the spires and swells with the heart.
void addName(Show& show) {
  const Curve nameHeight = spline({{0, -0.05}, {1, -0.05}, {5, -0.27}, {partEnd, -0.3}});
  show.add("dark behind the name", 2.25, 1.75, title - 2,
           shadow(centred(0, nameHeight, 0.62, 6), fade(1.5, 0)));
  const Curve size = spline({{0, 0.67}, {1, 0.68}, {5, 0.71}, {partEnd, 0.8}});
  const Bitmap name{
      .texture = "halvane1",
      .at = centred(0, nameHeight, size, 4),
      .frames = 3,
      .glitch =
          line({{0, 0.03}, {2.98, 0.03}, {3, 0.9}, {3.3, 0.03}, {-0.7, 0.03}, {-0.3, 0.9}, {partEnd, 1}}),
      .alpha = line({{0, 0}, {0.9, 1}, {partEnd, 1}}),
      .blend = Blend::add};
  Bitmap stroke = name;
  stroke.frames = 0, stroke.glitch = 0, stroke.alpha = flashes({3, 3.75}, 1);
  show.add("halvane", 2.25, 1.75, title, name, stroke);
}

void addEye(Show& show) {
  show.add(
      "lid trembles", 6, 1, subject,
      Movie{.base = "eye",
            .at = covering(slide(1.0, 1.06)),
            .first = 1,
            .last = 6,
            .fps = 3.2,
            .alpha = line(
                {{0, 0}, {0.4, 0.8}, {0.6, 0.3}, {1, 1}, {1.9, 0.9}, {2, 0.45}, {2.2, 1}, {partEnd, 1}})});
  show.add(
      "eye opens", 7, 0.875, subject,
      Movie{
          .base = "eye", .at = covering(zoom(1.06, 1.3, 3.5), 0, 0.02), .first = 6, .last = 13, .fps = 4.85});
}

}  // namespace

// Black, grain, filaments, two names in haze, and the eye.
void addPrologue(Show& show) {
  const double motif = barOf("far motif");
  show.add("black", 0, 8, ground, Fade{});
  addNight(show, motif);
  addFilaments(show, motif);
  addName(show);
  for (const View& view : views) addView(show, view);
  addEye(show);
}

}  // namespace vex
