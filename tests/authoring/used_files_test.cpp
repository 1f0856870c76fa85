#include "authoring/used_files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <set>
#include <string>

#include "authoring/new_show.h"
#include "authoring/project_text.h"
#include "tests/support/temporary_folder.h"

namespace vex {

namespace {

std::set<std::string> usedBy(const std::string& text) {
  const ReadProjectText read = readProjectText("total 9\n" + text);
  EXPECT_TRUE(read.problems.empty()) << text;
  return usedFiles(read.project);
}

std::string called(const std::string& call) {
  return "part p { at 0 length 9 " + call + " }\n";
}

}  // namespace

TEST(UsedFiles, AreWhatCallsAndTheStartAskFor) {
  const TemporaryFolder folder;
  for (const DataFile& file : neutralData()) writeFile(file.path, file.bytes);
  for (const char* name :
       {"test.hvp", "data/Song.ogg", "data/m1.jpg", "data/m2.jpg", "data/m3.jpg", "data/a.jpg", "data/a.bmp",
        "data/a_mask.jpg", "data/a_mask.bmp", "data/b.bmp", "data/b_mask.bmp", "data/words.txt",
        "data/balls.hvv", "data/cloud.ase", "data/cloud.hvv", "data/other.bmp"})
    writeFile(name, "");
  const std::set<std::string> start = usedBy("");
  for (const char* name : {"test.hvp", "data\\vex08.bmp", "data\\end_ing02.bmp", "data\\light7.bmp",
                           "data\\hell.ase", "data\\helltop.bmp", "data\\chrome.bmp", "data\\font.raw"})
    EXPECT_TRUE(start.contains(name)) << name;
  for (const char* name : {"data\\other.bmp", "data\\flare_shine.bmp", "data\\first.bmp"})
    EXPECT_FALSE(start.contains(name)) << name;

  const std::string place = ", x = 0, y = 0, width = 1, height = 1";
  using Names = std::set<std::string>;
  const struct {
    std::string text;
    Names more;
  } cases[] = {
      {"music \"data\\song.ogg\"\n", {"data\\song.ogg"}},
      // The first of two kinds is read, with its own mask.
      {called("SceneHelper.drawBitmapRepeat(texture = \"data\\A\"" + place +
              ", repeatX = 1, repeatY = 1, alpha = 1, blend = 0)"),
       {"data\\a.jpg", "data\\a_mask.jpg"}},
      {called("SceneHelper.drawMovie(base = \"data\\m\"" + place +
              ", first = 2, last = linear(0 2, 1 3), fps = 5, alpha = 1)"),
       {"data\\m2.jpg", "data\\m3.jpg"}},
      {called("SceneOuttro.preloadText(text = \"data\\words.txt\")"), {"data\\words.txt"}},
      {called("SceneOuttro.preloadVectorBalls(balls = \"data\\balls.hvv\")"), {"data\\balls.hvv"}},
      {called("SceneOuttro.preloadVectorBalls(balls = \"data\\cloud.ase\")"),
       {"data\\cloud.ase", "data\\cloud.hvv"}},
      {called("SceneHell.animate(camera = 0)"), {"data\\flare_shine.bmp"}},
  };
  for (const auto& [text, more] : cases) {
    const Names used = usedBy(text);
    Names added;
    std::set_difference(used.begin(), used.end(), start.begin(), start.end(),
                        std::inserter(added, added.end()));
    EXPECT_EQ(added, more) << text;
  }

  writeFile("used_textures.log", "data\\b 1\nnot a line\n");
  const Names listed = usedBy("");
  EXPECT_EQ(listed.size(), start.size() + 3);
  EXPECT_TRUE(listed.contains("used_textures.log") && listed.contains("data\\b_mask.bmp"));
}

// A model draws with the pictures that its materials name.
TEST(UsedFiles, AreThoseOfModelsToo) {
  const TemporaryFolder folder;
  for (const DataFile& file : neutralData()) {
    const std::size_t at =
        file.path == "data/hell.ase" ? file.bytes.find("*MATERIAL_SHINESTRENGTH") : std::string::npos;
    std::string bytes = file.bytes;
    if (at != std::string::npos) bytes.insert(at, "*MAP_DIFFUSE {\n*BITMAP \"C:\\pictures\\rock.tga\"\n}\n");
    writeFile(file.path, bytes);
  }
  writeFile("data/rock.jpg", "");
  EXPECT_TRUE(usedBy("").contains("data\\rock.jpg"));
}

}  // namespace vex
