#pragma once

#include <string>
#include <vector>

#include "production/geometry/bake.h"
#include "production/models/stage.h"
#include "production/textures/storm.h"

// The skull in the storm, in pieces. One unit is about ten centimetres; the ground is about y = 0, the skull
// stands over the origin and looks towards +z, a little to the left and up.

namespace vex::skull {

inline constexpr float loopSeconds = 20;    // of all that moves
inline constexpr float roarOpens = 17.05f;  // its jaws, once a loop

// --- The skull. Its own axes: it stands upright on y = 0, 235 high, its face towards +z.

geometry::Placement skullPlacement();
geometry::Surface cranium();  // in the world
geometry::Surface jaw();
enum { stonePart, toothPart };
Vector eye(float side);                         // in the world, in the socket's mouth; side: 1 or -1
Vector jawHinge();                              // in the world
geometry::Placement jawOpening(float degrees);  // a turn about the hinge

// A tooth from the gum to its tip, in the skull's own axes.
struct Tooth {
  Vector root, tip;
  Vector along{1, 0, 0};  // the arch's direction there
  float width = 5;        // half of it
  bool chisel = false, pointed = false;
};
const std::vector<Tooth>& upperTeeth();
const std::vector<Tooth>& lowerTeeth();
geometry::Surface teethSurface(const std::vector<Tooth>& teeth);

// --- The ground and what stands in it.

constexpr int spearCount = 6;
float groundHeight(float x, float z);
geometry::Surface terrain();                    // mapped: finer in the middle
geometry::Surface boulders();                   // around the skull
geometry::Surface spear();                      // upright over the origin
float spearHeight();                            // of its tip
geometry::Placement spearPlacement(int index);  // 0 to 5

// --- What flies.

geometry::Surface crow();  // about the origin, wings along x, its head towards +z
constexpr int crowCount = 3;
Vector crowPlace(int crow, float lap);  // laps about the crown: 0 to 1
// Lightning: a jagged channel with branches, `half` wide to either side, of several ribbons that add up to
// white.
geometry::Surface bolt(const Vector& from, const Vector& to, float half, std::uint32_t seed);
geometry::Surface beam();                               // along y from the origin
geometry::Surface cloudLayer(float above, float tilt);  // four points
geometry::Surface vault();                              // the swirl over all

// --- Cameras. All move in the whole loop, but for those that say otherwise.

std::vector<StageCamera> cameras();

// --- Paint.

geometry::BakeLook stormLook();
image::Colour4 stoneColour(const geometry::BakePoint& point);  // cranium and jaw
image::Colour4 groundColour(const geometry::BakePoint& point);
image::Colour4 boulderColour(const geometry::BakePoint& point);
image::Colour4 spearColour(const geometry::BakePoint& point);

}  // namespace vex::skull
