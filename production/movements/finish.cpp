#include "production/movements/words.h"

// What lies over all: flashes on the cuts, dirt, grain, vignette, bars, the last curtain.

namespace vex {

using namespace screen;

namespace {

constexpr double barHeight = 0.243;  // leaves 2.35 : 1

// A flash of that colour falls within half a beat.
void flashOn(Show& show, const std::vector<const char*>& cueNames, Fade colour) {
  colour.alpha = spline({{0, 0.34}, {0.12, 0.2}, {0.28, 0.06}, {partEnd, 0}});
  for (const char* name : cueNames) show.add("flash", barOf(name), 0.125, flash, colour);
}

}  // namespace

void addFinish(Show& show) {
  flashOn(show,
          {"box", "pulse", "lock", "bolt", "build", "lid", "layer 1", "layer 2", "layer 3", "layer 4",
           "backwards"},
          Fade{0.8, 1, 0.55});
  flashOn(show,
          {"alien", "alien cut 2", "break over", "split", "counter voice", "alien cut 6", "climax", "unison",
           "unison 2", "unison 3", "unison 4"},
          Fade{1, 0.75, 0.95});
  flashOn(show, {"interlude one", "pad opens"}, Fade{0.7, 1, 0.97});
  flashOn(show, {"interlude two", "roll", "roll doubles", "last stroke"}, Fade{1, 0.86, 0.6});

  const double whole = songBars;
  show.add("dust", prologueBar, boxBar, grain - 1,
           Noise{.texture = "dust", .jitterX = 1, .jitterY = 1, .alpha = 0.5, .flicker = 0.3});
  show.add("grain", 0, whole, grain,
           Noise{.texture = "grain", .jitterX = 1, .jitterY = 1, .blend = Blend::darken});
  show.add("vignette", 0, whole, vignette,
           Bitmap{.texture = "vignette", .at = covering(1), .blend = Blend::darken});
  // The bars slide in with the prologue, give way in the alien's breadth, come back for the interludes.
  const auto beat = [](double bar) { return bar * beatsPerBar; };
  const Curve height = line({{0, 0.0},
                             {8, barHeight},
                             {beat(alienBar), barHeight},
                             {beat(alienBar) + 0.5, 0.12},
                             {beat(interludeOneBar), 0.12},
                             {beat(interludeOneBar) + 0.5, barHeight},
                             {partEnd, barHeight}});
  // They reach beyond the screen, so that no edge of theirs shows but the inner one.
  const double beyond = 0.5;
  show.add("letterbox", 0, whole + 0.5, letterbox,
           Bitmap{.texture = "bar", .at = {-1 - beyond, -1 - beyond, 2 + 2 * beyond, height + beyond}},
           Bitmap{.texture = "bar", .at = {-1 - beyond, height * -1 + 1, 2 + 2 * beyond, height + beyond}});
  show.add("fade out", barOf("rest"), whole - barOf("rest"), curtain, Fade{.alpha = slide(0, 1)});
  show.add("black at last", whole, 0.5, curtain, Fade{});
}

}  // namespace vex
