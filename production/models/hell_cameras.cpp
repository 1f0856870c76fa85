#include "production/models/hell_parts.h"

// Where hell is seen from. All paths take twenty seconds; the shots enter them where they like.

namespace vex::hell {

namespace {

StageCamera camera(const char* name, float fieldDegrees, const std::vector<Vector>& eye,
                   const std::vector<Vector>& target) {
  return cameraThrough({.name = name, .fieldDegrees = fieldDegrees, .far = 4000}, shotSeconds, eye, target);
}

}  // namespace

std::vector<StageCamera> cameras() {
  return {
      // Up the nave.
      camera("wide", 84,
             {Vector(46, 40, 350), Vector(28, 50, 290), Vector(-18, 62, 220), Vector(-46, 70, 170)},
             {Vector(-34, 106, 0), Vector(-32, 106, 0), Vector(22, 100, 0), Vector(26, 96, 0)}),
      // A hand above the lava.
      camera("low", 88, {Vector(-62, 11, 210), Vector(-30, 9, 172), Vector(22, 10, 138), Vector(68, 13, 100)},
             {Vector(24, 84, 0), Vector(26, 84, 0), Vector(-18, 86, 0), Vector(-26, 92, 0)}),
      // Around the sphere.
      camera("close", 66, {Vector(44, 82, 86), Vector(16, 98, 98), Vector(-34, 106, 92), Vector(-78, 96, 56)},
             {Vector(-4, 88, 0), Vector(6, 88, 0), Vector(8, 90, 0), Vector(-2, 88, 0)}),
      // A crane from the lake to the vault.
      camera("crane", 82,
             {Vector(-78, 22, 150), Vector(-74, 96, 160), Vector(-52, 176, 150), Vector(-24, 222, 128)},
             {Vector(14, 80, 0), Vector(12, 86, 0), Vector(14, 70, -10), Vector(10, 56, -20)}),
      // From the choir out over the lake.
      camera("outwards", 82,
             {Vector(40, 30, -230), Vector(52, 46, -190), Vector(24, 66, -160), Vector(-36, 74, -130)},
             {Vector(-12, 92, 0), Vector(0, 92, 0), Vector(-10, 90, 0), Vector(8, 88, 0)}),
      // Through the aisle, past the piers.
      camera("aisle", 78,
             {Vector(-170, 44, 116), Vector(-168, 56, 92), Vector(-164, 70, 68), Vector(-158, 82, 42)},
             {Vector(0, 92, 22), Vector(0, 90, 12), Vector(0, 88, -6), Vector(0, 88, -16)}),
      // Into the seams.
      camera("seams", 60,
             {Vector(38, 98, 92), Vector(32, 108, 80), Vector(16, 114, 74), Vector(-10, 112, 76)},
             {Vector(-4, 94, 10), Vector(0, 96, 10), Vector(-2, 94, 12), Vector(-12, 92, 12)}),
      // At the lava's level: the sphere above, its image below.
      camera("shore", 94, {Vector(-52, 9, 268), Vector(6, 7, 244), Vector(34, 8, 230), Vector(50, 9, 220)},
             {Vector(14, 8, 0), Vector(38, 10, 0), Vector(30, 10, 0), Vector(20, 8, 0)}),
      // From far outside along the nave: the sphere against the windows.
      camera("backlit", 36,
             {Vector(34, 58, 500), Vector(24, 62, 470), Vector(6, 66, 430), Vector(-10, 72, 400)},
             {Vector(-26, 96, 0), Vector(-22, 96, 0), Vector(-14, 96, 0), Vector(-6, 96, 0)}),
      // Past the chain that hangs in the nave's mouth.
      camera("chained", 80,
             {Vector(-36, 120, 336), Vector(-27, 116, 326), Vector(-9, 108, 312), Vector(4, 100, 298)},
             {Vector(0, 84, 0), Vector(0, 86, 0), Vector(4, 88, 0), Vector(4, 90, 0)}),
      // Where the plates come off.
      camera("core", 70, {Vector(60, 160, 2), Vector(66, 154, 4), Vector(96, 146, 10), Vector(92, 118, 44)},
             {Vector(0, 84, 0), Vector(0, 84, 0), Vector(2, 90, 14), Vector(0, 90, 10)}),
  };
}

}  // namespace vex::hell
