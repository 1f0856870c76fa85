#include <cmath>

#include "production/image/filter.h"
#include "production/image/noise.h"
#include "production/image/shape.h"
#include "production/textures/families.h"
#include "production/textures/palette.h"

namespace vex {

using namespace image;

namespace {

// Additive, so that it lives in the shadows and is gone on white: single texels, most of them nearly dark.
Canvas grain(const Settings& settings) {
  const int side = settings.side(1024);
  Canvas noise(side, side);
  for (int y = 0; y < side; ++y)
    for (int x = 0; x < side; ++x) {
      const float value = hashUnit(x, y, 1), bright = 0.4f * value * value * value;
      noise.at(x, y) = {bright, bright, bright};
    }
  return noise;
}

// Additive: specks, hairs and a few long scratches of an old print.
Canvas dust(const Settings& settings) {
  const int side = settings.side(512);
  const Field dirt = paintSmooth(side, side, 2, [](float u, float v) {
    const NoiseCell speck = cellularNoise(u * 24, v * 24, 24, 8);
    const float specks =
        speck.id > 0.93f ? coverage(speck.nearest - 1.3f * (speck.id - 0.925f), 0.05f) : 0.0f;
    const float bend = 0.012f * fractal(0.5f, v * 3, 3, 3, 0.5f, 30);
    float hairs = 0;
    for (int i = 0; i < 5; ++i) {
      const float place = hashUnit(i, 0, 31);
      const float across = std::fabs(u - place - bend * (hashUnit(i, 1, 31) * 2 - 0.6f));
      const float breaks = smoothStep(0.45f, 0.6f, valueNoise(v * 6, static_cast<float>(i) * 7.3f, 6, 32));
      hairs += 0.5f * hashUnit(i, 2, 31) * breaks * coverage(across - 0.0006f, 0.0025f);
    }
    return clamp01(specks + hairs);
  });
  return map(dirt, [](float value) { return gradient(boneRamp, value * 0.8f); });
}

// Darkening: clear in the middle, heavier and bluer towards the corners.
Canvas vignette(const Settings& settings) {
  const int side = settings.side(256);
  return paint(side, side, [](float u, float v) {
    const float r = std::hypot((u - 0.5f) * 2, (v - 0.5f) * 1.7f);
    const float shade = smoothStep(0.45f, 1.45f, r);
    return Colour4{0.98f * shade + 0.02f, 0.96f * shade + 0.015f, 0.9f * shade};
  });
}

// Darkening: a soft bank behind words, level in its middle.
Canvas shade(const Settings& settings) {
  const int side = settings.side(128);
  return paint(side, side, [](float u, float v) {
    const float r = std::hypot((u - 0.5f) * 2, (v - 0.5f) * 2);
    const float dark = 0.72f * smoothStep(0.98f, 0.25f, r);
    return Colour4{dark, dark, dark};
  });
}

// Darkening: ink but for a soft hole in its middle.
Canvas pinhole(const Settings& settings) {
  const int side = settings.side(256);
  return paint(side, side, [](float u, float v) {
    const float r = std::hypot((u - 0.5f) * 2, (v - 0.5f) * 2);
    const float dark = smoothStep(0.07f, 0.34f, r);
    return Colour4{dark, dark, dark};
  });
}

}  // namespace

Products grainPictures() {
  return {picture("grain", PictureKind::jpeg, 1, grain),
          picture("dust", PictureKind::jpeg, 4, dust),
          picture("vignette", PictureKind::bmp, 0.2f, vignette),
          picture("bar", PictureKind::bmp, 0.1f, [](const Settings&) { return Canvas(64, 64, black); }),
          picture("shade", PictureKind::bmp, 0.1f, shade),
          picture("pinhole", PictureKind::jpeg, 0.1f, pinhole)};
}

}  // namespace vex
