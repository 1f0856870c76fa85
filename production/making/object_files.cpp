#include "production/making/object_files.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <set>
#include <sstream>

#include "base/report.h"
#include "production/making/manifest.h"

namespace vex {

extern const char* const objectFileList;  // written by list_object_files.py

namespace {

void addWithAllUsed(const std::string& name, const ObjectFiles& files, std::set<std::string>& names) {
  if (!names.insert(name).second) return;
  const auto file = files.find(name);
  if (file == files.end()) return;
  for (const std::string& used : file->second.uses) addWithAllUsed(used, files, names);
}

}  // namespace

ObjectFiles readObjectFiles(std::string_view lines) {
  ObjectFiles files;
  std::istringstream text{std::string(lines)};
  for (std::string line; std::getline(text, line);) {
    std::istringstream fields(line);
    std::string source, used;
    fields >> source;
    ObjectFile& file = files[source];
    fields >> file.hash;
    while (fields >> used) file.uses.push_back(used);
  }
  return files;
}

const ObjectFiles& builtObjectFiles() {
  static const ObjectFiles files = readObjectFiles(objectFileList);
  return files;
}

std::string objectKey(std::string_view source, const ObjectFiles& files) {
  const auto start = std::find_if(files.begin(), files.end(),
                                  [&](const auto& entry) { return source.ends_with(entry.first); });
  if (start == files.end()) fatalError("no object file of %s", std::string(source).c_str());
  std::set<std::string> names;
  addWithAllUsed(start->first, files, names);

  std::uint64_t hash = 0xcbf29ce484222325u;  // FNV-1a
  const auto add = [&](std::string_view text) {
    for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3u;
  };
  for (const std::string& name : names) {
    add(name);
    if (const auto file = files.find(name); file != files.end()) {
      add(file->second.hash);
    } else {
      const MadeFile now = statFile(name);
      add(std::to_string(now.size) + " " + std::to_string(now.modified));
    }
  }
  char text[17];
  std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(hash));
  return text;
}

}  // namespace vex
