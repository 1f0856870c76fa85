#include "scenes/scene_water.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>

#include "base/clock.h"
#include "base/random.h"
#include "engine/fluid.h"
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
    sceneWater.setUp(scene);
    for (Mesh* mesh : scene.meshes) mesh->buildArrays();
    mesh("RayBlue").tracks.reset();
    for (Viewer* viewer : scene.viewers) viewer->alpha = 0;  // nothing is drawn
    demoClock().time = 5;
    demoClock().previousTime = 4.75f;
    randomState() = 1;
  }

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
  // A rain beyond all bounds is drawn in a time that ends.
  call("setRay", 0, {0, 0, 1e30, 0, 0});
  EXPECT_EQ(scene.rainAmount, 1000);
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
  EXPECT_EQ(randomState(), state);
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
