#include <gtest/gtest.h>

#include "scenes/scene_alien.h"
#include "scenes/scene_fetus.h"
#include "scenes/scene_hell.h"
#include "scenes/scene_intro_box.h"
#include "scenes/scene_layer_particles.h"
#include "scenes/scene_layer_rays.h"
#include "scenes/scene_layer_rot_cubes.h"
#include "scenes/scene_layer_wide.h"
#include "scenes/scene_layer_wobbel.h"
#include "scenes/scene_skull.h"
#include "scenes/scene_water.h"
#include "tests/support/gl_fixture.h"
#include "tests/support/image_files.h"
#include "tests/support/scene_description.h"
#include "tests/support/scene_models.h"
#include "tests/support/temporary_folder.h"

// What each scene makes of the objects of its model, in full: whatever a description does not mention is left
// as it was.

namespace vex {
namespace {

class SetUpOf : public GlTest {
 protected:
  void SetUp() override {
    GlTest::SetUp();
    writeSceneModels();
    for (const char* texture : {"data/fetus_skin.bmp", "other.bmp"})
      writeFile(texture, bmpBytes(4, 4, plain({255, 255, 255})));
  }

  template <typename Concrete>
  static void expectSetUp(const ModelScene<Concrete>& scene, const std::string& model,
                          const std::string& description) {
    EXPECT_EQ(scene.model, "data\\" + model);
    Concrete object;
    fillScene(object, contentsOf(model.c_str()));
    scramble(object);
    const SceneState before = stateOf(object);
    beginScene(object, scene.name, scene.functions);
    scene.setUp(object);
    EXPECT_EQ(textOf(stateOf(object)), textOf(described(before, description)));
  }

  TemporaryFolder folder;
};

TEST_F(SetUpOf, Alien) {
  expectSetUp(sceneAlien, "monster", R"(
scene: name SceneAlien; functions animate;
  box data\monstertop data\monsterbot data\monsternor data\monsterwes data\monstersou data\monstereas
viewers: path 20 once; targetPath 20 once
lights: intensity 1.5; flareSize 0; plays 20 once; targetPlays 20 once
meshes: shineStrength 1; ambient +0.1 +0.1 +0.1; specular 0.4 0.4 0.4; plays 10 looping
mesh sphere01 sphere02: texture data\chrome wrapped
)");
}

TEST_F(SetUpOf, Hell) {
  expectSetUp(sceneHell, "hell", R"(
scene: name SceneHell; functions animate;
  box data\helltop data\hellbottom data\hellnorth data\hellwest data\hellsouth data\helleast
viewers: path 20 once; targetPath 20 once
lights: flareSize 0
meshes: plays 20 looping; shininess 0; shineStrength 0
mesh Sphere: plays 5 looping
light part03 part04: flareSize 10; flareStrength 1; flareTexture data\flare_shine
system 0: shapes part01 part02 part03 part04 part03 part04; rate 100; maxCount 200; velocitySpread 20;
  velocity -30 -10 -30; life 2; gravity 0 -30 0; parent Sprayer01; maxAlpha 2
)");
}

TEST_F(SetUpOf, LayerWide) {
  expectSetUp(sceneLayerWide, "layer_wide", R"(
scene: name SceneLayerWide; functions animate
viewer 0: targetPath none; fov 179.95
mesh 0: blend additive
)");
}

TEST_F(SetUpOf, LayerRotCubes) {
  expectSetUp(sceneLayerRotCubes, "layer_rot_cubes", R"(
scene: name SceneLayerRotCubes; functions animate
lights: plays none
meshes: plays 5 looping; blend additive
)");
}

TEST_F(SetUpOf, LayerRays) {
  expectSetUp(sceneLayerRays, "layer_rays", R"(
scene: name SceneLayerRays; functions animate
viewer 0: targetPath none
mesh 0: twoSided yes; lit no; diffuse 1 1 1; ambient 1 1 1; specular 1 1 1; texture data\ray_cone wrapped
)");
}

TEST_F(SetUpOf, LayerParticles) {
  expectSetUp(sceneLayerParticles, "layer_particles", R"(
scene: name SceneLayerParticles; functions animate loadFlare
light 0: intensity 0; flareStrength 1; flareSize 5; glow no; flareTexture data\flare_shine
viewer 0: position 0 0 30
system 0: shapes Omni01; rate 0; maxCount 0; velocitySpread 0; positionSpread 0; velocity 0 0 0; life 1;
  gravity 0 0 0; maxAlpha 2
)");
}

TEST_F(SetUpOf, LayerWobbel) {
  expectSetUp(sceneLayerWobbel, "wobbel", R"(
scene: name SceneLayerWobbel; functions animate
meshes: blend additive; lit no; texture data\envmapspace wrapped; twoSided yes
viewer 0: path none; targetPath none
light 0: flareSize 0; intensity 2.5; active no
)");
}

// The smoke lights have the indices 1 to 48, the particles 49 to 51.
TEST_F(SetUpOf, IntroBox) {
  std::string lights;
  for (int i = 1; i <= 51; ++i)
    lights += "light " + std::to_string(i) + ": active no; flareSize 25; " +
              (i % 3 == 0 ? "flareStrength 0.2; colour 0 1 0.4\n" : "flareStrength -1; colour 1 1 1\n");
  for (int i = 1; i <= 48; ++i)
    lights += "light " + std::to_string(i) +
              ": flareStrength 0; flareSize 15; colour 0 1 0.4; flareTexture data\\flare_smoke" +
              std::to_string(i % 4 + 1) + "\n";
  expectSetUp(sceneIntroBox, "intro_box", R"(
scene: name SceneIntroBox;
  functions animate setAnimationState setParticleCount setVexFog reverseSmoke showVex
viewers: path 15 once; targetPath 15 once
light Omni01: flareSize 0
)" + lights + R"(
light BlueParticle: flareTexture data\flare_smoke1
light GreenParticle: flareTexture data\flare_smoke2
light WhiteParticle: flareTexture data\flare_smoke3
meshes: plays 15 once; fixedTime 0
mesh VexLayer*: blend additive; opacity 0; plays 5 once; twoSided yes; lit no
system 0: shapes BlueParticle GreenParticle WhiteParticle; rate 0; maxCount 0; velocitySpread 20;
  positionSpread 30; velocity 0 40 0; life 3; gravity 0 30 0; maxAlpha 1.3; parent dummy01
)");
}

// The lights smoke01 to 04 have the indices 3 to 6, fire01 to 04 those from 8 to 11: its green is
// 0.5 + 0.5 sin(index).
TEST_F(SetUpOf, Skull) {
  expectSetUp(sceneSkull, "skull", R"(
scene: name SceneSkull;
  functions animate setLights setSparkRate setLaser setLaserOpacity setParticleCount killCrow setAnimationState;
  box none data\skullbot data\skullnorth data\skullwest data\skullsouth data\skulleast
mesh rock spear01 spear02 spear03 spear04 spear05 spear06: envMap no
lights: flareSize 25; flareStrength 1; glow yes
light 2: intensity 1; flareSize 0
light smoke*: flareSize 40; flareStrength -0.4; active no; glow no; colour 1 1 1
light fire*: flareSize 15; flareStrength 0.4; active no; glow no
light 3: flareTexture data\flare_smoke4
light 4: flareTexture data\flare_smoke1
light 5: flareTexture data\flare_smoke2
light 6: flareTexture data\flare_smoke3
light 8: flareTexture data\flare_fire1; colour 1 0.99468 0.2
light 9: flareTexture data\flare_fire2; colour 1 0.70606 0.2
light 10: flareTexture data\flare_fire3; colour 1 0.22799 0.2
light 11: flareTexture data\flare_fire4; colour 1 0 0.2
light SparkLight: intensity 0; flareSize 0
meshes: plays 20 looping
viewers: path 20 looping; targetPath 20 looping
mesh crow01 crow02 crow03: texture data\crow wrapped; fixedTime 0
mesh spark*: twoSided yes; blend additive
mesh laser*: lit no; blend additive; twoSided yes
mesh clouds*: twoSided yes; lit no; blend transparent
system 0: parent Crow01
system 1: parent Crow02
system 2: parent Crow03
system 3: parent Crow01
system 4: parent Crow02
system 5: parent Crow03
system 0 1 2: shapes fire01 Fire02 fire03 fire04; rate 0; maxCount 0; velocitySpread 30; life 0.6;
  lifeVariation 0.1; positionSpread 4; velocity 0 80 0; gravity 0 100 0; maxAlpha 1.3
system 3 4 5: shapes Smoke01 smoke02 smoke03 smoke04; rate 0; maxCount 0; velocitySpread 30; life 2;
  lifeVariation 0.4; velocity 0 50 0; gravity 0 50 0; maxAlpha 1.3; offset 0 20 0
)");
}

TEST_F(SetUpOf, Fetus) {
  expectSetUp(sceneFetus, "fetus", R"(
scene: name SceneFetus;
  functions animate explode setParticleCount setSkinColor setAlarmLight setAnimationState morphHose
meshes: plays 10 looping; ambient +0.15 +0.15 +0.15
mesh door fetus: plays 20 once; fixedTime 0
viewers: path 20 looping; targetPath 20 looping; farPlane 1500
lights: flareSize 0; plays 5 looping; targetPlays 5 looping
light VolumLight: beam 32 data\vollight; range 60; active no; plays 1 looping; targetPlays 1 looping;
  intensity 1; flareSize 1; flareStrength 1; flareTexture data\flare_normal; colour 1 1 1; glow no
light HandLight: intensity 0; range 60
light WaterParticle: flareSize 5; flareTexture data\flare_normal; glow no; active no
light AlarmLight: active yes; intensity 0; plays 3.5 looping; targetPlays 3.5 looping
mesh rectangle01: lit no; blend transparent
mesh TableTop phone WhiteBox eye01 eye02: lit no
mesh hose01 hose02: hidden yes
mesh WhiteBox: texture none
mesh bottle: opacity 1; blend additive
light smokeParticle01: active no; flareStrength 0.05; flareSize 14; flareTexture data\flare_smoke1
light smokeParticle02: active no; flareStrength 0.07; flareSize 10; flareTexture data\flare_smoke2
light smokeParticle03: active no; flareStrength 0.06; flareSize 12; flareTexture data\flare_smoke3
light smokeParticle04: active no; flareStrength 0.08; flareSize 9; flareTexture data\flare_smoke4
system 0: shapes WaterParticle; rate 0; maxCount 0; velocitySpread 30; positionSpread 10; velocity 0 0 0;
  life 1; gravity 0 0 0; parent HandSprayer; maxAlpha 2
system 1: shapes smokeParticle01 smokeParticle02 smokeParticle03 smokeParticle04; rate 17; maxCount 40;
  velocitySpread 2; positionSpread 0; velocity 0 5 0; parent cigash; gravity 0 4 0; life 3; offset 0 0 5;
  fadeIn 1; maxAlpha 1.7
system 2: shapes glassParticle01 glassParticle02 glassParticle03 WaterParticle; rate 300; maxCount 0;
  velocitySpread 170; positionSpread 50; velocity 0 0 0; life 3; gravity 0 -150 0; maxAlpha 3; spin -10 10
)");
}

TEST_F(SetUpOf, Water) {
  expectSetUp(sceneWater, "water_alien", R"(
scene: name SceneWater; functions animate setAnimationState setRay
meshes: plays 15 looping; ambient 0 0 0
mesh Water: blend additive; envMap no; lit no; fluid 50 50; twoSided yes
mesh WaterAlien: lit no
mesh LightPlane: blend additive; opacity 0.5
viewers: path 15 looping; targetPath 15 looping; farPlane 3000
lights: flareSize 30; flareStrength 1; flareTexture data\flare_highpass; intensity 1; plays 10 looping; targetPlays 10 looping
light BlackParticle: intensity 0; active no; flareStrength -1
light WhiteParticle: intensity 0; active no
light RayParticle: flareStrength 1; intensity 0; active no; flareSize 15; flareTexture data\flare_particle
light RayLight: intensity 0; flareSize 0
mesh RayBlue: blend additive; opacity 0; lit no; twoSided yes; ambient 1 1 1; diffuse 1 1 1; specular 1 1 1;
  scaled 0.6 0.95 0.6
system 0: parent Dummy01
system 1: parent Dummy02
system 2: parent Dummy03
system 3: parent Dummy04
system 0 1 2 3: shapes BlackParticle WhiteParticle; rate 40; maxCount 200; velocitySpread 10;
  positionSpread 250; velocity 0 -150 0; life 5; gravity 0 -20 0; maxAlpha 2
system 4: shapes RayParticle; rate 0; maxCount 0; velocitySpread 0; positionSpread 25; velocity 0 -200 0;
  life 3; gravity 0 0 0; maxAlpha 2.5; parent RayBlue; offset 0 350 0
)");
}

}  // namespace
}  // namespace vex
