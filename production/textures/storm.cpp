#include "production/textures/storm.h"

#include <algorithm>
#include <cmath>

#include "production/image/environment.h"
#include "production/image/filter.h"
#include "production/image/noise3.h"
#include "production/image/shape.h"
#include "production/textures/families.h"

// The storm about the skull: its sky, clouds and swirl, the crow's plumage, fire, the beam.

namespace vex {

using namespace image;

namespace {

// --- Far off

// Height of a range of mountains as the sine of its angle.
float rangeHeight(float azimuth, float scale, std::uint32_t seed) {
  const Vector p(std::cos(azimuth) * scale, std::sin(azimuth) * scale, 0);
  const float peaks = 1 - 2 * std::fabs(gradientNoise(p * 5.3f, 0, seed + 2));
  return 0.5f + 0.5f * fractal(p, 0, 5, 0.5f, seed) + 0.25f * fractal(p * 3.1f, 0, 4, 0.6f, seed + 1) +
         0.22f * peaks;
}

Colour4 stormSky(const Vector& d) {
  const float azimuth = std::atan2(d.z, d.x);
  // A rift of light low behind the skull, a fainter one across.
  const Vector rift = Vector(-0.34f, 0.10f, -0.93f), second = Vector(0.80f, 0.08f, 0.55f);
  const auto lobe = [&](const Vector& at, float width) {
    const float away = std::acos(std::clamp(dot(d, at) / at.length(), -1.0f, 1.0f));
    return std::exp(-away * away / (width * width));
  };
  const float light = lobe(rift, 0.55f) + 0.55f * lobe(second, 0.5f);
  const float level = std::max(0.0f, d.y);
  // Clouds on a plane high above, warped into banks.
  const float far = 1 / (level + 0.16f);
  const Vector p(d.x * far * 1.1f, level * 2, d.z * far * 1.6f);
  const float cloud = fractal(warp(p * 0.55f, 0, 0.5f, 951), 0, 6, 0.52f, 952);
  const float bank = smoothStep(-0.35f, 0.5f, cloud);
  float value = 0.17f + 0.12f * bank +
                light * (1.10f + 0.34f * smoothStep(0.15f, -0.4f, cloud)) * smoothStep(0.62f, 0.05f, level);
  value *= 0.75f + 0.25f * smoothStep(0, 0.1f, level);
  Colour4 colour = gradient(stormRamp, value);
  // Rain hangs from the banks.
  const float rain = 0.5f + 0.5f * fractal(Vector(azimuth * 9, level * 1.2f, 0), 0, 4, 0.5f, 953);
  colour = mix(colour, gradient(stormRamp, 0.40f + 0.26f * light),
               0.55f * smoothStep(0.35f, 0.7f, rain) * smoothStep(0.34f, 0.04f, level));
  colour = mix(colour, stormZenith, smoothStep(0.26f, 0.52f, level));

  // Two ranges of mountains, the far one in haze; the plain below runs on into black.
  const float soft = 0.004f;
  const float farRange = 0.095f * rangeHeight(azimuth, 1.9f, 961),
              nearRange = 0.05f * rangeHeight(azimuth, 3.1f, 971);
  const float lit = 0.5f + 0.5f * fractal(Vector(azimuth * 14, d.y * 60, 0), 0, 4, 0.55f, 981);
  colour = mix(colour, gradient(stormRamp, 0.33f + 0.05f * lit + 0.15f * light),
               smoothStep(soft, -soft, d.y - farRange));
  colour = mix(colour, gradient(stormRamp, 0.24f + 0.03f * lit + 0.10f * light),
               smoothStep(soft, -soft, d.y - nearRange));
  const float haze = std::exp(-std::fabs(d.y) * 17);
  colour = mix(colour, gradient(stormRamp, 0.36f + 0.62f * light), 0.8f * haze);
  const float down = smoothStep(-0.012f, -0.05f, d.y);
  const float depth = std::max(0.02f, -d.y);
  const float grit = 0.5f + 0.5f * fractal(Vector(d.x / depth * 3, d.z / depth * 3, 0), 0, 3, 0.5f, 991);
  return mix(colour, gradient(stormRamp, 0.33f + 0.06f * grit * smoothStep(-0.1f, -0.3f, d.y) + 0.14f * haze),
             down);
}

Product face(const char* suffix, SkyFace which) {
  return picture(std::string("skull") + suffix, PictureKind::jpeg, 1.5f,
                 [which](const Settings& settings) { return boxFace(stormSky, which, settings.side(512)); });
}

// A layer of torn cloud: tiles along v, fades out towards both sides.
Canvas cloudLayer(const Settings& settings, std::uint32_t seed, float cover) {
  const int side = settings.side(512);
  return paint(side, side, [&](float u, float v) {
    const float x = u * 5, y = v * 5;
    const float wx = fractal(x, y, 5, 4, 0.5f, seed), wy = fractal(x, y, 5, 4, 0.5f, seed + 1);
    const auto density = [&](float dx, float dy) {
      return fractal(x + 0.9f * wx + dx, y + 0.9f * wy + dy, 5, 6, 0.52f, seed + 2);
    };
    const float here = density(0, 0);
    const float relief =
        clamp01(0.5f + 1.6f * (density(0.08f, -0.08f) - here));  // lit from behind, at the rims
    Colour4 colour =
        gradient(stormRamp, 0.15f + 1.0f * relief * relief * relief + 0.12f * smoothStep(0.5f, -0.2f, here));
    colour.a =
        cover * smoothStep(-0.12f, 0.42f, here) * smoothStep(0.02f, 0.25f, u) * smoothStep(0.98f, 0.75f, u);
    return colour;
  });
}

// The swirl above: arms of cloud about a bright eye, clear at the rim.
Canvas swirl(const Settings& settings) {
  const int side = settings.side(512);
  return paint(side, side, [](float u, float v) {
    const float x = (u - 0.5f) * 2, y = (v - 0.5f) * 2, r = std::hypot(x, y);
    const float turn = 2.6f * std::log(r + 0.10f), c = std::cos(turn), s = std::sin(turn);
    const Vector p((x * c - y * s) * 2.6f, (x * s + y * c) * 2.6f, 0);
    const Vector q = warp(p, 0, 0.35f, 1001);
    const float cloud = fractal(q, 0, 6, 0.54f, 1002);
    const float lit = fractal(q + Vector(0.07f, -0.05f, 0), 0, 6, 0.54f, 1002) - cloud;
    const float eye = std::exp(-r * r * 26), glow = std::exp(-r * 3.2f);
    // Dark where heads stand against it, low over the horizon.
    const float low = 1 - 0.34f * smoothStep(0.25f, 0.62f, r);
    Colour4 colour = gradient(
        stormRamp, low * (0.10f + 0.24f * smoothStep(-0.4f, 0.5f, cloud) + 6.4f * std::max(0.0f, lit)) +
                       0.62f * glow + 0.7f * eye);
    colour.a = smoothStep(0.99f, 0.62f, r + 0.10f * cloud);
    return colour;
  });
}

// --- The crow

// A feather in the left half, its root below: barbs run from the quill to edges that catch the light.
Colour4 featherColour(float x, float t) {
  const float side = std::fabs(x);
  const float barb = 0.5f + 0.5f * std::sin((t * 4 - side) * 38);
  const float quill = std::exp(-x * x * 500) * smoothStep(1, 0.3f, t);
  const float gloss = std::exp(-(x - 0.4f) * (x - 0.4f) * 12) * (0.5f + 0.5f * std::sin(t * 5));
  return gradient(stormRamp, (0.13f + 0.05f * barb + 0.14f * quill + 0.19f * gloss +
                              0.15f * smoothStep(0.7f, 0.98f, side)) *
                                 (0.6f + 0.4f * smoothStep(0, 0.5f, t)));
}

// The trunk in the right half, unrolled: rows of small feathers from tail to head, then the beak; u = 1/4 is
// its back.
Colour4 trunkColour(float u, float t) {
  const float row = t * 18, across = u * 14 + 0.5f * std::floor(row);
  const float x = 2 * (across - std::floor(across)) - 1, y = row - std::floor(row);
  const float scale =
      smoothStep(0.75f, 1.0f, std::hypot(x, 1 - y)) * smoothStep(1.35f, 1.0f, std::hypot(x, 1 - y));
  const float back = 0.5f + 0.5f * std::sin(2 * pi * u);
  if (t > 0.80f) return gradient(stormRamp, 0.12f + 0.22f * back * back);
  const float eye = std::hypot(std::min(std::fabs(u - 0.06f), std::fabs(u - 0.44f)) * 3.2f, t - 0.66f);
  const Colour4 plumes = gradient(stormRamp, 0.14f + 0.13f * scale + 0.19f * back * back);
  return mix(plumes, gradient(alarmRamp, 0.75f), smoothStep(0.03f, 0.018f, eye));
}

Canvas crowPicture(const Settings& settings) {
  const int side = settings.side(512);
  return paintSmooth(side, side, 2, [](float u, float v) {
    return u < 0.5f ? featherColour((u - 0.25f) / 0.23f, 1 - v) : trunkColour(2 * u - 1, 1 - v);
  });
}

// --- Fire and light

// A tongue of flame: a warped blob, hot at its heart, empty at the border.
Canvas flame(const Settings& settings, std::uint32_t seed) {
  const int side = settings.side(128);
  return paintSmooth(side, side, 2, [seed](float u, float v) {
    const float x = (u - 0.5f) * 2, y = (v - 0.5f) * 2;
    const float lick = fractal(x * 1.4f, y * 1.0f + 5, 0, 4, 0.5f, seed);
    const float r = std::hypot(x * 1.1f + 0.4f * lick * (0.4f - y), y * 0.9f + 0.3f * lick);
    const float torn = fractal(x * 2.2f + lick, y * 1.8f - lick, 0, 3, 0.5f, seed + 7);
    const float empty = smoothStep(0.97f, 0.55f, std::hypot(x, y));
    // A heart in a skirt of glow, wide enough for many to run into one flame.
    const float heart = smoothStep(0.75f, 0.0f, r + 0.2f * torn),
                skirt = std::pow(clamp01(1 - r / 0.95f), 1.6f);
    return gradient(emberRamp, (0.58f * heart * heart + 0.36f * skirt) * empty);
  });
}

// Across u: a white core in red; along v a little uneven. Black at both sides.
Canvas beamPicture(const Settings& settings) {
  const int width = settings.side(64), height = settings.side(128);
  return paint(width, height, [](float u, float v) {
    const float x = std::fabs(u - 0.5f) * 2;
    const float pulse = 0.8f + 0.2f * gradientNoise(0.5f, v * 16, 16, 1021);
    const float light = 1.05f * std::exp(-x * x * 60) + 0.52f * pulse * std::pow(clamp01(1 - x), 2.2f);
    return gradient(alarmRamp, light * smoothStep(1, 0.8f, x));
  });
}

}  // namespace

Products stormPictures() {
  Products all{
      face("bot", SkyFace::bottom),
      face("north", SkyFace::north),
      face("west", SkyFace::west),
      face("south", SkyFace::south),
      face("east", SkyFace::east),
      picture("skull_clouds", PictureKind::maskedJpeg, 2,
              [](const Settings& settings) { return cloudLayer(settings, 1041, 0.7f); }),
      picture("skull_swirl", PictureKind::maskedJpeg, 2, swirl),
      picture("skull_beam", PictureKind::jpeg, 0.1f, beamPicture),
      picture("crow", PictureKind::jpeg, 1, crowPicture),
      // The player draws lightning into it: always of this size, always dark at first.
      picture("spark", PictureKind::bmp, 0.1f, [](const Settings&) { return Canvas(128, 128, black); }),
  };
  for (int i = 0; i < 4; ++i)
    all.push_back(
        picture("flare_fire" + std::to_string(i + 1), PictureKind::bmp, 0.3f, [i](const Settings& settings) {
          return flame(settings, static_cast<std::uint32_t>(1061 + 20 * i));
        }));
  return all;
}

}  // namespace vex
