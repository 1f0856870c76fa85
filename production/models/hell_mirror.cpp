#include <cmath>

#include "production/geometry/forms.h"
#include "production/geometry/mapping.h"
#include "production/models/hell_parts.h"

// What the lake's black glass shows: images below it, drawn before it. Far coarser than what they mirror,
// for the melt between the plates cuts them to pieces.

namespace vex::hell {

using namespace image;
using namespace geometry;

Placement inLake(const Placement& turn) {
  const Placement mirror = stretched(1, -1, 1);
  return mirror >> turn >> mirror;
}

Vector inLake(const Vector& place) {
  return {place.x, -place.y, place.z};
}

Surface sphereInLake() {
  return placed(withoutMapping(sphere(sphereRadius, 24, 8)), moved(inLake(sphereCentre)));
}

// Shafts and the ribs between them: from under the lake they hang from its roof, a nave upside down.
Surface archesInLake() {
  constexpr float thick = 15, deep = 134, thin = 7;
  constexpr int pieces = 6;
  Surface half = withoutMapping(
      placed(lathe({{thin, -deep}, {thick, -0.4f * deep}, {thick, -0.9f}}, 5, 90), moved(-naveHalf, 0, 0)));
  std::vector<Vector> rib;
  for (int i = 0; i <= pieces; ++i) rib.push_back(inLake(ribPlace(static_cast<float>(i) / pieces)));
  append(half, withoutMapping(tube(
                   rib, 3, [](float) { return thin; }, TubeEnd::open)));
  append(half, placed(half, stretched(-1, 1, 1)));
  Surface all;
  for (const int place : {-3, -2, -1, 0, 1})
    append(all, placed(half, moved(0, 0, bay * static_cast<float>(place))));
  return all;
}

Surface ringInLake() {
  return placed(withoutMapping(torus(sphereRadius + 14, 2.8f, 26, 3)), shackleTilt() >> stretched(1, -1, 1));
}

}  // namespace vex::hell
