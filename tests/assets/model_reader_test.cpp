#include <gtest/gtest.h>

#include "assets/model_loader.h"
#include "tests/support/ase_text.h"
#include "tests/support/fatal.h"
#include "tests/support/temporary_folder.h"

namespace vex {

namespace {

int noTexture(const char*, bool) {
  return 7;
}

}  // namespace

TEST(ModelReader, ReadsATetrahedron) {
  const TemporaryFolder folder;
  modelTexture = noTexture;
  writeFile(
      "m.ase",
      AseText().head("1").scene().object("*GEOMOBJECT", "Tet").node("1 2 3").tetrahedron().close().str());
  Scene scene;
  loadModel("m", &scene);
  ASSERT_EQ(scene.meshes.count(), 1);
  const Mesh& mesh = *scene.meshes[0];
  EXPECT_STREQ(mesh.name, "Tet");
  EXPECT_EQ(mesh.position, Vector(1, 3, -2));
  ASSERT_EQ(mesh.vertices.size(), 4u);
  EXPECT_EQ(mesh.vertices[2].position, Vector(0, 0, -1));
  EXPECT_TRUE(std::filesystem::exists("m.hv3"));
  Scene again;
  loadModel("m", &again);
  ASSERT_EQ(again.meshes.count(), 1);
  EXPECT_EQ(again.meshes[0]->vertices[3].normal, mesh.vertices[3].normal);
  EXPECT_GT(mesh.vertices[3].normal.length(), 0.9f);
}

}  // namespace vex
