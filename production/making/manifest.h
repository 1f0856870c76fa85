#pragma once

#include <cstdint>
#include <map>
#include <string>

// What the generator remembers of its last run, as the text file ".vexproduce" in the output folder.

namespace vex {

struct MadeFile {
  std::string key;            // names sources and settings that it was made from
  std::uint64_t size = 0;     // bytes
  std::int64_t modified = 0;  // time of last change, nanoseconds
};

using Manifest = std::map<std::string, MadeFile>;  // by path below the folder

// Empty when there is none. Lines that are no record, and paths that leave the folder, are ignored.
Manifest readManifest(const std::string& folder);

// Fatal: "cannot write %s: %s".
void writeManifest(const std::string& folder, const Manifest& manifest);

// Size and time of a file; size 0 and time 0 when it is missing.
MadeFile statFile(const std::string& path);

// Creates the folders above. Fatal: "cannot write %s: %s", "cannot make folder %s: %s".
void checkWritable(const std::string& path);

// Creates the folders above and replaces the file in one step. Fatal: as there.
void replaceFile(const std::string& path, const void* bytes, std::size_t size);

}  // namespace vex
