#include "scenes/scene_hell.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>

#include "tests/support/gl_fixture.h"
#include "tests/support/scene_models.h"

namespace vex {
namespace {

class Hell : public GlTest {
 protected:
  void SetUp() override {
    GlTest::SetUp();
    addPlainTextures({"other", "data\\helleast", "data\\hellsouth", "data\\hellwest", "data\\hellnorth",
                      "data\\hellbottom", "data\\helltop"});
    fillScene(scene, contentsOf("hell"));
    for (Mesh* mesh : scene.meshes) mesh->shininess = mesh->shineStrength = 1;
    for (Light* light : scene.lights) light->flareStrength = 7;
    sceneHell.setUp(scene);
  }

  SceneHell scene;
};

TEST_F(Hell, IsSetUp) {
  EXPECT_EQ(namesOf(sceneHell.functions), std::vector<std::string>{"animate"});
  EXPECT_STREQ(sceneHell.model, "data\\hell");
  EXPECT_EQ(playing(scene.viewers[0]->targetTrack.get()), (Playing{20, false}));
  for (const Mesh* mesh : scene.meshes) {
    const bool sphere = mesh == scene.meshes[1];
    EXPECT_EQ(playing(*mesh), (Playing{sphere ? 5.0f : 20.0f, true})) << mesh->name;
    expectValues({{"shininess", mesh->shininess, 0}, {"strength", mesh->shineStrength, 0}});
  }
  EXPECT_EQ(scene.boxTextures, (std::array{6, 5, 4, 3, 2, 1}));
  EXPECT_EQ(scene.lights[0]->flareSize, 0);
  EXPECT_EQ(playing(*scene.lights[0]), (Playing{1, false}));  // lights keep their model's second
  for (const int i : {1, 2}) {
    EXPECT_EQ(scene.lights[i]->flareSize, 10);
    EXPECT_EQ(scene.lights[i]->flareStrength, 1);
    EXPECT_STREQ(scene.lights[i]->flareTexture, "data\\flare_shine");
  }
}

TEST_F(Hell, SpraysTwoMeshesAndTwoLights) {
  ASSERT_TRUE(scene.particleSystems && scene.particleSystems[0]);
  EXPECT_FALSE(scene.particleSystems[1]);
  const ParticleSystem& sparks = *scene.particleSystems[0];
  expectValues({{"rate", sparks.rate, 100},
                {"most", sparks.maxCount, 200},
                {"spread", sparks.velocitySpread, 20},
                {"vx", sparks.velocity.x, -30},
                {"vy", sparks.velocity.y, -10},
                {"vz", sparks.velocity.z, -30},
                {"life", sparks.life, 2},
                {"variation", sparks.lifeVariation, 0.5},
                {"gravity x", sparks.gravity.x, 0},
                {"gravity y", sparks.gravity.y, -30},
                {"gravity z", sparks.gravity.z, 0},
                {"alpha", sparks.maxAlpha, 2}});
  EXPECT_EQ(sparks.parent, scene.meshes[4]);
  ASSERT_EQ(sparks.shapeCount, 6);
  const std::array<const Object3D*, 6> shapes{scene.meshes[2], scene.meshes[3], scene.lights[1],
                                              scene.lights[2], scene.lights[1], scene.lights[2]};
  for (std::size_t i = 0; i < 6; ++i) EXPECT_EQ(sparks.shapes[i], shapes[i]) << i;
}

TEST_F(Hell, LavaFlows) {
  for (Mesh* mesh : scene.meshes) mesh->buildArrays();
  for (Viewer* viewer : scene.viewers) viewer->alpha = 0;
  callFunction(sceneHell.functions, scene, "animate", 2, {1.9});
  EXPECT_EQ(scene.viewerIndex, 1);
  const Mesh& lava = *scene.meshes[0];
  for (int k = 0; k < 4; ++k) {
    const Vertex& vertex = lava.vertices[static_cast<std::size_t>(k)];
    expectValues(
        {{"u", lava.uvs[static_cast<std::size_t>(2 * k)], vertex.u + 0.12 * std::sin(std::cos(k) * 2 * 1.5)},
         {"v", lava.uvs[static_cast<std::size_t>(2 * k + 1)],
          vertex.v + 0.12 * std::cos(std::cos(k) * 2 * 1.5)}});
  }
}

}  // namespace
}  // namespace vex
