#include <array>
#include <cmath>

#include "production/geometry/forms.h"
#include "production/geometry/isosurface.h"
#include "production/geometry/mapping.h"
#include "production/image/noise3.h"
#include "production/models/monster_parts.h"
#include "production/textures/palette.h"

// Trunk, abdomen and head as distances: a ribbed chest with hips and shoulders, a plated sac behind, a long
// skull with a crest that sweeps back over the neck.

namespace vex::monster {

using namespace image;
using namespace geometry;

namespace {

const Vector trunkPivot(0, 95, 0), abdomenPivot(0, 100, -24), headPivot(0, 106, 32);

Vector folded(const Vector& p) {
  return Vector(std::fabs(p.x), p.y, p.z);
}

// 0 to 1: the rise of a plate and its sudden edge.
float plates(float along) {
  const float share = along - std::floor(along);
  return share * smoothStep(1.0f, 0.82f, share);
}

float trunkDistance(const Vector& p) {
  const Vector q = folded(p);
  float d = ellipsoid(q, Vector(0, 95, 2), Vector(18, 16, 27));
  const float flank = smoothStep(3, 10, q.x) * smoothStep(112, 100, q.y);
  const float rib = std::sin((q.z + 0.35f * q.y) * 0.62f);
  d -= 2.1f * flank * rib * std::fabs(rib);
  d = smoothJoin(d, taper(q, Vector(3, 98, 19), Vector(15, 101, 26), 9, 6.5f), 5);  // shoulders
  for (const float z : {15.0f, -1.0f, -17.0f})                                      // hips
    d = smoothJoin(d, taper(q, Vector(6, 94, z * 0.8f), Vector(18, 98, z), 8, 6.5f), 4);
  d = smoothJoin(d, taper(q, Vector(0, 97, -16), Vector(0, 100, -30), 10, 8), 5);     // waist
  d = smoothJoin(d, taper(q, Vector(0, 81, 17), Vector(0, 82, -14), 3.2f, 2.4f), 4);  // keel
  float neck = taper(q, Vector(0, 100, 20), Vector(0, 109, 40), 10, 7);
  const float ring = std::sin((q.z + 0.45f * q.y) * 1.1f);
  neck -= 0.9f * ring * ring * smoothStep(18, 26, q.z);
  d = smoothJoin(d, neck, 4);
  return d - 2.8f * plates((23 - q.z - 0.2f * q.y) / 11) * smoothStep(99, 106, q.y) * smoothStep(28, 18, q.z);
}

float abdomenDistance(const Vector& p) {
  const Vector q = folded(p);
  float d = ellipsoid(q, Vector(0, 104, -52), Vector(21, 20, 29));
  d -= 3.0f * plates((q.z + 0.12f * q.y) / 9.5f) * smoothStep(86, 100, q.y);
  d = smoothJoin(d, taper(q, Vector(0, 100, -22), Vector(0, 102, -34), 8, 12), 5);
  d = smoothJoin(d, taper(q, Vector(0, 108, -72), Vector(0, 112, -86), 10, 5.5f), 6);
  const float sag = std::sin(q.z * 0.5f + 3 * gradientNoise(q * 0.06f, 0, 801));
  return d - 1.2f * sag * sag * smoothStep(100, 88, q.y);
}

// x, y, z and radius, on the +x side.
struct Eye {
  Vector centre;
  float radius;
};
const std::array<Eye, 3> eyes{{{Vector(5.0f, 118.4f, 63.2f), 2.7f},
                               {Vector(8.6f, 121.4f, 57.6f), 1.9f},
                               {Vector(2.8f, 123.6f, 60.9f), 1.4f}}};

const Vector mouth(0, 106.5f, 65);

float headDistance(const Vector& p) {
  const Vector q = folded(p);
  float d = ellipsoid(q, Vector(0, 117, 49), Vector(11.5f, 10, 18));
  d = smoothJoin(d, taper(q, Vector(2, 122, 44), Vector(2, 138, -6), 8, 3.2f), 6);      // crest
  d = smoothJoin(d, taper(q, Vector(8, 121, 42), Vector(15, 130, 14), 4.4f, 2.8f), 4);  // its side horns
  d = smoothJoin(d, ellipsoid(q, Vector(0, 109, 58), Vector(7.5f, 6.5f, 9.5f)), 4);     // muzzle
  d = smoothCut(d, ellipsoid(q, mouth, Vector(5.2f, 2.1f, 8)), 1.5f);
  d = smoothJoin(d, taper(q, Vector(0, 122, 62), Vector(9, 124, 52), 2.2f, 2.0f), 2.5f);  // brow
  for (const Eye& eye : eyes)
    d = smoothCut(d, ball(q, eye.centre + Vector(0.3f, 0, 1.0f), eye.radius * 1.05f), 2.2f);
  const float gills = std::sin((q.z - 0.5f * q.y) * 1.5f);
  d -= 0.55f * gills * std::fabs(gills) * smoothStep(116, 111, q.y) * smoothStep(62, 52, q.z);
  const float ridge = std::sin(q.y * 0.9f + q.z * 0.25f);
  return d - 0.35f * ridge * ridge * smoothStep(40, 25, q.z);
}

// One breath in and out, sharp in and slow out, `phase` of a loop later.
float breath(float t, float breaths, float phase) {
  const float s = swing(t, loopSeconds, breaths, phase);
  return s + 0.25f * swing(t, loopSeconds, 2 * breaths, 2 * phase + 0.1f);
}

Placement trunkPlacement(float t) {
  const Vector at =
      trunkPivot + Vector(2.2f * swing(t, loopSeconds, 1, 0.2f), 2.6f * swing(t, loopSeconds, 2),
                          2.0f * swing(t, loopSeconds, 1, 0.55f));
  return turnedX(1.6f * swing(t, loopSeconds, 2, 0.3f)) >> turnedZ(2.2f * swing(t, loopSeconds, 1)) >>
         turnedY(2.5f * swing(t, loopSeconds, 1, 0.4f)) >> moved(at);
}

// The head's mesh is made in a space that is swollen about the eyes, so that it is that much finer there.
const Vector gaze(0, 119.5f, 60);
constexpr float swollenReach = 13, swelling = 2.4f;
constexpr float pushedOut = (swelling - 1) * swollenReach;

Vector unswollen(const Vector& p) {
  const Vector offset = p - gaze;
  const float radius = offset.length();
  return radius < swelling * swollenReach ? gaze + offset * (1 / swelling)
                                          : p - offset * (pushedOut / radius);
}

Surface body(const Solid& solid, const Bounds& bounds, float cell, Fineness fineness) {
  IsoOptions options;
  options.bounds = bounds;
  options.cell = fineness == Fineness::full ? cell : cell * 2.5f;
  return compacted(isosurface(solid, options));
}

Surface headSurface(Fineness fineness) {
  const auto swollen = [](const Vector& p) { return headDistance(unswollen(p)); };
  const float reach = pushedOut;
  return bent(
      body(swollen,
           {Vector(-19 - reach, 92 - reach, -16 - reach), Vector(19 + reach, 146 + reach, 84 + reach)}, 3.4f,
           fineness),
      unswollen);
}

// Needles around the slit, the upper and the lower ones by turns longer.
Surface teeth() {
  Surface all;
  constexpr int row = 10;
  for (int i = 0; i < row; ++i)
    for (const float up : {1.0f, -1.0f}) {
      const float across = (static_cast<float>(i) + 0.5f) / row * 2 - 1;
      const float length = ((i % 2 == 0) == (up > 0) ? 4.6f : 3.0f) * (1.05f - 0.5f * across * across);
      const Vector root(4.6f * across, mouth.y + up * (2.4f - 1.0f * across * across),
                        65.2f - 2.6f * across * across);
      append(all, placed(withoutMapping(cone(0.62f, 0.02f, length, 4, 1)),
                         turnedX(up > 0 ? 168 : -8) >> moved(root)));
    }
  return all;
}

// Two pairs of hooks beside the mouth.
Surface mandibles() {
  Surface all;
  for (const float side : {-1.0f, 1.0f}) {
    const auto hook = [&](const std::vector<Vector>& bends, float radius) {
      append(all, placed(withoutMapping(tube(
                             smoothPath(bends, 10), 6, [radius](float t) { return radius * (1.05f - t); },
                             TubeEnd::point)),
                         stretched(side, 1, 1)));
    };
    hook({{6, 109, 57}, {12, 103, 65}, {12, 95, 74}, {6, 89, 80}, {1.5f, 89, 83}}, 2.0f);
    hook({{4, 104, 60}, {6.5f, 99, 67}, {5.5f, 94, 72}, {2.5f, 92.5f, 75}}, 1.4f);
  }
  return all;
}

}  // namespace

Vector carriedByTrunk(const Vector& point, float seconds) {
  return transformed(trunkPlacement(seconds), point - trunkPivot);
}

std::vector<Piece> bodyPieces(Fineness fineness) {
  Piece trunk{.name = "trunk",
              .surface = body(trunkDistance, {Vector(-26, 70, -42), Vector(26, 128, 48)}, 4.8f, fineness),
              .pivot = trunkPivot};
  trunk.motion.positions = positionKeys(loopSeconds, 6, [](float t) { return trunkPlacement(t).origin; });
  trunk.motion.turns = turnKeys(loopSeconds, 6, trunkPlacement);
  trunk.motion.scales = scaleKeys(loopSeconds, 5, [](float t) {
    const float air = breath(t, 3, 0);
    return Vector(1 + 0.030f * air, 1 + 0.022f * air, 1 + 0.008f * air);
  });

  Piece abdomen{
      .name = "abdomen",
      .parent = "trunk",
      .surface = body(abdomenDistance, {Vector(-27, 78, -94), Vector(27, 132, -16)}, 4.7f, fineness),
      .pivot = abdomenPivot};
  abdomen.motion.turns = turnKeys(loopSeconds, 6, [](float t) {
    return turnedX(4 * swing(t, loopSeconds, 2, 0.15f)) >> turnedY(5 * swing(t, loopSeconds, 1, 0.7f));
  });
  abdomen.motion.scales = scaleKeys(loopSeconds, 5, [](float t) {
    const float air = breath(t, 3, 0.12f);
    return Vector(1 + 0.06f * air, 1 + 0.05f * air, 1 - 0.02f * air);
  });

  Piece head{.name = "head", .parent = "trunk", .surface = headSurface(fineness), .pivot = headPivot};
  if (fineness == Fineness::full) append(head.surface, joined({teeth(), mandibles()}));
  head.motion.turns = turnKeys(loopSeconds, 5, [](float t) {
    return turnedX(5 * swing(t, loopSeconds, 2, 0.6f)) >> turnedZ(5 * swing(t, loopSeconds, 3, 0.1f)) >>
           turnedY(11 * swing(t, loopSeconds, 1, 0.3f) + 4 * swing(t, loopSeconds, 3, 0.8f));
  });
  return {grown(trunk), grown(abdomen), grown(head)};
}

Piece grown(Piece piece) {
  constexpr float growth = 1.3f;
  const Placement grow = moved(trunkPivot * -1) >> stretched(growth) >> moved(trunkPivot);
  piece.surface = placed(piece.surface, grow);
  piece.pivot = transformed(grow, piece.pivot);
  return piece;
}

Piece eyePiece() {
  Surface all;
  for (const Eye& eye : eyes)
    for (const float side : {-1.0f, 1.0f}) {
      // Its front half, the pole towards +z.
      const Surface whole = placed(withoutMapping(sphere(eye.radius, 16, 9)), turnedX(90));
      const Surface front = compacted(selected(
          whole, [&whole](const Triangle& triangle) { return normalOf(whole, triangle).z > -0.2f; }));
      const Surface ball = mapped(front, [&eye](const Vector& p) {
        return Uv{0.5f + 0.48f * p.x / eye.radius, 0.5f + 0.48f * p.y / eye.radius};
      });
      append(all, placed(ball, moved(eye.centre.x * side, eye.centre.y, eye.centre.z - 0.4f)));
    }
  return grown({.name = "eyes", .parent = "head", .surface = all, .pivot = headPivot});
}

Piece glowPiece() {
  // Crossed cards, so that they are round from wherever one looks, but too flat to cut the eye.
  Surface all;
  for (const Eye& eye : eyes)
    for (const float side : {-1.0f, 1.0f})
      for (const float turn : {-20.0f, 20.0f}) {
        const float size = 5.5f * eye.radius;
        append(all,
               placed(card(size, size), turnedY(turn) >> moved(eye.centre.x * side, eye.centre.y - size / 2,
                                                               eye.centre.z + 1.1f * eye.radius)));
      }
  return grown({.name = "eye_glow", .parent = "head", .surface = all, .pivot = headPivot});
}

}  // namespace vex::monster
