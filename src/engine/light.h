#pragma once

#include <cstdint>
#include <memory>

#include "engine/colour.h"
#include "engine/object3d.h"
#include "engine/vector.h"
#include "textures/texture_cache.h"

// Lights: what GL lights meshes with, and the sprites that show them.

namespace vex {

enum class FlareKind : std::int8_t { glowAndFlare = 0, vectorBall = 12 };

// The values of a light beyond an object's.
struct LightValues {
  Vector spotDirection;        // from the light to its target
  float range = -1.0f;         // distance scale of the fall-off; 0 or less: none
  float intensity = 1.0f;      // divides the attenuation; 0: no glow; above 1: a larger flare
  float flareStrength = 1.0f;  // scale of the flare's colour; 0: no flare; negative: it darkens
  float flareSize = 1.0f;      // half-width of the sprites in world units before the halvings of drawFlare
  Colour colour;
  bool active = false;  // lights the meshes of its scene
  bool glow = false;
  bool spot = false;
  float coneAngle = 45.0f;  // full opening angle of the spot cone, degrees
  FlareKind flareKind = FlareKind::glowAndFlare;
  char flareTexture[textureNameSize] = "data\\flare_normal";
  std::shared_ptr<Animation> target;  // position track of the spot's target
};

struct Light : Object3D, LightValues {
  Light() { kind = ObjectKind::light; }
  ~Light();  // logs "  destroying light %s\n"

  // Stores a copy. Fatal: "Lights support only position keys".
  void setTarget(const Animation& track);

  void setAnimParams(float duration, bool loop);  // the object's tracks and the target's

  // Position and spot direction from the tracks. Only drawFlare calls it, so that lighting, which is set
  // up before, follows the light one frame late.
  void update(float seconds);

  // The light's screen-facing sprites: glow and flare, or a ball. `down` and `right` are the viewer's screen
  // axes, `seconds` the scene time, alpha 0 to 1. Leaves blending, depth writes and the alpha test as the
  // last sprite needed them.
  void drawFlare(const Vector& down, const Vector& right, float seconds, float alpha);
};

// Destroys a light as what its kind says.
void destroyLight(Light* light);

}  // namespace vex
