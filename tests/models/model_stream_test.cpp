#include "models/model_stream.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "base/files.h"
#include "base/options.h"
#include "models/keyword_table.h"
#include "models/model_load.h"
#include "models/model_loader.h"
#include "models/model_source.h"
#include "tests/support/ase_text.h"
#include "tests/support/child_cases.h"
#include "tests/support/fatal.h"
#include "tests/support/log_text.h"
#include "tests/support/model_files.h"
#include "tests/support/pak_builder.h"
#include "tests/support/temporary_folder.h"

namespace vex {

namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;

class CompiledModel : public ::testing::Test {
 protected:
  const TemporaryFolder folder;

  // Compiles the text; its stream, or why it has none.
  static std::string compile(const std::string& text) {
    fs::remove("m.hv3");
    writeFile("m.ase", text);
    Scene scene;
    std::vector<std::string> textures;
    const std::string obstacle = readModel({"m.ase", "m.hv3"}, &scene, nameTextures(textures));
    return fs::exists("m.hv3") ? readStream("m.hv3") : obstacle;
  }
};

// A refusal names the file.
bool readOrRefused(const ChildResult& result) {
  return result.exitCode == 0 ||
         (result.exitCode == 255 && result.errorText.find("m.hv3") != std::string::npos);
}

std::string fatalOf(const std::string& stream) {
  writeStream("m.hv3", stream);
  return fatalText([] { readAndDump("m.hv3"); });
}

}  // namespace

// Byte by byte, written down from the format: every row of the keyword table, and what is no row.
TEST_F(CompiledModel, HasACommandForEachLine) {
  const std::string end = "\xff", mesh = "*GEOMOBJECT {\n*MESH {\n";
  const auto i = intBytes;
  const auto f = floatBytes;
  const auto inMesh = [&](const std::string& bytes) { return "\x40\x41" + bytes + end + end; };
  const auto inList = [&](const char* code, const std::string& bytes) { return code + bytes + end; };
  const struct {
    std::string text;
    std::string stream;  // without its end
  } cases[] = {
      {"*SCENE {\n}", "\0\xff"s},
      {"*scene_FrameSpeed 25", "\x01" + i(25)},
      {"*SCENE_FIRSTFRAME 0", ""},
      {"*SCENE_LASTFRAME -9", "\x02" + i(-9)},
      {"*SCENE_TICKSPERFRAME 160", "\x03" + i(160)},
      {"*COMMENT \"c  d\"", "\x04"s + "c d\0"s},
      {"*MATERIAL_LIST {\n}", "\x10\xff"},
      {"*MATERIAL 7 {\n}", "\x11\xff"},
      {"*MATERIAL_DIFFUSE 1 2 3", "\x12" + f({1, 2, 3})},
      {"*MATERIAL_AMBIENT 1 2 3", "\x18" + f({1, 2, 3})},
      {"*MATERIAL_SPECULAR 1 2 3", "\x19" + f({1, 2, 3})},
      {"*MATERIAL_SHINE 0.5", "\x13" + f({64})},
      {"*MATERIAL_SHINESTRENGTH 0.5", "\x17" + f({0.5f})},
      {"*MATERIAL_TRANSPARENCY 0.25", "\x14" + f({0.75f})},
      {"*MATERIAL_TWOSIDED", "\x1b"},
      {"*MATERIAL_TWOSIDEDNESS", "\x1b"},
      {"*MAP_DIFFUSE {\n}", "\x15\xff"},
      {"*BITMAP \"a\\b.c.jpg\"", "\x16" + "data\\b\0"s},
      {"*BITMAP \"b\"", "\x16" + "data\\b\0"s},
      {"*MAP_TYPE SPHERICAL", "\x1a" + i(1)},
      {"*MAP_TYPE Spherical map", "\x1a" + i(0)},
      {"*MAP_TYPE Spheric", "\x1a" + i(0)},
      {"*GEOMOBJECT {\n}", "\x40\xff"},
      {"*HELPEROBJECT {\n}", "\x30\xff"},
      {"*HELPER_CLASS \"Skeleton\"", "\x31" + "Skeleton\0"s},
      {"*NODE_NAME \"N\"", "\x20N\0"s},
      {"*GEOMOBJECT {\n*NODE_NAME \"P\"\n}\n*GEOMOBJECT {\n*NODE_PARENT \"P\"\n}",
       "\x40\x20P\0\xff\x40\x21P\0\xff"s},
      {"*NODE_TM {\n}", "\x22\xff"},
      {"*GEOMOBJECT {\n*TM_ROW0 1 2 0\n*TM_ROW1 0 1 0\n\n*TM_ROW2 0 0 1\n*TM_ROW3 7 8 9\n}",
       "\x40\x23" + f({1, 2, 0, 0, 1, 0, 0, 0, 1, 7, 8, 9}) + end},
      // The row below sees the line that *TM_ROW0 leaves.
      {"*GEOMOBJECT {\n*TM_ROW0 1 0 0\n*TM_ROW1 0 1 0\n*TM_ROW2 0 0 1\n*TM_POS 7 8 9\n}",
       "\x40\x23" + f({1, 0, 0, 0, 1, 0, 0, 0, 1, 7, 8, 9}) + "\x24" + f({7, 9, -8}) + end},
      {"*LIGHTOBJECT {\n*TM_ROW0 1 2 0\n}", "\x70\xff"},
      {"*TM_POS 1 2 3", "\x24" + f({1, 3, -2})},
      {"*TM_SCALE 1 2 3", "\x25" + f({1, 3, 2})},
      {mesh + "}\n}", inMesh("")},
      {"*MESH {\n}", ""},
      {"*MESH_NUMVERTEX 8", "\x42" + i(8)},
      {"*MESH_NUMVERTEX8", ""},
      {"*MESH_NUMVERTEX", ""},
      {"*MESH_NUMFACES 8", "\x43" + i(8)},
      {mesh + "*MESH_NUMVERTEX 2\n*MESH_VERTEX_LIST {\n*MESH_VERTEX 0 1 2 3\n*MESH_VERTEX 1 4 5 6\n}\n}\n}",
       inMesh("\x42" + i(2) + inList("\x44", f({1, 3, -2, 4, 6, -5})))},
      {mesh + "*MESH_NUMVERTEX 2\n*MESH_NUMFACES 1\n*MESH_FACE_LIST {\n*MESH_FACE 0: A: 0 B: 1 C: 0\n}\n}\n}",
       inMesh("\x42" + i(2) + "\x43" + i(1) + inList("\x46", i(0) + i(1) + i(0)))},
      {mesh + "*MESH_NUMTVERTEX 2\n*MESH_TVERTLIST {\n*MESH_TVERT 0 0.5 1 9\n*MESH_TVERT 1 2 3\n}\n}\n}",
       inMesh("\x48" + i(2) + inList("\x49", f({0.5f, 1, 2, 3})))},
      // No texture vertices: the list is as long as that of the vertices.
      {mesh + "*MESH_NUMVERTEX 1\n*MESH_NUMTVERTEX 0\n*MESH_TVERTLIST {\n*MESH_TVERT 0 0.5 1\n}\n}\n}",
       inMesh("\x42" + i(1) + "\x48" + i(0) + inList("\x49", f({0.5f, 1})))},
      {mesh + "*MESH_NUMVERTEX 1\n*MESH_NUMFACES 1\n*MESH_NUMTVERTEX 2\n*MESH_TFACELIST {\n*MESH_TFACE 0 1 0 "
              "1\n}\n}\n}",
       inMesh("\x42" + i(1) + "\x43" + i(1) + "\x48" + i(2) + inList("\x4b", i(1) + i(0) + i(1)))},
      {"*MESH_NORMALS {\n*MESH_FACENORMAL 0 0 0 1\n}", ""},
      {"*MATERIAL_REF 9", "\x4e" + i(9)},
      {"*CAMERAOBJECT {\n}", "\x60\xff"},
      {"*CAMERA_SETTINGS {\n}", "\x61\xff"},
      {"*CAMERA_FAR 9", "\x62" + f({9})},
      {"*CAMERA_FOV 0.75", "\x63" + f({0.75f})},
      {"*TM_ANIMATION {\n}", "\x80\xff"},
      {"*CONTROL_ROT_TCB {\n*CONTROL_TCB_ROT_KEY 160 1 2 3 0.5 0 0\n}",
       inList("\x81", "\x84" + i(160) + f({1, 3, -2, 0.5f}))},
      {"*CONTROL_ROT_TRACK {\n*CONTROL_ROT_SAMPLE 160 1 2 3 0.5\n}",
       inList("\x83", "\x84" + i(160) + f({1, 3, -2, 0.5f}))},
      {"*CONTROL_POS_BEZIER {\n*CONTROL_BEZIER_POS_KEY 160 1 2 3 0 0\n}",
       inList("\x85", "\x88" + i(160) + f({1, 3, -2}))},
      {"*CONTROL_POS_TRACK {\n*CONTROL_POS_SAMPLE 160 1 2 3\n}",
       inList("\x87", "\x88" + i(160) + f({1, 3, -2}))},
      {"*CONTROL_SCALE_BEZIER {\n*CONTROL_BEZIER_SCALE_KEY 160 1 2 3 0 0\n}",
       inList("\x89", "\x8c" + i(160) + f({1, 3, 2}))},
      {"*CONTROL_SCALE_TRACK {\n*CONTROL_SCALE_SAMPLE 160 1 2 3\n}",
       inList("\x8b", "\x8c" + i(160) + f({1, 3, 2}))},
      {"*LIGHTOBJECT {\n}", "\x70\xff"},
      {"*LIGHT_TYPE OmniBus", "\x71" + i(0)},
      {"*LIGHT_TYPE TARGETED", "\x71" + i(1)},
      {"*LIGHT_USELIGHT 2", "\x72" + i(2)},
      {"*LIGHT_SETTINGS {\n}", "\x73\xff"},
      {"*LIGHT_COLOR 1 2 3", "\x74" + f({1, 2, 3})},
      {"*LIGHT_INTENS 2", "\x75" + f({2})},
      {"*LIGHT_FALLOFF 40", "\x76" + f({40})},
      {"*GEOMOBJECT {\n*MESH_ANIMATION {\n*MESH {\n*NODE_NAME \"M\"\n}\n*MESH {\n*MATERIAL_REF 1\n}\n}\n"
       "*MATERIAL_REF 2\n}",
       "\x40\x4e" + i(2) + end},
      {"*TIMEVALUE 0", ""},
      // What lines lack: one number is 0, others are those of the line before.
      {"*LIGHT_INTENS\n*LIGHT_INTENS x\n*LIGHT_USELIGHT {", "\x75" + f({0}) + "\x72" + i(0)},
      {"*TM_POS 1 2 3\n*LIGHT_COLOR 4\n*MATERIAL_AMBIENT x 5 6\n*MATERIAL_DIFFUSE 7 8",
       "\x24" + f({1, 3, -2}) + "\x74" + f({4, 2, 3}) + "\x18" + f({4, 2, 3}) + "\x12" + f({7, 8, 3})},
      {"*TM_POS 1", "\x24" + f({1, 0, -0.0f})},
      {"*CONTROL_POS_TRACK {\n*CONTROL_POS_SAMPLE 0 1 2 3\n*CONTROL_POS_SAMPLE 160 4\n}",
       inList("\x87", "\x88" + i(0) + f({1, 3, -2}) + "\x88" + i(160) + f({4, 3, -2}))},
      {"", ""},
  };
  std::string texts;
  for (const auto& [text, stream] : cases) {
    texts += text + '\n';
    EXPECT_EQ(compile("*COMMENT \"1\"\n" + text + "\n"), "\x04" + "1\0"s + stream + "\xfe") << text;
  }
  for (char& c : texts) c = static_cast<char>(std::tolower(c));
  for (const KeywordEntry& keyword : keywords)
    EXPECT_NE(texts.find(keyword.text), texts.npos) << keyword.text;
}

// The text's scene is the oracle.
TEST_F(CompiledModel, GivesTheSceneOfItsText) {
  AseText mixed;  // the bump map's brace closes the material, a block stays open, contexts go astray
  mixed.head("1")
      .open("*MATERIAL_LIST")
      .open("*MATERIAL 0")
      .open("*MAP_BUMP")
      .line("*BITMAP \"x.bmp\"")
      .close();
  mixed.close().line("*MATERIAL_DIFFUSE 0 1 0").object("*GEOMOBJECT", "M").triangle().line("}").line("}");
  mixed.line("*MATERIAL_REF 0")
      .line("*TM_SCALE 2 2 2")
      .open("*MESH_MAPPINGCHANNEL 2")
      .line("*MESH_NUMTVERTEX 3");
  mixed.object("*LIGHTOBJECT", "L").line("*LIGHT_TYPE Omni").node("1 2 3").line("");
  for (const std::string& text : {everyKeyword(), mixed.str(), everyKeyword() + mixed.str()}) {
    const std::string stream = compile(text);
    ASSERT_TRUE(fs::exists("m.hv3")) << stream;
    EXPECT_EQ(readAndDump("m.hv3"), readAndDump("m.ase"));
  }
}

TEST_F(CompiledModel, IsNotMadeWhereItCouldNotGiveTheSceneOfItsText) {
  const auto mesh = [](std::initializer_list<const char*> lines) {
    AseText text;
    text.head("1").open("*GEOMOBJECT").name("M").open("*MESH").line("*MESH_NUMVERTEX 2");
    for (const char* line : lines) text.line(line);
    return text.close().close().str();
  };
  const struct {
    std::string text;
    const char* obstacle;
  } cases[] = {
      {mesh({"*MESH_VERTEX_LIST {", "*MESH_VERTEX 1 0 0 0", "}"}),
       "m.ase:8: entry 1 of a list stands where 0 belongs"},
      {mesh({"*MESH_VERTEX_LIST {", "*MESH_VERTEX 0 0 0 0", "}"}),
       "m.ase:9: a list has 1 entries, 2 were announced"},
      {mesh({"*MESH_VERTEX 0 0 0 0"}), "m.ase:7: an entry stands outside its list"},
      {mesh({"*MESH_VERTEX_LIST {", "*MATERIAL_REF 0", "}"}), "m.ase:8: a list holds lines of another kind"},
      {"*MESH_ANIMATION {\n}\n", "m.ase:1: a mesh animation stands outside its object"},
      {mesh({"*CONTROL_POS_TRACK {", "*MESH_VERTEX_LIST {", "}", "}"}),
       "m.ase:8: a list holds lines of another kind"},
      {"*CONTROL_POS_TRACK {\n*CONTROL_ROT_TRACK {\n}\n}\n", "m.ase:2: a list holds lines of another kind"},
      {mesh({"*CONTROL_POS_TRACK {", "*MATERIAL_REF 0", "}"}), "m.ase:8: a list holds lines of another kind"},
      {mesh({"*CONTROL_POS_TRACK {", "*FOREIGN", "}", "*CONTROL_POS_SAMPLE 0 1 2 3"}),
       "m.ase:10: a key stands outside its list"},
      {"*GEOMOBJECT {\n*MESH_NUMVERTEX 5000\n" + std::string(40000, ' ') + "\n}\n",
       "m.ase:4: more is announced than lists hold"},
      {"*BITMAP \"" + std::string(250, 'b') + "\"\n", "m.ase:1: a text is longer than 254 characters"},
  };
  for (const auto& [text, obstacle] : cases) {
    EXPECT_EQ(compile(text), obstacle);
    // The log says so once.
    const std::string line = std::string(obstacle) + ", no compiled form is kept\n";
    const std::string log = logText([&] { compile(text); });
    EXPECT_NE(log.find(line), log.npos) << log;
    EXPECT_EQ(log.find(line), log.rfind(line)) << log;
  }
}

TEST_F(CompiledModel, IsTakenWhereItBelongsToTheText) {
  const struct {
    const char* title;
    const char* text;      // the text's second line, null: no text
    const char* compiled;  // the stream's comment, null: no compiled file
    const char* taken;
  } cases[] = {
      {"only text", "*COMMENT \"one\"", nullptr, "text"},
      {"only compiled", nullptr, "other", "compiled"},
      {"equal", "*COMMENT \"one two\"", "one two", "compiled"},
      {"equal but for case and blanks", "*COMMENT\t \"One  TWO\"", "oNE two", "compiled"},
      {"different", "*COMMENT \"one\"", "two", "text"},
      {"longer", "*COMMENT \"one two\"", "one", "text"},
      {"no comment", "*SCENE {", "one", "text"},
      {"no blank", "*COMMENT", "", "text"},
  };
  for (const auto& [title, second, comment, taken] : cases) {
    for (const bool inPak : {false, true}) {
      for (const char* name : {"m.ase", "m.hv3", "vex.pak"}) fs::remove(name);
      std::string text, compiled;
      if (second)
        text = "*3DSMAX_ASCIIEXPORT 200\r\n" + std::string(second) +
               "\r\n*GEOMOBJECT {\n*NODE_NAME \"text\"\n}\n";
      if (comment) {
        writeStream("m.hv3", "\x04"s + comment + "\0\x40\x20"s + "compiled\0\xff\xfe"s);
        compiled = readFile("m.hv3");
      }
      std::vector<std::pair<std::string, std::string>> members;
      if (second) (inPak ? members.emplace_back("m.ase", text), void() : writeFile("m.ase", text));
      if (inPak && comment) {
        fs::remove("m.hv3");
        members.emplace_back("m.hv3", compiled);
      }
      if (inPak) writeFile("vex.pak", pakBytes(members));
      pakOpen("vex.pak");
      Scene scene;
      loadModel("m", &scene);
      EXPECT_STREQ(scene.meshes[0]->name, taken) << title << inPak;
      // Reading the text leaves its compiled form, with the text's stamp.
      if (*taken == 't') {
        EXPECT_NE(readStream("m.hv3").find("text"), std::string::npos) << title << inPak;
      }
      fileCloseAll();
    }
  }
}

TEST_F(CompiledModel, IsReadAtTheSecondLoad) {
  writeFile("m.ase", everyKeyword("first"));
  const std::string dump = loadAndDump("m");
  // What was decoded for the stamp is handed on.
  EXPECT_EQ(chooseSource("m").data, readStream("m.hv3"));
  // Another text with the same comment is not looked at.
  writeFile("m.ase", AseText().head("FIRST").object("*GEOMOBJECT", "New").close().str());
  EXPECT_EQ(loadAndDump("m"), dump);
  writeFile("m.ase", AseText().head("second").object("*GEOMOBJECT", "New").close().str());
  EXPECT_NE(loadAndDump("m"), dump);
}

TEST_F(CompiledModel, CommentsBeyondItsTextsStayStamps) {
  writeFile("m.ase", everyKeyword(std::string(300, 'c')));
  const std::string dump = loadAndDump("m");
  const auto written = fs::last_write_time("m.hv3");
  EXPECT_EQ(loadAndDump("m"), dump);
  EXPECT_EQ(fs::last_write_time("m.hv3"), written);
}

TEST_F(CompiledModel, IsNotMissedWhereItCannotBeWritten) {
  // No folder "data" to write into: the text is a member of the archive.
  writeFile("vex.pak", pakBytes({{"data\\m.ase", everyKeyword()}}));
  pakOpen("vex.pak");
  loadAndDump("data\\m");
  EXPECT_FALSE(fs::exists("data"));
  EXPECT_EQ(std::distance(fs::directory_iterator("."), fs::directory_iterator()), 1);
}

// A disk that fills up while the compiled form is written.
TEST_F(CompiledModel, IsNotMissedWhereItsWritingFailsMidway) {
  writeFile("m.ase", everyKeyword());
  const std::string dump = readAndDump("m.ase");
  for (const rlim_t size : {0, 3, 20, 200, 400}) {
    const ChildResult result = runInChild([&] {
      const rlimit limit{size, size};
      setrlimit(RLIMIT_FSIZE, &limit);
      Scene scene;
      std::vector<std::string> textures;
      const std::string obstacle = loadModel("m", &scene, nameTextures(textures));
      if (!obstacle.starts_with("m.hv3 can't be written")) std::_Exit(2);
      if (dumpScene(scene) != dump) std::_Exit(1);
    });
    EXPECT_EQ(result.exitCode, 0) << size << result.errorText;
    EXPECT_EQ(std::distance(fs::directory_iterator("."), fs::directory_iterator()), 1) << size;
  }
}

// Alone a damaged file is refused by name, beside its text it is made anew; the log says why.
TEST_F(CompiledModel, IsMadeAnewWhereItIsDamaged) {
  writeFile("m.ase", smallModel());
  const std::string text = readFile("m.ase"), dump = loadAndDump("m"), whole = readFile("m.hv3");
  const std::size_t length = readStream("m.hv3").size();
  const auto withWord = [&](std::size_t word) { return littleEndianBytes(word, 4) + whole.substr(4); };
  std::string falseCrc = whole;
  falseCrc[whole.size() - 80] ^= 1;
  const struct {
    std::string file, problem;
  } rows[] = {
      {whole.substr(0, 3), "m.hv3: ends after 3 bytes, its header word has 4"},
      {whole.substr(0, 90), "ARGH! (m.hv3 ends before its compressed data does)"},
      {falseCrc, "m.hv3: bad CRC (code 8)"},
      {withWord(0xffffffff), "m.hv3: only " + std::to_string(length) + " of 4294967295 bytes left to read"},
      {withWord(length - 1),
       "m.hv3: more than the " + std::to_string(length - 1) + " bytes of its header word"},
  };
  for (const auto& [file, problem] : rows) {
    writeFile("m.hv3", file);
    if (file != withWord(length - 1)) {
      fs::remove("m.ase");
      EXPECT_EQ(fatalText([] { loadAndDump("m"); }), problem);
    }
    writeFile("m.ase", text);
    options().showStats = true;
    fs::remove("Demo.log");
    EXPECT_EQ(loadAndDump("m"), dump) << problem;
    options().showStats = false;
    EXPECT_EQ(readFile("m.hv3"), whole) << problem;
    EXPECT_NE(readFile("Demo.log").find(problem + ", the text is read\n"), std::string::npos);
  }
}

// An empty list has no place in memory that could be copied to.
TEST_F(CompiledModel, MayHaveEmptyLists) {
  writeStream("m.hv3", "\x40\x41\x42"s + intBytes(0) + "\x43" + intBytes(0) + "\x44\xff\x46\xff\x48" +
                           intBytes(0) + "\x49\xff\x4b\xff\xff\xff\xfe");
  Scene scene;
  std::vector<std::string> textures;
  readModel({"m.hv3"}, &scene, nameTextures(textures));
  ASSERT_EQ(scene.meshes.count(), 1);
  EXPECT_TRUE(scene.meshes[0]->vertices.empty());
}

// A model that is refused keeps the compiled form of the one before.
TEST_F(CompiledModel, StaysUntilANewOneIsComplete) {
  writeFile("m.ase", everyKeyword("old"));
  loadAndDump("m");
  const std::string old = readFile("m.hv3");
  writeFile("m.ase",
            AseText().head("new").object("*LIGHTOBJECT", "L").line("*LIGHT_TYPE Free").close().str());
  EXPECT_EQ(fatalText([] { loadAndDump("m"); }), "unsupported light type Free (m.ase:5)");
  EXPECT_EQ(readFile("m.hv3"), old);
}

// The text that is mended afterwards has the same comment.
TEST_F(CompiledModel, IsNotLeftByATextThatIsRefused) {
  AseText text;
  text.head("1").object("*GEOMOBJECT", "M").parent("none").close();
  writeFile("m.ase", text.str());
  EXPECT_EQ(fatalText([] { loadAndDump("m"); }), "none not found in  (m.ase:5)");
  EXPECT_FALSE(fs::exists("m.hv3"));
}

TEST_F(CompiledModel, RefusesByNameAndPlace) {
  const std::string mesh = "\x40\x41"s;
  const struct {
    std::string stream;
    const char* message;
  } cases[] = {
      {"", "m.hv3 is empty"},
      {"\x05", "unknown command 0x5 read at 0x1 (m.hv3 at 0x1)"},
      {mesh + "\xf0", "unknown command 0xF0 read at 0x3 (m.hv3 at 0x3)"},
      {mesh + "\x45" + intBytes(0) + floatBytes({0, 0, 0}),
       "MESH_VERTEX not allowed in HV3 files! (m.hv3 at 0x13)"},
      {mesh + "\x47" + intBytes(0) + intBytes(0) + intBytes(0) + intBytes(0),
       "MESH_FACE not allowed in HV3 files! (m.hv3 at 0x13)"},
      {mesh + "\x4a" + intBytes(0) + floatBytes({0, 0}),
       "MESH_TVERT not allowed in HV3 files! (m.hv3 at 0xF)"},
      {mesh + "\x4c" + intBytes(0) + intBytes(0) + intBytes(0) + intBytes(0),
       "MESH_TFACE not allowed in HV3 files! (m.hv3 at 0x13)"},
      {"\x01\x02", "4 bytes are expected, 1 are left (m.hv3 at 0x1)"},
      {mesh + "\x42" + intBytes(2) + "\x44" + floatBytes({1, 2, 3}),
       "25 bytes are expected, 12 are left (m.hv3 at 0x8)"},
      {mesh + "\x42" + intBytes(2000000000), "2000000000 vertices can't be in this file (m.hv3 at 0x7)"},
      {mesh + "\x42" + intBytes(1) + "\x43" + intBytes(1) + "\x46" + intBytes(0) + intBytes(1) + intBytes(0) +
           "\xff",
       "vertex 1 isn't one of the 1 announced (m.hv3 at 0x15)"},
      {"\x40\x20"s + std::string(254, 'n') + "\0\xff\xfe"s,
       nullptr},  // a name beyond 31 characters; the text is tested with models of text
      {std::string(5000, '\x41') + "\xfe", nullptr},
  };
  for (const auto& [stream, message] : cases) {
    const std::string text = fatalOf(stream);
    if (message) {
      EXPECT_EQ(text, message);
    }
  }
  EXPECT_NE(fatalOf(cases[11].stream).find("is longer than 31 characters"), std::string::npos);
  EXPECT_EQ(fatalText([] {
              ModelLoad load;
              load.stream.writing = true;
              writeLine(load, static_cast<Command>(0xf0));
            }),
            "unknown command 0xF0 for writeLine");
  EXPECT_EQ(fatalText([] {
              ModelLoad load;
              load.stream.writing = true;
              writeLine(load, Command::meshNumVertex, 8.0f);
            }),
            "command 0x42 takes i, not f");
  EXPECT_EQ(fatalText([] { readAndDump("none.hv3"); }), "File none.hv3 not found");
  // A header word that promises more than the file can hold.
  std::string file = readFile("m.hv3");
  file.replace(0, 4, intBytes(-1));
  writeFile("m.hv3", file);
  EXPECT_EQ(fatalText([] { readAndDump("m.hv3"); }), "m.hv3: only 259 of 4294967295 bytes left to read");
}

// Old codes of key lines; a stream without an end; an end inside of blocks.
TEST_F(CompiledModel, ReadsWhatTheWriterDoesNotWrite) {
  const std::string keys = "\x40\x80\x83\x82" + intBytes(160) + floatBytes({1, 2, 3, 0.5f}) + "\xff\x85\x86" +
                           intBytes(160) + floatBytes({1, 2, 3}) + "\xff\x89\x8a" + intBytes(160) +
                           floatBytes({1, 2, 3}) + "\xff";
  writeStream("m.hv3", keys + "\xff\xff\xfe");
  const std::string dump = readAndDump("m.hv3");
  EXPECT_NE(dump.find("track 2"), std::string::npos);
  for (const std::string& end : {"\xff\xff"s, ""s, "\xfe"s, "\xfe\x40\xff\xfe"s}) {
    writeStream("m.hv3", keys + end);
    EXPECT_EQ(readAndDump("m.hv3"), dump);
  }
}

// Every beginning of a stream, and every byte of it falsified.
TEST_F(CompiledModel, StandsDamagedStreams) {
  const std::string stream = compile(smallModel());
  const int size = static_cast<int>(stream.size());
  const std::vector<ChildResult> results = runCasesInChildren(2 * size, [&](int i) {
    std::string bytes = stream.substr(0, static_cast<std::size_t>(i < size ? i : size));
    if (i >= size) bytes[static_cast<std::size_t>(i - size)] ^= static_cast<char>(i % 2 == 0 ? 1 : 0x80);
    writeStream("m.hv3", bytes);
    readAndDump("m.hv3");
    return 0;
  });
  for (std::size_t i = 0; i < results.size(); ++i) {
    EXPECT_TRUE(readOrRefused(results[i])) << i << ": " << results[i].exitCode << " " << results[i].errorText;
  }
}

namespace {

// Children of an instrumented process take their time.
#ifdef __SANITIZE_ADDRESS__
constexpr int damagedTexts = 200;
#else
constexpr int damagedTexts = 1000;
#endif

// Lines dropped, doubled, swapped and moved, numbers replaced, the end cut off.
std::string damaged(const std::string& text, std::uint32_t seed) {
  std::mt19937 random(seed);
  const auto below = [&](std::size_t n) { return static_cast<std::ptrdiff_t>(random() % n); };
  std::vector<std::string> lines;
  for (std::size_t at = 0, end; (end = text.find('\n', at)) != text.npos; at = end + 1) {
    lines.push_back(text.substr(at, end - at));
  }
  for (auto damages = below(4); damages >= 0; --damages) {
    const auto from = lines.begin() + below(lines.size()), to = lines.begin() + below(lines.size());
    switch (below(6)) {
      case 0:
        lines.erase(from);
        break;
      case 1:
        lines.insert(to, std::string(*from));
        break;
      case 2:
        std::swap(*from, *to);
        break;
      case 3:
        from < to ? std::rotate(from, from + 1, to) : std::rotate(to, from, from + 1);
        break;
      case 4:
        if (const std::size_t digit = from->find_last_of("0123456789"); digit != from->npos) {
          constexpr const char* values[] = {"0", "1", "-1", "2", "3", "320", "1e9", "x", "", "4096"};
          from->replace(digit, 1, values[below(std::size(values))]);
        }
        break;
      case 5:
        if (below(4) == 0) lines.resize(1 + static_cast<std::size_t>(below(lines.size())));
        break;
    }
  }
  std::string result;
  for (const std::string& line : lines) result += line + '\n';
  return result;
}

// A load that nothing goes before. The result is readModel's.
std::string readAfresh(const ModelSource& source, std::string& dump) {
  const Owned<ModelMaterials> none;
  Scene scene;
  std::vector<std::string> textures;
  const std::string obstacle = readModel(source, &scene, nameTextures(textures));
  dump = dumpScene(scene);
  return obstacle;
}

}  // namespace

// Whatever is wrong with a text: its compiled form gives the same scene, or there is none and a reason for
// that; a refused text leaves none.
TEST_F(CompiledModel, OfADamagedTextGivesItsSceneOrIsNotKept) {
  enum Outcome { equal, notKept, differs, noReason, keptOfRefused };
  const std::string texts[] = {everyKeyword(), smallModel()};
  const std::vector<ChildResult> results = runCasesInChildren(damagedTexts, [&](int i) {
    if (fs::remove("m.hv3")) return keptOfRefused;
    writeFile("m.ase", damaged(texts[i % 2], static_cast<std::uint32_t>(i)));
    std::string dump, compiled;
    const std::string obstacle = readAfresh({"m.ase", "m.hv3"}, dump);
    if (!fs::exists("m.hv3")) return obstacle.empty() ? noReason : notKept;
    readAfresh({"m.hv3"}, compiled);
    fs::remove("m.hv3");
    return compiled == dump ? equal : differs;
  });
  int counts[2] = {};
  for (std::size_t i = 0; i < results.size(); ++i) {
    const auto& [code, text] = results[i];
    const std::string shown = std::to_string(i) + ": " + std::to_string(code) + " " + text;
    if (code == equal || code == notKept) {
      ++counts[code];
    } else {
      EXPECT_EQ(code, 255) << shown;
      EXPECT_EQ(text.find("m.hv3"), text.npos) << shown;
      EXPECT_NE(text.find("m.ase"), text.npos) << shown;
    }
  }
  EXPECT_GT(counts[equal], damagedTexts / 5);
  EXPECT_GT(counts[notKept], damagedTexts / 20);
}

}  // namespace vex
