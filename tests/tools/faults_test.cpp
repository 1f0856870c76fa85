#include <GL/gl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>

#include "platform/offscreen_context.h"
#include "tests/support/draft.h"
#include "tests/support/fatal.h"
#include "tests/support/png.h"
#include "tests/support/run_folder.h"
#include "tests/support/temporary_folder.h"
#include "textures/gl_setup.h"

// What a user sees when the machine fails; docs/reliability.md has the table.

namespace vex {

namespace {

namespace fs = std::filesystem;

ProjectData redSecond() {
  ProjectData project{.totalTime = 1};
  project.parts = {fillPart("red", 0, 2, 1, 0, 0)};
  return project;
}

}  // namespace

// Mesa hides what it is told to, and then all that every GL has.
TEST(Faults, TheShowIsDrawnWithoutTheExtensionsThatItProbes) {
  const TemporaryFolder folder;
  writeRunFolder(redSecond());
  const struct {
    const char* variable;
    const char* value;
    const char* found;  // of multitexture, separate specular colour, compiled vertex arrays; version
  } cases[] = {
      {"NOTHING", "", "1 1 1 4."},
      {"MESA_EXTENSION_OVERRIDE", "-GL_ARB_multitexture", "0 0 0 4."},
      {"MESA_GL_VERSION_OVERRIDE", "1.1", "1 1 1 1."},
  };
  std::string picture;
  for (const auto& [variable, value, found] : cases) {
    const ChildResult context = runInChild([&] {
      setenv(variable, value, 1);
      openOffscreenContext(32, 16);
      probeExtensions();
      std::fprintf(stderr, "%d %d %d %.2s", glExtensions.hasMultitexture, glExtensions.hasSeparateSpecular,
                   glExtensions.hasCompiledArrays, reinterpret_cast<const char*>(glGetString(GL_VERSION)));
      _exit(0);
    });
    EXPECT_EQ(context.errorText, found) << variable << value;

    const Program program = runProgram(std::string(variable) + "=" + value +
                                       " " VEX_BIN "/vexrecord --stills 0.5 --out . --size 32x16");
    EXPECT_EQ(program.exitCode, 0) << variable << value << program.errors;
    if (picture.empty()) picture = readFile("0000.500.png");
    EXPECT_NE(picture, "");
    EXPECT_EQ(readFile("0000.500.png"), picture) << variable << value;
  }
}

// The sanitizers' runtime insists on being loaded first.
#ifndef __SANITIZE_ADDRESS__

// A world of the show without each of them. Highlights that textures lie over are darker, nothing else
// changes.
TEST(Faults, AWorldIsDrawnWithoutEachExtension) {
  const TemporaryFolder folder;
  const std::string record = VEX_BIN "/vexrecord --dir " + sharedDraft().native() +
                             " --from 54 --cold --stills 54 --out . --size 64x36";
  const auto drawn = [&](const std::string& hidden) {
    const Program program =
        runProgram("VEX_HIDE_EXTENSION=" + hidden + " LD_PRELOAD=" VEX_PRELOAD " " + record);
    EXPECT_EQ(program.exitCode, 0) << hidden << program.errors;
    return readPng("0054.000.png").pixels;
  };
  const auto all = drawn("none");
  ASSERT_FALSE(all.empty());
  EXPECT_EQ(drawn("GL_ARB_multitexture"), all);
  EXPECT_EQ(drawn("GL_EXT_compiled_vertex_array"), all);
  const auto plain = drawn("GL_EXT_separate_specular_color");
  EXPECT_NE(plain, all);
  EXPECT_TRUE(std::ranges::equal(plain, all, std::less_equal()));
}

TEST(Faults, FailingReadsAndWritesAreNamedAndLeaveNothingHalf) {
  const TemporaryFolder folder;
  fs::create_directory("work");
  fs::current_path("work");
  writeRunFolder(redSecond());
  writeFile("show.txt", "total 10\n");
  const std::string vexpak = VEX_BIN "/vexpak ", vexproject = VEX_BIN "/vexproject ",
                    vexmodel = VEX_BIN "/vexmodel ";
  ASSERT_EQ(runProgram(vexpak + "create all.pak data").exitCode, 0);
  const struct {
    std::string command;
    const char* target;   // what it writes
    const char* failure;  // the first read or write that fails
  } cases[] = {
      {vexpak + "create new data", "new", "READ=1"},
      {vexpak + "create new data", "new", "READ=40"},
      {vexpak + "create new data", "new", "WRITE=9"},
      {vexpak + "list all.pak", "none", "READ=1"},
      {vexpak + "extract all.pak new", "new/word1.bmp", "READ=3"},
      {vexproject + "compile show.txt new", "new", "READ=1"},
      {vexproject + "compile show.txt new", "new", "WRITE=1"},
      {vexproject + "dump test.hvp", "none", "READ=1"},
      {vexmodel + "info data/fetus.ase", "none", "READ=1"},
      {VEX_BIN "/vexrecord --stills 0.5 --out new --size 32x16", "new/0000.500.png", "READ=20"},
      {VEX_BIN "/vexrecord --stills 0.5 --out new --size 32x16", "new/0000.500.png", "WRITE=1"},
  };
  for (const auto& [command, target, failure] : cases) {
    fs::remove_all("new");
    const Program program = runProgram("VEX_FAIL_BELOW=$PWD VEX_FAIL_" + std::string(failure) +
                                       " LD_PRELOAD=" VEX_PRELOAD " " + command);
    const std::string what = command + ", " + failure + ": " + program.errors;
    EXPECT_EQ(program.exitCode, 255) << what;
    EXPECT_NE(program.errors.find("Input/output error"), std::string::npos) << what;
    EXPECT_FALSE(fs::exists(target)) << what;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(".")) {
      EXPECT_FALSE(entry.path().filename().native().starts_with(".")) << what << entry.path();
    }
  }
}

#endif

}  // namespace vex
