#include "production/models/hell_parts.h"

// Where hell is seen from. Each camera moves in the seconds of its own shot and stands before and after; the
// shots enter all paths, and the world's own events, at those times.

namespace vex::hell {

namespace {

struct Shot {
  const char* name;
  float fieldDegrees;
  float from, seconds;
  std::vector<Vector> eye, target;
};

}  // namespace

std::vector<StageCamera> cameras() {
  const Shot shots[] = {
      // Up the nave.
      {"wide",
       84,
       0.5f,
       4.5f,
       {Vector(40, 44, 345), Vector(20, 52, 296), Vector(-12, 60, 240)},
       {Vector(-34, 104, 0), Vector(-22, 104, 0), Vector(0, 102, 0)}},
      // A hand above the lava.
      {"low",
       84,
       3,
       2.5f,
       {Vector(2, 9, 168), Vector(18, 9, 148), Vector(38, 11, 126)},
       {Vector(-12, 84, 0), Vector(-16, 86, 0), Vector(-22, 90, 0)}},
      // Around the sphere.
      {"close",
       66,
       1,
       2.5f,
       {Vector(40, 84, 88), Vector(24, 94, 95), Vector(2, 102, 98)},
       {Vector(-6, 88, 0), Vector(0, 88, 0), Vector(6, 89, 0)}},
      // A crane from the lake to the vault.
      {"crane",
       82,
       5,
       2.5f,
       {Vector(-74, 92, 160), Vector(-62, 140, 156), Vector(-46, 190, 148)},
       {Vector(12, 86, 0), Vector(13, 76, -6), Vector(12, 62, -14)}},
      // Through the aisle, past a pier.
      {"aisle",
       78,
       8.5f,
       2.5f,
       {Vector(-120, 56, 50), Vector(-112, 64, 44), Vector(-98, 74, 34)},
       {Vector(0, 90, 16), Vector(0, 89, 8), Vector(0, 88, -6)}},
      // From the lake's surface straight up: the sphere, its chains, the broken vault.
      {"beneath",
       84,
       8,
       2.5f,
       {Vector(-44, 12, 52), Vector(-34, 11, 46), Vector(-18, 10, 44)},
       {Vector(10, 96, 0), Vector(8, 98, 0), Vector(2, 100, 0)}},
      // Under the lake, whose other side is a roof of fire, straight up: what it mirrors hangs there in
      // black.
      {"sunk",
       84,
       5,
       2.5f,
       {Vector(34, -236, 66), Vector(26, -226, 56), Vector(16, -214, 46)},
       {Vector(-14, 0, -6), Vector(-10, 0, -6), Vector(-6, 0, -6)}},
      {"sunken",
       70,
       8,
       2.5f,
       {Vector(-40, -190, 30), Vector(-32, -184, 26), Vector(-20, -176, 20)},
       {Vector(12, -60, 0), Vector(10, -60, 0), Vector(6, -60, 0)}},
      // At the lava's level: the sphere above, its image below.
      {"shore",
       94,
       1,
       2.5f,
       {Vector(-50, 9, 268), Vector(-34, 8, 262), Vector(-8, 8, 252)},
       {Vector(12, 10, 0), Vector(20, 11, 0), Vector(30, 12, 0)}},
      // From far outside along the nave: the sphere against the windows.
      {"backlit",
       36,
       7,
       2.5f,
       {Vector(30, 60, 490), Vector(22, 62, 470), Vector(8, 65, 440)},
       {Vector(-24, 100, 0), Vector(-20, 100, 0), Vector(-14, 100, 0)}},
      // Behind the sphere, up to the choir's windows.
      {"windows",
       76,
       8,
       2.5f,
       {Vector(-58, 26, -40), Vector(-50, 32, -54), Vector(-38, 40, -76)},
       {Vector(6, 136, -318), Vector(4, 138, -318), Vector(2, 142, -318)}},
      // Before the rose that bursts.
      {"rose",
       72,
       roseBursts,
       2.5f,
       {Vector(18, 148, -120), Vector(14, 150, -104), Vector(6, 152, -76)},
       {Vector(-6, 190, -318), Vector(-5, 189, -318), Vector(-2, 186, -318)}},
      // Where the plates come off: into the heart.
      {"core",
       66,
       14.5f,
       2.5f,
       {Vector(104, 142, 46), Vector(92, 133, 46), Vector(74, 118, 42)},
       {Vector(0, 90, 14), Vector(0, 90, 12), Vector(0, 89, 8)}},
      // The open heart in its cathedral, then nearer with each blow.
      {"open",
       78,
       17,
       1.5f,
       {Vector(66, 60, 196), Vector(62, 64, 188), Vector(56, 70, 176)},
       {Vector(-22, 86, 0), Vector(-20, 86, 0), Vector(-18, 86, 0)}},
      {"nearer",
       70,
       17,
       1.5f,
       {Vector(78, 118, 82), Vector(76, 116, 78), Vector(70, 112, 72)},
       {Vector(-8, 84, 0), Vector(-8, 84, 0), Vector(-6, 85, 0)}},
      {"into",
       60,
       17,
       2.5f,
       {Vector(74, 122, 50), Vector(64, 117, 44), Vector(48, 109, 33)},
       {Vector(2, 86, 2), Vector(3, 88, 3), Vector(5, 91, 3)}},
  };
  std::vector<StageCamera> all;
  for (const Shot& shot : shots)
    all.push_back(cameraDuring({.name = shot.name, .fieldDegrees = shot.fieldDegrees, .far = 4000},
                               shotSeconds, shot.from, shot.seconds, shot.eye, shot.target));
  return all;
}

}  // namespace vex::hell
