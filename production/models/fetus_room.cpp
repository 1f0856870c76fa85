#include <algorithm>

#include "production/geometry/forms.h"
#include "production/geometry/mapping.h"
#include "production/models/fetus_parts.h"

// A tiled room without a gap; what is seen of the outside is white.

namespace vex::laboratory {

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
      smoothPath(bends, pieces), 8, [radius](float) { return radius; }, TubeEnd::open));
}

}  // namespace

Surface roomSurface() {
  constexpr float cell = 76, height = top - floorHeight;
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
                6.5f - static_cast<float>(i), 40),
           pipes);
  }
  append(all,
         pipe({Vector(62, 228, north + 12), Vector(58, 200, north + 9), Vector(58, 0, north + 8),
               Vector(58, floorHeight, north + 8)},
              5, 18),
         pipes);
  return all;
}

Surface doorSurface() {
  const Vector least(doorWest, floorHeight, north - 7), most(doorEast, doorTop, north + 1);
  Surface all = box(least, most, 1.5f);
  for (const float y : {-190.0f, -118.0f, -70.0f})  // ribs
    append(all, box(Vector(doorWest + 10, y, north), Vector(doorEast - 10, y + 7, north + 5), 1.5f));
  const auto ring = [](float radius, float width, float height, const Vector& at) {
    return withoutMapping(
        placed(lathe({{radius + width, 0}, {radius + width, height}, {radius, height}, {radius, 0.2f}}, 24),
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
  return placed(card(200, 150), moved(-164, -52, north + 2));
}

Surface whiteSurface() {
  return withoutMapping(
      placed(turnedOver(bevelledBox(Vector(360, 420, 160), 0)), moved(156, -60, north - 82)));
}

}  // namespace vex::laboratory
