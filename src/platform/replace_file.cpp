#include "platform/replace_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <mutex>
#include <vector>

namespace vex {

namespace {

// Generators write from several threads.
std::mutex unfinishedMutex;
std::vector<std::string> unfinished;

// mkostemp makes files that only their owner can read; the finished file follows the user's mask.
void applyMask(int descriptor) {
  const mode_t mask = umask(0);
  umask(mask);
  fchmod(descriptor, 0666 & ~mask);
}

}  // namespace

ReplacementFile::ReplacementFile(const std::string& target)
    : targetPath(target), temporaryPath(target + ".XXXXXX") {
  const int descriptor = mkostemp(temporaryPath.data(), O_CLOEXEC);
  if (descriptor < 0) return;
  applyMask(descriptor);
  file = fdopen(descriptor, "wb");
  rememberTemporaryFile(temporaryPath);
}

ReplacementFile::~ReplacementFile() {
  if (!file) return;
  std::fclose(file);
  unlink(temporaryPath.c_str());
  forgetTemporaryFile(temporaryPath);
}

bool ReplacementFile::commit() {
  const bool written = std::fflush(file) == 0 && !std::ferror(file);
  int error = errno;
  const bool closed = std::fclose(file) == 0;
  if (written && !closed) error = errno;
  file = nullptr;
  forgetTemporaryFile(temporaryPath);
  if (written && closed) {
    if (std::rename(temporaryPath.c_str(), targetPath.c_str()) == 0) return true;
    error = errno;
  }
  unlink(temporaryPath.c_str());
  errno = error;
  return false;
}

void rememberTemporaryFile(const std::string& path) {
  const std::lock_guard lock(unfinishedMutex);
  unfinished.push_back(path);
}

void forgetTemporaryFile(const std::string& path) {
  const std::lock_guard lock(unfinishedMutex);
  std::erase(unfinished, path);
}

void removeTemporaryFiles() {
  const std::lock_guard lock(unfinishedMutex);
  for (const std::string& path : unfinished) unlink(path.c_str());
}

}  // namespace vex
