#include "scenes/scene_skull.h"

#include <gtest/gtest.h>

#include <cmath>
#include <iterator>
#include <set>

#include "base/clock.h"
#include "base/random.h"
#include "base/window_size.h"
#include "tests/support/fatal.h"
#include "tests/support/gl_fixture.h"
#include "tests/support/scene_models.h"
#include "textures/bolt_texture.h"
#include "textures/texture_cache.h"

namespace vex {
namespace {

// The generator's draws from a state on.
struct Draws {
  std::uint32_t state;
  int next() {
    state = state * 214013u + 2531011u;
    return static_cast<int>(state >> 16 & 0x7fff);
  }
};

class Skull : public GlTest {
 protected:
  void SetUp() override {
    GlTest::SetUp();
    setWindowSize(glTestWidth, glTestHeight);
    addPlainTextures({"other", "data\\skulleast", "data\\skullsouth", "data\\skullwest", "data\\skullnorth",
                      "data\\skullbot", "data\\crow"});
    TextureEntry spark;
    spark.width = spark.height = boltSide;
    spark.pixels.assign(boltSide * boltSide, 0xffffffff);
    addTexture(std::move(spark), "data\\spark", false);

    beginScene(scene, sceneSkull.name, sceneSkull.functions);
    fillScene(scene, contentsOf("skull"));
    for (Light* light : scene.lights) light->colour = {0.9f, 0.8f, 0.7f};
    sceneSkull.setUp(scene);
    for (Mesh* mesh : scene.meshes) mesh->buildArrays();
    for (Viewer* viewer : scene.viewers) viewer->alpha = 0;  // nothing is drawn
    demoClock().time = 5;
    randomState() = 1;
  }

  void call(const char* function, float t, const std::vector<Argument>& arguments) {
    callFunction(sceneSkull.functions, scene, function, t, arguments);
  }
  Mesh& mesh(const char* name) { return findMesh(scene, name); }
  Light& light(const char* name) { return findLight(scene, name); }

  SceneSkull scene;
};

TEST_F(Skull, CrowsCarryFireAndSmoke) {
  call("setParticleCount", 0, {1.9, 12.9});
  expectValues({{"fire", scene.particleSystems[1]->maxCount, 12},
                {"fire rate", scene.particleSystems[1]->rate, 20},
                {"smoke", scene.particleSystems[4]->maxCount, 12},
                {"smoke rate", scene.particleSystems[4]->rate, 6},
                {"others", scene.particleSystems[0]->maxCount + scene.particleSystems[3]->maxCount, 0}});
  EXPECT_EQ(fatalText([&] {
              call("setParticleCount", 0, {3, 1});
            }),
            "crow of SceneSkull is 3, must be 0 to 2");
}

TEST_F(Skull, SettersReachTheirObjects) {
  call("setLights", 0, {0.5, 2, 0.1, 0.2, 0.3});
  expectValues({{"first", light("key").intensity, 0.5},
                {"second", light("fill").intensity, 0.5},
                {"third", light("side").intensity, 2},
                {"red", light("side").colour.r, 0.1},
                {"green", light("side").colour.g, 0.2},
                {"blue", light("side").colour.b, 0.3},
                {"not the first's red", light("key").colour.r, 0.9}});
  call("setLaserOpacity", 0, {0.25, 0.75});
  expectValues({{"laser 1", mesh("laser01").opacity, 0.25}, {"laser 2", mesh("laser02").opacity, 0.75}});
  call("setSparkRate", 0, {0.257});
  EXPECT_EQ(scene.sparkRate, 25);
  call("setLaser", 0, {"target", 0.509});
  EXPECT_EQ(scene.laserRate, 50);
  EXPECT_STREQ(scene.laserTarget, "target");
}

TEST_F(Skull, LightningFlashesByTheGenerator) {
  call("setSparkRate", 0, {0.5});
  Draws draws{1};
  call("animate", 1, {1.2});
  EXPECT_EQ(scene.viewerIndex, 1);
  for (int i = 0; i < 6; ++i) {
    EXPECT_EQ(scene.meshes[10 + i]->hidden(), !(draws.next() % 100 < 50)) << i;
  }
  EXPECT_FLOAT_EQ(light("SparkLight").intensity, static_cast<float>(draws.next() % 100) / 10000 * 50);
  for (int i = 0; i < 250; ++i) draws.next();                      // the bolt
  EXPECT_EQ(randomState(), draws.state);                           // no target, no draw
  EXPECT_NE(textureEntry(7).pixels[126 * boltSide], 0x7f7f7f7fu);  // the bolt begins here
  EXPECT_EQ(textureEntry(7).pixels[boltSide - 1], 0x7f7f7f7fu);
  EXPECT_TRUE(mesh("laser01").hidden());
  EXPECT_TRUE(mesh("laser02").hidden());
}

TEST_F(Skull, LightningObeysItsRate) {
  call("setSparkRate", 0, {0});
  for (int frame = 0; frame < 20; ++frame) {
    call("animate", 1, {0});
    for (int i = 0; i < 6; ++i) EXPECT_TRUE(scene.meshes[10 + i]->hidden());
    EXPECT_EQ(light("SparkLight").intensity, 0);
  }
  call("setSparkRate", 0, {1});
  std::set<float> seen;
  for (int frame = 0; frame < 20; ++frame) {
    call("animate", 1, {0});
    for (int i = 0; i < 6; ++i) EXPECT_FALSE(scene.meshes[10 + i]->hidden());
    seen.insert(light("SparkLight").intensity);
  }
  EXPECT_GT(seen.size(), 5u);
  EXPECT_EQ(*std::prev(seen.end()), 0.5f);
}

TEST_F(Skull, LasersReachTheirTarget) {
  Object3D& target = mesh("target");
  target.tracks.reset();
  for (const char* name : {"laser01", "laser02"}) mesh(name).tracks.reset();
  target.worldPosition.set(40, -35, 70);
  call("setLaser", 0, {"TARGET", 1});
  for (int frame = 0; frame < 2; ++frame) {
    call("animate", 1, {0});
    for (const char* name : {"laser01", "laser02"}) {
      SCOPED_TRACE(name);
      Mesh& laser = mesh(name);
      EXPECT_FALSE(laser.hidden());
      const Vector tip = transformPoint(laser.current, laser.position + Vector(0, laser.radius, 0));
      EXPECT_NEAR(tip.x, 40, 2e-3f);
      EXPECT_NEAR(tip.y, -35, 2e-3f);
      EXPECT_NEAR(tip.z, 70, 2e-3f);
      const Vector foot = transformPoint(laser.current, laser.position);
      EXPECT_NEAR((foot - laser.position).length(), 0, 1e-4f);
    }
  }
  call("setLaser", 0, {"target", 0.5});
  const Draws before{randomState()};
  call("animate", 1, {0});
  Draws draws = before;
  for (int i = 0; i < 7 + 250; ++i) draws.next();
  EXPECT_EQ(mesh("laser01").hidden(), !(draws.next() % 100 < 50));
  EXPECT_EQ(mesh("laser02").hidden(), !(draws.next() % 100 < 50));
  EXPECT_EQ(randomState(), draws.state);

  call("setLaser", 0, {"", 1});
  call("animate", 1, {0});
  EXPECT_TRUE(mesh("laser01").hidden());
  EXPECT_TRUE(mesh("laser02").hidden());
  call("setLaser", 0, {"nobody", 1});
  EXPECT_EQ(fatalText([&] { call("animate", 1, {0}); }), "nobody not found in SceneSkull");
}

TEST_F(Skull, CloudsScrollAndWingsBeat) {
  call("animate", 3, {0});
  const double rows[]{0.6, 0.6, 1.6, 1.6};
  for (std::size_t k = 0; k < 4; ++k) {
    const Mesh& near = mesh("clouds01");
    EXPECT_FLOAT_EQ(near.uvs[2 * k], near.vertices[k].u);
    EXPECT_NEAR(near.uvs[2 * k + 1], rows[k], 1e-6);
    EXPECT_NEAR(mesh("clouds02").uvs[2 * k + 1], 3 / 7.0 + (k < 2 ? 0 : 1), 1e-6);
  }
  // Vertex 2 of a crow stands at (1, 1, 0), its radius is 2: half the amount, about z, by -angle.
  const double angles[]{std::sin(3.7 * 3 + 35.2), std::sin(4.0 * 3), std::sin(6.0 * 3 + 1.39)};
  for (int crow = 0; crow < 3; ++crow) {
    const Mesh& mesh = *scene.meshes[7 + crow];
    const double angle = 0.5 * angles[crow];
    expectValues({{"x", mesh.positions[6], mesh.position.x + std::cos(angle) + std::sin(angle)},
                  {"y", mesh.positions[7], mesh.position.y + std::cos(angle) - std::sin(angle)},
                  {"z", mesh.positions[8], mesh.position.z}});
  }
  EXPECT_EQ(fatalText([&] {
              mesh("clouds01").uvs.resize(6);
              call("animate", 3, {0});
            }),
            "clouds01 in SceneSkull has 3 texture coordinates, must have 4");
}

TEST_F(Skull, ShotCrowsFall) {
  Mesh& crow = mesh("crow02");
  crow.worldPosition = crow.position + Vector(5, 6, 7);
  call("killCrow", 1, {1.9});
  EXPECT_FALSE(crow.tracks);
  EXPECT_TRUE(mesh("crow01").tracks);
  const auto offset = [&] { return transformPoint(crow.getMatrix(0), crow.position) - crow.position; };
  expectValues({{"x", offset().x, 5}, {"y", offset().y, 6 - 30}, {"z", offset().z, 7 - 70}});
  call("killCrow", 2, {1});  // the place of the shot stays
  expectValues({{"x", offset().x, 5}, {"y", offset().y, 6 - 120}, {"z", offset().z, 7 - 140}});
  // It tumbles about an axis that turns, too.
  const Vector axis(std::sin(2.0f), std::sin(0.64f), std::cos(1.52f));
  const Vector side = transformPoint(rotation(axis, 5), {0, 1, 0});
  const Vector tip = transformPoint(crow.current, crow.position + Vector(0, 1, 0)) - crow.worldPosition;
  expectValues({{"x", tip.x, side.x}, {"y", tip.y, side.y}, {"z", tip.z, side.z}});
  EXPECT_EQ(fatalText([&] { call("killCrow", 1, {-1}); }), "crow of SceneSkull is -1, must be 0 to 2");
}

}  // namespace
}  // namespace vex
