#include "production/models/model.h"

// Nothing but what the player's particles need: the light whose flare they show, and an eye.

namespace vex {

namespace {

// Behind the eye and beyond its far plane, for the light shows its flare where it stands, too.
constexpr float outOfSight = 20000;

Model layerParticles(const Settings&) {
  Stage stage;
  stage.lights = {{.name = "omni01", .position = Vector(0, 0, outOfSight)}};
  stage.cameras = {{.name = "camera01",
                    .position = Vector(0, 0, 30),
                    .target = Vector(0, 0, 0),
                    .fieldDegrees = 80,
                    .far = 1000}};
  return {stage, {}};
}

}  // namespace

Products layerParticlesModel() {
  return {model("layer_particles", {}, 0.1f, layerParticles)};
}

}  // namespace vex
