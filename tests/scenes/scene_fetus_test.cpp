#include "scenes/scene_fetus.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>

#include "assets/texture_cache.h"
#include "effects/vol_light.h"
#include "shell/random.h"
#include "tests/support/gl_fixture.h"
#include "tests/support/scene_models.h"

namespace vex {
namespace {

class Fetus : public GlTest {
 protected:
  void SetUp() override {
    GlTest::SetUp();
    addPlainTextures({"other", "data\\fetus_skin", "data\\vollight"});
    beginScene(scene, sceneFetus.name, sceneFetus.functions);
    fillScene(scene, contentsOf("fetus"));
    mesh("WhiteBox").texture = 0;
    light("VolumLight").spotDirection.set(30, -40, 0);
    light("VolumLight").coneAngle = 33;
    light("AlarmLight").active = false;
    light("WaterParticle").glow = true;
    mesh("bottle").opacity = 0.5f;
    sceneFetus.setUp(scene);
    for (Mesh* mesh : scene.meshes) mesh->buildArrays();
    for (Viewer* viewer : scene.viewers) viewer->alpha = 0;  // nothing is drawn
    randomState = 1;
  }

  void call(const char* function, const std::vector<Argument>& arguments) {
    callFunction(sceneFetus.functions, scene, function, 1, arguments);
  }
  Mesh& mesh(const char* name) { return findMesh(scene, name); }
  Light& light(const char* name) { return findLight(scene, name); }

  SceneFetus scene;
};

TEST_F(Fetus, RegistersItsFunctions) {
  EXPECT_EQ(namesOf(sceneFetus.functions),
            (std::vector<std::string>{"animate", "explode", "setParticleCount", "setSkinColor",
                                      "setAlarmLight", "setAnimationState", "morphHose"}));
  EXPECT_STREQ(sceneFetus.model, "data\\fetus");
  EXPECT_TRUE(sceneFetus.functions[0].ground.paints);
}

TEST_F(Fetus, MeshesAreSetUp) {
  EXPECT_EQ(playing(scene.viewers[0]->positionTrack.get()), (Playing{20, true}));
  EXPECT_EQ(scene.viewers[0]->farPlane, 1500);
  const std::vector<std::string> unlit{"rectangle01", "TableTop", "phone", "WhiteBox", "eye01", "eye02"};
  for (const Mesh* mesh : scene.meshes) {
    SCOPED_TRACE(mesh->name);
    const std::string name = mesh->name;
    const bool posed = name == "Door" || name == "fetus";
    EXPECT_EQ(playing(*mesh), (posed ? Playing{20, false} : Playing{10, true}));
    EXPECT_EQ(mesh->fixedTime, posed ? 0 : -1);
    EXPECT_EQ(mesh->lit, std::find(unlit.begin(), unlit.end(), name) == unlit.end());
    EXPECT_EQ(mesh->hidden(), name == "hose01" || name == "hose02");
    EXPECT_EQ(mesh->blendMode, name == "rectangle01" ? BlendMode::transparent
                               : name == "bottle"    ? BlendMode::additive
                                                     : BlendMode::opaque);
    EXPECT_EQ(mesh->texture, -1);
    expectValues({{"opacity", mesh->opacity, 1},
                  {"red", mesh->ambient.r, 0.4},
                  {"green", mesh->ambient.g, 0.4},
                  {"blue", mesh->ambient.b, 0.4}});
  }
}

TEST_F(Fetus, TheLampBecomesABeam) {
  ASSERT_EQ(scene.lights[0]->kind, ObjectKind::volLight);
  const auto& beam = static_cast<const VolLight&>(*scene.lights[0]);
  EXPECT_STREQ(beam.name, "VolumLight");
  EXPECT_EQ(beam.depthSize(), 32);
  expectValues({{"range", beam.range, 60}, {"cone", beam.coneAngle, 33}, {"x", beam.spotDirection.x, 30}});
  EXPECT_EQ(beam.beams.texture, 2);
}

TEST_F(Fetus, LightsAreSetUp) {
  const struct {
    const char* name;
    double size, intensity, strength, range;
    const char* texture;
    bool active;
    float duration;
  } rows[] = {
      {"HandLight", 0, 0, 1, 60, "data\\flare_normal", true, 5},
      {"AlarmLight", 0, 0, 1, -1, "data\\flare_normal", true, 3.5f},
      {"WaterParticle", 5, 1, 1, -1, "data\\flare_normal", false, 5},
      {"smokeParticle01", 14, 1, 0.05, -1, "data\\flare_smoke1", false, 5},
      {"smokeParticle02", 10, 1, 0.07, -1, "data\\flare_smoke2", false, 5},
      {"smokeParticle03", 12, 1, 0.06, -1, "data\\flare_smoke3", false, 5},
      {"smokeParticle04", 9, 1, 0.08, -1, "data\\flare_smoke4", false, 5},
      {"Omni", 0, 1, 1, -1, "data\\flare_normal", false, 5},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const Light& light = this->light(row.name);
    EXPECT_EQ(playing(light), (Playing{row.duration, true}));
    EXPECT_EQ(playing(light.target.get()), (Playing{row.duration, true}));
    expectValues({{"size", light.flareSize, row.size},
                  {"intensity", light.intensity, row.intensity},
                  {"strength", light.flareStrength, row.strength},
                  {"range", light.range, row.range}});
    EXPECT_STREQ(light.flareTexture, row.texture);
    EXPECT_EQ(light.active, row.active);
    EXPECT_FALSE(light.glow);
  }
}

TEST_F(Fetus, ParticleSystemsAreSetUp) {
  const struct {
    double rate;
    int most;
    double spread, place, velocity, life, gravity, offset, fadeIn, alpha, spinMin, spinMax;
    const char* parent;
    std::vector<const char*> shapes;
  } rows[] = {
      {0, 0, 30, 10, 0, 1, 0, 0, 0, 2, -3.141, 3.141, "HandSprayer", {"WaterParticle"}},
      {17,
       40,
       2,
       0,
       5,
       3,
       4,
       5,
       1,
       1.7,
       -3.141,
       3.141,
       "cigash",
       {"smokeParticle01", "smokeParticle02", "smokeParticle03", "smokeParticle04"}},
      {300,
       0,
       170,
       50,
       0,
       3,
       -150,
       0,
       0,
       3,
       -10,
       10,
       nullptr,
       {"glassParticle01", "glassParticle02", "glassParticle03", "WaterParticle"}},
  };
  for (int i = 0; i < 3; ++i) {
    SCOPED_TRACE(i);
    const auto& row = rows[i];
    const ParticleSystem& system = *scene.particleSystems[i];
    expectValues({{"rate", system.rate, row.rate},
                  {"most", system.maxCount, row.most},
                  {"spread", system.velocitySpread, row.spread},
                  {"place", system.positionSpread, row.place},
                  {"velocity", system.velocity.y, row.velocity},
                  {"velocity sideways", system.velocity.length(), std::abs(row.velocity)},
                  {"life", system.life, row.life},
                  {"gravity", system.gravity.y, row.gravity},
                  {"gravity sideways", system.gravity.length(), std::abs(row.gravity)},
                  {"offset", system.offset.z, row.offset},
                  {"offset sideways", system.offset.length(), row.offset},
                  {"fade", system.fadeIn, row.fadeIn},
                  {"alpha", system.maxAlpha, row.alpha},
                  {"least spin", system.spinMin, row.spinMin},
                  {"most spin", system.spinMax, row.spinMax}});
    EXPECT_EQ(system.parent, row.parent ? scene.find(row.parent) : nullptr);
    ASSERT_EQ(system.shapeCount, static_cast<int>(row.shapes.size()));
    for (std::size_t k = 0; k < row.shapes.size(); ++k) {
      EXPECT_EQ(system.shapes[k], scene.find(row.shapes[k]));
    }
  }
  EXPECT_FALSE(scene.particleSystems[3]);
}

TEST_F(Fetus, TheHandsLightFlickersWithTheSpray) {
  call("animate", {1.5});  // draws 41
  EXPECT_EQ(scene.viewerIndex, 1);
  EXPECT_EQ(light("HandLight").intensity, 0);
  call("setParticleCount", {100.7});
  EXPECT_EQ(scene.particleSystems[0]->maxCount, 100);
  EXPECT_EQ(scene.particleSystems[0]->rate, 100);
  call("animate", {0});  // 18467
  EXPECT_FLOAT_EQ(light("HandLight").intensity, 67.0f / 30000 * 100);
  call("setParticleCount", {300});
  call("animate", {0});  // 6334
  EXPECT_FLOAT_EQ(light("HandLight").intensity, 34.0f / 30000 * 300);
  call("animate", {0});  // 26500
  call("animate", {0});  // 19169: 0.69
  EXPECT_FLOAT_EQ(light("HandLight").intensity, 0.4f);
}

TEST_F(Fetus, TheBottleBursts) {
  const ParticleSystem& pieces = *scene.particleSystems[2];
  const Mesh& bottle = mesh("bottle");
  const struct {
    double size, opacity;
    int most;
    bool hidden;
  } rows[] = {{300.5, 1, 300, false}, {10, 0.01f, 10, false}, {0, 0.009, 0, true}, {5, 0.5, 5, false}};
  for (const auto& [size, opacity, most, hidden] : rows) {
    call("explode", {size, opacity});
    expectValues({{"rate", pieces.rate, 100 * size}, {"opacity", bottle.opacity, opacity}});
    EXPECT_EQ(pieces.maxCount, most);
    EXPECT_EQ(bottle.flags, hidden ? hiddenFlag : 0);
  }
}

TEST_F(Fetus, TheSkinTakesItsColour) {
  mesh("fetus").texture = mesh("eye01").texture = 1;
  mesh("phone").texture = 0;
  call("setSkinColor", {0.1, 0.2, 0.3, 0.99});
  for (const char* name : {"fetus", "eye01"}) {
    expectValues({{"red", mesh(name).diffuse.r, 0.1},
                  {"green", mesh(name).diffuse.g, 0.2},
                  {"blue", mesh(name).diffuse.b, 0.3},
                  {"opacity", mesh(name).opacity, 0.99}});
    EXPECT_EQ(mesh(name).blendMode, BlendMode::transparent);
  }
  EXPECT_TRUE(textureEntry(1).wrap);
  EXPECT_EQ(mesh("phone").diffuse.r, 1);
  EXPECT_EQ(mesh("phone").blendMode, BlendMode::opaque);
  call("setSkinColor", {0.1, 0.2, 0.3, 1});
  EXPECT_EQ(mesh("fetus").blendMode, BlendMode::opaque);
}

TEST_F(Fetus, TheAlarmAndTheHoseAreSet) {
  call("setAlarmLight", {1.5});
  EXPECT_EQ(light("AlarmLight").intensity, 1.5f);
  call("morphHose", {0.25});
  // The hoses stand 10 apart along x, at 50 and 60; the third of them moves.
  expectValues({{"x", mesh("Hose").positions[0], 0.75 * 49 + 0.25 * 59}});
  call("setAnimationState", {"Fetus", 0.5});
  EXPECT_EQ(mesh("fetus").fixedTime, 10);
}

}  // namespace
}  // namespace vex
