#include <strings.h>

#include <algorithm>
#include <string>

#include "base/report.h"
#include "models/model_handlers.h"
#include "models/model_load.h"

// Handlers of the scene header and of the material list.

namespace vex {

void handleScene(ModelLoad& load) {
  trace(load, "scene chunk\n");
  writeLine(load, Command::scene);
  load.context = ModelContext::sceneHeader;
  processBlock(load);
  load.context = ModelContext::none;
  trace(load, "scene end\n");
}

void handleSceneFrameSpeed(ModelLoad& load) {
  const int frames = scanInt(load);
  if (frames <= 0) fatalError("%d frames per second aren't possible", frames);
  trace(load, "frames per second %d\n", frames);
  writeLine(load, Command::sceneFrameSpeed, frames);
  load.framesPerSecond = frames;
}

void handleSceneFirstFrame(ModelLoad& load) {
  if (scanInt(load) != 0) fatalError("Animations must start at frame 0!");
}

void handleSceneLastFrame(ModelLoad& load) {
  const int frame = scanInt(load);
  trace(load, "last frame %d\n", frame);
  writeLine(load, Command::sceneLastFrame, frame);
  load.scratchTrack.frameLength = static_cast<float>(frame);
}

void handleSceneTicksPerFrame(ModelLoad& load) {
  const int ticks = scanInt(load);
  if (ticks <= 0) fatalError("%d ticks per frame aren't possible", ticks);
  trace(load, "ticks per frame %d\n", ticks);
  writeLine(load, Command::sceneTicksPerFrame, ticks);
  load.ticksPerFrame = ticks;
}

void handleComment(ModelLoad& load) {
  const char* comment = scanQuoted(load);
  trace(load, "comment %s\n", comment);
  // A stamp is compared as far as it goes.
  writeLine(load, Command::comment, std::string(comment).substr(0, maxStreamText - 1).c_str());
}

void handleMaterialList(ModelLoad& load) {
  trace(load, "material list\n");
  writeLine(load, Command::materialList);
  load.context = ModelContext::materialList;
  processBlock(load);
  load.context = ModelContext::none;
  trace(load, "material list end\n");
}

void handleMaterial(ModelLoad& load) {
  trace(load, "material %d\n", readingText(load) ? scanInt(load) : load.materialIndex + 1);
  if (load.materialIndex + 1 == maxMaterials) fatalError("more than %d materials", maxMaterials);
  writeLine(load, Command::material);
  ModelMaterial& material = load.materials[static_cast<std::size_t>(++load.materialIndex)];
  material.texture = -1;
  material.twoSided = false;
  processBlock(load);
  trace(load, "material end\n");
}

namespace {

void scanColour(ModelLoad& load, float (&colour)[3], Command code) {
  std::copy_n(scanThree(load), 3, colour);
  writeLine(load, code, colour[0], colour[1], colour[2]);
}

ModelMaterial& materialOrSpare(ModelLoad& load) {
  ModelMaterial* material = currentMaterial(load);
  if (!material) load.spareMaterial = {};
  return material ? *material : load.spareMaterial;
}

}  // namespace

void handleMaterialDiffuse(ModelLoad& load) {
  ModelMaterial& material = materialOrSpare(load);
  float(&colour)[3] = material.diffuse;
  scanColour(load, colour, Command::materialDiffuse);
  trace(load, "diffuse color %.2f %.2f %.2f\n", colour[0], colour[1], colour[2]);
  if (material.texture != -1) colour[0] = colour[1] = colour[2] = 1.0f;
}

void handleMaterialAmbient(ModelLoad& load) {
  float(&colour)[3] = materialOrSpare(load).ambient;
  scanColour(load, colour, Command::materialAmbient);
  trace(load, "ambient color %.2f %.2f %.2f\n", colour[0], colour[1], colour[2]);
}

void handleMaterialSpecular(ModelLoad& load) {
  float(&colour)[3] = materialOrSpare(load).specular;
  scanColour(load, colour, Command::materialSpecular);
  trace(load, "specular color %.2f %.2f %.2f\n", colour[0], colour[1], colour[2]);
}

void handleMaterialShine(ModelLoad& load) {
  const float shininess = readingText(load) ? scanFloat(load) * 128.0f : scanFloat(load);
  trace(load, "shininess %.2f\n", shininess);
  writeLine(load, Command::materialShine, shininess);
  materialOrSpare(load).shininess = shininess;
}

void handleMaterialShineStrength(ModelLoad& load) {
  const float strength = scanFloat(load);
  writeLine(load, Command::materialShineStrength, strength);
  materialOrSpare(load).shineStrength = strength;
}

void handleMaterialTransparency(ModelLoad& load) {
  const float opacity = readingText(load) ? 1.0f - scanFloat(load) : scanFloat(load);
  trace(load, "opacity %.2f\n", opacity);
  writeLine(load, Command::materialTransparency, opacity);
  materialOrSpare(load).opacity = opacity;
}

void handleMaterialTwoSided(ModelLoad& load) {
  trace(load, "two sided\n");
  writeLine(load, Command::materialTwoSided);
  materialOrSpare(load).twoSided = true;
}

void handleMapDiffuse(ModelLoad& load) {
  trace(load, "material map\n");
  writeLine(load, Command::mapDiffuse);
  processBlock(load);
  trace(load, "material map end\n");
}

void handleBitmap(ModelLoad& load) {
  const std::string path = scanQuoted(load);
  trace(load, "material texture %s ", path.c_str());
  std::string name = "data\\" + path.substr(path.rfind('\\') + 1);  // all of it without a backslash
  if (readingText(load)) name.resize(std::min(name.find('.'), name.size()));
  trace(load, "changed to %s\n", name.c_str());
  writeLine(load, Command::bitmap, name.c_str());
  if (ModelMaterial* material = currentMaterial(load)) material->texture = load.texture(name.c_str(), true);
}

void handleMapType(ModelLoad& load) {
  const bool spherical =
      readingText(load) ? strcasecmp(scanWord(load), "spherical") == 0 : scanInt(load) == 1;
  trace(load, "map type ");
  trace(load, spherical ? "spherical environment\n" : "determined\n");
  writeLine(load, Command::mapType, spherical ? 1 : 0);
  materialOrSpare(load).sphereMap = spherical;
}

void handleMaterialRef(ModelLoad& load) {
  const int index = scanInt(load);
  trace(load, "material ref %d\n", index);
  writeLine(load, Command::materialRef, index);
  if (index < 0 || index >= maxMaterials) {
    fatalError("material %d isn't one of 0 to %d", index, maxMaterials - 1);
  }
  Mesh* mesh = currentMesh(load);
  if (!mesh) return;
  const ModelMaterial material =
      index < load.materialCount ? load.materials[static_cast<std::size_t>(index)] : ModelMaterial{};
  const auto opaque = [](const float(&colour)[3]) {
    return ColourAlpha{colour[0], colour[1], colour[2], 1.0f};
  };
  mesh->diffuse = opaque(material.diffuse);
  mesh->ambient = opaque(material.ambient);
  mesh->specular = opaque(material.specular);
  mesh->texture = material.texture;
  mesh->opacity = material.opacity;
  mesh->shineStrength = material.shineStrength;
  mesh->shininess = material.shininess / 128.0f;
  mesh->envMap = material.sphereMap;
  mesh->twoSided = material.twoSided;
}

}  // namespace vex
