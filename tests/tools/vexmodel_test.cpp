#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/png_file.h"
#include "tests/support/ase_text.h"
#include "tests/support/gltf_text.h"
#include "tests/support/model_files.h"
#include "tests/support/png.h"
#include "tests/support/temporary_folder.h"

namespace vex {

namespace {

namespace fs = std::filesystem;

Program vexmodel(const std::string& arguments) {
  return runProgram(VEX_BIN "/vexmodel " + arguments);
}

constexpr const char* triangleModel = "data/Model.ASE";

std::string triangleText(bool camera) {
  AseText text;
  text.head("1").scene().open("*MATERIAL_LIST").open("*MATERIAL 0").line("*MATERIAL_AMBIENT 1 1 1");
  text.line("*MATERIAL_TWOSIDED").open("*MAP_DIFFUSE").line("*BITMAP \"Rock.jpg\"").close().close().close();
  text.object("*GEOMOBJECT", "T\"1\"").node("1 2 3").triangle().line("*MATERIAL_REF 0").close();
  if (camera) text.object("*CAMERAOBJECT", "C").node("0.5 0.5 4").node("0.5 0.6 0").close();
  return text.str();
}

}  // namespace

TEST(Vexmodel, PrintsJson) {
  const TemporaryFolder folder;
  std::string text = triangleText(true);
  text.replace(text.find("T\"1\""), 4, "T\\1  ");
  writeFile(triangleModel, text);
  const Program info = vexmodel(std::string("info --json --geometry --at 0.5 ") + triangleModel);
  EXPECT_EQ(info.errors, "");
  // The view looks from (0.5, 4, -0.5) down to (0.5, 0, -0.6): its third row leads to the eye.
  EXPECT_NE(info.output.find("\"viewers\":[\n  {\"position\":[0.5,4,-0.5],\"target\":[0.5,0,-0.600000024],"
                             "\"fov\":90,\"farPlane\":1000000,\"positionTrack\":null,\"targetTrack\":null,"
                             "\"view\":[["),
            std::string::npos)
      << info.output;
  const std::string mesh =
      R"({"source":"text",
"meshes":[
  {"name":"T\\1 ","kind":"mesh","parent":null,"hidden":false,"skeleton":false,"position":[1,3,-2],)"
      R"("baseMatrix":[[1,0,0,0],[0,1,-0,0],[-0,-0,1,-0],[0,0,0,1]],"vertices":3,"faces":1,"lit":true,)"
      R"("material":{"diffuse":[1,1,1,1],"ambient":[1,1,1,1],"specular":[1,1,1,1],"opacity":1,"shininess":0,)"
      R"("shineStrength":0,"texture":"data\\Rock","envMap":false,"twoSided":true},"radius":3.7416575,)"
      R"("bounds":{"min":[0,0,-2],"max":[2,0,-0]},"tracks":[],"positions":[0,0,-0,2,0,-0,0,0,-2],)"
      R"("normals":[0,1,0,0,1,0,0,1,0],"uvs":[0,0,0,0,0,0],"indices":[0,1,2],)"
      R"("matrix":[[1,0,0,0],[0,1,0,0],[0,0,1,0],[0,0,0,1]]}
],
"lights":[],
)";
  EXPECT_EQ(info.output.substr(0, mesh.size()), mesh);
  EXPECT_TRUE(info.output.ends_with("\"missingTextures\":[\"data\\\\Rock\"]}\n")) << info.output;
  EXPECT_FALSE(fs::exists("data/Model.hv3")) << "looking writes nothing";

  writeFile("data/ROCK.jpg", "not looked into");
  EXPECT_TRUE(
      vexmodel(std::string("info --json ") + triangleModel).output.ends_with("\"missingTextures\":[]}\n"));
}

TEST(Vexmodel, PrintsTracksAndLights) {
  const TemporaryFolder folder;
  writeFile("m.ase", everyKeyword());
  const std::string json = vexmodel("info m.ase --json").output;
  for (
      const char* part :
      {R"("parent":"Root")", R"("hidden":true,"skeleton":true)",
       R"("tracks":[{"type":"scale","keys":2,"frameLength":20,"duration":1,"smooth":true},{"type":"rotation",)"
       R"("keys":2,"frameLength":20,"duration":1,"smooth":false},{"type":"position","keys":2,"frameLength":10,)"
       R"("duration":1,"smooth":true}])",
       R"({"name":"Spot","parent":"Lamp","position":[1,1,-1],"spot":true,"active":false,"colour":[1,1,1],)"
       R"("intensity":1,"coneAngle":45,"tracks":[{"type":"position","keys":2,"frameLength":1,"duration":1,)"
       R"("smooth":false}],"target":{"type":"position","keys":2,"frameLength":1,"duration":1,"smooth":false}})"}) {
    EXPECT_NE(json.find(part), std::string::npos) << part << "\n" << json;
  }
  const std::string text = vexmodel("info m.ase").output;
  EXPECT_NE(
      text.find(
          "mesh   Box: 5 vertices, 2 faces, at 1 3 -2, child of Root, scale track of 2 keys, rotation "
          "track of 2 keys, position track of 2 keys\n"
          "       material: diffuse 0.5 0.25 1 1, ambient 0.1 0.2 0.3 1, specular 0.75 0.5 0.25 1, opacity "
          "0.75, shininess 0.25, strength 0.625, texture data\\Rock, two-sided\n"),
      std::string::npos)
      << text;
}

// One texture whatever its case; the player takes names of 31 characters with their folder.
TEST(Vexmodel, NamesTexturesAsThePlayerDoes) {
  const TemporaryFolder folder;
  const std::string longest(26, 'l'), tooLong(27, 'L');
  AseText text;
  text.head("1").scene().open("*MATERIAL_LIST");
  int material = 0;
  for (const std::string& name : {std::string("Rock"), std::string("ROCK"), longest, tooLong}) {
    text.open("*MATERIAL " + std::to_string(material++)).open("*MAP_DIFFUSE");
    text.line("*BITMAP \"" + name + ".jpg\"").line("*MAP_TYPE Spherical").close().close();
  }
  text.close();
  for (int i = 0; i < material; ++i) {
    text.object("*GEOMOBJECT", "G" + std::to_string(i)).node("0 0 0").triangle();
    text.line("*MATERIAL_REF " + std::to_string(i)).close();
  }
  writeFile("data/m.ase", text.str());
  writeFile("data/" + longest + ".bmp", "not looked into");
  const std::string json = vexmodel("info --json data/m.ase").output;
  EXPECT_NE(json.find("\"name\":\"G1\""), std::string::npos) << json;
  EXPECT_EQ(json.find("ROCK"), std::string::npos) << json;
  const std::string refused = "data\\" + tooLong;
  EXPECT_TRUE(json.ends_with("\"longTextures\":[\"data\\\\" + tooLong +
                             "\"],\n\"missingTextures\":[\"data\\\\Rock\",\"data\\\\" + tooLong + "\"]}\n"))
      << json;
  const std::string info = vexmodel("info data/m.ase").output;
  EXPECT_NE(info.find("texture data\\Rock, environment map\n"), std::string::npos) << info;
  EXPECT_TRUE(info.ends_with("missing texture data\\Rock\nmissing texture " + refused + "\ntexture name " +
                             refused + " has 32 characters, the player takes 31\n"))
      << info;
}

TEST(Vexmodel, CompilesBesideTheText) {
  const TemporaryFolder folder;
  writeFile("sub/data/m.ase", everyKeyword());
  EXPECT_EQ(vexmodel("compile sub/data/m.ase").errors, "");
  const std::string text = vexmodel("info --json --geometry --at 0.25 sub/data/m.ase").output;
  std::string compiled = vexmodel("info --json --geometry --at 0.25 sub/data/m.hv3").output;
  ASSERT_TRUE(compiled.starts_with("{\"source\":\"compiled\""));
  EXPECT_EQ(compiled.replace(11, 8, "text"), text);

  const struct {
    const char* arguments;
    const char* content;
    const char* message;
  } cases[] = {
      {"compile none.ase", nullptr, "File none.ase not found"},
      {"compile sub/data/m.hv3", nullptr, "sub/data/m.hv3 isn't the text of a model (.ase)"},
      {"compile a.b.ase", "*SCENE {\n}\n", "unknown 3d format (a.b.ase)"},
      {"compile bad.ase", "*MATERIAL_REF 1000\n", "material 1000 isn't one of 0 to 99 (bad.ase:1)"},
      {"compile bad.ase", "*MESH_VERTEX 0 0 0 0\n",
       "bad.ase can't be compiled: bad.ase:1: an entry stands outside its list"},
      {"info none/m.ase", nullptr, "none/m.ase: can't go to folder"},
      {"info m.max", "x", "unknown 3d format (m.max)"},
      {"info sub/data/m.ase >/dev/full", nullptr, "can't write standard output: No space left on device"},
  };
  for (const auto& [arguments, content, message] : cases) {
    if (content) writeFile(std::string(arguments).substr(std::string(arguments).find(' ') + 1), content);
    const Program program = vexmodel(arguments);
    EXPECT_EQ(program.exitCode, 255) << arguments;
    EXPECT_TRUE(program.errors.starts_with("vexmodel: " + std::string(message))) << program.errors;
  }
  EXPECT_FALSE(fs::exists("bad.hv3"));
}

TEST(Vexmodel, DrawsThroughTheCameraOrFromAllSides) {
  const TemporaryFolder folder;
  writeFile("data/cam.ase", triangleText(true));
  writeFile("data/none.ase", triangleText(false));
  Program view = vexmodel("view data/cam.ase --out cam.png --size 64x48");
  EXPECT_EQ(view.exitCode, 0) << view.errors;
  EXPECT_EQ(view.errors, "vexmodel: texture data\\Rock is missing, drawn without it\n");
  EXPECT_EQ(readPng("cam.png").width, 64);
  EXPECT_EQ(readPng("cam.png").height, 48);
  std::string away = triangleText(true);
  away.replace(away.find("*TM_POS 0.5 0.6 0"), 17, "*TM_POS 0.5 0.6 9");
  writeFile("data/cam.ase", away);
  EXPECT_EQ(vexmodel("view data/cam.ase --out away.png --size 64x48").exitCode, 0);
  EXPECT_NE(readFile("cam.png"), readFile("away.png"));

  EXPECT_EQ(vexmodel("view data/none.ase --out none.png --size 64x48").exitCode, 0);
  const Png png = readPng("none.png");
  ASSERT_EQ(png.width, 8 + 6 * (320 + 8));
  // A lying triangle with the right angle at the back and the left, from a little above.
  const struct {
    int side, x, y;  // in eighths of the way around and of 320 x 240 pixels
    bool white;
  } points[] = {{1, 128, 120, true}, {1, 192, 120, false}, {3, 160, 110, true}, {3, 160, 140, false},
                {5, 192, 120, true}, {5, 128, 120, false}, {7, 160, 140, true}, {7, 160, 110, false}};
  const int row = 240 + (png.height - 8 - 2 * 240) / 2;
  for (const auto& [side, x, y, white] : points) {
    const int grey = white ? 255 : 0;
    EXPECT_EQ(png.at(8 + side % 6 * 328 + x, 8 + side / 6 * row + y), (std::vector<int>{grey, grey, grey}))
        << side << " at " << x << ", " << y;
  }

  view = vexmodel("view data/cam.ase --out x.png --camera 1");
  EXPECT_EQ(view.exitCode, 255);
  EXPECT_EQ(view.errors.substr(view.errors.rfind("vexmodel")),
            "vexmodel: data/cam.ase has no camera 1, only 1 of them\n");
  EXPECT_EQ(vexmodel("view data/cam.ase --out none/x.png").errors,
            "vexmodel: can't write none/x.png: No such file or directory\n");
}

TEST(Vexmodel, DrawsFormsAndPartsAndPoses) {
  const TemporaryFolder folder;
  std::string text = triangleText(true);
  const std::string camera = text.substr(text.find("*CAMERAOBJECT"));
  text.erase(text.find("*CAMERAOBJECT"));
  const std::string track =
      "*TM_ANIMATION {\n*CONTROL_POS_TRACK {\n*CONTROL_POS_SAMPLE 0 1 2 3\n*CONTROL_POS_SAMPLE 16000 1 2 "
      "-90\n}\n}\n";
  text.insert(text.rfind('}'), track);
  writeFile("data/m.ase", text + camera);
  const auto middle = [](const std::string& options) {
    const Program view = vexmodel("view data/m.ase --out m.png --size 64x48 " + options);
    EXPECT_EQ(view.exitCode, 0) << options << view.errors;
    return readPng("m.png").at(34, 22);
  };
  const std::vector<int> black{0, 0, 0};
  EXPECT_EQ(middle(""), (std::vector<int>{255, 255, 255}));
  const std::vector<int> bare = middle("--bare");
  EXPECT_GT(bare[0], 30);
  EXPECT_LT(bare[0], 225);
  EXPECT_EQ(bare, std::vector<int>(3, bare[0]));
  EXPECT_EQ(middle("--hide 'T*'"), black);
  const std::vector<int> later = middle("--at 0.9");
  EXPECT_NE(later, middle(""));
  EXPECT_EQ(middle("--pose 'T*=0.9'"), later);
  EXPECT_NE(middle("--at 0.9 --pose 'T*=0'"), later);
  for (const char* options : {"--hide Q", "--pose Q=1"}) {
    const Program view = vexmodel(std::string("view data/m.ase --out m.png --size 64x48 ") + options);
    EXPECT_EQ(view.exitCode, 255) << options;
    EXPECT_TRUE(view.errors.ends_with("data/m.ase has nothing of the name Q\n")) << view.errors;
  }
}

namespace {

std::string boxGltf() {
  GltfText text;
  text.material(R"("name": "paint", "pbrMetallicRoughness": {"baseColorTexture": {"index": 0}})");
  text.textureAt("paint.png");
  text.mesh({.positions = {{0, 0, 0}, {2, 0, 0}, {0, 2, 0}},
             .uvs = {{0, 0}, {1, 0}, {0, 1}},
             .indices = {0, 1, 2},
             .material = 0});
  text.node(R"("name": "Lava", "mesh": 0)");
  return text.str();
}

}  // namespace

TEST(Vexmodel, ImportsAFileAndItsTextures) {
  const TemporaryFolder folder;
  writeFile("in/box.gltf", boxGltf());
  ReplacementFile png("in/paint.png");
  ASSERT_TRUE(writePng(png, 4, 4, std::vector<std::byte>(48, std::byte{200})));
  const std::string came =
      "came    1 meshes of 1 triangles and 3 vertices, 0 helpers, 1 materials\n"
      "came    0 cameras, 0 lights\n"
      "came    a size of only 2; what is nearer to the eye than 1 is not drawn, --scale makes it larger\n"
      "came    texture data/paint.bmp, 4x4\n";
  Program import = vexmodel("import in/box.gltf out/data/box.ase --dry-run");
  EXPECT_EQ(import.output, came);
  EXPECT_FALSE(fs::exists("out"));
  fs::create_directories("out/data");
  import = vexmodel("import in/box.gltf out/data/box.ase");
  EXPECT_EQ(import.exitCode, 0) << import.errors;
  EXPECT_EQ(import.output, came);
  EXPECT_TRUE(fs::exists("out/data/paint.bmp"));
  const std::string info = vexmodel("info out/data/box.ase").output;
  EXPECT_NE(info.find("texture data\\paint"), std::string::npos) << info;
  EXPECT_EQ(info.find("missing"), std::string::npos) << info;

  import = vexmodel("import in/box.gltf out/other.ase --dir run --scale 100 --json");
  EXPECT_EQ(
      import.output,
      R"({"came":["1 meshes of 1 triangles and 3 vertices, 0 helpers, 1 materials","0 cameras, 0 lights",)"
      R"("texture data/paint.bmp, 4x4"],"changed":[],"left":[]})"
      "\n");
  EXPECT_TRUE(fs::exists("run/data/paint.bmp"));
  EXPECT_NE(vexmodel("info out/other.ase --json --geometry")
                .output.find("\"positions\":[0,0,-0,200,0,-0,0,200,-0]"),
            std::string::npos);

  EXPECT_EQ(vexmodel("import in/box.gltf out.txt").errors,
            "vexmodel: out.txt isn't the text of a model (.ase)\n");
  EXPECT_EQ(vexmodel("import in/none.gltf out.ase").errors,
            "vexmodel: in/none.gltf: No such file or directory\n");
  EXPECT_EQ(vexmodel("import in/none.gltf out.ase").exitCode, 255);
}

TEST(Vexmodel, ExportsAndChecks) {
  const TemporaryFolder folder;
  writeFile("data/model.ase", triangleText(true));
  const Program out = vexmodel("export data/model.ase model.glb");
  EXPECT_EQ(out.output,
            "left    texture Rock: no such file\n"
            "came    1 meshes, 1 materials, 1 cameras, 0 lights, 0 moving things\n")
      << out.errors;
  EXPECT_EQ(vexmodel("import model.glb data/back.ase").exitCode, 0);
  EXPECT_NE(vexmodel("info data/back.ase").output.find("1 meshes, 0 lights, 1 cameras, 3 vertices, 1 faces"),
            std::string::npos);
  EXPECT_EQ(vexmodel("export data/model.ase model.txt").errors,
            "vexmodel: model.txt isn't a binary glTF file (.glb)\n");

  Program check = vexmodel("check data/model.ase --scene SceneLayerWide");
  EXPECT_EQ(check.exitCode, 0);
  EXPECT_EQ(
      check.output,
      "data/model.ase: holds all that SceneLayerWide asks for; the scene takes it as data\\layer_wide\n");
  check = vexmodel("check data/model.ase --scene SceneHell");
  EXPECT_EQ(check.exitCode, 255);
  EXPECT_EQ(check.errors,
            "vexmodel: data/model.ase lacks for SceneHell: mesh Lava, mesh Sphere, light part03, light "
            "part04, mesh or "
            "light part01, mesh or light part02, mesh or light Sprayer01\n");
  check = vexmodel("check data/model.ase --scene SceneHelper");
  EXPECT_TRUE(
      check.errors.starts_with("vexmodel: SceneHelper is no scene that is built around a model; these are: "))
      << check.errors;
}

// The library nests as deep as the file does; the stack is not as deep.
TEST(Vexmodel, OutlivesFilesThatBringTheLibraryDown) {
  const TemporaryFolder folder;
  writeFile("deep.gltf", "{\"asset\": " + std::string(2'000'000, '['));
  const Program import = runProgram("ulimit -c 0; " VEX_BIN "/vexmodel import deep.gltf deep.ase");
  EXPECT_EQ(import.exitCode, 255);
  EXPECT_TRUE(import.errors.find("vexmodel: deep.gltf: ") != std::string::npos) << import.errors;
  EXPECT_FALSE(fs::exists("deep.ase"));
}

TEST(Vexmodel, RecordsSixSecondsRoundAModel) {
  const TemporaryFolder folder;
  writeFile("data/m.ase", triangleText(false));
  const Program turntable = vexmodel("turntable data/m.ase --out m.mkv --size 32x24");
  EXPECT_EQ(turntable.exitCode, 0) << turntable.errors;
  EXPECT_EQ(
      runProgram(
          "ffprobe -v error -count_packets -show_entries stream=width,height,r_frame_rate,nb_read_packets "
          "-of csv=p=0 m.mkv")
          .output,
      "32,24,30/1,180\n");
  // The first picture is that of the sheet's first side, the 90th that of its fifth.
  ASSERT_EQ(
      runProgram("ffmpeg -v error -i m.mkv -vf select='eq(n\\,0)+eq(n\\,90)' -vsync 0 f%d.png").exitCode, 0);
  EXPECT_NE(readPng("f1.png").pixels, readPng("f2.png").pixels);
  EXPECT_EQ(vexmodel("turntable data/m.ase --out m.mp4 --size 33x24").errors.substr(0, 44),
            "vexmodel: m.mp4: a picture of 33x24 has odd ");
}

TEST(Vexmodel, WrongUsageShowsTheUsage) {
  const Program help = vexmodel("--help");
  EXPECT_EQ(help.exitCode, 0);
  for (const char* arguments : {"",
                                "info",
                                "compile",
                                "compile a b",
                                "view a",
                                "info a --at",
                                "info a --at 1",
                                "info a --json --at x",
                                "info a --geometry",
                                "view a --out b --size 10",
                                "view a --out b --size 0x5",
                                "compile a --json",
                                "show a",
                                "import a",
                                "import a b c",
                                "export a",
                                "import a b --up x",
                                "import a b --fps 0",
                                "import a b --max-side 100",
                                "import a b --scale 0",
                                "export a b --force",
                                "check a",
                                "turntable a --out b.png",
                                "turntable a --out b.mp4 --camera 0",
                                "view a --out b --camera -1",
                                "view a --out b --pose c"}) {
    const Program program = vexmodel(arguments);
    EXPECT_EQ(program.exitCode, 2) << arguments;
    EXPECT_TRUE(program.errors.ends_with(help.output)) << arguments;
  }
}

}  // namespace vex
