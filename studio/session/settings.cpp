#include "studio/session/settings.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <system_error>

#include "base/report.h"
#include "platform/replace_file.h"
#include "platform/user_folder.h"

namespace vex::studio {

namespace {

namespace fs = std::filesystem;

fs::path settingsFile() {
  const std::string folder = userFolder("XDG_CONFIG_HOME", ".config");
  return folder.empty() ? fs::path() : fs::path(folder) / "studio";
}

}  // namespace

void Settings::read() {
  numbers.clear();
  std::ifstream file(settingsFile());
  for (std::string line; std::getline(file, line) && numbers.size() < 100;) {
    const std::size_t blank = line.find(' ');
    if (blank == std::string::npos) continue;
    double value = 0;
    const char* end = line.data() + line.size();
    const auto [rest, error] = std::from_chars(line.data() + blank + 1, end, value);
    if (error == std::errc() && rest == end && std::isfinite(value)) numbers[line.substr(0, blank)] = value;
  }
}

void Settings::write() const {
  const fs::path file = settingsFile();
  if (file.empty()) return;
  std::error_code ignored;
  fs::create_directories(file.parent_path(), ignored);
  std::string text;
  for (const auto& [name, value] : numbers) text += formatted("%s %.9g\n", name.c_str(), value);
  replaceFile(file.string(), text);
}

double Settings::number(const std::string& name, double otherwise, double least, double most) const {
  const auto known = numbers.find(name);
  return std::clamp(known == numbers.end() ? otherwise : known->second, least, most);
}

void Settings::set(const std::string& name, double value) {
  numbers[name] = value;
}

}  // namespace vex::studio
