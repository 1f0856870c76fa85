#pragma once

#include <vector>

#include "production/geometry/bake.h"
#include "production/models/stage.h"

// Hell in pieces: a cathedral of basalt that stands in a lake of lava, its nave along z, and the sphere that
// hangs chained in it. One unit is about a foot; the lake is y = 0; the choir is at -z, the nave's other end
// is open.

namespace vex::hell {

inline constexpr float loopSeconds = 20;  // of everything but the sphere
inline constexpr float sphereSeconds = 5;
inline constexpr float shotSeconds = 20;

// --- The sphere: plates of a black shell around a burning heart.

inline const Vector sphereCentre(0, 88, 0);
inline constexpr float sphereRadius = 30;
inline const Vector loosePlates = geometry::unit(Vector(0.45f, 0.55f, 0.7f));  // the side on which they are

struct Plate {
  geometry::Surface surface;
  Vector outward;      // unit
  bool loose = false;  // drifts out and back; the others are one piece
};
std::vector<Plate> shellPlates();
geometry::Surface heart();
geometry::Surface shard(int which);  // about the origin
geometry::Surface child();           // curled up before the heart, where the plates come off
Vector childsEye();

// --- The masonry, numbered as parts of one surface for baking. Ribs and webs are left halves at z = 0, pier
// and causeway stand about the origin; the right side is the left one's mirror image.

enum StonePart { pier, rib, brokenRib, boss, web, brokenWeb, choirWall, causeway, rosePetal, roseEye };
inline constexpr float naveHalf = 105;     // from the middle to the middle of the piers
inline constexpr float bay = 90;           // from pier to pier along the nave
inline constexpr float choirPlace = -318;  // z
geometry::Surface stonePart(StonePart part);
Vector ribPlace(float share);          // middle of the left rib at z = 0; share as below
float archShare(const Vector& place);  // how far up the left half of the vault; 0 springing, 1 crown
// The rose fills a round opening of the choir's wall: petals around an eye, modelled about its middle, the
// petal to its right.
inline constexpr float roseHeight = 203;
inline constexpr int petalCount = 8;

// --- Iron

geometry::Placement shackleTilt();
geometry::Surface shackle();                    // the ring around the sphere and the chains that hold it
geometry::Surface danglingChain(float length);  // from y = 0 down, its last link bent open

// --- What the lake mirrors

geometry::Placement inLake(const geometry::Placement& turn);
Vector inLake(const Vector& place);
geometry::Surface sphereInLake();
geometry::Surface ringInLake();
geometry::Surface archesInLake();

// --- Cameras

// What happens once, in all shots' time: the rose of the choir's wall bursts; the sphere's loose plates fly
// off, and its heart lies open from then on.
inline constexpr float roseBursts = 11, sphereOpens = 14.4f;
std::vector<StageCamera> cameras();

// --- Baking

enum SpherePart { firstShard = 1, firstPlate = 10 };  // part numbers in the sphere's picture
geometry::BakeLook stoneLook();
geometry::BakeLook sphereLook();
image::Colour4 stoneColour(const geometry::BakePoint& p);
image::Colour4 sphereColour(const geometry::BakePoint& p);

// --- Pictures without baked light

image::Canvas lavaPicture(int side);                   // tiles; glassy where it is black
image::Canvas heartPicture(int side);                  // tiles across
image::Canvas blazePicture(int side);                  // the fire behind the choir
image::Canvas glowPicture(int side);                   // haze on the lake
image::Canvas duskPicture(int side);                   // to darken by: all but the lower middle
image::Canvas lakeHazePicture(int side, float reach);  // seen from above, `reach` units from middle to edge

}  // namespace vex::hell
