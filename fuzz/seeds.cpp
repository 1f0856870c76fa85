#include "fuzz/seeds.h"

#include "authoring/project_text.h"
#include "engine/strips.h"
#include "fuzz/readers.h"
#include "models/keyword_table.h"
#include "models/model_loader.h"
#include "scenes/ball_file.h"
#include "tests/support/codec_members.h"
#include "tests/support/image_files.h"
#include "tests/support/model_files.h"
#include "tests/support/pak_builder.h"
#include "tests/support/project_builder.h"
#include "tests/support/sound_files.h"
#include "tests/support/temporary_folder.h"
#include "timeline/project_record.h"

namespace vex {

namespace {

ProjectData everyField() {
  ProjectData project{.startTime = 0.5, .music = "data\\music.ogg", .ticks = {1, 2}};
  CallData call;
  for (int type = 0; type <= 4; ++type) {
    call.parameters.push_back({.name = "p" + std::to_string(type),
                               .type = type,
                               .constant = 1,
                               .sinPeriod = 2,
                               .dots = {{0, 1}, {0.5, 2}, {1, 3}},
                               .string = "data\\sky"});
  }
  project.parts = {{.name = "intro", .length = 2, .track = -1, .calls = {call, {.function = "record"}}},
                   {.name = "outro", .pos = 2, .speed = -1}};
  return project;
}

std::string compiledStream(const std::string& text) {
  const TemporaryFolder folder;
  writeFile("m.ase", text);
  Scene scene;
  std::vector<std::string> textures;
  readModel({.fileName = "m.ase", .compiledName = "m.hv3"}, &scene, nameTextures(textures));
  return readStream("m.hv3");
}

}  // namespace

StripScene::StripScene() : TestScene(3) {
  addFaces(*meshes[0], {{0, 1, 2}, {0, 2, 3}, {0, 3, 4}, {5, 6, 7}, {6, 7, 8}});
  meshes[0]->texCoords.resize(15);
  meshes[0]->faces[3].t[1] = -1;
  addFaces(*meshes[2], {{0, 1, 2}});
  meshes[2]->texCoords.resize(3);
}

std::vector<std::string> projectSeeds() {
  return {buildProject(everyField()).bytes, buildProject({}).bytes};
}

std::vector<std::string> projectTextSeeds() {
  std::vector<std::string> texts;
  for (const std::string& project : projectSeeds()) {
    texts.push_back(writeProjectText(decodeProject(project, "seed").project));
  }
  // Every statement, and every kind of fault that is told at its line.
  texts.push_back(
      "version \"0.17\" executable \"vex\" functionsFile \"f\" leftTime 1 zoom 2 trailing \"%00\"\n"
      "tempo 128 beats 3 from 0.5\ntotal 8:0\nstart 0:1\nmusic \"data\\vex.ogg\"\nticks 1 2 3\n"
      "range alpha 0 to 1\npart \"night sky\" { at 1:0 until 7:0 track -10 speed 0x3ff0000000000000 start "
      "4.5s\n"
      "  editorNumber 7 editorFlag 1\n"
      "  S.f(a = linear(0 -1, 1 -1.5), b = sine(cycles 2, amplitude 0.05, offset -1.1, phase 90),\n"
      "    c = spline(0 1, 0.2 0.4, 1 0), alpha = \"%22\", d = -inf)  # comment\n}\n");
  for (const char* fault :
       {"version \"0.18\"", "tempo 0", "tempo 1 from inf", "total 1 total 2", "part a { at 2 until 1 }",
        "part a { S.f() at 1 }", "part a { at 1\npart b { }", "part a { at 1 length 1 start nan track 300 }",
        "music \"open", "part a { S.f(a = 1, a = sine(phase x), b = dots(0)) }", "trailing 1", "@",
        "zoom 1:1"}) {
    texts.emplace_back(fault);
  }
  std::string crowd = "total 1\n";
  for (int i = 0; i < 17; ++i) crowd += "part p { at 0 length 1 }\n";
  texts.push_back(crowd);
  return texts;
}

std::vector<std::string> projectTextWords() {
  return {"version ",
          "executable ",
          "functionsFile ",
          "leftTime ",
          "music ",
          "part ",
          "range ",
          "to ",
          "start ",
          "tempo ",
          "beats ",
          "from ",
          "ticks ",
          "total ",
          "trailing ",
          "zoom ",
          "at ",
          "editorFlag ",
          "editorNumber ",
          "length ",
          "speed ",
          "track ",
          "until ",
          "linear(",
          "spline(",
          "sine(",
          "dots(",
          "cycles ",
          "amplitude ",
          "offset ",
          "phase ",
          "1:2.5",
          "4.5s",
          "0x7ff8000000000001",
          "inf",
          "1e300",
          "%22",
          "{",
          "}"};
}

std::vector<std::string> archiveSeeds() {
  return {pakBytes({}), pakBytes({{"a", ""}}),
          pakBytes({{"test.hvp", "0.17\n"}, {"data\\a.txt", "line\nline\nend"}, {"data\\b.bin", "\1\2\3"}})};
}

std::vector<std::string> modelTextSeeds() {
  return {everyKeyword(), smallModel()};
}

std::vector<std::string> modelTextWords() {
  std::vector<std::string> words{
      "{",          "}",   "\"",   "A:",     "B:",        "C:",       "1e38",   "-1",
      "2147483647", "nan", "Omni", "Target", "Spherical", "Skeleton", ".Target"};
  for (const KeywordEntry& keyword : keywords) words.emplace_back(keyword.text);
  return words;
}

std::vector<std::string> modelStreamSeeds() {
  return {compiledStream(everyKeyword()), compiledStream(smallModel())};
}

std::vector<std::string> containerSeeds() {
  std::vector<std::string> files;
  const std::string word = littleEndianBytes(300, 4);
  for (const Member& member :
       {Member{}, Member{.method = 0}, Member{.descriptor = Descriptor::plain},
        Member{.descriptor = Descriptor::withSignature}, Member{.extra = "extra", .crcChange = 1}}) {
    files.push_back(word + member.bytes());
  }
  for (const int framing : {1, 2}) files.push_back(compress(someText(300), framing, 9));
  files.push_back(word + files[files.size() - 2]);
  return files;
}

std::vector<std::string> stripCacheSeeds() {
  const TemporaryFolder folder;
  writeFile("data/none", "");
  StripScene scene;
  for (Mesh* mesh : scene.meshes) {
    if (!mesh->faces.empty()) stripify(*mesh);
  }
  writeStripCache(scene);
  return {readFile("data/SceneTest.hvf")};
}

std::vector<std::string> ballSeeds() {
  return {ballFileBytes({}), ballFileBytes({{1, {}, {1, 2, 3}}, {0.5f, {}, {}}})};
}

std::vector<std::string> bmpSeeds() {
  const BmpFile indexed{.bits = 8, .colours = 2, .palette = {{255, 0, 255}, {1, 2, 3}}, .fill = 1};
  const std::string plainPicture = BmpFile{}.bytes();
  return {withMask(plainPicture), withMask(plainPicture, plainPicture), withMask(indexed.bytes()),
          withMask(BmpFile{.width = 8, .height = 2}.bytes(), indexed.bytes()),
          withMask(BmpFile{.width = 12}.bytes())};
}

std::vector<std::string> jpegSeeds() {
  std::vector<std::string> files;
  const Picture picture = [](int x, int y) { return Rgb{16 * x, 16 * y, x ^ y}; };
  for (const JpegKind kind : {JpegKind::colour, JpegKind::progressive, JpegKind::grey, JpegKind::print}) {
    const std::string bytes = jpegBytes(16, 8, picture, kind);
    files.push_back(withMask(bytes));
    files.push_back(withMask(bytes, jpegBytes(16, 8, picture, JpegKind::grey)));
  }
  files.push_back(withMask(jpegBytes(12, 8, picture)));
  return files;
}

std::vector<std::string> preloadSeeds() {
  return {"data\\a 1\ndata\\a 0\n\nx\n", "data\\none 0\n", std::string(300, 'n') + " 1"};
}

std::vector<std::string> preloadWords() {
  return {"data\\a", " 1\n", " 0\n", "\r\n"};
}

std::vector<std::string> fontSeeds() {
  return {std::string(128 * 192, '\xff'), "short"};
}

std::vector<std::string> musicSeeds() {
  const TemporaryFolder folder;
  std::vector<std::string> files;
  for (const SoundCoding coding :
       {SoundCoding::wav, SoundCoding::wav8Bit, SoundCoding::wav24Bit, SoundCoding::wavFloat,
        SoundCoding::ogg, SoundCoding::flac, SoundCoding::mp3}) {
    writeSoundFile("seed", {.coding = coding, .rate = 8000, .channels = 1, .frames = 400});
    files.push_back(readFile("seed"));
  }
  return files;
}

}  // namespace vex
