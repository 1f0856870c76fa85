#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <vector>

// The archive format. All numbers are little-endian:
//   0            2   entry count, at most 256
//   2 + 40 i    32   name, zero-padded, at most 31 characters ("data\font.raw")
//   34 + 40 i    4   offset of the member's bytes from the start of the archive
//   38 + 40 i    4   size in bytes
// Members are stored as they are.

namespace vex {

inline constexpr int maxPakEntries = 256;
inline constexpr std::size_t pakNameSize = 32;
inline constexpr std::size_t pakRecordSize = pakNameSize + 8;

struct PakMember {
  char name[pakNameSize];
  std::uint32_t offset;
  std::uint32_t size;
};

// Reads the directory at the start of `file`. `name` stands in the messages.
// Fatal: what cannot be read, a directory that is cut short or counts more than 256 entries, a name without
// its end, a member that reaches beyond the end of the file.
std::vector<PakMember> readPakDirectory(std::FILE* file, const char* name);

}  // namespace vex
