#include <algorithm>
#include <cmath>

#include "production/geometry/forms.h"
#include "production/geometry/mapping.h"
#include "production/models/intro_box_parts.h"
#include "production/textures/palette.h"

// The casket: a house of black iron with a steep roof, bound in brass.

namespace vex::reliquary {

using namespace image;
using namespace geometry;

namespace {

constexpr float wall = 4;      // thickness
constexpr float strapAt = 18;  // distance of the brass straps from the middle

Surface block(const Vector& least, const Vector& most, float bevel) {
  const Vector size = most - least;
  return placed(bevelledBox(size, bevel), moved((least + most) * 0.5f));
}

// A frame of four bars. The short ones reach into the bevels of the long ones, so that no corner gapes and no
// face lies upon another.
Surface frame(float halfX, float halfZ, float low, float high, float thick, float bevel) {
  const float reach = halfZ - thick + 2 * bevel;
  return joined({block({-halfX, low, halfZ - thick}, {halfX, high, halfZ}, bevel),
                 block({-halfX, low, -halfZ}, {halfX, high, -halfZ + thick}, bevel),
                 block({-halfX, low, -reach}, {-halfX + thick, high, reach}, bevel),
                 block({halfX - thick, low, -reach}, {halfX, high, reach}, bevel)});
}

Surface rivet(float radius) {
  return lathe(smoothProfile({{radius, 0}, {radius * 0.86f, radius * 0.4f}, {0, radius * 0.62f}}, 2), 6, 180);
}

// Lies against the front: +y of the thing looks to +z.
Placement onFront(float x, float y, float z) {
  return turnedX(90) >> moved(x, y, z);
}
Placement onSide(float x, float y, float z) {
  return turnedX(90) >> turnedY(x > 0 ? 90.0f : -90.0f) >> moved(x, y, z);
}

Outline circle(float x, float y, float radius, int count, bool hole) {
  Outline outline;
  for (int i = 0; i < count; ++i) {
    const float turn = 2 * pi * static_cast<float>(i) / static_cast<float>(count) * (hole ? -1.0f : 1.0f);
    outline.push_back({x + radius * std::cos(turn), y + radius * std::sin(turn)});
  }
  return outline;
}

// A pointed arch on y = 0, counter-clockwise from its right foot.
Outline pointed(float half, float springing, float scale, bool hole) {
  Outline outline;
  constexpr int pieces = 5;
  const float reach = half * 1.5f;  // radius of the two arcs
  const float top = std::acos((reach - half) / reach);
  const auto right = [&](int i) {
    const float turn = top * static_cast<float>(i) / pieces;
    return PlanePoint{half - reach + reach * std::cos(turn), springing + reach * std::sin(turn)};
  };
  outline.push_back({half, 0});
  for (int i = 0; i <= pieces; ++i) outline.push_back(right(i));
  for (int i = pieces - 1; i >= 0; --i) outline.push_back({-right(i).x, right(i).y});
  outline.push_back({-half, 0});
  for (PlanePoint& p : outline) p = {p.x * scale, p.y * scale};
  if (hole) std::reverse(outline.begin(), outline.end());
  return outline;
}

// A brass arch with a sill.
Surface archFrame() {
  Outline hole = pointed(4.6f, 15, 1, true);
  for (PlanePoint& p : hole) p.y += 1.6f;
  return withoutBack(joined({extrusion({pointed(6.2f, 17, 1, false), hole}, 1.8f, 0.5f),
                             placed(bevelledBox(Vector(14.4f, 1.8f, 3), 0.4f), moved(0, 0.4f, -0.4f))}));
}

Surface cabochon(float radius) {
  return lathe(smoothProfile({{radius, 0}, {radius * 0.92f, radius * 0.45f}, {0, radius * 0.8f}}, 3), 14,
               180);
}

// A ring about the y axis that is let into what lies below it; `across` quads of it show.
Surface ring(float radius, float thickness, int around, int across) {
  std::vector<ProfilePoint> profile;
  for (int i = 0; i <= across; ++i) {
    const float turn = mix(-pi / 6, pi * 7 / 6, static_cast<float>(i) / static_cast<float>(across));
    profile.push_back({radius + thickness * std::cos(turn), thickness * std::sin(turn)});
  }
  return lathe(profile, around, 180);
}

Surface bezel(float radius) {
  return ring(radius, radius * 0.16f, 16, 2);
}

// A corner column with base, ring and capital.
Surface post() {
  return lathe({{5.4f, 0},
                {5.4f, 2},
                {4.4f, 3},
                {3.4f, 4.4f},
                {3.2f, 6},
                {3.2f, 20},
                {4.2f, 21.2f},
                {4.2f, 23},
                {3.2f, 24},
                {3.2f, 39},
                {3.9f, 40.6f},
                {5.4f, 43},
                {5.4f, 45.2f},
                {0, 45.2f}},
               12);
}

Surface foot() {
  return lathe(
      smoothProfile({{0, 0}, {3.2f, 0.2f}, {6, 2.6f}, {5.2f, 5.4f}, {3, 6.6f}, {4.4f, 8}, {6.2f, 9}, {0, 9}},
                    8),
      11, 60);
}

// --- The roof: half extents by height.

struct RoofLevel {
  float halfX, halfZ, y;
};

RoofLevel roofAt(float t, float inset) {
  return {mix(52.0f, 33.0f, t) - inset, mix(31.0f, 0.8f, t) - inset * (1 - 0.8f * t),
          lidFoot + 5.5f + 50 * t - inset * 0.8f * t};
}

Surface roofShell(float inset, int across) {
  constexpr int levels = 3;
  Surface all;
  for (int side = 0; side < 4; ++side)
    append(all, sheet(across, levels, [&](float s, float t) {
             const RoofLevel at = roofAt(t, inset);
             const float sideways = 2 * s - 1;
             switch (side) {
               case 0:
                 return Vector(at.halfX * sideways, at.y, at.halfZ);
               case 1:
                 return Vector(at.halfX, at.y, -at.halfZ * sideways);
               case 2:
                 return Vector(-at.halfX * sideways, at.y, -at.halfZ);
               default:
                 return Vector(-at.halfX, at.y, at.halfZ * sideways);
             }
           }));
  return all;
}

// A band of brass up a slope of the roof; `front` is +1 or -1. It thins out under the ridge, where the roof
// is thin, so that it does not come through inside.
Surface roofStrap(float x, float front) {
  std::vector<Vector> path;
  for (int i = 0; i <= 3; ++i) {
    const RoofLevel at = roofAt(0.88f * static_cast<float>(i) / 3, -0.5f);
    path.emplace_back(x, at.y, front * at.halfZ);
  }
  return tube(
      path, 8, [](float t) { return 2.6f - 0.7f * t; }, TubeEnd::round);
}

std::vector<Vector> hipPath(float sideX, float sideZ) {
  std::vector<Vector> path;
  for (int i = 0; i <= 3; ++i) {
    const RoofLevel at = roofAt(static_cast<float>(i) / 3, 0);
    path.emplace_back(sideX * at.halfX, at.y, sideZ * at.halfZ);
  }
  return path;
}

// A leaf of two lobes that curls off a hip, upwards.
Surface crocket() {
  const Surface bud =
      lathe(smoothProfile(
                {{0, 0}, {2.2f, 0.3f}, {1.7f, 1.8f}, {2.4f, 3.4f}, {1.2f, 4.6f}, {1.6f, 5.5f}, {0, 6.8f}}, 7),
            7, 180);
  return bent(placed(bud, moved(0, -1.4f, 0)), [](const Vector& p) {
    return Vector(p.x * 0.8f, p.y - 0.05f * p.y * p.y, p.z + 0.07f * p.y * p.y);
  });
}

Surface finial() {
  return lathe(smoothProfile({{0, 0},
                              {3.2f, 0.2f},
                              {2, 2},
                              {1.4f, 4},
                              {3.4f, 6.4f},
                              {3.4f, 8},
                              {1.2f, 10.2f},
                              {1.9f, 11.6f},
                              {0.9f, 13.4f},
                              {0, 19}},
                             10),
               10, 100);
}

// One leaf of the crest on the ridge: a pointed arch with a round eye.
Surface crestLeaf() {
  return placed(extrusion({pointed(3.1f, 4, 1, false), circle(0, 4.6f, 1.5f, 12, true)}, 1.5f),
                moved(0, 0, 0.75f));
}

// --- The lock

Outline keyhole() {
  Outline outline;
  for (int i = 0; i <= 14; ++i) {
    const float turn = pi * (-0.30f + 1.6f * static_cast<float>(i) / 14);
    outline.push_back({2 * std::cos(turn), 1.2f + 2 * std::sin(turn)});
  }
  outline.push_back({-1.7f, -4.6f});
  outline.push_back({1.7f, -4.6f});
  std::reverse(outline.begin(), outline.end());
  return outline;
}

// Eight-lobed plate under the lock.
Outline foiled(float radius, float lobe, int lobes) {
  Outline outline;
  const int count = lobes * 8;
  for (int i = 0; i < count; ++i) {
    const float turn = 2 * pi * static_cast<float>(i) / static_cast<float>(count);
    const float r = radius + lobe * std::fabs(std::sin(turn * static_cast<float>(lobes) / 2));
    outline.push_back({r * std::cos(turn), r * std::sin(turn)});
  }
  return outline;
}

// --- The body

// Walls, mouldings, the mount of the lock.
Surface casketShell() {
  Surface all;
  const float x = halfWidth, z = halfDepth;
  append(all, block({-x, floorTop, z - wall}, {x, wallTop, z}, 0.4f), iron);
  append(all, block({-x, floorTop, -z}, {x, wallTop, -z + wall}, 0.4f), iron);
  append(all, block({-x, floorTop, -z + wall}, {-x + wall, wallTop, z - wall}, 0), iron);
  append(all, block({x - wall, floorTop, -z + wall}, {x, wallTop, z - wall}, 0), iron);
  append(all, block({-x - 6, tableTop + 8, -z - 6}, {x + 6, tableTop + 12, z + 6}, 1.2f), brass);
  append(all, block({-x - 3, tableTop + 12, -z - 3}, {x + 3, floorTop + 1, z + 3}, 1.4f), brass);
  append(all, frame(x + 2.4f, z + 2.4f, wallTop - 1, lidFoot - 0.7f, wall + 2.4f, 0.9f), brass);
  // What shows when the lid is up: a well of light, clear of the walls.
  constexpr float lining = wall + 0.5f;
  append(
      all,
      turnedOver(block({-x + lining, floorTop - 2, -z + lining}, {x - lining, wallTop + 1, z - lining}, 0)),
      inside);

  // The mount of the lock.
  append(all, placed(extrusion({foiled(14.2f, 2.2f, 8)}, 2, 0.6f), moved(0, lockPivot.y, z + 1.6f)), brass);
  append(all, placed(ring(12.6f, 1.1f, 36, 5), onFront(0, lockPivot.y, z + 2.2f)), brass);
  return all;
}

// Straps with their rivets, and rivets along the moulding and around the lock.
void addStraps(Assembly& body) {
  constexpr float x = halfWidth, z = halfDepth;
  Copies straps{bevelledBox(Vector(5, wallTop - floorTop, 1.8f), 0.5f), {}, brass};
  Copies rivets{rivet(1.05f), {}, brass};
  for (const float side : {-1.0f, 1.0f}) {
    straps.places.push_back(moved(side * strapAt, (floorTop + wallTop) / 2, z + 0.3f));
    for (int i = 0; i < 6; ++i) {
      const float y = floorTop + 4.5f + 6.6f * static_cast<float>(i);
      rivets.places.push_back(onFront(side * strapAt, y, z + 1.1f));
    }
  }
  for (int i = -6; i <= 6; ++i) {
    rivets.places.push_back(onFront(7.6f * static_cast<float>(i), 124.2f, z + 2.3f));
    if (std::abs(i) == 1 || std::abs(i) == 3) {
      rivets.places.push_back(onSide(x + 2.3f, 124.2f, 7.6f * static_cast<float>(i)));
      rivets.places.push_back(onSide(-x - 2.3f, 124.2f, 7.6f * static_cast<float>(i)));
    }
  }
  for (int i = 0; i < 8; ++i) {
    const float turn = (static_cast<float>(i) + 0.5f) * pi / 4;
    rivets.places.push_back(onFront(14.6f * std::cos(turn), lockPivot.y + 14.6f * std::sin(turn), z + 1.5f));
  }
  body.repeated.push_back(std::move(straps));
  body.repeated.push_back(std::move(rivets));
}

// A stone in each arch.
void addArcade(Assembly& body) {
  Copies arches{archFrame(), {}, brass}, stones{cabochon(2.7f), {}, gem}, settings{bezel(2.8f), {}, brass};
  const auto bay = [&](const Placement& turn, float along, float out) {
    const auto put = [&](float y, float lift) { return moved(along, y, out + lift) >> turn; };
    arches.places.push_back(put(85, 1.7f));
    stones.places.push_back(turnedX(90) >> put(103, 0));
    settings.places.push_back(turnedX(90) >> put(103, 0.2f));
  };
  for (const float at : {26.8f, 39.4f}) {
    bay(Placement(), -at, halfDepth);
    bay(Placement(), at, halfDepth);
  }
  for (const float at : {-13.0f, 0.0f, 13.0f})
    for (const float side : {-90.0f, 90.0f}) bay(turnedY(side), at, halfWidth);
  body.repeated.push_back(std::move(arches));
  body.repeated.push_back(std::move(stones));
  body.repeated.push_back(std::move(settings));
}

// --- The lid

void addCrest(Assembly& lid, float ridgeY) {
  Copies crockets{crocket(), {}, brass};
  for (int i = 1; i <= 5; ++i)
    for (const float sx : {-1.0f, 1.0f}) {
      const RoofLevel at = roofAt(static_cast<float>(i) / 6, 0);
      crockets.places.push_back(
          standing(Vector(sx * at.halfX, at.y, at.halfZ), unit(Vector(sx, 1.0f, 0.8f))));
    }
  lid.repeated.push_back(std::move(crockets));
  Copies leaves{crestLeaf(), {}, brass};
  for (int i = -4; i <= 4; ++i)
    leaves.places.push_back(moved(6.6f * static_cast<float>(i), ridgeY + 1.6f, 0));
  lid.repeated.push_back(std::move(leaves));
  lid.repeated.push_back({finial(), {moved(-34, ridgeY, 0), moved(34, ridgeY, 0)}, brass});
}

void addRivets(Assembly& lid) {
  Copies rivets{rivet(1.0f), {}, brass};
  for (int i = -6; i <= 6; ++i)
    if (i != 0)
      rivets.places.push_back(onFront(8.2f * static_cast<float>(i), lidFoot + 2.9f, halfDepth + 5.4f));
  for (int i = -3; i <= 3; i += 2)
    for (const float side : {-1.0f, 1.0f})
      rivets.places.push_back(
          onSide(side * (halfWidth + 5.4f), lidFoot + 2.9f, 8.2f * static_cast<float>(i)));
  lid.repeated.push_back(std::move(rivets));
}

// On the front slope.
void addStones(Assembly& lid) {
  const RoofLevel low = roofAt(0.42f, 0), high = roofAt(0.48f, 0);
  const Vector out = unit(Vector(0, low.halfZ - high.halfZ, high.y - low.y));
  std::vector<Placement> places;
  for (const float x : {-33.0f, 0.0f, 33.0f})
    places.push_back(standing(Vector(x * (x == 0 ? 1 : 0.93f), low.y, low.halfZ), out));
  lid.repeated.push_back({cabochon(3.4f), places, gem});
  lid.repeated.push_back({bezel(3.5f), places, brass});
}

}  // namespace

Surface everything(const Assembly& assembly) {
  Surface all = withoutMapping(assembly.single);
  for (const Copies& copies : assembly.repeated)
    for (const Placement& place : copies.places)
      append(all, placed(withoutMapping(copies.form), place), copies.skin);
  return all;
}

Surface withoutBack(const Surface& surface) {
  return selected(surface, [&](const Triangle& triangle) { return normalOf(surface, triangle).z > -0.95f; });
}

Assembly casketBody() {
  Assembly body{casketShell(), {}};
  const auto corners = [](float y) {
    std::vector<Placement> places;
    for (const float z : {halfDepth, -halfDepth})
      for (const float x : {-halfWidth, halfWidth}) places.push_back(moved(x, y, z));
    return places;
  };
  body.repeated = {{foot(), corners(tableTop), brass}, {post(), corners(floorTop), brass}};
  addStraps(body);
  addArcade(body);
  return body;
}

Assembly casketLid() {
  Assembly lid;
  Surface& all = lid.single;
  append(all, frame(halfWidth + 5.5f, halfDepth + 5.5f, lidFoot, lidFoot + 5.8f, 9, 1.2f), brass);
  append(all, roofShell(0, 6), iron);
  append(all, turnedOver(roofShell(4.2f, 2)), inside);
  const float ridgeY = roofAt(1, 0).y;
  append(all,
         tube({Vector(-34, ridgeY, 0), Vector(0, ridgeY, 0), Vector(34, ridgeY, 0)}, 12,
              [](float) { return 2.3f; }),
         brass);
  // The hasp that comes down to the lock.
  append(all,
         placed(extrusion({pointed(5.2f, 9, 1, false), circle(0, 8.6f, 2.2f, 16, true)}, 1.8f, 0.5f),
                turnedZ(180) >> moved(0, lidFoot + 4, halfDepth + 7)),
         brass);
  // Hinges.
  for (const float x : {-26.0f, 26.0f})
    append(all,
           placed(cylinder(2.6f, 14, 14, 0.5f),
                  moved(0, -7, 0) >> turnedZ(90) >> moved(x, lidPivot.y, lidPivot.z - 1.5f)),
           brass);

  // None behind.
  lid.repeated.push_back({roofStrap(-strapAt, 1), {moved(0, 0, 0), moved(2 * strapAt, 0, 0)}, brass});
  for (const float side : {1.0f, -1.0f})
    lid.repeated.push_back(
        {tube(hipPath(side, 1), 8, [](float) { return 1.5f; }), {Placement(), turnedY(180)}, brass});
  addCrest(lid, ridgeY);
  addRivets(lid);
  addStones(lid);
  return lid;
}

Assembly casketLock() {
  Assembly lock;
  Surface& all = lock.single;
  append(all, placed(extrusion({circle(0, 0, 11, 64, false), keyhole()}, 2.4f, 0.7f), moved(0, 0, 1.6f)),
         brass);
  // Light deep in the keyhole.
  append(all, placed(disc(6, 20, 2), onFront(0, -1, 0.6f)), inside);
  append(all, placed(ring(9.4f, 0.55f, 36, 3), onFront(0, 0, 1.6f)), brass);
  append(all, placed(ring(5.9f, 0.5f, 28, 3), onFront(0, 0, 1.6f)), brass);
  Copies rays{
      extrusion({{{0.55f, 6.4f}, {0.15f, 9.0f}, {-0.15f, 9.0f}, {-0.55f, 6.4f}}}, 0.9f, 0.25f), {}, brass};
  Copies studs{rivet(0.8f), {}, brass};
  for (int i = 0; i < 16; ++i) {
    if (i % 4 != 0) rays.places.push_back(moved(0, 0, 2.3f) >> turnedZ(22.5f * static_cast<float>(i)));
    if (i % 4 == 0) studs.places.push_back(onFront(0, 7.7f, 1.5f) >> turnedZ(22.5f * static_cast<float>(i)));
  }
  // Four grips on the rim.
  const Outline claw{{1.3f, 12.6f}, {0, 13.3f}, {-1.3f, 12.6f}, {-1, 10.6f}, {0, 9.4f}, {1, 10.6f}};
  Copies grips{placed(extrusion({claw}, 2, 0.7f), moved(0, 0, 2.6f)), {}, brass};
  for (int i = 0; i < 4; ++i) grips.places.push_back(turnedZ(45 + 90 * static_cast<float>(i)));
  lock.repeated = {std::move(rays), std::move(studs), std::move(grips)};
  all = placed(all, moved(lockPivot));
  for (Copies& copies : lock.repeated)
    for (Placement& place : copies.places) place = place >> moved(lockPivot);
  return lock;
}

}  // namespace vex::reliquary
