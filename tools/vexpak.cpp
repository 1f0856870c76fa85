#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "authoring/used_files.h"
#include "authoring/whole_check.h"
#include "base/pak_archive.h"
#include "base/report.h"
#include "platform/end_request.h"
#include "platform/standard_streams.h"
#include "timeline/project_record.h"
#include "tools/command_line.h"
#include "tools/project_input.h"

namespace {

constexpr const char* usage =
    "Usage: vexpak create PAK DIR    pack all files below DIR into the archive PAK\n"
    "         --used SHOW            only what the show, a project file or its text, can ask for; all else\n"
    "                                is listed\n"
    "       vexpak list PAK          print size, offset and name of each member\n"
    "       vexpak extract PAK DIR   write the members below DIR\n"
    "       vexpak --help            show this text\n"
    "       vexpak --version         show version, libraries and licences\n"
    "\n"
    "Names in an archive use backslashes and have at most 31 characters; an archive has at most 256\n"
    "members. Hidden files are left out.\n";

void list(const char* pak) {
  for (const vex::PakMember& member : vex::listPak(pak)) {
    std::printf("%10u %10u  %s\n", member.size, member.offset, member.name);
  }
  if (std::fflush(stdout) != 0) vex::fatalError("can't write the list: %s", std::strerror(errno));
}

// What the project of the folder, in the form it is played in, can ask for.
void createUsed(const std::string& pak, const std::string& folder, const std::string& show) {
  namespace fs = std::filesystem;
  std::string bytes = vex::readProjectFile(show);
  if (!vex::isProjectFile(bytes)) bytes = vex::compileWhole(bytes, show);
  if (const std::string played = folder + "/test.hvp"; vex::readProjectFile(played) != bytes)
    vex::fatalError("%s is not what %s was compiled to", played.c_str(), show.c_str());
  const vex::DecodedProject decoded = vex::decodeProject(bytes, show.c_str());
  if (!decoded.failure.empty()) vex::fatalError("%s", decoded.failure.c_str());
  const fs::path whole = fs::absolute(pak);
  if (chdir(folder.c_str()) != 0)
    vex::fatalError("can't go to folder %s: %s", folder.c_str(), std::strerror(errno));
  const std::set<std::string> used = vex::usedFiles(decoded.project);
  const std::vector<std::string> others = vex::createPak(
      whole, ".", [&used](const std::string& name) { return used.contains(vex::asUsed(name)); });
  for (const std::string& name : others) std::printf("left out  %s\n", name.c_str());
  if (std::fflush(stdout) != 0) vex::fatalError("can't write the list: %s", std::strerror(errno));
}

}  // namespace

int main(int argc, char** argv) {
  vex::openStandardStreams();
  vex::endAtSignals();
  const vex::CommandLine line("vexpak", usage, argc, argv);
  std::string show;
  const vex::Option options[] = {{"--used", [&show](auto& value) { show = value; }}};
  const std::vector<std::string> words = line.parse(options);
  const std::string command = words.empty() ? "" : words[0];
  if (!show.empty() && command != "create") line.refuse("--used belongs to create");
  if (!show.empty() && words.size() == 3) {
    createUsed(words[1], words[2], show);
  } else if (command == "create" && words.size() == 3) {
    vex::createPak(words[1].c_str(), words[2].c_str());
  } else if (command == "list" && words.size() == 2) {
    list(words[1].c_str());
  } else if (command == "extract" && words.size() == 3) {
    vex::extractPak(words[1].c_str(), words[2].c_str());
  } else {
    line.refuse();
  }
  return 0;
}
