#include "tests/support/fatal.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "platform/message.h"

namespace vex {

ChildResult runInChild(const std::function<void()>& body) {
  int ends[2];
  if (pipe(ends) != 0) return {};
  std::fflush(nullptr);
  const pid_t child = fork();
  if (child == 0) {
    dup2(ends[1], STDERR_FILENO);
    close(ends[0]);
    close(ends[1]);
    body();
    std::fflush(nullptr);
    std::_Exit(0);
  }
  close(ends[1]);
  ChildResult result;
  char buffer[4096];
  for (ssize_t size; (size = read(ends[0], buffer, sizeof buffer)) > 0;) {
    result.errorText.append(buffer, static_cast<std::size_t>(size));
  }
  close(ends[0]);
  int status = 0;
  waitpid(child, &status, 0);
  result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return result;
}

std::string fatalText(const std::function<void()>& body) {
  const ChildResult result = runInChild([&] {
    setMessageSink([](const char* text) { std::fputs(text, stderr); });
    body();
  });
  if (result.exitCode != 255) {
    return "exit code " + std::to_string(result.exitCode) + " instead of 255: " + result.errorText;
  }
  return result.errorText;
}

}  // namespace vex
