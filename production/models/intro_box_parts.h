#pragma once

#include <vector>

#include "production/geometry/surface.h"
#include "production/image/image.h"
#include "production/making/product.h"
#include "production/models/stage.h"

// The pieces of the reliquary's world. The casket stands with its front towards +z on a plinth in the middle
// of the world; the ground is y = 0.

namespace vex::reliquary {

enum Skin { iron, brass, gem, inside, stone, letter, skins };

inline constexpr float tableTop = 64;        // of the plinth
inline constexpr float plinthDepth = 0.74f;  // of its width
inline constexpr float halfWidth = 48, halfDepth = 27;
inline constexpr float floorTop = 80, wallTop = 122, lidFoot = 127.5f;  // heights of the casket
inline const Vector lidPivot(0, 129, -31);
inline const Vector lockPivot(0, 103, 28.5f);

// One form in many places: it is painted once, where the first of them stands.
struct Copies {
  geometry::Surface form;
  std::vector<geometry::Placement> places;
  int skin = iron;
};

struct Assembly {
  geometry::Surface single;  // parts are skins
  std::vector<Copies> repeated;
};

geometry::Surface everything(const Assembly& assembly);
geometry::Surface withoutBack(
    const geometry::Surface& surface);  // what looks to -z, for things that lean against others

Assembly casketBody();
Assembly casketLid();  // shut
Assembly casketLock();
Assembly plinth();
Assembly hall();  // fence, pillars and arches around

// Colour of a lit point of casket or lock.
struct PaintedAssembly {
  geometry::Surface surface;
  image::Canvas picture;
};
PaintedAssembly paintedCasket(const Assembly& assembly, const geometry::Surface& shadowing,
                              const Settings& settings, int side);
PaintedAssembly paintedStone(const Assembly& assembly, const geometry::Surface& shadowing,
                             const Settings& settings, int side);

// The title in solid letters, bevelled, from left to right, where they hang above the casket; their backs are
// left out.
std::vector<geometry::Surface> letterBodies();

// The title as additive veils, back to front; the light that it sheds on the stone around, brighter with u;
// places along its strokes from left to right.
inline constexpr int veilCount = 3;
image::Canvas veilPicture(int veil, const Settings& settings);
geometry::Surface spilledOn(const geometry::Surface& stone);
image::Canvas spillPicture(const Settings& settings);
std::vector<Vector> placesAlongTitle(int count);
inline const Vector titleMiddle(0, 258, 6);
inline constexpr float titleWidth = 250, titleHeight = 125;  // of the veils

}  // namespace vex::reliquary
