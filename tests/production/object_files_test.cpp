#include "production/making/object_files.h"

#include <gmock/gmock.h>

#include <chrono>
#include <filesystem>
#include <set>

#include "production/products.h"
#include "tests/support/fatal.h"
#include "tests/support/temporary_folder.h"

namespace vex {

namespace {

namespace fs = std::filesystem;
using testing::IsSupersetOf;
using Names = std::set<std::string>;

// A tree of one picture, one sound, and what they have in common.
void writeTree() {
  writeFile("palette.h", "constexpr int ink = 7, unused = 1;\ninline int twice(int x) { return 2 * x; }\n");
  writeFile(
      "picture.cpp",
      "#include \"palette.h\"\nint noise(int);\n"
      "namespace vex { [[noreturn]] void fatalError(const char*, ...); }\n"
      "int picture(int x) { if (x < 0) vex::fatalError(\"negative\"); return noise(twice(x)) + ink; }\n");
  writeFile("sound.cpp", "#include \"palette.h\"\nint sound(int x) { return twice(x); }\n");
  writeFile("noise.cpp", "extern const int table[4];\nint noise(int x) { return table[x & 3]; }\n");
  writeFile("table.cpp", "extern const int table[4];\nconst int table[4] = {1, 2, 3, 4};\n");
  writeFile("report.cpp", "namespace vex { void fatalError(const char*, ...) { for (;;); } }\n");
}

void compile(const std::string& sources, const std::string& options = "-O2") {
  const Program made = runProgram("mkdir -p CMakeFiles/tree.dir && for file in " + sources + "; do c++ " +
                                  options + " -c $file -o CMakeFiles/tree.dir/$file.o || exit; done");
  ASSERT_EQ(made.exitCode, 0) << made.errors;
}

ObjectFiles listTree() {
  const Program listed = runProgram(VEX_LIST_OBJECT_FILES " list.cpp CMakeFiles/tree.dir/*.o");
  EXPECT_EQ(listed.exitCode, 0) << listed.errors;
  const std::string list = readFile("list.cpp");
  const std::size_t start = list.find("R\"(") + 3;
  return readObjectFiles(std::string_view(list).substr(start, list.find("\n)\"") - start));
}

// Sources of the products whose keys differ.
Names madeAnew(const Names& products, const ObjectFiles& before, const ObjectFiles& after) {
  Names anew;
  for (const std::string& source : products)
    if (objectKey(source, before) != objectKey(source, after)) anew.insert(source);
  return anew;
}

}  // namespace

TEST(ObjectFiles, AKeyFollowsWhatTheLinkerWouldAdd) {
  const TemporaryFolder folder;
  const Names products = {"picture.cpp", "sound.cpp"};
  writeTree();
  compile("*.cpp", "-O0");
  const ObjectFiles slow = listTree();
  compile("*.cpp");
  const ObjectFiles before = listTree();
  EXPECT_EQ(madeAnew(products, slow, before), products);
  fs::copy("CMakeFiles", "unchanged", fs::copy_options::recursive);
  const struct {
    const char *file, *text;
    Names anew;
  } cases[] = {
      {"picture.cpp", "int picture(int x) { return x; }", {"picture.cpp"}},
      {"sound.cpp", "int sound(int x) { return 3 * x; }", {"sound.cpp"}},
      {"noise.cpp", "int noise(int x) { return x; }", {"picture.cpp"}},
      {"table.cpp", "extern const int table[4];\nconst int table[4] = {1, 2, 3, 5};", {"picture.cpp"}},
      {"palette.h", "constexpr int ink = 8;\ninline int twice(int x) { return 2 * x; }", {"picture.cpp"}},
      {"palette.h", "constexpr int ink = 7;\ninline int twice(int x) { return 4 * x; }", products},
      {"palette.h", "// A comment.\nconstexpr int ink = 7;\ninline int twice(int x) { return 2 * x; }", {}},
      {"report.cpp",
       "namespace vex { void fatalError(const char*, ...) { for (;;) for (;;); } int shown; }",
       {}},
  };
  for (const auto& [file, text, anew] : cases) {
    writeFile(file, text);
    compile(std::string_view(file).ends_with(".h") ? "picture.cpp sound.cpp" : file);
    EXPECT_EQ(madeAnew(products, before, listTree()), anew) << file << ": " << text;
    writeTree();
    fs::copy("unchanged", "CMakeFiles", fs::copy_options::recursive | fs::copy_options::overwrite_existing);
  }
}

TEST(ObjectFiles, AKeyFollowsTheFilesThatCodeNames) {
  const TemporaryFolder folder;
  writeFile("type.cpp", "const char* font() { return \"/usr/share/fonts/of-this/Test-Bold.otf\"; }\n");
  compile("type.cpp");
  EXPECT_EQ(listTree().at("type.cpp").uses,
            std::vector<std::string>{"/usr/share/fonts/of-this/Test-Bold.otf"});

  writeFile("font.otf", "glyphs");
  const ObjectFiles files =
      readObjectFiles("title.cpp 1 type.cpp\ntype.cpp 1 title.cpp font.otf\nother.cpp 1\n");
  const std::string title = objectKey("title.cpp", files), other = objectKey("other.cpp", files);
  writeFile("font.otf", "more glyphs");
  const std::string more = objectKey("title.cpp", files);
  EXPECT_NE(more, title);
  fs::last_write_time("font.otf", fs::file_time_type::clock::now() - std::chrono::hours(1));
  EXPECT_NE(objectKey("title.cpp", files), more);
  EXPECT_EQ(objectKey("other.cpp", files), other);
  EXPECT_EQ(fatalText([&] { objectKey("nobody.cpp", files); }), "no object file of nobody.cpp");
}

TEST(ObjectFiles, OurProductsFollowTheirCode) {
  Names products;
  for (const Product& product : allProducts()) {
    const std::string& source = product.source;
    products.insert(source.substr(source.rfind("production/")));
  }
  const Names models = {"production/models/fetus.cpp", "production/models/hell.cpp",
                        "production/models/monster.cpp"};
  const std::string music = "production/music.cpp", timeLine = "production/time_line.cpp";
  Names allButMusic = products;
  allButMusic.erase(music);
  Names allButTimeLine = products;
  allButTimeLine.erase(timeLine);
  const struct {
    const char* changed;
    Names anew;  // at least
    Names notAnew;
  } cases[] = {
      {"production/models/fetus_bones.cpp",
       {"production/models/fetus.cpp"},
       {"production/models/hell.cpp", music}},
      {"production/models/fetus_body.cpp",
       {"production/models/fetus.cpp", "production/models/hell.cpp"},
       {music}},
      {"production/textures/smoke.cpp",
       {"production/textures/smoke.cpp"},
       {"production/textures/rain.cpp", music, timeLine}},
      {"production/textures/hell_light.cpp",
       {"production/textures/hell_box.cpp"},
       {"production/textures/hangar.cpp", music}},
      {"production/geometry/surface.cpp", models, {"production/textures/smoke.cpp", music}},
      {"production/geometry/extrusion.cpp",
       {"production/models/hell.cpp"},
       {"production/textures/smoke.cpp", music}},
      {"production/image/noise.cpp",
       {"production/textures/smoke.cpp", "production/models/fetus.cpp"},
       {"production/textures/glows.cpp", music}},
      {"production/image/outline.cpp",
       {"production/textures/font.cpp", "production/textures/type.cpp"},
       {"production/textures/smoke.cpp", music}},
      {"production/making/product.cpp",
       {"production/textures/smoke.cpp", "production/models/fetus.cpp"},
       {"production/textures/font.cpp", music}},
      {"production/synth/drums.cpp", {music}, allButMusic},
      {"production/song/skull.cpp", {music, timeLine}, {"production/models/skull.cpp"}},
      {"production/song/cues.cpp", {timeLine}, models},
      {"production/movements/skull.cpp", {timeLine}, {music, "production/models/skull.cpp"}},
      {"production/show/project_writer.cpp", {timeLine}, {music}},
      {"src/engine/animation.cpp", {timeLine}, {music}},
      {"src/timeline/project_record.cpp", {timeLine}, {music}},
      {"src/platform/ogg_encoder.cpp", {music}, allButMusic},
      {"src/platform/jpeg_encoder.cpp",
       {"production/textures/smoke.cpp", "production/models/fetus.cpp"},
       {music}},
      {"production/making/maker.cpp", {}, products},
      // The time line asks the scenes what they offer, and these know the engine.
      {"src/engine/renderer.cpp", {timeLine}, allButTimeLine},
      {"src/app/recorder.cpp", {}, products},
  };
  for (const auto& [changed, least, notAnew] : cases) {
    ObjectFiles after = builtObjectFiles();
    after.at(changed).hash = "other";
    const Names anew = madeAnew(products, builtObjectFiles(), after);
    EXPECT_THAT(anew, IsSupersetOf(least)) << changed;
    for (const std::string& source : notAnew)
      EXPECT_FALSE(anew.contains(source)) << changed << ": " << source;
  }
  EXPECT_THAT(builtObjectFiles().at("production/image/outline.cpp").uses,
              testing::Contains(testing::EndsWith(".ttf")));
}

}  // namespace vex
