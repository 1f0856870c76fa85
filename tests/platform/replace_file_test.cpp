#include "platform/replace_file.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <thread>

#include "tests/support/fatal.h"
#include "tests/support/temporary_folder.h"

namespace vex {

namespace {

namespace fs = std::filesystem;

bool replaceWith(const char* target, const std::string& text) {
  ReplacementFile file(target);
  return file.stream() && std::fputs(text.c_str(), file.stream()) >= 0 && file.commit();
}

std::ptrdiff_t filesHere() {
  return std::distance(fs::directory_iterator("."), fs::directory_iterator());
}

}  // namespace

TEST(ReplacementFile, TakesThePlaceOnlyWhenItIsComplete) {
  const TemporaryFolder folder;
  writeFile("target", "old");
  {
    ReplacementFile file("target");
    ASSERT_NE(file.stream(), nullptr);
    std::fputs("half", file.stream());
    std::fflush(file.stream());
    EXPECT_EQ(readFile("target"), "old");
    for (const fs::directory_entry& entry : fs::directory_iterator(".")) {
      const std::string name = entry.path().filename().native();
      EXPECT_TRUE(name == "target" || name.starts_with(".target.")) << name << " is not hidden";
    }
    EXPECT_EQ(filesHere(), 2);
  }
  EXPECT_EQ(readFile("target"), "old");
  EXPECT_EQ(filesHere(), 1);
  EXPECT_TRUE(replaceWith("target", "new"));
  EXPECT_EQ(readFile("target"), "new");
  EXPECT_EQ(filesHere(), 1);
}

TEST(ReplacementFile, ALinkStaysAndLeadsToTheNewFile) {
  const TemporaryFolder folder;
  writeFile("deep/target", "old");
  fs::create_symlink("deep/target", "link");
  fs::create_symlink("nowhere/none", "dangling");
  EXPECT_TRUE(replaceWith("link", "new"));
  EXPECT_TRUE(fs::is_symlink("link"));
  EXPECT_EQ(readFile("deep/target"), "new");
  EXPECT_TRUE(replaceWith("dangling", "new"));
  EXPECT_EQ(readFile("dangling"), "new");
}

TEST(ReplacementFile, WritesIntoAPipeAndRefusesAFolder) {
  const TemporaryFolder folder;
  ASSERT_EQ(mkfifo("pipe", 0600), 0);
  std::string received;
  std::thread reader([&] { received = readFile("pipe"); });
  EXPECT_TRUE(replaceWith("pipe", "through"));
  reader.join();
  EXPECT_EQ(received, "through");
  EXPECT_TRUE(fs::is_fifo("pipe"));
  fs::create_directory("folder");
  const ReplacementFile file("folder");
  EXPECT_EQ(file.stream(), nullptr);
  EXPECT_EQ(errno, EISDIR);
  EXPECT_EQ(filesHere(), 2);
}

TEST(ReplacementFile, AFullDiskLeavesTheTarget) {
  const TemporaryFolder folder;
  writeFile("target", "old");
  // A flush in time, one that the commit makes, and an error that lies behind.
  for (const std::size_t size : {std::size_t{100000}, std::size_t{5000}}) {
    const ChildResult result = runInChild([size] {
      const rlimit limit{4096, 4096};
      setrlimit(RLIMIT_FSIZE, &limit);
      const bool done = replaceWith("target", std::string(size, 'x'));
      std::fprintf(stderr, "%d", done ? 0 : errno);
    });
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.errorText, std::to_string(EFBIG)) << size;
    EXPECT_EQ(readFile("target"), "old");
    EXPECT_EQ(filesHere(), 1);
  }
}

TEST(ReplacementFile, UnfinishedFilesGoWithTheProgramThatWritesThem) {
  const TemporaryFolder folder;
  const ChildResult result = runInChild([] {
    const pid_t writer = fork();
    if (writer == 0) {
      setpgid(0, 0);
      writeFile("other", "half");
      while (true) pause();
    }
    while (!fs::exists("other")) usleep(1000);
    rememberTemporaryFile("other", writer);
    const ReplacementFile own("target");
    removeTemporaryFiles();
    std::fprintf(stderr, "%d", kill(writer, 0) == 0 || errno != ESRCH);
    std::_Exit(0);
  });
  EXPECT_EQ(result.errorText, "0") << "the writer lives on";
  EXPECT_EQ(filesHere(), 0);
}

}  // namespace vex
