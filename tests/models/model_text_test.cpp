#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "models/model_loader.h"
#include "tests/support/ase_text.h"
#include "tests/support/fatal.h"
#include "tests/support/model_files.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/vectors.h"

namespace vex {

namespace {

class ModelText : public ::testing::Test {
 protected:
  const TemporaryFolder folder;
  std::vector<std::string> textures;
  Scene scene;

  void read(const std::string& text) {
    writeFile("m.ase", text);
    textures.clear();
    readModel({"m.ase"}, &scene, nameTextures(textures));
  }
  Mesh& mesh(int i) { return *scene.meshes[i]; }
};

std::string fatalOf(const std::string& text) {
  return fatalText([&] {
    writeFile("m.ase", text);
    readAndDump("m.ase");
  });
}

std::vector<float> keysOf(const Animation* track) {
  std::vector<float> keys;
  if (!track) return keys;
  for (std::size_t k = 0; k < static_cast<std::size_t>(track->count); ++k) {
    for (const float value : {track->keyTime[k], track->keyX[k], track->keyY[k], track->keyZ[k]})
      keys.push_back(value);
    if (track->type == TrackType::rotation) keys.push_back(track->keyAngle[k]);
  }
  return keys;
}

AseText simpleMesh(std::string_view inMesh = "") {
  AseText text;
  text.head("1").scene().object("*GEOMOBJECT", "M").node("0 0 0");
  text.triangle();
  if (!inMesh.empty()) text.line(inMesh);
  return text.close();
}

}  // namespace

TEST_F(ModelText, FillsMeshesAndHelpers) {
  read(everyKeyword());
  ASSERT_EQ(scene.meshes.count(), 2);
  EXPECT_STREQ(mesh(0).name, "Root");
  EXPECT_EQ(mesh(0).flags, hiddenFlag | skeletonFlag);
  EXPECT_FALSE(mesh(0).lit);
  EXPECT_EQ(mesh(0).position, Vector(10, 30, -20));

  const Mesh& box = mesh(1);
  EXPECT_STREQ(box.name, "Box");
  EXPECT_EQ(box.parent, scene.meshes[0]);
  EXPECT_EQ(box.flags, 0);
  EXPECT_TRUE(box.lit);
  EXPECT_EQ(box.position, Vector(1, 3, -2));
  // The inverse of the rows is the scaling 1/2, 1/4, 1/5, which is (1/2, 1/5, 1/4) in the player's axes; the
  // factors of *TM_SCALE are (1, 2, 3) there.
  const float base[4][4] = {{0.5f, 0, 0, 0}, {0, 0.4f, 0, 0}, {0, 0, 0.75f, 0}, {0, 0, 0, 1}};
  for (int r = 0; r < 4; ++r) {
    for (int c = 0; c < 4; ++c) EXPECT_FLOAT_EQ(box.baseMatrix.m[r][c], base[r][c]) << r << c;
  }

  ASSERT_EQ(box.vertices.size(), 5u);
  ASSERT_EQ(box.faces.size(), 2u);
  EXPECT_EQ(box.faces[0].v, (std::array<std::uint32_t, 3>{0, 1, 2}));
  EXPECT_EQ(box.faces[1].v, (std::array<std::uint32_t, 3>{4, 2, 3}));
  const Vector corners[4] = {{0, 0, 0}, {1, 0, 0}, {1, 0, -1}, {0, 0.5f, -1}};
  // Face normals in the player's axes by hand: e1 x e2 of (0,1,2) and of (0,2,3).
  Vector first(0, 1, 0);
  Vector second(0.5f, 1, 0.5f);
  second.normalize();
  Vector both = first + second;
  both.normalize();
  const Vector normals[4] = {both, first, both, second};
  const int geometric[5] = {0, 1, 2, 3, 0};  // of the texture vertices
  const float uv[5][2] = {{0, 0}, {0.25f, 0}, {0.5f, 0.75f}, {0, 1}, {1, 0.5f}};
  for (std::size_t i = 0; i < 5; ++i) {
    EXPECT_EQ(box.vertices[i].position, corners[geometric[i]]) << i;
    expectNear(box.vertices[i].normal, normals[geometric[i]]);
    EXPECT_EQ(box.vertices[i].u, uv[i][0]);
    EXPECT_EQ(box.vertices[i].v, uv[i][1]);
  }
}

TEST_F(ModelText, FillsMaterials) {
  read(everyKeyword());
  const Mesh& box = mesh(1);
  EXPECT_EQ(textures, (std::vector<std::string>{"data\\Rock", "data\\chrome"}));
  EXPECT_EQ(box.texture, 0);
  const auto expectColour = [](const ColourAlpha& c, float r, float g, float b) {
    EXPECT_EQ(c.r, r);
    EXPECT_EQ(c.g, g);
    EXPECT_EQ(c.b, b);
    EXPECT_EQ(c.a, 1.0f);
  };
  expectColour(box.diffuse, 0.5f, 0.25f, 1.0f);  // read before the map
  expectColour(box.ambient, 0.1f, 0.2f, 0.3f);
  expectColour(box.specular, 0.75f, 0.5f, 0.25f);
  EXPECT_EQ(box.opacity, 0.75f);
  EXPECT_EQ(box.shininess, 0.25f);
  EXPECT_EQ(box.shineStrength, 0.625f);
  EXPECT_TRUE(box.twoSided);
  EXPECT_FALSE(box.envMap);

  std::string text = everyKeyword();
  text.replace(text.find("*MATERIAL_REF 0"), 15, "*MATERIAL_REF 1");
  read(text);
  expectColour(mesh(1).diffuse, 1, 1, 1);  // read after the map
  EXPECT_TRUE(mesh(1).envMap);
  EXPECT_FALSE(mesh(1).twoSided);
  EXPECT_EQ(mesh(1).texture, 1);

  text.replace(text.find("*MATERIAL_REF 1"), 15, "*MATERIAL_REF 2");
  read(text);
  expectColour(mesh(1).diffuse, 1, 1, 1);  // a material that the model does not have
  expectColour(mesh(1).ambient, 0, 0, 0);
  EXPECT_EQ(mesh(1).texture, -1);
  EXPECT_EQ(mesh(1).opacity, 1.0f);
}

TEST_F(ModelText, FillsTracks) {
  read(everyKeyword());
  const Mesh& box = mesh(1);
  const Animation* position = box.track(TrackType::position);
  const Animation* rotation = box.track(TrackType::rotation);
  const Animation* scale = box.track(TrackType::scale);
  EXPECT_EQ(keysOf(position), (std::vector<float>{0, 1, 3, -2, 10, 4, 6, -5}));
  EXPECT_EQ(keysOf(rotation),
            (std::vector<float>{0, 0, 1, 0, 0.5f, 20, 1, 3, -2, static_cast<float>(4.0 - 6.2831853072)}));
  EXPECT_EQ(keysOf(scale), (std::vector<float>{0, 1, 1, 1, 20, 1, 3, 2}));
  EXPECT_TRUE(position && position->smooth && position->frameLength == 10);
  EXPECT_TRUE(rotation && !rotation->smooth && rotation->frameLength == 20);
  EXPECT_TRUE(scale && scale->smooth && scale->frameLength == 20);
}

TEST_F(ModelText, FillsCamerasAndLights) {
  read(everyKeyword());
  ASSERT_EQ(scene.viewers.count(), 1);
  const Viewer& camera = *scene.viewers[0];
  EXPECT_EQ(camera.position, Vector(1, 3, -2));
  EXPECT_EQ(camera.target, Vector(4, 6, -5));
  EXPECT_EQ(camera.farPlane, 500.0f);
  EXPECT_NEAR(camera.fov, 45.0f, 1e-3f);
  EXPECT_EQ(keysOf(camera.positionTrack.get()), (std::vector<float>{0, 1, 3, -2, 10, 2, 4, -3}));
  EXPECT_EQ(keysOf(camera.targetTrack.get()), (std::vector<float>{0, 7, 9, -8, 5, 8, 10, -9}));

  ASSERT_EQ(scene.lights.count(), 2);
  const Light& lamp = *scene.lights[0];
  EXPECT_STREQ(lamp.name, "Lamp");
  EXPECT_EQ(lamp.position, Vector(7, 9, -8));
  EXPECT_TRUE(lamp.active);
  EXPECT_FALSE(lamp.spot);
  EXPECT_EQ(lamp.colour.r, 0.5f);
  EXPECT_EQ(lamp.colour.g, 0.75f);
  EXPECT_EQ(lamp.colour.b, 1.0f);
  EXPECT_EQ(lamp.intensity, 1.5f);
  EXPECT_EQ(lamp.coneAngle, 40.0f);
  EXPECT_EQ(keysOf(lamp.track(TrackType::rotation)),
            (std::vector<float>{0, 1, 0, 0, 0, 1, 0, 0, -1, static_cast<float>(6.2831853072 - 4.0)}));
  EXPECT_EQ(keysOf(lamp.track(TrackType::position)), (std::vector<float>{0, 7, 9, -8, 1, 1, 1, -1}));
  EXPECT_EQ(lamp.target, nullptr);

  const Light& spot = *scene.lights[1];
  EXPECT_EQ(spot.parent, scene.lights[0]);
  EXPECT_TRUE(spot.spot);
  EXPECT_FALSE(spot.active);
  EXPECT_EQ(spot.position, Vector(1, 1, -1));
  EXPECT_EQ(spot.spotDirection, Vector(0, -1, 0));
  EXPECT_EQ(keysOf(spot.track(TrackType::position)), (std::vector<float>{0, 1, 1, -1, 1, 2, 2, -2}));
  EXPECT_EQ(spot.track(TrackType::scale), nullptr);
  EXPECT_EQ(keysOf(spot.target.get()), (std::vector<float>{0, 3, 3, -3, 1, 4, 4, -4}));
}

TEST_F(ModelText, TurnsTheNodesMatrixIntoTheBaseMatrix) {
  AseText text;
  text.head("1").object("*GEOMOBJECT", "M").open("*NODE_TM").line("*TM_ROW0 0 1 0").line("*TM_ROW1 0 0 1");
  text.line("").line("*TM_ROW2 1 0 0").line("*TM_ROW3 1 2 3").close().close();
  read(text.str());
  // The inverse has the rows (0 0 1), (1 0 0), (0 1 0).
  const float expected[4][4] = {{0, 0, 1, 0}, {0, 0, -1, 0}, {-1, 0, 0, 0}, {0, 0, 0, 1}};
  for (int r = 0; r < 4; ++r) {
    for (int c = 0; c < 4; ++c) EXPECT_EQ(mesh(0).baseMatrix.m[r][c], expected[r][c]) << r << c;
  }
  EXPECT_EQ(mesh(0).position, Vector(1, 3, -2));

  // A static scale is applied before the base: it scales the columns.
  std::string scaled = text.str();
  scaled.insert(scaled.find("*TM_ROW0"), "*TM_SCALE 2 5 3\n");
  scaled.insert(scaled.rfind('}'), "*MESH_VERTEX_LIST {\n}\n");
  read(scaled);
  const float factors[4] = {2, 3, 5, 1};
  for (int r = 0; r < 4; ++r) {
    for (int c = 0; c < 4; ++c) EXPECT_EQ(mesh(0).baseMatrix.m[r][c], expected[r][c] * factors[c]) << r << c;
  }
}

// A cube of 8 corners whose sides share no texture vertices: equal normals on both sides of every seam.
TEST_F(ModelText, KeepsNormalsSmoothAcrossTextureSeams) {
  AseText text;
  text.head("1")
      .object("*GEOMOBJECT", "Cube")
      .open("*MESH")
      .line("*MESH_NUMVERTEX 8")
      .line("*MESH_NUMFACES 12");
  text.open("*MESH_VERTEX_LIST");
  for (int i = 0; i < 8; ++i) {
    text.line("*MESH_VERTEX " + std::to_string(i) + " " + std::to_string(i & 1) + " " +
              std::to_string(i >> 1 & 1) + " " + std::to_string(i >> 2));
  }
  text.close().open("*MESH_FACE_LIST");
  const int quads[6][4] = {{0, 2, 3, 1}, {4, 5, 7, 6}, {0, 1, 5, 4},
                           {2, 6, 7, 3}, {0, 4, 6, 2}, {1, 3, 7, 5}};
  int face = 0;
  for (const auto& q : quads) {
    for (const int half : {1, 2}) {
      text.line("*MESH_FACE " + std::to_string(face++) + ": A: " + std::to_string(q[0]) +
                " B: " + std::to_string(q[half]) + " C: " + std::to_string(q[half + 1]));
    }
  }
  text.close().line("*MESH_NUMTVERTEX 24").open("*MESH_TFACELIST");
  for (int side = 0; side < 6; ++side) {
    for (const int half : {1, 2}) {
      text.line("*MESH_TFACE " + std::to_string(side * 2 + half - 1) + " " + std::to_string(side * 4) + " " +
                std::to_string(side * 4 + half) + " " + std::to_string(side * 4 + half + 1));
    }
  }
  text.close().close().close();
  read(text.str());
  ASSERT_EQ(mesh(0).vertices.size(), 24u);
  for (std::size_t i = 0; i < 24; ++i) {
    const Vertex& vertex = mesh(0).vertices[i];
    const int corner = quads[i / 4][i % 4];
    EXPECT_EQ(vertex.position, Vector(static_cast<float>(corner & 1), static_cast<float>(corner >> 2),
                                      -static_cast<float>(corner >> 1 & 1)));
    // One or two triangles of each of three sides: outwards in all three axes, and the same on each side.
    for (std::size_t j = 0; j < i; ++j) {
      if (mesh(0).vertices[j].position == vertex.position) {
        EXPECT_EQ(mesh(0).vertices[j].normal, vertex.normal);
      }
    }
    EXPECT_GT(dot(vertex.normal, vertex.position - Vector(0.5f, 0.5f, -0.5f)), 0.7f);
    EXPECT_NEAR(vertex.normal.length(), 1.0f, 1e-6f);
  }
}

TEST_F(ModelText, GivesMeshesWithoutTextureFacesTheirGeometricNormals) {
  read(simpleMesh().str());
  ASSERT_EQ(mesh(0).vertices.size(), 3u);
  for (const Vertex& vertex : mesh(0).vertices) EXPECT_EQ(vertex.normal, Vector(0, 1, 0));
  EXPECT_EQ(mesh(0).vertices[2].position, Vector(0, 0, -2));
}

TEST_F(ModelText, StaticScalesGoIntoTheBaseMatrix) {
  const struct {
    const char* factors;
    float base[3];
  } cases[] = {
      {"1.0000 1.0000 1.0000", {1, 1, 1}}, {"2.0000 1.0000 1.0000", {2, 1, 1}}, {"1 3 1", {1, 1, 3}}};
  for (const auto& [factors, base] : cases) {
    std::string text = simpleMesh().str();
    const std::string old = "*TM_SCALE 1.0000 1.0000 1.0000";
    text.replace(text.find(old), old.size(), "*TM_SCALE " + std::string(factors));
    read(text);
    EXPECT_EQ(mesh(0).tracks, nullptr);
    for (int i = 0; i < 3; ++i) EXPECT_EQ(mesh(0).baseMatrix.m[i][i], base[i]) << factors;
  }
}

// Line by line: what a text looks like does not matter.
TEST_F(ModelText, NormalisesLines) {
  const std::string plain = dumpScene((read(simpleMesh().str()), scene));
  const struct {
    const char* title;
    std::string (*change)(std::string);
  } cases[] = {
      {"only line feeds",
       [](std::string t) {
         std::erase(t, '\r');
         return t;
       }},
      {"no tabs",
       [](std::string t) {
         std::replace(t.begin(), t.end(), '\t', ' ');
         return t;
       }},
      {"lower case",
       [](std::string t) {
         for (std::size_t at = 0; (at = t.find('*', at)) != t.npos;) {
           for (; t[at] > ' '; ++at) t[at] = static_cast<char>(std::tolower(t[at]));
         }
         return t;
       }},
      {"blanks doubled",
       [](std::string t) {
         for (std::size_t at = 0; (at = t.find(' ', at)) != t.npos; at += 3) t.replace(at, 1, "\t \x01");
         return t;
       }},
      {"bytes above 7F around",
       [](std::string t) {
         for (std::size_t at = 0; (at = t.find('\n', at)) != t.npos; at += 3) t.insert(at, "\xa0\xff");
         return "\xef\xbb\xbf" + t;
       }},
      {"empty lines",
       [](std::string t) {
         for (std::size_t at = 0; (at = t.find('\n', at)) != t.npos; at += 6) t.insert(at, "\n\r\n \t");
         return t;
       }},
      {"no last line end",
       [](std::string t) {
         t.resize(t.size() - 2);
         return t;
       }},
      {"no braces at the end",
       [](std::string t) {
         t.resize(t.rfind('}'));
         return t;
       }},
      {"lines beyond 1023 characters",
       [](std::string t) {
         const std::size_t at = t.find("AB: 1");
         return t.replace(at, 5, std::string(2000, 'x'));
       }},
  };
  for (const auto& [title, change] : cases) {
    read(change(simpleMesh().str()));
    EXPECT_EQ(dumpScene(scene), plain) << title;
  }
}

TEST_F(ModelText, ShrinksBlanksInsideQuotes) {
  AseText text;
  text.head("1").object("*GEOMOBJECT", "two  \t blanks").close();
  read(text.str());
  EXPECT_STREQ(mesh(0).name, "two blanks");
}

// What exporters write beside the subset; blocks without a keyword of their own belong to the one around.
TEST_F(ModelText, LivesWithWhatExportersWrite) {
  AseText bump;
  bump.head("1")
      .open("*MATERIAL_LIST")
      .open("*MATERIAL 0")
      .open("*MAP_BUMP")
      .line("*BITMAP \"bump.jpg\"")
      .close();
  bump.line("*MATERIAL_TWOSIDED").close().close();  // closes the list; the last brace is one too many
  bump.object("*GEOMOBJECT", "M").triangle().line("*MATERIAL_REF 0").close();
  read(bump.str());
  EXPECT_EQ(textures, (std::vector<std::string>{"data\\bump"}));
  EXPECT_EQ(mesh(0).texture, 0);
  EXPECT_TRUE(mesh(0).twoSided);

  AseText sub;
  sub.head("1")
      .open("*MATERIAL_LIST")
      .open("*MATERIAL 0")
      .line("*MATERIAL_DIFFUSE 1 0 0")
      .line("*NUMSUBMTLS 1");
  sub.open("*SUBMATERIAL 0").line("*MATERIAL_DIFFUSE 0 1 0").close().close().close();
  sub.object("*GEOMOBJECT", "M").triangle().line("*MATERIAL_REF 0").close();
  read(sub.str());
  EXPECT_EQ(mesh(0).diffuse.g, 1.0f);
  EXPECT_EQ(mesh(0).diffuse.r, 0.0f);

  AseText colours = simpleMesh();
  colours.open("*GEOMOBJECT").name("N").open("*MESH").line("*MESH_NUMVERTEX 3").line("*MESH_NUMFACES 1");
  colours.list("*MESH_VERTEX_LIST", "*MESH_VERTEX", {"0 0 0 0", "1 1 0 0", "2 0 1 0"});
  colours.list("*MESH_FACE_LIST", "*MESH_FACE", {"0: A: 0 B: 1 C: 2"});
  colours.line("*MESH_NUMCVERTEX 1").list("*MESH_CVERTLIST", "*MESH_VERTCOL", {"0 1 0 0"});
  colours.close().close();
  read(colours.str());
  EXPECT_STREQ(mesh(1).name, "N");
  EXPECT_EQ(mesh(1).vertices.size(), 3u);

  AseText shapes = simpleMesh();
  shapes.open("*SHAPEOBJECT").line("*NODE_NAME \"Line\"").line("*SHAPE_LINECOUNT 1").open("*SHAPE_LINE 0");
  shapes.line("*SHAPE_VERTEX_KNOT 0 1 2 3")
      .close()
      .close()
      .line("*GEOMOBJEKT {")
      .line("*NODE_NAMES \"x\"")
      .line("}");
  shapes.object("*GEOMOBJECT", "Last").line("*PHYSICS 1").close();
  read(shapes.str());
  ASSERT_EQ(scene.meshes.count(), 2);
  EXPECT_STREQ(mesh(1).name, "Last");

  AseText channels;
  channels.head("1")
      .object("*GEOMOBJECT", "M")
      .open("*MESH")
      .line("*MESH_NUMVERTEX 3")
      .line("*MESH_NUMFACES 1");
  channels.list("*MESH_VERTEX_LIST", "*MESH_VERTEX", {"0 0 0 0", "1 1 0 0", "2 0 1 0"});
  channels.list("*MESH_FACE_LIST", "*MESH_FACE", {"0: A: 0 B: 1 C: 2"});
  for (const char* count : {"4", "3"}) {
    const bool first = *count == '4';
    if (!first) channels.open("*MESH_MAPPINGCHANNEL 2");
    channels.line("*MESH_NUMTVERTEX " + std::string(count));
    channels.list("*MESH_TFACELIST", "*MESH_TFACE", {first ? "0 3 2 1" : "0 0 1 2"});
  }
  channels.close().close().close();
  read(channels.str());
  EXPECT_EQ(mesh(0).vertices.size(), 3u);
  EXPECT_EQ(mesh(0).faces[0].v, (std::array<std::uint32_t, 3>{0, 1, 2}));
  EXPECT_EQ(mesh(0).vertices[1].position, Vector(1, 0, 0));
}

// Whatever the number of frames, and whatever blocks they hold.
TEST_F(ModelText, SkipsMeshAnimations) {
  AseText text;
  text.head("1").object("*GEOMOBJECT", "M").triangle().open("*MESH_ANIMATION");
  for (const char* tick : {"0", "160", "320"}) {
    text.open("*MESH").line("*TIMEVALUE " + std::string(tick)).line("*MESH_NUMVERTEX 900000000");
    text.list("*MESH_VERTEX_LIST", "*MESH_VERTEX", {"0 9 9 9", "1 9 9 9", "2 9 9 9"}).close();
    text.line("*NODE_NAME \"frame\"").line("*GEOMOBJECT {").line("}");
  }
  text.close().line("*HELPER_CLASS \"Skeleton\"").close();
  read(text.str());
  ASSERT_EQ(scene.meshes.count(), 1);
  EXPECT_STREQ(mesh(0).name, "M");
  EXPECT_EQ(mesh(0).vertices[1].position, Vector(2, 0, 0));
  EXPECT_EQ(mesh(0).flags, skeletonFlag);
}

// A second list of faces, and one behind the object, work on the geometric vertices: texture vertices keep
// their normals, others take the new ones. So does the static scale.
TEST_F(ModelText, ComputesNormalsAndBakesScalesWhereverTheListsStand) {
  const auto build = [](std::string_view insideEnd, std::string_view behind) {
    AseText text;
    text.head("1").object("*GEOMOBJECT", "M").line("*TM_SCALE 2 2 2").open("*MESH");
    text.line("*MESH_NUMVERTEX 3").line("*MESH_NUMFACES 1");
    if (behind.empty())
      text.list("*MESH_VERTEX_LIST", "*MESH_VERTEX", {"0 0 0 0", "1 1 0 0", "2 0 1 0"});
    else
      text.line("*MESH_FACE_LIST {").line("}").line("*TIMEVALUE 0");
    if (behind.empty()) text.list("*MESH_FACE_LIST", "*MESH_FACE", {"0: A: 0 B: 1 C: 2"});
    if (!insideEnd.empty()) text.line(insideEnd);
    if (!insideEnd.empty()) text.list("*MESH_FACE_LIST", "*MESH_FACE", {"0: A: 2 B: 1 C: 0"});
    text.close().close();
    if (!behind.empty()) text.line(behind).line("}");
    return text.str();
  };
  const std::string textureFaces = "*MESH_NUMTVERTEX 3\n*MESH_TFACELIST {\n*MESH_TFACE 0 0 1 2\n}";
  read(build(textureFaces, ""));
  for (const Vertex& vertex : mesh(0).vertices) EXPECT_EQ(vertex.normal, Vector(0, 1, 0));
  read(build("*TIMEVALUE 0", ""));
  for (const Vertex& vertex : mesh(0).vertices) EXPECT_EQ(vertex.normal, Vector(0, -1, 0));
  EXPECT_EQ(mesh(0).tracks, nullptr);
  read(build("", "*MESH_VERTEX_LIST {"));
  EXPECT_EQ(mesh(0).tracks, nullptr);
  EXPECT_EQ(mesh(0).baseMatrix.m[0][0], 2.0f);

  AseText light;  // between the mesh and its list of faces
  light.head("1").object("*GEOMOBJECT", "M").open("*MESH").line("*MESH_NUMVERTEX 3").line("*MESH_NUMFACES 1");
  light.list("*MESH_VERTEX_LIST", "*MESH_VERTEX", {"0 0 0 0", "1 1 0 0", "2 0 1 0"});
  light.list("*MESH_FACE_LIST", "*MESH_FACE", {"0: A: 0 B: 1 C: 2"}).close().close();
  light.object("*LIGHTOBJECT", "L")
      .line("*LIGHT_TYPE Omni")
      .line("*MESH_NUMFACES 1")
      .list("*MESH_FACE_LIST", "*X", {})
      .close();
  read(light.str());
  // The face has three times vertex 0 now: no normal, and the ones before are gone.
  for (const Vertex& vertex : mesh(0).vertices) EXPECT_EQ(vertex.normal, Vector(0, 0, 0));
}

// All lists of an animation share its last frame so far; the next animation begins anew.
TEST_F(ModelText, ListsOfAnAnimationShareTheirLastFrame) {
  AseText text;
  text.head("1");
  for (const char* last : {"3200 1 1 1", "800 1 1 1"}) {
    text.open("*GEOMOBJECT").open("*TM_ANIMATION");
    text.list("*CONTROL_SCALE_TRACK", "*CONTROL_SCALE_SAMPLE", {"0 1 1 1", "320 1 1 1"});
    text.list("*CONTROL_POS_TRACK", "*CONTROL_POS_SAMPLE", {"0 0 0 0", last});
    text.list("*CONTROL_ROT_TRACK", "*CONTROL_ROT_SAMPLE", {"0 0 0 1 0", "160 0 0 1 1"}).close().close();
  }
  read(text.str());
  const float lengths[2][3] = {{2, 20, 20}, {2, 5, 5}};
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(mesh(i).track(TrackType::scale)->frameLength, lengths[i][0]);
    EXPECT_EQ(mesh(i).track(TrackType::position)->frameLength, lengths[i][1]);
    EXPECT_EQ(mesh(i).track(TrackType::rotation)->frameLength, lengths[i][2]);
  }
}

// A model that says nothing of its times has 160 ticks a frame and 30 frames a second, whatever the last one
// had.
TEST_F(ModelText, TicksBeginAnewWithEachModel) {
  AseText fast, silent;
  fast.open("*SCENE").line("*SCENE_TICKSPERFRAME 80").close();
  for (AseText* text : {&fast, &silent}) {
    text->object("*GEOMOBJECT", "M").open("*TM_ANIMATION");
    text->list("*CONTROL_POS_TRACK", "*CONTROL_POS_SAMPLE", {"0 0 0 0", "320 1 1 1"}).close().close();
  }
  read(fast.str());
  EXPECT_EQ(mesh(0).track(TrackType::position)->frameLength, 4.0f);
  read(silent.str());
  EXPECT_EQ(mesh(0).track(TrackType::position)->frameLength, 2.0f);
}

// What a material does not say is what the same row had in the model before, but for texture and sides.
TEST_F(ModelText, KeepsTheMaterialTableFromLoadToLoad) {
  std::string text = everyKeyword();
  text.replace(text.find("*MAP_TYPE Screen"), 16, "*MAP_TYPE Spherical");
  read(text);
  AseText bare;
  bare.head("1").open("*MATERIAL_LIST").open("*MATERIAL 0").close().close();
  bare.object("*GEOMOBJECT", "M").triangle().line("*MATERIAL_REF 0").close();
  bare.object("*GEOMOBJECT", "N").triangle().line("*MATERIAL_REF 1").close();
  read(bare.str());
  EXPECT_EQ(mesh(0).ambient.g, 0.2f);
  EXPECT_EQ(mesh(0).diffuse.g, 0.25f);
  EXPECT_EQ(mesh(0).specular.g, 0.5f);
  EXPECT_EQ(mesh(0).opacity, 0.75f);
  EXPECT_EQ(mesh(0).shininess, 0.25f);
  EXPECT_EQ(mesh(0).shineStrength, 0.625f);
  EXPECT_TRUE(mesh(0).envMap);
  EXPECT_FALSE(mesh(0).twoSided);
  EXPECT_EQ(mesh(0).texture, -1);
  EXPECT_EQ(mesh(1).ambient.g, 0.0f);  // no row of this model
}

// Names of objects have 31 characters, those of targets 63.
TEST_F(ModelText, TakesNamesOfFullLength) {
  const std::string name(31, 'n'), target(63, 't');
  AseText text;
  text.head("1").object("*GEOMOBJECT", name).close();
  text.object("*LIGHTOBJECT", name).line("*LIGHT_TYPE Target").node("0 0 0").name(target);
  text.open("*TM_ANIMATION").name(target);
  text.list("*CONTROL_POS_TRACK", "*CONTROL_POS_SAMPLE", {"0 0 0 0"}).close().close();
  read(text.str());
  EXPECT_EQ(mesh(0).name, name);
  EXPECT_EQ(scene.lights[0]->name, name);
  EXPECT_NE(scene.lights[0]->target, nullptr);
}

// A line of more than 1023 characters goes on as another one.
TEST_F(ModelText, CutsLinesBehind1023Characters) {
  for (const int size : {1022, 1023, 1024}) {
    std::string line = "*X " + std::string(1024, 'x');
    line.resize(static_cast<std::size_t>(size));
    read("*GEOMOBJECT {\n" + line + "*NODE_NAME \"cut\"\n" + line + "\n*HELPER_CLASS \"Skeleton\"\n}\n");
    EXPECT_STREQ(mesh(0).name, size == 1023 ? "cut" : "") << size;
    EXPECT_EQ(mesh(0).flags, skeletonFlag) << size;
  }
}

// An index with and without its colon; fewer texture vertices than vertices.
TEST_F(ModelText, KeepsSurplusVerticesOutOfTheMesh) {
  AseText text;
  text.head("1").object("*GEOMOBJECT", "M").open("*MESH").line("*MESH_NUMVERTEX 4").line("*MESH_NUMFACES 1");
  text.list("*MESH_VERTEX_LIST", "*MESH_VERTEX", {"0 5 5 5", "1 0 0 0", "2 1 0 0", "3 0 1 0"});
  text.list("*MESH_FACE_LIST", "*MESH_FACE", {"0 A: 1 B: 2 C: 3"}).line("*MESH_NUMTVERTEX 3");
  text.list("*MESH_TFACELIST", "*MESH_TFACE", {"0 2 1 0"}).close().close();
  read(text.str());
  ASSERT_EQ(mesh(0).vertices.size(), 3u);
  EXPECT_EQ(mesh(0).vertices[0].position, Vector(0, 0, -1));
  EXPECT_EQ(mesh(0).vertices[2].position, Vector(0, 0, 0));
}

TEST_F(ModelText, CountersAndSceneHeaderStartAfresh) {
  read(everyKeyword());
  AseText text;
  text.head("1").open("*HELPEROBJECT").name("H").open("*TM_ANIMATION");
  text.list("*CONTROL_POS_TRACK", "*CONTROL_POS_SAMPLE", {"0 0 0 0", "480 1 1 1"}).close().close();
  read(text.str());
  EXPECT_TRUE(mesh(0).vertices.empty());
  EXPECT_EQ(mesh(0).track(TrackType::position)->frameLength, 3.0f);
  EXPECT_EQ(scene.lights.count(), 0);
  EXPECT_EQ(scene.viewers.count(), 0);
}

TEST_F(ModelText, RefusesByNameAndLine) {
  const auto inMesh = [](const char* line) { return simpleMesh(line).str(); };
  const auto mesh = [](std::initializer_list<const char*> lines) {
    AseText text;
    text.head("1").open("*GEOMOBJECT").name("M").open("*MESH");
    for (const char* line : lines) text.line(line);
    return text.close().close().str();
  };
  const auto keys = [](std::initializer_list<std::string_view> lines) {
    AseText text;
    text.head("1").open("*GEOMOBJECT").name("M").open("*TM_ANIMATION");
    return text.list("*CONTROL_POS_TRACK", "*CONTROL_POS_SAMPLE", lines).close().close().str();
  };
  std::string deep = AseText().head("1").str(), materials = deep + "*MATERIAL_LIST {\n", meshes = deep;
  for (int i = 0; i < 3000; ++i) deep += "*MESH_NORMALS {\n";
  for (int i = 0; i < 101; ++i) materials += "*MATERIAL 0 {\n}\n";
  for (int i = 0; i < 1001; ++i) meshes += "*GEOMOBJECT {\n}\n";
  const struct {
    std::string text;
    const char* message;
  } cases[] = {
      {"", "m.ase is empty"},
      {std::string("\xff\xfe*\0S\0C\0", 8), "m.ase is UTF-16 text, models are ASCII"},
      {"\xfe\xff", "m.ase is UTF-16 text, models are ASCII"},
      {"hello\n\n", "m.ase isn't a model: no line begins with a keyword"},
      {"\n\n", "m.ase isn't a model: no line begins with a keyword"},
      {"*SCENE {\n*SCENE_FIRSTFRAME 1\n}\n", "Animations must start at frame 0! (m.ase:2)"},
      {"*SCENE {\n*SCENE_TICKSPERFRAME 0\n}\n", "0 ticks per frame aren't possible (m.ase:2)"},
      {"*SCENE {\n*SCENE_FRAMESPEED -1\n}\n", "-1 frames per second aren't possible (m.ase:2)"},
      {"*LIGHTOBJECT {\n*LIGHT_TYPE Free Direct\n}\n", "unsupported light type Free Direct (m.ase:2)"},
      {"*CAMERAOBJECT {\n*NODE_PARENT \"M\"\n}\n", "parent outside light/mesh found (m.ase:2)"},
      {"*LIGHTOBJECT {\n*NODE_PARENT \"M\"\n}\n", "M not found in  (m.ase:2)"},
      {"*GEOMOBJECT {\n*NODE_NAME \"M\"\n*NODE_PARENT \"m\"\n}\n",
       "object m can't be a parent of itself (m.ase:3)"},
      {"*GEOMOBJECT {\n*NODE_NAME M\n}\n", "a text in quotes is missing (m.ase:2)"},
      {"*GEOMOBJECT {\n\n*NODE_NAME \"M\n}\n", "a text in quotes is missing (m.ase:3)"},
      {"*GEOMOBJECT {\n*NODE_NAME \"abcdefghijklmnopqrstuvwxyz012345\"\n}\n",
       "name abcdefghijklmnopqrstuvwxyz012345 is longer than 31 characters (m.ase:2)"},
      {"*LIGHTOBJECT {\n*NODE_NAME \"abcdefghijklmnopqrstuvwxyz012345\"\n}\n",
       "name abcdefghijklmnopqrstuvwxyz012345 is longer than 31 characters (m.ase:2)"},
      {inMesh("*MATERIAL_REF 100"), "material 100 isn't one of 0 to 99 (m.ase:32)"},
      {inMesh("*MATERIAL_REF -1"), "material -1 isn't one of 0 to 99 (m.ase:32)"},
      {mesh({"*MESH_NUMVERTEX 2000000000"}), "2000000000 vertices can't be in this file (m.ase:6)"},
      {mesh({"*MESH_NUMFACES 99999999999"}), "2147483647 faces can't be in this file (m.ase:6)"},
      {mesh({"*MESH_NUMTVERTEX -1"}), "-1 texture vertices can't be in this file (m.ase:6)"},
      {mesh({"*MESH_NUMVERTEX 1", "*MESH_VERTEX_LIST {", "*MESH_VERTEX 1 0 0 0", "}"}),
       "vertex 1 isn't one of the 1 announced (m.ase:8)"},
      {inMesh("") + "*GEOMOBJECT {\n*MESH {\n*MESH_VERTEX_LIST {\n*MESH_VERTEX 0 0 0 0\n}\n}\n}\n",
       "vertex 0 isn't one of the 0 announced (m.ase:36)"},
      {mesh({"*MESH_NUMVERTEX 1", "*MESH_NUMFACES 1", "*MESH_FACE_LIST {", "*MESH_FACE 0: A: 0 B: 0 C: -1",
             "}"}),
       "vertex -1 isn't one of the 1 announced (m.ase:9)"},
      {mesh({"*MESH_NUMVERTEX 1", "*MESH_NUMFACES 1", "*MESH_FACE_LIST {", "*MESH_FACE 1: A: 0 B: 0 C: 0",
             "}"}),
       "face 1 isn't one of the 1 announced (m.ase:9)"},
      {mesh({"*MESH_NUMVERTEX 1", "*MESH_NUMFACES 1", "*MESH_NUMTVERTEX 2", "*MESH_TFACELIST {",
             "*MESH_TFACE 0 0 1 2", "}"}),
       "texture vertex 2 isn't one of the 2 announced (m.ase:10)"},
      {mesh({"*MESH_NUMTVERTEX 2", "*MESH_TVERTLIST {", "*MESH_TVERT 2 0 0", "}"}),
       "texture vertex 2 isn't one of the 2 announced (m.ase:8)"},
      {mesh({"*MESH_NUMFACES 1"}), "m.ase: face 0 of mesh M uses vertex 0, there are 0"},
      {mesh({"*MESH_NUMVERTEX 3", "*MESH_NUMFACES 1", "*MESH_FACE_LIST {", "*MESH_FACE 0: A: 0 B: 1 C: 2",
             "}", "*MESH_NUMTVERTEX 2"}),
       "m.ase: face 0 of mesh M uses vertex 2, there are 2"},
      {keys({"0 0 0 0", "159 1 1 1"}), "Animation: same keyframe twice\n(m.ase:8)"},
      {"*GEOMOBJECT {\n*CONTROL_POS_SAMPLE 0 0 0 0\n}\n", "Animation: insertKey() without type\n(m.ase:2)"},
      {keys({"0 0 0 0"}) + "*CONTROL_POS_SAMPLE 160 0 0 0\n",
       "Animation: insertKey() beyond the 1 keys allocated\n(m.ase:11)"},
      {"*GEOMOBJECT {\n*NODE_TM {\n*TM_ROW0 1 0 0\n*TM_ROW1 1 0 0\n*TM_ROW2 0 0 1\n*TM_ROW3 0 0 0\n}\n}\n",
       "singular matrix! (rotation of mesh , m.ase:6)"},
      {deep, "more than 2048 blocks are open (m.ase:2051)"},
      {materials, "more than 100 materials (m.ase:204)"},
      {meshes, "more than 1000 meshes (m.ase:2003)"},
  };
  for (const auto& [text, message] : cases) EXPECT_EQ(fatalOf(text), message);
  EXPECT_EQ(fatalText([] {
              Scene none;
              readModel({"none.ase"}, &none);
            }),
            "File none.ase not found");
  EXPECT_EQ(fatalText([] {
              Scene none;
              readModel({"m.old.ase"}, &none);
            }),
            "unknown 3d format (m.old.ase)");
  std::filesystem::remove("m.ase");
  std::filesystem::create_symlink("/dev/null", "m.ase");
  EXPECT_EQ(fatalText([] {
              Scene none;
              readModel({"m.ase"}, &none);
            }),
            "can't read m.ase: Operation not supported");
}

// Whoever resolves textures may throw. Nothing of the load is left: no file, no place in messages, no
// material.
TEST_F(ModelText, LeavesNothingOfALoadThatIsBrokenOff) {
  writeFile("m.ase", everyKeyword());
  const auto breakOff = [](const char*, bool) -> int { throw 0; };
  EXPECT_THROW(readModel({"m.ase", "m.hv3"}, &scene, breakOff), int);
  std::filesystem::remove("m.ase");
  EXPECT_TRUE(std::filesystem::is_empty("."));
  EXPECT_EQ(fatalText([] { readAndDump("none.ase"); }), "File none.ase not found");
  AseText text;
  text.open("*MATERIAL_LIST").open("*MATERIAL 0").close().close().object("*GEOMOBJECT", "M");
  read(text.line("*MATERIAL_REF 0").close().str());
  EXPECT_EQ(mesh(0).opacity, 1.0f);
}

// Two tracks of a kind, as an object that is animated twice would have.
TEST_F(ModelText, RefusesASecondTrackOfAKind) {
  AseText text;
  text.head("1").object("*GEOMOBJECT", "M");
  for (int i = 0; i < 2; ++i) {
    text.open("*TM_ANIMATION").list("*CONTROL_POS_TRACK", "*CONTROL_POS_SAMPLE", {"0 0 0 0"}).close();
  }
  EXPECT_EQ(fatalOf(text.close().str()), "Object3D M: duplicated animation of type position\n(m.ase:13)");
}

TEST_F(ModelText, WrapsAnglesOfAnySize) {
  constexpr double turn = 6.283185307179586;
  for (const char* angle : {"3.1", "3.2", "-3.2", "9.5", "12", "-20.5", "100", "314.5", "-500", "627", "1e30",
                            "-1e30", "inf", "nan", "1e9"}) {
    AseText text;
    text.head("1").object("*GEOMOBJECT", "M").open("*TM_ANIMATION");
    text.list("*CONTROL_ROT_TRACK", "*CONTROL_ROT_SAMPLE", {"0 0 0 1 " + std::string(angle)}).close().close();
    read(text.str());
    const float stored = mesh(0).track(TrackType::rotation)->keyAngle[0];
    EXPECT_FALSE(std::fabs(stored) > 3.1415927f) << angle;
    // Up to 100 steps, each rounded to a float.
    if (const double given = std::strtod(angle, nullptr); std::fabs(given) < 1000) {
      EXPECT_NEAR(stored, std::remainder(given, turn), 1e-3) << angle;
    }
  }
}

}  // namespace vex
