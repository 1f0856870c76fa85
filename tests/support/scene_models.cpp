#include "tests/support/scene_models.h"

#include <cstring>

#include "production/geometry/forms.h"
#include "production/models/stage.h"
#include "tests/support/image_files.h"
#include "tests/support/temporary_folder.h"

namespace vex {

using namespace geometry;

namespace {

struct SceneModel {
  const char* file;
  ModelContents contents;
};

// Omni01 at index 0, the smoke at 1 to 48, the particles at 49 to 51.
ModelContents introBox() {
  ModelContents model{
      .meshes = {"box", "lock", "top", "VexLayer01", "VEXLAYER02", "VexLayer03", "VexLayer04", "dummy01"},
      .lights = {"Omni01"},
      .viewers = 2};
  for (int i = 2; i <= 49; ++i) model.lights.push_back((i < 10 ? "Omni0" : "omni") + std::to_string(i));
  for (const char* name : {"BlueParticle", "GreenParticle", "WhiteParticle"}) model.lights.emplace_back(name);
  return model;
}

const std::vector<SceneModel>& sceneModels() {
  static const std::vector<SceneModel> models{
      {"intro_box", introBox()},
      {"water_alien",
       {.meshes = {"water", "WaterAlien", "LightPlane", "RayBlue", "Dummy01", "Dummy02", "Dummy03",
                   "Dummy04"},
        .lights = {"Omni01", "RayLight", "BlackParticle", "WhiteParticle", "RayParticle"},
        .viewers = 2}},
      {"fetus",
       {.meshes = {"Door", "fetus", "rectangle01", "TableTop", "Hose", "hose01", "hose02", "phone",
                   "WhiteBox", "eye01", "eye02", "bottle", "glassParticle01", "glassParticle02",
                   "glassParticle03", "HandSprayer", "cigash", "wall"},
        .lights = {"VolumLight", "HandLight", "AlarmLight", "WaterParticle", "smokeParticle01",
                   "smokeParticle02", "smokeParticle03", "smokeParticle04", "Omni"},
        .viewers = 2}},
      {"monster", {.meshes = {"Beast", "sphere01", "Sphere02"}, .lights = {"a", "b"}, .viewers = 2}},
      {"skull",
       {.meshes = {"rock",    "spear01", "spear02", "spear03", "spear04",  "spear05",  "spear06",
                   "Crow01",  "Crow02",  "Crow03",  "spark01", "spark02",  "spark03",  "spark04",
                   "spark05", "spark06", "laser01", "laser02", "clouds01", "clouds02", "target"},
        .lights = {"Key", "Fill", "Side", "Smoke01", "smoke02", "smoke03", "smoke04", "SparkLight", "fire01",
                   "Fire02", "fire03", "fire04"},
        .viewers = 2}},
      {"hell",
       {.meshes = {"Lava", "Sphere", "part01", "part02", "Sprayer01"},
        .lights = {"Omni", "part03", "part04"},
        .viewers = 2}},
      {"layer_particles", {.lights = {"Omni01"}}},
      {"layer_wide", {.meshes = {"a", "b"}, .lights = {"x"}}},
      {"layer_rot_cubes", {.meshes = {"a", "b"}, .lights = {"x", "y"}}},
      {"wobbel", {.meshes = {"a", "b"}, .lights = {"x"}}},
      {"layer_rays", {.meshes = {"cone", "other"}, .lights = {"x"}}},
  };
  return models;
}

constexpr const char* textures[] = {
    "monstertop", "monsterbot", "monsternor", "monsterwes",  "monstersou", "monstereas",
    "chrome",     "helltop",    "hellbottom", "hellnorth",   "hellwest",   "hellsouth",
    "helleast",   "skullbot",   "skullnorth", "skullwest",   "skullsouth", "skulleast",
    "crow",       "vollight",   "ray_cone",   "envmapspace", "copperbar",
};

}  // namespace

const ModelContents& contentsOf(const char* model) {
  for (const SceneModel& row : sceneModels()) {
    if (std::strcmp(row.file, model) == 0) return row.contents;
  }
  static const ModelContents none;
  return none;
}

void writeSceneModels() {
  for (const auto& [file, contents] : sceneModels()) {
    Stage stage;
    stage.materials = {{.name = "plain"}};
    for (const std::string& name : contents.meshes) {
      stage.meshes.push_back({.name = name, .surface = plane(2, 2, 1, 1), .material = "plain"});
    }
    for (const std::string& name : contents.lights) {
      const bool spot = name == "VolumLight";
      stage.lights.push_back({.name = name,
                              .on = stage.lights.size() < maxActiveLights,
                              .spot = spot,
                              .target = spot ? Vector(1, -5, 1) : Vector()});
    }
    for (int i = 0; i < contents.viewers; ++i) {
      stage.cameras.push_back({.name = "camera" + std::to_string(i), .position = Vector(0, 5, 30)});
    }
    writeFile(std::string("data/") + file + ".ase", modelText(stage));
  }
  for (const char* texture : textures) {
    writeFile(std::string("data/") + texture + ".bmp", bmpBytes(4, 4, plain({255, 255, 255})));
  }
}

}  // namespace vex
