#include "platform/paths.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "tests/support/temporary_folder.h"

namespace vex {

TEST(Paths, BackslashesAndLetterCaseFindTheFile) {
  const TemporaryFolder folder;
  writeFile("data/Font.raw", "");
  writeFile("Data2/sub/file", "");
  writeFile("both", "");
  writeFile("BOTH", "");
  writeFile("Two/x", "");
  writeFile("tWO/y", "");
  const struct {
    const char* name;
    const char* path;
  } cases[] = {
      {"data\\Font.raw", "data/Font.raw"},
      {"DATA\\FONT.RAW", "data/Font.raw"},
      {"data2\\SUB\\File", "Data2/sub/file"},
      {"both", "both"},
      {"BOTH", "BOTH"},
      {"Both", "BOTH"},     // the first in byte order
      {"two\\x", "Two/x"},  // likewise for folders
      {"data\\new.raw", "data/new.raw"},
      {"DATA\\New.raw", "data/New.raw"},
      {"none\\New.raw", "none/New.raw"},
      {"data\\..\\BOTH", "data/../BOTH"},
  };
  for (const auto& [name, path] : cases) EXPECT_EQ(resolvePath(name), path) << name;
  const std::string absolute = folder.path().native();
  EXPECT_EQ(resolvePath((absolute + "\\DATA\\font.RAW").c_str()), absolute + "/data/Font.raw");
}

TEST(Paths, OpensForReadingOnlyRegularFilesAndWritesOverTheExistingSpelling) {
  const TemporaryFolder folder;
  writeFile("data/Log.txt", "old");
  EXPECT_EQ(openLooseFile("data", "rb"), nullptr);
  EXPECT_EQ(openLooseFile("data\\none", "rb"), nullptr);
  std::FILE* file = openLooseFile("DATA\\log.TXT", "w");
  ASSERT_NE(file, nullptr);
  std::fputs("new", file);
  std::fclose(file);
  EXPECT_EQ(readFile("data/Log.txt"), "new");
  EXPECT_FALSE(std::filesystem::exists("data/log.TXT"));
}

}  // namespace vex
