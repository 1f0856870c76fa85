#include "production/making/manifest.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "base/report.h"
#include "platform/replace_file.h"

namespace vex {

namespace {

std::string manifestPath(const std::string& folder) {
  return folder + "/.vexproduce";
}

bool staysInside(const std::string& path) {
  const std::filesystem::path relative(path);
  if (path.empty() || relative.is_absolute()) return false;
  for (const std::filesystem::path& step : relative)
    if (step == "..") return false;
  return true;
}

void makeFolderOf(const std::string& path) {
  const std::filesystem::path folder = std::filesystem::path(path).parent_path();
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (error) fatalError("cannot make folder %s: %s", folder.c_str(), error.message().c_str());
}

}  // namespace

Manifest readManifest(const std::string& folder) {
  Manifest manifest;
  std::ifstream file(manifestPath(folder));
  for (std::string line; std::getline(file, line);) {
    std::istringstream fields(line);
    std::string path;
    MadeFile made;
    if (fields >> path >> made.key >> made.size >> made.modified && staysInside(path)) manifest[path] = made;
  }
  return manifest;
}

void writeManifest(const std::string& folder, const Manifest& manifest) {
  std::ostringstream text;
  for (const auto& [path, made] : manifest)
    text << path << ' ' << made.key << ' ' << made.size << ' ' << made.modified << '\n';
  const std::string bytes = text.str();
  replaceFile(manifestPath(folder), bytes.data(), bytes.size());
}

MadeFile statFile(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return {};
  return {{},
          static_cast<std::uint64_t>(status.st_size),
          static_cast<std::int64_t>(status.st_mtim.tv_sec) * 1000000000 + status.st_mtim.tv_nsec};
}

void checkWritable(const std::string& path) {
  makeFolderOf(path);
  if (!ReplacementFile(path).stream()) fatalError("cannot write %s: %s", path.c_str(), std::strerror(errno));
}

void replaceFile(const std::string& path, const void* bytes, std::size_t size) {
  makeFolderOf(path);
  ReplacementFile file(path);
  if (!file.stream() || std::fwrite(bytes, 1, size, file.stream()) != size || !file.commit()) {
    fatalError("cannot write %s: %s", path.c_str(), std::strerror(errno));
  }
}

}  // namespace vex
