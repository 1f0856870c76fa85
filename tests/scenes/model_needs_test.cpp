#include "scenes/model_needs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <string>

#include "base/report.h"
#include "base/window_size.h"
#include "engine/glow_textures.h"
#include "production/geometry/forms.h"
#include "production/models/stage.h"
#include "scenes/ball_file.h"
#include "scenes/scene_conventions.h"
#include "scenes/scene_tables.h"
#include "tests/support/gl_fixture.h"
#include "tests/support/image_files.h"
#include "tests/support/model_files.h"
#include "tests/support/scene_models.h"
#include "tests/support/temporary_folder.h"
#include "textures/texture_cache.h"

// What the scenes say that they need, against what they cannot do without.

namespace vex {

using namespace geometry;

namespace {

struct Deleter {
  void operator()(Scene* scene) const { scene->destroy(scene); }
};

std::string lowered(std::string text) {
  for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return text;
}

void writeModel(const char* file, const ModelContents& contents) {
  Stage stage;
  stage.materials = {{.name = "plain"}};
  for (const std::string& name : contents.meshes)
    stage.meshes.push_back({.name = name, .surface = plane(2, 2, 1, 1), .material = "plain"});
  for (const std::string& name : contents.lights)
    stage.lights.push_back({.name = name, .on = stage.lights.size() < maxActiveLights});
  if (stage.lights.empty()) stage.lights.push_back({.name = "needed_by_the_writer"});
  for (int i = 0; i < contents.viewers; ++i)
    stage.cameras.push_back({.name = "camera" + std::to_string(i), .position = Vector(0, 5, 30)});
  std::string path = std::string(file) + ".ase";
  std::replace(path.begin(), path.end(), '\\', '/');
  writeFile(path, modelText(stage));
}

// As drawBitmap and its like take them; a number is the greatest that is useful.
struct CallArguments {
  std::string object, picture = "data\\light1", movie = "data\\m", file = "data\\balls.hvv";
  std::array<float, maxArguments> numbers{};
  std::array<const void*, maxArguments> slots{};

  void fill(const FunctionRow& row) {
    for (std::size_t i = 0; i < row.parameters.size(); ++i) {
      const FunctionParameter& parameter = row.parameters[i];
      numbers[i] = parameter.max;
      slots[i] = &numbers[i];
      switch (parameter.kind) {
        case ArgumentKind::number:
        case ArgumentKind::wholeNumber:
          break;
        case ArgumentKind::cameraNumber:
          numbers[i] = 0;
          break;
        case ArgumentKind::frameNumber:
          numbers[i] = 1;
          break;
        case ArgumentKind::textureName:
          slots[i] = picture.c_str();
          break;
        case ArgumentKind::movieName:
          slots[i] = movie.c_str();
          break;
        case ArgumentKind::fileName:
          slots[i] = file.c_str();
          break;
        case ArgumentKind::objectName:
          slots[i] = object.c_str();
          break;
      }
    }
  }
};

// What stops the scene from being built and drawn after all that can be set of it; empty when nothing does.
std::string obstacleToRun(const SceneEntry& entry) {
  const FatalErrorsThrown thrown;
  CallArguments arguments;
  if (!entry.needs.objects.empty()) arguments.object = entry.needs.objects.front().name;
  std::string what;
  try {
    const std::unique_ptr<Scene, Deleter> scene(entry.construct());
    scene->prepare(false);
    for (const FunctionRole role : {FunctionRole::sets, FunctionRole::draws}) {
      for (const FunctionRow& row : entry.functions) {
        if (row.role != role) continue;
        arguments.fill(row);
        row.function(scene.get(), 0.1f, arguments.slots.data());
      }
    }
  } catch (const FatalError& error) {
    what = error.what();
  }
  destroyTextures();
  return what;
}

std::string pathOf(std::string texture) {
  std::replace(texture.begin(), texture.end(), '\\', '/');
  return texture + ".bmp";
}

// The textures of the table, and nothing that it does not speak of but what every show loads.
void writeNeededTextures(const ModelNeeds& needs) {
  for (int glow = 1; glow <= glowCount; ++glow)
    writeFile(pathOf(glowTexture(glow)), bmpBytes(4, 4, plain({255, 255, 255})));
  for (const char* sky : needs.sky)
    if (*sky) writeFile(pathOf(sky), bmpBytes(4, 4, plain({255, 255, 255})));
  for (const NeededTexture& needed : needs.textures) {
    const int side = needed.side > 0 ? needed.side : 4;
    for (const std::string& name : textureNames(needed))
      writeFile(pathOf(name), bmpBytes(side, side, plain({255, 255, 255})));
  }
  writeFile("data/m1.jpg", jpegBytes(8, 8, plain({1, 2, 3})));
  writeBallFile("data\\balls.hvv", {Ball{}});
}

ModelContents leastContents(const ModelNeeds& needs) {
  ModelContents contents{.viewers = needs.cameras};
  for (const auto& [name, kind] : needs.objects)
    (kind == ObjectKind::light ? contents.lights : contents.meshes).emplace_back(name);
  while (static_cast<int>(contents.meshes.size()) < needs.meshes)
    contents.meshes.push_back("mesh" + std::to_string(contents.meshes.size()));
  while (static_cast<int>(contents.lights.size()) < needs.lights)
    contents.lights.push_back("light" + std::to_string(contents.lights.size()));
  return contents;
}

// What stops the scene from being built or one of its functions from being called; empty when nothing does.
std::string obstacle(const SceneEntry& entry, const std::string& someObject) {
  const FatalErrorsThrown thrown;
  try {
    const std::unique_ptr<Scene, Deleter> scene(entry.construct());
    scene->prepare(false);
    for (Viewer* viewer : scene->viewers) viewer->alpha = 0;  // what it looks like does not matter here
    for (const FunctionRow& row : entry.functions) {
      const float zero = 0;
      std::array<const void*, maxArguments> slots{};
      for (std::size_t i = 0; i < row.parameters.size(); ++i) {
        const ArgumentKind kind = row.parameters[i].kind;
        const bool number = kind == ArgumentKind::number || kind == ArgumentKind::wholeNumber ||
                            kind == ArgumentKind::cameraNumber;
        slots[i] = number                             ? static_cast<const void*>(&zero)
                   : kind == ArgumentKind::objectName ? someObject.c_str()
                                                      : "data\\chrome";
      }
      row.function(scene.get(), 0.1f, slots.data());
    }
  } catch (const FatalError& error) {
    return error.what();
  }
  return {};
}

class ModelNeedsOfScenes : public GlTest {
 protected:
  void SetUp() override {
    GlTest::SetUp();
    setWindowSize(glTestWidth, glTestHeight);
    writeSceneModels();
    for (const char* texture : {"data/spark.bmp", "data/fetus_skin.bmp"})
      writeFile(texture, bmpBytes(128, 128, plain({255, 255, 255})));
  }
  TemporaryFolder folder;
};

}  // namespace

TEST_F(ModelNeedsOfScenes, AreWhatTheyCanNotDoWithout) {
  for (const SceneEntry& entry : sceneEntries()) {
    if (!entry.model) continue;
    const ModelContents& whole = contentsOf(entry.model + std::strlen("data\\"));
    const std::string other = whole.meshes.empty() ? whole.lights[0] : whole.meshes[0];
    EXPECT_EQ(obstacle(entry, other), "") << entry.name;
    const auto without = [&](const std::string& name) {
      ModelContents contents = whole;
      std::erase(contents.meshes, name);
      std::erase(contents.lights, name);
      writeModel(entry.model, contents);
      std::vector<std::string> textures;
      Scene scene;
      readModel({std::string(entry.model) + ".ase"}, &scene, nameTextures(textures));
      const std::vector<std::string> lacking = lackingIn(scene, entry.needs);
      const bool named = std::any_of(lacking.begin(), lacking.end(), [&](const std::string& line) {
        return lowered(line).ends_with(" " + lowered(name));
      });
      const std::string there =
          name == other ? whole.meshes.size() > 1 ? whole.meshes[1] : whole.lights.back() : other;
      const std::string why = obstacle(entry, there);
      // The one is refused for a count, not for a name, where it is the only one of its kind.
      EXPECT_EQ(!lacking.empty(), !why.empty()) << entry.name << " without " << name << ": " << why;
      EXPECT_TRUE(named || why.find("not found in") == std::string::npos) << entry.name << ": " << why;
      EXPECT_LE(lacking.size(), 2u);
    };
    for (const std::string& name : whole.meshes) without(name);
    for (const std::string& name : whole.lights)
      if (whole.lights.size() > 1) without(name);
    for (const NeededObject& object : entry.needs.objects) {
      const auto isIt = [&](const std::string& name) { return lowered(name) == lowered(object.name); };
      EXPECT_TRUE(std::any_of(whole.meshes.begin(), whole.meshes.end(), isIt) ||
                  std::any_of(whole.lights.begin(), whole.lights.end(), isIt))
          << object.name;
    }
    writeModel(entry.model, whole);
  }
}

// Whoever goes by the table alone has a scene that runs.
TEST_F(GlTest, NeedsOfScenesAreEnough) {
  setWindowSize(glTestWidth, glTestHeight);
  for (const SceneEntry& entry : sceneEntries()) {
    const TemporaryFolder folder;
    writeNeededTextures(entry.needs);
    if (entry.model) writeModel(entry.model, leastContents(entry.needs));
    EXPECT_EQ(obstacleToRun(entry), "") << entry.name;
  }
}

TEST_F(GlTest, TexturesThatScenesNeedAreMissed) {
  setWindowSize(glTestWidth, glTestHeight);
  for (const SceneEntry& entry : sceneEntries()) {
    const TemporaryFolder folder;
    writeNeededTextures(entry.needs);
    if (entry.model) {
      ModelContents contents = contentsOf(entry.model + std::strlen("data\\"));
      contents.lights.emplace_back("oneMore");
      writeModel(entry.model, contents);
    }
    std::vector<std::string> names;
    for (const char* sky : entry.needs.sky)
      if (*sky) names.emplace_back(sky);
    for (const NeededTexture& needed : entry.needs.textures) {
      const std::vector<std::string> ofRow = textureNames(needed);
      if (!needed.unless) names.insert(names.end(), ofRow.begin(), ofRow.end());
    }
    for (const std::string& name : names) {
      const std::string bytes = readFile(pathOf(name));
      std::filesystem::remove(pathOf(name));
      EXPECT_EQ(lowered(obstacleToRun(entry)), lowered("Texture " + name + ".bmp not found")) << entry.name;
      writeFile(pathOf(name), bytes);
    }
  }
}

TEST(ModelNeeds, NameWhatIsLackingAndWhy) {
  const TemporaryFolder folder;
  writeModel("data/m", {.meshes = {"Rock"}, .lights = {"Lamp"}, .viewers = 1});
  std::vector<std::string> textures;
  Scene scene;
  readModel({"data/m.ase"}, &scene, nameTextures(textures));
  constexpr std::array objects{neededMesh("rock"), neededMesh("lamp"), neededLight("rock"),
                               NeededObject{"LAMP"}, NeededObject{"tree"}};
  const ModelNeeds needs{.objects = objects, .meshes = 2, .lights = 1, .cameras = 3};
  EXPECT_THAT(lackingIn(scene, needs),
              testing::ElementsAre("mesh lamp", "light rock", "mesh or light tree", "meshes: 1, at least 2",
                                   "cameras: 1, at least 3"));
  EXPECT_EQ(textureNames({.name = "data\\fire", .frames = 3}),
            (std::vector<std::string>{"data\\fire1", "data\\fire2", "data\\fire3"}));
  EXPECT_EQ(textureNames({.name = "data\\end", .frames = 2, .digits = 2}),
            (std::vector<std::string>{"data\\end01", "data\\end02"}));
}

}  // namespace vex
