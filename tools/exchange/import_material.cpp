#include <assimp/GltfMaterial.h>
#include <assimp/material.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <filesystem>

#include "base/report.h"
#include "tools/exchange/extras.h"
#include "tools/exchange/import_parts.h"
#include "tools/exchange/material_formula.h"

namespace vex {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t mostMaterials = 100;
constexpr std::size_t longestTexture = 26;  // "data\" and it make 31
constexpr const char* chromeTexture = "chrome";

bool sameColour(const Colour& a, const Colour& b, float within = 0) {
  return std::fabs(a.r - b.r) <= within && std::fabs(a.g - b.g) <= within && std::fabs(a.b - b.b) <= within;
}

bool sameLook(const TextMaterial& a, const TextMaterial& b) {
  return a.texture == b.texture && a.environment == b.environment && a.twoSided == b.twoSided &&
         sameColour(a.diffuse, b.diffuse) && sameColour(a.ambient, b.ambient) &&
         sameColour(a.specular, b.specular) && a.shine == b.shine && a.shineStrength == b.shineStrength &&
         a.opacity == b.opacity;
}

bool agree(const SurfaceOfToday& a, const SurfaceOfToday& b) {
  constexpr float within = 1e-4f;
  return sameColour(a.base, b.base, within) && sameColour(a.emission, b.emission, within) &&
         std::fabs(a.opacity - b.opacity) <= within && std::fabs(a.metal - b.metal) <= within &&
         std::fabs(a.rough - b.rough) <= within && a.twoSided == b.twoSided && a.unlit == b.unlit;
}

Colour colourOf(const aiColor4D& c) {
  return {c.r, c.g, c.b};
}

float clampedNumber(float value, float otherwise) {
  return std::isfinite(value) ? std::clamp(value, 0.0f, 1.0f) : otherwise;
}

SurfaceOfToday readSurface(const aiMaterial& source) {
  SurfaceOfToday surface;
  aiColor4D base(1, 1, 1, 1), emission(0, 0, 0, 1);
  if (source.Get(AI_MATKEY_BASE_COLOR, base) != AI_SUCCESS) source.Get(AI_MATKEY_COLOR_DIFFUSE, base);
  source.Get(AI_MATKEY_COLOR_EMISSIVE, emission);
  surface.base = colourOf(base);
  surface.emission = colourOf(emission);
  surface.opacity = base.a;
  source.Get(AI_MATKEY_METALLIC_FACTOR, surface.metal);
  source.Get(AI_MATKEY_ROUGHNESS_FACTOR, surface.rough);
  int flag = 0;
  surface.twoSided = source.Get(AI_MATKEY_TWOSIDED, flag) == AI_SUCCESS && flag != 0;
  flag = aiShadingMode_PBR_BRDF;
  source.Get(AI_MATKEY_SHADING_MODEL, flag);
  surface.unlit = flag == aiShadingMode_Unlit;
  for (float* value : {&surface.base.r, &surface.base.g, &surface.base.b, &surface.opacity, &surface.rough})
    *value = clampedNumber(*value, 1);
  for (float* value : {&surface.emission.r, &surface.emission.g, &surface.emission.b, &surface.metal})
    *value = clampedNumber(*value, 0);
  return surface;
}

// Of files whose materials are as old as the player's: colours as displayed, an exponent of the highlight.
TextMaterial readOldMaterial(const aiMaterial& source) {
  TextMaterial material;
  aiColor4D diffuse(1, 1, 1, 1), specular(0, 0, 0, 1), emission(0, 0, 0, 1);
  source.Get(AI_MATKEY_COLOR_DIFFUSE, diffuse);
  source.Get(AI_MATKEY_COLOR_SPECULAR, specular);
  source.Get(AI_MATKEY_COLOR_EMISSIVE, emission);
  material.diffuse = colourOf(diffuse);
  material.specular = colourOf(specular);
  material.ambient = colourOf(emission);
  float exponent = 0, strength = 1;
  source.Get(AI_MATKEY_SHININESS, exponent);
  source.Get(AI_MATKEY_SHININESS_STRENGTH, strength);
  source.Get(AI_MATKEY_OPACITY, material.opacity);
  int twoSided = 0;
  material.twoSided = source.Get(AI_MATKEY_TWOSIDED, twoSided) == AI_SUCCESS && twoSided != 0;
  const bool highlight = exponent > 0 && specular.r + specular.g + specular.b > 0;
  material.shine = highlight ? exponent / 128 : 0;
  material.shineStrength = highlight ? strength : 0;
  for (Colour* c : {&material.diffuse, &material.specular, &material.ambient})
    for (float* value : {&c->r, &c->g, &c->b}) *value = clampedNumber(*value, 0);
  for (float* value : {&material.shine, &material.shineStrength}) *value = clampedNumber(*value, 0);
  material.opacity = clampedNumber(material.opacity, 1);
  return material;
}

constexpr aiTextureType colourMaps[]{aiTextureType_BASE_COLOR, aiTextureType_DIFFUSE};

// Maps that the player has nothing for.
constexpr struct {
  aiTextureType type;
  const char* name;
} otherMaps[]{{aiTextureType_NORMALS, "normal"},
              {aiTextureType_HEIGHT, "height"},
              {aiTextureType_NORMAL_CAMERA, "normal"},
              {aiTextureType_SPECULAR, "specular"},
              {aiTextureType_EMISSIVE, "emission"},
              {aiTextureType_EMISSION_COLOR, "emission"},
              {aiTextureType_METALNESS, "metalness"},
              {aiTextureType_DIFFUSE_ROUGHNESS, "roughness"},
              {aiTextureType_UNKNOWN, "metal and roughness"},
              {aiTextureType_LIGHTMAP, "occlusion"},
              {aiTextureType_OPACITY, "opacity"},
              {aiTextureType_REFLECTION, "reflection"},
              {aiTextureType_DISPLACEMENT, "displacement"}};

aiTextureType colourMapOf(const aiMaterial& source) {
  for (const aiTextureType type : colourMaps)
    if (source.GetTextureCount(type) > 0) return type;
  return aiTextureType_NONE;
}

std::string textureName(const std::string& picture) {
  std::string slashed = picture;
  std::replace(slashed.begin(), slashed.end(), '\\', '/');
  std::string name;
  for (const char c : fs::path(slashed).stem().string()) {
    const auto byte = static_cast<unsigned char>(c);
    name += std::isalnum(byte) && byte < 0x80 ? static_cast<char>(std::tolower(byte)) : '_';
  }
  if (name.empty()) name = "picture";
  name.resize(std::min(name.size(), longestTexture));
  return name;
}

}  // namespace

unsigned Materials::coordinatesOf(unsigned material) const {
  const aiScene& scene = *work.source.scene;
  int set = 0;
  if (material < scene.mNumMaterials) {
    const aiMaterial& source = *scene.mMaterials[material];
    if (const aiTextureType type = colourMapOf(source); type != aiTextureType_NONE)
      source.Get(AI_MATKEY_UVWSRC(type, 0), set);
  }
  return set < 0 ? 0u : static_cast<unsigned>(set);
}

std::string Materials::textureOf(const aiMaterial& source, const std::string& name, AlphaUse alpha,
                                 float cutoff) {
  const aiTextureType type = colourMapOf(source);
  aiString path;
  if (type == aiTextureType_NONE || source.GetTexture(type, 0, &path) != AI_SUCCESS) return {};
  TexturePlan plan{.name = {}, .embedded = {}, .file = {}, .alpha = alpha, .cutoff = cutoff};
  std::string picture = path.C_Str();
  const auto leave = [&](const std::string& why) {
    const std::string line = "texture " + picture + " of material " + name + ": " + why;
    if (std::find(told.begin(), told.end(), line) == told.end()) {
      told.push_back(line);
      work.report.left(line);
    }
    return std::string();
  };
  plan.embedded = work.source.scene->GetEmbeddedTexture(path.C_Str());
  if (plan.embedded) {
    picture = plan.embedded->mFilename.length > 0 ? plan.embedded->mFilename.C_Str()
                                                  : name + (picture[0] == '*' ? "" : "_" + picture);
  } else {
    plan.file = pathWithin(work.source.folder, picture);
    if (plan.file.empty()) return leave("lies outside the file's folder, not read");
  }
  if (const std::string why = whyUnreadable(plan); !why.empty()) return leave(why);
  aiUVTransform transform;
  if (source.Get(AI_MATKEY_UVTRANSFORM(type, 0), transform) == AI_SUCCESS &&
      (transform.mTranslation != aiVector2D(0, 0) || transform.mScaling != aiVector2D(1, 1) ||
       transform.mRotation != 0))
    leave("its shift, scale or turn; apply it to the mesh's coordinates");

  auto& textures = work.result.textures;
  const auto same = std::find_if(textures.begin(), textures.end(), [&](const TexturePlan& other) {
    return other.embedded == plan.embedded && other.file == plan.file && other.alpha == plan.alpha &&
           (plan.alpha != AlphaUse::cut || other.cutoff == plan.cutoff);
  });
  if (same != textures.end()) return same->name;
  const std::string stem = textureName(picture);
  plan.name = stem;
  for (int number = 2; std::any_of(textures.begin(), textures.end(),
                                   [&](const TexturePlan& other) { return other.name == plan.name; });
       ++number) {
    const std::string ending = "_" + std::to_string(number);
    plan.name = stem.substr(0, longestTexture - ending.size()) + ending;
  }
  textures.push_back(plan);
  return plan.name;
}

TextMaterial Materials::convert(const aiMaterial& source, const std::string& name, bool mapped,
                                const std::string& extra) {
  float metal = 0;
  const bool today =
      work.source.kind == SourceKind::gltf || source.Get(AI_MATKEY_METALLIC_FACTOR, metal) == AI_SUCCESS;
  SurfaceOfToday surface = readSurface(source);
  TextMaterial material = today ? playersMaterial(surface) : readOldMaterial(source);
  // Lamps would shine on what shines by itself; without lamps the diffuse colour is all that shows.
  if (today && surface.unlit && work.source.scene->mNumLights > 0) material.diffuse = {0, 0, 0};
  AlphaUse alpha = AlphaUse::blend;
  float cutoff = 0.5f;
  aiString mode;
  if (source.Get(AI_MATKEY_GLTF_ALPHAMODE, mode) == AI_SUCCESS) {
    const std::string word = mode.C_Str();
    source.Get(AI_MATKEY_GLTF_ALPHACUTOFF, cutoff);
    alpha = word == "BLEND" ? AlphaUse::blend : word == "MASK" ? AlphaUse::cut : AlphaUse::none;
    if (alpha != AlphaUse::blend) material.opacity = 1;
    if (alpha == AlphaUse::none) surface.opacity = 1;
  }
  material.texture = mapped ? textureOf(source, name, alpha, cutoff) : "";
  if (!mapped && colourMapOf(source) != aiTextureType_NONE && extra.empty())
    work.report.left("texture of material " + name + ": on a mesh without texture coordinates");
  if (work.options.chrome && today && isChrome(surface)) {
    material.environment = true;
    material.texture = chromeTexture;
  }
  const auto kept = readMaterial(extra);
  if (kept && agree(surfaceOf(*kept), surface)) {
    const std::string texture = kept->texture;
    const bool environment = kept->environment;
    const std::string found = material.texture;
    material = *kept;
    // Another picture than the one that was written is the maker's.
    material.texture = found.empty() || environment ? texture : found;
  }
  for (const auto& [type, map] : otherMaps) {
    const std::string line = "material " + name + ": its " + map + " map";
    if (source.GetTextureCount(type) == 0 || std::find(told.begin(), told.end(), line) != told.end())
      continue;
    told.push_back(line);
    work.report.left(line);
  }
  return material;
}

int Materials::indexOf(unsigned index, bool mapped, const std::string& extra) {
  const aiScene& scene = *work.source.scene;
  const aiMaterial none;
  const aiMaterial& source = index < scene.mNumMaterials ? *scene.mMaterials[index] : none;
  const std::string name =
      source.GetName().length > 0 ? source.GetName().C_Str() : "number " + std::to_string(index);
  TextMaterial material = convert(source, name, mapped, extra);
  auto& materials = work.result.model.materials;
  const auto same = std::find_if(materials.begin(), materials.end(),
                                 [&](const TextMaterial& other) { return sameLook(material, other); });
  if (same != materials.end()) return static_cast<int>(same - materials.begin());
  if (materials.size() == mostMaterials) {
    const std::string line =
        "material " + name + ": the player takes 100; it looks like " + materials[0].name;
    if (std::find(told.begin(), told.end(), line) == told.end()) work.report.left(line);
    told.push_back(line);
    return 0;
  }
  for (const char c : name) material.name += c >= ' ' && c <= '~' && c != '"' ? c : '_';
  material.name.resize(std::min<std::size_t>(material.name.size(), 100));
  materials.push_back(std::move(material));
  return static_cast<int>(materials.size()) - 1;
}

}  // namespace vex
