#include <algorithm>
#include <cmath>

#include "production/geometry/forms.h"
#include "production/geometry/mapping.h"
#include "production/image/image.h"
#include "production/models/fetus_parts.h"

// A tiled room without a gap; what is seen of the outside is white.

namespace vex::laboratory {

using namespace image;
using namespace geometry;

namespace {

constexpr float west = -380, east = 380, floorHeight = -220, top = 260, north = -330, south = 430;
constexpr float doorWest = 96, doorEast = 216, doorTop = 50;

// Its front is where `across` to the right and `up` upwards is seen.
Surface panel(const Vector& corner, const Vector& across, const Vector& up, float cell) {
  const auto count = [cell](const Vector& side) {
    return std::max(1, static_cast<int>(side.length() / cell));
  };
  return withoutMapping(
      sheet(count(across), count(up), [&](float s, float t) { return corner + across * s + up * t; }));
}

Surface box(const Vector& least, const Vector& most, float bevel) {
  return withoutMapping(placed(bevelledBox(most - least, bevel), moved((least + most) * 0.5f)));
}

Surface pipe(const std::vector<Vector>& bends, float radius, int pieces) {
  return withoutMapping(tube(
      smoothPath(bends, pieces), 6, [radius](float) { return radius; }, TubeEnd::open));
}

}  // namespace

Surface roomSurface() {
  constexpr float cell = 92, height = top - floorHeight;
  const Vector up(0, height, 0);
  Surface all;
  append(all, panel(Vector(west, floorHeight, north), Vector(doorWest - west, 0, 0), up, cell), walls);
  append(all, panel(Vector(doorEast, floorHeight, north), Vector(east - doorEast, 0, 0), up, cell), walls);
  append(all,
         panel(Vector(doorWest, doorTop, north), Vector(doorEast - doorWest, 0, 0),
               Vector(0, top - doorTop, 0), cell),
         walls);
  append(all, panel(Vector(west, floorHeight, south), Vector(0, 0, north - south), up, cell), walls);
  append(all, panel(Vector(east, floorHeight, north), Vector(0, 0, south - north), up, cell), walls);
  append(all, panel(Vector(east, floorHeight, south), Vector(west - east, 0, 0), up, cell * 2), walls);
  append(
      all,
      panel(Vector(west, floorHeight, south), Vector(east - west, 0, 0), Vector(0, 0, north - south), cell),
      ground);
  append(all,
         panel(Vector(west, top, north), Vector(east - west, 0, 0), Vector(0, 0, south - north), cell * 2),
         ceiling);
  // Frames of door and window, a rail along the walls, lagged pipes under the ceiling.
  for (const float x : {doorWest - 12, doorEast})
    append(all, box(Vector(x, floorHeight, north - 10), Vector(x + 12, doorTop + 12, north + 8), 2), frames);
  append(all,
         box(Vector(doorWest - 12, doorTop, north - 10), Vector(doorEast + 12, doorTop + 12, north + 8), 2),
         frames);
  for (const float x : {-272.0f, -172.0f, -68.0f})
    append(all, box(Vector(x, -52, north - 4), Vector(x + 8, 102, north + 9), 2), frames);
  for (const float y : {-60.0f, 98.0f})
    append(all, box(Vector(-274, y, north - 4), Vector(-58, y + 9, north + 10), 2), frames);
  append(all, box(Vector(west - 4, -96, north - 3), Vector(doorWest - 12, -90, north + 4), 1), frames);
  append(all, box(Vector(west - 4, -96, north), Vector(west + 4, -90, south), 1), frames);
  for (int i = 0; i < 3; ++i) {
    const float k = 17 * static_cast<float>(i);
    append(all,
           pipe({Vector(west + 14 + k, 226, south), Vector(west + 14 + k, 226, 80),
                 Vector(west + 14 + k, 226, north + 22 + k), Vector(-120, 228, north + 14 + k),
                 Vector(240, 228, north + 14 + k), Vector(east, 228, north + 14 + k)},
                6.5f - static_cast<float>(i), 10),
           pipes);
  }
  append(all,
         pipe({Vector(62, 228, north + 12), Vector(58, 200, north + 9), Vector(58, 0, north + 8),
               Vector(58, floorHeight, north + 8)},
              5, 8),
         pipes);
  return all;
}

Surface doorSurface() {
  // It shuts behind the lintel: no slit shows over it while it turns.
  const Vector least(doorWest, floorHeight - 3, north - 7), most(doorEast, doorTop + 9, north + 1);
  Surface all = box(least, most, 1.5f);
  for (const float y : {-190.0f, -118.0f, -70.0f})  // ribs
    append(all, box(Vector(doorWest + 10, y, north), Vector(doorEast - 10, y + 7, north + 5), 1.5f));
  const auto ring = [](float radius, float width, float height, const Vector& at) {
    return withoutMapping(
        placed(lathe({{radius + width, 0}, {radius + width, height}, {radius, height}, {radius, 0.2f}}, 20),
               turnedX(90) >> moved(at)));
  };
  append(all, ring(24, 6, 6, Vector(156, -10, north)));
  append(all, ring(10, 2.5f, 9, Vector(156, -88, north + 4)));
  for (const float degrees : {0.0f, 60.0f, 120.0f})
    append(all, withoutMapping(placed(bevelledBox(Vector(23, 2.4f, 2.4f), 0.5f),
                                      turnedZ(degrees) >> moved(156, -88, north + 12))));
  return all;
}

Surface windowSurface() {
  return placed(mappingScaled(card(200, 150), 1, windowShare), moved(-164, -52, north + 2));
}

namespace {

constexpr float farthest = 0.985f;  // of the strip's u: it tiles, and the next tile begins bright

// Near edge of a pool of light, from left to right, and far edge; the strip's u runs away from the door.
Surface lightPool(const Vector& leftNear, const Vector& rightNear, const Vector& leftFar,
                  const Vector& rightFar, float from, float to) {
  const auto place = [&](float s, float t) {
    return mix(mix(leftFar, rightFar, s), mix(leftNear, rightNear, s), t);
  };
  Surface pool = sheet(6, 4, place);
  for (Triangle& triangle : pool.triangles)
    for (Uv& uv : triangle.uv)
      uv = {mix(std::min(to, farthest), from, uv.v), mix(windowShare + 0.02f, 0.985f, uv.u)};
  return pool;
}

}  // namespace

Surface doorLightSurface() {
  const float onFloor = floorHeight + 0.6f, onTable = tableHeight + 0.25f;
  Surface all = lightPool(Vector(doorWest + 10, onFloor, north), Vector(doorEast + 6, onFloor, north),
                          Vector(-120, onFloor, 60), Vector(300, onFloor, 60), 0, 1);
  append(all, lightPool(Vector(-120, onTable, -98), Vector(184, onTable, -98), Vector(-250, onTable, 110),
                        Vector(90, onTable, 110), 0, 0.9f));
  // A glow in the air about the opening, strongest at the post.
  const float middle = 0.5f * (windowShare + 1), reach = 84;
  Surface glow = sheet(8, 7, [&](float s, float t) {
    return Vector(mix(doorWest - 96, doorEast + 90, s), mix(floorHeight + 1, doorTop + 96, t), north + 22);
  });
  for (Triangle& triangle : glow.triangles)
    for (std::size_t i = 0; i < 3; ++i) {
      const Vector& p = glow.points[static_cast<std::size_t>(triangle.points[i])];
      const float aside = std::max({doorWest + 76 - p.x, p.x - doorEast, 0.0f}),
                  above = std::max(0.0f, p.y - doorTop);
      triangle.uv[i] = {std::min(farthest, 0.3f + 0.7f * std::hypot(aside, above) / reach), middle};
    }
  append(all, glow);
  return all;
}

Surface whiteSurface() {
  return withoutMapping(
      placed(turnedOver(bevelledBox(Vector(360, 420, 160), 0)), moved(156, -60, north - 82)));
}

}  // namespace vex::laboratory
