#include <algorithm>
#include <cmath>

#include "production/geometry/forms.h"
#include "production/geometry/isosurface.h"
#include "production/geometry/mapping.h"
#include "production/geometry/simplify.h"
#include "production/models/fetus_being.h"
#include "production/models/fetus_parts.h"
#include "production/textures/palette.h"

// What shows through the being when its skin is glass: a skeleton, lids that hold the eyes, the cord.

namespace vex::laboratory {

using namespace image;
using namespace geometry;

namespace {

// Ring about the line of sight.
float orbitDistance(const Vector& q) {
  const Vector axis = gazeAxis(1), w = q - (eyePlace - axis * 0.4f);
  const float along = dot(w, axis), out = std::sqrt(std::max(0.0f, dot(w, w) - along * along));
  return std::hypot(out - (eyeRadius + 1.0f), along) - 1.15f;
}

float skullDistance(const Vector& q) {
  float d = ellipsoid(q, Vector(-3.5f, 20, 0), Vector(13.4f, 11.4f, 10.8f));
  d = smoothJoin(d, ellipsoid(q, Vector(-13, 12, 0), Vector(6.2f, 6, 6.2f)), 4);
  d = smoothJoin(d, orbitDistance(q), 1.2f);
  d = smoothJoin(d, taper(q, Vector(-17.5f, 9.6f, 5.5f), Vector(-5, 11.5f, 9.6f), 1.3f, 0.9f), 1);  // cheek
  d = smoothCut(d, ellipsoid(q, Vector(-7, 13.5f, 11.8f), Vector(3.4f, 3.6f, 2.4f)), 1.2f);         // temple
  d = smoothCut(d, ball(q, eyePlace, eyeRadius + 0.45f), 0.5f);
  d = smoothCut(d, taper(q, Vector(-20.5f, 9.8f, 0.3f), Vector(-18.6f, 12.6f, 0.3f), 1.1f, 0.8f),
                0.6f);  // nose
  // Teeth, and the gap below them.
  d -= 0.22f * std::max(0.0f, std::cos(4.2f * q.z)) * smoothStep(8.6f, 6.8f, q.y) * smoothStep(-14, -17, q.x);
  return smoothCut(d, ellipsoid(q, Vector(-13, 4.4f, 0), Vector(12, 1.7f, 12)), 0.4f);
}

float jawDistance(const Vector& q) {
  float d = taper(q, Vector(-6.4f, 9.5f, 7.2f), Vector(-9.6f, 4.6f, 6.2f), 1.2f, 1.25f);
  d = smoothJoin(d, taper(q, Vector(-9.6f, 4.6f, 6.2f), Vector(-17, 3.2f, 2), 1.25f, 1.2f), 0.8f);
  return smoothJoin(d, taper(q, Vector(-17, 3.2f, 2), Vector(-17.6f, 3.1f, 0), 1.2f, 1.3f), 0.8f);
}

// A shaft with a knuckle at each end.
Surface longBone(const Vector& from, const Vector& to, float shaft, float knuckle) {
  return withoutMapping(tube(
      smoothPath({from, mix(from, to, 0.5f), to}, 7), 6,
      [=](float t) { return mix(shaft, knuckle, std::pow(std::fabs(2 * t - 1), 2.5f)); }, TubeEnd::point));
}

constexpr int vertebrae = 21;

// Places of the vertebrae, nearer to the back than the middle of the flesh.
std::vector<Vector> spinePlaces() {
  std::vector<Vector> places = smoothPath({back.begin(), back.end()}, vertebrae);
  for (Vector& place : places) {
    const Vector out = unit(place - Vector(0, -8, 0));
    place = place + out * 1.8f;
  }
  return places;
}

float spineDistance(const Vector& q, const std::vector<Vector>& places) {
  float d = 1e3f;
  for (std::size_t i = 0; i + 1 < places.size(); ++i) {
    const float small = 1 - 0.5f * static_cast<float>(i) / static_cast<float>(places.size());
    const Vector middle = mix(places[i], places[i + 1], 0.5f), out = unit(middle - Vector(0, -8, 0));
    d = std::min(d, taper(q, places[i], places[i + 1], 1.0f * small, 1.0f * small));
    d = smoothJoin(d, ball(q, middle, 1.75f * small), 0.7f);
    d = smoothJoin(d, taper(q, middle, middle + out * (3.2f * small), 0.8f * small, 0.5f * small), 0.5f);
    d = smoothJoin(d, taper(q, middle, middle + Vector(0, 0, 2.9f * small), 0.8f * small, 0.5f * small),
                   0.5f);
  }
  return d;
}

float skeletonDistance(const Vector& p, const std::vector<Vector>& places) {
  const Vector q(p.x, p.y, std::fabs(p.z));
  float d = std::min({skullDistance(q), jawDistance(q), spineDistance(q, places)});
  d = smoothJoin(d, ellipsoid(q, Vector(11, 0.5f, 7.6f), Vector(3, 4.6f, 1.1f)), 0.8f);     // shoulder blade
  d = std::min(d, taper(q, Vector(6.5f, 2.6f, 8.6f), Vector(-5, -1, 1.4f), 0.85f, 0.75f));  // collar bone
  d = std::min(d, taper(q, Vector(-5.2f, -1, 0), Vector(-5.4f, -9.5f, 0), 1.15f, 0.8f));    // breastbone
  d = smoothJoin(d, ellipsoid(q, Vector(6.5f, -24, 5), Vector(5.2f, 3.6f, 1.5f)), 1.4f);    // hip
  // All of it stays within the skin.
  return std::max(d, beingDistance(p) + 0.9f);
}

// From `from` through the joints of a finger or a toe, thick where its bones meet.
Surface digitBones(const Vector& from, const Digit& digit, float side) {
  std::vector<Vector> path{from};
  for (const Vector& joint : digit.joints) path.push_back(joint);
  for (Vector& place : path) place.z *= side;
  return withoutMapping(tube(
      smoothPath(path, 8), 3,
      [&](float t) {
        return digit.thick * (0.4f + 0.22f * std::pow(std::fabs(std::cos(4 * pi * t)), 3.0f) - 0.12f * t);
      },
      TubeEnd::point));
}

Vector acrossFrom(const Vector& p, float side) {
  return Vector(p.x, p.y, p.z * side);
}

}  // namespace

Surface bonesSurface() {
  const std::vector<Vector> places = spinePlaces();
  const Solid solid = [&](const Vector& p) { return skeletonDistance(p, places); };
  Surface all = simplified(
      compacted(isosurface(solid, {.bounds = {Vector(-27, -40, -20), Vector(26, 36, 20)}, .cell = 1.0f})),
      1500, [](const Vector& p) { return p.x < -8 && p.y > 0 ? 6.0f : 1.0f; });
  for (const float side : {-1.0f, 1.0f}) {
    for (int i = 0; i < 8; ++i) {  // ribs, the lower ones do not reach the breastbone
      const float y = 2 - 2.7f * static_cast<float>(i), reach = i < 6 ? -4.8f : 1.5f;
      const float chest = (y + 6.8f) / 15, wide = std::max(0.8f, std::sqrt(1 - chest * chest)) * side;
      append(all, withoutMapping(tube(
                      smoothPath({Vector(17 - 0.25f * std::fabs(y + 3), y + 1.6f, 0.6f * side),
                                  Vector(13, y + 1, 6 * wide), Vector(6, y - 1.2f, 8.6f * wide),
                                  Vector(-1, y - 3.4f, 6.6f * wide), Vector(reach, y - 4.4f, 1.6f * side)},
                                 8),
                      3, [](float t) { return mix(0.95f, 0.6f, t); }, TubeEnd::point)));
    }
    for (const std::size_t i : {1, 2, 4, 5}) {
      const bool leg = i >= 4;
      append(all, longBone(acrossFrom(limbs[i].from, side), acrossFrom(limbs[i].to, side), leg ? 1.0f : 0.8f,
                           leg ? 1.8f : 1.4f));
    }
    for (const Digit& finger : fingers()) append(all, digitBones(limbs[2].to, finger, side));
    for (const Digit& toe : toes()) append(all, digitBones(limbs[5].to, toe, side));
  }
  return all;
}

// From the opening round the ball, under the skin.
Surface lidSurface(float side) {
  const Vector axis = gazeAxis(side), across = eyeAcross(side), up = cross(axis, across),
               centre = acrossFrom(eyePlace, side);
  Surface lid = withoutMapping(
      sheet(24, 4,
            [&](float s, float t) {
              const float phi = 2 * pi * s;
              // The first row is the lid's thickness; over the skin's edge and under it.
              const float fold = std::max(0.0f, (t - 0.25f) / 0.75f);
              const float theta = lidOpening(std::cos(phi), std::sin(phi)) + 0.34f * fold;
              const float radius = eyeRadius + (t < 0.1f ? 0.03f : 0.48f + 0.26f * std::sin(pi * fold));
              return centre + (across * std::cos(phi) + up * std::sin(phi)) * (radius * std::sin(theta)) +
                     axis * (radius * std::cos(theta));
            },
            {.closedAcross = true}));
  const Triangle& some = lid.triangles[lid.triangles.size() / 2];
  const Vector out = lid.points[static_cast<std::size_t>(some.points[0])] - centre;
  return dot(normalOf(lid, some), out) < 0 ? turnedOver(lid) : lid;
}

// From below the opening up under the other lid; `rise` counts in degrees from the line of sight.
Surface coverSurface(float side) {
  const Vector axis = gazeAxis(side), across = eyeAcross(side), up = cross(axis, across),
               centre = acrossFrom(eyePlace, side);
  const float radius = eyeRadius + 0.42f;
  const Surface cover = withoutMapping(sheet(10, 4, [&](float s, float t) {
    const float aside = (2 * s - 1) * 80 * pi / 180;
    const float edge = -45 * std::sqrt(std::max(0.0f, 1 - (2 * s - 1) * (2 * s - 1)));
    const float rise = mix(edge, 60.0f, t) * pi / 180;
    const Vector out =
        across * std::sin(aside) + (up * std::sin(rise) + axis * std::cos(rise)) * std::cos(aside);
    return centre + out * radius;
  }));
  const Triangle& some = cover.triangles[cover.triangles.size() / 2];
  const Vector out = cover.points[static_cast<std::size_t>(some.points[0])] - centre;
  return dot(normalOf(cover, some), out) < 0 ? turnedOver(cover) : cover;
}

Surface cordSurface() {
  // Over the left thigh, down outside the leg, into the foot of the jar.
  const std::vector<Vector> path =
      smoothPath({Vector(-3, -14, 0), Vector(-10, -12.5f, 1), Vector(-12.5f, -12.2f, 8),
                  Vector(-12.5f, -12.6f, 13.5f), Vector(-11, -17, 17.5f), Vector(-6, -27, 20),
                  Vector(2, -37, 19), Vector(9, -44, 13), Vector(8, -48, 6)},
                 34);
  return mappingScaled(tube(
                           path, 6, [](float t) { return 1.45f + 0.3f * std::sin(t * 70); }, TubeEnd::open),
                       1, 1.6f);
}

}  // namespace vex::laboratory
