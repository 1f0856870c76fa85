#include "tests/support/scene_description.h"

#include <gtest/gtest.h>
#include <strings.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <sstream>

#include "engine/particle_system.h"
#include "engine/vol_light.h"
#include "textures/texture_cache.h"

namespace vex {

namespace {

using Fields = std::map<std::string, std::string>;

std::string numbers(std::initializer_list<float> values) {
  std::string text;
  for (const float value : values) {
    char one[32];
    const double rounded = std::round(static_cast<double>(value) * 1e5) / 1e5 + 0.0;  // no -0
    std::snprintf(one, sizeof one, "%g", rounded);
    text += (text.empty() ? "" : " ") + std::string(one);
  }
  return text;
}
std::string numbers(const Vector& v) {
  return numbers({v.x, v.y, v.z});
}
template <typename Colours>
std::string rgb(const Colours& colour) {
  return numbers({colour.r, colour.g, colour.b});
}

std::string yes(bool value) {
  return value ? "yes" : "no";
}

std::string textureText(int id) {
  if (id < 0) return "none";
  return textureEntry(id).name + std::string(textureEntry(id).wrap ? " wrapped" : "");
}

std::string trackText(const Animation* track) {
  return track ? numbers({track->duration}) + (track->loop ? " looping" : " once") : "none";
}

Fields fieldsOf(const Mesh& mesh) {
  constexpr const char* modes[]{"opaque", "additive", "subtractive", "transparent", "untouched"};
  const Matrix& m = mesh.current;
  return {{"lit", yes(mesh.lit)},
          {"shininess", numbers({mesh.shininess})},
          {"shineStrength", numbers({mesh.shineStrength})},
          {"diffuse", rgb(mesh.diffuse)},
          {"ambient", rgb(mesh.ambient)},
          {"specular", rgb(mesh.specular)},
          {"blend", modes[static_cast<int>(mesh.blendMode)]},
          {"texture", textureText(mesh.texture)},
          {"opacity", numbers({mesh.opacity})},
          {"envMap", yes(mesh.envMap)},
          {"twoSided", yes(mesh.twoSided)},
          {"hidden", yes(mesh.hidden())},
          {"plays", trackText(mesh.track(TrackType::position))},
          {"fixedTime", numbers({mesh.fixedTime})},
          {"scaled", numbers({m.m[0][0], m.m[1][1], m.m[2][2]})},
          {"fluid", std::to_string(mesh.gridX) + " " + std::to_string(mesh.gridY)}};
}

Fields fieldsOf(const Light& light) {
  std::string beam = "none";
  if (light.kind == ObjectKind::volLight) {
    const auto& volumetric = static_cast<const VolLight&>(light);
    beam = std::to_string(volumetric.depthSize()) + " " + textureText(volumetric.beams.texture);
  }
  return {{"beam", beam},
          {"coneAngle", numbers({light.coneAngle})},
          {"intensity", numbers({light.intensity})},
          {"range", numbers({light.range})},
          {"flareSize", numbers({light.flareSize})},
          {"flareStrength", numbers({light.flareStrength})},
          {"flareTexture", light.flareTexture},
          {"colour", rgb(light.colour)},
          {"active", yes(light.active)},
          {"glow", yes(light.glow)},
          {"plays", trackText(light.track(TrackType::position))},
          {"targetPlays", trackText(light.target.get())}};
}

Fields fieldsOf(const Viewer& viewer) {
  return {{"position", numbers(viewer.position)},
          {"fov", numbers({viewer.fov})},
          {"farPlane", numbers({viewer.farPlane})},
          {"path", trackText(viewer.positionTrack.get())},
          {"targetPath", trackText(viewer.targetTrack.get())}};
}

Fields fieldsOf(const ParticleSystem& system) {
  std::string shapes;
  for (int i = 0; i < system.shapeCount; ++i)
    shapes += (i > 0 ? " " : "") + std::string(system.shapes[static_cast<std::size_t>(i)]->name);
  return {{"shapes", shapes},
          {"rate", numbers({system.rate})},
          {"maxCount", std::to_string(system.maxCount)},
          {"life", numbers({system.life})},
          {"lifeVariation", numbers({system.lifeVariation})},
          {"velocity", numbers(system.velocity)},
          {"velocitySpread", numbers({system.velocitySpread})},
          {"positionSpread", numbers({system.positionSpread})},
          {"gravity", numbers(system.gravity)},
          {"offset", numbers(system.offset)},
          {"maxAlpha", numbers({system.maxAlpha})},
          {"fadeIn", numbers({system.fadeIn})},
          {"spin", numbers({system.spinMin, system.spinMax})},
          {"parent", system.parent ? system.parent->name : "none"}};
}

Fields fieldsOf(const Scene& scene) {
  std::string functions, box;
  for (int i = 0; i < scene.functionCount; ++i)
    functions += (i > 0 ? " " : "") + std::string(scene.functionNames[i]);
  for (const int face : scene.boxTextures) box += (box.empty() ? "" : " ") + textureText(face);
  return {{"name", scene.name}, {"functions", functions}, {"box", box}};
}

std::string trimmed(const std::string& text) {
  const std::size_t first = text.find_first_not_of(" \n"), last = text.find_last_not_of(" \n");
  return first == std::string::npos ? "" : text.substr(first, last - first + 1);
}

std::vector<std::string> split(const std::string& text, char at) {
  std::vector<std::string> pieces;
  std::istringstream in(text);
  for (std::string piece; std::getline(in, piece, at);)
    if (!trimmed(piece).empty()) pieces.push_back(trimmed(piece));
  return pieces;
}

bool meets(const ObjectState& object, const std::string& selector) {
  if (selector.find_first_not_of("0123456789") == std::string::npos)
    return object.index == std::stoi(selector);
  if (selector.ends_with('*'))
    return strncasecmp(object.name.c_str(), selector.c_str(), selector.size() - 1) == 0;
  return strcasecmp(object.name.c_str(), selector.c_str()) == 0;
}

// "0.1" is 0.1; "+0.1" adds to the number that stands in its place.
std::string valueAfter(const std::string& before, const std::string& setting) {
  if (setting[0] != '+') return setting;
  const std::vector<std::string> was = split(before, ' '), by = split(setting, ' ');
  std::string text;
  for (std::size_t i = 0; i < by.size(); ++i)
    text += (i > 0 ? " " : "") + numbers({std::stof(was.at(i)) + std::stof(by[i])});
  return text;
}

void set(ObjectState& object, const std::string& settings) {
  for (const std::string& setting : split(settings, ';')) {
    const std::string field = setting.substr(0, setting.find(' '));
    const auto found = object.fields.find(field);
    if (found == object.fields.end()) {
      ADD_FAILURE() << object.kind << " " << object.name << " has no field " << field;
      continue;
    }
    found->second = valueAfter(found->second, trimmed(setting.substr(field.size())));
  }
}

void applyLine(SceneState& state, const std::string& line) {
  const std::size_t colon = line.find(':');
  std::vector<std::string> words = split(line.substr(0, colon), ' ');
  std::string kind = words[0];
  words.erase(words.begin());
  if (kind == "meshes") kind = "mesh";
  if (words.empty() && kind.ends_with('s')) kind.pop_back();
  for (const std::string& index : words) {
    const auto same = [&](const ObjectState& object) { return object.kind == kind && meets(object, index); };
    if (kind == "system" && std::none_of(state.begin(), state.end(), same))
      state.push_back({kind, std::stoi(index), "", fieldsOf(ParticleSystem())});
  }
  if (words.empty()) {
    for (ObjectState& object : state)
      if (object.kind == kind) set(object, line.substr(colon + 1));
  }
  for (const std::string& selector : words) {
    bool met = false;
    for (ObjectState& object : state) {
      if (object.kind != kind || !meets(object, selector)) continue;
      met = true;
      set(object, line.substr(colon + 1));
    }
    EXPECT_TRUE(met) << kind << " " << selector;
  }
}

}  // namespace

SceneState stateOf(const Scene& scene) {
  SceneState state{{"scene", 0, "", fieldsOf(scene)}};
  int index = 0;
  for (const Mesh* mesh : scene.meshes) state.push_back({"mesh", index++, mesh->name, fieldsOf(*mesh)});
  index = 0;
  for (const Light* light : scene.lights) state.push_back({"light", index++, light->name, fieldsOf(*light)});
  index = 0;
  for (const Viewer* viewer : scene.viewers) state.push_back({"viewer", index++, "", fieldsOf(*viewer)});
  for (index = 0; scene.particleSystems && scene.particleSystems[index]; ++index)
    state.push_back({"system", index, "", fieldsOf(*scene.particleSystems[index])});
  return state;
}

void scramble(Scene& scene) {
  const int other = getTexture("other", true);
  for (Mesh* mesh : scene.meshes) {
    mesh->lit = mesh->envMap = true;
    mesh->shininess = 0.7f;
    mesh->shineStrength = 0.3f;
    mesh->diffuse = {0.9f, 0.8f, 0.7f, 1};
    mesh->ambient = {0.25f, 0.35f, 0.45f, 1};
    mesh->specular = {0.6f, 0.5f, 0.3f, 1};
    mesh->blendMode = BlendMode::untouched;
    mesh->texture = other;
    mesh->opacity = 0.75f;
  }
  int index = 0;
  for (Light* light : scene.lights) {
    light->intensity = 3;
    light->flareStrength = 7;
    light->flareSize = 9;
    std::snprintf(light->flareTexture, sizeof light->flareTexture, "other");
    light->colour = {0.9f, 0.8f, 0.7f};
    light->spotDirection.set(30, -40, 0);
    light->coneAngle = 33;
    light->glow = index % 3 == 0;
    light->active = index++ != 2;
  }
  for (Viewer* viewer : scene.viewers) viewer->position.set(1, 2, 3);
}

SceneState described(SceneState before, const std::string& description) {
  std::vector<std::string> lines;
  std::istringstream in(description);
  for (std::string line; std::getline(in, line);) {
    if (line.empty()) continue;
    if (line[0] == ' ' && !lines.empty())
      lines.back() += line;
    else
      lines.push_back(line);
  }
  for (const std::string& line : lines) applyLine(before, line);
  return before;
}

std::string textOf(const SceneState& state) {
  std::string text;
  for (const ObjectState& object : state)
    for (const auto& [field, value] : object.fields)
      text += object.kind + " " + std::to_string(object.index) + " " + object.name + ": " + field + " " +
              value + "\n";
  return text;
}

}  // namespace vex
