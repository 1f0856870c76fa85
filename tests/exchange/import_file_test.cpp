#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <assimp/Exporter.hpp>
#include <cmath>
#include <functional>
#include <string>

#include "base/report.h"
#include "tests/support/ase_text.h"
#include "tests/support/exchange_files.h"
#include "tests/support/gltf_text.h"
#include "tests/support/imported.h"
#include "tests/support/model_files.h"
#include "tests/support/temporary_folder.h"
#include "tools/exchange/export.h"

// Which parts of files come in, under which names, and what is refused.

namespace vex {

namespace {

GltfText::Mesh triangle() {
  return {.positions = {{0, 0, 0}, {3, 0, 0}, {0, 2, 0}}, .indices = {0, 1, 2}};
}

std::vector<std::string> namesOf(const ImportedFile& file) {
  std::vector<std::string> names;
  for (Mesh* mesh : file.scene.meshes) names.emplace_back(mesh->name);
  return names;
}

std::string fatalOf(const std::string& path, const ImportOptions& options = {}) {
  ImportedFile file;
  try {
    importFile(path, options, file);
  } catch (const FatalError& error) {
    return error.what();
  }
  return "nothing";
}

using testing::ElementsAre;

}  // namespace

TEST(ImportedNames, AreShortAndOwn) {
  const TemporaryFolder folder;
  GltfText text;
  text.mesh(triangle());
  const std::string longName(40, 'n');
  for (const std::string& name : {std::string("Rock"), std::string("rock"), std::string("two words"),
                                  longName, longName + "x", std::string("Rock_2")})
    text.node("\"name\": \"" + name + "\", \"mesh\": 0");
  writeFile("a.gltf", text.str());
  ImportedFile file;
  importFile("a.gltf", {}, file);
  const std::string cut = std::string(31, 'n'), second = std::string(29, 'n') + "_2";
  EXPECT_THAT(namesOf(file), ElementsAre("Rock", "rock_2", "two_words", cut, second, "Rock_2_2"));
  EXPECT_TRUE(file.says(Report::Kind::changed, "mesh rock: is named rock_2"));
  EXPECT_TRUE(file.says(Report::Kind::changed, "mesh two words: is named two_words"));
  EXPECT_FALSE(file.says(Report::Kind::changed, "mesh Rock: "));
}

TEST(ImportedForms, ShareWhatAgreesAndKeepHardEdges) {
  const TemporaryFolder folder;
  // Two triangles with six vertices: along their common edge either all agrees, or the normal or the
  // coordinates do not.
  const GltfText::Triple up{0, 0, 1}, aside{0.6f, 0, 0.8f};
  const struct {
    const char* name;
    GltfText::Triple normal;
    float u;
    std::size_t points, vertices;
  } rows[] = {{"smooth", up, 1, 4, 4}, {"hard", aside, 1, 6, 6}, {"seam", up, 0.5f, 4, 6}};
  for (const auto& [name, normal, u, points, vertices] : rows) {
    GltfText text;
    text.mesh({.positions = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}},
               .normals = {up, up, up, normal, normal, normal},
               .uvs = {{0, 0}, {1, 0}, {0, 1}, {u, 0}, {1, 1}, {0, u}},
               .indices = {0, 1, 2, 3, 4, 5}});
    text.node(R"("name": "A", "mesh": 0)");
    writeFile("a.gltf", text.str());
    ImportedFile file;
    importFile("a.gltf", {}, file);
    EXPECT_EQ(file.model.meshes[0].points.size(), points) << name;
    EXPECT_EQ(file.scene.meshes[0]->vertices.size(), vertices) << name;
    EXPECT_EQ(file.scene.meshes[0]->faces.size(), 2u) << name;
  }
}

TEST(ImportedNodes, AreChosenByName) {
  const TemporaryFolder folder;
  GltfText text;
  text.mesh(triangle());
  text.node(R"("name": "House", "children": [1, 2], "translation": [5, 0, 0])");
  text.node(R"("name": "Roof", "mesh": 0, "children": [3])");
  text.node(R"("name": "Door", "mesh": 0)");
  text.node(R"("name": "Chimney", "mesh": 0)");
  text.node(R"("name": "Tree", "mesh": 0)");
  writeFile("a.gltf", text.str("0, 4"));
  const struct {
    std::vector<std::string> only;
    std::vector<std::string> names;
  } rows[] = {{{}, {"House", "Roof", "Chimney", "Door", "Tree"}},
              {{"Roof"}, {"Roof", "Chimney"}},
              {{"D*", "Tree"}, {"Door", "Tree"}}};
  for (const auto& [only, names] : rows) {
    ImportedFile file;
    importFile("a.gltf", {.only = only}, file);
    EXPECT_EQ(namesOf(file), names);
    for (Mesh* mesh : file.scene.meshes)
      EXPECT_TRUE(std::string(mesh->name) != "Chimney" || mesh->vertices[0].position.x == 5)
          << "ancestors count";
  }
  EXPECT_EQ(fatalOf("a.gltf", {.only = {"Shed"}}), "no node of the file is named Shed");
}

TEST(ImportedMeshes, WithSkinOrFormsAreRefusedByNameOrTakenAtRest) {
  const TemporaryFolder folder;
  GltfText text;
  GltfText::Mesh morphing = triangle();
  morphing.more =
      ", \"targets\": [{\"POSITION\": " + std::to_string(text.floats(triangle().positions, "VEC3")) + "}]";
  text.mesh(morphing);
  text.mesh(triangle());
  text.node(R"("name": "Face", "mesh": 0)");
  text.node(R"("name": "Plain", "mesh": 1)");
  writeFile("a.gltf", text.str());
  ImportedFile refused, rest;
  importFile("a.gltf", {}, refused);
  EXPECT_THAT(namesOf(refused), ElementsAre("Plain"));
  EXPECT_TRUE(refused.says(Report::Kind::left, "mesh Face: has forms to change between; bake it"));
  importFile("a.gltf", {.atRest = true}, rest);
  EXPECT_THAT(namesOf(rest), ElementsAre("Face", "Plain"));

  // A skin of one joint, which stands at (0, 0, 7) and was bound at the origin: the mesh follows it, whatever
  // its own node says.
  const std::string bones = std::string(
      R"({"asset": {"version": "2.0"}, "scene": 0, "scenes": [{"nodes": [0, 1]}], "nodes": [{"name": "Skin", "mesh": 0,
      "skin": 0, "translation": [50, 0, 0]}, {"name": "Joint", "translation": [0, 0, 7]}], "skins": [{"joints": [1],
      "inverseBindMatrices": 3}], "meshes": [{"primitives": [{"attributes": {"POSITION": 0, "JOINTS_0": 1,
      "WEIGHTS_0": 2}}]}], "accessors": [
      {"bufferView": 0, "componentType": 5126, "count": 3, "type": "VEC3"},
      {"bufferView": 1, "componentType": 5123, "count": 3, "type": "VEC4"},
      {"bufferView": 2, "componentType": 5126, "count": 3, "type": "VEC4"},
      {"bufferView": 3, "componentType": 5126, "count": 1, "type": "MAT4"}], "bufferViews": [
      {"buffer": 0, "byteOffset": 0, "byteLength": 36}, {"buffer": 0, "byteOffset": 36, "byteLength": 24},
      {"buffer": 0, "byteOffset": 60, "byteLength": 48}, {"buffer": 0, "byteOffset": 108, "byteLength": 64}],
      "buffers": [{"byteLength": 172, "uri": "skin.bin"}]})");
  std::string bytes;
  const auto put = [&](std::initializer_list<float> values) { bytes += floatBytes(values); };
  put({0, 0, 0, 3, 0, 0, 0, 2, 0});
  bytes += std::string(24, '\0');
  for (int i = 0; i < 3; ++i) put({1, 0, 0, 0});
  put({1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1});
  writeFile("skin.bin", bytes);
  writeFile("b.gltf", bones);
  EXPECT_EQ(fatalOf("b.gltf").substr(0, 26), "b.gltf: nothing in it is o");
  ImportedFile skinned;
  importFile("b.gltf", {.atRest = true}, skinned);
  ASSERT_EQ(skinned.scene.meshes.count(), 1);
  const Vector p = skinned.scene.meshes[0]->vertices[1].position;
  EXPECT_EQ(p, Vector(3, 0, 7)) << p.x << " " << p.y << " " << p.z;
}

// How keys are joined: a step stands until the next key, a cubic follows its slopes (a Hermite curve worked
// out here).
TEST(ImportedMotion, HonoursHowKeysAreJoined) {
  const struct {
    const char* interpolation;
    std::vector<std::array<float, 3>> values;
    double at15, at45;  // x a quarter and three quarters of the way, in thirds of 4 seconds
  } rows[] = {
      {"LINEAR", {{0, 0, 0}, {12, 0, 0}}, 3, 9},
      {"STEP", {{0, 0, 0}, {12, 0, 0}}, 0, 0},
      // Slopes of 6 a second at both ends: 6 (f^3 - 2 f^2 + f) 4 + 12 (3 f^2 - 2 f^3) + 6 (f^3 - f^2) 4
      {"CUBICSPLINE", {{0, 0, 0}, {0, 0, 0}, {6, 0, 0}, {6, 0, 0}, {12, 0, 0}, {0, 0, 0}}, 4.125, 7.875},
  };
  for (const auto& [interpolation, values, early, late] : rows) {
    for (const bool beside : {false, true}) {
      const TemporaryFolder folder;
      GltfText text;
      text.mesh(triangle());
      const int node = text.node(R"("name": "A", "mesh": 0)");
      text.move<3>(node, "translation", {{0}, {4}}, values, interpolation);
      std::string content = text.str();
      if (beside) {  // the same bytes in a file of their own
        const std::size_t uri = content.find("data:application"), end = content.find('"', uri);
        std::string base64 = content.substr(uri, end - uri);
        writeFile("base64.txt", base64.substr(base64.find(',') + 1));
        ASSERT_EQ(runProgram("base64 -d base64.txt > motion.bin").exitCode, 0);
        content.replace(uri, end - uri, "motion.bin");
      }
      writeFile("a.gltf", content);
      ImportedFile file;
      importFile("a.gltf", {}, file);
      Mesh& mesh = *file.scene.meshes[0];
      EXPECT_NEAR(mesh.worldPositionAt(1).x, early, 0.01) << interpolation << beside;
      EXPECT_NEAR(mesh.worldPositionAt(3).x, late, 0.01) << interpolation << beside;
      EXPECT_NEAR(mesh.worldPositionAt(4).x, 12, 0.01) << interpolation << beside;
    }
  }
}

TEST(ImportedFiles, ComeInFromEachKind) {
  const TemporaryFolder folder;
  writeFile("a.fbx", fbxWorld);
  writeFile("a.dae", colladaWorld);
  writeFile("a.obj", "o Tri\nv 1 3 -2\nv 4 3 -2\nv 1 3 -4\nf 1 2 3\n");
  for (const char* name : {"a.fbx", "a.dae", "a.obj"}) {
    ImportedFile file;
    importFile(name, {}, file);
    ASSERT_EQ(file.scene.meshes.count(), 1) << name;
    const Mesh& mesh = *file.scene.meshes[0];
    EXPECT_STREQ(mesh.name, "Tri") << name;
    ASSERT_EQ(mesh.faces.size(), 1u) << name;
    const auto corner = [&](std::size_t i) { return mesh.vertices[mesh.faces[0].v[i]].position; };
    EXPECT_LE((corner(0) - Vector(1, 3, -2)).length(), 1e-5) << name;
    EXPECT_LE((corner(1) - Vector(4, 3, -2)).length(), 1e-5) << name;
    EXPECT_LE((corner(2) - Vector(1, 3, -4)).length(), 1e-5) << name;
  }
}

TEST(ImportedFiles, AreRefusedByNameAndReason) {
  const TemporaryFolder folder;
  GltfText text;
  text.mesh(triangle());
  const int node = text.node(R"("name": "A", "mesh": 0)");
  text.move<3>(node, "translation", {{0}, {1e6f}}, {{0, 0, 0}, {1, 0, 0}});
  writeFile("long.gltf", text.str());
  std::string outside = text.str();
  const std::size_t uri = outside.find("data:application");
  outside.replace(uri, outside.find('"', uri) - uri, "../../etc/passwd");
  writeFile("outside.gltf", outside);
  writeFile("empty.gltf",
            R"({"asset": {"version": "2.0"}, "scene": 0, "scenes": [{"nodes": [0]}], "nodes": [{}]})");
  writeFile("a.3ds", "MM");
  const struct {
    const char* file;
    const char* message;
  } rows[] = {
      {"none.gltf", "none.gltf: No such file or directory"},
      {"a.3ds", "a.3ds: only .gltf, .glb, .fbx, .dae and .obj files can be imported"},
      {"empty.gltf", "empty.gltf: nothing in it is of use to the player"},
      {"outside.gltf",
       "outside.gltf: can't be read: GLTF: could not open referenced file \"../../etc/passwd\""},
      {"long.gltf", "long.gltf: its motion lasts 1e+06 seconds, 20000 frames of 30 a second are possible"},
  };
  for (const auto& [file, message] : rows) EXPECT_EQ(fatalOf(file), message);
}

// Files cut short anywhere come in or are refused with a message that begins with their name.
TEST(ImportedFiles, MayEndAnywhere) {
  const TemporaryFolder folder;
  AseText ase;
  ase.head("1").scene().object("*GEOMOBJECT", "Tri").node("1 2 3").triangle().close();
  writeFile("m.ase", ase.str());
  std::vector<std::string> textures;
  Scene scene;
  readModel({"m.ase"}, &scene, nameTextures(textures));
  Report report;
  GltfText text;
  text.mesh(triangle());
  text.move<3>(text.node(R"("name": "A", "mesh": 0)"), "translation", {{0}, {1}}, {{0, 0, 0}, {1, 0, 0}});
  const struct {
    const char* file;
    std::string whole;
  } rows[] = {{"cut.glb", exportGlb(scene, textures, report)},
              {"cut.gltf", text.str()},
              {"cut.dae", colladaWorld},
              {"cut.fbx", fbxWorld},
              {"cut.obj", "mtllib m.mtl\no A\nv 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n"}};
  for (const auto& [name, whole] : rows) {
    const std::size_t step = std::max<std::size_t>(whole.size() / 60, 1);
    for (std::size_t size = 0; size < whole.size(); size += step) {
      writeFile(name, whole.substr(0, size));
      const std::string message = fatalOf(name);
      EXPECT_TRUE(message == "nothing" || message.starts_with(std::string(name) + ": ")) << message;
    }
    EXPECT_EQ((writeFile(name, whole), fatalOf(name)), "nothing") << name;
  }
}

// Numbers of a glTF file that promise more than is there, or nothing sensible.
TEST(ImportedFiles, MayPromiseAnything) {
  const TemporaryFolder folder;
  GltfText text;
  text.mesh(triangle());
  text.move<3>(text.node(R"("name": "A", "mesh": 0)"), "translation", {{0}, {1}}, {{0, 0, 0}, {1, 0, 0}});
  const std::string whole = text.str();
  const std::pair<const char*, const char*> changes[] = {{"\"count\": 3", "\"count\": 4000000000"},
                                                         {"\"count\": 3", "\"count\": -1"},
                                                         {"\"byteLength\": 36", "\"byteLength\": 99999999"},
                                                         {"\"byteOffset\": 0", "\"byteOffset\": 4294967295"},
                                                         {"\"mesh\": 0", "\"mesh\": 7"},
                                                         {"\"bufferView\": 0", "\"bufferView\": 99"},
                                                         {"\"nodes\": [0]", "\"nodes\": [5]"},
                                                         {"\"node\": 0", "\"node\": 9"},
                                                         {"\"input\": ", "\"input\": 7"},
                                                         {"\"sampler\": 0", "\"sampler\": 3"}};
  for (const auto& [from, to] : changes) {
    std::string changed = whole;
    ASSERT_NE(changed.find(from), std::string::npos) << from;
    changed.replace(changed.find(from), std::string(from).size(), to);
    writeFile("odd.gltf", changed);
    const Program program = runProgram("ulimit -c 0; " VEX_BIN "/vexmodel import odd.gltf odd.ase --dry-run");
    EXPECT_TRUE(program.exitCode == 0 || program.exitCode == 255) << to << ": " << program.exitCode;
    EXPECT_TRUE(program.exitCode == 0 || program.errors.starts_with("vexmodel: odd.gltf: "))
        << program.errors;
  }
}

}  // namespace vex
