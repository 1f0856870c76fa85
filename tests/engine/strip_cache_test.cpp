#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <string>

#include "base/files.h"
#include "base/random.h"
#include "base/report.h"
#include "engine/strips.h"
#include "tests/support/fatal.h"
#include "tests/support/log_text.h"
#include "tests/support/pak_builder.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/test_scene.h"

namespace vex {
namespace {

class StripCache : public testing::Test {
 protected:
  void SetUp() override {
    pakOpen("vex.pak");
    std::filesystem::create_directory("data");
    fill(scene);
  }

  // A fan and a strip; then nothing; then a lone triangle.
  static void fill(TestScene& scene) {
    addFaces(*scene.meshes[0], {{0, 1, 2}, {0, 2, 3}, {0, 3, 4}, {5, 6, 7}, {6, 7, 8}});
    scene.meshes[0]->texCoords.resize(15);
    scene.meshes[0]->faces[3].t[1] = -1;
    addFaces(*scene.meshes[2], {{0, 1, 2}});
    scene.meshes[2]->texCoords.resize(3);
  }

  // The words of the file, worked out by hand.
  static std::string fileBytes() {
    std::string bytes;
    for (const std::uint32_t word :
         {1u, 5u, 0u, 0u, 1u, 1u, 2u, 2u, 3u, 5u, 4u, 8u, 1u, 4u, 5u, 9u, 6u, ~0u, 7u, 11u, 8u, 14u, 0u,  //
          0u, 0u, 0u,                                                                                     //
          0u, 0u, 1u, 0u, 1u, 2u}) {
      for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(word >> shift);
    }
    return bytes;
  }

  static std::string withWord(std::size_t index, std::uint32_t value) {
    std::string bytes = fileBytes();
    for (std::size_t i = 0; i < 4; ++i) bytes[4 * index + i] = static_cast<char>(value >> (8 * i));
    return bytes;
  }

  static std::string refusal(const std::string& bytes) {
    writeFile("data/SceneTest.hvf", bytes);
    return fatalText([] {
      TestScene fresh(3);
      fill(fresh);
      readStripCache(fresh);
    });
  }

  TemporaryFolder folder;
  TestScene scene{3};
};

const char* cache = "data/SceneTest.hvf";

}  // namespace

TEST_F(StripCache, IsWrittenInTheOrderOfTheMeshes) {
  scene.prepare(true);
  EXPECT_EQ(readFile(cache), fileBytes());
}

TEST_F(StripCache, IsReadBackWithoutSplitting) {
  // Other lists than the splitting would give: the fan begins at another vertex.
  std::string bytes = fileBytes();
  std::swap(bytes[4 * 4], bytes[4 * 6]);
  for (const bool packed : {false, true}) {
    SCOPED_TRACE(packed ? "packed" : "loose");
    if (packed) {
      std::filesystem::remove(cache);
      writeFile("vex.pak", pakBytes({{"data\\SceneTest.hvf", bytes}}));
      pakOpen("vex.pak");
    } else {
      writeFile(cache, bytes);
    }
    TestScene fresh(3);
    fill(fresh);
    fresh.prepare(true);
    EXPECT_EQ(fresh.meshes[0]->fans.at(0).vertices, (std::vector<std::uint32_t>{0, 2, 1, 3, 4}));
    EXPECT_EQ(fresh.meshes[0]->fans.at(0).texCoords, (std::vector<std::uint32_t>{0, 1, 2, 5, 8}));
    EXPECT_EQ(fresh.meshes[0]->strips.at(0).vertices, (std::vector<std::uint32_t>{5, 6, 7, 8}));
    EXPECT_EQ(fresh.meshes[2]->solos, (std::vector<std::uint32_t>{0, 1, 2}));
    EXPECT_TRUE(fresh.meshes[0]->stripped);
    const int handle = fileOpen("data\\SceneTest.hvf", "rb");
    EXPECT_EQ(handle, 0) << "the first handle is free again";
    fileClose(handle);
    EXPECT_EQ(packed, !std::filesystem::exists(cache));
  }
}

TEST_F(StripCache, DamagedFilesAreRefusedByName) {
  const std::string whole = fileBytes();
  for (std::size_t size = 0; size < whole.size(); ++size) {
    const std::string text = refusal(whole.substr(0, size));
    EXPECT_TRUE(text.starts_with("data\\SceneTest.hvf: ")) << size << ": " << text;
  }
  struct Case {
    std::string bytes;
    const char* text;
  };
  for (const Case& c :
       {Case{withWord(0, 7), "data\\SceneTest.hvf: mesh mesh0 has 7 fans, more than the file holds"},
        Case{withWord(0, 0x80000001u),
             "data\\SceneTest.hvf: mesh mesh0 has 2147483649 fans, more than the file holds"},
        Case{withWord(1, 0x80000000u),
             "data\\SceneTest.hvf: mesh mesh0 has 2147483648 vertices in a list, more than the file holds"},
        Case{withWord(1, 2), "data\\SceneTest.hvf: mesh mesh0 has 2 vertices in a list, 3 are the fewest"},
        Case{withWord(2, 9), "data\\SceneTest.hvf: mesh mesh0 names vertex 9 of 9"},
        Case{withWord(3, 15), "data\\SceneTest.hvf: mesh mesh0 names texture coordinate 15 of 15"},
        Case{withWord(22, 4), "data\\SceneTest.hvf: mesh mesh0 has 4 solos, more than the file holds"},
        Case{withWord(28, 0), "data\\SceneTest.hvf: mesh mesh2 has 0 triangles, its model has 1"},
        Case{withWord(29, 3), "data\\SceneTest.hvf: mesh mesh2 names vertex 3 of 3"},
        Case{whole + std::string(4, '\0'), "data\\SceneTest.hvf: 1 words follow the last mesh of SceneTest"},
        Case{whole + std::string(9999, '\0'),
             "data\\SceneTest.hvf: 10127 bytes do not fit the meshes of SceneTest"}}) {
    EXPECT_EQ(refusal(c.bytes), c.text);
  }
  EXPECT_EQ(refusal(whole), "exit code 0 instead of 255: ");
}

TEST_F(StripCache, ThatCannotBeWrittenIsLogged) {
  std::filesystem::remove("data");
  const std::string log = logText([] {
    std::filesystem::remove_all("data");
    TestScene fresh(3);
    fill(fresh);
    fresh.prepare(true);
    logPrintf("%zu fans\n", fresh.meshes[0]->fans.size());
  });
  EXPECT_NE(log.find("can't write data\\SceneTest.hvf: No such file or directory\n1 fans\n"),
            std::string::npos)
      << log;
}

TEST_F(StripCache, IsAskedForWithAWarning) {
  EXPECT_EQ(runInChild([this] { scene.prepare(true); }).errorText,
            std::string(program_invocation_short_name) +
                ": Scene SceneTest tries to open data\\SceneTest.hvf. Delete it now, if not valid!\n");
}

TEST_F(StripCache, WithoutTheOptionNothingIsReadOrWritten) {
  scene.prepare(true);
  std::filesystem::remove(cache);
  scene.prepare(false);
  EXPECT_FALSE(std::filesystem::exists(cache));
  writeFile(cache, "rubbish");
  scene.prepare(false);
  EXPECT_FALSE(scene.meshes[0]->stripped);
  EXPECT_TRUE(scene.meshes[0]->fans.empty());
}

TEST(Preparation, SpreadsTextureCoordinatesAfterBuildingTheArrays) {
  TestScene scene(1);
  Mesh& mesh = *scene.meshes[0];
  makeGrid(mesh, 1, 1, {}, 1.0f, 1.0f);
  mesh.texCoords = {{0.1f, 0.2f}, {0.3f, 0.4f}, {0.5f, 0.6f}};
  mesh.faces[0].t = {0, 1, 2};   // vertices 0, 1, 2
  mesh.faces[1].t = {2, -1, 0};  // vertices 1, 3, 2
  mesh.faces.push_back({.v = {3, 3, 3}, .t = {3, -1, 3}});
  scene.prepare(false);
  const float expected[4][2] = {{0.1f, 0.2f}, {0.5f, 0.6f}, {0.1f, 0.2f}, {1.0f, 1.0f}};
  for (std::size_t k = 0; k < 4; ++k) {
    EXPECT_EQ(mesh.vertices[k].u, expected[k][0]) << k;
    EXPECT_EQ(mesh.vertices[k].v, expected[k][1]) << k;
    EXPECT_EQ(mesh.uvs[2 * k], static_cast<float>(k % 2)) << k;
  }
}

// A fan of three triangles about the origin that face along z, under the given turn.
void makeTurnedFan(Mesh& mesh, const Matrix& turn, const Vector& hubNormal) {
  addFaces(mesh, {{0, 1, 2}, {0, 2, 3}, {0, 3, 4}});
  mesh.texCoords.resize(9);
  const Vector corners[] = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {-1, 1, 0}};
  for (std::size_t k = 0; k < 5; ++k) {
    mesh.vertices[k] = {.position = transformPoint(turn, corners[k]),
                        .normal = transformPoint(turn, hubNormal)};
  }
}

const std::vector<std::uint32_t> asBuilt{0, 1, 2, 3, 4}, turnedRound{0, 4, 3, 2, 1};

// The file keeps the fan as it was found, so that it is wound after reading as after building.
TEST_F(StripCache, FansAreWoundAlongTheNormalOfTheirHub) {
  struct Case {
    const char* what;
    Vector hubNormal;
    bool turned;
  };
  for (const Case& c : {Case{"along", {0, 0, 1}, false}, Case{"away", {0, 0, -1}, true},
                        Case{"hardly along", {1, 0, 1e-5f}, false}, Case{"across", {1, 0, 0}, true},
                        Case{"no normal", {0, 0, 0}, false}}) {
    std::filesystem::remove(cache);
    for (const char* pass : {"built", "read"}) {
      TestScene fresh(1);
      Mesh& mesh = *fresh.meshes[0];
      makeTurnedFan(mesh, scaling({1, 1, 1}), c.hubNormal);
      fresh.prepare(true);
      EXPECT_EQ(mesh.fans.at(0).vertices, c.turned ? turnedRound : asBuilt) << c.what << ' ' << pass;
      EXPECT_EQ(mesh.fans.at(0).texCoords, (std::vector<std::uint32_t>{0, 1, 2, 5, 8})) << c.what;
    }
    const std::string bytes = readFile(cache);
    for (std::size_t i = 0; i < 5; ++i) {
      EXPECT_EQ(bytes.at(4 * (2 + 2 * i)), static_cast<char>(asBuilt[i])) << c.what << ": the file's fan";
    }
  }
}

// Rounded, the cosine of a right-about turn lies below -1 for some.
TEST_F(StripCache, FansThatFaceExactlyAwayAreTurned) {
  randomState() = 5;
  TestScene fresh(200);
  for (Mesh* mesh : fresh.meshes) {
    const Vector axis(randomSymmetric(1), randomSymmetric(1), randomSymmetric(1));
    makeTurnedFan(*mesh, rotation(axis, randomSymmetric(3)) * scaling(Vector(1, 1, 1) * 7.3f), {0, 0, -1});
    const auto at = [&](std::size_t k) { return mesh->vertices[k].position; };
    mesh->vertices[0].normal = -cross(at(1) - at(0), at(2) - at(0)) * 0.37f;
  }
  fresh.prepare(true);
  for (const Mesh* mesh : fresh.meshes) EXPECT_EQ(mesh->fans.at(0).vertices, turnedRound) << mesh->name;
}

}  // namespace vex
