#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <filesystem>

#include "benchmarks/endure/endure.h"
#include "tests/support/temporary_folder.h"

namespace vex::endure {

namespace fs = std::filesystem;

void Account::figure(const std::string& text) const {
  std::printf("%-11s %s\n", stage, text.c_str());
  std::fflush(stdout);
}

void Account::fail(const std::string& text) {
  ++failures;
  figure("FAILED: " + text);
}

void Account::standsStill(const char* what, double first, double last, const char* unit) {
  const double change = first > 0 ? (last - first) / first : last;
  char text[160];
  std::snprintf(text, sizeof text, "%s: %.0f %s at first, %.0f at last, %+.2f %%", what, first, unit, last,
                100 * change);
  if (change > 0.01) return fail(text);
  figure(text);
}

Process::Process(const std::vector<std::string>& words) : begun(now()) {
  process = fork();
  if (process != 0) return;
  setpgid(0, 0);
  std::signal(SIGINT, SIG_DFL);  // a shell in the background ignores it for all below
  const int nothing = open("/dev/null", O_RDWR);
  const int errors = open("../errors", O_WRONLY | O_CREAT | O_TRUNC, 0644);
  dup2(nothing, STDIN_FILENO);
  dup2(nothing, STDOUT_FILENO);
  dup2(errors, STDERR_FILENO);
  setenv("ALSOFT_DRIVERS", "null", 1);
  std::vector<char*> arguments;
  for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  execv(arguments[0], arguments.data());
  _exit(127);
}

Process::~Process() {
  if (!reaped) kill(process, SIGKILL);
  kill(-process, SIGKILL);
  if (!reaped) waitpid(process, nullptr, 0);
}

void Process::signal(int number) const {
  kill(process, number);
}

bool Process::ended() {
  if (reaped) return true;
  int status = 0;
  rusage used{};
  if (wait4(process, &status, WNOHANG, &used) != process) return false;
  reaped = true;
  end = {.code = WIFEXITED(status) ? WEXITSTATUS(status) : -1,
         .mostMemory = used.ru_maxrss,
         .seconds = now() - begun};
  return true;
}

End Process::wait(double patience) {
  for (const double last = now() + patience; !ended(); pauseFor(0.002)) {
    if (now() > last) kill(process, SIGKILL);
  }
  return end;
}

bool Process::killAlone() {
  kill(process, SIGKILL);
  wait();
  for (const double last = now() + 10; kill(-process, 0) == 0; pauseFor(0.01)) {
    if (now() > last) return false;
  }
  return true;
}

std::string programPath(const char* name) {
  return (fs::read_symlink("/proc/self/exe").parent_path() / name).native();
}

double now() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

void pauseFor(double s) {
  usleep(static_cast<useconds_t>(std::lround(s * 1e6)));
}

std::map<std::string, std::string> filesOf(const std::string& folder) {
  std::map<std::string, std::string> files;
  if (!fs::exists(folder)) return files;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
    if (entry.is_regular_file()) files[fs::relative(entry.path(), folder).native()] = readFile(entry.path());
  }
  return files;
}

double between(Chance& chance, double least, double most) {
  return std::uniform_real_distribution<double>(least, most)(chance);
}

}  // namespace vex::endure
