#include <cmath>

#include "production/geometry/forms.h"
#include "production/image/environment.h"
#include "production/image/filter.h"
#include "production/image/noise3.h"
#include "production/models/model.h"
#include "production/textures/palette.h"

// Liquid mirrors about the middle: a knot, a ball in it and drops around it, one mesh, since the player
// kneads only the first. They mirror a hall of fire.

namespace vex {

using namespace image;
using namespace geometry;

namespace {

constexpr float knotRadius = 96, knotSwing = 40;
constexpr float tubeRadius = 15;
constexpr float ballRadius = 33;

struct Drop {
  Vector place;
  float radius;
};
const Drop drops[]{{{118, 74, 38}, 15},
                   {{-104, 88, -46}, 11},
                   {{-128, -70, 34}, 17},
                   {{92, -96, -30}, 12},
                   {{14, 122, 30}, 9}};

// A curve that goes twice around the y axis and three times through its own ring.
struct KnotPlace {
  Vector middle, outwards;  // of the ring's section
};
KnotPlace knotPlace(float t) {
  const float around = 2 * 2 * pi * t, through = 3 * 2 * pi * t;
  const Vector spoke(std::cos(around), 0, std::sin(around));
  const Vector outwards = spoke * std::cos(through) + Vector(0, 1, 0) * std::sin(through);
  return {spoke * knotRadius + outwards * knotSwing, outwards};
}

Surface knot() {
  SheetEnds ends;
  ends.closedAcross = ends.closedAlong = true;
  return sheet(
      20, 150,
      [](float s, float t) {
        const KnotPlace here = knotPlace(t);
        const Vector along = unit(knotPlace(t + 0.001f).middle - knotPlace(t - 0.001f).middle);
        const Vector out = unit(here.outwards - along * dot(here.outwards, along));
        const Vector side = cross(along, out);
        const float swelling =
            tubeRadius * (1 + 0.22f * std::sin(2 * pi * 5 * t) + 0.14f * std::cos(2 * pi * 7 * t));
        const float turn = 2 * pi * s;
        return here.middle + (out * std::cos(turn) + side * std::sin(turn)) * swelling;
      },
      ends);
}

// Tall windows with fire behind them, all round.
float windows(float turn, float rise) {
  constexpr float count = 5;
  const float across = turn / (2 * pi) * count;
  const float off = std::fabs(across - std::floor(across) - 0.5f) * 2;  // 0 in the middle, 1 between two
  const float width = 0.62f * std::sqrt(clamp01((0.78f - rise) / 0.42f));
  const float sill = smoothStep(0.07f, 0.1f, rise);
  return smoothStep(0.04f, -0.04f, off - width) * sill;
}

Colour4 fireHall(const Vector& d) {
  const float turn = std::atan2(d.z, d.x) + pi, rise = d.y;
  const float smoke = fractal(d * 2.6f, 0, 4, 0.5f, 851);
  // Vault and floor.
  float heat = 0.1f + 0.07f * smoke;
  heat += 0.5f * std::exp(-std::fabs(rise) * 9) * (0.7f + 0.3f * smoke);
  if (rise < 0) {
    const float crack = ridges(d.x / (0.25f - rise) * 2.1f, d.z / (0.25f - rise) * 2.1f, 0, 4, 0.5f, 852);
    heat += smoothStep(0.5f, 0.95f, crack) * smoothStep(0.0f, -0.12f, rise) * 0.55f;
  }
  const float glass = windows(turn, rise);
  heat = mix(heat, 0.66f + 0.14f * smoke + 0.18f * (0.6f - rise), glass * (0.75f + 0.25f * std::sin(turn)));
  Colour4 colour = gradient(emberRamp, heat);
  // One pale lamp above on the left: where the light comes from.
  const float lamp = dot(d, unit(Vector(-0.45f, 0.84f, -0.3f)));
  colour = colour + boneWhite * (smoothStep(0.93f, 0.955f, lamp) + 0.35f * smoothStep(0.6f, 1.0f, lamp));
  return {clamp01(colour.r), clamp01(colour.g), clamp01(colour.b)};
}

Model wobbel(const Settings& settings) {
  Surface all = knot();
  append(all, geodesic(ballRadius, 3));
  for (const Drop& drop : drops) append(all, placed(geodesic(drop.radius, 3), moved(drop.place)));

  Stage stage;
  stage.materials = {{.name = "mirror", .texture = "envmapspace", .environment = true, .ambient = {1, 1, 1}}};
  stage.meshes = {{.name = "mirrors", .surface = withoutMapping(all), .material = "mirror"}};
  stage.lights = {{.name = "omni01", .position = Vector(0, 300, 300)}};
  stage.cameras = {{.name = "camera01",
                    .position = Vector(400, 0, 0),
                    .target = Vector(0, 0, 0),
                    .fieldDegrees = 56,
                    .far = 1500}};
  // Small drops mirror all of it: only broad shapes are left.
  const int side = settings.side(256);
  return {stage,
          {blur(sphereMap(fireHall, lookTowards(1.2f, 0), side, 3), static_cast<float>(side) / 44,
                EdgeMode::clamp)}};
}

}  // namespace

Products wobbelModel() {
  return {model("wobbel", {{"envmapspace", PictureKind::jpeg}}, 2, wobbel)};
}

}  // namespace vex
