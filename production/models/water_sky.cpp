#include <algorithm>
#include <cmath>

#include "production/geometry/forms.h"
#include "production/geometry/mapping.h"
#include "production/image/filter.h"
#include "production/image/noise.h"
#include "production/image/noise3.h"
#include "production/models/water_parts.h"
#include "production/textures/palette.h"

// The sky, the bed under the water that hides the deep, and the pictures of light.

namespace vex::water {

using namespace image;
using namespace geometry;

namespace {

constexpr float moonSize = 0.042f;  // radians, its radius

// More of the picture for what lies towards -z and near the horizon, where the cameras look.
constexpr float spread = 0.72f, rise = 0.62f;

Uv skyMap(const Vector& d) {
  const float angle = std::atan2(d.x, -d.z) / pi;  // -1 to 1, 0 towards -z
  const float up = std::clamp(std::asin(std::clamp(d.y, -1.0f, 1.0f)) / (pi / 2), 0.0f, 1.0f);
  return {0.5f + 0.498f * std::copysign(std::pow(std::fabs(angle), spread), angle),
          0.5f + 0.5f * (0.004f + 0.992f * std::pow(up, rise))};
}

// Share of the lamp's light that a surface at a place gets.
float lampShare(const Vector& place, const Vector& normal) {
  return std::max(0.12f, dot(unit(lampPlace - place), normal));
}

// What a picture must hold so that the lamp shows the colour, in its hue where that is too much.
Colour4 lampLit(const Colour4& colour, const Vector& place, const Vector& normal) {
  const Colour4 full = colour * (1 / lampShare(place, normal));
  return full * (1 / std::max({1.0f, full.r, full.g, full.b}));
}

float bedShare(float radius) {
  return std::pow(radius / (skyRadius * 1.01f), 0.55f);
}

}  // namespace

Colour4 skyColour(const Vector& d) {
  const float cosine = dot(d, unit(moonPlace)), angle = std::acos(std::clamp(cosine, -1.0f, 1.0f));
  const float east = std::atan2(d.x, -d.z) - std::atan2(moonPlace.x, -moonPlace.z);
  const float low = std::exp(-std::max(0.0f, d.y) * 5.5f);
  // Long clouds, lit from behind about the moon.
  const Vector q(d.x * 2.2f, d.y * 8, d.z * 2.2f);
  const float cloud = fractal(warp(q, 0, 0.5f, 970), 0, 5, 0.55f, 971);
  const float bank = smoothStep(-0.15f, 0.45f, cloud) * smoothStep(0.02f, 0.12f, d.y);
  const float glow = 0.66f * std::exp(-angle * 2.2f) + 0.84f * std::exp(-angle * 6.5f);
  float value = 0.10f + 0.42f * low * (0.50f + 0.50f * std::exp(-east * east * 1.5f)) + glow;
  value *= 1 - 0.42f * bank * (1 - 0.4f * std::exp(-angle * 5));
  value += 0.16f * std::exp(-angle * 3.6f) * std::exp(-std::pow((cloud - 0.02f) * 6, 2.0f)) *
           smoothStep(0.02f, 0.10f, d.y);
  value *= 1.32f / (1 + 0.85f * value);  // the disc stays the brightest
  const float disc = smoothStep(moonSize * 1.10f, moonSize * 0.90f, angle);
  const float seas = 0.5f + 0.5f * fractal(d * 34, 0, 3, 0.5f, 972);
  Colour4 colour = gradient(tealRamp, value);
  return mix(colour, Colour4{0.96f, 1.0f, 0.99f} * (0.74f + 0.26f * seas), disc * (1 - 0.2f * bank));
}

namespace {

// The picture's upper half, v upwards from the horizon.
Colour4 skyTexel(float u, float v) {
  const float side = (u - 0.5f) / 0.498f,
              angle = std::copysign(std::pow(std::min(1.0f, std::fabs(side)), 1 / spread), side) * pi;
  const float up = std::pow(std::clamp((v - 0.004f) / 0.992f, 0.0f, 1.0f), 1 / rise) * pi / 2;
  const Vector d(std::sin(angle) * std::cos(up), std::sin(up), -std::cos(angle) * std::cos(up));
  return lampLit(skyColour(d), d * skyRadius, -d);
}

// Its lower left quarter, v down from far to near.
Colour4 bedTexel(float u, float v) {
  const float x = 2 * u - 1, z = 2 * v - 1, share = std::hypot(x, z);
  const float radius = std::pow(share, 1 / 0.55f) * skyRadius * 1.01f;
  const float scale = share < 1e-4f ? 0 : radius / share;
  const Vector place(x * scale, bedHeight, z * scale);
  const Vector out = unit(Vector(place.x, 0, place.z + 1e-3f));
  // The moon's path runs towards where the cameras are.
  const Vector way = unit(Vector(moonPlace.x, 0, moonPlace.z));
  const Vector fromEye = place - Vector(40, 0, 300);
  const float along = dot(fromEye, way), across = dot(fromEye, Vector(-way.z, 0, way.x));
  const float width = 78 + 0.15f * std::max(0.0f, along);
  const float streaks =
      0.5f + 0.5f * fractal(Vector(place.x * 0.011f, 0, place.z * 0.050f), 0, 5, 0.62f, 973);
  const float path = std::exp(-std::pow(across / width, 2.0f)) * smoothStep(-60, 240, along) *
                     (0.22f + 0.9f * smoothStep(0.34f, 0.66f, streaks));
  const float swell = 0.5f + 0.5f * fractal(Vector(place.x * 0.003f, 0, place.z * 0.007f), 0, 4, 0.5f, 974);
  const float far = smoothStep(180, 0.9f * skyRadius, radius);
  Colour4 water = gradient(tealRamp, 0.04f + 0.10f * swell + 1.7f * path);
  // Rocks stand on their heads in it, and where it breaks on them it foams.
  const Vector seen(place.x - 40, 0, place.z - 330);
  const float sway = 14 * fractal(Vector(place.x * 0.01f, 0, place.z * 0.09f), 0, 3, 0.5f, 978);
  water = mix(water, gradient(tealRamp, 0.05f),
              0.8f * rockMirrored(place + Vector(sway, 0, 0), unit(seen), 35 / seen.length()));
  const float shore = rockShore(place), froth = 0.5f + 0.5f * fractal(place * 0.06f, 0, 4, 0.6f, 979);
  water = water + gradient(tealRamp, 0.78f) * (std::exp(-std::pow(std::max(0.0f, shore) / 22, 2.0f)) *
                                               smoothStep(0.25f, 0.75f, froth));
  const Colour4 colour =
      mix(water, skyColour(unit(out + Vector(0, 0.012f, 0))) * 0.95f, far * (1 - 0.25f * path));
  return lampLit(colour, place, Vector(0, 1, 0));
}

}  // namespace

Surface skyDome() {
  constexpr int around = 40, along = 9;
  const Surface dome =
      sheet(around, along,
            [](float s, float t) {
              // The seam lies behind the cameras; rings are closer near the horizon.
              const float angle = 2 * pi * (s - 0.5f), up = pi / 2 * std::pow(t, 1.5f) - 0.02f * (1 - t);
              return Vector(std::sin(angle) * std::cos(up), std::sin(up), -std::cos(angle) * std::cos(up)) *
                     skyRadius;
            },
            {.poleAbove = true});
  // Corners keep to their own side of the seam.
  Surface all = mapped(withoutMapping(dome), [](const Vector& p) { return skyMap(unit(p)); });
  for (Triangle& triangle : all.triangles) {
    float middle = 0;
    for (const int point : triangle.points) middle += all.points[static_cast<std::size_t>(point)].x;
    for (std::size_t k = 0; k < 3; ++k) {
      const Vector& p = all.points[static_cast<std::size_t>(triangle.points[k])];
      if (p.z > 0 && std::fabs(p.x) < 1) triangle.uv[k].u = middle > 0 ? 0.998f : 0.002f;
      if (std::hypot(p.x, p.z) < 1)
        triangle.uv[k].u =
            0.5f + 0.498f * std::copysign(std::pow(std::fabs(std::atan2(middle, 1.0f)) / pi, spread), middle);
    }
  }
  return all;
}

Surface seaBed() {
  constexpr int around = 40, rings = 16;
  const Surface bed = sheet(around, rings,
                            [](float s, float t) {
                              const float radius = skyRadius * 1.01f * std::pow(1 - t, 2.0f),
                                          angle = 2 * pi * s;
                              return Vector(radius * std::cos(angle), bedHeight, -radius * std::sin(angle));
                            },
                            {.closedAcross = true, .poleAbove = true});
  return mapped(withoutMapping(bed), [](const Vector& p) {
    const float radius = std::hypot(p.x, p.z);
    const float scale = radius < 1e-3f ? 0 : 0.5f * bedShare(radius) / radius;
    return Uv{0.25f + 0.5f * p.x * scale, 0.25f - 0.5f * p.z * scale};
  });
}

Canvas skyPicture(const Settings& settings) {
  const int side = settings.side(1024);
  return paint(side, side, [](float u, float v) {
    return v < 0.5f ? skyTexel(u, 1 - 2 * v) : bedTexel(std::min(1.0f, 2 * u), 2 * v - 1);
  });
}

// A net of light, as waves gather it. A wave shifts the picture by a tenth of its width, and the plane below
// it sways by a fifth.
Canvas lightPicture(const Settings& settings) {
  const int side = settings.side(256);
  return paint(side, side, [](float u, float v) {
    const float r = std::hypot(2 * u - 1, 2 * v - 1);
    const float bend = 0.5f * fractal(u * 6, v * 6, 6, 3, 0.5f, 975);
    const float net = std::pow(1 - std::fabs(gradientNoise(u * 9 + bend, v * 9 - bend, 0, 976)), 6.0f);
    const float fine = std::pow(1 - std::fabs(gradientNoise(u * 17 - bend, v * 17 + bend, 0, 977)), 6.0f);
    return gradient(tealRamp, smoothStep(0.94f, 0.15f, r) * (0.03f + 0.24f * net * net + 0.16f * fine));
  });
}

Canvas rayPicture(const Settings& settings) {
  const int side = settings.side(256);
  return paint(side, side, [](float u, float v) {
    const float x = 2 * u - 1;
    const float fade = std::pow(std::max(0.0f, 1 - x * x), 3.0f) * std::exp(-x * x * 2.0f);
    // Around a ring, so that it repeats upwards.
    const auto ring = [v](float across, float radius) {
      return Vector(across, radius * std::cos(2 * pi * v), radius * std::sin(2 * pi * v));
    };
    const float broad = valueNoise(ring(u * 7, 0.3f), 0, 981), fine = valueNoise(ring(u * 22, 0.3f), 0, 982);
    const float drift = 0.5f + 0.5f * fractal(ring(u * 5, 0.6f), 0, 4, 0.5f, 983);
    const float light = 0.03f + 0.13f * smoothStep(0.3f, 0.95f, 0.6f * broad + 0.45f * fine) + 0.04f * drift +
                        0.20f * std::exp(-x * x * 16);
    // White in the middle, of the sea's hue towards the sides.
    return mix(Colour4{0.40f, 0.98f, 0.92f}, Colour4{0.93f, 1, 0.97f}, std::exp(-x * x * 9)) * (fade * light);
  });
}

}  // namespace vex::water
