#include <algorithm>
#include <cmath>

#include "production/image/filter.h"
#include "production/image/noise.h"
#include "production/image/shape.h"
#include "production/textures/families.h"
#include "production/textures/hangar_light.h"
#include "production/textures/palette.h"

// The hangar around the alien's scene, and what its chrome mirrors.

namespace vex {

using namespace image;

namespace {

Product face(const char* suffix, SkyFace which) {
  return picture(std::string("monster") + suffix, PictureKind::jpeg, 1.5f, [which](const Settings& settings) {
    return boxFace([](const Vector& d) { return hangarLight(d, 1); }, which, settings.side(512));
  });
}

// Chrome shows little but its extremes: what lies between is pressed down, nearly to black.
Colour4 mirroredHangar(const Vector& direction) {
  const Colour4 light = hangarLight(direction, 0);
  const auto contrast = [](float value) { return clamp01(0.75f * value * value * value + 0.16f * value); };
  return {contrast(light.r), contrast(light.g), contrast(light.b)};
}

// Lamps and the magenta pool's light, which the camera brings along, on the disc of the sphere map: x to the
// right, y up, the rim is what grazes. They stay where they are on the screen, so that every limb has a wet
// edge from every side.
struct SoftBox {
  float x, y, halfWidth, halfHeight, turn;  // radians
  float softness, strength;
  bool magenta = false;
};
constexpr SoftBox softBoxes[] = {{-0.36f, 0.52f, 0.17f, 0.055f, 0.62f, 0.05f, 1.0f},
                                 {-0.58f, 0.16f, 0.03f, 0.16f, 0.25f, 0.05f, 0.55f},
                                 {0.46f, 0.30f, 0.02f, 0.17f, -0.5f, 0.04f, 0.4f},
                                 {-0.30f, -0.62f, 0.26f, 0.03f, -0.35f, 0.06f, 0.55f, true},
                                 {0.34f, -0.60f, 0.22f, 0.03f, 0.40f, 0.06f, 0.45f, true}};

// Cold white above, magenta below and to the right, from a distance from the middle on.
Colour4 rimLight(float x, float y, float from) {
  const float radius = std::hypot(x, y), grazing = smoothStep(from, 1.0f, radius);
  const float above = std::max(0.0f, (-0.35f * x + 0.94f * y) / std::max(radius, 0.01f));
  const float lowerRight = std::max(0.0f, (0.86f * x - 0.5f * y) / std::max(radius, 0.01f));
  return gradient(steelRamp, 0.95f) * (0.95f * grazing * std::pow(above, 0.9f)) +
         gradient(violetRamp, 0.66f) * (0.6f * grazing * std::pow(lowerRight, 4.0f));
}

Colour4 carriedLight(float x, float y) {
  Colour4 light = rimLight(x, y, 0.9f);
  for (const SoftBox& lamp : softBoxes) {
    const float c = std::cos(lamp.turn), s = std::sin(lamp.turn), dx = x - lamp.x, dy = y - lamp.y;
    const float distance = box(c * dx + s * dy, c * dy - s * dx, lamp.halfWidth, lamp.halfHeight);
    const Colour4 colour = lamp.magenta ? gradient(violetRamp, 0.66f) : gradient(steelRamp, 0.97f);
    light = light + colour * (lamp.strength * coverage(distance, lamp.softness) +
                              0.16f * lamp.strength * std::exp(-std::max(0.0f, distance) * 7));
  }
  return light;
}

// The hangar in a ball, blurred by a share of its width, and the lights over it.
Canvas chromeBall(const Settings& settings, float blurred, Colour4 (*lights)(float x, float y)) {
  const int side = settings.side(512);
  const Canvas ball = blur(sphereMap(mirroredHangar, lookTowards(-1.25f, -0.08f), side, 2),
                           static_cast<float>(side) * blurred, EdgeMode::clamp);
  return paint(side, side, [&](float u, float v) {
    return sample(ball, u, v, EdgeMode::clamp) + lights(2 * u - 1, 1 - 2 * v);
  });
}

Canvas chrome(const Settings& settings) {
  return chromeBall(settings, 0.004f, carriedLight);
}

// For limbs, which are a few pixels wide: nothing in it is finer than a third of a limb.
Canvas softChrome(const Settings& settings) {
  return chromeBall(settings, 0.03f, [](float x, float y) {
    const float gloss = std::exp(-6 * ((x + 0.36f) * (x + 0.36f) + (y - 0.4f) * (y - 0.4f)));
    const float below = smoothStep(-0.1f, -0.85f, y);
    return gradient(steelRamp, 0.9f) * (0.3f * gloss + 0.7f * std::pow(gloss, 5.0f)) +
           gradient(violetRamp, 0.5f) * (0.4f * below) + rimLight(x, y, 0.72f);
  });
}

// Between the lenses of an eye: black horn with a magenta edge about each, wet where light comes from above.
// A great lens and two small ones on each side, in the shape of the letterboxed screen; the mask opens them.
Canvas chitin(const Settings& settings) {
  constexpr float across = 2.35f;  // the height is 1
  const int width = settings.side(1024);
  struct Lens {
    float x, y, distance;
  };
  const auto nearest = [](float u, float v) {
    Lens best{0, 0, 1};
    const auto meet = [&](float lensX, float lensY, float halfWidth, float halfHeight) {
      // A hexagon on its tip, its corners rounded.
      const float x = std::fabs(lensX), y = std::fabs(lensY);
      const float distance = -smoothUnion(halfWidth - x, 0.87f * halfHeight - 0.87f * y - 0.22f * x, 0.05f);
      if (distance < best.distance) best = {lensX, lensY, distance};
    };
    const float x = (u - 0.5f) * across, y = v - 0.5f;
    meet(x, y, 0.44f, 0.49f);
    meet(std::fabs(x) - 0.815f, std::fabs(y) - 0.25f, 0.345f, 0.238f);
    return best;
  };
  return paintSmooth(width, width / 2, 2, [&](float u, float v) {
    const Lens lens = nearest(u, v);
    const float grain = 0.5f + 0.5f * fractal(u * 60, v * 26, 0, 4, 0.6f, 881);
    const NoiseCell pores = cellularNoise(u * 70, v * 30, 0, 882);
    const float rise = std::max(0.0f, lens.distance);
    const float lip = std::exp(-rise * 60), towards = clamp01(0.5f - 1.6f * lens.y - 0.5f * lens.x);
    Colour4 colour = gradient(steelRamp, 0.02f + 0.10f * grain * smoothStep(0.1f, 0.5f, pores.nearest)) +
                     gradient(violetRamp, 0.62f) * (0.7f * lip * (0.25f + 0.75f * clamp01(1 - towards))) +
                     gradient(steelRamp, 0.95f) * (0.8f * std::pow(lip, 3.0f) * std::pow(towards, 4.0f));
    const float depth = -lens.distance;
    colour.a = 1 - smoothStep(0.0f, 0.035f, depth);
    return colour;
  });
}

}  // namespace

Products hangarPictures() {
  return {
      face("top", SkyFace::top),
      face("bot", SkyFace::bottom),
      face("nor", SkyFace::north),
      face("wes", SkyFace::west),
      face("sou", SkyFace::south),
      face("eas", SkyFace::east),
      picture("chrome", PictureKind::jpeg, 1, chrome),
      picture("chrome_soft", PictureKind::jpeg, 1, softChrome),
      picture("chitin", PictureKind::maskedJpeg, 2, chitin),
  };
}

}  // namespace vex
