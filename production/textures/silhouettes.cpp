#include <cmath>
#include <vector>

#include "production/image/filter.h"
#include "production/image/noise.h"
#include "production/image/shape.h"
#include "production/textures/families.h"
#include "production/textures/hued.h"

namespace vex {

using namespace image;

namespace {

// Near black, with light from behind creeping around the edge. `inside` is the distance to it, 0 or less.
Colour4 backlit(const Ramp& ramp, float inside, float reach, float strength) {
  return ink * 0.8f + gradient(ramp, strength * std::exp(inside / reach));
}

// Distance to a hooded figure with a ringed staff, on a picture twice as high as wide.
float figureAt(float u, float v) {
  const float x = u - 0.5f, y = v * 2;
  const float folds = 0.012f * std::sin(x * 90 + 6 * y) * smoothStep(0.7f, 1.6f, y) +
                      0.01f * fractal(u * 8, v * 8, 0, 3, 0.5f, 180);
  const float hood = smoothUnion(disc(x * 1.2f, y - 0.44f, 0.095f),
                                 taper(x, y, 0.03f, 0.26f, 0, 0.46f, 0.006f, 0.085f), 0.08f);
  const float shoulders = std::min(taper(x, y, -0.01f, 0.57f, -0.19f, 0.70f, 0.07f, 0.05f),
                                   taper(x, y, -0.01f, 0.57f, 0.17f, 0.69f, 0.07f, 0.055f));
  // The wind stands to the left and has torn the hem.
  const float sway = 0.05f * smoothStep(0.9f, 1.9f, y);
  const float hem = 1.78f + 0.12f * fractal(u * 9, 0.5f, 0, 4, 0.7f, 182) - 0.25f * (x + sway) * (x + sway);
  const float cloak = std::max(
      std::max(std::fabs(x + sway) - (0.18f + 0.12f * std::pow(clamp01((y - 0.6f) / 1.2f), 1.4f) + folds),
               0.66f - y),
      y - hem);
  const float sleeve = std::min(taper(x, y, 0.16f, 0.70f, 0.28f, 0.86f, 0.06f, 0.04f),
                                taper(x, y, 0.28f, 0.86f, 0.25f, 1.06f, 0.045f, 0.004f));  // it hangs
  const float hand = taper(x, y, 0.28f, 0.85f, 0.365f, 0.80f, 0.024f, 0.016f);
  const float body = smoothUnion(smoothUnion(hood, shoulders, 0.11f), cloak, 0.07f);
  const float dressed = smoothUnion(body, std::min(sleeve, hand), 0.025f);
  const float staff = taper(x, y, 0.375f, 0.33f, 0.36f, 1.95f, 0.008f, 0.010f);
  const float crown = std::min(ring(x - 0.375f, y - 0.25f, 0.085f, 0.011f),
                               std::min(ring(x - 0.375f, y - 0.25f, 0.035f, 0.006f),
                                        taper(x, y, 0.375f, 0.12f, 0.375f, 0.17f, 0.002f, 0.012f)));
  return std::min(dressed, std::min(staff, crown));
}

// Its cloak ends in mist. In the teal world the light stands at its left, elsewhere behind it.
Canvas figure(const Settings& settings, const Hue& hue) {
  const int width = settings.side(256);
  const bool fromLeft = &hue == &tealHue;
  return paintSmooth(width, width * 2, 2, [&](float u, float v) {
    const float y = v * 2, all = figureAt(u, v);
    Colour4 colour = backlit(hue.ramp, std::min(0.0f, all), 0.009f, 0.4f);
    if (fromLeft) {
      const float turned = clamp01((figureAt(u - 0.012f, v - 0.003f) - all) / 0.013f);
      colour = ink * 0.8f + gradient(hue.ramp, 0.9f * turned * std::exp(std::min(0.0f, all) / 0.022f));
    }
    colour.a = coverage(all, 0.006f) *
               smoothStep(1.97f, 1.78f, y + 0.1f * fractal(u * 6, v * 6, 0, 4, 0.5f, 181)) *
               smoothStep(0.0f, 0.03f, std::min(u, 1 - u));
    return colour;
  });
}

struct Thorn {
  float x0, y0, x1, y1, r0, r1;
};

// One bramble: a path of bends with spikes on both sides. Grows shoots of its own.
void growBramble(std::vector<Thorn>& thorns, float x, float y, float heading, float radius, int steps,
                 int seed) {
  const float home = heading;
  for (int i = 0; i < steps; ++i) {
    heading = mix(heading, home, 0.12f) + (hashUnit(i, seed, 200) - 0.5f) * 0.75f;
    const float stride = 0.05f + radius * 1.2f;
    const float nextX = x + stride * std::cos(heading), nextY = y + stride * std::sin(heading);
    const float nextRadius = radius * 0.945f;
    thorns.push_back({x, y, nextX, nextY, radius, nextRadius});
    const float side = i % 2 == 0 ? 1.0f : -1.0f,
                lean = heading + side * (0.8f + 0.5f * hashUnit(i, seed, 201));
    const float length = (1.6f + 2.4f * hashUnit(i, seed, 202)) * (0.01f + radius);
    thorns.push_back({nextX, nextY, nextX + length * std::cos(lean), nextY + length * std::sin(lean),
                      radius * 0.8f, 0.0008f});
    if (i % 6 == 4 && radius > 0.011f)
      growBramble(thorns, nextX, nextY, heading - side * 0.9f, radius * 0.6f, steps / 2, seed * 7 + i);
    x = nextX, y = nextY, radius = nextRadius;
  }
}

// Brambles that close in from both sides along the foot of the picture, four times as wide as high.
Canvas brambles(const Settings& settings, const Hue& hue) {
  const int width = settings.side(1024);
  std::vector<Thorn> thorns;
  for (int i = 0; i < 5; ++i) {
    const float radius = 0.05f - 0.007f * static_cast<float>(i), low = 0.62f + 0.12f * static_cast<float>(i);
    growBramble(thorns, -0.1f, low, -0.22f + 0.13f * static_cast<float>(i), radius, 26, 11 + i);
    growBramble(thorns, 4.1f, low - 0.04f, pi + 0.3f - 0.16f * static_cast<float>(i), radius * 0.95f, 24,
                31 + i);
  }
  return paintSmooth(width, width / 4, 2, [&](float u, float v) {
    const float x = u * 4, y = v;
    float nearest = 1;
    for (const Thorn& thorn : thorns)
      if (std::fabs(thorn.x0 - x) < 0.2f && std::fabs(thorn.y0 - y) < 0.25f)
        nearest = std::min(nearest, taper(x, y, thorn.x0, thorn.y0, thorn.x1, thorn.y1, thorn.r0, thorn.r1));
    Colour4 colour = backlit(hue.ramp, std::min(0.0f, nearest), 0.0045f, 0.22f);
    colour.a = coverage(nearest, 0.008f) * smoothStep(0.0f, 0.08f, v);
    return colour;
  });
}

// --- A skyline of spires and roofs, eight times as wide as a tower

struct Tower {
  float centre, half, height;
};
Tower towerAt(int i, int row) {
  const float size = hashUnit(i, row, 211);
  return {(static_cast<float>(i) + 0.2f + 0.6f * hashUnit(i, row, 212)) * 0.3f, 0.022f + 0.03f * size,
          0.22f + 0.34f * size * size};
}
constexpr int firstTower = -1, endTower = 14;

// Gables, one behind the other, some with a chimney.
float roofs(float x, int row) {
  float top = 0;
  for (const float wide : {0.083f, 0.127f}) {
    const float place = x / wide;
    const int house = static_cast<int>(std::floor(place)), kind = row * 10 + static_cast<int>(wide * 1000);
    const float across = std::fabs(place - static_cast<float>(house) - 0.5f) * 2;  // 0 under the ridge
    const float eaves = 0.07f + 0.1f * hashUnit(house, kind, 214),
                steep = 0.05f + 0.06f * hashUnit(house, kind, 215);
    top = std::max(top, eaves + steep * (1 - across));
    if (hashUnit(house, kind, 216) > 0.6f && std::fabs(across - 0.6f) < 0.07f)
      top = std::max(top, eaves + steep * 0.4f + 0.05f);
  }
  return top;
}

float skyline(float x, int row) {
  float top = 0.08f + 0.05f * valueNoise(x * 3, static_cast<float>(row), 0, 210);
  top = std::max(top, roofs(x, row));
  for (int i = firstTower; i < endTower; ++i) {
    const auto [centre, half, height] = towerAt(i, row);
    const float size = hashUnit(i, row, 211), away = std::fabs(x - centre);
    if (away < half) top = std::max(top, height + 0.02f * static_cast<float>(away > half * 0.55f));
    // Steps lean against it, and leaves of stone climb its spire.
    if (away < half * 1.7f) top = std::max(top, height * (away < half * 1.35f ? 0.72f : 0.45f));
    if (away < half * 0.8f) {
      const float climb = (1 - away / (half * 0.8f)) * 9, leaf = climb - std::floor(climb);
      top = std::max(top, height + (0.24f + 0.2f * size) * (std::floor(climb) + std::pow(leaf, 0.45f)) / 9);
    }
    if (std::fabs(away - half) < 0.008f)
      top = std::max(top, height + 0.07f * (1 - std::fabs(away - half) / 0.008f));
    if (away < 0.0018f) top = std::max(top, height + 0.3f + 0.2f * size);
  }
  return top;
}

// Somebody is awake in few of its lancets.
float windowLight(float x, float height, int row) {
  constexpr float storey = 0.052f;
  for (int i = firstTower; i < endTower; ++i) {
    const Tower tower = towerAt(i, row);
    const float across = (x - tower.centre) / tower.half;
    if (std::fabs(across) > 0.75f || height > 0.8f * tower.height - 0.02f || height < 0.13f) continue;
    const int floor = static_cast<int>(height / storey), bay = across < -0.25f ? 0 : across < 0.25f ? 1 : 2;
    if (hashUnit(i * 3 + bay, floor, 213) > 0.22f) continue;
    const float dx = (across - 0.5f * static_cast<float>(bay - 1)) * tower.half,
                dy = height - (static_cast<float>(floor) + 0.5f) * storey;
    constexpr float half = 0.0034f, springs = 0.005f;  // of a pointed arch
    const float outside = dy > springs ? std::hypot(std::fabs(dx) + half, dy - springs) - 2 * half
                                       : box(dx, dy + 0.0035f, half, 0.0085f);
    return std::max(coverage(outside, 0.0015f), 0.5f * std::exp(-std::max(outside, 0.0f) / 0.006f));
  }
  return 0;
}

// What little light falls on the sides of a tower: one of three faces, dark lancets, ledges.
float masonry(float x, float height, int row) {
  for (int i = firstTower; i < endTower; ++i) {
    const Tower tower = towerAt(i, row);
    const float across = (x - tower.centre) / tower.half;
    if (std::fabs(across) > 1) continue;
    const float face = across < -0.38f ? 0.35f : across < 0.38f ? 0.6f : 1.0f;
    if (height > 0.8f * tower.height) return across < 0 ? 0.4f : 0.9f;  // the spire
    const float storey = height / 0.105f, up = storey - std::floor(storey);
    const float ledge = up < 0.09f ? 1.7f : 1.0f;
    const float bay = std::fabs(std::fabs(across) - 0.68f) < 0.1f || std::fabs(across) < 0.13f ? 1.0f : 0.0f;
    return face * ledge * (1 - 0.85f * bay * smoothStep(0.2f, 0.3f, up) * smoothStep(0.85f, 0.75f, up));
  }
  return 0.3f;
}

// Paler with distance; the light behind creeps around the near ones' edges. Sinks into haze at the foot.
Canvas spiresOf(const Settings& settings, const Hue& hue, int side, int finer) {
  constexpr int nearRow = 2, farRow = 5;
  const int width = settings.side(side), samples = width * finer;
  const int rimReach = samples / 366;
  std::vector<float> nearTops, farTops;  // of each column of samples
  for (int i = 0; i < samples; ++i) {
    const float x = 4 * (static_cast<float>(i) + 0.5f) / static_cast<float>(samples);
    nearTops.push_back(0.8f * skyline(x, nearRow));
    farTops.push_back(skyline(x + 0.13f, farRow));
  }
  return paintSmooth(width, width / 4, finer, [&](float u, float v) {
    const float height = 1 - v;
    const auto topOf = [&](const std::vector<float>& tops, int aside) {
      return tops[static_cast<std::size_t>(
          std::clamp(static_cast<int>(u * static_cast<float>(samples)) + aside, 0, samples - 1))];
    };
    const bool near = height < topOf(nearTops, 0), far = height < topOf(farTops, 0);
    // How near the edge is, in samples to both sides.
    float rim = 0;
    for (int step = 1; step <= rimReach && rim == 0; ++step)
      if (height > std::min(topOf(near ? nearTops : farTops, step), topOf(near ? nearTops : farTops, -step)))
        rim = 1 - 0.91f * static_cast<float>(step) / static_cast<float>(rimReach);
    const float burns = rim * smoothStep(0.08f, 0.4f, height);
    Colour4 colour =
        near ? ink +
                   gradient(hue.ramp, 0.01f + 0.1f * masonry(u * 4, height / 0.8f, nearRow) + 0.56f * burns) +
                   gradient(hue.ramp, 0.85f) * windowLight(u * 4, height, nearRow)
             : ink + gradient(hue.ramp, 0.15f + 0.22f * burns);
    colour = colour + gradient(hue.ramp, 0.16f * smoothStep(0.3f, 0.0f, height));
    colour.a = (near || far ? 1.0f : 0.0f) * smoothStep(0.0f, 0.05f, height) * smoothStep(0.0f, 0.03f, v);
    return colour;
  });
}

Canvas spires(const Settings& settings, const Hue& hue) {
  return spiresOf(settings, hue, 1024, 5);
}

// For cameras that come close.
Canvas nearSpires(const Settings& settings, const Hue& hue) {
  return spiresOf(settings, hue, 2048, 3);
}

}  // namespace

Products silhouettePictures() {
  Products products;
  const HuedPictures make{PictureKind::maskedJpeg};
  products.push_back(make("figure_", emberHue, 1, figure));
  products.push_back(make("figure_", tealHue, 1, figure));
  products.push_back(make("thorn_", boneHue, 6, brambles));
  products.push_back(make("spires_", boneHue, 5, nearSpires));
  products.push_back(make("spires_", emberHue, 2, spires));
  return products;
}

}  // namespace vex
