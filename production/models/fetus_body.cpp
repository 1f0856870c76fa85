#include <algorithm>
#include <cmath>

#include "production/geometry/forms.h"
#include "production/geometry/isosurface.h"
#include "production/geometry/mapping.h"
#include "production/geometry/simplify.h"
#include "production/image/noise3.h"
#include "production/models/fetus_being.h"
#include "production/models/fetus_parts.h"
#include "production/textures/palette.h"

// The being as distances: a great head bent over a curled spine, limbs drawn up before the belly.

namespace vex::laboratory {

using namespace image;
using namespace geometry;

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

namespace {

// Its root and its three joints; the last one is the tip.
void grow(Digit& digit, Vector along, const Vector& bend, const std::array<float, 3>& lengths,
          const std::array<float, 3>& degrees) {
  for (std::size_t k = 0; k < lengths.size(); ++k) {
    const float angle = degrees[k] * pi / 180;
    digit.joints[k + 1] = digit.joints[k] + (along * std::cos(angle) + bend * std::sin(angle)) * lengths[k];
  }
}

// The palms face each other, the thumbs lie above.
const Vector handAlong = unit(Vector(-0.5f, 0.7f, -0.5f)),
             palmFacing(0.52f, -0.215f, -0.83f), acrossHand = cross(handAlong, palmFacing);

std::array<Digit, 5> grownFingers() {
  std::array<Digit, 5> all;
  const Vector wrist = limbs[3].from;
  for (int i = 0; i < 4; ++i) {
    const float k = static_cast<float>(i), size = i == 1 || i == 2 ? 1.0f : i == 0 ? 0.92f : 0.78f;
    Digit& digit = all[static_cast<std::size_t>(i)];
    digit.thick = 0.9f * (0.6f + 0.4f * size);
    digit.joints[0] = wrist + handAlong * (4.4f + 0.5f * size) + acrossHand * (1.5f * (k - 1.5f));
    grow(digit, unit(handAlong + acrossHand * (0.1f * (k - 1.5f))), palmFacing,
         {2.5f * size, 1.9f * size, 1.4f * size}, {14 + 7 * k, 46 + 9 * k, 74 + 10 * k});
  }
  Digit& thumb = all[4];
  thumb.thick = 1.05f;
  thumb.joints[0] = wrist + handAlong * 1.6f - acrossHand * 1.9f;
  grow(thumb, unit(handAlong * 0.75f - acrossHand * 0.85f), unit(palmFacing * 0.8f + handAlong * 0.6f),
       {2.0f, 1.7f, 1.3f}, {10, 30, 46});
  return all;
}

std::array<Digit, 5> grownToes() {
  std::array<Digit, 5> all;
  for (int i = 0; i < 5; ++i) {
    const float k = static_cast<float>(i), size = i == 0 ? 1.25f : 1.05f - 0.1f * k;
    Digit& digit = all[static_cast<std::size_t>(i)];
    digit.thick = 0.85f * size;
    digit.joints[0] = footPlace + Vector(-0.6f + 0.35f * k, -0.2f, 1.25f * (k - 1.7f));
    grow(digit, unit(Vector(-1, 0, 0.08f * (k - 2))), Vector(0, -1, 0),
         {1.5f * size, 0.9f * size, 0.7f * size}, {-12, 16, 40});
  }
  return all;
}

float digitDistance(const Vector& q, const Digit& digit) {
  float d = 1e3f;
  for (std::size_t k = 0; k < 3; ++k) {
    const float thick = digit.thick * (1 - 0.12f * static_cast<float>(k));
    d = smoothJoin(d, taper(q, digit.joints[k], digit.joints[k + 1], thick, thick * 0.86f), 0.35f);
  }
  return d;
}

float handDistance(const Vector& q) {
  const Vector wrist = limbs[3].from, palm = wrist + handAlong * 2.9f;
  if (const float far = ball(q, palm, 9); far > 2) return far;
  const Vector w = q - palm;
  const Vector own(dot(w, acrossHand), dot(w, handAlong), dot(w, palmFacing));
  float d = ellipsoid(own, Vector(0, 0, 0), Vector(2.9f, 3.3f, 1.35f));
  d = smoothJoin(d, taper(q, limbs[2].to, palm, 1.75f, 1.3f), 1.2f);
  d = smoothJoin(d, ellipsoid(own, Vector(-1.5f, -0.7f, 0.7f), Vector(1.3f, 2.1f, 1.1f)),
                 0.9f);  // thumb's ball
  for (const Digit& digit : fingers()) d = smoothJoin(d, digitDistance(q, digit), 0.55f);
  return d;
}

float footDistance(const Vector& q) {
  if (const float far = ball(q, footPlace + Vector(2, 0, 0.5f), 10); far > 2) return far;
  float d = taper(q, limbs[6].from, footPlace + Vector(0, 0, 0.2f), 2.1f, 1.7f);
  d = smoothJoin(d, ball(q, Vector(-6.6f, -32.4f, 6.6f), 2.1f), 1.2f);  // heel
  d = smoothJoin(d, ellipsoid(q, footPlace + Vector(0.2f, -0.3f, 0.4f), Vector(2.1f, 1.3f, 3.1f)),
                 1);  // ball
  for (const Digit& digit : toes()) d = smoothJoin(d, digitDistance(q, digit), 0.45f);
  return d;
}

// Brow, socket, and lids that follow the ball.
float eyeRegion(float d, const Vector& q) {
  const Vector axis = gazeAxis(1), across = eyeAcross(1), w = q - eyePlace;
  d = smoothCut(d, ball(q, eyePlace + axis * 4.2f + Vector(0, -0.1f, 0), 4.7f), 2.6f);
  d = smoothJoin(d, taper(q, Vector(-19.2f, 19.8f, 3.4f), Vector(-17.4f, 20, 7), 0.9f, 1.0f), 4.0f);
  d = smoothJoin(d, taper(q, Vector(-17.4f, 20, 7), Vector(-13.4f, 18.2f, 10.4f), 1.0f, 0.8f), 4.0f);
  d = smoothJoin(d, ball(q, eyePlace, eyeRadius + 0.6f), 1.8f);
  const float c = dot(w, across), s = w.y, out = std::hypot(c, s);
  const float theta = std::atan2(out, dot(w, axis));
  const float hole = (theta - lidOpening(c, s) - 0.12f) * std::min(w.length(), 7.0f);
  return smoothCut(d, hole, 0.9f);
}

float noseAndMouth(float d, const Vector& q) {
  d = smoothJoin(d, ellipsoid(q, Vector(-19, 6.2f, 0), Vector(3, 3.5f, 4)), 2);                 // muzzle
  d = smoothJoin(d, taper(q, Vector(-20.2f, 15, 0), Vector(-22.2f, 10.6f, 0), 1.1f, 1.3f), 2);  // bridge
  d = smoothJoin(d, ball(q, Vector(-22.7f, 10.3f, 0), 1.45f), 0.8f);                            // tip
  d = smoothJoin(d, ball(q, Vector(-21.5f, 9.8f, 1.55f), 1.05f), 0.7f);                         // its wing
  d = smoothCut(d, taper(q, Vector(-22.9f, 8.6f, 0.75f), Vector(-21.6f, 10, 1.05f), 0.46f, 0.4f), 0.35f);
  d = smoothJoin(d, taper(q, Vector(-22.1f, 7.15f, 0.55f), Vector(-20, 6.35f, 3.1f), 0.72f, 0.38f), 0.7f);
  d = smoothJoin(d, taper(q, Vector(-21.9f, 5.55f, 0), Vector(-20, 6, 2.7f), 0.92f, 0.4f), 0.7f);  // lips
  d = smoothCut(d, taper(q, Vector(-23.2f, 6.45f, 0), Vector(-22.6f, 6.28f, 1.4f), 0.16f, 0.16f), 0.5f);
  d = smoothCut(d, taper(q, Vector(-22.6f, 6.28f, 1.4f), Vector(-20.3f, 6.0f, 3.5f), 0.2f, 0.22f), 0.6f);
  d = smoothCut(d, taper(q, Vector(-23.1f, 9, 0), Vector(-23, 7.7f, 0), 0.3f, 0.36f), 0.7f);  // philtrum
  d = smoothCut(d, taper(q, Vector(-22.4f, 4.1f, 0), Vector(-21.4f, 4.3f, 1.8f), 0.5f, 0.3f), 1.0f);
  return smoothJoin(d, ball(q, Vector(-19.2f, 2.6f, 0.5f), 1.9f), 1.4f);  // chin
}

float earRegion(float d, const Vector& q) {
  // Its own axes: across the head's side, a little turned forward and out.
  const Vector w = q - Vector(0.5f, 11.6f, 11.6f);
  const Vector own(w.x * 0.96f + w.y * 0.26f, w.y * 0.96f - w.x * 0.26f, w.z - 0.25f * w.x);
  const Vector shell(own.x * 1.25f, own.z, own.y * 0.86f);
  d = smoothJoin(d, ellipsoid(own, Vector(0, 0, -0.2f), Vector(2.3f, 3.3f, 1.1f)), 0.8f);
  d = smoothJoin(d, torusDistance(shell, Vector(0, 0.8f, 0), 2.8f, 0.62f) * 0.8f, 0.5f);
  d = smoothCut(d, ellipsoid(own, Vector(-0.5f, -0.2f, 1.2f), Vector(1.3f, 1.9f, 1.3f)), 0.4f);
  d = smoothJoin(d, ball(own, Vector(-0.4f, -3.4f, 0.5f), 1.0f), 0.8f);      // lobe
  return smoothJoin(d, ball(own, Vector(-2.2f, -0.6f, 0.4f), 0.75f), 0.5f);  // tragus
}

float headDistance(const Vector& q) {
  if (const float far = ball(q, Vector(-3, 17.5f, 0), 24); far > 5) return far;
  float d = ellipsoid(q, Vector(-5, 19.5f, 0), Vector(16, 13.6f, 12.6f));  // brain
  d = smoothJoin(d, ellipsoid(q, Vector(2, 20, 0), Vector(13, 13, 11.5f)), 4);
  d = smoothJoin(d, ellipsoid(q, Vector(-13.5f, 10.5f, 0), Vector(7.4f, 8, 7.6f)), 4);       // face
  d = smoothJoin(d, ball(q, Vector(-15.8f, 7.9f, 5.2f), 4.2f), 2.5f);                        // cheek
  d = smoothJoin(d, taper(q, Vector(-18, 3.2f, 1.2f), Vector(-7, 7, 7.6f), 1.9f, 2.4f), 3);  // jaw
  if (q.x < -9) d = noseAndMouth(eyeRegion(d, q), q);
  if (std::fabs(q.x) < 7 && q.z > 7) d = earRegion(d, q);
  return d;
}

float trunkDistance(const Vector& q) {
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
  return trunk;
}

}  // namespace

float beingDistance(const Vector& p) {
  const Vector q(p.x, p.y, std::fabs(p.z));
  float d = smoothJoin(headDistance(q), trunkDistance(q), 4.5f);
  float drawn = 1e3f;
  for (std::size_t i = 0; i < limbs.size(); ++i) {
    if (i == 3 || i == 6) continue;  // hand and foot have a form of their own
    const Limb& limb = limbs[i];
    drawn =
        smoothJoin(drawn, taper(q, limb.from, limb.to, limb.thick, limb.thin), limb.from.x > 0 ? 2.5f : 1.3f);
  }
  drawn = smoothJoin(smoothJoin(drawn, handDistance(q), 1.1f), footDistance(q), 1.1f);
  d = smoothJoin(d, drawn, 1.1f);
  return d - 0.2f * fractal(p * 0.22f, 0, 2, 0.5f, 911);
}

const std::array<Digit, 5>& fingers() {
  static const std::array<Digit, 5> all = grownFingers();
  return all;
}

const std::array<Digit, 5>& toes() {
  static const std::array<Digit, 5> all = grownToes();
  return all;
}

float lidOpening(float across, float up) {
  constexpr float degrees = pi / 180, pointed = 1.7f;
  const float out = std::max(std::hypot(across, up), 1e-4f);
  const float wide = std::fabs(across) / out / (60 * degrees),
              high = std::fabs(up) / out / ((up > 0 ? 35 : 38) * degrees);
  return std::pow(std::pow(wide, pointed) + std::pow(high, pointed), -1 / pointed);
}

Vector gazeAxis(float side) {
  return unit(Vector(-0.86f, 0, 0.51f * side));
}

Vector eyeAcross(float side) {
  return unit(cross(Vector(0, 1, 0), gazeAxis(side)));
}

namespace {

const Bounds beingBounds{Vector(-30, -42, -22), Vector(28, 38, 22)};

}  // namespace

Surface beingSurface() {
  // The face and the hands are what is seen from near.
  return simplified(compacted(isosurface(beingDistance, {.bounds = beingBounds, .cell = 0.8f, .relax = 2})),
                    6000, [](const Vector& p) {
                      const Vector q(p.x, p.y, std::fabs(p.z));
                      const float face = smoothStep(15, 9, (q - Vector(-20, 10, 4)).length()),
                                  hand = smoothStep(10, 6, (q - handPlace).length()),
                                  head = smoothStep(24, 16, (q - Vector(-4, 18, 0)).length());
                      return 1 + 40 * face + 8 * hand + 4 * head;
                    });
}

Surface rimSurface() {
  const Solid within = [](const Vector& p) { return beingDistance(p) + 0.9f; };
  return simplified(compacted(isosurface(within, {.bounds = beingBounds, .cell = 1.6f, .relax = 2})), 800);
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
      simplified(
          compacted(isosurface(solid, {.bounds = {Vector(-5, -6, -5), Vector(5, 9, 5)}, .cell = 0.6f})), 360),
      moved(heartPlace));
}

Surface eyeSurface(float side) {
  const Surface round = mapped(withoutMapping(sphere(eyeRadius, 18, 10)), [](const Vector& p) {
    return Uv{0.5f + p.x / (2 * eyeRadius), 0.5f + p.y / (2 * eyeRadius)};
  });
  const Vector axis = gazeAxis(side), across = eyeAcross(side);
  return placed(
      round, Placement{across, cross(axis, across), axis, Vector(eyePlace.x, eyePlace.y, eyePlace.z * side)});
}

}  // namespace vex::laboratory
