#include "platform/replace_file.h"

#include <limits.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <memory>

#include "platform/end_request.h"

namespace vex {

namespace {

// Signal handlers remove these files, and generators write from several threads: hence a table of fixed
// size without locks.
struct Unfinished {
  enum State : int { free, claimed, named };
  std::atomic<State> state = free;
  char path[PATH_MAX];
  pid_t writer;
};

std::array<Unfinished, 32> unfinished;
static_assert(std::atomic<Unfinished::State>::is_always_lock_free);

// The file at the end of a chain of links; the path itself where that leads nowhere.
std::string behindLinks(const std::string& path) {
  struct stat status;
  if (lstat(path.c_str(), &status) != 0 || !S_ISLNK(status.st_mode)) return path;
  const std::unique_ptr<char, void (*)(void*)> real(realpath(path.c_str(), nullptr), std::free);
  return real ? real.get() : path;
}

}  // namespace

ReplacementFile::ReplacementFile(const std::string& target) {
  ignoreWriteSignals();
  struct stat status;
  const bool exists = stat(target.c_str(), &status) == 0;
  if (exists && S_ISDIR(status.st_mode)) {
    errno = EISDIR;
    return;
  }
  if (exists && !S_ISREG(status.st_mode)) {
    file = std::fopen(target.c_str(), "wbe");
    return;
  }
  targetPath = behindLinks(target);
  createTemporaryFile();
}

// Remembered before it is there, so that no signal finds it unknown.
void ReplacementFile::createTemporaryFile() {
  constexpr int attempts = 100;  // names may be left from processes of the same number
  static std::atomic<int> created = 0;
  const std::string prefix = hiddenName(targetPath) + "." + std::to_string(getpid()) + "-";
  for (int i = 0; i < attempts && !file; ++i) {
    temporaryPath = prefix + std::to_string(created++);
    rememberTemporaryFile(temporaryPath, 0);
    file = std::fopen(temporaryPath.c_str(), "wbxe");
    if (file) return;
    const int error = errno;
    forgetTemporaryFile(temporaryPath);
    errno = error;
    if (error != EEXIST) return;
  }
}

ReplacementFile::~ReplacementFile() {
  if (!file) return;
  std::fclose(file);
  if (temporaryPath.empty()) return;
  unlink(temporaryPath.c_str());
  forgetTemporaryFile(temporaryPath);
}

bool ReplacementFile::commit() {
  errno = 0;
  bool done = std::fflush(file) == 0 && !std::ferror(file);
  int error = errno != 0 ? errno : EIO;  // of the first step that failed
  if (std::fclose(file) != 0 && done) {
    done = false;
    error = errno;
  }
  file = nullptr;
  if (!temporaryPath.empty()) {
    if (done && std::rename(temporaryPath.c_str(), targetPath.c_str()) != 0) {
      done = false;
      error = errno;
    }
    if (!done) unlink(temporaryPath.c_str());
    forgetTemporaryFile(temporaryPath);
  }
  errno = error;
  return done;
}

std::string hiddenName(const std::string& path) {
  std::string hidden = path;
  hidden.insert(hidden.rfind('/') + 1, ".");
  return hidden;
}

void rememberTemporaryFile(const std::string& path, pid_t writer) {
  for (Unfinished& file : unfinished) {
    Unfinished::State expected = Unfinished::free;
    if (!file.state.compare_exchange_strong(expected, Unfinished::claimed)) continue;
    std::snprintf(file.path, sizeof file.path, "%s", path.c_str());
    file.writer = writer;
    file.state = Unfinished::named;
    return;
  }
}

void forgetTemporaryFile(const std::string& path) {
  for (Unfinished& file : unfinished) {
    if (file.state == Unfinished::named && path == file.path) file.state = Unfinished::free;
  }
}

bool replaceFile(const std::string& target, std::string_view bytes) {
  ReplacementFile file(target);
  return file.stream() && std::fwrite(bytes.data(), 1, bytes.size(), file.stream()) == bytes.size() &&
         file.commit();
}

void removeTemporaryFiles() {
  for (const Unfinished& file : unfinished) {
    if (file.state != Unfinished::named) continue;
    if (file.writer > 0) {
      kill(-file.writer, SIGKILL);
      waitpid(file.writer, nullptr, 0);
    }
    unlink(file.path);
  }
}

}  // namespace vex
