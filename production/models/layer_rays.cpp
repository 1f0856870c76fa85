#include <cmath>

#include "base/pi.h"
#include "production/geometry/forms.h"
#include "production/geometry/mapping.h"
#include "production/models/model.h"

// A funnel of light around the camera, from its mouth behind the camera to its far end. The player writes the
// texture coordinates anew for each picture, by the number of the vertex: 16 vertices a ring.

namespace vex {

using namespace geometry;

namespace {

constexpr int ringSize = 16;
constexpr int rings = 28;
constexpr float mouth = 46, mouthRadius = 58;  // the camera keeps within 15 units of the middle
constexpr float length = 640, endRadius = 3;

Model layerRays(const Settings&) {
  SheetEnds ends;
  ends.closedAcross = true;
  Surface funnel = sheet(
      ringSize, rings - 1,
      [](float s, float t) {
        // Rings draw together where the camera is near; the wall bends outwards towards it.
        const float away = length * t * t;
        const float radius = endRadius + (mouthRadius - endRadius) * std::pow(1 - t, 1.6f);
        const float turn = 2 * pi * s + 0.35f * t;
        return Vector(radius * std::cos(turn), radius * std::sin(turn), mouth - away);
      },
      ends);
  funnel = mappedByPoint(funnel, [](int point, const Vector&) {
    return Uv{static_cast<float>(point % ringSize) / ringSize, static_cast<float>(point / ringSize) / rings};
  });

  Stage stage;
  stage.materials = {{.name = "rays", .texture = "ray_cone", .twoSided = true}};
  stage.meshes = {{.name = "cone", .surface = funnel, .material = "rays"}};
  stage.lights = {{.name = "omni01", .position = Vector(0, 0, 0)}};
  stage.cameras = {{.name = "camera01",
                    .position = Vector(10, 0, 0),
                    .target = Vector(0, 0, -100),
                    .fieldDegrees = 100,
                    .far = 1000}};
  return {stage, {}};
}

}  // namespace

Products layerRaysModel() {
  return {model("layer_rays", {}, 0.1f, layerRays)};
}

}  // namespace vex
