#include <strings.h>

#include <algorithm>
#include <string>

#include "base/report.h"
#include "models/model_handlers.h"
#include "models/model_loader.h"
#include "models/model_reader.h"
#include "models/model_state.h"
#include "models/model_stream.h"
#include "models/model_trace.h"

// Handlers of the scene header and of the material list.

namespace vex {

void handleScene() {
  trace("scene chunk\n");
  writeLine(Command::scene);
  modelState.context = ModelContext::sceneHeader;
  processBlock();
  modelState.context = ModelContext::none;
  trace("scene end\n");
}

void handleSceneFrameSpeed() {
  const int frames = scanInt();
  if (frames <= 0) fatalError("%d frames per second aren't possible", frames);
  trace("frames per second %d\n", frames);
  writeLine(Command::sceneFrameSpeed, frames);
  modelState.framesPerSecond = frames;
}

void handleSceneFirstFrame() {
  if (scanInt() != 0) fatalError("Animations must start at frame 0!");
}

void handleSceneLastFrame() {
  const int frame = scanInt();
  trace("last frame %d\n", frame);
  writeLine(Command::sceneLastFrame, frame);
  modelState.scratchTrack.frameLength = static_cast<float>(frame);
}

void handleSceneTicksPerFrame() {
  const int ticks = scanInt();
  if (ticks <= 0) fatalError("%d ticks per frame aren't possible", ticks);
  trace("ticks per frame %d\n", ticks);
  writeLine(Command::sceneTicksPerFrame, ticks);
  modelState.ticksPerFrame = ticks;
}

void handleComment() {
  const char* comment = scanQuoted();
  trace("comment %s\n", comment);
  // A stamp is compared as far as it goes.
  writeLine(Command::comment, std::string(comment).substr(0, maxStreamText - 1).c_str());
}

void handleMaterialList() {
  trace("material list\n");
  writeLine(Command::materialList);
  modelState.context = ModelContext::materialList;
  processBlock();
  modelState.context = ModelContext::none;
  trace("material list end\n");
}

void handleMaterial() {
  trace("material %d\n", readingText() ? scanInt() : modelState.materialIndex + 1);
  if (modelState.materialIndex + 1 == maxMaterials) fatalError("more than %d materials", maxMaterials);
  writeLine(Command::material);
  ModelMaterial& material = modelState.materials[static_cast<std::size_t>(++modelState.materialIndex)];
  material.texture = -1;
  material.twoSided = false;
  processBlock();
  trace("material end\n");
}

namespace {

void scanColour(float (&colour)[3], Command code) {
  std::copy_n(scanThree(), 3, colour);
  writeLine(code, colour[0], colour[1], colour[2]);
}

// Lines outside materials have nothing to change.
ModelMaterial& materialOrSpare() {
  static ModelMaterial spare;
  ModelMaterial* material = currentMaterial();
  if (!material) spare = {};
  return material ? *material : spare;
}

}  // namespace

void handleMaterialDiffuse() {
  ModelMaterial& material = materialOrSpare();
  float(&colour)[3] = material.diffuse;
  scanColour(colour, Command::materialDiffuse);
  trace("diffuse color %.2f %.2f %.2f\n", colour[0], colour[1], colour[2]);
  if (material.texture != -1) colour[0] = colour[1] = colour[2] = 1.0f;
}

void handleMaterialAmbient() {
  float(&colour)[3] = materialOrSpare().ambient;
  scanColour(colour, Command::materialAmbient);
  trace("ambient color %.2f %.2f %.2f\n", colour[0], colour[1], colour[2]);
}

void handleMaterialSpecular() {
  float(&colour)[3] = materialOrSpare().specular;
  scanColour(colour, Command::materialSpecular);
  trace("specular color %.2f %.2f %.2f\n", colour[0], colour[1], colour[2]);
}

void handleMaterialShine() {
  const float shininess = readingText() ? scanFloat() * 128.0f : scanFloat();
  trace("shininess %.2f\n", shininess);
  writeLine(Command::materialShine, shininess);
  materialOrSpare().shininess = shininess;
}

void handleMaterialShineStrength() {
  const float strength = scanFloat();
  writeLine(Command::materialShineStrength, strength);
  materialOrSpare().shineStrength = strength;
}

void handleMaterialTransparency() {
  const float opacity = readingText() ? 1.0f - scanFloat() : scanFloat();
  trace("opacity %.2f\n", opacity);
  writeLine(Command::materialTransparency, opacity);
  materialOrSpare().opacity = opacity;
}

void handleMaterialTwoSided() {
  trace("two sided\n");
  writeLine(Command::materialTwoSided);
  materialOrSpare().twoSided = true;
}

void handleMapDiffuse() {
  trace("material map\n");
  writeLine(Command::mapDiffuse);
  processBlock();
  trace("material map end\n");
}

void handleBitmap() {
  const std::string path = scanQuoted();
  trace("material texture %s ", path.c_str());
  std::string name = "data\\" + path.substr(path.rfind('\\') + 1);  // all of it without a backslash
  if (readingText()) name.resize(std::min(name.find('.'), name.size()));
  trace("changed to %s\n", name.c_str());
  writeLine(Command::bitmap, name.c_str());
  if (ModelMaterial* material = currentMaterial()) material->texture = modelTexture(name.c_str(), true);
}

void handleMapType() {
  const bool spherical = readingText() ? strcasecmp(scanWord(), "spherical") == 0 : scanInt() == 1;
  trace("map type ");
  trace(spherical ? "spherical environment\n" : "determined\n");
  writeLine(Command::mapType, spherical ? 1 : 0);
  materialOrSpare().sphereMap = spherical;
}

void handleMaterialRef() {
  const int index = scanInt();
  trace("material ref %d\n", index);
  writeLine(Command::materialRef, index);
  if (index < 0 || index >= maxMaterials) {
    fatalError("material %d isn't one of 0 to %d", index, maxMaterials - 1);
  }
  Mesh* mesh = currentMesh();
  if (!mesh) return;
  const ModelMaterial material = index < modelState.materialCount
                                     ? modelState.materials[static_cast<std::size_t>(index)]
                                     : ModelMaterial{};
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
