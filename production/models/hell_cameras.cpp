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
       78,
       0.5f,
       4.5f,
       {Vector(34, 40, 300), Vector(16, 48, 250), Vector(-10, 58, 196)},
       {Vector(-22, 104, 0), Vector(-14, 104, 0), Vector(0, 102, 0)}},
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
       {Vector(58, 60, 124), Vector(42, 66, 116), Vector(18, 74, 104)},
       {Vector(-8, 94, 0), Vector(-4, 94, 0), Vector(2, 94, 0)}},
      // A crane from the lake to the vault.
      {"crane",
       82,
       5,
       2.5f,
       {Vector(74, 92, 160), Vector(62, 140, 156), Vector(46, 190, 148)},
       {Vector(-12, 86, 0), Vector(-13, 76, -6), Vector(-12, 62, -14)}},
      // Along the row of piers, past the sphere.
      {"aisle",
       78,
       8.5f,
       2.5f,
       {Vector(-84, 52, 132), Vector(-72, 58, 120), Vector(-52, 66, 104)},
       {Vector(12, 96, 0), Vector(10, 95, 0), Vector(4, 93, 0)}},
      // From the lake's surface straight up: the sphere, its chains, the broken vault.
      {"beneath",
       84,
       8,
       2.5f,
       {Vector(-40, 12, -58), Vector(-32, 11, -52), Vector(-18, 10, -48)},
       {Vector(8, 98, 0), Vector(6, 99, 0), Vector(2, 100, 0)}},
      // Under the lake, whose other side is a roof of fire, straight up: what it mirrors hangs there in
      // black.
      {"sunk",
       84,
       5,
       2.5f,
       {Vector(44, -196, 60), Vector(36, -188, 52), Vector(26, -178, 44)},
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
       34,
       7,
       2.5f,
       {Vector(30, 60, 470), Vector(22, 62, 446), Vector(8, 65, 410)},
       {Vector(-20, 106, 0), Vector(-16, 106, 0), Vector(-10, 106, 0)}},
      // Behind the sphere, up to the choir's windows.
      {"windows",
       76,
       8,
       2.5f,
       {Vector(-58, 26, -40), Vector(-50, 32, -54), Vector(-38, 40, -76)},
       {Vector(6, 136, -318), Vector(4, 138, -318), Vector(2, 142, -318)}},
      // Before the rose, thrown back when it bursts.
      {"rose",
       72,
       roseBursts - 0.6f,
       2.5f,
       {Vector(20, 172, -222), Vector(14, 172, -206), Vector(4, 164, -136)},
       {Vector(-3, 200, -318), Vector(-2, 200, -318), Vector(0, 202, -318)}},
      // Where the plates come off: into the heart.
      {"core",
       66,
       14.5f,
       2.5f,
       {Vector(62, 156, 84), Vector(54, 144, 76), Vector(42, 126, 62)},
       {Vector(0, 90, 8), Vector(0, 90, 8), Vector(0, 89, 6)}},
      // The open heart in its cathedral, then nearer with each blow.
      {"open",
       74,
       17,
       1.5f,
       {Vector(62, 116, 120), Vector(59, 114, 114), Vector(53, 111, 104)},
       {Vector(-20, 74, 0), Vector(-20, 74, 0), Vector(-18, 75, 0)}},
      {"nearer",
       70,
       17,
       1.5f,
       {Vector(56, 128, 80), Vector(54, 126, 76), Vector(48, 121, 70)},
       {Vector(-18, 76, 4), Vector(-18, 76, 4), Vector(-16, 77, 4)}},
      {"into",
       60,
       17,
       2.5f,
       {Vector(46, 128, 68), Vector(38, 122, 60), Vector(28, 113, 46)},
       {Vector(4, 86, 5), Vector(5, 88, 6), Vector(6, 90, 7)}},
  };
  std::vector<StageCamera> all;
  for (const Shot& shot : shots)
    all.push_back(cameraDuring({.name = shot.name, .fieldDegrees = shot.fieldDegrees, .far = 4000},
                               shotSeconds, shot.from, shot.seconds, shot.eye, shot.target));
  return all;
}

}  // namespace vex::hell
