#include "base/pak_archive.h"

#include <strings.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <iterator>
#include <memory>
#include <string>
#include <system_error>

#include "base/fatal_place.h"
#include "base/report.h"
#include "platform/little_endian.h"
#include "platform/paths.h"
#include "platform/replace_file.h"

namespace vex {

namespace {

namespace fs = std::filesystem;

using Stream = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

constexpr std::uint64_t maxPakSize = 0xffffffff;

struct Source {
  std::string name;  // as it stands in the archive
  fs::path path;
  std::uint64_t size;
};

Stream openForReading(const fs::path& path) {
  Stream stream(openFileForReading(path.c_str()), std::fclose);
  if (!stream) fatalError("can't read %s: %s", path.c_str(), std::strerror(errno));
  return stream;
}

bool hasControlCharacter(const std::string& name) {
  return std::any_of(name.begin(), name.end(),
                     [](char c) { return static_cast<unsigned char>(c) < 32 || c == 127; });
}

void checkName(const std::string& name, const fs::path& path) {
  if (name.size() >= pakNameSize) {
    fatalError("%s: the name %s has %zu characters, at most %zu are possible", path.c_str(), name.c_str(),
               name.size(), pakNameSize - 1);
  }
  if (hasControlCharacter(name)) fatalError("%s: the name holds a control character", path.c_str());
}

// With slashes still.
std::string nameBelow(const fs::path& path, const fs::path& folder) {
  return path.lexically_relative(folder).generic_string();
}

std::string memberName(const std::string& below, const fs::path& path) {
  std::string name = below;
  if (name.find('\\') != std::string::npos) fatalError("%s: the name holds a backslash", path.c_str());
  std::replace(name.begin(), name.end(), '/', '\\');
  checkName(name, path);
  return name;
}

void checkForClashes(std::vector<std::string> names) {
  const auto compare = [](const std::string& a, const std::string& b) {
    return strcasecmp(a.c_str(), b.c_str());
  };
  std::stable_sort(names.begin(), names.end(), [&](auto& a, auto& b) { return compare(a, b) < 0; });
  for (std::size_t i = 1; i < names.size(); ++i) {
    const std::string &name = names[i - 1], &next = names[i];
    if (name == next) fatalError("%s stands there twice", name.c_str());
    if (compare(name, next) == 0)
      fatalError("%s and %s differ only in letter case", name.c_str(), next.c_str());
  }
}

// No name may be that of a folder that another one needs.
void checkForFolders(const std::vector<std::string>& paths) {
  for (const std::string& file : paths) {
    for (const std::string& other : paths) {
      if (other.starts_with(file + "/"))
        fatalError("%s is a file and the folder of %s", file.c_str(), other.c_str());
    }
  }
}

struct Sources {
  std::vector<Source> files;
  std::vector<std::string> others;  // names of what is not wanted
};

Sources gatherSources(const fs::path& pak, const fs::path& folder,
                      const std::function<bool(const std::string& name)>& wanted) {
  std::error_code error;
  if (!fs::is_directory(folder, error)) fatalError("%s isn't a folder", folder.c_str());
  std::vector<Source> sources;
  std::vector<std::string> others;
  fs::recursive_directory_iterator walk(folder, fs::directory_options::follow_directory_symlink, error);
  for (; !error && walk != fs::recursive_directory_iterator(); walk.increment(error)) {
    const fs::directory_entry& entry = *walk;
    if (walk.depth() > static_cast<int>(pakNameSize)) {
      fatalError("%s: folders are nested too deep for a name of %zu characters", entry.path().c_str(),
                 pakNameSize - 1);
    }
    if (entry.path().filename().native().starts_with('.')) {
      walk.disable_recursion_pending();
      continue;
    }
    if (entry.is_directory(error) || fs::equivalent(entry.path(), pak, error)) continue;
    std::string name = nameBelow(entry.path(), folder);
    if (!wanted(name)) {
      others.push_back(std::move(name));
      continue;
    }
    if (!entry.is_regular_file(error)) fatalError("%s isn't a regular file", entry.path().c_str());
    sources.push_back({memberName(name, entry.path()), entry.path(), entry.file_size(error)});
    error.clear();
  }
  if (error) fatalError("can't read folder %s: %s", folder.c_str(), error.message().c_str());
  if (sources.size() > static_cast<std::size_t>(maxPakEntries)) {
    fatalError("%s holds %zu files, at most %d are possible in a pak", folder.c_str(), sources.size(),
               maxPakEntries);
  }
  std::sort(sources.begin(), sources.end(), [](const Source& a, const Source& b) { return a.name < b.name; });
  std::vector<std::string> names;
  for (const Source& source : sources) names.push_back(source.name);
  const FatalPlace place([&folder] { return "folder " + folder.native(); });
  checkForClashes(names);
  std::sort(others.begin(), others.end());
  return {std::move(sources), std::move(others)};
}

void writeDirectory(const std::vector<Source>& sources, const fs::path& pak, std::FILE* file) {
  std::uint64_t offset = 2 + pakRecordSize * sources.size();
  std::string bytes;
  appendLittleEndian(bytes, sources.size(), 2);
  for (const Source& source : sources) {
    char name[pakNameSize] = {};
    source.name.copy(name, pakNameSize - 1);
    bytes.append(name, sizeof name);
    appendLittleEndian(bytes, offset, 4);
    appendLittleEndian(bytes, source.size, 4);
    offset += source.size;
    if (offset > maxPakSize) {
      fatalError("%s would be larger than %llu bytes with %s", pak.c_str(),
                 static_cast<unsigned long long>(maxPakSize), source.path.c_str());
    }
  }
  std::fwrite(bytes.data(), 1, bytes.size(), file);
}

// Copies exactly `size` bytes. False when the writing fails.
bool copyBytes(std::FILE* from, std::FILE* to, std::uint64_t size, const char* fromName) {
  char buffer[1 << 16];
  while (size > 0) {
    const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(size, sizeof buffer));
    if (std::fread(buffer, 1, wanted, from) != wanted) {
      if (std::ferror(from)) fatalError("can't read %s: %s", fromName, std::strerror(errno));
      fatalError("%s ends too early", fromName);
    }
    if (std::fwrite(buffer, 1, wanted, to) != wanted) return false;
    size -= wanted;
  }
  return true;
}

// One file that replaces `target`; `write` returns false when it could not write.
template <typename Write>
void replaceFile(const fs::path& target, Write write) {
  ReplacementFile file(target.native());
  if (!file.stream() || !write(file.stream()) || !file.commit()) {
    fatalError("can't write %s: %s", target.c_str(), std::strerror(errno));
  }
}

bool isSafe(const std::string& name) {
  if (name.empty() || hasControlCharacter(name) || name.find(':') != std::string::npos) return false;
  for (std::size_t begin = 0; begin <= name.size();) {
    const std::size_t end = std::min(name.find_first_of("\\/", begin), name.size());
    const std::string part = name.substr(begin, end - begin);
    if (part.empty() || part == "." || part == "..") return false;
    begin = end + 1;
  }
  return true;
}

std::string localPath(const std::string& name) {
  std::string path = name;
  std::replace(path.begin(), path.end(), '\\', '/');
  return path;
}

// A link on the way may lead out of the folder, and what is no file may never be written.
void checkWay(const fs::path& folder, const fs::path& member) {
  fs::path path = folder;
  for (auto part = member.begin(); part != member.end(); ++part) {
    path /= *part;
    std::error_code error;
    const fs::file_type type = fs::symlink_status(path, error).type();
    if (type == fs::file_type::not_found) return;
    const bool last = std::next(part) == member.end();
    if (type == fs::file_type::symlink) fatalError("can't write %s: it is a link", path.c_str());
    if (type != (last ? fs::file_type::regular : fs::file_type::directory)) {
      fatalError("can't write %s: it isn't a %s", path.c_str(), last ? "file" : "folder");
    }
  }
}

}  // namespace

void createPak(const fs::path& pak, const fs::path& folder) {
  createPak(pak, folder, [](const std::string&) { return true; });
}

std::vector<std::string> createPak(const fs::path& pak, const fs::path& folder,
                                   const std::function<bool(const std::string& name)>& wanted) {
  Sources gathered = gatherSources(pak, folder, wanted);
  const std::vector<Source>& sources = gathered.files;
  replaceFile(pak, [&](std::FILE* file) {
    writeDirectory(sources, pak, file);
    for (const Source& source : sources) {
      const Stream from = openForReading(source.path);
      if (!copyBytes(from.get(), file, source.size, source.path.c_str())) return false;
    }
    return true;
  });
  return std::move(gathered.others);
}

std::vector<PakMember> listPak(const fs::path& pak) {
  return readPakDirectory(openForReading(pak).get(), pak.c_str());
}

void extractPak(const fs::path& pak, const fs::path& folder) {
  const Stream from = openForReading(pak);
  const std::vector<PakMember> members = readPakDirectory(from.get(), pak.c_str());
  std::vector<std::string> paths;
  for (const PakMember& member : members) {
    if (!isSafe(member.name))
      fatalError("pak %s: the name %s is not safe to extract", pak.c_str(), member.name);
    paths.push_back(localPath(member.name));
  }
  {
    const FatalPlace place([&pak] { return "pak " + pak.native(); });
    checkForClashes(paths);
    checkForFolders(paths);
  }
  for (const PakMember& member : members) checkWay(folder, localPath(member.name));
  for (const PakMember& member : members) {
    const fs::path target = folder / localPath(member.name);
    std::error_code error;
    fs::create_directories(target.parent_path(), error);
    if (error) fatalError("can't make folder %s: %s", target.parent_path().c_str(), error.message().c_str());
    std::fseek(from.get(), static_cast<long>(member.offset), SEEK_SET);
    replaceFile(target,
                [&](std::FILE* file) { return copyBytes(from.get(), file, member.size, pak.c_str()); });
  }
}

}  // namespace vex
