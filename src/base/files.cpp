#include "base/files.h"

#include <strings.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "base/pak_directory.h"
#include "base/report.h"
#include "platform/paths.h"

namespace vex {

namespace {

struct PakEntry : PakMember {
  std::uint32_t position = 0;  // next byte to read, from the member's start; shared by all its handles
};

struct FileSlot {
  bool inUse = false;
  int entry = -1;  // index into the directory; -1 for a loose file
  std::FILE* stream = nullptr;
  std::string name;
};

std::array<PakEntry, maxPakEntries> entries;
int entryCount = 0;
std::FILE* pak = nullptr;
long pakPlace = -1;  // where its next byte is read, -1 if unknown; asking stdio is slow for single bytes
char pakName[pakNameSize] = "";
std::array<FileSlot, maxFileSlots> slots;

std::uint64_t sizeOfStream(std::FILE* stream) {
  struct stat status;
  return fstat(fileno(stream), &status) == 0 ? static_cast<std::uint64_t>(status.st_size) : 0;
}

FileSlot& slotOf(int handle) {
  if (handle < 0 || handle >= maxFileSlots || !slots[static_cast<std::size_t>(handle)].inUse) {
    fatalError("file handle %d isn't open", handle);
  }
  return slots[static_cast<std::size_t>(handle)];
}

PakEntry& entryOf(const FileSlot& slot) {
  return entries[static_cast<std::size_t>(slot.entry)];
}

[[noreturn]] void refuse(const std::string& name) {
  fatalError("can't read %s: %s", name.c_str(), std::strerror(errno));
}

// Whoever reads on until the end would never come there. errno is that of the read.
void checkLoose(const FileSlot& slot) {
  if (std::ferror(slot.stream)) refuse(slot.name);
}

// To be called when the archive gave fewer bytes than its directory promises.
[[noreturn]] void refuseMember(const PakEntry& entry) {
  if (std::ferror(pak)) refuse(pakName);
  fatalError("pak %s ends inside member %s", pakName, entry.name);
}

// Null for a file that is not there; errno says when there is another reason.
std::FILE* openPresent(const char* name, const char* mode) {
  errno = 0;
  std::FILE* file = openLooseFile(name, mode);
  if (errno == ENOENT) errno = 0;
  return file;
}

// All members share one stream, so every read first puts it in place.
void seekPak(const PakEntry& entry) {
  const long place = static_cast<long>(entry.offset) + static_cast<long>(entry.position);
  if (pakPlace != place) std::fseek(pak, place, SEEK_SET);
  pakPlace = place;
}

}  // namespace

void pakOpen(const char* name) {
  fileCloseAll();
  pak = openPresent(name, "rb");
  pakPlace = -1;
  pakName[0] = '\0';
  if (!pak && errno != 0) refuse(name);
  if (!pak) return;
  std::snprintf(pakName, sizeof pakName, "%s", name);
  for (const PakMember& member : readPakDirectory(pak, pakName)) {
    entries[static_cast<std::size_t>(entryCount++)] = {member};
  }
}

int fileOpen(const char* name, const char* mode) {
  std::size_t handle = 0;
  while (handle < slots.size() && slots[handle].inUse) ++handle;
  if (handle == slots.size()) {
    fatalError("too many files open, %s is more than %d", name, maxFileSlots);
  }
  FileSlot& slot = slots[handle];
  slot = FileSlot{};
  if (std::FILE* loose = openPresent(name, mode)) {
    slot = {.inUse = true, .entry = -1, .stream = loose, .name = name};
    return static_cast<int>(handle);
  }
  if (errno != 0) logPrintf("can't read %s: %s\n", name, std::strerror(errno));
  for (int i = 0; i < entryCount; ++i) {
    PakEntry& entry = entries[static_cast<std::size_t>(i)];
    if (strcasecmp(entry.name, name) != 0) continue;
    entry.position = 0;
    slot = {.inUse = true, .entry = i, .stream = nullptr, .name = name};
    return static_cast<int>(handle);
  }
  return -1;
}

bool fileExists(const std::string& name) {
  const int handle = fileOpen(name.c_str(), "rb");
  if (handle >= 0) fileClose(handle);
  return handle >= 0;
}

void refuseUnreadable(const std::string& name) {
  std::FILE* file = openPresent(name.c_str(), "rb");
  if (!file && errno != 0) refuse(name);
  if (file) std::fclose(file);
}

std::size_t fileRead(void* buffer, std::size_t elementSize, std::size_t count, int handle) {
  FileSlot& slot = slotOf(handle);
  if (slot.stream) {
    const std::size_t elements = std::fread(buffer, elementSize, count, slot.stream);
    checkLoose(slot);
    return elements;
  }
  PakEntry& entry = entryOf(slot);
  std::size_t size = 0;
  if (__builtin_mul_overflow(elementSize, count, &size) || entry.position > entry.size ||
      size > entry.size - entry.position) {
    fatalError("Super ARGH");
  }
  seekPak(entry);
  const std::size_t elements = std::fread(buffer, elementSize, count, pak);
  if (size > 0 && elements != count) refuseMember(entry);
  pakPlace += static_cast<long>(size);
  entry.position += static_cast<std::uint32_t>(size);
  return elements;
}

int fileGetc(int handle) {
  FileSlot& slot = slotOf(handle);
  int byte = EOF;
  if (slot.stream) {
    byte = getc_unlocked(slot.stream);
    if (byte == EOF) checkLoose(slot);
  } else if (PakEntry& entry = entryOf(slot); entry.position < entry.size) {
    seekPak(entry);
    byte = getc_unlocked(pak);
    if (byte == EOF) refuseMember(entry);
    ++pakPlace;
    ++entry.position;
  }
  if (byte == EOF) fatalError("ARGH!");
  return byte;
}

char* fileGets(char* buffer, int size, int handle) {
  FileSlot& slot = slotOf(handle);
  if (slot.stream) {
    char* line = std::fgets(buffer, size, slot.stream);
    checkLoose(slot);
    return line;
  }
  PakEntry& entry = entryOf(slot);
  seekPak(entry);
  const long before = pakPlace;
  char* line = std::fgets(buffer, size, pak);
  pakPlace = std::ftell(pak);
  const long moved = pakPlace - before;
  const std::uint32_t left = entry.position < entry.size ? entry.size - entry.position : 0;
  if (!line && left > 0) refuseMember(entry);
  if (moved <= static_cast<long>(left)) {
    entry.position += static_cast<std::uint32_t>(moved);
    return line;
  }
  // The line ran on into the next member's bytes.
  std::fseek(pak, before, SEEK_SET);
  pakPlace = -1;
  std::memset(buffer, 0, static_cast<std::size_t>(size));
  if (std::fread(buffer, 1, left, pak) != left) refuseMember(entry);
  entry.position = entry.size;
  return nullptr;
}

int fileSeek(int handle, std::int32_t offset, SeekOrigin origin) {
  FileSlot& slot = slotOf(handle);
  if (slot.stream) {
    std::fseek(slot.stream, offset, static_cast<int>(origin));
    return 0;
  }
  PakEntry& entry = entryOf(slot);
  switch (origin) {
    case SeekOrigin::start:
      entry.position = static_cast<std::uint32_t>(offset);
      break;
    case SeekOrigin::current:
      entry.position += static_cast<std::uint32_t>(offset);
      break;
    case SeekOrigin::end:
      entry.position = entry.size;
      break;
  }
  return 0;
}

std::int32_t fileTell(int handle) {
  FileSlot& slot = slotOf(handle);
  if (slot.stream) return static_cast<std::int32_t>(std::ftell(slot.stream));
  return static_cast<std::int32_t>(entryOf(slot).position);
}

bool fileEof(int handle) {
  FileSlot& slot = slotOf(handle);
  if (slot.stream) return std::feof(slot.stream) != 0;
  return entryOf(slot).position >= entryOf(slot).size;
}

void fileClose(int handle) {
  FileSlot& slot = slotOf(handle);
  if (slot.stream) std::fclose(slot.stream);
  slot = FileSlot{};
}

void fileCloseAll() {
  for (FileSlot& slot : slots) {
    if (slot.stream) std::fclose(slot.stream);
    slot = FileSlot{};
  }
  if (pak) std::fclose(pak);
  pak = nullptr;
  entryCount = 0;
}

std::uint64_t fileRemaining(int handle) {
  FileSlot& slot = slotOf(handle);
  const std::uint64_t size = slot.stream ? sizeOfStream(slot.stream) : entryOf(slot).size;
  const auto position =
      slot.stream ? static_cast<std::uint64_t>(std::ftell(slot.stream)) : entryOf(slot).position;
  return position < size ? size - position : 0;
}

std::uint32_t pakMemberOffset(int handle) {
  const FileSlot& slot = slotOf(handle);
  return slot.stream ? 0 : entryOf(slot).offset;
}

std::uint32_t pakMemberSize(int handle) {
  const FileSlot& slot = slotOf(handle);
  return slot.stream ? 0 : entryOf(slot).size;
}

const char* pakFileName() {
  return pakName;
}

std::optional<FilePlace> findFile(const char* name) {
  if (std::FILE* file = openLooseFile(name, "rb")) {
    std::fclose(file);
    return FilePlace{.path = name, .offset = 0, .size = wholeFile};
  }
  const int handle = fileOpen(name, "rb");
  if (handle < 0) return std::nullopt;
  const FilePlace place{pakFileName(), pakMemberOffset(handle), pakMemberSize(handle)};
  fileClose(handle);
  return place;
}

}  // namespace vex
