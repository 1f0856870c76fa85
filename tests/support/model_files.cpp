#include "tests/support/model_files.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstdio>
#include <initializer_list>

#include "models/container.h"
#include "tests/support/ase_text.h"
#include "tests/support/pak_builder.h"

namespace vex {

namespace {

class Dump {
 public:
  Dump& add(float value) {
    char text[32];
    std::snprintf(text, sizeof text, " %g/%08x", static_cast<double>(value),
                  std::bit_cast<std::uint32_t>(value));
    lines += text;
    return *this;
  }
  Dump& add(const Vector& v) { return add(v.x).add(v.y).add(v.z).add(v.w); }
  Dump& add(const ColourAlpha& c) { return add(c.r).add(c.g).add(c.b).add(c.a); }
  Dump& add(const Matrix& matrix) {
    for (const auto& row : matrix.m) {
      for (const float value : row) add(value);
    }
    return *this;
  }
  Dump& add(long value) {
    lines += " " + std::to_string(value);
    return *this;
  }
  Dump& add(std::string_view text) {
    lines.append(" ").append(text);
    return *this;
  }
  Dump& add(const Animation* track) {
    if (!track) return add("-");
    line("  track").add(static_cast<long>(track->type)).add(track->frameLength).add(track->duration);
    add(long{track->smooth}).add(long{track->loop});
    for (std::size_t k = 0; k < static_cast<std::size_t>(track->count); ++k) {
      line("   key").add(track->keyTime[k]).add(track->keyX[k]).add(track->keyY[k]).add(track->keyZ[k]);
      if (track->type == TrackType::rotation) add(track->keyAngle[k]);
    }
    return *this;
  }
  Dump& addObject(const char* kind, const Object3D& object) {
    line(kind).add(object.name).add(object.parent ? object.parent->name : "-").add(long{object.flags});
    add(object.position).add(object.baseMatrix);
    for (const TrackType type : {TrackType::scale, TrackType::rotation, TrackType::position}) {
      add(object.track(type));
    }
    return *this;
  }
  Dump& line(const char* title) {
    lines.append("\n").append(title);
    return *this;
  }
  std::string lines;
};

}  // namespace

TextureResolver nameTextures(std::vector<std::string>& names) {
  return [&names](const char* name, bool) {
    const auto id = std::find(names.begin(), names.end(), name) - names.begin();
    if (id == std::ssize(names)) names.emplace_back(name);
    return static_cast<int>(id);
  };
}

std::string everyKeyword(const std::string& comment) {
  AseText text;
  text.head(comment);
  text.open("*SCENE").line("*SCENE_FILENAME \"x.max\"").line("*SCENE_FIRSTFRAME 0");
  text.line("*SCENE_LASTFRAME 90").line("*SCENE_FRAMESPEED 25").line("*SCENE_TICKSPERFRAME 160").close();

  text.open("*MATERIAL_LIST").line("*MATERIAL_COUNT 2").open("*MATERIAL 0").line("*MATERIAL_NAME \"skin\"");
  text.line("*MATERIAL_AMBIENT 0.1 0.2 0.3").line("*MATERIAL_DIFFUSE 0.5 0.25 1.0");
  text.line("*MATERIAL_SPECULAR 0.75 0.5 0.25")
      .line("*MATERIAL_SHINE 0.25")
      .line("*MATERIAL_SHINESTRENGTH 0.625");
  text.line("*MATERIAL_TRANSPARENCY 0.25").line("*MATERIAL_TWOSIDED").open("*MAP_DIFFUSE");
  text.line("*BITMAP \"c:\\maps\\Rock.old.jpg\"").line("*MAP_TYPE Screen").close().close();
  text.open("*MATERIAL 1").open("*MAP_DIFFUSE").line("*BITMAP \"chrome.jpg\"").line("*MAP_TYPE Spherical");
  text.close().line("*MATERIAL_DIFFUSE 0.5 0.5 0.5").close().close();

  text.object("*HELPEROBJECT", "Root").line("*HELPER_CLASS \"Skeleton\"").node("10 20 30").close();

  text.object("*GEOMOBJECT", "Box").parent("Root").open("*NODE_TM");
  text.line("*TM_ROW0 2 0 0").line("*TM_ROW1 0 4 0").line("*TM_ROW2 0 0 5").line("*TM_ROW3 1 2 3");
  text.line("*TM_POS 1 2 3").line("*TM_SCALE 1 3 2").close();
  text.open("*MESH").line("*TIMEVALUE 0").line("*MESH_NUMVERTEX 4").line("*MESH_NUMFACES 2");
  text.list("*MESH_VERTEX_LIST", "*MESH_VERTEX", {"0 0 0 0", "1 1 0 0", "2 1 1 0", "3 0 1 0.5"});
  text.list("*MESH_FACE_LIST", "*MESH_FACE", {"0: A: 0 B: 1 C: 2 AB: 1", "1 A: 0 B: 2 C: 3 AB: 1"});
  text.line("*MESH_NUMTVERTEX 5");
  text.list("*MESH_TVERTLIST", "*MESH_TVERT",
            {"0 0 0 0", "1 0.25 0 0", "2 0.5 0.75 0", "3 0 1 0", "4 1 0.5 0"});
  text.line("*MESH_NUMTVFACES 2").list("*MESH_TFACELIST", "*MESH_TFACE", {"0 0 1 2", "1 4 2 3"});
  text.list("*MESH_NORMALS", "*MESH_FACENORMAL", {"0 0 0 1"}).close();
  text.open("*TM_ANIMATION").name("Box");
  text.list("*CONTROL_POS_BEZIER", "*CONTROL_BEZIER_POS_KEY",
            {"0 1 2 3 9 9 9 9 9 9 0", "1600 4 5 6 9 9 9 9 9 9 0"});
  text.list("*CONTROL_ROT_TCB", "*CONTROL_TCB_ROT_KEY",
            {"0 0 0 1 0.5 0 0 0 0 0", "3200 1 2 3 4.0 0 0 0 0 0"});
  text.list("*CONTROL_SCALE_BEZIER", "*CONTROL_BEZIER_SCALE_KEY", {"0 1 1 1 0", "3200 1 2 3 0"}).close();
  text.line("*MATERIAL_REF 0").close();

  text.object("*CAMERAOBJECT", "Cam").line("*CAMERA_TYPE Target").node("1 2 3");
  text.open("*NODE_TM").name("Cam.Target").line("*TM_POS 4 5 6").close();
  text.open("*CAMERA_SETTINGS").line("*CAMERA_FAR 500").line("*CAMERA_FOV 0.7854").close();
  text.open("*TM_ANIMATION").name("Cam");
  text.list("*CONTROL_POS_TRACK", "*CONTROL_POS_SAMPLE", {"0 1 2 3", "1600 2 3 4"}).close();
  text.open("*TM_ANIMATION").name("Cam.Target");
  text.list("*CONTROL_POS_TRACK", "*CONTROL_POS_SAMPLE", {"0 7 8 9", "800 8 9 10"}).close().close();

  text.object("*LIGHTOBJECT", "Lamp").line("*LIGHT_TYPE Omni").node("7 8 9").line("*LIGHT_USELIGHT 1");
  text.open("*LIGHT_SETTINGS")
      .line("*LIGHT_COLOR 0.5 0.75 1")
      .line("*LIGHT_INTENS 1.5")
      .line("*LIGHT_FALLOFF 40");
  text.close().open("*TM_ANIMATION").name("Lamp");
  text.list("*CONTROL_ROT_TRACK", "*CONTROL_ROT_SAMPLE", {"0 1 0 0 0", "160 0 1 0 -4"});
  text.list("*CONTROL_POS_TRACK", "*CONTROL_POS_SAMPLE", {"0 7 8 9", "160 1 1 1"}).close().close();

  text.object("*LIGHTOBJECT", "Spot").parent("Lamp").line("*LIGHT_TYPE Target").node("1 1 1");
  text.open("*NODE_TM").name("Spot.Target").line("*TM_POS 1 1 0").close().line("*LIGHT_USELIGHT 0");
  text.open("*TM_ANIMATION").name("Spot");
  text.list("*CONTROL_POS_TRACK", "*CONTROL_POS_SAMPLE", {"0 1 1 1", "160 2 2 2"});
  text.list("*CONTROL_SCALE_TRACK", "*CONTROL_SCALE_SAMPLE", {"0 1 1 1", "160 2 2 2"}).close();
  text.open("*TM_ANIMATION").name("Spot.Target");
  text.list("*CONTROL_POS_TRACK", "*CONTROL_POS_SAMPLE", {"0 3 3 3", "160 4 4 4"}).close().close();
  return text.str();
}

std::string smallModel() {
  AseText text;
  text.head("1").open("*SCENE").line("*SCENE_TICKSPERFRAME 160").close();
  text.open("*MATERIAL_LIST").open("*MATERIAL 0").line("*MATERIAL_SHINE 0.25").open("*MAP_DIFFUSE");
  text.line("*BITMAP \"a.jpg\"").close().close().close();
  text.object("*GEOMOBJECT", "M")
      .node("1 2 3")
      .open("*MESH")
      .line("*MESH_NUMVERTEX 3")
      .line("*MESH_NUMFACES 1");
  text.list("*MESH_VERTEX_LIST", "*MESH_VERTEX", {"0 0 0 0", "1 1 0 0", "2 0 1 0"});
  text.list("*MESH_FACE_LIST", "*MESH_FACE", {"0: A: 0 B: 1 C: 2"}).line("*MESH_NUMTVERTEX 3");
  text.list("*MESH_TVERTLIST", "*MESH_TVERT", {"0 0 0", "1 1 0", "2 0 1"});
  text.list("*MESH_TFACELIST", "*MESH_TFACE", {"0 2 1 0"}).close().open("*TM_ANIMATION");
  text.list("*CONTROL_ROT_TRACK", "*CONTROL_ROT_SAMPLE", {"0 0 0 1 9"}).close().close();
  return text.object("*LIGHTOBJECT", "L").parent("M").line("*LIGHT_TYPE Omni").close().str();
}

std::string dumpScene(const Scene& scene) {
  Dump dump;
  for (const Mesh* mesh : scene.meshes) {
    dump.addObject("mesh", *mesh).add(long{mesh->lit}).add(mesh->shininess).add(mesh->shineStrength);
    dump.add(mesh->diffuse).add(mesh->ambient).add(mesh->specular).add(long{mesh->texture});
    dump.add(mesh->opacity).add(long{mesh->envMap}).add(long{mesh->twoSided});
    for (const Vertex& vertex : mesh->vertices) {
      dump.line("  vertex").add(vertex.position).add(vertex.normal).add(vertex.u).add(vertex.v);
    }
    for (const Face& face : mesh->faces) {
      dump.line("  face");
      for (const std::uint32_t v : face.v) dump.add(long{v});
      for (const std::int32_t t : face.t) dump.add(long{t});
    }
  }
  for (const Light* light : scene.lights) {
    dump.addObject("light", *light).add(light->spotDirection).add(light->intensity).add(light->colour.r);
    dump.add(light->colour.g).add(light->colour.b).add(long{light->active}).add(long{light->spot});
    dump.add(light->coneAngle).add(light->target.get());
  }
  for (const Viewer* viewer : scene.viewers) {
    dump.line("viewer").add(viewer->position).add(viewer->target).add(viewer->fov).add(viewer->farPlane);
    dump.add(viewer->positionTrack.get()).add(viewer->targetTrack.get());
  }
  return dump.lines;
}

std::string loadAndDump(const std::string& base) {
  Scene scene;
  std::vector<std::string> textures;
  loadModel(base.c_str(), &scene, nameTextures(textures));
  return dumpScene(scene);
}

std::string readAndDump(const std::string& file) {
  Scene scene;
  std::vector<std::string> textures;
  readModel({file}, &scene, nameTextures(textures));
  return dumpScene(scene);
}

std::string readStream(const std::string& file) {
  std::uint32_t length = 0;
  ModelContainer container;
  container.open(file.c_str(), ZIP_READ, &length);
  std::string stream(length, '\0');
  container.read(stream.data(), length);
  container.close();
  return stream;
}

void writeStream(const std::string& file, std::string_view stream) {
  auto length = static_cast<std::uint32_t>(stream.size());
  ModelContainer container;
  container.open(file.c_str(), ZIP_WRITE, &length);
  container.write(stream.data(), length);
  container.close();
}

std::string intBytes(int value) {
  return littleEndianBytes(static_cast<std::uint32_t>(value), 4);
}

std::string floatBytes(std::initializer_list<float> values) {
  std::string bytes;
  for (const float value : values) bytes += littleEndianBytes(std::bit_cast<std::uint32_t>(value), 4);
  return bytes;
}

}  // namespace vex
