#include "studio/show/child.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>

#include "platform/steady_clock.h"

extern char** environ;

namespace vex::studio {

namespace {

constexpr std::size_t longestLine = 5000;  // bytes, longer than a path; the rest of a longer one is dropped

// "NAME 40 %", perhaps with more behind it.
std::optional<int> percentIn(const std::string& line) {
  char name[32];
  int percent = 0;
  char sign = '\0';
  if (std::sscanf(line.c_str(), "%31s %d %c", name, &percent, &sign) != 3 || sign != '%') return std::nullopt;
  return std::clamp(percent, 0, 100);
}

}  // namespace

struct Child::State {
  pid_t process = -1;  // while it has not been waited for
  int output = -1;     // its standard output and error
  int code = -1;
  int percent = -1;
  std::string line;  // that it is saying
  std::string said;  // last whole line
  double cancelledAt = -1;

  ~State() {
    if (process >= 0) {
      kill(-process, SIGKILL);
      while (waitpid(process, nullptr, 0) < 0 && errno == EINTR) {
      }
    }
    if (output >= 0) close(output);
  }

  void endLine() {
    if (const auto found = percentIn(line)) {
      percent = *found;
    } else if (!line.empty()) {
      said = line;
    }
    line.clear();
  }

  void listen() {
    std::array<char, 4096> bytes;
    for (ssize_t got = 0; output >= 0 && (got = read(output, bytes.data(), bytes.size())) > 0;) {
      for (ssize_t i = 0; i < got; ++i) {
        const char c = bytes[static_cast<std::size_t>(i)];
        if (c == '\n' || c == '\r') {
          endLine();
        } else if (line.size() < longestLine) {
          line += c;
        }
      }
    }
  }

  // Its own children may hold the pipe open: the process alone counts.
  void notice() {
    int status = 0;
    if (process < 0 || waitpid(process, &status, WNOHANG) != process) return;
    process = -1;
    listen();
    endLine();
    code = WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
  }
};

Child::Child(double seconds) : state(std::make_unique<State>()), patience(seconds) {}
Child::~Child() = default;

std::optional<std::string> Child::start(const std::vector<std::string>& words, const std::string& folder) {
  if (running()) return words.front() + " is running already";
  state = std::make_unique<State>();
  int ends[2];
  if (pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0) return std::string("no pipe: ") + std::strerror(errno);
  fcntl(ends[1], F_SETFL, 0);  // the child may wait for us
  state->output = ends[0];

  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
  posix_spawn_file_actions_adddup2(&actions, ends[1], STDERR_FILENO);
  posix_spawn_file_actions_addchdir_np(&actions, folder.c_str());
  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  posix_spawnattr_setflags(&attributes,
                           POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
  sigset_t signals;
  sigemptyset(&signals);
  posix_spawnattr_setsigmask(&attributes, &signals);
  for (const int number : {SIGPIPE, SIGINT, SIGTERM, SIGHUP, SIGXFSZ}) sigaddset(&signals, number);
  posix_spawnattr_setsigdefault(&attributes, &signals);

  std::vector<std::string> copies = words;
  std::vector<char*> arguments;
  for (std::string& word : copies) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  const int error =
      posix_spawnp(&state->process, arguments[0], &actions, &attributes, arguments.data(), environ);
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&actions);
  close(ends[1]);
  if (error == 0) return std::nullopt;
  state->process = -1;
  return words.front() + " can't be started: " + std::strerror(error);
}

int Child::descriptor() const {
  return state->output;
}

void Child::update() {
  state->listen();
  const bool late = state->cancelledAt >= 0 && steadySeconds() - state->cancelledAt > patience;
  if (late && state->process >= 0) kill(-state->process, SIGKILL);
  state->notice();
}

bool Child::running() const {
  return state->process >= 0;
}

int Child::percent() const {
  return state->percent;
}

std::string Child::message() const {
  return state->said;
}

int Child::exitCode() const {
  return state->code;
}

void Child::cancel() {
  if (!running() || cancelled()) return;
  state->cancelledAt = steadySeconds();
  kill(-state->process, SIGINT);
}

bool Child::cancelled() const {
  return state->cancelledAt >= 0;
}

}  // namespace vex::studio
