#include "production/movements/words.h"

// What lies over all: flashes on the cuts, dirt, grain, vignette, bars, the last curtain.

namespace vex {

using namespace screen;

namespace {

constexpr double barHeight = 0.243;  // leaves 2.35 : 1

// A bloom of that haze falls within half a beat; the little veil under it reaches the corners.
void flashOn(Show& show, const std::vector<const char*>& cueNames, const char* haze, Fade veil) {
  veil.alpha = spline({{0, 0.12}, {0.12, 0.07}, {0.28, 0.02}, {partEnd, 0}});
  const Bitmap bloom{.texture = haze,
                     .at = centred(0, 0, spline({{0, 4.6}, {0.28, 3.2}, {partEnd, 2.4}}), 1.78),
                     .alpha = spline({{0, 1}, {0.12, 0.75}, {0.28, 0.3}, {partEnd, 0}}),
                     .blend = Blend::add};
  for (const char* name : cueNames) show.add("flash", barOf(name), 0.125, flash, veil, bloom, bloom);
}

}  // namespace

void addFinish(Show& show) {
  flashOn(show,
          {"box", "pulse", "lock", "bolt", "build", "lid", "layer 1", "layer 2", "layer 3", "layer 4",
           "backwards"},
          "haze_acid", Fade{0.8, 1, 0.55});
  flashOn(show,
          {"alien", "alien cut 2", "break over", "split", "counter voice", "alien cut 6", "climax", "unison",
           "unison 2", "unison 3", "unison 4"},
          "haze_violet", Fade{1, 0.75, 0.95});
  flashOn(show, {"interlude one", "pad opens"}, "haze_teal", Fade{0.7, 1, 0.97});
  flashOn(show, {"half time", "jar", "eyes", "hose", "burst", "shards", "door"}, "haze_teal",
          Fade{0.8, 1, 0.97});
  flashOn(show,
          {"interlude two", "roll", "roll doubles", "last stroke", "hell", "lake of fire", "cathedral",
           "black sphere", "eruption", "sphere cracks", "sphere cracks 2", "sphere cracks 3"},
          "haze_ember", Fade{1, 0.86, 0.6});

  // The film's finish ends where the party begins.
  const double film = outroBar;
  show.add("dust", prologueBar, boxBar, grain - 1,
           Noise{.texture = "dust", .jitterX = 1, .jitterY = 1, .alpha = 0.5, .flicker = 0.3});
  show.add("grain", 0, film, grain,
           Noise{.texture = "grain", .jitterX = 1, .jitterY = 1, .blend = Blend::darken});
  show.add("vignette", 0, film, vignette,
           Bitmap{.texture = "vignette", .at = covering(1), .blend = Blend::darken});
  // The bars slide in with the prologue, give way in the alien's breadth, come back for the interludes and
  // open again for hell.
  const auto beat = [](double bar) { return bar * beatsPerBar; };
  const Curve height = line({{0, 0.0},
                             {8, barHeight},
                             {beat(alienBar), barHeight},
                             {beat(alienBar) + 0.5, 0.12},
                             {beat(interludeOneBar), 0.12},
                             {beat(interludeOneBar) + 0.5, barHeight},
                             {beat(hellBar), barHeight},
                             {beat(hellBar) + 0.5, 0.12},
                             {beat(film), 0.12},
                             {beat(film) + 2, 0},
                             {partEnd, 0}});
  // They reach beyond the screen, so that no edge of theirs shows but the inner one.
  const double beyond = 0.5;
  show.add("letterbox", 0, film + 1, letterbox,
           Bitmap{.texture = "bar", .at = {-1 - beyond, -1 - beyond, 2 + 2 * beyond, height + beyond}},
           Bitmap{.texture = "bar", .at = {-1 - beyond, height * -1 + 1, 2 + 2 * beyond, height + beyond}});
  show.add("black at last", songBars, blackSeconds / secondsPerBar + 1, ground, Fade{});
}

}  // namespace vex
