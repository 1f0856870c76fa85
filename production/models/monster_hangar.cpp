#include <cmath>

#include "production/geometry/forms.h"
#include "production/geometry/mapping.h"
#include "production/models/monster_parts.h"
#include "production/textures/palette.h"

// What is built of the hangar; its far walls are painted.

namespace vex::monster {

namespace {

// A heavy half ring with stepped edges, its inner face towards the middle.
Surface archSurface() {
  const PlanePoint profile[] = {{0, -6},  {0, 6},    {6, 8},   {7, 14},
                                {34, 14}, {34, -14}, {7, -14}, {6, -8}};  // out, z
  constexpr int sides = 8, pieces = 24;
  const Surface ring = sheet(sides, pieces,
                             [&](float s, float t) {
                               const PlanePoint& p =
                                   profile[static_cast<int>(std::lround(s * sides)) % sides];
                               const float angle = pi * (-0.01f + 1.02f * t), radius = archRadius + p.x;
                               return Vector(radius * std::cos(angle), radius * std::sin(angle), p.y);
                             },
                             {.closedAcross = true});
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
                              32));
}

Surface hose(const std::vector<Vector>& bends, float radius, int pieces) {
  return withoutMapping(tube(
      smoothPath(bends, pieces), 5, [radius](float) { return radius; }, TubeEnd::open));
}

// Hoses from the vault into the creature's back, and others that lie on the floor.
Surface cableSurface() {
  Surface all;
  for (const float side : {-1.0f, 1.0f}) {
    append(all, hose({Vector(60 * side, 232, -140), Vector(40 * side, 150, -104), Vector(20 * side, 122, -74),
                      Vector(8 * side, 116, -58)},
                     2.0f, 12));
    append(all, hose({Vector(150 * side, 184, -140), Vector(78 * side, 66, -96), Vector(30 * side, 92, -54),
                      Vector(10 * side, 104, -44)},
                     1.6f, 13));
    append(all, hose({Vector(72 * side, 3, 20), Vector(112 * side, 2, 52), Vector(150 * side, 2, 30),
                      Vector(222 * side, 3, 120), Vector(236 * side, 60, 136)},
                     2.6f, 14));
    append(all, hose({Vector(64 * side, 3, -34), Vector(104 * side, 2, -40), Vector(140 * side, 2, -96),
                      Vector(226 * side, 3, -130), Vector(236 * side, 70, -136)},
                     3.2f, 14));
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
      return mappedFromAbove(annulus(44, deckRadius, 36, 4), deckRadius * 1.01f);
    case apron:
      return mappedFromAbove(annulus(deckRadius - 1, 900, 28, 4), 909);
  }
  return {};
}

Surface poolSurface() {
  return withoutMapping(placed(disc(47, 24, 2), moved(0, 1.5f, 0)));
}

Surface pipes() {
  Surface all;
  for (const float degrees : {28.0f, 62.0f, 118.0f, 152.0f}) {
    const float angle = degrees * pi / 180, radius = archRadius + 9;
    std::vector<Vector> path;
    for (int i = 0; i <= 6; ++i)
      path.push_back(
          Vector(radius * std::cos(angle), radius * std::sin(angle), -450 + 150 * static_cast<float>(i)));
    append(all, withoutMapping(tube(
                    path, 8, [](float) { return 6; }, TubeEnd::open)));
  }
  return all;
}

}  // namespace vex::monster
