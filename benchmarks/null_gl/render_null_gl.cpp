// Renders a scene of 20 000 faces, in 50 meshes with scale, rotation and position tracks of 10 keys each,
// over a GL that does nothing. Prints milliseconds and allocations of a frame.

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <vector>

#include "base/window_size.h"
#include "benchmarks/allocation_count.h"
#include "engine/scene.h"

namespace vex {
namespace {

constexpr int meshCount = 50;
constexpr int side = 20;       // of a grid of cells; 400 faces
constexpr int sideFaces = 10;  // rows of cells
constexpr int keyCount = 10;
constexpr int lightCount = 3;

void addTrack(Mesh& mesh, TrackType type, float phase) {
  Animation track;
  track.type = type;
  track.frameLength = 90.0f;
  track.allocKeys(keyCount);
  for (int k = 0; k < keyCount; ++k) {
    const float turn = phase + static_cast<float>(k);
    const Vector swing(std::sin(turn), std::cos(turn), std::sin(2 * turn));
    track.insertKey(static_cast<float>(10 * k),
                    type == TrackType::scale ? swing * 0.2f + Vector(1, 1, 1) : swing, 0.3f);
  }
  mesh.addAnimation(track);
}

Mesh* makeMesh(int number) {
  auto* mesh = new Mesh;
  mesh->lit = true;
  mesh->shininess = 0.5f;
  mesh->shineStrength = 0.6f;
  mesh->blendMode = number % 5 == 0 ? BlendMode::additive : BlendMode::opaque;
  for (int k = 0; k < (side + 1) * (sideFaces + 1); ++k) {
    const Vector place(static_cast<float>(k % (side + 1)), static_cast<float>(k / (side + 1)), -50.0f);
    mesh->vertices.push_back({.position = place, .normal = {0, 0, 1}});
  }
  for (int row = 0; row < sideFaces; ++row) {
    for (int column = 0; column < side; ++column) {
      const auto a = static_cast<std::uint32_t>(row * (side + 1) + column);
      const std::uint32_t above = a + side + 1;
      mesh->faces.push_back({.v = {a, a + 1, above}});
      mesh->faces.push_back({.v = {a + 1, above + 1, above}});
    }
  }
  for (const TrackType type : {TrackType::scale, TrackType::rotation, TrackType::position}) {
    addTrack(*mesh, type, static_cast<float>(number));
  }
  mesh->setAnimParams(10.0f, true);
  return mesh;
}

void fill(Scene& scene) {
  scene.meshes.allocate(meshCount);
  for (int i = 0; i < meshCount; ++i) scene.meshes[i] = makeMesh(i);
  scene.lights.allocate(lightCount);
  for (int i = 0; i < lightCount; ++i) {
    scene.lights[i] = new Light;
    scene.lights[i]->active = true;
    scene.lights[i]->flareStrength = 0.0f;
  }
  scene.viewers.allocate(1);
  scene.viewers[0] = new Viewer;
  scene.viewers[0]->target = {0, 0, -1};
  scene.collectActiveLights();
  scene.prepare(false);
}

void measure() {
  setWindowSize(1280, 720);
  Scene scene;
  fill(scene);
  int frame = 0;
  const auto renderFrames = [&](int count) {
    for (int i = 0; i < count; ++i) scene.render(static_cast<float>(frame++) / 60.0f);
  };
  renderFrames(60);
  constexpr int batches = 21, batchFrames = 50;
  const std::uint64_t allocationsBefore = allocationCount();
  double batchTimes[batches];
  for (double& time : batchTimes) {
    const auto start = std::chrono::steady_clock::now();
    renderFrames(batchFrames);
    time = std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
  }
  const auto allocations = static_cast<double>(allocationCount() - allocationsBefore);
  std::nth_element(batchTimes, batchTimes + batches / 2, batchTimes + batches);
  std::printf("%g %g\n", batchTimes[batches / 2] / batchFrames, allocations / (batches * batchFrames));
}

}  // namespace
}  // namespace vex

int main() {
  vex::measure();
}
