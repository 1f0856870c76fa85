#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "production/geometry/rays.h"
#include "production/geometry/surface.h"
#include "production/image/environment.h"
#include "production/image/image.h"

// Light baked into pictures. The surface must be mapped so that no two triangles share a texel
// (mappedAtlas); what casts shadows may be more than what is painted.

namespace vex::geometry {

// A light with a soft edge: from a direction (far away) or from a place.
struct BakeLight {
  Vector towards{0, 1, 0};  // direction to the light, or its place
  bool placed = false;      // `towards` is a place
  float size = 0.1f;        // radius of the light in its distance's units: 0 hard, 0.3 very soft
  image::Colour4 colour{1, 1, 1};
  float reach = 0;  // placed lights fall off to half in this distance; 0: not at all
};

struct BakeLook {
  // What the open sky (or the room around) sheds from a direction; averaged over what a texel sees.
  image::Environment sky = [](const Vector&) { return image::Colour4{1, 1, 1}; };
  std::vector<BakeLight> lights{};
  image::Colour4 bounce{0, 0, 0};  // what the hidden directions give back
  float reach = 0;      // obstacles farther than this do not darken; 0: all do. Needed in closed rooms
  int rays = 64;        // a texel, a square number
  int shadowRays = 16;  // a texel and light
  float soften = 0.8f;  // blur of the light, texels of the light's grid
  int coarseness = 2;   // the light's grid has one sample for this many texels in each direction
};

// One texel as its painter sees it.
struct BakePoint {
  Vector position, normal;  // normal smooth, as the player's
  Uv uv;
  int part = 0;
  float open = 1;        // share of the sky that is not hidden, weighted by the cosine
  float edge = 0;        // -1 in creases, 0 flat, +1 on sharp convex edges, within BakePaint::wearWidth
  image::Colour4 light;  // all light that arrives
};

struct BakePaint {
  int side = 512;
  bool lit = true;      // false: drafts; light is 1, open is 1
  float wearWidth = 0;  // units; 0: no edge is worked out
  float ambient = 0;    // added to all light
  // The finished colour of a texel, such as albedo * point.light.
  std::function<image::Colour4(const BakePoint&)> paint{};
};

// Set: pictures show the light on white plaster, whatever their painters say; strong light is pressed
// together as film does. Before the first bake.
inline bool bakesPlaster = false;

// The painted picture: what lies outside the triangles continues them by `bleed` texels and more.
image::Canvas bake(const Surface& surface, const RayTree& obstacles, const BakeLook& look,
                   const BakePaint& paint);

// The light alone at a point of a surface, for tests and for colouring lamps.
struct BakedLight {
  float open = 1;
  image::Colour4 light;
};
BakedLight lightAt(const RayTree& obstacles, const BakeLook& look, const Vector& position,
                   const Vector& normal, std::uint32_t pattern);

}  // namespace vex::geometry
