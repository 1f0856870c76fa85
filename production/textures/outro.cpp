#include <cmath>

#include "production/image/filter.h"
#include "production/image/noise.h"
#include "production/image/outline.h"
#include "production/image/shape.h"
#include "production/textures/families.h"
#include "production/textures/palette.h"

namespace vex {

using namespace image;

namespace {

// A polished rod from end to end, brushed and worn; its rims are soft. Repeats across.
Canvas copperBar(const Settings& settings) {
  const int width = settings.side(256);
  return paint(width, width / 4, [](float u, float v) {
    const float y = 2 * v - 1, round = std::sqrt(std::max(0.0f, 1 - y * y * 1.1f));
    const float brushed = gradientNoise(u * 8, v * 48, 8, 910),
                stain = fractal(u * 4, v * 2, 4, 4, 0.5f, 911);
    // The window above, the floor below, a dark line where they meet.
    const float window = std::exp(-(y + 0.42f) * (y + 0.42f) * 16),
                floor = std::exp(-(y - 0.55f) * (y - 0.55f) * 30);
    // A glint every now and then along the rod.
    const float glint = std::pow(0.5f + 0.5f * std::cos(2 * pi * u), 6.0f),
                core = std::exp(-(y + 0.3f) * (y + 0.3f) * 70);
    const float value = 0.10f + 0.40f * round + 0.52f * window + 0.16f * floor -
                        0.24f * std::exp(-(y - 0.12f) * (y - 0.12f) * 60) + 0.05f * brushed + 0.07f * stain;
    Colour4 colour =
        gradient(copperRamp, value) + Colour4{0.9f, 0.72f, 0.42f} * (core * (0.30f + 0.6f * glint));
    colour.a = smoothStep(0.0f, 0.18f, std::min(v, 1 - v));
    return colour;
  });
}

// One ball of lacquer, lit from above on the left, with a copper fire behind it; cut out by its mask.
Canvas vectorBall(const Settings& settings) {
  const int side = settings.side(128);
  return paintSmooth(side, side, 4, [](float u, float v) {
    const float x = (2 * u - 1) / 0.86f, y = (2 * v - 1) / 0.86f, r2 = x * x + y * y;
    const float z = std::sqrt(std::max(0.0f, 1 - r2));
    const float key = std::max(0.0f, -0.45f * x - 0.62f * y + 0.64f * z);
    const float behind = clamp01(0.35f + 0.5f * x + 0.5f * y) * std::pow(1 - z, 1.6f);
    const float gloss = std::pow(std::max(0.0f, -0.36f * x - 0.48f * y + 0.8f * z), 26.0f);
    const Colour4 body =
        mix(Colour4{0.05f, 0.03f, 0.04f}, Colour4{0.94f, 0.87f, 0.79f}, std::pow(key, 1.45f));
    Colour4 colour =
        body + Colour4{1, 0.98f, 0.95f} * (1.3f * gloss) + Colour4{1, 0.5f, 0.2f} * (1.5f * behind);
    return Colour4{clamp01(colour.r), clamp01(colour.g), clamp01(colour.b), r2 < 1 ? 1.0f : 0.0f};
  });
}

// Far dust lit by copper, a paler river through it.
Canvas copperSky(const Settings& settings) {
  const int width = settings.side(512);
  return paint(width, width / 2, [](float u, float v) {
    const float x = u * 2, bend = fractal(x * 2, v * 3, 0, 4, 0.5f, 920);
    const float cloud = fractal(x * 3 + bend, v * 4 + bend, 0, 6, 0.55f, 921);
    const float river = v - 0.62f + 0.26f * (x - 1) + 0.14f * bend;
    const float band = std::exp(-river * river * 14);
    const float lanes = smoothStep(0.05f, 0.4f, fractal(x * 5 + bend, v * 7, 0, 5, 0.55f, 922));
    const float lit = smoothStep(-0.1f, 0.5f, cloud);
    const float level = 0.12f + band * (0.42f + 0.74f * lit * lit) * (1 - 0.6f * lanes) + 0.07f * cloud;
    const Colour4 dust = gradient(copperRamp, level);
    return dust + gradient(violetRamp, 0.16f + 0.12f * cloud) * (0.6f * (1 - band));
  });
}

// --- The scroller's font: 32 cells below each other, from the top a blank, the letters and a few signs.

constexpr const char* cellLetters = " ABCDEFGHIJKLMNOPQRSTUVWXYZ.,!?-";
constexpr int cells = 32;
const FontFace heavy{"/usr/share/fonts/opentype/league-spartan/LeagueSpartan-Bold.otf",
                     "fonts-league-spartan"};

// Polished letters: sky above, a dark horizon, copper below, a bright bevel.
Canvas scrollerFont(const Settings& settings) {
  const int side = settings.side(64);
  const auto size = static_cast<float>(side);
  const float unit = size / 64;
  // Cells are a third wider on the screen than they are high.
  const float scale = 0.70f * size / (0 - setText(heavy, "H", 0).top), squeeze = 1.3f;
  const float widest = 0.92f * size, margin = 3 * unit;
  Canvas picture(side, side * cells);
  for (int cell = 0; cell < cells; ++cell) {
    const char letter = cellLetters[cell];
    Field distance(side, side, size);
    if (letter != ' ') {
      const Lettering text = setText(heavy, std::string(1, letter), 0);
      const float width = (text.right - text.left) * scale * squeeze;
      const float across = scale * squeeze * std::min(1.0f, widest / width);
      const float middle = (text.left + text.right) / 2 * across;
      distance = distanceTo(placed(text, across, scale, size / 2 - middle, size * 0.85f), side, side);
      for (float& d : distance.texels) d -= 0.8f * unit;
    }
    const Field heights =
        blur(map(distance, [&](float d) { return 2.6f * unit * clamp01(-d / (3.2f * unit)); }), 0.6f * unit,
             EdgeMode::clamp);
    const Field light = lightRelief(heights, -0.5f, -1, 0.9f, EdgeMode::clamp);
    for (int y = 0; y < side; ++y)
      for (int x = 0; x < side; ++x) {
        const float v = (static_cast<float>(y) + 0.5f) / size, d = distance.at(x, y);
        const float up = (v - 0.13f) / 0.72f;  // 0 at the tops, 1 on the baseline
        const float chrome =
            up < 0.52f ? mix(0.98f, 0.66f, up / 0.52f) : mix(0.34f, 0.80f, (up - 0.52f) / 0.48f);
        const float border = smoothStep(-3.2f * unit, -1.2f * unit, d);
        Colour4 colour = gradient(copperRamp, mix(chrome, 0.2f + 0.9f * light.at(x, y), 0.75f * border));
        const float rim = smoothStep(-0.6f * unit, 0.4f * unit, d);  // an ink outline
        colour = mix(colour, ink, rim);
        colour.a = coverage(d - 1.6f * unit, 1.6f * unit);
        const auto inset = static_cast<float>(std::min({x, y, side - 1 - x, side - 1 - y}));
        if (inset < margin) colour.a = 0;
        picture.at(x, cell * side + y) = colour;
      }
  }
  return picture;
}

}  // namespace

Products outroPictures() {
  return {picture("copperbar", PictureKind::maskedJpeg, 0.3f, copperBar),
          picture("flare_vectorball", PictureKind::maskedBmp, 0.2f, vectorBall),
          picture("sky_copper", PictureKind::jpeg, 0.8f, copperSky),
          picture("scroller", PictureKind::maskedJpeg, 1.5f, scrollerFont)};
}

}  // namespace vex
