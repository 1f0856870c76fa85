#include "production/models/stage.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <set>

#include "base/pi.h"
#include "base/report.h"

namespace vex {

using namespace image;
using namespace geometry;

namespace {

constexpr int ticksPerFrame = 160;
constexpr std::size_t longestName = 31;
constexpr std::size_t mostLights = 8;
constexpr std::size_t mostMaterials = 100;
constexpr float radiansPerDegree = pi / 180;

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

// --- Writing. The text has z up and y away from the viewer.

struct Writer {
  std::string text;
  int depth = 0;

  [[gnu::format(printf, 2, 3)]] void line(const char* format, ...) {
    char buffer[512];
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(buffer, sizeof buffer, format, arguments);
    va_end(arguments);
    text.append(at(depth), '\t');
    text += buffer;
    text += '\n';
  }
  void open(const std::string& keyword) {
    line("%s {", keyword.c_str());
    ++depth;
  }
  void close() {
    --depth;
    line("}");
  }
};

// Six decimals, and no minus before a zero.
std::string number(float value) {
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, "%.6f", static_cast<double>(value));
  const std::string text = buffer;
  return text == "-0.000000" ? "0.000000" : text;
}

std::string triple(float a, float b, float c) {
  return number(a) + " " + number(b) + " " + number(c);
}

std::string place(const Vector& v) {
  return triple(v.x, -v.z, v.y);
}

std::string colour(const Colour4& c) {
  return triple(c.r, c.g, c.b);
}

void writeMaterials(Writer& out, const Stage& stage) {
  out.open("*MATERIAL_LIST");
  out.line("*MATERIAL_COUNT %zu", stage.materials.size());
  for (std::size_t i = 0; i < stage.materials.size(); ++i) {
    const StageMaterial& material = stage.materials[i];
    out.open("*MATERIAL " + std::to_string(i));
    out.line("*MATERIAL_NAME \"%s\"", material.name.c_str());
    out.line("*MATERIAL_AMBIENT %s", colour(material.ambient).c_str());
    out.line("*MATERIAL_DIFFUSE %s", colour(material.diffuse).c_str());
    out.line("*MATERIAL_SPECULAR %s", colour(material.specular).c_str());
    out.line("*MATERIAL_SHINE %s", number(material.shine).c_str());
    out.line("*MATERIAL_SHINESTRENGTH %s", number(material.shineStrength).c_str());
    out.line("*MATERIAL_TRANSPARENCY %s", number(1 - material.opacity).c_str());
    if (material.twoSided) out.line("*MATERIAL_TWOSIDED");
    out.line("*MAP_TYPE %s", material.environment ? "Spherical" : "Screen");
    if (!material.texture.empty()) {
      out.open("*MAP_DIFFUSE");
      out.line("*BITMAP \"%s\"", material.texture.c_str());
      out.close();
    }
    out.close();
  }
  out.close();
}

void writeTransform(Writer& out, const std::string& name, const Vector& origin) {
  out.open("*NODE_TM");
  out.line("*NODE_NAME \"%s\"", name.c_str());
  out.line("*TM_ROW0 1.000000 0.000000 0.000000");
  out.line("*TM_ROW1 0.000000 1.000000 0.000000");
  out.line("*TM_ROW2 0.000000 0.000000 1.000000");
  out.line("*TM_ROW3 %s", place(origin).c_str());
  out.line("*TM_POS %s", place(origin).c_str());
  out.line("*TM_SCALE 1.000000 1.000000 1.000000");
  out.close();
}

void writePositions(Writer& out, const MotionKeys& keys, bool straight) {
  if (keys.empty()) return;
  out.open(straight ? "*CONTROL_POS_TRACK" : "*CONTROL_POS_BEZIER");
  for (const MotionKey& key : keys)
    out.line("%s %d %s", straight ? "*CONTROL_POS_SAMPLE" : "*CONTROL_BEZIER_POS_KEY",
             key.frame * ticksPerFrame, place(key.value).c_str());
  out.close();
}

void writeAnimation(Writer& out, const std::string& name, const Motion& motion) {
  if (motion.positions.empty() && motion.turns.empty() && motion.scales.empty()) return;
  out.open("*TM_ANIMATION");
  out.line("*NODE_NAME \"%s\"", name.c_str());
  writePositions(out, motion.positions, motion.straight);
  if (!motion.turns.empty()) {
    out.open("*CONTROL_ROT_TRACK");
    for (const MotionKey& key : motion.turns)
      // The player turns the other way.
      out.line("*CONTROL_ROT_SAMPLE %d %s %s", key.frame * ticksPerFrame, place(key.value).c_str(),
               number(-key.radians).c_str());
    out.close();
  }
  if (!motion.scales.empty()) {
    out.open("*CONTROL_SCALE_TRACK");
    for (const MotionKey& key : motion.scales)
      out.line("*CONTROL_SCALE_SAMPLE %d %s", key.frame * ticksPerFrame,
               triple(key.value.x, key.value.z, key.value.y).c_str());
    out.close();
  }
  out.close();
}

void writeSurface(Writer& out, const Surface& surface) {
  // Texture vertices: one for each coordinate of each point, in the order of the points, so that a surface
  // without seams keeps its numbers.
  std::vector<std::vector<Uv>> coordinates(surface.points.size());
  for (const Triangle& triangle : surface.triangles)
    for (std::size_t k = 0; k < 3; ++k) {
      std::vector<Uv>& own = coordinates[at(triangle.points[k])];
      if (std::find(own.begin(), own.end(), triangle.uv[k]) == own.end()) own.push_back(triangle.uv[k]);
    }
  std::vector<std::size_t> first(1, 0);
  for (const std::vector<Uv>& own : coordinates) first.push_back(first.back() + own.size());

  out.open("*MESH");
  out.line("*TIMEVALUE 0");
  out.line("*MESH_NUMVERTEX %zu", surface.points.size());
  out.line("*MESH_NUMFACES %zu", surface.triangles.size());
  out.open("*MESH_VERTEX_LIST");
  for (std::size_t i = 0; i < surface.points.size(); ++i)
    out.line("*MESH_VERTEX %zu %s", i, place(surface.points[i]).c_str());
  out.close();
  out.open("*MESH_FACE_LIST");
  for (std::size_t i = 0; i < surface.triangles.size(); ++i) {
    const auto& p = surface.triangles[i].points;
    out.line("*MESH_FACE %zu: A: %d B: %d C: %d AB: 1 BC: 1 CA: 1", i, p[0], p[1], p[2]);
  }
  out.close();
  if (surface.mapped) {
    out.line("*MESH_NUMTVERTEX %zu", first.back());
    out.open("*MESH_TVERTLIST");
    for (std::size_t i = 0; i < coordinates.size(); ++i)
      for (std::size_t k = 0; k < coordinates[i].size(); ++k)
        out.line("*MESH_TVERT %zu %s", first[i] + k,
                 triple(coordinates[i][k].u, coordinates[i][k].v, 0).c_str());
    out.close();
    out.line("*MESH_NUMTVFACES %zu", surface.triangles.size());
    out.open("*MESH_TFACELIST");
    for (std::size_t i = 0; i < surface.triangles.size(); ++i) {
      const Triangle& triangle = surface.triangles[i];
      std::array<std::size_t, 3> t{};
      for (std::size_t k = 0; k < 3; ++k) {
        const std::vector<Uv>& own = coordinates[at(triangle.points[k])];
        t[k] = first[at(triangle.points[k])] +
               static_cast<std::size_t>(std::find(own.begin(), own.end(), triangle.uv[k]) - own.begin());
      }
      out.line("*MESH_TFACE %zu %zu %zu %zu", i, t[0], t[1], t[2]);
    }
    out.close();
  }
  out.close();
}

void writeMesh(Writer& out, const Stage& stage, const StageMesh& mesh) {
  out.open(mesh.helper ? "*HELPEROBJECT" : "*GEOMOBJECT");
  out.line("*NODE_NAME \"%s\"", mesh.name.c_str());
  if (mesh.helper) out.line("*HELPER_CLASS \"Dummy\"");
  if (!mesh.parent.empty()) out.line("*NODE_PARENT \"%s\"", mesh.parent.c_str());
  writeTransform(out, mesh.name, mesh.pivot);
  if (!mesh.surface.triangles.empty()) writeSurface(out, mesh.surface);
  writeAnimation(out, mesh.name, mesh.motion);
  if (!mesh.surface.triangles.empty()) out.line("*MATERIAL_REF %d", materialIndex(stage, mesh));
  out.close();
}

void writeLight(Writer& out, const StageLight& light) {
  out.open("*LIGHTOBJECT");
  out.line("*NODE_NAME \"%s\"", light.name.c_str());
  out.line("*LIGHT_TYPE %s", light.spot ? "Target" : "Omni");
  writeTransform(out, light.name, light.position);
  if (light.spot) writeTransform(out, light.name + ".Target", light.target);
  out.line("*LIGHT_USELIGHT %d", light.on ? 1 : 0);
  out.open("*LIGHT_SETTINGS");
  out.line("*LIGHT_COLOR %s", colour(light.colour).c_str());
  out.line("*LIGHT_INTENS %s", number(light.intensity).c_str());
  out.line("*LIGHT_FALLOFF %s", number(light.coneDegrees).c_str());
  out.close();
  Motion own, target;
  own.positions = light.positions, target.positions = light.targets;
  writeAnimation(out, light.name, own);
  writeAnimation(out, light.name + ".Target", target);
  out.close();
}

void writeCamera(Writer& out, const StageCamera& camera) {
  out.open("*CAMERAOBJECT");
  out.line("*NODE_NAME \"%s\"", camera.name.c_str());
  out.line("*CAMERA_TYPE Target");
  writeTransform(out, camera.name, camera.position);
  writeTransform(out, camera.name + ".Target", camera.target);
  out.open("*CAMERA_SETTINGS");
  out.line("*CAMERA_FAR %s", number(camera.far).c_str());
  out.line("*CAMERA_FOV %s", number(camera.fieldDegrees * radiansPerDegree).c_str());
  out.close();
  Motion own, target;
  own.positions = camera.positions, target.positions = camera.targets;
  writeAnimation(out, camera.name, own);
  writeAnimation(out, camera.name + ".Target", target);
  out.close();
}

}  // namespace

std::string modelText(const Stage& stage) {
  checkStage(stage);
  Writer out;
  out.open("*SCENE");
  out.line("*SCENE_FIRSTFRAME 0");
  out.line("*SCENE_LASTFRAME %ld", std::lround(stage.seconds * framesPerSecond));
  out.line("*SCENE_FRAMESPEED %d", framesPerSecond);
  out.line("*SCENE_TICKSPERFRAME %d", ticksPerFrame);
  out.close();
  writeMaterials(out, stage);
  for (const StageMesh& mesh : stage.meshes) writeMesh(out, stage, mesh);
  for (const StageLight& light : stage.lights) writeLight(out, light);
  for (const StageCamera& camera : stage.cameras) writeCamera(out, camera);

  std::uint64_t hash = 0xcbf29ce484222325u;  // FNV-1a
  for (const char c : out.text) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3u;
  char head[128];
  // The comment is what compiled models are compared by.
  std::snprintf(head, sizeof head, "*3DSMAX_ASCIIEXPORT 200\n*COMMENT \"%s %016llx\"\n", stage.name.c_str(),
                static_cast<unsigned long long>(hash));
  return head + out.text;
}

}  // namespace vex
