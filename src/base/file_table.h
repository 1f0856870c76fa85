#pragma once

#include <array>
#include <cstdint>
#include <cstdio>
#include <string>

#include "base/files.h"
#include "base/pak_directory.h"

namespace vex {

// The archive and the open files of a show; files.h works on the current one. Closes all as it goes.
struct FileTable {
  struct Entry : PakMember {
    std::uint32_t position = 0;  // next byte to read, from the member's start; shared by all its handles
  };

  struct Slot {
    bool inUse = false;
    int entry = -1;  // index into the directory; -1 for a loose file
    std::FILE* stream = nullptr;
    std::string name;
  };

  std::array<Entry, maxPakEntries> entries{};
  int entryCount = 0;
  std::FILE* pak = nullptr;
  long pakPlace = -1;  // where its next byte is read, -1 if unknown; asking stdio is slow for single bytes
  char pakName[pakNameSize] = "";
  std::array<Slot, maxFileSlots> slots;

  FileTable() = default;
  FileTable(const FileTable&) = delete;
  FileTable& operator=(const FileTable&) = delete;
  ~FileTable() { closeAll(); }

  void closeAll();
};

}  // namespace vex
