#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>

#include "platform/paths.h"
#include "platform/replace_file.h"
#include "shell/report.h"
#include "timeline/part_dispatcher.h"
#include "timeline/project_record.h"
#include "timeline/project_text.h"

namespace {

constexpr const char* usage =
    "Usage: vexproject compile IN.txt OUT.hvp   make a project file of its text form\n"
    "       vexproject dump IN.hvp              print the text form of a project file\n"
    "       vexproject --help                   show this text\n"
    "\n"
    "The text form is described in docs/project-text.md.\n"
    "Exit codes: 0 done, 2 wrong usage, 255 refused.\n";

constexpr std::size_t mebibyte = 1024 * 1024;
constexpr std::size_t maxProjectSize = 64 * mebibyte;
constexpr std::size_t maxTextSize = 4 * maxProjectSize;  // room for every dump

// Works for pipes too, so that a dump can be edited on its way.
std::string readAll(std::FILE* file, const char* name, std::size_t limit) {
  std::string bytes;
  char block[1 << 16];
  for (std::size_t size; (size = std::fread(block, 1, sizeof block, file)) > 0;) {
    bytes.append(block, size);
    if (bytes.size() > limit) {
      vex::fatalError("%s is longer than %zu MiB", name, limit / mebibyte);
    }
  }
  if (std::ferror(file)) vex::fatalError("can't read %s: %s", name, std::strerror(errno));
  std::fclose(file);
  return bytes;
}

void writeFile(const char* name, const std::string& bytes) {
  struct stat status;
  if (stat(name, &status) == 0 && !S_ISREG(status.st_mode)) {
    vex::fatalError("can't write %s: it is no regular file", name);
  }
  vex::ReplacementFile file(name);
  if (!file.stream() || std::fwrite(bytes.data(), 1, bytes.size(), file.stream()) != bytes.size() ||
      !file.commit()) {
    vex::fatalError("can't write %s: %s", name, std::strerror(errno));
  }
}

void compile(const char* textName, const char* projectName) {
  std::FILE* file = std::fopen(textName, "rb");
  if (!file) vex::fatalError("can't read %s: %s", textName, std::strerror(errno));
  const vex::ReadProjectText read = vex::readProjectText(readAll(file, textName, maxTextSize));
  if (!read.problems.empty()) {
    const vex::TextProblem& first = read.problems.front();
    vex::fatalError("%s:%d: %s", textName, first.line, first.text.c_str());
  }
  writeFile(projectName, vex::encodeProject(read.project));
}

void dump(const char* name) {
  std::FILE* file = vex::openLooseFile(name, "rb");
  if (!file) vex::fatalError("Project file %s not found!", name);
  const std::string bytes = readAll(file, name, maxProjectSize);
  {
    // Refuses what the player refuses, in its words.
    vex::PartDispatcher player;
    player.names = vex::ProjectNames::taken;
    player.loadProject(name);
  }
  const vex::DecodedProject decoded = vex::decodeProject(bytes, name);
  if (!decoded.failure.empty()) vex::fatalError("%s", decoded.failure.c_str());
  const std::string text = vex::writeProjectText(decoded.project);
  if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() || std::fflush(stdout) != 0) {
    vex::fatalError("can't write standard output: %s", std::strerror(errno));
  }
}

}  // namespace

int main(int argc, char** argv) {
  const std::string command = argc > 1 ? argv[1] : "";
  if (command == "--help" || command == "-h") {
    std::fputs(usage, stdout);
  } else if (command == "compile" && argc == 4) {
    compile(argv[2], argv[3]);
  } else if (command == "dump" && argc == 3) {
    dump(argv[2]);
  } else {
    std::fputs(usage, stderr);
    return 2;
  }
  return 0;
}
