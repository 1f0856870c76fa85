#include "platform/replace_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <vector>

namespace vex {

namespace {

struct Unfinished {
  std::string path;
  pid_t writer;
};

// Generators write from several threads.
std::mutex unfinishedMutex;
std::vector<Unfinished> unfinished;

// mkostemp makes files that only their owner can read; the finished file follows the user's mask.
void applyMask(int descriptor) {
  const mode_t mask = umask(0);
  umask(mask);
  fchmod(descriptor, 0666 & ~mask);
}

// The file at the end of a chain of links; the path itself where that leads nowhere.
std::string behindLinks(const std::string& path) {
  struct stat status;
  if (lstat(path.c_str(), &status) != 0 || !S_ISLNK(status.st_mode)) return path;
  const std::unique_ptr<char, void (*)(void*)> real(realpath(path.c_str(), nullptr), std::free);
  return real ? real.get() : path;
}

}  // namespace

ReplacementFile::ReplacementFile(const std::string& target) {
  std::signal(SIGXFSZ, SIG_IGN);
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
  temporaryPath = targetPath + ".XXXXXX";
  const int descriptor = mkostemp(temporaryPath.data(), O_CLOEXEC);
  if (descriptor < 0) return;
  applyMask(descriptor);
  file = fdopen(descriptor, "wb");
  rememberTemporaryFile(temporaryPath, 0);
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
    forgetTemporaryFile(temporaryPath);
    if (done && std::rename(temporaryPath.c_str(), targetPath.c_str()) != 0) {
      done = false;
      error = errno;
    }
    if (!done) unlink(temporaryPath.c_str());
  }
  errno = error;
  return done;
}

void rememberTemporaryFile(const std::string& path, pid_t writer) {
  const std::lock_guard lock(unfinishedMutex);
  unfinished.push_back({path, writer});
}

void forgetTemporaryFile(const std::string& path) {
  const std::lock_guard lock(unfinishedMutex);
  std::erase_if(unfinished, [&](const Unfinished& file) { return file.path == path; });
}

void removeTemporaryFiles() {
  const std::lock_guard lock(unfinishedMutex);
  for (const auto& [path, writer] : unfinished) {
    if (writer > 0) {
      kill(-writer, SIGKILL);
      waitpid(writer, nullptr, 0);
    }
    unlink(path.c_str());
  }
}

}  // namespace vex
