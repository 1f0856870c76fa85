#include "scenes/scene_hell.h"

#include <gtest/gtest.h>

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
    sceneHell.setUp(scene);
  }

  SceneHell scene;
};

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
