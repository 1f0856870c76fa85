#include "tests/support/running_program.h"

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "tests/support/temporary_folder.h"
#include "tests/support/x_server.h"

namespace vex {

RunningProgram::RunningProgram(const std::string& path, const std::string& heard,
                               const std::string& argument) {
  char pattern[] = "/tmp/vextest.XXXXXX";
  const int descriptor = mkstemp(pattern);
  errorFile = pattern;
  if (!heard.empty()) {
    writeFile("alsoft.conf",
              "channels = stereo\nsample-type = int16\nfrequency = 44100\n[wave]\nfile = " + heard + "\n");
  }
  process = fork();
  if (process == 0) {
    dup2(descriptor, STDERR_FILENO);
    close(STDIN_FILENO);
    // The leak sanitizer crashes now and then over the driver's threads, which end while it looks.
    setenv("LSAN_OPTIONS", "detect_leaks=0", 1);
    setenv("ALSOFT_DRIVERS", heard.empty() ? "null" : "wave", 1);
    if (!heard.empty()) setenv("ALSOFT_CONF", "alsoft.conf", 1);
    execl(path.c_str(), path.c_str(), argument.empty() ? nullptr : argument.c_str(),
          static_cast<char*>(nullptr));
    _exit(127);
  }
  close(descriptor);
}

RunningProgram::~RunningProgram() {
  if (running()) {
    signal(SIGKILL);
    waitpid(process, nullptr, 0);
  }
  unlink(errorFile.c_str());
}

void RunningProgram::signal(int number) const {
  kill(process, number);
}

bool RunningProgram::running() {
  if (!ended) ended = waitpid(process, &status, WNOHANG) == process;
  return !ended;
}

int RunningProgram::exitCode() {
  if (!waitUntil([this] { return !running(); })) return -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::string RunningProgram::openAt(int descriptor) const {
  const std::string link = "/proc/" + std::to_string(process) + "/fd/" + std::to_string(descriptor);
  std::error_code none;
  return std::filesystem::read_symlink(link, none).native();
}

std::string RunningProgram::errors() const {
  return readFile(errorFile);
}

}  // namespace vex
