#include <cmath>

#include "production/image/filter.h"
#include "production/image/noise.h"
#include "production/image/shape.h"
#include "production/textures/families.h"
#include "production/textures/palette.h"

namespace vex {

namespace {

// Quatrefoil about the origin: four discs around a square.
float quatrefoil(float x, float y, float size) {
  const float ax = std::fabs(x), ay = std::fabs(y);
  const float lobes =
      ax > ay ? disc(ax - size * 0.55f, ay, size * 0.5f) : disc(ax, ay - size * 0.55f, size * 0.5f);
  return std::min(lobes, box(ax, ay, size * 0.42f, size * 0.42f));
}

// A rose window: a heart, twelve lancets, a wreath of roundels. Light comes through the panes, each of its
// own strength and a share of another colour. A lone one stands in the black; others tile, with quatrefoils
// in the corners.
struct Rose {
  const Ramp &ramp, &accent;
  float accents;  // share
  int side;
  bool lone;
};

Canvas glass(const Settings& settings, const Rose& rose) {
  const int side = settings.side(rose.side);
  return paintSmooth(side, side, 2, [&](float u, float v) {
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
    const float cornerX = 1 - std::fabs(x), cornerY = 1 - std::fabs(y);
    const float clover = quatrefoil(cornerX, cornerY, 0.40f), cloverHeart = disc(cornerX, cornerY, 0.1f);
    const float rim = std::fabs(r - 0.89f), hub = std::fabs(r - 0.68f), heart = r - 0.13f;
    float lead = std::min(std::min(rim, hub) - 0.012f, std::fabs(heart) - 0.008f);
    int pane;
    if (r > 0.89f) {
      lead = std::min(lead, std::min(std::fabs(clover), std::fabs(cloverHeart)) - 0.007f);
      pane = cloverHeart < 0 ? 200 : clover < 0 ? 201 + (cornerX > cornerY ? 1 : 0) : 210;
      if (clover < 0 && cloverHeart > 0)
        lead = std::min(lead, std::fabs(cornerX - cornerY) / 1.414f - 0.004f);
    } else if (r > 0.68f) {
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
    const bool ground = pane == 130 || pane == 210;
    const bool other = rose.lone ? (hashUnit(pane, 4, 134) < rose.accents || pane == 0) && !ground
                                 : hashUnit(pane, 4, 134) > 1 - rose.accents || ground;
    const float came = coverage(lead, 0.006f), beyond = rose.lone ? smoothStep(0.90f, 0.895f, r) : 1.0f;
    // Alone it burns: each pane has its own core of light.
    const float core = smoothStep(0.0f, 0.05f, lead);
    const float shining = rose.lone
                              ? (ground ? 0.45f : 1.0f) * value * (0.75f + 0.75f * core * (1.1f - 0.5f * r))
                          : other ? value * 0.72f
                                  : value;
    return (gradient(other ? rose.accent : rose.ramp, shining) * (1 - came) +
            gradient(steelRamp, 0.2f * smoothStep(0.0f, -0.008f, lead)) * came) *
           beyond;
  });
}

}  // namespace

Products ironPictures() {
  Products products;
  products.push_back(picture("glass_ember", PictureKind::jpeg, "iron", 4, [](const Settings& settings) {
    return glass(settings, {emberRamp, boneRamp, 0.12f, 512, false});
  }));
  products.push_back(picture("glass_teal", PictureKind::jpeg, "iron", 4, [](const Settings& settings) {
    return glass(settings, {tealRamp, boneRamp, 0.16f, 1024, true});
  }));
  return products;
}

}  // namespace vex
