#include <algorithm>
#include <cmath>
#include <functional>

#include "production/geometry/forms.h"
#include "production/image/filter.h"
#include "production/image/noise3.h"
#include "production/models/model.h"
#include "production/textures/palette.h"

// Pale filaments all around a camera that sees nearly everything: it moves within about 90 units of the
// middle and looks out to 175. What is near becomes long sweeping strokes.

namespace vex {

namespace {

constexpr int strands = 70;
constexpr int knots = 7;    // of each strand
constexpr int pieces = 80;  // along it

float chance(int strand, int what) {
  return hashUnit(strand, what, 41);
}

// A drifting walk around the middle, pushed away from where the camera is.
std::vector<Vector> strandPath(int strand) {
  const float start = chance(strand, 0) * 2 * pi, rise = (chance(strand, 1) - 0.5f) * 2.6f;
  const float lean = (chance(strand, 2) - 0.5f) * 1.8f, sweep = 1.6f + 2.4f * chance(strand, 3);
  std::vector<Vector> path;
  for (int i = 0; i < knots; ++i) {
    const float t = static_cast<float>(i) / (knots - 1), turn = start + sweep * t;
    const Vector wander(gradientNoise(Vector(t * 3.1f, static_cast<float>(strand), 0.5f), 0, 51),
                        gradientNoise(Vector(t * 3.1f, static_cast<float>(strand), 7.5f), 0, 52),
                        gradientNoise(Vector(t * 3.1f, static_cast<float>(strand), 3.5f), 0, 53));
    const float radius = 120 + 130 * chance(strand, 4);
    path.emplace_back(radius * std::cos(turn), radius * (rise * 0.5f + lean * (t - 0.5f)),
                      radius * std::sin(turn));
    path.back() += wander * 80;
  }
  // Softly, so that no bend is sharp.
  for (Vector& p : path) {
    const float away = p.length();
    p *= (away + 70 * std::exp(-away / 80)) / away;
  }
  return smoothPath(path, pieces);
}

// Two bands that cross in the strand, so that it is a thread of light from all sides; `half` is half their
// width on the way along it, in units at 150 from the middle, and as much more as it is farther away.
Surface thread(const std::vector<Vector>& path, const std::function<float(float t)>& half) {
  Surface both;
  for (const bool upright : {false, true})
    append(both, sheet(1, static_cast<int>(path.size()) - 1, [&](float s, float t) {
             const auto last = static_cast<int>(path.size()) - 1;
             const int i = static_cast<int>(std::lround(t * static_cast<float>(last)));
             const Vector p = path[static_cast<std::size_t>(i)];
             const Vector along = path[static_cast<std::size_t>(std::min(i + 1, last))] -
                                  path[static_cast<std::size_t>(std::max(i - 1, 0))];
             const Vector across = unit(cross(along, p));
             return p + (upright ? unit(cross(along, across)) : across) *
                            ((2 * s - 1) * half(t) * p.length() / 150);
           }));
  return both;
}

// Along a strand (v) the light comes and goes; both ends are dark. Across (u) it has a core and a glow.
Canvas strandPicture(const Settings& settings) {
  const int side = settings.side(256);
  return paint(side / 4, side, [](float u, float v) {
    const float x = 2 * u - 1;
    const float across = 0.7f * std::exp(-x * x * 26) + 0.3f * std::pow(clamp01(1 - x * x), 3.0f);
    const float pulse = 0.5f + 0.5f * fractal(0.4f, v * 9, 0, 3, 0.55f, 61);
    const float ends = smoothStep(0.01f, 0.2f, v) * smoothStep(0.99f, 0.8f, v);
    return gradient(boneRamp, 1.4f * across * ends * (0.35f + 0.65f * pulse * pulse));
  });
}

Model layerWide(const Settings& settings) {
  Surface all;
  for (int strand = 0; strand < strands; ++strand) {
    const float thick = 2 + 5 * chance(strand, 5) * chance(strand, 6) * chance(strand, 7);
    append(all,
           thread(strandPath(strand), [&](float t) { return thick * (0.25f + 0.75f * std::sin(pi * t)); }));
  }

  Stage stage;
  stage.materials = {{.name = "strand",
                      .texture = "layer_wide",
                      .twoSided = true,
                      .diffuse = {0.5f, 0.5f, 0.5f},
                      .ambient = {0.75f, 0.75f, 0.75f}}};
  stage.meshes = {{.name = "strands", .surface = all, .material = "strand"}};
  stage.lights = {{.name = "omni01", .position = Vector(0, 0, 0)}};
  stage.cameras = {{.name = "camera01",
                    .position = Vector(50, 0, 50),
                    .target = Vector(100, 0, 100),
                    .fieldDegrees = 120,
                    .far = 2000}};
  return {stage, {strandPicture(settings)}};
}

}  // namespace

Products layerWideModel() {
  return {model("layer_wide", {{"layer_wide", PictureKind::jpeg}}, 0.2f, layerWide)};
}

}  // namespace vex
