#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "engine/scene.h"
#include "models/model_loader.h"
#include "production/making/product.h"
#include "production/models/water_parts.h"
#include "production/products.h"
#include "scenes/scene_conventions.h"
#include "tests/support/model_files.h"
#include "tests/support/temporary_folder.h"

// The generator's models as the player reads them: every object that a scene addresses, of the right kind
// and in the right order, and what each scene takes for granted about it.

namespace vex {

using namespace image;

namespace {

using Names = std::vector<const char*>;

struct ModelExpectation {
  const char* name;  // "data/NAME.ase"
  Names meshes{};    // shown
  Names helpers{};   // meshes that may be hidden
  Names lights{};
  Names dark{};        // lights that the scene switches off
  Names switchedOn{};  // lights that the scene switches on
  int leastCameras = 1;
  bool world = false;      // fills the screen
  long mostFaces = 25000;  // of a world
  bool unlit = false;      // no light needs to be on
  bool still = false;      // camera 0 stays where it is
  void (*check)(Scene& scene, const std::vector<std::string>& textures) = nullptr;
};

std::string numbered(const char* stem, int number) {
  return std::string(stem) + (number < 10 ? "0" : "") + std::to_string(number);
}

int indexOf(const OwnedArray<Light, destroyLight>& lights, const std::string& name) {
  int index = 0;
  for (const Light* light : lights) {
    if (isNamed(*light, name.c_str())) return index;
    ++index;
  }
  ADD_FAILURE() << "no light " << name;
  return -1;
}

bool hasTracks(const Object3D& object) {
  return object.track(TrackType::scale) || object.track(TrackType::rotation) ||
         object.track(TrackType::position);
}

std::string textureOf(const Mesh& mesh, const std::vector<std::string>& textures) {
  return mesh.texture < 0 ? "" : textures.at(static_cast<std::size_t>(mesh.texture));
}

// Whether texture coordinates differ from vertex to vertex.
bool isMapped(const Mesh& mesh) {
  for (std::size_t i = 2; i < mesh.uvs.size(); ++i)
    if (mesh.uvs[i] != mesh.uvs[i % 2]) return true;
  return false;
}

void expectPlain(const Object3D& object) {
  EXPECT_FALSE(hasTracks(object)) << object.name;
  EXPECT_FALSE(object.parent) << object.name;
}

// --- What single scenes rely on

void checkMonster(Scene& scene, const std::vector<std::string>&) {
  for (const char* name : {"sphere01", "sphere02"}) EXPECT_TRUE(findMesh(scene, name).envMap) << name;
}

void checkHell(Scene& scene, const std::vector<std::string>&) {
  EXPECT_TRUE(isMapped(findMesh(scene, "Lava")));
  for (const Light* light : scene.lights) EXPECT_FALSE(hasTracks(*light)) << light->name;
}

void checkIntroBox(Scene& scene, const std::vector<std::string>&) {
  int layers = 0;
  for (const Mesh* mesh : scene.meshes) layers += std::string_view(mesh->name).starts_with("VexLayer");
  EXPECT_EQ(layers, 4);
  const int first = indexOf(scene.lights, "omni02");
  float x = -1e9f;
  for (int i = 2; i <= 49; ++i) {
    const int index = indexOf(scene.lights, numbered("omni", i));
    ASSERT_EQ(index, first + i - 2) << i;
    const Light& smoke = *scene.lights[index];
    expectPlain(smoke);
    EXPECT_GE(smoke.position.x, x) << smoke.name;  // showVex runs along the title
    x = smoke.position.x;
  }
  EXPECT_TRUE(findLight(scene, "Omni01").active);
  EXPECT_NE(indexOf(scene.lights, "BlueParticle") % 3, 0);
  EXPECT_NE(indexOf(scene.lights, "GreenParticle") % 3, 0);
  EXPECT_EQ(indexOf(scene.lights, "WhiteParticle") % 3, 0);  // every third one is green
}

void checkSkull(Scene& scene, const std::vector<std::string>& textures) {
  ASSERT_GE(scene.lights.count(), 3);
  for (int i = 0; i < 3; ++i) {
    const std::string_view name = scene.lights[i]->name;
    EXPECT_FALSE(name.starts_with("smoke") || name.starts_with("fire")) << name;
    EXPECT_TRUE(scene.lights[i]->active) << name;
  }
  for (const char* stem : {"fire", "smoke"}) {
    std::set<int> flares;
    for (int i = 1; i <= 4; ++i) flares.insert(indexOf(scene.lights, numbered(stem, i)) % 4);
    EXPECT_EQ(flares.size(), 4u) << stem;  // each of four textures once
  }
  for (int i = 1; i <= 3; ++i) {
    const Mesh& crow = findMesh(scene, numbered("crow", i).c_str());
    EXPECT_TRUE(hasTracks(crow)) << crow.name;
    EXPECT_TRUE(isMapped(crow)) << crow.name;
  }
  for (int i = 1; i <= 6; ++i) {
    const Mesh& spark = findMesh(scene, numbered("spark", i).c_str());
    EXPECT_EQ(textureOf(spark, textures), "data\\spark") << spark.name;
  }
  for (const char* name : {"laser01", "laser02"}) {
    Mesh& laser = findMesh(scene, name);
    expectPlain(laser);
    for (const Vertex& vertex : laser.vertices)
      EXPECT_GE(vertex.position.y, laser.position.y - 1e-3f) << name;
  }
  for (const char* name : {"clouds01", "clouds02"}) {
    const Mesh& layer = findMesh(scene, name);
    ASSERT_EQ(layer.uvs.size(), 8u) << name;
    EXPECT_EQ(layer.uvs[1], layer.uvs[3]) << name;
    EXPECT_EQ(layer.uvs[5], layer.uvs[7]) << name;
    EXPECT_NE(layer.uvs[1], layer.uvs[5]) << name;
  }
}

void checkFetus(Scene& scene, const std::vector<std::string>& textures) {
  Mesh &a = findMesh(scene, "hose01"), &b = findMesh(scene, "hose02"), &hose = findMesh(scene, "Hose");
  EXPECT_EQ(a.vertices.size(), b.vertices.size());
  EXPECT_EQ(a.vertices.size(), hose.vertices.size());
  ASSERT_EQ(a.faces.size(), b.faces.size());
  // The same order: faces differ by the diagonals of their quads at most.
  for (std::size_t i = 0; i < a.faces.size(); ++i) {
    const auto shared = std::count_if(a.faces[i].v.begin(), a.faces[i].v.end(), [&](std::uint32_t corner) {
      return std::count(b.faces[i].v.begin(), b.faces[i].v.end(), corner) > 0;
    });
    ASSERT_GE(shared, 2) << i;
  }
  EXPECT_EQ(textureOf(findMesh(scene, "fetus"), textures), "data\\fetus_skin");
  EXPECT_LT(findMesh(scene, "bottle").position.length(), 1e-3f);
  const Light& lamp = findLight(scene, "VolumLight");
  EXPECT_TRUE(lamp.spot);
  EXPECT_GT(std::hypot(lamp.spotDirection.x, lamp.spotDirection.z), 1e-3f * lamp.spotDirection.length());
  EXPECT_FALSE(hasTracks(lamp) || lamp.target);
}

void checkWater(Scene& scene, const std::vector<std::string>&) {
  for (const Vertex& vertex : findMesh(scene, "Water").vertices) ASSERT_NEAR(vertex.position.y, 0, 1);
  // Cameras and foam find the twisted body by it.
  EXPECT_NEAR(findMesh(scene, "WaterAlien").radius, water::beingReach, 2);
  EXPECT_TRUE(isMapped(findMesh(scene, "LightPlane")));
  Mesh& ray = findMesh(scene, "RayBlue");
  EXPECT_TRUE(isMapped(ray));
  expectPlain(ray);
}

void checkParticles(Scene& scene, const std::vector<std::string>&) {
  EXPECT_EQ(indexOf(scene.lights, "omni01"), 0);
  EXPECT_EQ(scene.meshes.count(), 0);
  EXPECT_LT(scene.viewers[0]->target.length(), 1e-3f);
  EXPECT_FALSE(scene.viewers[0]->targetTrack);
}

void checkRays(Scene& scene, const std::vector<std::string>&) {
  const std::vector<Vertex>& vertices = scene.meshes[0]->vertices;
  ASSERT_EQ(vertices.size() % 16, 0u);
  for (std::size_t i = 0; i < vertices.size(); ++i)
    EXPECT_NEAR(vertices[i].position.z, vertices[i - i % 16].position.z, 1e-4f) << i;
}

void checkRotCubes(Scene& scene, const std::vector<std::string>&) {
  EXPECT_TRUE(scene.lights[0]->active);
  int turning = 0;
  for (const Mesh* mesh : scene.meshes) turning += mesh->track(TrackType::rotation) != nullptr;
  EXPECT_GT(turning, 0);
}

void checkWobbel(Scene& scene, const std::vector<std::string>&) {
  const Mesh& mesh = *scene.meshes[0];
  EXPECT_TRUE(mesh.envMap);
  EXPECT_TRUE(mesh.uvs.empty());
  EXPECT_LT(scene.viewers[0]->target.length(), 1e-3f);
}

const std::vector<ModelExpectation>& expectations() {
  static const std::vector<ModelExpectation> rows{
      {.name = "intro_box",
       .meshes = {"lock", "top", "VexLayer01", "VexLayer02", "VexLayer03", "VexLayer04"},
       .helpers = {"dummy01"},
       .lights = {"Omni01", "BlueParticle", "GreenParticle", "WhiteParticle"},
       .dark = {"omni", "BlueParticle", "GreenParticle", "WhiteParticle"},
       .switchedOn = {"Omni01"},
       .world = true,
       .check = checkIntroBox},
      {.name = "monster", .meshes = {"sphere01", "sphere02"}, .world = true, .check = checkMonster},
      {.name = "hell",
       .meshes = {"Lava", "Sphere"},
       .helpers = {"part01", "part02", "Sprayer01"},
       .lights = {"part03", "part04"},
       .world = true,
       .check = checkHell},
      {.name = "skull",
       .meshes = {"rock",    "spear01", "spear02", "spear03", "spear04",  "spear05", "spear06",
                  "Crow01",  "Crow02",  "Crow03",  "spark01", "spark02",  "spark03", "spark04",
                  "spark05", "spark06", "laser01", "laser02", "clouds01", "clouds02"},
       .lights = {"SparkLight", "fire01", "fire02", "fire03", "fire04", "smoke01", "smoke02", "smoke03",
                  "smoke04"},
       .dark = {"fire", "smoke"},
       .world = true,
       .check = checkSkull},
      {.name = "fetus",
       .meshes = {"door", "fetus", "rectangle01", "TableTop", "Hose", "hose01", "hose02", "phone", "WhiteBox",
                  "eye01", "eye02", "bottle"},
       .helpers = {"glassParticle01", "glassParticle02", "glassParticle03", "HandSprayer", "cigash"},
       .lights = {"VolumLight", "HandLight", "AlarmLight", "WaterParticle", "smokeParticle01",
                  "smokeParticle02", "smokeParticle03", "smokeParticle04"},
       .dark = {"VolumLight", "WaterParticle", "smokeParticle"},
       .switchedOn = {"AlarmLight"},
       .world = true,
       .mostFaces = 25000,
       .check = checkFetus},
      {.name = "water_alien",
       .meshes = {"Water", "WaterAlien", "LightPlane", "RayBlue"},
       .helpers = {"Dummy01", "Dummy02", "Dummy03", "Dummy04"},
       .lights = {"Omni01", "RayLight", "BlackParticle", "WhiteParticle", "RayParticle"},
       .dark = {"BlackParticle", "WhiteParticle", "RayParticle"},
       .world = true,
       .check = checkWater},
      {.name = "layer_particles",
       .lights = {"omni01"},
       .unlit = true,
       .still = true,
       .check = checkParticles},
      {.name = "layer_rays", .unlit = true, .still = true, .check = checkRays},
      {.name = "layer_rot_cubes", .still = true, .check = checkRotCubes},
      {.name = "layer_wide", .still = true},
      {.name = "wobbel", .unlit = true, .check = checkWobbel},
  };
  return rows;
}

constexpr std::string_view folderPrefix = "data/", textSuffix = ".ase";

bool isModel(const Product& product) {
  return product.outputs[0].ends_with(textSuffix);
}

std::string modelName(const Product& product) {
  const std::string& path = product.outputs[0];
  return path.substr(folderPrefix.size(), path.size() - folderPrefix.size() - textSuffix.size());
}

bool begins(const char* name, const Names& stems) {
  return std::any_of(stems.begin(), stems.end(), [&](const char* stem) {
    return std::equal(stem, stem + std::string_view(stem).size(), name,
                      [](char a, char b) { return std::tolower(a) == std::tolower(b); });
  });
}

bool staysOn(const Light& light, const ModelExpectation& row) {
  if (begins(light.name, row.switchedOn)) return true;
  return light.active && !begins(light.name, row.dark);
}

// Twice the area over the square of the longest side: 0 for a triangle that is a line or a point.
double slimness(const Mesh& mesh, const Face& face) {
  const auto corner = [&](std::size_t k) { return mesh.vertices.at(face.v[k]).position; };
  const auto edge = [&](std::size_t from, std::size_t to) {
    const Vector d = corner(to) - corner(from);
    return std::array<double, 3>{double{d.x}, double{d.y}, double{d.z}};
  };
  const auto a = edge(0, 1), b = edge(0, 2), c = edge(1, 2);
  const auto square = [](const std::array<double, 3>& v) { return v[0] * v[0] + v[1] * v[1] + v[2] * v[2]; };
  const std::array<double, 3> normal{a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2],
                                     a[0] * b[1] - a[1] * b[0]};
  const double longest = std::max({square(a), square(b), square(c)});
  return longest > 0 ? std::sqrt(square(normal)) / longest : 0;
}

class ProducedModel : public ::testing::TestWithParam<const char*> {
 protected:
  const TemporaryFolder folder;
  const Products products = allProducts();
  std::vector<std::string> textures;
  Scene scene;
};

void expectObjects(Scene& scene, const ModelExpectation& row) {
  for (const char* name : row.meshes) EXPECT_FALSE(findMesh(scene, name).hidden()) << name;
  for (const char* name : row.helpers) findMesh(scene, name);
  for (const char* name : row.lights) findLight(scene, name);
  std::set<std::string> names;
  const auto add = [&](std::string name) {
    std::transform(name.begin(), name.end(), name.begin(),
                   [](char c) { return static_cast<char>(std::tolower(c)); });
    EXPECT_TRUE(names.insert(name).second) << name << " twice";
  };
  for (const Mesh* mesh : scene.meshes) add(mesh->name);
  for (const Light* light : scene.lights) add(light->name);
}

void expectCamerasAndLights(Scene& scene, const ModelExpectation& row) {
  ASSERT_GE(scene.viewers.count(), row.leastCameras);
  EXPECT_FALSE(row.still && scene.viewers[0]->positionTrack);
  ASSERT_GE(scene.lights.count(), 1);
  const std::vector<Light*> on = [&] {
    std::vector<Light*> lights;
    for (Light* light : scene.lights)
      if (staysOn(*light, row)) lights.push_back(light);
    return lights;
  }();
  EXPECT_LE(on.size(), std::size_t{maxActiveLights});
  EXPECT_FALSE(on.empty() && !row.unlit);
}

void expectFaces(Scene& scene, const ModelExpectation& row) {
  long faces = 0;
  int flat = 0;
  for (const Mesh* mesh : scene.meshes) {
    for (const Face& face : mesh->faces) flat += slimness(*mesh, face) < 1e-6;
    EXPECT_EQ(flat, 0) << "faces without area up to " << mesh->name;
    if (!mesh->hidden()) faces += static_cast<long>(mesh->faces.size());
  }
  if (!row.world) return;
  EXPECT_GE(faces, 4000);
  EXPECT_LE(faces, row.mostFaces);
}

}  // namespace

TEST_P(ProducedModel, HoldWhatTheirScenesAskFor) {
  const std::string name = GetParam();
  const auto product = std::find_if(products.begin(), products.end(), [&](const Product& candidate) {
    return isModel(candidate) && modelName(candidate) == name;
  });
  ASSERT_NE(product, products.end());
  const auto row = std::find_if(expectations().begin(), expectations().end(),
                                [&](const ModelExpectation& candidate) { return candidate.name == name; });
  ASSERT_NE(row, expectations().end()) << name << " has no row in the table";

  const Bytes text = product->make({.draft = true})[0];
  writeFile("model.ase", {reinterpret_cast<const char*>(text.data()), text.size()});
  readModel({"model.ase"}, &scene, nameTextures(textures));
  scene.prepare(false);
  expectObjects(scene, *row);
  expectCamerasAndLights(scene, *row);
  expectFaces(scene, *row);

  std::set<std::string> files;
  for (const Product& other : products) files.insert(other.outputs.begin(), other.outputs.end());
  for (std::string texture : textures) {
    EXPECT_LE(texture.size(), 31u) << texture;
    std::replace(texture.begin(), texture.end(), '\\', '/');
    EXPECT_TRUE(files.contains(texture + ".jpg") || files.contains(texture + ".bmp")) << texture;
  }
  if (row->check) row->check(scene, textures);
}

// Every model that the generator makes, and every one that the table knows.
static std::vector<const char*> namesOfModels() {
  static std::set<std::string> names;
  for (const ModelExpectation& row : expectations()) names.insert(row.name);
  for (const Product& product : allProducts())
    if (isModel(product)) names.insert(modelName(product));
  std::vector<const char*> models;
  for (const std::string& name : names) models.push_back(name.c_str());
  return models;
}

INSTANTIATE_TEST_SUITE_P(Production, ProducedModel, ::testing::ValuesIn(namesOfModels()),
                         [](const ::testing::TestParamInfo<const char*>& model) {
                           return std::string(model.param);
                         });

}  // namespace vex
