#include <cmath>

#include "production/geometry/forms.h"
#include "production/geometry/mapping.h"
#include "production/models/monster_parts.h"
#include "production/textures/palette.h"

// What is built of the hangar; its far walls are painted.

namespace vex::monster {

using namespace image;
using namespace geometry;

namespace {

// A heavy half ring with stepped edges, its inner face towards the middle.
Surface archSurface() {
  const PlanePoint profile[] = {{34, -14}, {7, -14}, {6, -8}, {0, -6},
                                {0, 6},    {6, 8},   {7, 14}, {34, 14}};  // out, z
  constexpr int sides = 7, pieces = 22;  // its back, which lies in the vault, is open
  const Surface ring = sheet(sides, pieces, [&](float s, float t) {
    const PlanePoint& p = profile[std::lround(s * sides)];
    const float angle = pi * (-0.01f + 1.02f * t), radius = archRadius + p.x;
    return Vector(radius * std::cos(angle), radius * std::sin(angle), p.y);
  });
  return creased(withoutMapping(ring), 30);
}

Surface plinthSurface() {
  return withoutMapping(lathe({{78, -0.5f},
                               {76, 3},
                               {70, 4},
                               {68, 8},
                               {61, 9},
                               {59, 6},
                               {56, 6},
                               {54, 9},
                               {48, 8},
                               {46, 2},
                               {45, -2}},
                              30));
}

// `from` far: comes from there in a straight line.
Surface hose(const std::vector<Vector>& bends, float radius, const std::vector<Vector>& from = {}) {
  std::vector<Vector> path = from;
  for (const Vector& place : smoothPath(bends, 11)) path.push_back(place);
  return withoutMapping(tube(
      path, 4, [radius](float) { return radius; }, TubeEnd::open));
}

// Hoses that hang from the crown into the creature's back, rise from the plinth into its abdomen, and lie on
// the floor: none crosses legs, head or arms.
Surface cableSurface() {
  Surface all;
  for (const float side : {-1.0f, 1.0f}) {
    append(all, hose({Vector(34 * side, 330, -56), Vector(27 * side, 200, -60), Vector(17 * side, 150, -50),
                      Vector(6 * side, 118, -40)},
                     2.4f, {Vector(44 * side, 1500, -50)}));
    append(all, hose({Vector(60 * side, 7, -22), Vector(52 * side, 26, -34), Vector(38 * side, 30, -48),
                      Vector(22 * side, 52, -58), Vector(10 * side, 92, -60)},
                     2.2f));
    append(all, hose({Vector(72 * side, 3, 20), Vector(112 * side, 2, 52), Vector(150 * side, 2, 30),
                      Vector(224 * side, 3, 160), Vector(238 * side, 60, 186)},
                     2.8f));
    append(all, hose({Vector(64 * side, 3, -34), Vector(104 * side, 2, -40), Vector(140 * side, 2, -96),
                      Vector(226 * side, 3, -164), Vector(238 * side, 70, -186)},
                     3.2f));
  }
  return all;
}

// Mapped from above, `reach` from the middle to the picture's edge.
Surface mappedFromAbove(const Surface& surface, float reach) {
  return mapped(withoutMapping(surface), [reach](const Vector& p) {
    return Uv{0.5f + 0.5f * p.x / reach, 0.5f - 0.5f * p.z / reach};
  });
}

Surface annulus(float inner, float outer, int around, int rings) {
  std::vector<ProfilePoint> profile;  // a profile that comes inwards shows its upper side
  for (int i = 0; i <= rings; ++i)
    profile.push_back({mix(outer, inner, static_cast<float>(i) / static_cast<float>(rings)), 0});
  return lathe(profile, around);
}

}  // namespace

Surface hangarPart(HangarPart part) {
  switch (part) {
    case arch:
      return archSurface();
    case plinth:
      return plinthSurface();
    case cables:
      return cableSurface();
    case deck:
      return mappedFromAbove(annulus(44, deckRadius, 36, 2), deckRadius * 1.01f);
    case apron:
      return mappedFromAbove(annulus(deckRadius - 1, 900, 36, 2), 909);
  }
  return {};
}

Surface poolSurface() {
  // Rings run over it, as if something had moved below.
  constexpr int rings = 8;
  std::vector<ProfilePoint> profile;
  for (int i = 0; i <= rings; ++i) {
    const float radius = mix(47, 0.4f, static_cast<float>(i) / rings);
    profile.push_back({radius, 1.5f + 1.1f * std::cos(radius * 0.3f) * std::exp(-radius / 60)});
  }
  return withoutMapping(lathe(profile, 24));
}

Surface hazeShell(float across, float along, float height) {
  // Nearly a box, so that it passes between the arches without cutting any.
  const auto squared = [](float p) { return std::copysign(std::pow(std::fabs(p), 0.35f), p); };
  return sheet(28, 3,
               [=](float s, float t) {
                 const float turn = 2 * pi * s;
                 return Vector(across * squared(std::cos(turn)), 0.5f + height * t,
                               along * squared(std::sin(turn)));
               },
               {.closedAcross = true});
}

}  // namespace vex::monster
