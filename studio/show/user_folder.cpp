#include "studio/show/user_folder.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace vex::studio {

namespace fs = std::filesystem;

std::string userCacheFolder() {
  const auto variable = [](const char* name) {
    const char* text = std::getenv(name);
    return fs::path(text ? text : "");
  };
  // The XDG Base Directory Specification: what is not absolute does not count.
  fs::path base = variable("XDG_CACHE_HOME");
  if (!base.is_absolute()) base = variable("HOME") / ".cache";
  if (!base.is_absolute()) return {};
  const fs::path folder = base / "vex";
  std::error_code error;
  fs::create_directories(folder, error);
  return fs::is_directory(folder, error) ? folder.native() : std::string{};
}

}  // namespace vex::studio
