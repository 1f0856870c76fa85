#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>

#include "base/pak_archive.h"
#include "base/report.h"
#include "platform/end_request.h"
#include "platform/standard_streams.h"

namespace {

constexpr const char* usage =
    "Usage: vexpak create PAK DIR    pack all files below DIR into the archive PAK\n"
    "       vexpak list PAK          print size, offset and name of each member\n"
    "       vexpak extract PAK DIR   write the members below DIR\n"
    "       vexpak --help            show this text\n"
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
  const std::string command = argc > 1 ? argv[1] : "";
  if (command == "--help" || command == "-h") {
    std::fputs(usage, stdout);
  } else if (command == "create" && argc == 4) {
    vex::createPak(argv[2], argv[3]);
  } else if (command == "list" && argc == 3) {
    list(argv[2]);
  } else if (command == "extract" && argc == 4) {
    vex::extractPak(argv[2], argv[3]);
  } else {
    std::fputs(usage, stderr);
    return 2;
  }
  return 0;
}
