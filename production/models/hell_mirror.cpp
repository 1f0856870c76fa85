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

// Shafts without anything on them: from under the lake they hang from its roof.
Surface piersInLake() {
  constexpr float thick = 17, deep = 190;
  Surface all;
  for (const float side : {-1.0f, 1.0f})
    for (const int place : {-2, -1, 0, 1, 2})
      append(all, placed(withoutMapping(lathe({{thick, -deep}, {thick, -0.9f}}, 10, 90)),
                         moved(side * naveHalf, 0, bay * static_cast<float>(place))));
  return all;
}

Surface ringInLake() {
  return placed(withoutMapping(torus(sphereRadius + 14, 2.8f, 28, 4)), shackleTilt() >> stretched(1, -1, 1));
}

}  // namespace vex::hell
