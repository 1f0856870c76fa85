#include <gtest/gtest.h>

#include <filesystem>

#include "tests/support/pak_builder.h"
#include "tests/support/temporary_folder.h"

namespace vex {

namespace {

namespace fs = std::filesystem;

Program vexpak(const std::string& arguments) {
  return runProgram(VEX_BIN "/vexpak " + arguments);
}

}  // namespace

TEST(Vexpak, CreatesListsAndExtractsTheSameFiles) {
  const TemporaryFolder folder;
  writeFile("in/test.hvp", "0.17\n");
  writeFile("in/data/b.bin", std::string("\0\x1\xff", 3));
  writeFile("in/data/a.txt", "");
  writeFile("in/.hidden", "no");
  const Program created = vexpak("create in/vex.pak in");
  EXPECT_EQ(created.exitCode, 0) << created.errors;
  EXPECT_EQ(
      readFile("in/vex.pak"),
      pakBytes({{"data\\a.txt", ""}, {"data\\b.bin", std::string("\0\x1\xff", 3)}, {"test.hvp", "0.17\n"}}));
  EXPECT_EQ(vexpak("list in/vex.pak").output,
            "         0        122  data\\a.txt\n"
            "         3        122  data\\b.bin\n"
            "         5        125  test.hvp\n");
  EXPECT_EQ(vexpak("create in/vex.pak in").exitCode, 0) << "an archive in the folder leaves itself out";
  EXPECT_EQ(vexpak("extract in/vex.pak out/deep").exitCode, 0);
  EXPECT_EQ(readFile("out/deep/data/b.bin"), std::string("\0\x1\xff", 3));
  EXPECT_TRUE(fs::exists("out/deep/data/a.txt"));
  EXPECT_EQ(readFile("out/deep/test.hvp"), "0.17\n");
}

TEST(Vexpak, RefusesWhatAnArchiveCannotHold) {
  const TemporaryFolder folder;
  const std::string longest = std::string(26, 'x');  // with "data\" 31 characters
  writeFile("longest/data/" + longest, "");
  EXPECT_EQ(vexpak("create l.pak longest").exitCode, 0);
  writeFile("long/data/" + longest + "y", "");
  writeFile("clash/data/Name", "");
  writeFile("clash/data/nAME", "");
  writeFile("slash/a\\b", "");
  runProgram("mkfifo pipe");
  for (int i = 0; i < 257; ++i) writeFile("many/" + std::to_string(i), "");
  const struct {
    const char* arguments;
    std::string message;
  } cases[] = {
      {"create x.pak long", "long/data/" + longest + "y: the name data\\" + longest +
                                "y has 32 characters, at most 31 are possible"},
      {"create x.pak clash", "data\\Name and data\\nAME differ only in letter case (folder clash)"},
      {"create x.pak slash", "slash/a\\b: the name holds a backslash"},
      {"create x.pak many", "many holds 257 files, at most 256 are possible in a pak"},
      {"create x.pak none", "none isn't a folder"},
      {"create none/x.pak longest", "can't write none/x.pak: No such file or directory"},
      {"list none.pak", "can't read none.pak: No such file or directory"},
      {"list many", "can't read many: Is a directory"},
      {"list pipe", "can't read pipe: Operation not supported"},
      {"list /dev/zero", "can't read /dev/zero: Operation not supported"},
      {"list l.pak >/dev/full", "can't write the list: No space left on device"},
  };
  for (const auto& [arguments, message] : cases) {
    const Program program = runProgram(std::string("timeout 20 " VEX_BIN "/vexpak ") + arguments);
    EXPECT_EQ(program.exitCode, 255) << arguments;
    EXPECT_EQ(program.errors, "vexpak: " + message + "\n");
  }
  fs::remove("many/0");
  EXPECT_EQ(vexpak("create m.pak many").exitCode, 0);
  for (const fs::directory_entry& entry : fs::directory_iterator(".")) {
    EXPECT_FALSE(entry.path().filename().native().starts_with("x.pak")) << "left behind: " << entry;
  }
}

TEST(Vexpak, AFailedCreateKeepsTheOldArchive) {
  const TemporaryFolder folder;
  writeFile("in/a", std::string(100000, 'a'));
  writeFile("vex.pak", "old");
  const Program program = runProgram("ulimit -f 8; " VEX_BIN "/vexpak create vex.pak in");
  EXPECT_EQ(program.exitCode, 255);
  EXPECT_EQ(program.errors, "vexpak: can't write vex.pak: File too large\n");
  EXPECT_EQ(readFile("vex.pak"), "old");
  EXPECT_EQ(std::distance(fs::directory_iterator("."), fs::directory_iterator()), 2)
      << "a temporary file stays";
}

TEST(Vexpak, AnInterruptLeavesNothingForTheNextArchive) {
  const TemporaryFolder folder;
  writeFile("in/big", "");
  fs::resize_file("in/big", 1 << 30);  // a hole, which takes its time all the same
  const Program program = runProgram(VEX_BIN
                                     "/vexpak create in/vex.pak in & id=$!; "
                                     "while ! ls in/.vex.pak.* >list 2>&1; do :; done; "
                                     "kill -TERM $id; wait $id");
  EXPECT_EQ(program.exitCode, 130);
  EXPECT_EQ(program.errors, "vexpak: interrupted\n");
  EXPECT_EQ(std::distance(fs::directory_iterator("in"), fs::directory_iterator()), 1);
}

TEST(Vexpak, ExtractsNothingWhenANameIsUnsafe) {
  const TemporaryFolder folder;
  for (const char* name :
       {"..\\out", "data\\..\\..\\out", "/out", "\\out", "c:\\out", "a\\\\b", "", ".", "a\\", "x\n"}) {
    writeFile("bad.pak", pakBytes({{"good", "1"}, {name, "2"}}));
    const Program program = vexpak("extract bad.pak to");
    EXPECT_EQ(program.exitCode, 255) << name;
    EXPECT_NE(program.errors.find("is not safe to extract"), std::string::npos) << program.errors;
    EXPECT_FALSE(fs::exists("to")) << name;
  }
  const struct {
    const char *first, *second, *complaint;
  } pairs[] = {
      {"Name", "nAME", "Name and nAME differ only in letter case"},
      {"a\\b", "a/b", "a/b stands there twice"},
      {"a/B", "a\\b", "a/B and a/b differ only in letter case"},
      {"a", "a\\b", "a is a file and the folder of a/b"},
  };
  for (const auto& [first, second, complaint] : pairs) {
    writeFile("bad.pak", pakBytes({{first, "1"}, {second, "2"}}));
    EXPECT_EQ(vexpak("extract bad.pak to").errors, std::string("vexpak: ") + complaint + " (pak bad.pak)\n");
    EXPECT_FALSE(fs::exists("to"));
  }
}

// By links that lie there from an extraction before, and to what is no file.
TEST(Vexpak, ExtractsNothingOutsideItsFolder) {
  const TemporaryFolder folder;
  writeFile("a.pak", pakBytes({{"first", "1"}, {"data\\x", "2"}}));
  const struct {
    const char* before;
    const char* complaint;
  } cases[] = {
      {"mkdir to; ln -s ../outside to/data", "to/data: it is a link"},
      {"mkdir -p to/data; ln -s ../../outside/x to/data/x", "to/data/x: it is a link"},
      {"mkdir -p to/data; ln -s ../../outside/none to/data/x", "to/data/x: it is a link"},
      {"mkdir -p to/data/x", "to/data/x: it isn't a file"},
      {"mkdir -p to/data; mkfifo to/data/x", "to/data/x: it isn't a file"},
      {"mkdir to; echo >to/data", "to/data: it isn't a folder"},
  };
  for (const auto& [before, complaint] : cases) {
    writeFile("outside/x", "kept");
    fs::remove_all("to");
    runProgram(before);
    const Program program = runProgram("timeout 20 " VEX_BIN "/vexpak extract a.pak to");
    EXPECT_EQ(program.exitCode, 255) << before;
    EXPECT_EQ(program.errors, std::string("vexpak: can't write ") + complaint + "\n");
    EXPECT_EQ(readFile("outside/x"), "kept") << before;
    EXPECT_FALSE(fs::exists("outside/none"));
    EXPECT_FALSE(fs::exists("to/first")) << before;
  }
  fs::remove_all("to");
  runProgram("mkdir real; ln -s real to");
  EXPECT_EQ(vexpak("extract a.pak to").errors, "") << "the folder itself is the caller's choice";
  EXPECT_EQ(readFile("real/data/x"), "2");
}

TEST(Vexpak, WrongUsageShowsTheUsage) {
  const Program help = vexpak("--help");
  EXPECT_EQ(help.exitCode, 0);
  for (const char* arguments : {"", "create x", "list", "extract x y z", "unknown", "list a b"}) {
    const Program program = vexpak(arguments);
    EXPECT_EQ(program.exitCode, 2) << arguments;
    EXPECT_EQ(program.errors, help.output);
  }
}

}  // namespace vex
