#include <cmath>

#include "production/geometry/forms.h"
#include "production/geometry/isosurface.h"
#include "production/geometry/placement.h"
#include "production/image/environment.h"
#include "production/image/filter.h"
#include "production/image/noise3.h"
#include "production/models/model.h"
#include "production/textures/palette.h"

// A mask of liquid metal and drops of it, one mesh, since the player kneads only the first. It mirrors a hall
// of fire; what burns behind it is seen through its eyes and its mouth.

namespace vex {

using namespace image;
using namespace geometry;

namespace {

// --- The mask, looking towards +z; its sides are even, x is folded.

// Swollen by muscle under it.
float faceDistance(const Vector& q) {
  float d = ellipsoid(q, Vector(0, 4, -36), Vector(78, 104, 88));
  d = smoothJoin(d, ellipsoid(q, Vector(0, -84, 8), Vector(24, 30, 34)), 16);        // chin
  d = smoothJoin(d, ellipsoid(q, Vector(46, -8, 26), Vector(24, 17, 22)), 12);       // cheek
  d = smoothJoin(d, taper(q, Vector(6, 30, 54), Vector(66, 62, 10), 14, 9), 8);      // brow, frowning
  d = smoothJoin(d, taper(q, Vector(0, 30, 56), Vector(0, -12, 76), 8, 12), 9);      // nose
  d = smoothJoin(d, ball(q, Vector(12, -14, 62), 9), 6);                             // its wings
  d = smoothJoin(d, taper(q, Vector(0, 36, 56), Vector(0, 92, 20), 7, 5), 8);        // crest
  d = smoothJoin(d, taper(q, Vector(20, -24, 58), Vector(52, -50, 20), 7, 6), 8);    // the fold of a grin
  return smoothJoin(d, taper(q, Vector(0, -58, 58), Vector(30, -64, 44), 9, 6), 9);  // lower lip
}

// Eyes slant upwards, the mouth is a sickle.
float openings(const Vector& q) {
  constexpr float slant = 0.44f;
  const float x = q.x - 33, y = q.y - 14;
  const float along = x * std::cos(slant) + y * std::sin(slant),
              across = y * std::cos(slant) - x * std::sin(slant);
  const float eye = (std::hypot(along / 22, across / 10) - 1) * 10;
  const float lip = (std::hypot(q.x / 50, (q.y + 26) / 36) - 1) * 36,
              above = (std::hypot(q.x / 60, (q.y + 6) / 32) - 1) * 32;
  return std::max(std::min(eye, smoothMeet(lip, -above, 3)), -q.z);
}

float maskDistance(const Vector& p) {
  constexpr float thick = 11, rim = -24;
  const Vector q(std::fabs(p.x), p.y, p.z);
  const float face = faceDistance(q);
  float d = smoothMeet(smoothMeet(face, -(face + thick), 3), rim - q.z, 4);
  d = smoothCut(d, openings(q), 4);
  // It runs off the chin and the jaws.
  const struct {
    float x, y, z, length, thick;
  } runs[] = {{0, -110, 14, 42, 7}, {22, -98, 8, 26, 5.5f}, {47, -76, -4, 34, 5}, {66, -44, -16, 22, 4.5f}};
  for (const auto& run : runs) {
    const Vector from(run.x, run.y + 12, run.z), to(run.x, run.y - run.length, run.z);
    d = smoothJoin(d, taper(q, from, to, run.thick, 0.5f * run.thick), 9);
    d = smoothJoin(d, ball(q, to, run.thick), 5);
  }
  return d;
}

Surface mask() {
  IsoOptions options;
  options.bounds = {Vector(-112, -172, -44), Vector(112, 124, 104)};
  options.cell = 6.1f;
  Surface all = withoutMapping(compacted(isosurface(maskDistance, options)));
  for (const float side : {-1.0f, 1.0f}) {
    const auto along = [&](const std::vector<Vector>& knots, int pieces) {
      std::vector<Vector> path;
      for (const Vector& knot : knots) path.emplace_back(knot.x * side, knot.y, knot.z);
      return smoothPath(path, pieces);
    };
    // Ringed horns.
    append(all, withoutMapping(tube(
                    along({Vector(38, 62, 2), Vector(74, 86, 12), Vector(116, 94, 2), Vector(148, 122, -12),
                           Vector(146, 168, 2)},
                          30),
                    16,
                    [](float t) {
                      return 19 * std::pow(1 - t, 0.75f) *
                                 (1 + 0.07f * std::sin(t * 70) * smoothStep(0.9f, 0.5f, t)) +
                             0.3f;
                    },
                    TubeEnd::point)));
    const auto addFang = [&](float x, float y, float z, float length, float thick) {
      append(
          all,
          withoutMapping(tube(
              along({Vector(x, y + 0.4f * length, z - 3), Vector(x, y, z), Vector(x, y - length, z - 2)}, 6),
              8, [=](float t) { return thick * std::sqrt(1 - t) + 0.2f; }, TubeEnd::point)));
    };
    addFang(9, -38, 54, 12, 5.5f);
    addFang(24, -37, 49, 22, 6.5f);
    addFang(38, -32, 38, 12, 4.5f);
    addFang(16, -62, 50, -15, 5.5f);
    addFang(32, -56, 42, -11, 4.5f);
  }
  return all;
}

// Towards the camera, which begins below it.
const Placement maskPlace = moved(0, -34, 0) >> stretched(0.80f) >> turnedX(4) >> turnedY(72);

struct Drop {
  Vector place;
  float radius;
};
const Drop drops[]{{{118, 74, 38}, 11},
                   {{-104, 88, -46}, 9},
                   {{-96, -100, 34}, 13},
                   {{62, -126, -70}, 10},
                   {{30, -132, 60}, 8}};

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
  Surface all = placed(mask(), maskPlace);
  for (const Drop& drop : drops)
    append(all, placed(withoutMapping(geodesic(drop.radius, 2)), moved(drop.place)));

  Stage stage;
  stage.materials = {{.name = "mirror", .texture = "envmapspace", .environment = true, .ambient = {1, 1, 1}}};
  stage.meshes = {{.name = "mirrors", .surface = all, .material = "mirror"}};
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
