#include <algorithm>
#include <cmath>

#include "production/geometry/forms.h"
#include "production/geometry/isosurface.h"
#include "production/geometry/mapping.h"
#include "production/image/noise3.h"
#include "production/models/fetus_being.h"
#include "production/models/fetus_parts.h"
#include "production/textures/palette.h"

// The being as distances: a great head bent over a curled spine, limbs drawn up before the belly.

namespace vex::laboratory {

const std::array<Limb, 7> limbs{{
    {Vector(8, 2, 9), Vector(6, -3, 13), 4.2f, 3.6f},            // shoulder
    {Vector(6, -3, 13), Vector(-6, -13, 14.5f), 3.4f, 2.5f},     // upper arm
    {Vector(-6, -13, 14.5f), Vector(-17, -3, 8), 2.6f, 1.8f},    // forearm
    {Vector(-17, -3, 8), Vector(-19.5f, 0.5f, 5.5f), 2.2f, 2},   // hand
    {Vector(4, -25, 7), Vector(-18, -17, 11.5f), 6, 3.6f},       // thigh
    {Vector(-18, -17, 11.5f), Vector(-8, -31, 6.5f), 3.4f, 2},   // shin
    {Vector(-8, -31, 6.5f), Vector(-15.5f, -33, 5), 2.2f, 1.6f}  // foot
}};
const std::array<Vector, 7> back{Vector(7, 15, 0),     Vector(14, 6, 0),   Vector(18, -4, 0),
                                 Vector(17, -15, 0),   Vector(11, -25, 0), Vector(2, -31, 0),
                                 Vector(-3, -33.5f, 0)};

float beingDistance(const Vector& p) {
  const Vector q(p.x, p.y, std::fabs(p.z));
  float d = ellipsoid(q, Vector(-5, 19, 0), Vector(16, 14, 13));                           // brain
  d = smoothJoin(d, ellipsoid(q, Vector(2, 20, 0), Vector(13, 13, 11.5f)), 4);             // back of the head
  d = smoothJoin(d, ellipsoid(q, Vector(-14, 11, 0), Vector(7.5f, 8, 8)), 4);              // face
  d = smoothJoin(d, taper(q, Vector(-19, 9, 0), Vector(-21.5f, 8, 0), 2.2f, 1.4f), 2.5f);  // snout
  d = smoothJoin(d, taper(q, Vector(-19, 4.8f, 1), Vector(-17, 4, 3), 1.5f, 1.2f), 1.6f);  // chin
  d = smoothCut(d, taper(q, Vector(-22.4f, 6.3f, 0), Vector(-18, 5.8f, 4), 0.4f, 0.3f), 1.4f);  // mouth
  d = smoothJoin(d, taper(q, Vector(-20, 18.8f, 5), Vector(-13, 19.2f, 12), 1.7f, 1.4f), 4);    // brow
  d = smoothJoin(d, torusDistance(Vector(q.x, q.z - 11.5f, q.y - 11), Vector(2, 0, 0), 2.4f, 0.9f),
                 1);                                                                                   // ear
  d = smoothJoin(d, taper(q, Vector(-19.6f, 10.2f, 6.6f), Vector(-15.4f, 10.4f, 11), 1.0f, 0.9f), 2);  // bag
  d = smoothCut(d, ball(q, eyePlace + gazeAxis(1) * 1.1f, eyeRadius * 0.9f), 1.6f);
  float trunk = ellipsoid(q, Vector(5, -8, 0), Vector(11.5f, 15, 11));
  trunk = smoothJoin(trunk, ellipsoid(q, Vector(3, -19, 0), Vector(11, 11, 10)), 5);
  for (int i = 0; i + 1 < static_cast<int>(back.size()); ++i)
    trunk = smoothJoin(trunk,
                       taper(q, back[i], back[i + 1], 6.8f - 0.8f * static_cast<float>(i),
                             6.0f - 0.8f * static_cast<float>(i)),
                       4);
  // Knuckles of the spine and ribs under the skin.
  const float along = std::atan2(q.y + 9, q.x + 6);
  trunk -= 0.55f * std::pow(std::max(0.0f, std::cos(along * 15)), 2.0f) * smoothStep(5, 1, q.z) *
           smoothStep(9, 15, q.x);
  trunk -= 0.5f * std::sin(along * 13) * smoothStep(4, 8, q.z) * smoothStep(-4, 4, q.x) *
           smoothStep(-20, -12, q.y);
  d = smoothJoin(d, trunk, 4.5f);
  float drawn = 1e3f;
  for (const Limb& limb : limbs) {
    const bool root = limb.from.x > 0;
    drawn = smoothJoin(drawn, taper(q, limb.from, limb.to, limb.thick, limb.thin), root ? 2.5f : 1.3f);
  }
  for (int i = 0; i < 4; ++i) {
    drawn = smoothJoin(drawn, taper(q, footPlace, toeTip(i), 0.9f, 0.6f), 0.6f);
  }
  d = smoothJoin(d, drawn, 1.1f);
  return d - 0.25f * fractal(p * 0.22f, 0, 3, 0.5f, 911);
}

namespace {

// From the wrist on, where the forearm's skin ends.
float handDistance(const Vector& p) {
  const Vector q(p.x, p.y, std::fabs(p.z));
  const Limb& palm = limbs[3];
  float d = taper(q, palm.from, mix(palm.from, palm.to, 0.8f), 1.9f, 1.6f);
  for (int i = 0; i < 4; ++i) {
    const Vector root = mix(handPlace, fingerTip(i), 0.1f),
                 knuckle = mix(root, fingerTip(i), 0.5f) + Vector(-0.5f, 0.5f, 0.3f);
    d = smoothJoin(d, taper(q, root, knuckle, 1.0f, 0.78f), 0.6f);
    d = smoothJoin(d, taper(q, knuckle, fingerTip(i), 0.78f, 0.55f), 0.3f);
  }
  return smoothJoin(
      d, taper(q, mix(palm.from, palm.to, 0.5f), palm.to + Vector(0.4f, 3.2f, 1.6f), 1.0f, 0.6f), 0.6f);
}

}  // namespace

Vector fingerTip(int finger) {
  const float k = static_cast<float>(finger) - 1.5f;
  return handPlace + Vector(-3.6f, 2.2f + 0.9f * k, -1.5f - 0.7f * k);
}

Vector toeTip(int toe) {
  return footPlace + Vector(-3.2f, -0.6f, 1.3f * (static_cast<float>(toe) - 1.5f));
}

Vector gazeAxis(float side) {
  return unit(Vector(-0.78f, 0.02f, 0.62f * side));
}

Vector eyeAcross(float side) {
  return unit(cross(Vector(0, 1, 0), gazeAxis(side)));
}

Surface beingSurface() {
  // The hands are finer; they begin within the forearms.
  Surface all = compacted(
      isosurface(beingDistance, {.bounds = {Vector(-29, -42, -22), Vector(28, 38, 22)}, .cell = 2.3f}));
  append(all, compacted(isosurface(handDistance,
                                   {.bounds = {Vector(-28, -9, -16), Vector(-13, 9, 16)}, .cell = 1.4f})));
  return all;
}

Surface rimSurface() {
  const Solid within = [](const Vector& p) { return beingDistance(p) + 0.8f; };
  return compacted(isosurface(within, {.bounds = {Vector(-29, -42, -22), Vector(28, 38, 22)}, .cell = 4.1f}));
}

Surface heartSurface() {
  const Solid solid = [](const Vector& p) {
    float d = ellipsoid(p, Vector(0, 0, 0), Vector(3.4f, 4.4f, 3.2f));
    d = smoothJoin(d, ball(p, Vector(-1.6f, 2.6f, 1.6f), 1.9f), 0.6f);  // auricles
    d = smoothJoin(d, ball(p, Vector(1.8f, 2.8f, -1), 1.7f), 0.6f);
    d = smoothJoin(d, torusDistance(Vector(p.x, p.z, p.y - 5.4f), Vector(1, 0, 0), 1.9f, 0.8f),
                   0.6f);  // aorta
    return smoothJoin(d, taper(p, Vector(-1, 2, 0), Vector(-2.4f, 6.4f, -1), 1.1f, 0.7f), 0.8f);
  };
  return placed(
      compacted(isosurface(solid, {.bounds = {Vector(-5, -6, -5), Vector(5, 9, 5)}, .cell = 1.25f})),
      moved(heartPlace));
}

Surface eyeSurface(float side) {
  const Surface round = mapped(withoutMapping(sphere(eyeRadius, 14, 8)), [](const Vector& p) {
    return Uv{0.5f + p.x / (2 * eyeRadius), 0.5f + p.y / (2 * eyeRadius)};
  });
  const Vector axis = gazeAxis(side), across = eyeAcross(side);
  return placed(
      round, Placement{across, cross(axis, across), axis, Vector(eyePlace.x, eyePlace.y, eyePlace.z * side)});
}

}  // namespace vex::laboratory
