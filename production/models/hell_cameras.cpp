#include "production/models/hell_parts.h"

// Where hell is seen from. Each camera moves in the seconds of its own shot and stands before and after; the
// shots enter all paths, and the world's own events, at those times.

namespace vex::hell {

namespace {

StageCamera shot(const char* name, float fieldDegrees, float from, float seconds,
                 const std::vector<Vector>& eye, const std::vector<Vector>& target) {
  return cameraDuring({.name = name, .fieldDegrees = fieldDegrees, .far = 4000}, shotSeconds, from, seconds,
                      eye, target);
}

}  // namespace

std::vector<StageCamera> cameras() {
  return {
      // Up the nave.
      shot("wide", 78, 0.5f, 4.5f, {{34, 40, 300}, {16, 48, 250}, {-10, 58, 196}},
           {{-22, 104, 0}, {-14, 104, 0}, {0, 102, 0}}),
      // A hand above the lava.
      shot("low", 84, 3, 2.5f, {{2, 9, 168}, {18, 9, 148}, {38, 11, 126}},
           {{-12, 84, 0}, {-16, 86, 0}, {-22, 90, 0}}),
      // Around the sphere; later along a chain, from where it is fixed.
      handedOver(shot("close", 66, 1, 2.5f, {{58, 60, 124}, {42, 66, 116}, {18, 74, 104}},
                      {{-8, 94, 0}, {-4, 94, 0}, {2, 94, 0}}),
                 7,
                 shot("along", 66, 10, 1, {{94, 133, 84}, {86, 129, 77}, {74, 123, 67}},
                      {{4, 98, 4}, {3, 97, 3}, {0, 95, 0}})),
      // A crane from the lake to the vault.
      shot("crane", 82, 5, 2.5f, {{74, 92, 160}, {62, 140, 156}, {46, 190, 148}},
           {{-12, 86, 0}, {-13, 76, -6}, {-12, 62, -14}}),
      // Along the row of piers, past the sphere.
      shot("aisle", 78, 8.5f, 2.5f, {{-84, 52, 132}, {-72, 58, 120}, {-52, 66, 104}},
           {{12, 96, 0}, {10, 95, 0}, {4, 93, 0}}),
      // From the lake's surface straight up: the sphere, its chains, the broken vault.
      shot("beneath", 84, 8, 2.5f, {{-40, 12, -58}, {-32, 11, -52}, {-18, 10, -48}},
           {{8, 98, 0}, {6, 99, 0}, {2, 100, 0}}),
      // Under the lake, whose other side is a roof of fire: through it, then down the nave that hangs there.
      shot("sunk", 88, 5, 2, {{-34, -7, 196}, {-30, -46, 184}, {-25, -66, 172}, {-18, -76, 158}},
           {{10, -30, -60}, {10, -66, -60}, {9, -82, -60}, {8, -88, -60}}),
      shot("sunken", 80, 8, 2, {{-62, -152, 70}, {-50, -150, 70}, {-28, -146, 68}},
           {{12, -66, -30}, {10, -68, -30}, {6, -70, -30}}),
      // At the lava's level: the sphere above, its image below.
      shot("shore", 94, 1, 2.5f, {{-50, 9, 268}, {-34, 8, 262}, {-8, 8, 252}},
           {{12, 10, 0}, {20, 11, 0}, {30, 12, 0}}),
      // From far outside along the nave: the sphere against the windows.
      shot("backlit", 34, 7, 2.5f, {{30, 60, 470}, {22, 62, 446}, {8, 65, 410}},
           {{-20, 106, 0}, {-16, 106, 0}, {-10, 106, 0}}),
      // Behind the sphere, up to the choir's windows.
      shot("windows", 76, 8, 2.5f, {{-58, 26, -40}, {-50, 32, -54}, {-38, 40, -76}},
           {{6, 136, -318}, {4, 138, -318}, {2, 142, -318}}),
      // Before the rose, thrown back when it bursts.
      shot("rose", 72, roseBursts - 0.6f, 2.5f, {{20, 172, -222}, {14, 172, -206}, {4, 164, -136}},
           {{-3, 200, -318}, {-2, 200, -318}, {0, 202, -318}}),
      // Where the plates come off: into the heart.
      shot("core", 66, 14.5f, 2.5f, {{62, 156, 84}, {54, 144, 76}, {42, 126, 62}},
           {{0, 90, 8}, {0, 90, 8}, {0, 89, 6}}),
      // The open heart in its cathedral, then nearer with each blow.
      shot("open", 74, 17, 1.5f, {{62, 116, 120}, {59, 114, 114}, {53, 111, 104}},
           {{-20, 74, 0}, {-20, 74, 0}, {-18, 75, 0}}),
      shot("nearer", 70, 17, 1.5f, {{56, 128, 80}, {54, 126, 76}, {48, 121, 70}},
           {{-18, 76, 4}, {-18, 76, 4}, {-16, 77, 4}}),
      shot("into", 60, 17, 2.5f, {{46, 128, 68}, {38, 122, 60}, {28, 113, 46}},
           {{4, 86, 5}, {5, 88, 6}, {6, 90, 7}}),
  };
}

}  // namespace vex::hell
