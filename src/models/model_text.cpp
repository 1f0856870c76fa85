#include "models/model_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string_view>

#include "base/pi.h"

namespace vex {

namespace {

constexpr int ticksPerFrame = 160;
constexpr float radiansPerDegree = pi / 180;

struct Triple {
  float a, b, c;
};

// The text has z up and y away from the viewer.
Triple place(const Vector& v) {
  return {v.x, -v.z, v.y};
}

Triple colour(const Colour& c) {
  return {c.r, c.g, c.b};
}

// Lines are put together in a small buffer: texts of large models have hundreds of thousands of them.
class Writer {
 public:
  Writer(NumberForm numberForm, std::size_t size) : form(numberForm) { text.reserve(size); }

  template <typename... Parts>
  void line(const Parts&... parts) {
    for (std::size_t i = 0; i < depth; ++i) buffer[used++] = '\t';
    (add(parts), ...);
    buffer[used++] = '\n';
    flush();
  }
  template <typename... Parts>
  void open(const Parts&... parts) {
    line(parts..., " {");
    ++depth;
  }
  void close() {
    --depth;
    line("}");
  }

  const NumberForm form;
  std::string text;

 private:
  static constexpr std::size_t longestNumber = 64;

  void flush() {
    text.append(buffer.data(), used);
    used = 0;
  }
  char* room(std::size_t size) {
    if (buffer.size() - used < size + 1) flush();
    return buffer.data() + used;
  }

  void add(std::string_view part) {
    if (part.size() >= buffer.size() / 2) {
      flush();
      text += part;
      return;
    }
    std::copy(part.begin(), part.end(), room(part.size()));
    used += part.size();
  }
  void add(float value) {
    char* const start = room(longestNumber);
    char* const most = start + longestNumber;
    if (value == 0) value = 0;  // no minus before a zero
    char* end = form == NumberForm::exact
                    ? std::to_chars(start, most, value).ptr
                    : std::to_chars(start, most, value, std::chars_format::fixed, 6).ptr;
    const std::string_view number(start, static_cast<std::size_t>(end - start));
    if (number == "-0.000000") end = std::copy(start + 1, end, start);
    used += static_cast<std::size_t>(end - start);
  }
  template <std::integral Whole>
  void add(Whole value) {
    char* const start = room(longestNumber);
    used += static_cast<std::size_t>(std::to_chars(start, start + longestNumber, value).ptr - start);
  }
  void add(const Triple& t) {
    add(t.a);
    add(" ");
    add(t.b);
    add(" ");
    add(t.c);
  }

  std::array<char, 1024> buffer;
  std::size_t used = 0;
  std::size_t depth = 0;
};

void writeMaterials(Writer& out, const TextModel& model) {
  out.open("*MATERIAL_LIST");
  out.line("*MATERIAL_COUNT ", model.materials.size());
  for (std::size_t i = 0; i < model.materials.size(); ++i) {
    const TextMaterial& material = model.materials[i];
    out.open("*MATERIAL ", i);
    out.line("*MATERIAL_NAME \"", material.name, "\"");
    out.line("*MATERIAL_AMBIENT ", colour(material.ambient));
    out.line("*MATERIAL_DIFFUSE ", colour(material.diffuse));
    out.line("*MATERIAL_SPECULAR ", colour(material.specular));
    out.line("*MATERIAL_SHINE ", material.shine);
    out.line("*MATERIAL_SHINESTRENGTH ", material.shineStrength);
    out.line("*MATERIAL_TRANSPARENCY ", 1 - material.opacity);
    if (material.twoSided) out.line("*MATERIAL_TWOSIDED");
    out.line("*MAP_TYPE ", material.environment ? "Spherical" : "Screen");
    if (!material.texture.empty()) {
      out.open("*MAP_DIFFUSE");
      out.line("*BITMAP \"", material.texture, "\"");
      out.close();
    }
    out.close();
  }
  out.close();
}

using Rows = std::array<std::array<double, 3>, 3>;

Rows inverse(const Rows& m) {
  Rows result{};
  double determinant = 0;
  for (std::size_t r = 0; r < 3; ++r)
    for (std::size_t c = 0; c < 3; ++c) {
      const std::size_t r1 = (r + 1) % 3, r2 = (r + 2) % 3, c1 = (c + 1) % 3, c2 = (c + 2) % 3;
      result[c][r] = m[r1][c1] * m[r2][c2] - m[r1][c2] * m[r2][c1];
      if (r == 0) determinant += m[0][c] * result[c][0];
    }
  for (auto& row : result)
    for (double& value : row) value /= determinant;
  return result;
}

// The rows of which the reader makes `base`: it inverts them, then changes their axes, but for the first
// row's.
Rows transformRows(const Matrix& base) {
  const auto& b = base.m;
  return inverse(
      {{{b[0][0], b[0][1], b[0][2]}, {-b[2][0], b[2][2], -b[2][1]}, {b[1][0], -b[1][2], b[1][1]}}});
}

void writeTransform(Writer& out, const std::string& name, const Vector& origin,
                    const Matrix& base = scaling({1, 1, 1})) {
  out.open("*NODE_TM");
  out.line("*NODE_NAME \"", name, "\"");
  const Rows rows = transformRows(base);
  for (std::size_t row = 0; row < 3; ++row) {
    const auto& r = rows[row];
    out.line("*TM_ROW", row, " ",
             Triple{static_cast<float>(r[0]), static_cast<float>(r[1]), static_cast<float>(r[2])});
  }
  out.line("*TM_ROW3 ", place(origin));
  out.line("*TM_POS ", place(origin));
  out.line("*TM_SCALE ", Triple{1, 1, 1});
  out.close();
}

void writePositions(Writer& out, const ModelMotion& motion) {
  if (motion.positions.empty()) return;
  out.open(motion.straight ? "*CONTROL_POS_TRACK" : "*CONTROL_POS_BEZIER");
  for (const ModelKey& key : motion.positions)
    out.line(motion.straight ? "*CONTROL_POS_SAMPLE " : "*CONTROL_BEZIER_POS_KEY ", key.frame * ticksPerFrame,
             " ", place(key.value));
  out.close();
}

void writeMotion(Writer& out, const std::string& name, const ModelMotion& motion) {
  if (motion.positions.empty() && motion.turns.empty() && motion.scales.empty()) return;
  out.open("*TM_ANIMATION");
  out.line("*NODE_NAME \"", name, "\"");
  writePositions(out, motion);
  if (!motion.turns.empty()) {
    out.open("*CONTROL_ROT_TRACK");
    for (const ModelKey& key : motion.turns)
      // The player turns the other way.
      out.line("*CONTROL_ROT_SAMPLE ", key.frame * ticksPerFrame, " ", place(key.value), " ", -key.radians);
    out.close();
  }
  if (!motion.scales.empty()) {
    out.open("*CONTROL_SCALE_TRACK");
    for (const ModelKey& key : motion.scales)
      out.line("*CONTROL_SCALE_SAMPLE ", key.frame * ticksPerFrame, " ",
               Triple{key.value.x, key.value.z, key.value.y});
    out.close();
  }
  out.close();
}

void writeSurface(Writer& out, const TextMesh& mesh) {
  out.open("*MESH");
  out.line("*TIMEVALUE 0");
  out.line("*MESH_NUMVERTEX ", mesh.points.size());
  out.line("*MESH_NUMFACES ", mesh.faces.size());
  out.open("*MESH_VERTEX_LIST");
  for (std::size_t i = 0; i < mesh.points.size(); ++i)
    out.line("*MESH_VERTEX ", i, " ", place(mesh.points[i]));
  out.close();
  out.open("*MESH_FACE_LIST");
  for (std::size_t i = 0; i < mesh.faces.size(); ++i) {
    const auto& f = mesh.faces[i];
    // Which edges show, as modellers have it, says nothing to the player.
    out.line("*MESH_FACE ", i, ": A: ", f[0], " B: ", f[1], " C: ", f[2],
             out.form == NumberForm::exact ? "" : " AB: 1 BC: 1 CA: 1");
  }
  out.close();
  if (!mesh.coordinateFaces.empty()) {
    out.line("*MESH_NUMTVERTEX ", mesh.coordinates.size());
    out.open("*MESH_TVERTLIST");
    for (std::size_t i = 0; i < mesh.coordinates.size(); ++i)
      out.line("*MESH_TVERT ", i, " ", Triple{mesh.coordinates[i].u, mesh.coordinates[i].v, 0});
    out.close();
    out.line("*MESH_NUMTVFACES ", mesh.coordinateFaces.size());
    out.open("*MESH_TFACELIST");
    for (std::size_t i = 0; i < mesh.coordinateFaces.size(); ++i) {
      const auto& f = mesh.coordinateFaces[i];
      out.line("*MESH_TFACE ", i, " ", f[0], " ", f[1], " ", f[2]);
    }
    out.close();
  }
  out.close();
}

void writeMesh(Writer& out, const TextMesh& mesh) {
  const bool helper = !mesh.helperClass.empty();
  out.open(helper ? "*HELPEROBJECT" : "*GEOMOBJECT");
  out.line("*NODE_NAME \"", mesh.name, "\"");
  if (helper) out.line("*HELPER_CLASS \"", mesh.helperClass, "\"");
  if (!mesh.parent.empty()) out.line("*NODE_PARENT \"", mesh.parent, "\"");
  writeTransform(out, mesh.name, mesh.pivot, mesh.base);
  if (!mesh.faces.empty()) writeSurface(out, mesh);
  writeMotion(out, mesh.name, mesh.motion);
  if (!mesh.faces.empty() && mesh.material >= 0) out.line("*MATERIAL_REF ", mesh.material);
  out.close();
}

void writeLight(Writer& out, const TextLight& light) {
  out.open("*LIGHTOBJECT");
  out.line("*NODE_NAME \"", light.name, "\"");
  out.line("*LIGHT_TYPE ", light.spot ? "Target" : "Omni");
  writeTransform(out, light.name, light.position);
  if (light.spot) writeTransform(out, light.name + ".Target", light.target);
  out.line("*LIGHT_USELIGHT ", light.on ? 1 : 0);
  out.open("*LIGHT_SETTINGS");
  out.line("*LIGHT_COLOR ", colour(light.colour));
  out.line("*LIGHT_INTENS ", light.intensity);
  out.line("*LIGHT_FALLOFF ", light.coneDegrees);
  out.close();
  writeMotion(out, light.name, light.motion);
  writeMotion(out, light.name + ".Target", light.targetMotion);
  out.close();
}

void writeCamera(Writer& out, const TextCamera& camera) {
  out.open("*CAMERAOBJECT");
  out.line("*NODE_NAME \"", camera.name, "\"");
  out.line("*CAMERA_TYPE Target");
  writeTransform(out, camera.name, camera.position);
  writeTransform(out, camera.name + ".Target", camera.target);
  out.open("*CAMERA_SETTINGS");
  out.line("*CAMERA_FAR ", camera.far);
  out.line("*CAMERA_FOV ", camera.fieldDegrees * radiansPerDegree);
  out.close();
  writeMotion(out, camera.name, camera.motion);
  writeMotion(out, camera.name + ".Target", camera.targetMotion);
  out.close();
}

// About how long the text will be.
std::size_t sizeOf(const TextModel& model) {
  std::size_t size = 4096;
  for (const TextMesh& mesh : model.meshes)
    size += 1024 + mesh.points.size() * 50 + mesh.faces.size() * 45 + mesh.coordinates.size() * 40 +
            mesh.coordinateFaces.size() * 35;
  return size;
}

constexpr std::uint64_t firstHash = 0xcbf29ce484222325u, hashFactor = 0x100000001b3u;  // FNV-1a

// The comment is what compiled models are compared by. Exact texts, which may be large, are taken eight bytes
// at a time.
std::uint64_t hashOf(std::string_view text, NumberForm form) {
  std::uint64_t hash = firstHash;
  if (form == NumberForm::exact) {
    for (; text.size() >= 8; text.remove_prefix(8)) {
      std::uint64_t word = 0;
      std::memcpy(&word, text.data(), 8);
      hash = (hash ^ word) * hashFactor;
      hash ^= hash >> 32;
    }
  }
  for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * hashFactor;
  return hash;
}

}  // namespace

std::string writeModelText(const TextModel& model, NumberForm form) {
  Writer out(form, sizeOf(model));
  constexpr std::string_view noDigits = "0000000000000000";
  out.line("*3DSMAX_ASCIIEXPORT 200");
  out.line("*COMMENT \"", model.name, " ", noDigits, "\"");
  const std::size_t head = out.text.size();
  out.open("*SCENE");
  out.line("*SCENE_FIRSTFRAME 0");
  out.line("*SCENE_LASTFRAME ", model.lastFrame);
  out.line("*SCENE_FRAMESPEED ", model.framesPerSecond);
  out.line("*SCENE_TICKSPERFRAME ", ticksPerFrame);
  out.close();
  writeMaterials(out, model);
  for (const TextMesh& mesh : model.meshes) writeMesh(out, mesh);
  for (const TextLight& light : model.lights) writeLight(out, light);
  for (const TextCamera& camera : model.cameras) writeCamera(out, camera);

  char digits[32];
  std::snprintf(digits, sizeof digits, "%016llx",
                static_cast<unsigned long long>(hashOf(std::string_view(out.text).substr(head), form)));
  out.text.replace(head - 2 - noDigits.size(), noDigits.size(), digits);
  return std::move(out.text);
}

}  // namespace vex
