#pragma once

#include <string>
#include <vector>

#include "production/models/stage.h"

// The alien and the hangar that it stands in, in pieces. One unit is about two centimetres; the floor is
// y = 0, the creature stands over the origin and looks towards +z, the hangar runs along z.

namespace vex::monster {

inline constexpr float loopSeconds = 10;  // of everything that is no camera and no light
inline constexpr float shotSeconds = 20;  // of cameras and lights

// One rigid piece at rest.
struct Piece {
  std::string name{};
  std::string parent{};
  geometry::Surface surface{};  // not mapped
  Vector pivot{};
  Motion motion{};
};

enum class Fineness { full, reflection };

// Trunk, abdomen and head, in this order: what breathes. The trunk carries all but the legs.
std::vector<Piece> bodyPieces(Fineness fineness);
// Six burning eyes, mapped from the front, and the glow before them; carried by the head.
Piece eyePiece();
Piece glowPiece();
// All that the trunk carries was drawn smaller than it is.
Piece grown(Piece piece);
// Where the trunk's motion takes a point of it, without its breath.
Vector carriedByTrunk(const Vector& point, float seconds);

// Six legs that stand, two arms of three pieces, a tail and tentacles under the belly.
std::vector<Piece> limbPieces(Fineness fineness);
// Wet strings that hang from jaw, belly and abdomen.
std::vector<Piece> stringPieces();

// The hangar's built parts, numbered as parts of one surface for baking.
enum HangarPart { arch, plinth, cables, deck, apron };
inline constexpr float archRadius = 235;
inline constexpr float deckRadius = 220;
geometry::Surface hangarPart(HangarPart part);
inline const std::vector<float> archPlaces{-430, -310, -190, 190, 310, 430};  // z of each arch
geometry::Surface poolSurface();                                              // in the plinth's middle
// A wall of haze around the creature, behind it from wherever one looks; shown on its inside only.
geometry::Surface hazeShell(float across, float along, float height);

}  // namespace vex::monster
