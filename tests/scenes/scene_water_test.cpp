#include "scenes/scene_water.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>

#include "engine/fluid.h"
#include "shell/clock.h"
#include "shell/random.h"
#include "tests/support/fatal.h"
#include "tests/support/scene_models.h"

namespace vex {
namespace {

struct Push {
  float x, z, strength;
};

class Water : public ::testing::Test {
 protected:
  void SetUp() override {
    beginScene(scene, sceneWater.name, sceneWater.functions);
    fillScene(scene, contentsOf("water_alien"));
    mesh("water").envMap = true;
    for (Light* light : scene.lights) light->intensity = light->flareStrength = 3;
    for (Mesh* mesh : scene.meshes) mesh->diffuse = mesh->specular = {0.5f, 0.5f, 0.5f, 1};
    sceneWater.setUp(scene);
    for (Mesh* mesh : scene.meshes) mesh->buildArrays();
    mesh("RayBlue").tracks.reset();
    for (Viewer* viewer : scene.viewers) viewer->alpha = 0;  // nothing is drawn
    demoClock = {};
    demoClock.time = 5;
    demoClock.previousTime = 4.75f;
    randomState = 1;
  }
  void TearDown() override { demoClock = {}; }

  void call(const char* function, float t, const std::vector<Argument>& arguments) {
    callFunction(sceneWater.functions, scene, function, t, arguments);
  }
  Mesh& mesh(const char* name) { return findMesh(scene, name); }
  Light& light(const char* name) { return findLight(scene, name); }

  // Heights that these pushes alone leave on still water.
  static std::vector<float> heightsOf(const std::vector<Push>& pushes) {
    Mesh still;
    for (const Vector& corner : {Vector(-1, 0, 0), Vector(1, 0, 0), Vector(1, 1, 0), Vector(0, 0, 2)}) {
      Vertex vertex;
      vertex.position = corner;
      still.vertices.push_back(vertex);
    }
    convertToFluid(still, 50, 50);
    for (const auto& [x, z, strength] : pushes) push(still, x, z, strength);
    return still.heightB;
  }

  SceneWater scene;
};

TEST_F(Water, RegistersItsFunctions) {
  EXPECT_EQ(namesOf(sceneWater.functions),
            (std::vector<std::string>{"animate", "setAnimationState", "setRay"}));
  EXPECT_STREQ(sceneWater.model, "data\\water_alien");
}

TEST_F(Water, MeshesAreSetUp) {
  for (const Viewer* viewer : scene.viewers) {
    EXPECT_EQ(playing(viewer->positionTrack.get()), (Playing{15, true}));
    EXPECT_EQ(viewer->farPlane, 3000);
  }
  for (const Mesh* mesh : scene.meshes) {
    SCOPED_TRACE(mesh->name);
    const bool ray = mesh == scene.meshes[3];
    if (!ray) {
      EXPECT_EQ(playing(*mesh), (Playing{15, true}));
    }
    expectValues({{"red", mesh->ambient.r, ray ? 1 : 0},
                  {"green", mesh->ambient.g, ray ? 1 : 0},
                  {"blue", mesh->ambient.b, ray ? 1 : 0},
                  {"diffuse", mesh->diffuse.g, ray ? 1 : 0.5},
                  {"specular", mesh->specular.g, ray ? 1 : 0.5}});
  }
  const struct {
    int index;
    bool lit, twoSided;
    BlendMode blend;
    double opacity;
  } rows[] = {{0, false, true, BlendMode::additive, 1},
              {1, false, false, BlendMode::opaque, 1},
              {2, true, false, BlendMode::additive, 0.5},
              {3, false, true, BlendMode::additive, 0},
              {4, true, false, BlendMode::opaque, 1}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.index);
    EXPECT_EQ(scene.meshes[row.index]->lit, row.lit);
    EXPECT_EQ(scene.meshes[row.index]->twoSided, row.twoSided);
    EXPECT_EQ(scene.meshes[row.index]->blendMode, row.blend);
    EXPECT_EQ(scene.meshes[row.index]->opacity, static_cast<float>(row.opacity));
  }
  const Mesh& water = *scene.meshes[0];
  EXPECT_EQ(water.kind, ObjectKind::fluid);
  EXPECT_EQ(water.gridX, 50);
  EXPECT_EQ(water.gridY, 50);
  EXPECT_FALSE(water.envMap);
}

TEST_F(Water, LightsAreSetUp) {
  const struct {
    const char* name;
    double size, strength, intensity;
    const char* texture;
    bool active;
  } rows[] = {
      {"Omni01", 30, 1, 1, "data\\flare_highpass", true},
      {"RayLight", 0, 1, 0, "data\\flare_highpass", true},
      {"BlackParticle", 30, -1, 0, "data\\flare_highpass", false},
      {"WhiteParticle", 30, 1, 0, "data\\flare_highpass", false},
      {"RayParticle", 15, 1, 0, "data\\flare_particle", false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const Light& light = this->light(row.name);
    EXPECT_EQ(playing(light), (Playing{10, true}));
    expectValues({{"size", light.flareSize, row.size},
                  {"strength", light.flareStrength, row.strength},
                  {"intensity", light.intensity, row.intensity}});
    EXPECT_STREQ(light.flareTexture, row.texture);
    EXPECT_EQ(light.active, row.active);
  }
}

TEST_F(Water, ParticleSystemsAreSetUp) {
  for (int i = 0; i < 4; ++i) {
    const ParticleSystem& falling = *scene.particleSystems[i];
    expectValues({{"rate", falling.rate, 40},
                  {"most", falling.maxCount, 200},
                  {"spread", falling.velocitySpread, 10},
                  {"place", falling.positionSpread, 250},
                  {"velocity", falling.velocity.y, -150},
                  {"velocity sideways", falling.velocity.length(), 150},
                  {"life", falling.life, 5},
                  {"gravity", falling.gravity.y, -20},
                  {"gravity sideways", falling.gravity.length(), 20},
                  {"alpha", falling.maxAlpha, 2}});
    EXPECT_EQ(falling.parent, scene.meshes[4 + i]);
    ASSERT_EQ(falling.shapeCount, 2);
    EXPECT_EQ(falling.shapes[0], scene.lights[2]);
    EXPECT_EQ(falling.shapes[1], scene.lights[3]);
  }
  const ParticleSystem& ray = *scene.particleSystems[4];
  expectValues({{"rate", ray.rate, 0},
                {"most", ray.maxCount, 0},
                {"spread", ray.velocitySpread, 0},
                {"place", ray.positionSpread, 25},
                {"velocity", ray.velocity.y, -200},
                {"velocity sideways", ray.velocity.length(), 200},
                {"life", ray.life, 3},
                {"gravity", ray.gravity.length(), 0},
                {"alpha", ray.maxAlpha, 2.5},
                {"offset", ray.offset.y, 350},
                {"offset sideways", ray.offset.length(), 350}});
  EXPECT_EQ(ray.parent, scene.meshes[3]);
  ASSERT_EQ(ray.shapeCount, 1);
  EXPECT_EQ(ray.shapes[0], scene.lights[4]);
  EXPECT_FALSE(scene.particleSystems[5]);
  const Matrix& narrowed = scene.meshes[3]->current;
  expectValues({{"x", narrowed.m[0][0], 0.6}, {"y", narrowed.m[1][1], 0.95}, {"z", narrowed.m[2][2], 0.6}});
}

TEST_F(Water, TheRayIsSet) {
  call("setRay", 0, {0.5, 31.5, 0.25, 0.03, 0.75});
  expectValues({{"opacity", mesh("RayBlue").opacity, 0.5},
                {"most", scene.particleSystems[4]->maxCount, 31},
                {"rate", scene.particleSystems[4]->rate, 10.5},
                {"rain", scene.rainAmount, 0.25},
                {"drop", scene.dropStrength, 0.03},
                {"flicker", scene.rayFlicker, 0.75},
                {"omni", light("Omni01").intensity, 0.25}});
  call("setRay", 0, {0, 0, 0, 0, 2});
  EXPECT_EQ(light("Omni01").intensity, 0);
  EXPECT_EQ(fatalText([&] {
              call("setRay", 0, {0, 0, 1e30, 0, 0});
            }),
            "rain amount of SceneWater is 1e+30, at most 1000 is possible");
}

// The draws from state 1: 41, 18467, 6334, 26500, 19169, 15724, 11478, 29358, 26962, 24464, 5705.
TEST_F(Water, RainFallsOnTheMiddleByTheGenerator) {
  call("setRay", 0, {0, 0, 0.25, 0.03, 2});
  call("animate", 1, {0});
  // 41: no drop. Three of the rain, depth before place. Then the light.
  const auto at = [](int value) { return static_cast<float>(value % 100) / 200 + 0.25f; };
  EXPECT_EQ(mesh("water").heightB, heightsOf({{at(6334), at(18467), 0.03f},
                                              {at(19169), at(26500), 0.03f},
                                              {at(11478), at(15724), 0.03f}}));
  EXPECT_FLOAT_EQ(light("RayLight").intensity, 0.58f * 2);
}

TEST_F(Water, DropsFallNowAndThen) {
  std::uint32_t state = 1;
  const auto draw = [&state] {
    state = state * 214013u + 2531011u;
    return static_cast<int>(state >> 16 & 0x7fff);
  };
  std::vector<Push> pushes;
  for (int frame = 0; frame < 30; ++frame) {
    call("animate", 1, {0});
    if (draw() % 100 > 85) {
      const float z = static_cast<float>(draw() % 100) / 100;
      const float x = static_cast<float>(draw() % 100) / 100;
      pushes.push_back({x, z, 0.05f});
    }
    draw();  // the light
  }
  ASSERT_FALSE(pushes.empty());
  EXPECT_EQ(randomState, state);
  EXPECT_EQ(mesh("water").heightB, heightsOf(pushes));
}

TEST_F(Water, TheCreatureRipplesWhereItCutsTheSurface) {
  Mesh& creature = mesh("WaterAlien");
  creature.tracks.reset();
  for (Vertex& vertex : creature.vertices) {
    const Vector from = vertex.position - creature.position;
    vertex.position = Vector(20, 4, -30) + from * 60;  // radius 120
  }
  creature.position.set(20, 4, -30);
  creature.buildArrays();
  EXPECT_EQ(creature.radius, 120);
  call("animate", 1, {0});
  const float a = 0.1f, b = -0.15f;
  EXPECT_EQ(mesh("water").heightB, heightsOf({{a + 0.5f, b + 0.5f, 0.24f},
                                              {a + 0.46f, b + 0.5f, 0.13f},
                                              {a + 0.54f, b + 0.5f, 0.187f},
                                              {a + 0.5f, b + 0.46f, 0.16f},
                                              {a + 0.5f, b + 0.54f, 0.173f}}));
  // Both of its twists, one after the other.
  Mesh twisted;
  twisted.position = creature.position;
  twisted.vertices = creature.vertices;
  twisted.buildArrays();
  const float t = 1;
  twisted.twist({std::sin(1.33f * t), std::sin(1.76f * t), std::cos(1.92f * t)}, {0, 0, 1}, -0.628f);
  twisted.twist({std::cos(2.88f * t), std::sin(2.16f * t), std::sin(2.33f * t)}, {1, 0, 0}, 0.628f);
  for (std::size_t i = 0; i < twisted.positions.size(); ++i) {
    EXPECT_NEAR(creature.positions[i], twisted.positions[i], 1e-3f);
  }
  EXPECT_TRUE(scene.viewers[0]->target == Vector(20, 4, -30));
}

TEST_F(Water, AnimateMovesCameraPlaneAndRay) {
  const Mesh& plane = mesh("LightPlane");
  call("animate", 2, {1.5});
  call("animate", 2, {1.5});
  EXPECT_EQ(scene.viewerIndex, 1);
  EXPECT_FALSE(scene.viewers[0]->targetTrack);
  EXPECT_TRUE(scene.viewers[1]->targetTrack);
  // The creature's track goes 30 along x in 15 seconds.
  expectValues({{"target", scene.viewers[0]->target.x, 4}, {"target y", scene.viewers[0]->target.y, 0}});
  for (int k = 0; k < 4; ++k) {
    const auto at = static_cast<std::size_t>(k);
    expectValues({{"u", plane.uvs[2 * at], plane.vertices[at].u + 0.2 * std::sin(std::cos(k) * 2 * 4)},
                  {"v", plane.uvs[2 * at + 1], plane.vertices[at].v + 0.2 * std::cos(std::cos(k) * 2 * 4)},
                  {"ray", mesh("RayBlue").uvs[2 * at + 1], mesh("RayBlue").vertices[at].v + 2 * 0.25}});
  }
}

}  // namespace
}  // namespace vex
