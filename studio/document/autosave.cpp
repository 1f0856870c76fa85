#include "studio/document/autosave.h"

#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <system_error>
#include <utility>

#include "base/report.h"
#include "platform/replace_file.h"
#include "platform/user_folder.h"
#include "studio/document/text_file.h"

namespace vex::studio {

namespace {

namespace fs = std::filesystem;

std::string besideText(const std::string& textPath) {
  return hiddenName(textPath) + ".autosave";
}

// FNV-1a: names of texts in different folders differ.
std::uint64_t hashOf(const std::string& bytes) {
  std::uint64_t hash = 0xcbf29ce484222325;
  for (const char c : bytes) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3;
  return hash;
}

// Nothing where the user has no home.
std::optional<std::string> inCache(const std::string& textPath) {
  const std::string folder = userFolder("XDG_CACHE_HOME", ".cache");
  if (folder.empty()) return std::nullopt;
  std::error_code error;
  const fs::path path = fs::absolute(textPath, error).lexically_normal();
  return folder + "/autosave/" +
         formatted("%016llx.autosave", static_cast<unsigned long long>(hashOf(path.string())));
}

// Earlier than the text that it would replace.
bool isOlder(const std::string& path, const std::string& textPath) {
  std::error_code error, textError;
  const auto time = fs::last_write_time(path, error), textTime = fs::last_write_time(textPath, textError);
  return !error && !textError && time < textTime;
}

}  // namespace

std::optional<LeftAutosave> findAutosave(const std::string& textPath) {
  std::optional<LeftAutosave> found;
  for (const std::optional<std::string>& path : {std::optional(besideText(textPath)), inCache(textPath)}) {
    if (!path || isOlder(*path, textPath) || (found && isOlder(*path, found->path))) continue;
    FileText left = readText(*path);
    if (left.trouble) continue;
    const FileText text = readText(textPath);
    if (text.trouble || text.text != left.text) found = LeftAutosave{*path, std::move(left.text)};
  }
  return found;
}

Autosave::Autosave(std::string path) : textPath(std::move(path)) {}

std::optional<std::string> Autosave::write(const std::string& text) {
  if (written == text) return std::nullopt;
  std::optional<std::string> trouble = writeText(besideText(textPath), text);
  if (const auto cached = inCache(textPath); trouble && cached) {
    std::error_code error;
    fs::create_directories(fs::path(*cached).parent_path(), error);
    if (!writeText(*cached, text)) trouble.reset();
  }
  if (!trouble) written = text;
  return trouble;
}

void Autosave::remove() {
  unlink(besideText(textPath).c_str());
  if (const auto cached = inCache(textPath)) unlink(cached->c_str());
  written.reset();
}

}  // namespace vex::studio
