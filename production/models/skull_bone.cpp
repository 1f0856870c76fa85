#include <cmath>

#include "production/geometry/forms.h"
#include "production/geometry/isosurface.h"
#include "production/image/noise3.h"
#include "production/models/skull_parts.h"

// The skull as distances: what a face has, then what weather has done to it.

namespace vex::skull {

namespace {

const Vector hinge(0, 88, -8);  // of the jaw, in the skull's own axes
const Vector socketMiddle(33, 124, 62);

Vector folded(const Vector& p) {
  return Vector(std::fabs(p.x), p.y, p.z);
}

// Rock that has split: hollows, strata and cracks between blocks, in units outwards.
float weathering(const Vector& p, float strength) {
  const float hollows = 2.6f * fractal(p * 0.035f, 0, 3, 0.5f, 901);
  const NoiseCell block = cellularNoise(warp(p * 0.021f, 0, 0.5f, 902), 0, 903);
  const float split = smoothStep(0.0f, 0.35f, gradientNoise(p * 0.015f, 0, 909));  // only here and there
  const float crack = split * smoothStep(0.09f, 0.0f, block.second - block.nearest);
  const float strata = std::sin(p.y * 0.55f + 2.5f * gradientNoise(p * 0.02f, 0, 904));
  return strength * (hollows - 2.6f * crack + 0.6f * strata + 1.6f * split * (block.id - 0.5f));
}

// One long wound from the crown over the brow.
float wound(const Vector& p) {
  const float line = p.x - 20 - 0.22f * (p.y - 180) -
                     9 * gradientNoise(Vector(p.y * 0.05f, 0, 0.5f), 0, 905) -
                     3 * gradientNoise(Vector(p.y * 0.17f, 0.5f, 0), 0, 906);
  const float width = 2.2f + 2.2f * smoothStep(150, 215, p.y);
  const float reach = smoothStep(134, 150, p.y) * smoothStep(0, 30, p.z);
  return 7 * reach * std::exp(-line * line / (width * width));
}

// --- Teeth: pegs that grow out of the jaws.

struct Tooth {
  float x, width, length;  // of one side; lengths differ on the other, where one is gone
};
constexpr Tooth teeth[] = {
    {5.4f, 5.0f, 25}, {15.6f, 4.6f, 23}, {24.6f, 4.8f, 26}, {32.0f, 4.8f, 21}, {37.4f, 4.6f, 19}};

float toothPlace(float x) {  // z of the dental arch
  return 84 - 0.024f * x * x;
}

// From its root, `down` or up.
Surface tooth(const Vector& root, const Vector& tip, float width) {
  const Surface peg = tube(
      smoothPath({root, mix(root, tip, 0.5f), tip}, 4), 7,
      [width](float t) { return width * (0.86f + 0.42f * t * (1 - t) - 0.22f * t * t); }, TubeEnd::round);
  return withoutMapping(peg);
}

Surface teethOf(bool upper) {
  Surface all;
  for (int side = -1; side <= 1; side += 2)
    for (int i = 0; i < 5; ++i) {
      const Tooth& t = teeth[i];
      const bool gone = upper ? side < 0 && i == 2 : side > 0 && i == 1;
      const float scale = upper ? 1 : 0.93f, x = t.x * scale, z = toothPlace(x) - (upper ? 0 : 4);
      const float length =
          t.length * (gone ? 0.45f : 0.9f + 0.14f * hashUnit(i, side, 915)) * (upper ? 1 : 0.85f);
      const float root = upper ? 63 : 14, way = upper ? -1.0f : 1.0f;
      append(all, tooth(Vector(side * (x - 0.4f), root, z - 4), Vector(side * x, root + way * length, z),
                        t.width * scale));
    }
  return all;
}

float craniumDistance(const Vector& p) {
  const Vector q = folded(p);
  float d = ellipsoid(q, Vector(0, 154, -16), Vector(77, 80, 94));
  d = smoothJoin(d, ellipsoid(q, Vector(0, 172, 22), Vector(62, 54, 50)), 22);
  d = smoothCut(d, ellipsoid(q, Vector(88, 128, 30), Vector(24, 34, 40)), 18);  // temples
  // Brow: low in the middle, frowning.
  d = smoothJoin(d, taper(q, Vector(4, 143, 74), Vector(40, 152, 64), 10, 9), 9);
  d = smoothJoin(d, taper(q, Vector(40, 152, 64), Vector(63, 132, 44), 9, 7), 9);
  // Face, cheekbones with their arches, upper jaw.
  d = smoothJoin(d, ellipsoid(q, Vector(0, 98, 48), Vector(39, 40, 35)), 15);
  d = smoothJoin(d, taper(q, Vector(27, 98, 68), Vector(58, 107, 44), 10, 8), 9);
  d = smoothJoin(d, taper(q, Vector(58, 107, 44), Vector(75, 112, -12), 6.5f, 6), 6);
  d = smoothJoin(d, ellipsoid(q, Vector(0, 71, 58), Vector(36, 19, 28)), 9);
  d = smoothJoin(d, taper(q, Vector(0, 138, 74), Vector(0, 118, 88), 7, 6), 6);  // bridge of the nose
  d = smoothCut(d, ellipsoid(q, Vector(60, 82, 38), Vector(21, 21, 34)), 10);    // under the cheeks
  // Sockets, deeper inside, drooping outwards.
  const Vector s(q.x - socketMiddle.x, q.y - socketMiddle.y + 0.20f * (q.x - socketMiddle.x), q.z);
  d = smoothCut(d, ellipsoid(s, Vector(0, 0, 76), Vector(25, 20, 36)), 5);
  d = smoothCut(d, ellipsoid(s, Vector(-3, -1, 46), Vector(20, 17, 24)), 6);
  // The nose: two pears beside a thin wall.
  d = smoothCut(d, taper(q, Vector(4.5f, 107, 86), Vector(10, 84, 82), 5, 11.5f), 3);
  d = smoothJoin(d, taper(q, Vector(0, 112, 74), Vector(0, 80, 76), 1.6f, 2.2f), 2);
  // The mouth from below.
  d = smoothCut(d, ellipsoid(q, Vector(0, 48, 34), Vector(25, 30, 42)), 6);
  // A piece of the temple is broken out.
  const Vector hole(-56, 196, 30);
  d = smoothCut(d, ball(p, hole, 27 + 7 * fractal(p * 0.06f, 0, 3, 0.6f, 907)), 2);
  return d - weathering(p, 1 - 0.6f * smoothStep(84, 66, p.y)) + wound(p);
}

float jawDistance(const Vector& p) {
  const Vector q = folded(p);
  float d = taper(q, Vector(66, 92, -10), Vector(61, 44, 4), 8, 10);
  d = smoothJoin(d, taper(q, Vector(62, 88, -2), Vector(58, 60, 22), 5, 8), 8);  // the muscle's horn
  d = smoothJoin(d, taper(q, Vector(61, 42, 6), Vector(40, 17, 52), 11, 12), 9);
  d = smoothJoin(d, taper(q, Vector(40, 17, 52), Vector(12, 9, 80), 12, 14), 9);
  d = smoothJoin(d, ellipsoid(q, Vector(0, 6, 84), Vector(20, 13, 13)), 9);
  // Cracked through on one side.
  const float line = p.z - 40 - 0.8f * (p.y - 24) - 6 * gradientNoise(p * 0.08f, 0, 908);
  const float crack = p.x > 0 ? 6 * std::exp(-line * line / 8) : 0;
  return d - weathering(p, 0.6f) + crack;
}

Surface body(const Solid& solid, const Bounds& bounds, float cell, const Surface& itsTeeth) {
  IsoOptions options;
  options.bounds = bounds;
  options.cell = cell;
  Surface all = compacted(isosurface(solid, options));
  append(all, itsTeeth, toothPart);
  return placed(all, skullPlacement());
}

}  // namespace

Placement skullPlacement() {
  return turnedX(-7) >> turnedZ(5) >> turnedY(-15) >> moved(0, -2, 0);
}

Surface cranium() {
  return body(craniumDistance, {Vector(-86, 30, -116), Vector(86, 240, 104)}, 6.4f, teethOf(true));
}

Surface jaw() {
  return placed(body(jawDistance, {Vector(-80, -12, -28), Vector(80, 106, 104)}, 6.2f, teethOf(false)),
                jawOpening(6));
}

Vector socket(float side) {
  return transformed(skullPlacement(), Vector(side * 32, 123, 58));
}

Vector beamFoot(float side) {
  return transformed(skullPlacement(), Vector(side * 33, 122, 86));
}

Vector jawHinge() {
  return transformed(skullPlacement(), hinge);
}

Placement jawOpening(float degrees) {
  const Vector axis = transformedDirection(skullPlacement(), Vector(1, 0, 0)), at = jawHinge();
  return moved(at * -1) >> turned(axis, degrees * pi / 180) >> moved(at);
}

}  // namespace vex::skull
