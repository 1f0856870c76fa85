#include <cmath>

#include "production/geometry/forms.h"
#include "production/geometry/isosurface.h"
#include "production/geometry/simplify.h"
#include "production/image/noise3.h"
#include "production/models/skull_parts.h"

// The skull as distances: what a face has, then what weather has done to it. Distances see one side only
// where the skull is even: there x is folded.

namespace vex::skull {

using namespace image;
using namespace geometry;

namespace {

const Vector hinge(0, 100, -8);  // of the jaw, in the skull's own axes
const Vector socketMiddle(34, 123, 62);

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

// A limb of bone; limbs that share an end make arches and rims without a gap.
struct Limb {
  Vector from, to;
  float fromRadius, toRadius, fillet;
};

float withLimbs(float distance, const Vector& folded, std::initializer_list<Limb> limbs) {
  for (const Limb& limb : limbs)
    distance =
        smoothJoin(distance, taper(folded, limb.from, limb.to, limb.fromRadius, limb.toRadius), limb.fillet);
  return distance;
}

float braincase(const Vector& q) {
  float d = ellipsoid(q, Vector(0, 157, -18), Vector(75, 77, 93));
  d = smoothJoin(d, ellipsoid(q, Vector(0, 172, 22), Vector(62, 54, 50)), 22);
  d = smoothJoin(d, ellipsoid(q, Vector(0, 128, -80), Vector(44, 36, 32)), 18);  // back of the head
  d = smoothCut(d, ellipsoid(q, Vector(97, 136, 26), Vector(25, 36, 40)), 16);   // temples
  d = smoothJoin(d, taper(q, Vector(0, 122, -110), Vector(52, 114, -80), 5, 5), 7);
  // The base, and the knob behind the ear.
  d = smoothJoin(d, ellipsoid(q, Vector(0, 98, -14), Vector(46, 16, 48)), 14);
  return smoothJoin(d, taper(q, Vector(58, 112, -34), Vector(56, 82, -28), 14, 8), 10);
}

float craniumDistance(const Vector& p) {
  const Vector q = folded(p);
  float d = braincase(q);
  d = smoothJoin(d, ellipsoid(q, Vector(0, 100, 46), Vector(36, 38, 33)), 14);
  // The upper jaw, and the ridge that holds the last teeth.
  d = smoothJoin(d, ellipsoid(q, Vector(0, 72, 52), Vector(38, 15, 31)), 8);
  d = smoothJoin(d, taper(q, Vector(34, 73, 54), Vector(38, 74, 28), 10, 9), 6);
  d = withLimbs(
      d, q,
      {
          // Brow: low in the middle, frowning; the socket's outer rim hangs from its end.
          {Vector(5, 143, 76), Vector(38, 153, 69), 10, 10, 8},
          {Vector(38, 153, 69), Vector(63, 136, 46), 10, 8, 8},
          {Vector(63, 136, 46), Vector(61, 108, 46), 7, 9, 5},
          // Cheek: the socket's lower rim, the cheekbone, its arch and the arch's root in the temple.
          {Vector(22, 103, 76), Vector(56, 105, 54), 7, 9, 7},
          {Vector(56, 104, 54), Vector(37, 78, 56), 10, 8, 8},
          {Vector(60, 104, 46), Vector(74, 107, 18), 8, 6.5f, 5},
          {Vector(74, 107, 18), Vector(67, 110, -10), 6.5f, 8, 5},
          {Vector(67, 110, -10), Vector(48, 116, -18), 9, 13, 7},
          // Roof and sides of the nose.
          {Vector(0, 143, 76), Vector(0, 122, 90), 8, 6, 6},
          {Vector(8, 128, 76), Vector(14, 98, 80), 5, 7, 5},
      });
  for (const Tooth& tooth : upperTeeth())  // the roots show through the bone
    d = smoothJoin(d, taper(p, tooth.root + Vector(0, 15, -1.5f), tooth.root, 2.2f, 0.62f * tooth.width), 3);
  d = smoothCut(d, ellipsoid(q, Vector(62, 80, 36), Vector(20, 20, 36)), 8);  // under the cheeks
  d = smoothCut(d, ellipsoid(q, Vector(29, 91, 88), Vector(10, 12, 10)), 7);  // beside the nose
  // Sockets, deeper inside, drooping outwards.
  const Vector s(q.x - socketMiddle.x, q.y - socketMiddle.y + 0.22f * (q.x - socketMiddle.x), q.z);
  d = smoothCut(d, ellipsoid(s, Vector(0, 0, 76), Vector(24, 20, 38)), 4);
  d = smoothCut(d, ellipsoid(s, Vector(-7, 0, 44), Vector(16, 16, 22)), 6);
  // Their outer walls are whole: nothing is seen through them.
  d = smoothJoin(d, ellipsoid(q, Vector(57, 112, 34), Vector(9, 20, 17)), 5);
  // The nose: a heart upside down, cut far in, and a thorn at its foot.
  const float heart = taper(Vector(q.x, q.y, 0), Vector(2.5f, 113, 0), Vector(8.5f, 92, 0), 4.5f, 9.5f);
  d = smoothCut(d, std::max(heart, 54 - p.z), 5);
  d = smoothJoin(d, taper(q, Vector(0, 78, 80), Vector(0, 87, 87), 5, 2.0f), 3);
  // The mouth from below.
  d = smoothCut(d, ellipsoid(q, Vector(0, 48, 30), Vector(26, 28, 44)), 6);
  // Palate and throat: no sky shows through the mouth.
  d = smoothJoin(d, ellipsoid(q, Vector(0, 68, 6), Vector(34, 14, 38)), 5);
  d = smoothJoin(d, ellipsoid(q, Vector(0, 46, -22), Vector(42, 56, 18)), 8);
  // A piece of the temple is broken out.
  const Vector hole(-56, 196, 30);
  d = smoothCut(d, ball(p, hole, 27 + 7 * fractal(p * 0.06f, 0, 3, 0.6f, 907)), 2);
  return d - weathering(p, 1 - 0.6f * smoothStep(100, 70, p.y) + 0.7f * smoothStep(10, -50, p.z)) + wound(p);
}

float jawDistance(const Vector& p) {
  const Vector q = folded(p);
  float d = ellipsoid(q, Vector(61, 100, -8), Vector(11, 9, 8));  // the knob that turns in the skull's base
  d = withLimbs(d, q,
                {
                    // The branch: a broad plate between the knob, the muscle's horn and the corner.
                    {Vector(61, 94, -8), Vector(60, 70, 0), 7, 9, 5},
                    {Vector(57, 92, 22), Vector(58, 68, 16), 4.5f, 8, 6},
                    {Vector(60, 72, 4), Vector(60, 40, 2), 10, 10, 8},
                    {Vector(58, 70, 14), Vector(56, 44, 24), 9, 11, 8},
                    // The body, and the ridge that holds the teeth.
                    {Vector(60, 40, 4), Vector(43, 17, 48), 11, 12, 9},
                    {Vector(43, 17, 48), Vector(14, 9, 78), 12, 13, 9},
                    {Vector(46, 34, 24), Vector(33, 30, 55), 8, 8, 7},
                    {Vector(33, 30, 55), Vector(14, 26, 74), 8, 8, 7},
                    {Vector(14, 26, 74), Vector(0, 26, 79), 8, 8, 7},
                    {Vector(0, 2, 88), Vector(14, 1, 83), 10, 9, 8},
                });
  for (const Tooth& tooth : lowerTeeth())
    d = smoothJoin(d, taper(p, tooth.root - Vector(0, 13, 1), tooth.root, 2.2f, 0.6f * tooth.width), 3);
  // Cracked through on one side.
  const float line = p.z - 40 - 0.8f * (p.y - 24) - 6 * gradientNoise(p * 0.08f, 0, 908);
  const float crack = p.x > 0 ? 6 * std::exp(-line * line / 8) : 0;
  return d - weathering(p, 0.6f) + crack;
}

// The solid is cut into triangles that are small in the face, where cameras come close, and larger away from
// it: in a space drawn out about the face's middle.
const Vector faceMiddle(0, 92, 66);

Vector fromDrawnOut(const Vector& w) {
  constexpr float fine = 0.52f, coarse = 1.66f, from = 46, to = 130;
  const Vector way = w - faceMiddle;
  const float r = way.length();
  if (r < 1e-3f) return faceMiddle;
  // Integral of a factor that rises from `fine` to `coarse` at an even rate.
  const float in = std::min(r, from), rise = std::clamp(r, from, to) - from, out = std::max(0.0f, r - to);
  const float length = fine * in + (fine + (coarse - fine) * rise / (2 * (to - from))) * rise + coarse * out;
  return faceMiddle + way * (length / r);
}

// Where a lens comes close: the rims of the sockets and of the nose. At the back none does.
float closeness(const Vector& p) {
  const float away = (folded(p) - Vector(34, 118, 66)).length() / 38;
  const float near = std::exp(-away * away);
  return 0.35f + 0.65f * smoothStep(-60, 20, p.z) + 9 * near;
}

Surface body(const Solid& solid, const Bounds& bounds, float cell, int triangles, const Surface& itsTeeth) {
  IsoOptions options;
  options.bounds = bounds;
  options.cell = cell;
  const Solid drawnOut = [&](const Vector& w) { return solid(fromDrawnOut(w)); };
  Surface all = bent(compacted(isosurface(drawnOut, options)), fromDrawnOut);
  all = simplified(all, triangles - static_cast<int>(itsTeeth.triangles.size()), closeness);
  append(all, itsTeeth, toothPart);
  return placed(all, skullPlacement());
}

}  // namespace

Placement skullPlacement() {
  return turnedX(-7) >> turnedZ(5) >> turnedY(-15) >> moved(0, -2, 0);
}

Surface cranium() {
  return body(craniumDistance, {Vector(-104, 16, -128), Vector(104, 240, 128)}, 5.2f, 9900,
              teethSurface(upperTeeth()));
}

Surface jaw() {
  return placed(
      body(jawDistance, {Vector(-100, -50, -42), Vector(100, 116, 124)}, 6, 2700, teethSurface(lowerTeeth())),
      jawOpening(6));
}

Vector eye(float side) {
  return transformed(skullPlacement(), Vector(side * 33.5f, 122, 79));
}

Vector jawHinge() {
  return transformed(skullPlacement(), hinge);
}

Placement jawOpening(float degrees) {
  const Vector axis = transformedDirection(skullPlacement(), Vector(1, 0, 0)), at = jawHinge();
  return moved(at * -1) >> turned(axis, degrees * pi / 180) >> moved(at);
}

}  // namespace vex::skull
