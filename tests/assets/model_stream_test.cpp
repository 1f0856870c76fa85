#include "assets/model_stream.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "assets/model_loader.h"
#include "assets/model_source.h"
#include "shell/files.h"
#include "tests/support/ase_text.h"
#include "tests/support/fatal.h"
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
  void SetUp() override { nameTextures(); }

  // Compiles the text; its stream.
  static std::string compile(const std::string& text) {
    fs::remove("m.hv3");
    writeFile("m.ase", text);
    Scene scene;
    readModel({"m.ase", "m.hv3"}, &scene);
    return fs::exists("m.hv3") ? readStream("m.hv3") : recordingObstacle();
  }
};

void expectReadOrRefused(const std::string& bytes, const std::string& what) {
  writeStream("m.hv3", bytes);
  const ChildResult result = runInChild([] { readAndDump("m.hv3"); });
  EXPECT_TRUE(result.exitCode == 0 || (result.exitCode == 255 && !result.errorText.empty()))
      << what << ": " << result.exitCode << " " << result.errorText;
}

std::string fatalOf(const std::string& stream) {
  writeStream("m.hv3", stream);
  return fatalText([] { readAndDump("m.hv3"); });
}

}  // namespace

// Byte by byte, written down from the format.
TEST_F(CompiledModel, HasACommandForEachLine) {
  AseText text;
  text.head("c")
      .open("*SCENE")
      .line("*SCENE_FIRSTFRAME 0")
      .line("*SCENE_LASTFRAME 9")
      .line("*SCENE_FRAMESPEED 30");
  text.line("*SCENE_TICKSPERFRAME 160").close().line("");
  text.open("*MATERIAL_LIST").open("*MATERIAL 0").line("*MATERIAL_AMBIENT 1 2 3").line("*MATERIAL_SHINE 0.5");
  text.line("*MATERIAL_TRANSPARENCY 0.25").line("*MATERIAL_TWOSIDED").open("*MAP_DIFFUSE");
  text.line("*BITMAP \"a\\b.jpg\"").line("*MAP_TYPE spherical").close().close().close();
  text.object("*GEOMOBJECT", "M").open("*NODE_TM").line("*TM_ROW0 1 0 0").line("*TM_ROW1 0 1 0");
  text.line("*TM_ROW2 0 0 1").line("*TM_ROW3 7 8 9").line("*TM_POS 1 2 3").line("*TM_SCALE 1 2 3").close();
  text.open("*MESH").line("*TIMEVALUE 0").line("*MESH_NUMVERTEX 2").line("*MESH_NUMFACES 1");
  text.list("*MESH_VERTEX_LIST", "*MESH_VERTEX", {"0 1 2 3", "1 4 5 6"});
  text.list("*MESH_FACE_LIST", "*MESH_FACE", {"0: A: 0 B: 1 C: 0"}).line("*MESH_NUMTVERTEX 2");
  text.list("*MESH_TVERTLIST", "*MESH_TVERT", {"0 0.5 1", "1 2 3"});
  text.list("*MESH_TFACELIST", "*MESH_TFACE", {"0 1 0 1"});
  text.list("*MESH_NORMALS", "*MESH_FACENORMAL", {"0 0 0 1"}).close();
  text.open("*MESH_ANIMATION").line("*TIMEVALUE 0").line("*MESH_NUMVERTEX 2").close().open("*TM_ANIMATION");
  text.list("*CONTROL_ROT_TCB", "*CONTROL_TCB_ROT_KEY", {"160 1 2 3 0.5 0 0"});
  text.list("*CONTROL_POS_BEZIER", "*CONTROL_BEZIER_POS_KEY", {"160 1 2 3 0 0"});
  text.list("*CONTROL_SCALE_BEZIER", "*CONTROL_BEZIER_SCALE_KEY", {"160 1 2 3 0 0"}).close();
  text.line("*MATERIAL_REF 0")
      .close()
      .open("*LIGHTOBJECT")
      .line("*LIGHT_TYPE Target")
      .line("*LIGHT_USELIGHT 1");
  text.close();

  std::string expected = "\x04"s + "c\0"s + "\0"s;
  expected += "\x02"s + intBytes(9) + "\x01" + intBytes(30) + "\x03" + intBytes(160) + "\xff";
  expected +=
      "\x10\x11\x18" + floatBytes({1, 2, 3}) + "\x13" + floatBytes({64}) + "\x14" + floatBytes({0.75f});
  expected += "\x1b\x15\x16"s + "data\\b\0"s + "\x1a" + intBytes(1) + "\xff\xff\xff";
  expected += "\x40\x20M\0\x22\x23"s + floatBytes({1, 0, 0, 0, 1, 0, 0, 0, 1, 7, 8, 9});
  expected += "\x24" + floatBytes({1, 3, -2}) + "\x25" + floatBytes({1, 3, 2}) + "\xff";
  expected += "\x41\x42" + intBytes(2) + "\x43" + intBytes(1);
  expected += "\x44" + floatBytes({1, 3, -2, 4, 6, -5}) + "\xff";
  expected += "\x46" + intBytes(0) + intBytes(1) + intBytes(0) + "\xff";
  expected += "\x48" + intBytes(2) + "\x49" + floatBytes({0.5f, 1, 2, 3}) + "\xff";
  expected += "\x4b" + intBytes(1) + intBytes(0) + intBytes(1) + "\xff\xff\x80";
  expected += "\x81\x84" + intBytes(160) + floatBytes({1, 3, -2, 0.5f}) + "\xff";
  expected += "\x85\x88" + intBytes(160) + floatBytes({1, 3, -2}) + "\xff";
  expected += "\x89\x8c" + intBytes(160) + floatBytes({1, 3, 2}) + "\xff\xff";
  expected += "\x4e" + intBytes(0) + "\xff\x70\x71" + intBytes(1) + "\x72" + intBytes(1) + "\xff\xfe";
  EXPECT_EQ(compile(text.str()), expected);
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
    compile(text);
    ASSERT_TRUE(fs::exists("m.hv3")) << recordingObstacle();
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
      {"*GEOMOBJECT {\n*MESH_ANIMATION {\n*GEOMOBJECT {\n}\n}\n}\n",
       "m.ase:3: a mesh animation holds lines of another kind"},
  };
  for (const auto& [text, obstacle] : cases) EXPECT_EQ(compile(text), obstacle);
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
      if (loadAndDump("m") != dump) std::_Exit(1);
      if (recordingObstacle() != "m.hv3 can't be written") std::_Exit(2);
    });
    EXPECT_EQ(result.exitCode, 0) << size << result.errorText;
    EXPECT_EQ(std::distance(fs::directory_iterator("."), fs::directory_iterator()), 1) << size;
  }
}

// Every beginning of the compiled file: alone it is refused by name, beside its text it is made anew.
TEST_F(CompiledModel, IsMadeAnewWhereItIsCutOff) {
  writeFile("m.ase", smallModel());
  const std::string text = readFile("m.ase"), dump = loadAndDump("m"), whole = readFile("m.hv3");
  const std::size_t checked = whole.size() - 64;  // behind the central directory's signature
  for (std::size_t size = 0; size < checked; size += 7) {
    writeFile("m.hv3", whole.substr(0, size));
    fs::remove("m.ase");
    EXPECT_EQ(fatalText([] { loadAndDump("m"); }),
              size < 4 ? "m.hv3: ends after " + std::to_string(size) + " bytes, its header word has 4"
                       : "m.hv3: ends before its compressed data does");
    writeFile("m.ase", text);
    EXPECT_EQ(loadAndDump("m"), dump) << size;
    EXPECT_EQ(readFile("m.hv3"), whole) << size;
  }
}

// A bit of every byte of the file, header word and archive included.
TEST_F(CompiledModel, StandsFalseBytesOfTheFile) {
  writeFile("m.ase", smallModel());
  const std::string text = readFile("m.ase"), dump = loadAndDump("m"), whole = readFile("m.hv3");
  for (std::size_t at = 0; at < whole.size(); ++at) {
    std::string bytes = whole;
    bytes[at] = static_cast<char>(bytes[at] ^ 1 << at % 8);
    writeFile("m.hv3", bytes);
    const ChildResult result = runInChild([&] {
#ifndef __SANITIZE_ADDRESS__
      const rlimit limit{1u << 30, 1u << 30};
      setrlimit(RLIMIT_AS, &limit);
#endif
      // What is damaged unseen holds no data.
      if (readAndDump("m.hv3") != dump) std::_Exit(1);
    });
    EXPECT_TRUE(result.exitCode == 0 || (result.exitCode == 255 && !result.errorText.empty()))
        << at << ": " << result.exitCode << " " << result.errorText;
    if (result.exitCode == 255) {
      EXPECT_EQ(loadAndDump("m"), dump) << at;
      EXPECT_EQ(readFile("m.hv3"), whole) << at;
    }
  }
}

// A model that is refused keeps the compiled form of the one before.
TEST_F(CompiledModel, StaysUntilANewOneIsComplete) {
  writeFile("m.ase", everyKeyword("old"));
  loadAndDump("m");
  const std::string old = readFile("m.hv3");
  writeFile("m.ase",
            AseText().head("new").object("*LIGHTOBJECT", "L").line("*LIGHT_TYPE Free").close().str());
  EXPECT_EQ(fatalText([] { loadAndDump("m"); }), "unsupported light type Free");
  EXPECT_EQ(readFile("m.hv3"), old);
}

TEST_F(CompiledModel, RefusesByNameAndPlace) {
  const std::string mesh = "\x40\x41"s;
  const struct {
    std::string stream;
    const char* message;
  } cases[] = {
      {"", "m.hv3 is empty"},
      {"\x05", "unknown command 0x5 read at 0x1"},
      {mesh + "\xf0", "unknown command 0xF0 read at 0x3"},
      {mesh + "\x45" + intBytes(0) + floatBytes({0, 0, 0}), "MESH_VERTEX not allowed in HV3 files!"},
      {mesh + "\x47" + intBytes(0) + intBytes(0) + intBytes(0) + intBytes(0),
       "MESH_FACE not allowed in HV3 files!"},
      {mesh + "\x4a" + intBytes(0) + floatBytes({0, 0}), "MESH_TVERT not allowed in HV3 files!"},
      {mesh + "\x4c" + intBytes(0) + intBytes(0) + intBytes(0) + intBytes(0),
       "MESH_TFACE not allowed in HV3 files!"},
      {"\x01\x02", "m.hv3 at 0x1: 4 bytes are expected, 1 are left"},
      {mesh + "\x42" + intBytes(2) + "\x44" + floatBytes({1, 2, 3}),
       "m.hv3 at 0x8: 25 bytes are expected, 12 are left"},
      {mesh + "\x42" + intBytes(2000000000), "m.hv3 at 0x7: 2000000000 vertices can't be in this file"},
      {mesh + "\x42" + intBytes(1) + "\x43" + intBytes(1) + "\x46" + intBytes(0) + intBytes(1) + intBytes(0) +
           "\xff",
       "m.hv3 at 0x15: vertex 1 isn't one of the 1 announced"},
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
              modelStream.writing = true;
              writeLine(0xf0);
            }),
            "unknown command 0xF0 for writeLine");
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

TEST_F(CompiledModel, StandsEveryTruncation) {
  const std::string stream = compile(smallModel());
  for (std::size_t size = 0; size < stream.size(); ++size) {
    expectReadOrRefused(stream.substr(0, size), "truncated to " + std::to_string(size));
  }
}

TEST_F(CompiledModel, StandsFalseBytes) {
  const std::string stream = compile(smallModel());
  for (std::size_t at = 0; at < stream.size(); ++at) {
    std::string bytes = stream;
    bytes[at] = static_cast<char>(bytes[at] ^ (at % 2 == 0 ? 1 : 0x80));
    expectReadOrRefused(bytes, "false byte " + std::to_string(at));
  }
}

}  // namespace vex
