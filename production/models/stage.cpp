#include "production/models/stage.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <set>

#include "base/report.h"

namespace vex {

using namespace image;
using namespace geometry;

namespace {

constexpr std::size_t longestName = 31;
constexpr std::size_t mostLights = 8;
constexpr std::size_t mostMaterials = 100;

std::size_t at(int index) {
  return static_cast<std::size_t>(index);
}

[[noreturn, gnu::format(printf, 3, 4)]] void refuse(const Stage& stage, const std::string& object,
                                                    const char* format, ...) {
  char text[256];
  std::va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(text, sizeof text, format, arguments);
  va_end(arguments);
  fatalError("model %s, %s: %s", stage.name.c_str(), object.c_str(), text);
}

std::string lowered(std::string text) {
  for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return text;
}

// --- Checks

void checkNames(const Stage& stage) {
  std::set<std::string> seen;
  const auto check = [&](const std::string& name) {
    if (name.empty()) refuse(stage, "an object", "has no name");
    if (name.size() > longestName) refuse(stage, name, "name longer than %zu characters", longestName);
    for (const char c : name)
      if (c <= ' ' || c > '~' || c == '"' || c == '\\') refuse(stage, name, "name with odd characters");
    if (!seen.insert(lowered(name)).second) refuse(stage, name, "name used twice");
  };
  for (const StageMesh& mesh : stage.meshes) check(mesh.name);
  for (const StageLight& light : stage.lights) {
    check(light.name);
    if (light.spot) check(light.name + ".Target");
  }
  for (const StageCamera& camera : stage.cameras) {
    check(camera.name);
    check(camera.name + ".Target");
  }
}

bool finite(const Vector& v) {
  return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

// All lists of an object must end on the frame `last`, which the first sets.
void checkKeys(const Stage& stage, const std::string& object, const char* what, const MotionKeys& keys,
               int& last) {
  if (keys.empty()) return;
  if (keys.size() < 2) refuse(stage, object, "a single %s key", what);
  if (keys[0].frame != 0) refuse(stage, object, "%s keys begin at frame %d", what, keys[0].frame);
  for (std::size_t i = 0; i < keys.size(); ++i) {
    if (i > 0 && keys[i].frame <= keys[i - 1].frame)
      refuse(stage, object, "%s key at frame %d after one at %d", what, keys[i].frame, keys[i - 1].frame);
    if (!finite(keys[i].value) || !std::isfinite(keys[i].radians))
      refuse(stage, object, "%s key at frame %d is no number", what, keys[i].frame);
    if (std::fabs(keys[i].radians) > 3.1415926f)
      refuse(stage, object, "%s key at frame %d turns by more than half a turn", what, keys[i].frame);
  }
  if (last >= 0 && keys.back().frame != last)
    refuse(stage, object, "%s keys end at frame %d, others at %d", what, keys.back().frame, last);
  last = keys.back().frame;
  if (keys.back().frame > std::lround(stage.seconds * framesPerSecond))
    refuse(stage, object, "%s keys end at frame %d, after the model", what, keys.back().frame);
}

int materialIndex(const Stage& stage, const StageMesh& mesh) {
  for (std::size_t i = 0; i < stage.materials.size(); ++i)
    if (stage.materials[i].name == mesh.material) return static_cast<int>(i);
  refuse(stage, mesh.name, "no material \"%s\"", mesh.material.c_str());
}

void checkMesh(const Stage& stage, std::size_t index) {
  const StageMesh& mesh = stage.meshes[index];
  if (!mesh.parent.empty() &&
      std::none_of(stage.meshes.begin(), stage.meshes.begin() + static_cast<long>(index),
                   [&](const StageMesh& other) { return lowered(other.name) == lowered(mesh.parent); }))
    refuse(stage, mesh.name, "its parent \"%s\" does not come before it", mesh.parent.c_str());
  if (!finite(mesh.pivot)) refuse(stage, mesh.name, "pivot is no number");
  int last = -1;
  checkKeys(stage, mesh.name, "position", mesh.motion.positions, last);
  checkKeys(stage, mesh.name, "turn", mesh.motion.turns, last);
  checkKeys(stage, mesh.name, "scale", mesh.motion.scales, last);

  const Surface& surface = mesh.surface;
  if (surface.triangles.empty()) {
    if (!mesh.helper) refuse(stage, mesh.name, "has no triangles");
    return;
  }
  const StageMaterial& material = stage.materials[at(materialIndex(stage, mesh))];
  if (material.environment && surface.mapped)
    refuse(stage, mesh.name, "is mapped, but its material %s is an environment map", material.name.c_str());
  if (!material.environment && !material.texture.empty() && !surface.mapped)
    refuse(stage, mesh.name, "has the texture %s but no mapping", material.texture.c_str());
  for (const Vector& point : surface.points)
    if (!finite(point)) refuse(stage, mesh.name, "a point is no number");
  std::vector<bool> used(surface.points.size());
  for (const Triangle& triangle : surface.triangles) {
    for (const int point : triangle.points) {
      if (point < 0 || at(point) >= surface.points.size()) refuse(stage, mesh.name, "no point %d", point);
      used[at(point)] = true;
    }
    for (const Uv& uv : triangle.uv)
      if (!std::isfinite(uv.u) || !std::isfinite(uv.v)) refuse(stage, mesh.name, "mapping is no number");
    const auto& p = triangle.points;
    if (p[0] == p[1] || p[1] == p[2] || p[2] == p[0])
      refuse(stage, mesh.name, "a triangle uses point %d twice", p[0] == p[1] ? p[0] : p[2]);
  }
  for (std::size_t i = 0; i < used.size(); ++i)
    if (!used[i]) refuse(stage, mesh.name, "no triangle uses point %zu", i);
}

void checkStage(const Stage& stage) {
  checkNames(stage);
  if (stage.lights.empty()) refuse(stage, "lights", "a model needs one");
  const auto on =
      std::count_if(stage.lights.begin(), stage.lights.end(), [](const StageLight& l) { return l.on; });
  if (on > static_cast<long>(mostLights)) refuse(stage, "lights", "%ld are on, %zu can be", on, mostLights);
  if (stage.materials.size() > mostMaterials)
    refuse(stage, "materials", "%zu, %zu can be", stage.materials.size(), mostMaterials);
  for (const StageMaterial& material : stage.materials) {
    if (std::count_if(stage.materials.begin(), stage.materials.end(),
                      [&](const StageMaterial& other) { return other.name == material.name; }) > 1)
      refuse(stage, material.name, "material defined twice");
    if (material.texture.size() + 5 > longestName)
      refuse(stage, material.name, "texture name %s is too long", material.texture.c_str());
    for (const char c : material.texture)
      if (!(std::islower(static_cast<unsigned char>(c)) || std::isdigit(static_cast<unsigned char>(c)) ||
            c == '_'))
        refuse(stage, material.name, "texture name %s has odd characters", material.texture.c_str());
  }
  for (std::size_t i = 0; i < stage.meshes.size(); ++i) checkMesh(stage, i);
  for (const StageLight& light : stage.lights) {
    int last = -1;
    checkKeys(stage, light.name, "position", light.positions, last);
    checkKeys(stage, light.name, "target", light.targets, last);
    if (!light.spot && !light.targets.empty()) refuse(stage, light.name, "target keys without a spot");
    if (!finite(light.position) || !finite(light.target)) refuse(stage, light.name, "place is no number");
  }
  for (const StageCamera& camera : stage.cameras) {
    int last = -1;
    checkKeys(stage, camera.name, "position", camera.positions, last);
    checkKeys(stage, camera.name, "target", camera.targets, last);
    if (!finite(camera.position) || !finite(camera.target)) refuse(stage, camera.name, "place is no number");
    if (!(camera.far > 1) || !(camera.fieldDegrees > 0))
      refuse(stage, camera.name, "far plane %g, field of view %g", camera.far, camera.fieldDegrees);
  }
}

// --- As the writer of model text takes it

Colour opaque(const Colour4& c) {
  return {c.r, c.g, c.b};
}

TextMaterial textMaterial(const StageMaterial& material) {
  return {.name = material.name,
          .texture = material.texture,
          .environment = material.environment,
          .twoSided = material.twoSided,
          .diffuse = opaque(material.diffuse),
          .ambient = opaque(material.ambient),
          .specular = opaque(material.specular),
          .shine = material.shine,
          .shineStrength = material.shineStrength,
          .opacity = material.opacity};
}

// Texture vertices: one for each coordinate of each point, in the order of the points, so that a surface
// without seams keeps its numbers.
void addMapping(TextMesh& mesh, const Surface& surface) {
  std::vector<std::vector<Uv>> coordinates(surface.points.size());
  for (const Triangle& triangle : surface.triangles)
    for (std::size_t k = 0; k < 3; ++k) {
      std::vector<Uv>& own = coordinates[at(triangle.points[k])];
      if (std::find(own.begin(), own.end(), triangle.uv[k]) == own.end()) own.push_back(triangle.uv[k]);
    }
  std::vector<std::size_t> first(1, 0);
  for (const std::vector<Uv>& own : coordinates) {
    first.push_back(first.back() + own.size());
    for (const Uv& uv : own) mesh.coordinates.push_back({uv.u, uv.v});
  }
  for (const Triangle& triangle : surface.triangles) {
    std::array<int, 3>& face = mesh.coordinateFaces.emplace_back();
    for (std::size_t k = 0; k < 3; ++k) {
      const std::vector<Uv>& own = coordinates[at(triangle.points[k])];
      face[k] = static_cast<int>(first[at(triangle.points[k])]) +
                static_cast<int>(std::find(own.begin(), own.end(), triangle.uv[k]) - own.begin());
    }
  }
}

TextMesh textMesh(const Stage& stage, const StageMesh& mesh) {
  TextMesh text{.name = mesh.name,
                .parent = mesh.parent,
                .helperClass = mesh.helper ? "Dummy" : "",
                .pivot = mesh.pivot,
                .points = mesh.surface.points,
                .motion = mesh.motion};
  if (mesh.surface.triangles.empty()) return text;
  text.material = materialIndex(stage, mesh);
  for (const Triangle& triangle : mesh.surface.triangles) text.faces.push_back(triangle.points);
  if (mesh.surface.mapped) addMapping(text, mesh.surface);
  return text;
}

TextLight textLight(const StageLight& light) {
  return {.name = light.name,
          .position = light.position,
          .on = light.on,
          .colour = opaque(light.colour),
          .intensity = light.intensity,
          .spot = light.spot,
          .target = light.target,
          .coneDegrees = light.coneDegrees,
          .motion = {.positions = light.positions},
          .targetMotion = {.positions = light.targets}};
}

TextCamera textCamera(const StageCamera& camera) {
  return {.name = camera.name,
          .position = camera.position,
          .target = camera.target,
          .fieldDegrees = camera.fieldDegrees,
          .far = camera.far,
          .motion = {.positions = camera.positions},
          .targetMotion = {.positions = camera.targets}};
}

}  // namespace

std::string modelText(const Stage& stage) {
  checkStage(stage);
  TextModel model{.name = stage.name,
                  .framesPerSecond = framesPerSecond,
                  .lastFrame = static_cast<int>(std::lround(stage.seconds * framesPerSecond))};
  for (const StageMaterial& material : stage.materials) model.materials.push_back(textMaterial(material));
  for (const StageMesh& mesh : stage.meshes) model.meshes.push_back(textMesh(stage, mesh));
  for (const StageLight& light : stage.lights) model.lights.push_back(textLight(light));
  for (const StageCamera& camera : stage.cameras) model.cameras.push_back(textCamera(camera));
  return writeModelText(model, NumberForm::sixDecimals);
}

}  // namespace vex
