#include <algorithm>
#include <cmath>
#include <vector>

#include "production/geometry/isosurface.h"
#include "production/image/filter.h"
#include "production/image/noise3.h"
#include "production/models/water_parts.h"
#include "production/textures/palette.h"

// Stacks that the sea has left of a coast: bundles of columns, worn to needles, and one arch.

namespace vex::water {

using namespace image;
using namespace geometry;

namespace {

struct Column {
  float x, z;  // its foot from the stack's
  float height, foot, head;
  float leanX, leanZ;  // of its head from its foot
};

struct Stack {
  float x, z, size;  // all measures times this
  std::vector<Column> columns;
  float cell;
};

const std::vector<Stack>& stacks() {
  static const std::vector<Stack> all{
      // Two needles on the left, the farther one high.
      {-330,
       -150,
       1.0f,
       {{0, 0, 215, 44, 7, 10, -4},
        {-34, 14, 128, 34, 8, -14, 4},
        {30, 18, 84, 28, 7, 6, 6},
        {6, 36, 46, 30, 10, 4, 8}},
       11},
      {-500,
       -470,
       1.5f,
       {{0, 0, 250, 50, 9, -14, 0}, {44, 10, 176, 40, 8, 12, 0}, {-46, 20, 92, 40, 12, -10, 0}},
       18},
      // A broad one on the right with a broken crown.
      {390,
       -230,
       1.2f,
       {{0, 0, 190, 58, 20, 8, 0},
        {-46, 12, 142, 40, 9, -6, 2},
        {48, 8, 160, 40, 7, 16, 0},
        {16, 46, 76, 40, 14, 0, 12}},
       14},
      // Far needles.
      {180, -720, 1.6f, {{0, 0, 170, 42, 6, -8, 0}, {46, 0, 96, 34, 7, 6, 0}}, 20},
      {700, -760, 2.0f, {{0, 0, 190, 60, 10, 14, 0}, {-60, 10, 110, 46, 12, -6, 0}}, 26},
      {-980, -640, 2.0f, {{0, 0, 150, 64, 14, -10, 0}, {60, 0, 210, 48, 8, 8, 0}}, 26},
      // Near ones, low, for the cameras to look past.
      {-250,
       205,
       0.6f,
       {{0, 0, 120, 36, 6, -8, 4}, {26, 8, 76, 30, 6, 8, 6}, {-30, 10, 52, 28, 9, -8, 6}},
       9},
      {300,
       175,
       0.6f,
       {{0, 0, 150, 40, 6, 12, 0}, {-28, 12, 92, 30, 6, -6, 6}, {24, 22, 54, 32, 9, 10, 6}},
       9},
  };
  return all;
}

// Prisms side by side that have broken off at different heights and stand out by different lengths.
float breakUp(Vector& q, float seed) {
  // Weather has bent their joints.
  const float bent = 0.30f * gradientNoise(Vector(seed, q.y * 0.030f, 0.5f), 0, 960) +
                     0.12f * gradientNoise(Vector(seed, q.y * 0.11f, 0.5f), 0, 959);
  const NoiseCell prism =
      cellularNoise(Vector(q.x * 0.052f + seed + bent, 0.3f, q.z * 0.052f - 0.7f * bent), 0, 961);
  q.y += smoothStep(4, 50, q.y) * 62 * (prism.id - 0.5f);
  return 5 * (prism.id - 0.5f) + 3.5f * smoothStep(0.25f, 0.0f, prism.second - prism.nearest);
}

// The arch: two legs and what the sea has left between them.
constexpr float archX = -120, archZ = -640;

float archDistance(const Vector& p) {
  Vector q = p - Vector(archX, 0, archZ);
  const Vector cell = q * 0.6f;
  Vector broken = cell;
  const float rough = 1.7f * breakUp(broken, 7.7f);
  // The crown is broken, the vault below it is worn round.
  q.y += (broken.y - cell.y) * 1.3f * smoothStep(150, 240, q.y);
  float d = taper(q, Vector(-140, -60, 0), Vector(-92, 210, 6), 66, 40);
  d = smoothJoin(d, taper(q, Vector(-196, -60, 20), Vector(-170, 90, 10), 40, 14), 20);
  d = smoothJoin(d, taper(q, Vector(138, -60, 10), Vector(112, 190, 0), 44, 24), 26);
  d = smoothJoin(d, taper(q, Vector(-104, 236, 4), Vector(30, 226, 0), 50, 26), 30);
  d = smoothJoin(d, taper(q, Vector(30, 226, 0), Vector(122, 196, 0), 26, 24), 20);
  d = smoothJoin(d, taper(q, Vector(-112, 200, 0), Vector(-128, 338, 0), 38, 8), 24);
  return smoothJoin(d, taper(q, Vector(-62, 240, 0), Vector(-56, 300, 0), 26, 7), 14) + rough;
}

float worn(float d, const Vector& p, float size) {
  // Level beds and what frost has taken; at the sea they stand on a broken foot.
  const Vector q = p * (1 / size);
  const float beds = fractal(Vector(q.x * 0.012f, q.y * 0.075f, q.z * 0.012f), 0, 2, 0.5f, 962);
  const float lumps = fractal(q * 0.035f, 0, 3, 0.5f, 963);
  const float foot = std::exp(-std::pow((p.y - bedHeight) / 12, 2.0f));
  return d + size * (2.5f * beds + 5 * lumps) - 7 * foot;
}

Surface stone(const Solid& solid, const Bounds& bounds, float cell) {
  IsoOptions options;
  options.bounds = bounds;
  options.cell = cell;
  options.relax = 2;
  options.closed = false;
  return compacted(isosurface(solid, options));
}

Surface stackSurface(const Stack& stack) {
  const auto solid = [&stack](const Vector& p) {
    Vector q = (p - Vector(stack.x, 0, stack.z)) * (1 / stack.size);
    float d = breakUp(q, stack.x);
    float own = 1e9f;
    for (const Column& column : stack.columns)
      own = smoothJoin(
          own,
          taper(q, Vector(column.x, -40, column.z),
                Vector(column.x + column.leanX, column.height - column.head, column.z + column.leanZ),
                column.foot, column.head),
          5);
    d += own;
    return worn(d * stack.size, p, stack.size);
  };
  float reach = 0, tall = 0;
  for (const Column& column : stack.columns) {
    reach = std::max(reach, std::max(std::fabs(column.x), std::fabs(column.z)) + column.foot + 22);
    tall = std::max(tall, column.height + 44);
  }
  const Vector foot(stack.x, 0, stack.z);
  return stone(solid,
               {foot + Vector(-reach, -44 / stack.size, -reach) * stack.size,
                foot + Vector(reach, tall, reach) * stack.size},
               1.18f * stack.cell);
}

}  // namespace

Surface rocks() {
  Surface all;
  for (const Stack& stack : stacks()) append(all, stackSurface(stack));
  append(all, stone([](const Vector& p) { return worn(archDistance(p), p, 1.7f); },
                    {Vector(archX - 260, -44, archZ - 100), Vector(archX + 220, 390, archZ + 100)}, 20));
  return all;
}

namespace {

// Rocks as plain cones.
struct Cone {
  float x, z, foot, height;
};

const std::vector<Cone>& cones() {
  static const std::vector<Cone> all = [] {
    std::vector<Cone> list{
        {archX - 116, archZ, 72, 420}, {archX - 184, archZ + 14, 40, 120}, {archX + 126, archZ + 4, 48, 340}};
    for (const Stack& stack : stacks())
      for (const Column& column : stack.columns)
        list.push_back({stack.x + column.x * stack.size, stack.z + column.z * stack.size,
                        column.foot * stack.size, column.height * stack.size});
    return list;
  }();
  return all;
}

}  // namespace

float rockShore(const Vector& place) {
  float nearest = 1e9f;
  for (const Cone& cone : cones())
    nearest = std::min(nearest, std::hypot(place.x - cone.x, place.z - cone.z) - cone.foot);
  return nearest;
}

float rockMirrored(const Vector& place, const Vector& way, float slope) {
  float most = 0;
  for (const Cone& cone : cones()) {
    const float x = cone.x - place.x, z = cone.z - place.z;
    const float along = x * way.x + z * way.z, aside = std::fabs(x * way.z - z * way.x);
    if (along <= 0) continue;
    const float wide = cone.foot * (1 - along * slope / cone.height);
    most = std::max(most, smoothStep(4, -4, aside - wide));
  }
  return most;
}

Colour4 rockColour(const BakePoint& p) {
  const float grit = 0.5f + 0.5f * fractal(p.position * 0.045f, 0, 5, 0.6f, 964);
  const float beds =
      0.5f + 0.5f * fractal(Vector(p.position.x * 0.008f, p.position.y * 0.09f, p.position.z * 0.008f), 0, 3,
                            0.5f, 965);
  const float far = smoothStep(150, 950, -p.position.z);
  const NoiseCell prism =
      cellularNoise(Vector(p.position.x * 0.045f, p.position.y * 0.006f, p.position.z * 0.045f), 0, 967);
  const float groove = 0.35f + 0.65f * smoothStep(0.02f, 0.22f, prism.second - prism.nearest);
  const Colour4 stone =
      mix(gradient(steelRamp, 0.20f + 0.20f * grit), gradient(tealRamp, 0.26f + 0.16f * grit), 0.55f) *
      (groove * (0.7f + 0.6f * prism.id) * (0.6f + 0.6f * beds));
  // Too fine for the triangles: what rises towards the moon catches its light.
  const auto chipped = [](const Vector& at) {
    return 5 * fractal(at * 0.06f, 0, 4, 0.6f, 968) +
           3 * fractal(Vector(at.x * 0.02f, at.y * 0.16f, at.z * 0.02f), 0, 2, 0.5f, 969);
  };
  const Vector step(-1.4f, 1.8f, -1.4f);
  const float relief =
      std::clamp(1 + 0.55f * (chipped(p.position) - chipped(p.position + step)), 0.25f, 2.1f);
  // The moon draws the edges that it grazes.
  const float rim = std::pow(std::max(0.0f, p.light.g - 0.18f), 1.2f);
  Colour4 colour =
      (stone * p.light * 2.0f + gradient(tealRamp, 0.80f) * (2.2f * rim * (0.5f + 0.5f * grit))) * relief;
  // Wet stone above the water, a pale line where it breaks, ink below.
  const float swell = 4 * gradientNoise(Vector(p.position.x * 0.03f, 0, p.position.z * 0.03f), 0, 966);
  const float wet = smoothStep(40, 8, p.position.y + 2 * swell);
  const float line = std::exp(-std::pow((p.position.y - bedHeight - 2 - swell) / 4.5f, 2.0f));
  colour = colour * (1 - 0.6f * wet) + gradient(tealRamp, 0.66f) * (0.7f * line * (0.3f + 0.7f * grit));
  // Far ones stand in the haze.
  Vector way = p.position;
  way.y = std::max(0.0f, way.y) * 0.4f;
  return mix(colour, skyColour(unit(way)) * 0.60f, 0.66f * far * smoothStep(-6, 10, p.position.y));
}

}  // namespace vex::water
