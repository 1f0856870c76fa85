#include "tests/support/run_folder.h"

#include "scenes/word_endings.h"
#include "tests/support/ase_text.h"
#include "tests/support/image_files.h"
#include "tests/support/temporary_folder.h"

namespace vex {

namespace {

void writeTexture(std::string name) {
  name.replace(name.find('\\'), 1, "/");
  writeFile(name + ".bmp", bmpBytes(4, 4, plain({255, 255, 255})));
}

// The least that a scene needs of its model: objects of these names, each a triangle or a dark light.
struct StandInModel {
  const char* name;
  std::vector<const char*> meshes;
  std::vector<const char*> lights;
  std::vector<const char*> textures;  // that the scene itself asks for
};

const std::vector<StandInModel>& standInModels() {
  static const std::vector<StandInModel> models{
      {"monster",
       {"sphere01", "sphere02"},
       {"omni01"},
       {"data\\chrome", "data\\monstertop", "data\\monsterbot", "data\\monsternor", "data\\monsterwes",
        "data\\monstersou", "data\\monstereas"}},
  };
  return models;
}

void writeModel(const StandInModel& model) {
  AseText text;
  text.head(model.name).scene();
  for (const char* mesh : model.meshes) text.object("*GEOMOBJECT", mesh).node("0 0 0").triangle().close();
  for (const char* light : model.lights)
    text.object("*LIGHTOBJECT", light).line("*LIGHT_TYPE Omni").node("0 0 0").close();
  text.object("*CAMERAOBJECT", "camera01").node("0 -10 0");
  text.open("*NODE_TM").name("camera01.Target").line("*TM_POS 0 0 0").close();
  text.close();
  writeFile(std::string("data/") + model.name + ".ase", text.str());
  for (const char* texture : model.textures) writeTexture(texture);
}

}  // namespace

void writeRunFolder(const ProjectData& project) {
  for (int i = 1; i <= titleFrames; ++i) writeTexture(logoFrameName(titleTextureStem, i));
  for (const WordEnding& ending : wordEndings) {
    for (int i = 1; i <= wordEndingFrames; ++i) writeTexture(logoFrameName(ending.textureStem, i));
  }
  for (int i = 1; i <= 7; ++i) writeTexture("data\\light" + std::to_string(i));
  for (const StandInModel& model : standInModels()) writeModel(model);
  writeFile("data/font.raw", std::string(24576, '\xff'));
  writeFile("test.hvp", buildProject(project).bytes);
}

ParameterData constant(const std::string& name, double value) {
  return {.name = name, .constant = value};
}

ParameterData text(const std::string& name, const std::string& value) {
  return {.name = name, .type = 4, .string = value};
}

PartData fillPart(const std::string& name, double pos, double length, double red, double green, double blue) {
  return {.name = name,
          .pos = pos,
          .length = length,
          .calls = {{.scene = "SceneHelper",
                     .function = "fadeScreen",
                     .parameters = {constant("r", red), constant("g", green), constant("b", blue),
                                    constant("alpha", 1)}}}};
}

}  // namespace vex
