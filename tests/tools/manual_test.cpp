#include <gtest/gtest.h>

#include <algorithm>
#include <regex>
#include <set>

#include "tests/support/temporary_folder.h"

namespace vex {

namespace {

// The long options that a text names.
std::set<std::string> optionsOf(const std::string& text) {
  static const std::regex option("--[a-z][a-z-]*");
  std::set<std::string> options;
  for (std::sregex_iterator match(text.begin(), text.end(), option), end; match != end; ++match) {
    options.insert(match->str());
  }
  return options;
}

std::string manualPage(const std::string& program) {
  return std::regex_replace(readFile(VEX_SOURCE "/docs/man/" + program + ".1"), std::regex(R"(\\-)"), "-");
}

}  // namespace

TEST(Manual, NamesTheOptionsThatTheProgramsName) {
  for (const std::string program :
       {"vexmodel", "vexpak", "vexproduce", "vexproject", "vexrecord", "vexstudio"}) {
    const Program help = runProgram(VEX_BIN "/" + program + " --help");
    EXPECT_EQ(help.exitCode, 0) << program;
    EXPECT_EQ(help.errors, "") << program;
    const std::string page = manualPage(program);
    EXPECT_FALSE(optionsOf(help.output).empty()) << program;
    EXPECT_EQ(optionsOf(page), optionsOf(help.output)) << program;
    EXPECT_EQ(runProgram(VEX_BIN "/" + program + " --no-such-option").exitCode, 2) << program;
  }
}

// The linker's list is the oracle for what a program is made with.
TEST(Manual, VersionsAreOneLineWithEveryLibrary) {
  std::string version;
  for (const std::string program :
       {"vexmodel", "vexpak", "vexproduce", "vexproject", "vexrecord", "vexstudio"}) {
    const Program told = runProgram(VEX_BIN "/" + program + " --version");
    EXPECT_EQ(told.exitCode, 0) << program;
    std::smatch parts;
    ASSERT_TRUE(std::regex_match(told.output, parts,
                                 std::regex(program + R"( (\d+\.\d+\.\d+) \(MIT\) with ([^\n]+)\n)")))
        << told.output;
    if (version.empty()) version = parts[1];
    EXPECT_EQ(parts[1], version) << program;

    const std::string list = parts[2];
    const std::string needed = runProgram("readelf -dW " VEX_BIN "/" + program + " | grep NEEDED").output;
    const auto inPictures = list.find("pictures in ");
    const std::string libraries = list.substr(0, inPictures);
    const auto named = std::count(libraries.begin(), libraries.end(), '(');
    EXPECT_EQ(named - (program == "vexmodel" || program == "vexproject"),
              std::count(needed.begin(), needed.end(), '\n'))
        << list;
    EXPECT_EQ(inPictures != std::string::npos, program == "vexproduce") << list;
#ifndef __SANITIZE_ADDRESS__
    EXPECT_EQ(list.find("unknown"), std::string::npos) << list;
#endif
  }
}

// The formatter's own complaints are the oracle for the pages' markup.
TEST(Manual, PagesAreWellFormed) {
  for (const std::string program :
       {"vex", "vex-show", "vexmodel", "vexpak", "vexproduce", "vexproject", "vexrecord", "vexstudio"}) {
    const std::string page = VEX_SOURCE "/docs/man/" + program + ".1";
    const Program formatted = runProgram("groff -man -Tascii -ww -z " + page);
    EXPECT_EQ(formatted.exitCode, 0) << program;
    EXPECT_EQ(formatted.errors, "") << program;
    EXPECT_NE(manualPage(program).find("SH EXIT STATUS"), std::string::npos) << program;
  }
}

#ifndef __SANITIZE_ADDRESS__
TEST(Manual, TheLicencesAreThoseOfWhatIsLinked) {
  const Program check = runProgram(VEX_SOURCE "/scripts/licences --check");
  EXPECT_EQ(check.exitCode, 0) << check.output << check.errors;
}
#endif

}  // namespace vex
