#pragma once

#include "production/geometry/bake.h"
#include "production/geometry/mapping.h"
#include "production/making/product.h"

// The colours of the alien's world.

namespace vex::monster {

geometry::BakeLook hangarLook();  // how its light is baked

// Colours of baked surfaces; alpha is opacity. The skin is clear where the metal sees `clearFrom` of the
// room.
inline constexpr float clearFrom = 0.84f;
image::Colour4 skinColour(const geometry::BakePoint& p);
image::Colour4 deckColour(const geometry::BakePoint& p);
image::Colour4 apronColour(const geometry::BakePoint& p);
image::Colour4 ironColour(const geometry::BakePoint& p);

// Four things in one picture, each in a part of it: lower left corner and size as texture coordinates.
struct PicturePart {
  float u, v, width, height;
};
inline constexpr PicturePart wallPart{0, 0, 1, 0.5f}, plumePart{0, 0.5f, 0.5f, 0.5f},
    eyePart{0.5f, 0.75f, 0.5f, 0.25f}, glowPart{0.5f, 0.5f, 0.5f, 0.25f};

// Mapped to the part, `turns` times across.
inline geometry::Surface mappedTo(const PicturePart& part, const geometry::Surface& surface,
                                  float turns = 1) {
  return mappingScaled(surface, turns * part.width, part.height, part.u, part.v);
}

// As that, a little within the part, so that nothing of its neighbours shows at the edges.
inline geometry::Surface mappedWithin(const PicturePart& part, const geometry::Surface& surface) {
  constexpr float margin = 0.012f;
  return mappedTo({part.u + margin, part.v + margin, part.width - 2 * margin, part.height - 2 * margin},
                  surface);
}

image::Canvas airPicture(const Settings& settings);

// The deck beside what lies around it.
inline constexpr PicturePart deckPart{0, 0, 0.5f, 1}, apronPart{0.5f, 0, 0.5f, 1};
image::Canvas floorPicture(const image::Canvas& deck, const image::Canvas& apron);

// A card of haze, thick in the middle, its rim clear.
image::Canvas hazeCard(const Settings& settings);

}  // namespace vex::monster
