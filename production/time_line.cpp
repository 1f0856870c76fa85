#include "production/time_line.h"

#include <algorithm>
#include <string>

#include "production/music.h"
#include "production/show.h"

// The cue sheet: bars and beats as in cues.h, layers from the ground up.

namespace vex {

namespace {

enum Track {
  ground = 0,
  backdrop = 10,
  far = 20,
  haze = 30,
  subject = 40,
  smoke = 50,
  front = 60,
  title = 70,
  flash = 80,
  grain = 100,
  vignette = 105,
  letterbox = 110,
  curtain = 120,
};

constexpr double barHeight = 0.243;  // leaves 2.35 : 1

// Bars 0 to 8: black, grain, two names in haze, and the eye.
void prologue(Show& show) {
  show.add("black", 0, 8, ground, Fade{});
  show.add(
      "night", 0, 6, backdrop,
      Bitmap{
          .texture = "sky_bone", .at = covering(line({{0, 1.02}, {partEnd, 1.3}})), .alpha = fade(10, 3, 1)});
  show.add("far town", 1, 5, far,
           Bitmap{.texture = "spires_bone",
                  .at = {line({{0, -1.15}, {partEnd, -1.45}}), line({{0, 0.02}, {partEnd, -0.12}}),
                         line({{0, 2.3}, {partEnd, 2.7}}), line({{0, 0.95}, {partEnd, 1.1}})},
                  .alpha = fade(8, 2)});
  show.add("heartbeats", 0, 6, haze,
           Bitmap{.texture = "haze_bone",
                  .at = centred(swing(19, -0.15, 0.15), swing(13, -0.05, 0.12), 2.6, 1.7),
                  .alpha = flashes({2, 2.6, 6, 6.6, 10, 10.6, 14, 14.6, 18, 18.6, 22, 22.6}, 0.75, 0.28),
                  .blend = Blend::add});
  show.add("threads", 3, 5, smoke,
           Waves{.texture = "threads_bone",
                 .at = covering(line({{0, 1.1}, {partEnd, 1.7}})),
                 .speed = 0.8,
                 .amplitude = swing(16, 0.02, 0.06),
                 .alpha = fade(10, 1, 0.5),
                 .blend = Blend::add});
  show.add("halvane", 2, 2.25, title,
           Bitmap{.texture = "halvane1",
                  .at = centred(0, -0.02, line({{0, 0.62}, {partEnd, 0.74}}), 4),
                  .frames = 4,
                  .glitch = flashes({0, 4, 5.5, 8}, 0.9, 0.03),
                  .alpha = fade(1.5, 1),
                  .blend = Blend::add},
           Bitmap{.texture = "halvane1",
                  .at = centred(0, -0.02, line({{0, 0.66}, {partEnd, 1.05}}), 4),
                  .alpha = fade(2, 2, 0.22),
                  .blend = Blend::add});
  show.add("presents", 4.25, 1.75, title,
           Bitmap{.texture = "presents1",
                  .at = centred(0, 0.0, line({{0, 0.5}, {partEnd, 0.58}}), 4),
                  .frames = 4,
                  .glitch = flashes({1, 3, 5}, 0.9, 0.03),
                  .alpha = fade(1, 1),
                  .blend = Blend::add});
  show.add("thorns", 0, 6, front,
           Bitmap{.texture = "thorn_bone",
                  .at = {line({{0, -1.1}, {partEnd, -1.5}}), line({{0, 0.5}, {partEnd, 0.32}}),
                         line({{0, 2.2}, {partEnd, 3.0}}), line({{0, 0.7}, {partEnd, 0.9}})},
                  .alpha = fade(12, 0)});
  show.add(
      "lid trembles", 6, 1, subject,
      Movie{.base = "eye",
            .at = covering(line({{0, 1.0}, {partEnd, 1.06}})),
            .first = 1,
            .last = 12,
            .fps = 6.4,
            .alpha = line(
                {{0, 0}, {0.4, 0.8}, {0.6, 0.3}, {1, 1}, {1.9, 0.9}, {2, 0.45}, {2.2, 1}, {partEnd, 1}})});
  show.add("eye opens", 7, 0.875, subject,
           Movie{.base = "eye",
                 .at = covering(line({{0, 1.06}, {partEnd, 1.22}})),
                 .first = 12,
                 .last = 32,
                 .fps = 13});
}

// Bars 8 to 16: acid green; a mechanism starts behind iron.
void pulse(Show& show) {
  show.add("acid sky", 8, 2, ground,
           Bitmap{.texture = "sky_acid", .at = covering(line({{0, 1.05}, {partEnd, 1.2}}))});
  show.add(
      "town", 8, 2, far,
      Bitmap{.texture = "spires_acid",
             .at = {line({{0, -1.3}, {partEnd, -1.15}}), line({{0, -0.02}, {partEnd, -0.1}}), 2.5, 1.0}});
  show.add("fumes", 8, 4, smoke,
           Waves{.texture = "smoke_acid",
                 .at = covering(1.3, swing(24, -0.2, 0.2)),
                 .speed = 1.4,
                 .amplitude = 0.045,
                 .alpha = fade(2, 1, 0.62),
                 .blend = Blend::add});
  show.add("doorway", 8, 2, front, Bitmap{.texture = "arch_acid", .at = covering(zoom(1.0, 1.5, 8), 0, 0)});
  show.add("glow in the door", 8, 2, haze,
           Bitmap{.texture = "rays_acid",
                  .at = centred(0, 0.1, zoom(1.6, 2.6, 8)),
                  .alpha = flashes({0, 2, 4, 6}, 0.9, 0.4),
                  .blend = Blend::add});

  show.add("plates", 10, 2, ground,
           Tiles{.texture = "plates_acid", .at = covering(zoom(1.0, 1.25, 8)), .across = 2.4, .down = 1.35});
  show.add("lamp", 10, 2, haze,
           Bitmap{.texture = "haze_acid",
                  .at = centred(line({{0, -0.8}, {partEnd, 0.8}}), -0.1, 2.4, 1.4),
                  .alpha = 0.8,
                  .blend = Blend::add});
  show.add("vexed", 10, 2, title,
           Logo{.ending = "ed01",
                .size = line({{0, 0.74}, {partEnd, 0.84}}),
                .glitch = flashes({0, 2, 4, 6, 7, 7.5}, 0.95, 0.02),
                .layers = 2,
                .scale = swing(8, 1.05, 1.12),
                .fall = 0.4});

  show.add("pale sky", 12, 2, ground,
           Bitmap{.texture = "sky_acid", .at = covering(line({{0, 1.5}, {partEnd, 1.3}}), 0, -0.2)});
  show.add("sun behind", 12, 2, backdrop,
           Bitmap{.texture = "rays_acid",
                  .at = centred(0.25, -0.2, zoom(3.0, 3.8, 8)),
                  .alpha = flashes({0, 1, 2, 3, 4, 5, 6, 7}, 1, 0.55),
                  .blend = Blend::add});
  show.add("watcher", 12, 2, subject,
           Bitmap{.texture = "figure_acid",
                  .at = centred(line({{0, 0.3}, {partEnd, 0.2}}), line({{0, 0.2}, {partEnd, 0.12}}),
                                line({{0, 1.7}, {partEnd, 1.95}}), 0.5)});
  show.add("ground fumes", 12, 2, smoke,
           Waves{.texture = "smoke_acid",
                 .at = {-1.2, 0.1, 2.6, 1.2},
                 .speed = 1.8,
                 .amplitude = 0.05,
                 .alpha = 0.7,
                 .blend = Blend::add});
  show.add("hedge", 12, 2, front,
           Bitmap{.texture = "thorn_bone", .at = {line({{0, -1.9}, {partEnd, -1.3}}), 0.35, 3.2, 0.95}});

  show.add("iron again", 14, 1.75, ground,
           Tiles{.texture = "plates_acid", .at = covering(zoom(1.25, 2.2, 7)), .across = 2.4, .down = 1.35});
  show.add("rose turns up", 14, 1.75, far,
           Bitmap{.texture = "rays_acid",
                  .at = centred(0, 0, zoom(1.5, 4.5, 7)),
                  .alpha = flashes({0, 1, 2, 3, 4, 4.5, 5, 5.5, 6, 6.25, 6.5}, 1, 0.5),
                  .blend = Blend::add});
  show.add("first gate", 14, 1.75, subject,
           Bitmap{.texture = "gate_acid", .at = centred(0, 0, zoom(0.6, 4.0, 7)), .alpha = fade(0.5, 0)},
           Bitmap{.texture = "gate_acid", .at = centred(0, 0, zoom(0.25, 1.7, 7)), .alpha = fade(1, 0)});
  show.add("vexing", 15, 0.75, title,
           Logo{.ending = "ing01",
                .size = zoom(0.6, 0.9, 3),
                .glitch = 0.5,
                .layers = 3,
                .scale = 1.15,
                .fall = 0.5});
  show.add("hold", 15.75, 0.25, ground, Fade{});
  show.add("hold eye", 15.75, 0.25, subject,
           Movie{.base = "eye", .at = centred(0, 0, 0.5, 2), .first = 32, .last = 32});
}

// A gate flies past every `beats`.
void tunnel(Show& show, const char* texture, double fromBar, double bars, double beats) {
  const int count = static_cast<int>(bars * beatsPerBar / beats);
  for (int i = 0; i < count; ++i) {
    const double start = fromBar + i * beats / beatsPerBar;
    const double length = std::min(2 * beats / beatsPerBar, fromBar + bars - start);
    show.add(
        "gate", start, length, far - i % 8,
        Bitmap{.texture = texture, .at = centred(0, 0, zoom(0.35, 7, 2 * beats)), .alpha = fade(0.3, 0)});
  }
}

// Bars 16 to 24: steel and magenta; cuts on bars, glitches on beats.
void drop(Show& show) {
  show.add("far glass", 16, 2, ground,
           Tiles{.texture = "glass_violet", .at = covering(zoom(1.0, 1.4, 8)), .across = 3.5, .down = 2});
  show.add("beyond", 16, 2, backdrop,
           Bitmap{.texture = "rays_violet",
                  .at = centred(0, 0, 3.6),
                  .alpha = flashes({0, 1, 2, 3, 4, 5, 6, 7}, 1, 0.5),
                  .blend = Blend::add});
  tunnel(show, "gate_violet", 16, 2, 1);
  show.add("vexation", 16, 2, title,
           Logo{.ending = "ation01",
                .size = 0.8,
                .glitch = flashes({0, 1, 2, 3, 4, 5, 6, 6.5, 7}, 1, 0.05),
                .layers = 4,
                .scale = swing(4, 1.03, 1.25),
                .fall = 0.5});

  show.add("glass sways", 18, 2, ground,
           Waves{.texture = "glass_violet",
                 .at = covering(zoom(1.6, 1.15, 8)),
                 .speed = 3,
                 .amplitude = swing(8, 0.03, 0.09)});
  show.add("violet fumes", 18, 2, smoke,
           Waves{.texture = "smoke_violet",
                 .at = covering(1.5),
                 .speed = -2,
                 .amplitude = 0.06,
                 .alpha = 0.8,
                 .blend = Blend::add});
  show.add("stare", 18, 2, subject,
           Movie{.base = "eye",
                 .at = {-1, line({{0, -0.42}, {partEnd, -0.34}}), 2, 0.8},
                 .first = 20,
                 .last = 32,
                 .fps = 12,
                 .alpha = flashes({0, 1, 2, 3, 4, 5, 6, 7}, 0.95, 0.75)});
  show.add(
      "vexer", 19, 1, title,
      Logo{.ending = "er01", .y = 0.55, .size = 0.6, .glitch = 0.4, .layers = 2, .scale = 1.1, .fall = 0.5});

  show.add("left half", 20, 2, ground - 5, Viewport{.x = -1, .y = -1, .w = swing(8, 0.8, 1.2), .h = 2},
           Bitmap{.texture = "sky_violet", .at = covering(1.2)},
           Bitmap{.texture = "rays_violet",
                  .at = {-1.4, -1.3, 2.8, 2.4},
                  .alpha = flashes({0, 1, 2, 3, 4, 5, 6, 7}, 1, 0.4),
                  .blend = Blend::add},
           Bitmap{.texture = "figure_acid", .at = {-0.55, line({{0, -0.7}, {partEnd, -0.85}}), 1.1, 1.95}});
  show.add("right half", 20, 2, ground - 4, Viewport{.x = swing(8, -0.2, 0.2), .y = -1, .w = 1.2, .h = 2},
           Tiles{.texture = "plates_acid", .at = covering(zoom(1.0, 1.6, 8)), .across = 1.3, .down = 1.4},
           Bitmap{.texture = "gate_violet", .at = {-0.95, -0.9, 1.9, 1.8}});
  show.add("whole screen", 20, 2, ground - 3, Viewport{});
  show.add(
      "seam", 20, 2, title,
      Bitmap{.texture = "streak_violet", .at = {-1.4, swing(4, -0.2, 0.1), 2.8, 0.3}, .blend = Blend::add});

  show.add("last glass", 22, 2, ground,
           Waves{.texture = "glass_violet", .at = covering(zoom(1.2, 3, 8)), .speed = 4, .amplitude = 0.08});
  show.add("bright", 22, 2, backdrop,
           Bitmap{.texture = "rays_acid",
                  .at = centred(0, 0, 3.8),
                  .alpha = flashes({0, 1, 2, 3, 4, 5, 6, 7}, 1, 0.3),
                  .blend = Blend::add});
  tunnel(show, "gate_acid", 22, 2, 0.5);
  show.add("vexatious", 22, 2, title,
           Logo{.ending = "atious01",
                .size = 0.78,
                .glitch = flashes({0, 1, 2, 3, 4, 5, 6, 6.5, 7, 7.5}, 1, 0.1),
                .layers = 5,
                .scale = swing(4, 0.9, 1.2),
                .fall = 0.55});
}

// Bars 24 to 32: ember; the covered sun, the echoes, the end.
void climax(Show& show) {
  show.add("ember sky", 24, 7.5, ground,
           Bitmap{.texture = "sky_ember", .at = covering(line({{0, 1.05}, {partEnd, 1.5}}))});
  show.add("streamers", 24, 2, backdrop,
           Bitmap{.texture = "corona_ember",
                  .at = centred(0.0, line({{0, 0.0}, {partEnd, -0.12}}), line({{0, 2.3}, {partEnd, 2.6}})),
                  .alpha = swing(2, 0.8, 1),
                  .blend = Blend::add});
  show.add(
      "moon", 24, 2, backdrop + 1,
      Bitmap{.texture = "moon",
             .at = centred(0.0, line({{0, 0.0}, {partEnd, -0.12}}), line({{0, 0.92}, {partEnd, 1.04}}))});
  show.add("burning town", 24, 2, far,
           Bitmap{.texture = "spires_ember",
                  .at = {line({{0, -1.1}, {partEnd, -1.3}}), line({{0, 0.05}, {partEnd, -0.05}}),
                         line({{0, 2.3}, {partEnd, 2.6}}), 1.0}});
  show.add("sparks", 24, 7, smoke,
           Noise{.texture = "sparks_ember", .speedX = 0.02, .speedY = 0.09, .alpha = fade(2, 6, 0.9)});
  show.add("thorns", 24, 2, front,
           Bitmap{.texture = "thorn_ember", .at = {-1.2, line({{0, 0.4}, {partEnd, 0.3}}), 2.5, 0.8}});

  show.add("great sun", 26, 2, backdrop,
           Bitmap{.texture = "corona_ember",
                  .at = centred(-0.2, -0.15, zoom(3.0, 3.5, 8)),
                  .alpha = swing(2, 0.8, 1),
                  .blend = Blend::add});
  show.add("great moon", 26, 2, backdrop + 1,
           Bitmap{.texture = "moon", .at = centred(-0.2, -0.15, zoom(1.2, 1.4, 8))});
  show.add("watcher", 26, 2, subject,
           Bitmap{.texture = "figure_ember",
                  .at = centred(line({{0, -0.05}, {partEnd, -0.2}}), 0.25, line({{0, 1.6}, {partEnd, 1.75}}),
                                0.5)});
  show.add("vexillum", 26, 2, title,
           Logo{.ending = "illum01",
                .x = 0.1,
                .y = 0.5,
                .size = 0.6,
                .glitch = flashes({0, 2, 4, 6, 7}, 0.9, 0.02),
                .layers = 3,
                .scale = swing(8, 1, 1.15),
                .fall = 0.5});

  show.add("ember glass", 28, 2, ground + 1,
           Waves{.texture = "glass_ember", .at = covering(zoom(1.1, 2, 8)), .speed = 2, .amplitude = 0.05});
  show.add("blaze", 28, 2, backdrop,
           Bitmap{.texture = "rays_ember",
                  .at = centred(0, 0, 3.8),
                  .alpha = flashes({0, 1, 2, 3, 4, 5, 6, 7}, 1, 0.5),
                  .blend = Blend::add});
  tunnel(show, "gate_ember", 28, 2, 2);
  show.add("vexedly", 28, 2, title,
           Logo{.ending = "edly01",
                .size = 0.8,
                .glitch = flashes({0, 2, 4, 6, 7}, 0.9, 0.03),
                .layers = 6,
                .scale = swing(8, 1.0, 1.3),
                .fall = 0.62});

  show.add("last streamers", 30, 2, backdrop,
           Bitmap{.texture = "corona_bone", .at = centred(0, 0, zoom(2.4, 1.9, 8)), .blend = Blend::add});
  show.add("last moon", 30, 2, backdrop + 1,
           Bitmap{.texture = "moon", .at = centred(0, 0, zoom(0.96, 0.76, 8))});
  show.add("vexed at last", 30, 2, title,
           Logo{.ending = "ed01",
                .size = 0.5,
                .glitch = 0.02,
                .layers = 6,
                .scale = line({{0, 1}, {partEnd, 1.9}}),
                .fall = 0.6});
  show.add("ground after", 31.5, 1, ground, Fade{});
}

void finish(Show& show) {
  show.add("grain", 0, 32, grain,
           Noise{.texture = "grain", .jitterX = 1, .jitterY = 1, .blend = Blend::darken});
  show.add("dust", 0, 8, grain - 1,
           Noise{.texture = "dust", .jitterX = 1, .jitterY = 1, .alpha = 0.5, .flicker = 0.3, .aspect = 1.2});
  show.add("vignette", 0, 32, vignette, Bitmap{.texture = "vignette", .blend = Blend::darken});
  const Curve height = line({{0, 0.0},
                             {8, barHeight},
                             {64, barHeight},
                             {64.5, 0.12},
                             {96, 0.12},
                             {96.5, barHeight},
                             {partEnd, barHeight}});
  show.add("letterbox", 0, 32.5, letterbox, Bitmap{.texture = "bar", .at = {-1, -1, 2, height}},
           Bitmap{.texture = "bar", .at = {-1, height * -1 + 1, 2, height}});
  show.add("cuts", 8, 22, flash, Fade{0.8, 1, 0.55, flashes({0, 8, 16, 24}, 0.8)});
  show.add("fade out", 31, 1, curtain, Fade{.alpha = line({{0, 0}, {partEnd, 1}})});
  show.add("black at last", 32, 0.5, curtain, Fade{});
}

}  // namespace

Script presentation() {
  Show show;
  show.script.totalTime = cueSeconds(songBars);
  show.script.sound = "data\\vex.ogg";
  for (const Cue& cue : cues) show.script.ticks.push_back(cueSeconds(cue));
  prologue(show);
  pulse(show);
  drop(show);
  climax(show);
  finish(show);
  return show.script;
}

Products timeLineFiles() {
  Product product;
  product.outputs = {"test.hvp", "used_textures.log"};
  product.sources = {"production/time_line.", "production/show.", "production/project_writer.",
                     "production/cues."};
  product.work = 0.1f;
  product.make = [](const Settings&) {
    const Script script = presentation();
    const std::string list = preloadList(script);
    const auto* text = reinterpret_cast<const std::byte*>(list.data());
    return std::vector<Bytes>{writeProject(script), Bytes(text, text + list.size())};
  };
  return {product};
}

Products musicFile() {
  Product product;
  product.outputs = {"data/vex.ogg"};
  product.sources = {"production/music.", "production/cues.", "production/song/", "production/synth/"};
  product.work = 40;
  product.make = [](const Settings& settings) {
    return std::vector<Bytes>{makeMusic(settings.draft ? MixQuality::draft : MixQuality::full)};
  };
  return {product};
}

}  // namespace vex
