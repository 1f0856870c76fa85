#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "base/pak_archive.h"
#include "base/report.h"
#include "platform/end_request.h"
#include "platform/standard_streams.h"
#include "tools/command_line.h"

namespace {

constexpr const char* usage =
    "Usage: vexpak create PAK DIR    pack all files below DIR into the archive PAK\n"
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

}  // namespace

int main(int argc, char** argv) {
  vex::openStandardStreams();
  vex::endAtSignals();
  const vex::CommandLine line("vexpak", usage, argc, argv);
  const std::vector<std::string> words = line.parse({});
  const std::string command = words.empty() ? "" : words[0];
  if (command == "create" && words.size() == 3) {
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
