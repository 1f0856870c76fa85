#pragma once

#include <array>

#include "engine/vector.h"

// The being's build, which its skin and its skeleton share; on the +z side, the other is its mirror image.

namespace vex::laboratory {

struct Limb {
  Vector from, to;
  float thick, thin;  // of the flesh
};
// What it draws up before itself: shoulder, upper arm, forearm, hand, thigh, shin, foot.
extern const std::array<Limb, 7> limbs;
// From the nape to the tip of the tail, in the plane of symmetry.
extern const std::array<Vector, 7> back;

inline const Vector eyePlace(-15.7f, 14.2f, 6.7f);  // of the one with z > 0
inline const Vector handPlace(-19.5f, 0.5f, 5.5f), footPlace(-15, -33, 5);
struct Digit {
  std::array<Vector, 4> joints;  // from the root to the tip
  float thick = 1;
};
const std::array<Digit, 5>& fingers();  // the thumb last
const std::array<Digit, 5>& toes();     // the big one first

// How far the lids part in a direction from the line of sight, in radians: an almond.
float lidOpening(float across, float up);

float beingDistance(const Vector& p);  // of the whole skin

}  // namespace vex::laboratory
