#include "studio/document/text_file.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

#include "platform/paths.h"
#include "platform/replace_file.h"

namespace vex::studio {

namespace {

constexpr std::size_t maxTextSize = 256u * 1024 * 1024;

std::string trouble(const std::string& path, const char* what, int error) {
  return path + " cannot be " + what + ": " + std::strerror(error) + ".";
}

}  // namespace

FileText readText(const std::string& path) {
  errno = 0;
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(openFileForReading(path.c_str()), std::fclose);
  if (!file) {
    const int error = errno != 0 ? errno : EINVAL;
    return {"", trouble(path, "read", error), error == ENOENT || error == ENOTDIR};
  }
  FileText read;
  char block[1 << 16];
  for (std::size_t size; (size = std::fread(block, 1, sizeof block, file.get())) > 0;) {
    read.text.append(block, size);
    if (read.text.size() > maxTextSize) return {"", path + " is longer than 256 MiB."};
  }
  if (std::ferror(file.get())) return {"", trouble(path, "read", errno)};
  return read;
}

std::optional<std::string> writeText(const std::string& path, const std::string& text) {
  struct stat status;
  const bool exists = stat(path.c_str(), &status) == 0;
  constexpr mode_t writable = S_IWUSR | S_IWGRP | S_IWOTH;
  if (exists && ((status.st_mode & writable) == 0 || access(path.c_str(), W_OK) != 0)) {
    return path + " is write-protected.";
  }
  ReplacementFile file(path);
  if (!file.stream()) return trouble(path, "saved", errno);
  if (exists && S_ISREG(status.st_mode)) {
    const int handle = fileno(file.stream());
    // Who may not give files away keeps them; the permissions come last, since that may change them.
    if (fchown(handle, status.st_uid, status.st_gid) != 0) errno = 0;
    if (fchmod(handle, status.st_mode & 07777) != 0) return trouble(path, "saved", errno);
  }
  if (std::fwrite(text.data(), 1, text.size(), file.stream()) != text.size() || !file.commit()) {
    return trouble(path, "saved", errno);
  }
  return std::nullopt;
}

}  // namespace vex::studio
