#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>

#include "studio/document/autosave.h"
#include "studio/document/disk_state.h"
#include "tests/support/fatal.h"
#include "tests/support/temporary_folder.h"

namespace vex::studio {
namespace {

namespace fs = std::filesystem;

std::ptrdiff_t filesHere() {
  return std::distance(fs::directory_iterator("."), fs::directory_iterator());
}

// A state that has read "old" from show.txt.
DiskState readState() {
  writeFile("show.txt", "old");
  DiskState state("show.txt");
  EXPECT_EQ(state.read().text, "old");
  return state;
}

void setAge(const std::string& path, int seconds) {
  fs::last_write_time(path, fs::file_time_type::clock::now() - std::chrono::seconds(seconds));
}

TEST(DiskState, TellsWhatOthersDidToTheFile) {
  const struct {
    DiskChange change;
    std::function<void()> act;
  } rows[]{
      {DiskChange::none, [] {}},
      {DiskChange::none, [] { writeFile("show.txt", "old"); }},
      {DiskChange::changed, [] { writeFile("show.txt", "new"); }},
      {DiskChange::changed,
       [] {
         const auto time = fs::last_write_time("show.txt");
         writeFile("show.txt", "odl");
         fs::last_write_time("show.txt", time);
       }},
      {DiskChange::gone, [] { fs::remove("show.txt"); }},
      {DiskChange::unreadable,
       [] {
         fs::remove("show.txt");
         fs::create_directory("show.txt");
       }},
  };
  for (const auto& row : rows) {
    const TemporaryFolder folder;
    const DiskState state = readState();
    row.act();
    EXPECT_EQ(state.change(), row.change) << &row - rows;
    EXPECT_EQ(state.changedOutside(), row.change != DiskChange::none);
  }
}

TEST(DiskState, OverwritesNothingUnseen) {
  const TemporaryFolder folder;
  DiskState state = readState();
  EXPECT_EQ(state.save("mine"), std::nullopt);
  EXPECT_EQ(readFile("show.txt"), "mine");
  EXPECT_EQ(state.save("mine too"), std::nullopt);
  writeFile("show.txt", "theirs");
  EXPECT_EQ(state.save("mine"), "show.txt was changed by someone else since it was read.");
  EXPECT_EQ(readFile("show.txt"), "theirs");
  EXPECT_EQ(state.save("mine", Overwrite::yes), std::nullopt);
  EXPECT_EQ(readFile("show.txt"), "mine");
  EXPECT_EQ(state.change(), DiskChange::none);
  fs::remove("show.txt");
  EXPECT_EQ(state.save("again"), std::nullopt);
  EXPECT_EQ(readFile("show.txt"), "again");
  EXPECT_EQ(filesHere(), 1);
  DiskState unread("show.txt");
  EXPECT_NE(unread.save("mine"), std::nullopt);
  EXPECT_EQ(readFile("show.txt"), "again");
}

TEST(DiskState, SavesUnderAnotherName) {
  const TemporaryFolder folder;
  DiskState state = readState();
  writeFile("other.txt", "theirs");
  EXPECT_EQ(state.saveAs("other.txt", "mine"), "other.txt is there already.");
  EXPECT_EQ(readFile("other.txt"), "theirs");
  EXPECT_EQ(state.path(), "show.txt");
  EXPECT_EQ(state.saveAs("other.txt", "mine", Overwrite::yes), std::nullopt);
  EXPECT_EQ(state.path(), "other.txt");
  EXPECT_EQ(readFile("other.txt"), "mine");
  EXPECT_EQ(readFile("show.txt"), "old");
  EXPECT_EQ(state.change(), DiskChange::none);
  EXPECT_EQ(state.saveAs("third.txt", "mine"), std::nullopt);
  EXPECT_EQ(readFile("third.txt"), "mine");
}

TEST(DiskState, KeepsPermissionsAndFollowsLinks) {
  const TemporaryFolder folder;
  writeFile("deep/target.txt", "old");
  ASSERT_EQ(chmod("deep/target.txt", 0640), 0);
  fs::create_symlink("deep/target.txt", "show.txt");
  DiskState state("show.txt");
  EXPECT_EQ(state.read().text, "old");
  EXPECT_EQ(state.save("new"), std::nullopt);
  EXPECT_TRUE(fs::is_symlink("show.txt"));
  EXPECT_EQ(readFile("deep/target.txt"), "new");
  EXPECT_EQ(fs::status("deep/target.txt").permissions(), fs::perms(0640));
}

TEST(DiskState, SaysWhyItCannotSave) {
  const struct {
    std::string trouble;
    std::function<void()> act;
  } rows[]{
      {"deep/show.txt is write-protected.", [] { ASSERT_EQ(chmod("deep/show.txt", 0444), 0); }},
      {"deep/show.txt cannot be saved: No such file or directory.", [] { fs::remove_all("deep"); }},
      {"deep/show.txt cannot be read: Is a directory.",
       [] {
         fs::remove("deep/show.txt");
         fs::create_directory("deep/show.txt");
       }},
      {"deep/show.txt cannot be saved: File too large.",
       [] {
         const rlimit limit{4096, 4096};
         setrlimit(RLIMIT_FSIZE, &limit);
       }},
  };
  for (const auto& row : rows) {
    const TemporaryFolder folder;
    writeFile("deep/show.txt", "old");
    const ChildResult result = runInChild([&] {
      DiskState state("deep/show.txt");
      state.read();
      row.act();
      std::fputs(state.save(std::string(100000, 'x')).value_or("saved").c_str(), stderr);
    });
    EXPECT_EQ(result.errorText, row.trouble);
    if (fs::is_regular_file("deep/show.txt")) {
      EXPECT_EQ(readFile("deep/show.txt"), "old");
    }
  }
}

TEST(DiskState, ReadsOnlyFilesAndSaysSo) {
  const TemporaryFolder folder;
  DiskState none("none.txt");
  EXPECT_EQ(none.read().trouble, "none.txt cannot be read: No such file or directory.");
  EXPECT_TRUE(none.read().missing);
  fs::create_directory("folder");
  EXPECT_FALSE(DiskState("folder").read().missing);
  ASSERT_EQ(mkfifo("pipe", 0600), 0);
  EXPECT_TRUE(DiskState("pipe").read().trouble);
}

TEST(Autosave, IsFoundAfterACrash) {
  const TemporaryFolder folder;
  setenv("XDG_CACHE_HOME", (folder.path() / "cache").c_str(), 1);
  writeFile("show.txt", "old");
  setAge("show.txt", 100);
  EXPECT_FALSE(findAutosave("show.txt"));
  Autosave autosave("show.txt");
  EXPECT_EQ(autosave.write("new"), std::nullopt);
  EXPECT_EQ(readFile(".show.txt.autosave"), "new");
  const auto left = findAutosave("show.txt");
  ASSERT_TRUE(left);
  EXPECT_EQ(left->text, "new");
  EXPECT_EQ(left->path, ".show.txt.autosave");
  autosave.remove();
  EXPECT_FALSE(findAutosave("show.txt"));
  EXPECT_EQ(filesHere(), 1);
  unsetenv("XDG_CACHE_HOME");
}

TEST(Autosave, IsNotOfferedInVain) {
  const TemporaryFolder folder;
  setenv("XDG_CACHE_HOME", (folder.path() / "cache").c_str(), 1);
  writeFile("deep/show.txt", "old");
  Autosave autosave("deep/show.txt");
  EXPECT_EQ(autosave.write("old"), std::nullopt);
  EXPECT_FALSE(findAutosave("deep/show.txt")) << "the same text";
  EXPECT_EQ(autosave.write("new"), std::nullopt);
  EXPECT_TRUE(findAutosave("deep/show.txt"));
  setAge("deep/.show.txt.autosave", 100);
  EXPECT_FALSE(findAutosave("deep/show.txt")) << "older than the text";
  fs::remove("deep/show.txt");
  EXPECT_TRUE(findAutosave("deep/show.txt")) << "all that is left";
  unsetenv("XDG_CACHE_HOME");
}

TEST(Autosave, IsWrittenOnlyWhenTheTextChanges) {
  const TemporaryFolder folder;
  Autosave autosave("show.txt");
  EXPECT_EQ(autosave.write("new"), std::nullopt);
  fs::remove(".show.txt.autosave");
  EXPECT_EQ(autosave.write("new"), std::nullopt);
  EXPECT_FALSE(fs::exists(".show.txt.autosave"));
  EXPECT_EQ(autosave.write("newer"), std::nullopt);
  EXPECT_EQ(readFile(".show.txt.autosave"), "newer");
}

TEST(Autosave, GoesToTheCacheWhereTheFolderCannotBeWritten) {
  const TemporaryFolder folder;
  writeFile("deep/show.txt", "old");
  fs::create_directory("home");
  fs::permissions(".", fs::perms(0755));
  fs::permissions("home", fs::perms(0777));
  fs::permissions("deep", fs::perms(0555));
  const ChildResult result = runInChild([&] {
    constexpr uid_t nobody = 65534;
    if (geteuid() == 0 && setresuid(nobody, nobody, nobody) != 0) std::fputs("still root ", stderr);
    unsetenv("XDG_CACHE_HOME");
    setenv("HOME", (folder.path() / "home").c_str(), 1);
    Autosave autosave("deep/show.txt");
    std::fputs(autosave.write("new").value_or("written").c_str(), stderr);
    const auto left = findAutosave("deep/show.txt");
    std::fputs(left ? (" " + left->text).c_str() : " lost", stderr);
    std::fputs(findAutosave("deep/other.txt") ? " for all" : "", stderr);
    autosave.remove();
    std::fputs(findAutosave("deep/show.txt") ? " stays" : "", stderr);
    unsetenv("HOME");
    std::fputs((" " + autosave.write("new").value_or("written")).c_str(), stderr);
  });
  EXPECT_EQ(result.errorText, "written new deep/.show.txt.autosave cannot be saved: Permission denied.");
  EXPECT_FALSE(fs::exists("deep/.show.txt.autosave"));
  fs::permissions("deep", fs::perms(0755));
}

}  // namespace
}  // namespace vex::studio
