#include "tests/support/temporary_folder.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iterator>

namespace vex {

namespace fs = std::filesystem;

namespace {

fs::path makeFolder() {
  std::string pattern = (fs::temp_directory_path() / "vextest.XXXXXX").native();
  return mkdtemp(pattern.data());
}

}  // namespace

TemporaryFolder::TemporaryFolder() : previous(fs::current_path()), folder(makeFolder()) {
  fs::current_path(folder);
}

TemporaryFolder::~TemporaryFolder() {
  fs::current_path(previous);
  std::error_code ignored;
  fs::remove_all(folder, ignored);
}

void writeFile(const fs::path& path, std::string_view bytes) {
  if (path.has_parent_path()) fs::create_directories(path.parent_path());
  std::ofstream(path, std::ios::binary) << bytes;
}

std::string readFile(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

Program runProgram(const std::string& command) {
  const fs::path folder = makeFolder();
  const fs::path output = folder / "output", errors = folder / "errors";
  const int status =
      std::system(("( " + command + " ) >'" + output.native() + "' 2>'" + errors.native() + "'").c_str());
  const Program program{WIFEXITED(status) ? WEXITSTATUS(status) : -1, readFile(output), readFile(errors)};
  fs::remove_all(folder);
  return program;
}

}  // namespace vex
