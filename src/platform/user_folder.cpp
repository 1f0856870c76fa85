#include "platform/user_folder.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace vex {

namespace fs = std::filesystem;

std::string userFolder(const char* variable, const char* inHome) {
  const auto valueOf = [](const char* name) {
    const char* text = std::getenv(name);
    return fs::path(text ? text : "");
  };
  fs::path base = valueOf(variable);
  if (!base.is_absolute()) base = valueOf("HOME") / inHome;
  return base.is_absolute() ? (base / "vex").native() : std::string{};
}

std::string userCacheFolder() {
  const std::string folder = userFolder("XDG_CACHE_HOME", ".cache");
  std::error_code error;
  if (!folder.empty()) fs::create_directories(folder, error);
  return fs::is_directory(folder, error) ? folder : std::string{};
}

}  // namespace vex
