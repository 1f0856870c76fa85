#include <cmath>
#include <string>

#include "production/image/filter.h"
#include "production/image/noise.h"
#include "production/image/shape.h"
#include "production/textures/families.h"
#include "production/textures/palette.h"

namespace vex {

using namespace image;

namespace {

// A rose window that stands in the black: a heart, twelve lancets, a wreath of roundels. Light comes through
// the panes, each of its own strength and with its own core; some are pale.
Colour4 roseColour(float u, float v) {
  constexpr float pale = 0.16f;  // share of the panes
  const float x = (u - 0.5f) * 2, y = (v - 0.5f) * 2, r = std::hypot(x, y), angle = std::atan2(y, x);
  const auto sector = [&](float count, float phase, int& index) {
    const float turn = angle * count / (2 * pi) + phase;
    index = static_cast<int>(std::floor(turn) + count) % static_cast<int>(count);
    return (turn - std::floor(turn) - 0.5f) * 2 * pi / count;
  };
  int petal, roundel;
  const float petalTurn = sector(12, 0, petal), roundelTurn = sector(24, 0.5f, roundel);
  const float px = r * std::cos(petalTurn), py = r * std::sin(petalTurn);
  const float lancet = std::max(std::max(std::fabs(py) - 0.105f * smoothStep(0.12f, 0.5f, px), 0.17f - px),
                                std::hypot(px - 0.42f, py * 1.25f) - 0.225f);
  const float rx = r * std::cos(roundelTurn) - 0.78f, ry = r * std::sin(roundelTurn);
  const float bead = disc(rx, ry, 0.075f), eyelet = disc(rx, ry, 0.03f);
  const float rim = std::fabs(r - 0.89f), hub = std::fabs(r - 0.68f), heart = r - 0.13f;
  float lead = std::min(std::min(rim, hub) - 0.012f, std::fabs(heart) - 0.008f);
  int pane;
  if (r > 0.68f) {
    lead = std::min(lead, std::min(std::fabs(bead), std::fabs(eyelet)) - 0.006f);
    pane = eyelet < 0 ? 150 + roundel : bead < 0 ? 100 + roundel : 130;
  } else if (heart > 0) {
    lead = std::min(lead, std::fabs(lancet) - 0.009f);
    if (lancet < 0) lead = std::min(lead, std::fabs(px - 0.42f - 0.4f * py * py) - 0.005f);
    pane = lancet < 0 ? 20 + petal + (px > 0.42f ? 20 : 0) : 60 + petal;
  } else {
    pane = 0;
    lead = std::min(lead, std::fabs(disc(x, y, 0.06f)) - 0.005f);
  }
  const float own = hashUnit(pane, 3, 133);
  const float streaks = 0.5f + 0.5f * fractal(u * 8, v * 24, 8, 4, 0.55f, 131);
  const float value = (0.3f + 0.5f * own + 0.16f * streaks) *
                      (0.55f + 0.45f * smoothStep(0.0f, 0.04f, lead)) * (1.15f - 0.4f * r);
  const bool ground = pane == 130;
  const bool other = (hashUnit(pane, 4, 134) < pale || pane == 0) && !ground;
  const float came = coverage(lead, 0.006f), core = smoothStep(0.0f, 0.05f, lead);
  const float shining = (ground ? 0.45f : 1.0f) * value * (0.75f + 0.75f * core * (1.1f - 0.5f * r));
  return (gradient(other ? boneRamp : tealRamp, shining) * (1 - came) +
          gradient(steelRamp, 0.2f * smoothStep(0.0f, -0.008f, lead)) * came) *
         smoothStep(0.90f, 0.895f, r);
}

Canvas rose(const Settings& settings) {
  const int side = settings.side(1024);
  return paintSmooth(side, side, 2, roseColour);
}

// What is left of it when it has burst: every third splinter, or those beside them; broken edges shine.
Canvas splinters(const Settings& settings, int set) {
  const int side = settings.side(512);
  return paintSmooth(side, side, 2, [set](float u, float v) {
    const float bent = 0.10f * fractal(u * 3, v * 3, 0, 2, 0.5f, 138);
    const NoiseCell cell = cellularNoise(u * 8.5f + bent, v * 8.5f - bent, 0, 137);
    if (static_cast<int>(cell.id * 3) != set) return black;
    const float inside = cell.second - cell.nearest;
    const float broken = std::exp(-std::max(0.0f, inside - 0.06f) / 0.035f);
    const float rim = smoothStep(0.90f, 0.88f, 2 * std::hypot(u - 0.5f, v - 0.5f));
    return (roseColour(u, v) * 1.1f + gradient(tealRamp, 0.75f * broken * rim)) *
           smoothStep(0.04f, 0.07f, inside);
  });
}

}  // namespace

Products ironPictures() {
  Products products{picture("glass_teal", PictureKind::jpeg, 4, rose)};
  for (const int set : {0, 1})
    products.push_back(picture("splinters" + std::to_string(set + 1) + "_teal", PictureKind::jpeg, 2,
                               [set](const Settings& settings) { return splinters(settings, set); }));
  return products;
}

}  // namespace vex
