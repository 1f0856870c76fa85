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

inline const Vector handPlace(-19.5f, 0.5f, 5.5f), footPlace(-15, -33, 5);
Vector fingerTip(int finger);  // 0 to 3
Vector toeTip(int toe);

float beingDistance(const Vector& p);  // of the whole skin

}  // namespace vex::laboratory
