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
  d = smoothCut(d, taper(q, Vector(-22, 6.3f, 0), Vector(-18, 6, 4), 0.35f, 0.3f), 0.9f);  // mouth
  d = smoothJoin(d, taper(q, Vector(-20, 18.6f, 5), Vector(-13, 19, 12), 2, 1.6f), 2.5f);  // brow
  d = smoothJoin(d, torusDistance(Vector(q.x, q.z - 11.5f, q.y - 11), Vector(2, 0, 0), 2.4f, 0.9f),
                 1);  // ear
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
    drawn = smoothJoin(drawn, taper(q, handPlace, fingerTip(i), 1.3f, 0.9f), 0.7f);
    drawn = smoothJoin(drawn, taper(q, footPlace, toeTip(i), 0.9f, 0.6f), 0.6f);
  }
  d = smoothJoin(d, drawn, 1.1f);
  return d - 0.25f * fractal(p * 0.22f, 0, 3, 0.5f, 911);
}

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
  return compacted(
      isosurface(beingDistance, {.bounds = {Vector(-29, -42, -22), Vector(28, 38, 22)}, .cell = 2.45f}));
}

Surface rimSurface() {
  const Solid within = [](const Vector& p) { return beingDistance(p) + 0.8f; };
  return compacted(isosurface(within, {.bounds = {Vector(-29, -42, -22), Vector(28, 38, 22)}, .cell = 4.1f}));
}

Surface heartSurface() {
  const Solid solid = [](const Vector& p) {
    float d = ellipsoid(p, Vector(0, 0, 0), Vector(3.4f, 4.4f, 3.2f));
    d = smoothJoin(d, taper(p, Vector(1, 2, 0), Vector(2.6f, 6, 1), 1.6f, 1.0f), 1.2f);
    return smoothJoin(d, taper(p, Vector(-1, 2, 0), Vector(-2.2f, 5.4f, -1), 1.4f, 0.8f), 1.0f);
  };
  return placed(compacted(isosurface(solid, {.bounds = {Vector(-5, -6, -5), Vector(5, 8, 5)}, .cell = 1.3f})),
                moved(heartPlace));
}

Surface eyeSurface(float side) {
  // Modelled shut: the lid looks out along +z, the iris down. v runs about the axis of the lid; its seam is
  // at the back, above, where it never comes to the front.
  const Surface round = mapped(withoutMapping(sphere(eyeRadius, 18, 12)), [](const Vector& p) {
    const float turn = std::atan2(p.y, p.z) / (2 * pi);
    return Uv{0.5f + std::asin(std::clamp(p.x / eyeRadius, -1.0f, 1.0f)) / pi,
              0.5f + (turn > 0.375f ? turn - 1 : turn)};
  });
  const Vector axis = gazeAxis(side), across = eyeAcross(side);
  return placed(
      round, Placement{across, cross(axis, across), axis, Vector(eyePlace.x, eyePlace.y, eyePlace.z * side)});
}

}  // namespace vex::laboratory
