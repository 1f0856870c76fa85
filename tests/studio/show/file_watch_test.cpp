#include "studio/show/file_watch.h"

#include <gtest/gtest.h>
#include <poll.h>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "platform/replace_file.h"
#include "tests/support/left_behind.h"
#include "tests/support/temporary_folder.h"

namespace vex::studio {
namespace {

namespace fs = std::filesystem;

bool readable(const FileWatch& watch) {
  pollfd descriptor{.fd = watch.descriptor(), .events = POLLIN, .revents = 0};
  return poll(&descriptor, 1, 0) == 1;
}

TEST(FileWatch, TellsOnceOfWhatHasChangedInWholeAndOfNothingElse) {
  const TemporaryFolder folder;
  writeFile("show.txt", "first");
  writeFile("data/old.jpg", "first");
  writeFile("data/deep/old.jpg", "first");
  writeFile("other/show.txt", "first");
  const std::string absolute = fs::absolute("other/show.txt").native();
  FileWatch watch;
  watch.addFile("show.txt");
  watch.addFile(absolute);
  watch.addFolder("data");
  using Names = std::vector<std::string>;
  const struct {
    const char* what;
    std::function<void()> change;
    Names told;
  } cases[] = {
      {"nothing", [] {}, {}},
      {"a new file", [] { writeFile("data/new.jpg", "1"); }, {"data/new.jpg"}},
      {"another file of the text's folder", [] { writeFile("notes.txt", "1"); }, {}},
      {"one of a folder below", [] { writeFile("data/deep/old.jpg", "1"); }, {"data/deep/old.jpg"}},
      {"one of a folder that comes with it",
       [] { writeFile("data/deep/deeper/new.jpg", "1"); },
       {"data/deep/deeper/new.jpg"}},
      {"once again", [] { writeFile("data/deep/deeper/new.jpg", "2"); }, {"data/deep/deeper/new.jpg"}},
      {"a link to a folder", [] { fs::create_directory_symlink(".", "data/deep/round"); }, {}},
      {"the text, twice",
       [] {
         writeFile("show.txt", "2");
         writeFile("show.txt", "3");
       },
       {"show.txt"}},
      {"replaced", [] { EXPECT_TRUE(replaceFile("data/old.jpg", "2")); }, {"data/old.jpg"}},
      {"by its whole name", [&] { writeFile(absolute, "2"); }, {absolute}},
      {"a temporary name", [] { writeFile("data/.old.jpg", "2"); }, {}},
      {"gone", [] { fs::remove("data/new.jpg"); }, {"data/new.jpg"}},
      {"another name",
       [] { fs::rename("data/old.jpg", "data/older.jpg"); },
       {"data/old.jpg", "data/older.jpg"}},
      {"the folders gone",
       [] {
         for (const char* gone :
              {"data/deep/round", "data/deep/deeper/new.jpg", "data/deep/deeper", "data/deep/old.jpg",
               "data/deep", "data/.old.jpg", "data/older.jpg", "data"})
           fs::remove(gone);
       },
       {"data/deep/round", "data/deep/deeper/new.jpg", "data/deep/old.jpg", "data/older.jpg"}},
      {"and again there", [] { writeFile("data/back.jpg", "1"); }, {"data/back.jpg"}},
      {"once more", [] { writeFile("data/back.jpg", "2"); }, {"data/back.jpg"}},
  };
  for (const auto& [what, change, told] : cases) {
    change();
    EXPECT_TRUE(told.empty() || readable(watch)) << what;
    EXPECT_EQ(watch.changed(), told) << what;
    EXPECT_FALSE(readable(watch)) << what;
  }
}

// Folders that come one within the other, in which files may be before anybody looks.
TEST(FileWatch, FindsWhatComesLater) {
  const TemporaryFolder folder;
  const int descriptors = openDescriptors();
  {
    FileWatch watch;
    watch.addFolder("far/data");
    watch.addFile("far/show.txt");
    writeFile("far/show.txt", "1");
    writeFile("far/data/first.jpg", "1");
    writeFile("far/data/second.jpg", "1");
    EXPECT_EQ(watch.changed(),
              (std::vector<std::string>{"far/show.txt", "far/data/first.jpg", "far/data/second.jpg"}));
    writeFile("far/data/first.jpg", "2");
    EXPECT_EQ(watch.changed(), (std::vector<std::string>{"far/data/first.jpg"}));
    fs::rename("far", "away");
    EXPECT_EQ(watch.changed(), (std::vector<std::string>{"far/show.txt"}));
    writeFile("far/data/first.jpg", "3");
    EXPECT_EQ(watch.changed(), (std::vector<std::string>{"far/data/first.jpg"}));
  }
  EXPECT_EQ(openDescriptors(), descriptors);
}

}  // namespace
}  // namespace vex::studio
