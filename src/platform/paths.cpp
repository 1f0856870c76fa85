#include "platform/paths.h"

#include <dirent.h>
#include <fcntl.h>
#include <strings.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <memory>
#include <string_view>

namespace vex {

namespace {

bool exists(const std::string& path) {
  struct stat status;
  return lstat(path.c_str(), &status) == 0;
}

// The entry of `folder` that equals `name` but for ASCII letter case; the first in byte order.
std::string findIgnoringCase(const std::string& folder, const std::string& name) {
  const std::unique_ptr<DIR, int (*)(DIR*)> entries(opendir(folder.empty() ? "." : folder.c_str()), closedir);
  std::string found;
  if (!entries) return found;
  while (const dirent* entry = readdir(entries.get())) {
    if (strcasecmp(entry->d_name, name.c_str()) == 0 && (found.empty() || entry->d_name < found)) {
      found = entry->d_name;
    }
  }
  return found;
}

}  // namespace

std::string resolvePath(const char* name) {
  std::string wanted(name);
  for (char& c : wanted) {
    if (c == '\\') c = '/';
  }
  if (exists(wanted)) return wanted;

  std::string path;
  std::string_view rest = wanted;
  while (!rest.empty()) {
    const std::size_t slash = rest.find('/');
    const std::string part(rest.substr(0, slash));
    if (!part.empty()) {
      if (exists(path + part)) {
        path += part;
      } else {
        const std::string found = findIgnoringCase(path, part);
        path += found.empty() ? part : found;
      }
    }
    if (slash == std::string_view::npos) break;
    path += '/';
    rest.remove_prefix(slash + 1);
  }
  return path;
}

// A pipe is opened without waiting for who writes it, and what is no file is left at once.
std::FILE* openFileForReading(const char* path) {
  const int descriptor = open(path, O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  if (descriptor < 0) return nullptr;
  struct stat status;
  int error = fstat(descriptor, &status) != 0 ? errno : 0;
  if (error == 0 && !S_ISREG(status.st_mode)) error = S_ISDIR(status.st_mode) ? EISDIR : ENOTSUP;
  std::FILE* file = error == 0 ? fdopen(descriptor, "rb") : nullptr;
  if (file) return file;
  if (error == 0) error = errno;
  close(descriptor);
  errno = error;
  return nullptr;
}

std::FILE* openLooseFile(const char* name, const char* mode) {
  const std::string path = resolvePath(name);
  return mode[0] == 'r' ? openFileForReading(path.c_str()) : std::fopen(path.c_str(), mode);
}

}  // namespace vex
