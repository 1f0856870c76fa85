#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "platform/paths.h"

// Data files by name: a loose file relative to the working folder wins, otherwise the member of the
// pak archive of that name (ASCII letter case ignored). Handles are 0 to 15.
//
// Fatal in every reading function: "can't read %s: %s" when the system cannot read on, and "pak %s ends
// inside member %s" when the archive was cut while it was open.

namespace vex {

inline constexpr int maxFileSlots = 16;

enum class SeekOrigin { start = 0, current = 1, end = 2 };

// Reads the directory of the archive `name`. A missing archive is no error: no member exists then.
// Fatal: "can't read %s: %s" for one that is there and cannot be opened, a damaged directory
// (pak_directory.h).
void pakOpen(const char* name);

// Handle of the file, or -1 when it is neither loose nor a member. `mode` is stdio's and matters for
// loose files only; members are raw bytes and cannot be written. A loose file that is there but cannot be
// opened counts as missing, and the log says why.
// Fatal: "too many files open, %s is more than %d".
int fileOpen(const char* name, const char* mode);

// The same for a file that cannot be done without.
// Fatal: `missing` where there is none, "can't read %s: %s" when a loose file is there and cannot be opened.
int fileOpenNeeded(const std::string& name, const std::string& missing);

// Whether fileOpen would find it. Fatal: as there.
bool fileExists(const std::string& name);

// Before saying in other ways that `name` is missing. Fatal: as fileOpenNeeded for what cannot be opened.
void refuseUnreadable(const std::string& name);

// Number of whole elements read. Fatal: "Super ARGH", then what was asked for and what a member of the
// archive that holds fewer bytes has.
std::size_t fileRead(void* buffer, std::size_t elementSize, std::size_t count, int handle);

// Next byte, 0 to 255. Fatal: "ARGH!" at the end of the file, then its name and size.
int fileGetc(int handle);

// One line of at most size - 1 characters with its line feed, as fgets. The last line of a member
// that lacks a line feed is put into the buffer, but the result is null.
char* fileGets(char* buffer, int size, int handle);

// Always 0. A position outside a member is not reported here; reads there are.
int fileSeek(int handle, std::int32_t offset, SeekOrigin origin);

std::int32_t fileTell(int handle);

// Members: whether the position is at the end. Loose files: whether a read has met the end.
bool fileEof(int handle);

void fileClose(int handle);
void fileCloseAll();

// Closes its file, if that was found, as it goes.
class OpenFile {
 public:
  explicit OpenFile(int handleOfFile) : handle(handleOfFile) {}
  ~OpenFile() {
    if (found()) fileClose(handle);
  }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;

  bool found() const { return handle >= 0; }
  operator int() const { return handle; }

 private:
  const int handle;
};

// Bytes from the current position to the end. For checks before allocating.
std::uint64_t fileRemaining(int handle);

// Up to `most` bytes from the current position on; fewer where the system gives fewer.
template <typename Bytes = std::vector<std::uint8_t>>
Bytes fileReadRest(int handle, std::uint64_t most = std::numeric_limits<std::uint64_t>::max()) {
  Bytes bytes;
  bytes.resize(static_cast<std::size_t>(std::min(fileRemaining(handle), most)));
  if (!bytes.empty()) bytes.resize(fileRead(bytes.data(), 1, bytes.size(), handle));
  return bytes;
}

// Offset of an open member inside the archive and its size; 0 and 0 for a loose file.
std::uint32_t pakMemberOffset(int handle);
std::uint32_t pakMemberSize(int handle);
const char* pakFileName();

// Where the bytes of a file lie, for who reads them by other means.
struct FilePlace {
  std::string path;
  std::uint32_t offset = 0;
  std::uint32_t size = wholeFile;
  int handle = -1;  // that a member was found by
};
std::optional<FilePlace> findFile(const char* name);

}  // namespace vex
