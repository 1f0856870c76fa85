#include "scenes/scene_intro_box.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "base/clock.h"
#include "tests/support/fatal.h"
#include "tests/support/scene_models.h"

namespace vex {
namespace {

// The smoke lights stand at 1 to 48, the particles at 49 to 51.
class IntroBox : public ::testing::Test {
 protected:
  void SetUp() override {
    beginScene(scene, sceneIntroBox.name, sceneIntroBox.functions);
    fillScene(scene, contentsOf("intro_box"));
    sceneIntroBox.setUp(scene);
    for (Mesh* mesh : scene.meshes) mesh->buildArrays();
    for (Viewer* viewer : scene.viewers) viewer->alpha = 0;  // nothing is drawn
    demoClock().time = 5;
    demoClock().previousTime = 4.75f;
  }

  void call(const char* function, float t, const std::vector<Argument>& arguments = {}) {
    callFunction(sceneIntroBox.functions, scene, function, t, arguments);
  }
  double strength(int i) const { return scene.lights[i]->flareStrength; }

  SceneIntroBox scene;
};

TEST_F(IntroBox, TheLockIsMirroredAndTilted) {
  const Mesh& lock = *scene.meshes[1];  // at (10, 1, 2); its last vertex was 2 behind that
  expectValues({{"x", lock.vertices[3].position.x, 10},
                {"y", lock.vertices[3].position.y, 1 - 2},
                {"z", lock.vertices[3].position.z, 2}});
  expectValues({{"x", lock.vertices[2].position.x, 11},  // was 1 above
                {"y", lock.vertices[2].position.y, 1},
                {"z", lock.vertices[2].position.z, 1}});
  EXPECT_EQ(lock.faces[1].v, (std::array<std::uint32_t, 3>{2, 0, 3}));
  EXPECT_EQ(scene.meshes[0]->faces[1].v, (std::array<std::uint32_t, 3>{0, 2, 3}));
  // A turn of 0.053 about x takes y towards -z; the mirror, which comes after it, turns depth round.
  const double c = std::cos(0.053), s = std::sin(0.053);
  const Matrix& lid = scene.meshes[2]->baseMatrix;
  expectValues(
      {{"yy", lid.m[1][1], c}, {"yz", lid.m[1][2], s}, {"zy", lid.m[2][1], -s}, {"zz", lid.m[2][2], c}});
  const Matrix& tilted = lock.baseMatrix;
  expectValues({{"yy", tilted.m[1][1], c},
                {"yz", tilted.m[1][2], -s},
                {"zy", tilted.m[2][1], -s},
                {"zz", tilted.m[2][2], -c}});
}

TEST_F(IntroBox, TheFountainRises) {
  const ParticleSystem& fountain = *scene.particleSystems[0];
  call("setParticleCount", 0, {60.5});
  EXPECT_EQ(fountain.maxCount, 60);
  EXPECT_EQ(fountain.rate, 20);
}

TEST_F(IntroBox, SmokeDrifts) {
  scene.viewerIndex = 1;
  std::vector<Vector> before;
  for (const Light* light : scene.lights) before.push_back(light->position);
  call("animate", 2);
  for (const int i : {1, 5, 48}) {
    SCOPED_TRACE(i);
    const Light& smoke = *scene.lights[i];
    const Vector& from = before[static_cast<std::size_t>(i)];
    const double own = std::sin(static_cast<double>(i)), u = 3.64 * 2 + 3.141 * own;
    expectValues({{"size", smoke.flareSize, 15 + 5 * std::sin(10 * own)},
                  {"x", smoke.position.x, from.x + 0.25 * std::sin(u)},
                  {"y", smoke.position.y, from.y + 0.25 * std::cos(u)},
                  {"z", smoke.position.z, from.z}});
  }
  EXPECT_EQ(scene.viewerIndex, 1);  // as it was
  EXPECT_EQ(scene.lights[0]->flareSize, 0);
  EXPECT_EQ(scene.lights[49]->flareSize, 25);
}

TEST_F(IntroBox, ShowsTheLogoLightByLight) {
  call("showVex", 0, {1});
  for (int i = 1; i <= 48; ++i) EXPECT_FLOAT_EQ(scene.lights[i]->flareStrength, 0.3f) << i;
  EXPECT_EQ(strength(49), -1);
  call("showVex", 0, {0.35});
  for (int i = 1; i <= 48; ++i) {
    const double place = i - 1;
    EXPECT_NEAR(strength(i), std::min(0.3, std::max(0.0, 0.35 - 0.7 / 48 * place)), 1e-6) << i;
  }
  EXPECT_FLOAT_EQ(scene.lights[4]->flareStrength, 0.3f);
  EXPECT_LT(strength(5), 0.3);
  EXPECT_GT(strength(24), 0);
  EXPECT_NEAR(strength(25), 0, 1e-6);
}

TEST_F(IntroBox, PosesTheLogoLayers) {
  call("setVexFog", 0, {0.1, 0.2, 0.3, 0.4, 1, 2, 3, 4});
  for (int i = 0; i < 4; ++i) {
    EXPECT_FLOAT_EQ(scene.meshes[3 + i]->opacity, 0.1f * static_cast<float>(i + 1));
    EXPECT_EQ(scene.meshes[3 + i]->fixedTime, static_cast<float>(i + 1));
  }
}

TEST_F(IntroBox, ReversesTheSmokeOnce) {
  ParticleSystem& fountain = *scene.particleSystems[0];
  call("setParticleCount", 0, {30});
  fountain.emit(2, 5);
  fountain.particles[1].alive = false;
  const Vector velocity = fountain.particles[1].velocity;
  const double before = strength(7);
  const Vector place = scene.lights[7]->position;
  call("reverseSmoke", 2);
  call("reverseSmoke", 3);
  expectValues({{"most", fountain.maxCount, 0},
                {"rate", fountain.rate, 0},
                {"gravity", fountain.gravity.y, -30},
                {"vx", fountain.particles[1].velocity.x, -velocity.x},
                {"vy", fountain.particles[1].velocity.y, -velocity.y},
                {"vz", fountain.particles[1].velocity.z, -velocity.z},
                {"death", fountain.particles[0].deathTime, 10002},
                {"strength", strength(7), before - 2 * 0.25 / 6},
                {"x", scene.lights[7]->position.x, place.x},
                {"y", scene.lights[7]->position.y, place.y - (3 * std::sin(7.0) + 7) * 0.25 * (2 + 3)}});
  EXPECT_TRUE(scene.reversed);
  for (const int i : {1, 48}) EXPECT_NEAR(strength(i), -2 * 0.25 / 6, 1e-6) << i;
  EXPECT_EQ(strength(49), -1);
}

TEST(IntroBoxModel, MustHoldTheSmoke) {
  ModelContents model = contentsOf("intro_box");
  std::replace(model.lights.begin(), model.lights.end(), std::string("omni49"), std::string("other"));
  EXPECT_EQ(fatalText([&] {
              SceneIntroBox scene;
              beginScene(scene, sceneIntroBox.name, sceneIntroBox.functions);
              fillScene(scene, model);
              sceneIntroBox.setUp(scene);
            }),
            "omni49 not found in SceneIntroBox");
}

}  // namespace
}  // namespace vex
