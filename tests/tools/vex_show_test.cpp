#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "tests/support/temporary_folder.h"

// The command of the installed show, beside programs that only say where they are run.

namespace vex {

namespace {

namespace fs = std::filesystem;

class VexShow : public testing::Test {
 protected:
  TemporaryFolder folder;

  VexShow() {
    fs::create_directories("usr/bin");
    fs::copy_file(VEX_SOURCE "/packaging/vex-show", "usr/bin/vex-show");
    for (const char* program : {"usr/bin/vex", "usr/bin/vexstudio"}) {
      writeFile(program, "#!/bin/sh\necho \"${0##*/} $* in $(pwd -P): $(ls | tr '\\n' ' ')\"; cat vex.pak\n");
      fs::permissions(program, fs::perms::all);
    }
    writeFile("usr/share/vex-show/vex.pak", "the archive");
    writeFile("usr/share/vex-show/show.txt", "the text");
  }

  Program run(const std::string& environment, const std::string& arguments = "") {
    return runProgram("env -u HOME -u XDG_DATA_HOME " + environment + " usr/bin/vex-show " + arguments);
  }
  std::string at(const std::string& place) { return fs::canonical(folder.path()).native() + place; }
};

}  // namespace

TEST_F(VexShow, PlaysInTheUsersFolder) {
  const struct {
    std::string environment, arguments, place, said;
  } cases[] = {
      {"HOME=" + at("/home"), "", "/home/.local/share", "vex  in"},
      {"XDG_DATA_HOME=" + at("/own data").insert(at("/own").size(), "\\"), "", "/own data", "vex  in"},
      {"HOME=" + at("/other") + " XDG_DATA_HOME=relative", "", "/other/.local/share", "vex  in"},
      {"HOME=" + at("/home"), "--studio", "/home/.local/share", "vexstudio . in"},
  };
  for (const auto& [environment, arguments, place, said] : cases) {
    const Program program = run(environment, arguments);
    const std::string files = arguments.empty() ? "data vex.pak " : "data show.txt vex.pak ";
    EXPECT_EQ(program.output, said + " " + at(place + "/vex-show") + ": " + files + "\nthe archive")
        << environment << program.errors;
    EXPECT_EQ(program.exitCode, 0);
  }
}

TEST_F(VexShow, KeepsWhatIsTheUsersAndMendsItsLink) {
  const std::string home = "HOME=" + at("/home");
  const fs::path own = "home/.local/share/vex-show";
  run(home, "--studio");
  writeFile(own / "show.txt", "my text");
  fs::remove(own / "vex.pak");
  writeFile("older.pak", "an older archive");
  fs::create_symlink(at("/older.pak"), own / "vex.pak");
  EXPECT_NE(run(home, "--studio").output.find("the archive"), std::string::npos) << "an old link";
  EXPECT_EQ(readFile(own / "show.txt"), "my text");
  fs::remove(own / "vex.pak");
  writeFile(own / "vex.pak", "my archive");
  EXPECT_NE(run(home).output.find("my archive"), std::string::npos);
}

TEST_F(VexShow, SaysWhyItCannotPlay) {
  writeFile("file", "");
  const struct {
    std::string environment, arguments;
    int code;
    std::string error;
  } cases[] = {
      {"", "", 255, "vex-show: no folder to play in: HOME is not set\n"},
      {"HOME=" + at("/file"), "", 255,
       "vex-show: can't make the run folder " + at("/file/.local/share/vex-show/data") + "\n"},
      {"HOME=" + at(""), "--film", 2, "Usage: vex-show"},
      {"HOME=" + at(""), "--studio more", 2, "Usage: vex-show"},
  };
  for (const auto& [environment, arguments, code, error] : cases) {
    const Program program = run(environment, arguments);
    EXPECT_EQ(program.exitCode, code) << environment << arguments;
    EXPECT_NE(program.errors.find(error), std::string::npos) << program.errors;
    EXPECT_EQ(program.output, "");
  }
}

}  // namespace vex
