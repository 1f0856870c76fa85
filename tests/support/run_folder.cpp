#include "tests/support/run_folder.h"

#include "scenes/word_endings.h"
#include "tests/support/image_files.h"
#include "tests/support/scene_models.h"
#include "tests/support/temporary_folder.h"

namespace vex {

namespace {

void writeTexture(std::string name) {
  name.replace(name.find('\\'), 1, "/");
  writeFile(name + ".bmp", bmpBytes(4, 4, plain({255, 255, 255})));
}

}  // namespace

void writeRunFolder(const ProjectData& project) {
  for (int i = 1; i <= titleFrames; ++i) writeTexture(logoFrameName(titleTextureStem, i));
  for (const WordEnding& ending : wordEndings) {
    for (int i = 1; i <= wordEndingFrames; ++i) writeTexture(logoFrameName(ending.textureStem, i));
  }
  for (int i = 1; i <= 7; ++i) writeTexture("data\\light" + std::to_string(i));
  writeSceneModels();
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
