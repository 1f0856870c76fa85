// Particles, fluids and volumetric lights as Scene::render draws them.

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <vector>

#include "base/clock.h"
#include "base/window_size.h"
#include "engine/fluid.h"
#include "engine/particle_system.h"
#include "engine/vol_light.h"
#include "tests/support/gl_fixture.h"
#include "tests/support/test_scene.h"

namespace vex {
namespace {

class SceneEffects : public GlTest {
 protected:
  void SetUp() override {
    GlTest::SetUp();
    setWindowSize(glTestWidth, glTestHeight);
    addWhiteTexture("data\\flare_normal");
  }
};

// One living particle of that shape, at rest.
Particle& addParticle(ParticleSystem& system, Object3D& shape, const Vector& position) {
  system.rate = 0.0f;
  if (system.shapeCount == 0) system.addShape(&shape);
  system.emit(1, 0.0f);
  Particle& particle = system.particles.back();
  particle.shape = &shape;
  particle.position = position;
  particle.velocity = {};
  particle.alpha = 1.0f;
  particle.deathTime = 1e6f;
  return particle;
}

std::vector<FeedbackPrimitive> drawn(ParticleSystem& system, float alpha) {
  return captureUnclipped([&] { system.draw({0, -1, 0}, {1, 0, 0}, false, 0.0f, alpha); });
}

void expectAt(const FeedbackVertex& vertex, double x, double y, double z) {
  EXPECT_NEAR(vertex.x, x, 1e-4);
  EXPECT_NEAR(vertex.y, y, 1e-4);
  EXPECT_NEAR(vertex.z, z, 1e-4);
}

TEST_F(SceneEffects, MeshParticlesTumbleAboutThemselves) {
  Mesh mesh;
  mesh.position = {5, 6, 7};
  mesh.twoSided = true;
  for (const Vector& corner : {Vector(5, 6, 7), Vector(5.2f, 6, 7), Vector(5, 6.4f, 7)}) {
    mesh.vertices.emplace_back().position = corner;
  }
  mesh.faces.push_back({.v = {0, 1, 2}});
  mesh.buildArrays();
  mesh.opacity = 0.5f;
  ParticleSystem system;
  Particle& particle = addParticle(system, mesh, {0.1f, 0.2f, 0.3f});
  particle.axis = {0, 0, 1};
  particle.angle = 1.5707963f;  // x to -y, y to x
  particle.alpha = 0.8f;

  glTranslatef(-0.5f, 0.0f, 0.0f);  // stands for the view; projection and model view commute here
  glMatrixMode(GL_PROJECTION);
  const auto triangles = drawn(system, 0.5f);
  ASSERT_EQ(triangles.size(), 1u);
  expectAt(triangles[0].vertices[0], -0.4, 0.2, 0.3);
  expectAt(triangles[0].vertices[1], -0.4, 0.0, 0.3);
  expectAt(triangles[0].vertices[2], 0.0, 0.2, 0.3);
  EXPECT_NEAR(triangles[0].vertices[0].colour[3], 0.5 * 0.8 * 0.5, 1e-5);
  EXPECT_EQ(glInteger(GL_MODELVIEW_STACK_DEPTH), 1);
}

TEST_F(SceneEffects, LightParticlesAreFlaresInTheOrderOfTheirRecords) {
  Light light;
  light.position = {5, 6, 7};
  light.flareSize = 0.4f;
  Light second;
  second.colour = {0.5f, 0.5f, 0.5f};
  Fog fog;
  ParticleSystem system;
  addParticle(system, second, {-0.5f, 0, 0.9f});
  addParticle(system, light, {0.3f, 0, 0.1f});
  addParticle(system, fog, {});  // neither mesh nor light
  addParticle(system, light, {0, 0, 0}).alive = false;
  const auto quads = asQuads(drawn(system, 0.25f));
  ASSERT_EQ(quads.size(), 2u);
  EXPECT_NEAR(quads[0][0].colour[0], 0.125f, 1e-5);
  expectAt(quads[1][0], 0.1, 0.2, 0.1);  // half as large as its size says
  expectAt(quads[1][2], 0.5, -0.2, 0.1);
  EXPECT_NEAR(quads[1][0].colour[0], 0.25f, 1e-5);
}

TEST_F(SceneEffects, ParticlesClampTheirAlpha) {
  Mesh mesh;
  makeGrid(mesh, 1, 1, {}, 1.0f, 1.0f);
  mesh.buildArrays();
  ParticleSystem system;
  Particle& particle = addParticle(system, mesh, {});
  particle.angle = 0.0f;
  const struct {
    float alpha, drawn;
  } cases[] = {{2.5f, 0.5f}, {1.0f, 0.5f},  {0.5f, 0.25f},
               {0.0f, 0.0f}, {-3.0f, 0.0f}, {std::numeric_limits<float>::quiet_NaN(), 0.0f}};
  for (const auto& row : cases) {
    particle.alpha = row.alpha;
    const auto triangles = drawn(system, 0.5f);
    ASSERT_FALSE(triangles.empty());
    EXPECT_EQ(triangles[0].vertices[0].colour[3], row.drawn);
  }
}

TEST_F(SceneEffects, ParticlesRunOnTheDemoClockBetweenMeshesAndFlares) {
  TestScene scene(1, 2);
  for (int i = 0; i < 2; ++i) scene.lights[i]->flareStrength = 1.0f;
  scene.lights[0]->colour = {0.5f, 0, 0};
  scene.lights[0]->position = {0, 0, -20};
  scene.lights[1]->position = {0, 0, 20};  // behind the eye; shows as a particle only
  makeGrid(*scene.meshes[0], 1, 1, {-1, -1, -20}, 2, 2);
  scene.meshes[0]->diffuse = {0.25f, 0, 0, 1};
  scene.meshes[0]->buildArrays();
  OwnedArray<ParticleSystem> systems = makeParticleSystems(1);
  scene.particleSystems = &systems[0];
  Particle& particle = addParticle(*systems[0], *scene.lights[1], {0, 0, -20});
  particle.velocity = {4, 0, 0};
  particle.deathTime = 10.0f;
  systems[0]->gravity = {};
  systems[0]->lifeVariation = 0.0f;

  clockAdvanceTo(1.0f);
  clockAdvanceTo(1.5f);
  std::vector<float> reds;
  for (const auto& triangle : captureFeedback([&] { scene.render(100.0f); })) {
    const float red = triangle.vertices[0].colour[0];
    if (reds.empty() || reds.back() != red) reds.push_back(red);
  }
  EXPECT_EQ(reds, (std::vector<float>{0.25f, 0.75f, 0.5f}));  // 1 - 0.5 / 2 of the particle is left
  EXPECT_EQ(particle.position, Vector(2, 0, -20));
  clockAdvanceTo(10.0f);
  scene.render(0.0f);
  EXPECT_EQ(systems[0]->aliveCount, 0);
}

TEST_F(SceneEffects, FluidsStepOnceAFrameWhereTheyShow) {
  TestScene scene(1, 1);
  Mesh& water = *scene.meshes[0];
  makeGrid(water, 1, 1, {-5, 0, -20}, 10, 0);
  convertToFluid(water, 8, 8);
  water.buildArrays();
  // The pass of a volumetric light draws it once more but does not advance it.
  destroyLight(scene.lights[0]);
  scene.lights[0] = new VolLight(8);
  scene.lights[0]->range = 50.0f;
  scene.lights[0]->spotDirection = {0, 0, -1};
  push(water, 0.5f, 0.5f, 1.0f);
  Mesh expected;
  convertToFluid(expected, 8, 8);
  push(expected, 0.5f, 0.5f, 1.0f);
  for (int frame = 0; frame < 3; ++frame) {
    water.flags = frame == 1 ? hiddenFlag : 4;
    scene.render(0.0f);
    if (frame != 1) animateFluid(expected, 0.0f);
    EXPECT_EQ(water.heightB, expected.heightB);
    EXPECT_NE(water.heightB[4 * 9 + 4], 0.0f);
  }
}

// A light at the origin that shines along -z over 90 degrees, 100 units far.
VolLight& addBeam(TestScene& scene, int samples) {
  destroyLight(scene.lights[0]);
  auto* light = new VolLight(samples);
  scene.lights[0] = light;
  light->spotDirection = {0, 0, -1};
  light->range = 100.0f;
  light->coneAngle = 90.0f;
  return *light;
}

// A wall of that depth over the upper half of the light's view.
void makeUpperWall(Mesh& mesh, float distance) {
  makeGrid(mesh, 1, 1, {-distance, 0, -distance}, 2 * distance, distance);
  mesh.buildArrays();
}

TEST_F(SceneEffects, BeamsEndAtTheWallTheyMeet) {
  constexpr int n = 32;
  TestScene scene(4, 1);
  VolLight& light = addBeam(scene, n);
  makeUpperWall(*scene.meshes[0], 20);
  makeUpperWall(*scene.meshes[1], 5);
  scene.meshes[1]->flags = hiddenFlag;
  makeUpperWall(*scene.meshes[2], 6);
  scene.meshes[2]->blendMode = BlendMode::transparent;
  makeUpperWall(*scene.meshes[3], 7);
  scene.meshes[3]->addAnimation(straightPath({0, 0, 0}, {1000, 0, 0}));  // out of the way at its end
  scene.viewers[0]->target = {0, 0, 1};  // looks away: all that could show is a trace of the depth pass
  scene.viewers[0]->farPlane = 1000.0f;

  glDepthFunc(GL_NEVER);  // as something drawn before may leave it
  for (const bool moved : {false, true}) {
    glMatrixMode(GL_MODELVIEW);
    glTranslatef(0, 0, 3);
    scene.render(moved ? 0.99f : 0.0f);
    for (int row = 0; row < n; ++row) {
      for (int column = 0; column < n; ++column) {
        const Vector& end = light.beams.vertices[static_cast<std::size_t>(row * n + column)].position;
        const float distance = row >= n / 2 ? 100.0f : moved ? 20.0f : 7.0f;
        ASSERT_NEAR(end.z, -distance, 0.01f) << row << ", " << column;
        ASSERT_NEAR(end.x, distance * (2.0f * static_cast<float>(column) / (n - 1) - 1), 0.01f);
        ASSERT_NEAR(end.y, -distance * (2.0f * static_cast<float>(row) / (n - 1) - 1), 0.01f);
      }
    }
  }
  for (const int x : {0, 10, 31, 60}) {
    EXPECT_EQ(readPixel(x, 20), (std::array<int, 4>{0, 0, 0, 0}));
    float depth = 0.0f;
    glReadPixels(x, 20, 1, 1, GL_DEPTH_COMPONENT, GL_FLOAT, &depth);
    EXPECT_EQ(depth, 1.0f);
  }
  int viewport[4];
  glGetIntegerv(GL_VIEWPORT, viewport);
  EXPECT_EQ(viewport[2], glTestWidth);
  EXPECT_EQ(viewport[3], glTestHeight);
}

TEST_F(SceneEffects, ASceneWithoutBeamsLeavesTheViewport) {
  TestScene scene(0, 1);
  glViewport(0, 0, 50, 40);
  scene.render(0.0f);
  EXPECT_EQ(glFloats(GL_VIEWPORT), (std::array<float, 4>{0, 0, 50, 40}));
}

// Seen from the side, additively, in place of a flare.
TEST_F(SceneEffects, BeamsShowAsAFan) {
  constexpr int n = 4;
  TestScene scene(1, 1);
  VolLight& light = addBeam(scene, n);
  light.flareStrength = 1.0f;
  light.position = {0, 0, -50};
  light.range = 10.0f;
  light.beams.texture = addWhiteTexture("beam");
  scene.viewers[0]->alpha = 0.5f;
  const auto triangles = captureFeedback([&] { scene.render(0.0f); });
  ASSERT_EQ(triangles.size(), static_cast<std::size_t>(n * n - 1));
  for (const auto& triangle : triangles) {
    EXPECT_NEAR(triangle.vertices[0].colour[3], 1.7 / n * 0.5, 1e-5);
    float distances = 0.0f;
    for (const FeedbackVertex& vertex : triangle.vertices) {
      distances += vertex.w;
      EXPECT_EQ(vertex.texture[0], vertex.w < 55.0f ? 1.0f : 0.0f);
    }
    EXPECT_NEAR(distances, 50 + 60 + 60, 1e-3);
  }
}

}  // namespace
}  // namespace vex
