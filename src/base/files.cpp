#include "base/files.h"

#include <strings.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "base/current.h"
#include "base/file_table.h"
#include "base/report.h"
#include "platform/paths.h"

namespace vex {

namespace {

using PakEntry = FileTable::Entry;
using FileSlot = FileTable::Slot;

FileTable& table() {
  return current<FileTable>();
}

std::uint64_t sizeOfStream(std::FILE* stream) {
  struct stat status;
  return fstat(fileno(stream), &status) == 0 ? static_cast<std::uint64_t>(status.st_size) : 0;
}

FileSlot& slotOf(int handle) {
  if (handle < 0 || handle >= maxFileSlots || !table().slots[static_cast<std::size_t>(handle)].inUse) {
    fatalError("file handle %d isn't open", handle);
  }
  return table().slots[static_cast<std::size_t>(handle)];
}

PakEntry& entryOf(const FileSlot& slot) {
  return table().entries[static_cast<std::size_t>(slot.entry)];
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
  if (std::ferror(table().pak)) refuse(table().pakName);
  fatalError("pak %s ends inside member %s", table().pakName, entry.name);
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
  if (table().pakPlace != place) std::fseek(table().pak, place, SEEK_SET);
  table().pakPlace = place;
}

}  // namespace

void pakOpen(const char* name) {
  fileCloseAll();
  table().pak = openPresent(name, "rb");
  table().pakPlace = -1;
  table().pakName[0] = '\0';
  if (!table().pak && errno != 0) refuse(name);
  if (!table().pak) return;
  std::snprintf(table().pakName, sizeof table().pakName, "%s", name);
  for (const PakMember& member : readPakDirectory(table().pak, table().pakName)) {
    table().entries[static_cast<std::size_t>(table().entryCount++)] = {member};
  }
}

int fileOpen(const char* name, const char* mode) {
  std::size_t handle = 0;
  while (handle < table().slots.size() && table().slots[handle].inUse) ++handle;
  if (handle == table().slots.size()) {
    fatalError("too many files open, %s is more than %d", name, maxFileSlots);
  }
  FileSlot& slot = table().slots[handle];
  slot = FileSlot{};
  if (std::FILE* loose = openPresent(name, mode)) {
    slot = {.inUse = true, .entry = -1, .stream = loose, .name = name};
    return static_cast<int>(handle);
  }
  if (errno != 0) logPrintf("can't read %s: %s\n", name, std::strerror(errno));
  for (int i = 0; i < table().entryCount; ++i) {
    PakEntry& entry = table().entries[static_cast<std::size_t>(i)];
    if (strcasecmp(entry.name, name) != 0) continue;
    entry.position = 0;
    slot = {.inUse = true, .entry = i, .stream = nullptr, .name = name};
    return static_cast<int>(handle);
  }
  return -1;
}

int fileOpenNeeded(const std::string& name, const std::string& missing) {
  const int handle = fileOpen(name.c_str(), "rb");
  if (handle < 0) refuseUnreadable(name);
  if (handle < 0) fatalError("%s", missing.c_str());
  return handle;
}

bool fileExists(const std::string& name) {
  return OpenFile(fileOpen(name.c_str(), "rb")).found();
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
    fatalError("Super ARGH (%zu times %zu bytes at byte %u of %s are more than its %u)", count, elementSize,
               entry.position, entry.name, entry.size);
  }
  seekPak(entry);
  const std::size_t elements = std::fread(buffer, elementSize, count, table().pak);
  if (size > 0 && elements != count) refuseMember(entry);
  table().pakPlace += static_cast<long>(size);
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
    byte = getc_unlocked(table().pak);
    if (byte == EOF) refuseMember(entry);
    ++table().pakPlace;
    ++entry.position;
  }
  if (byte == EOF) fatalError("ARGH! (%s ends after %d bytes)", slot.name.c_str(), fileTell(handle));
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
  const long before = table().pakPlace;
  char* line = std::fgets(buffer, size, table().pak);
  table().pakPlace = std::ftell(table().pak);
  const long moved = table().pakPlace - before;
  const std::uint32_t left = entry.position < entry.size ? entry.size - entry.position : 0;
  if (!line && left > 0) refuseMember(entry);
  if (moved <= static_cast<long>(left)) {
    entry.position += static_cast<std::uint32_t>(moved);
    return line;
  }
  // The line ran on into the next member's bytes.
  std::fseek(table().pak, before, SEEK_SET);
  table().pakPlace = -1;
  std::memset(buffer, 0, static_cast<std::size_t>(size));
  if (std::fread(buffer, 1, left, table().pak) != left) refuseMember(entry);
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
  table().closeAll();
}

void FileTable::closeAll() {
  for (Slot& slot : slots) {
    if (slot.stream) std::fclose(slot.stream);
    slot = Slot{};
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
  return table().pakName;
}

std::optional<FilePlace> findFile(const char* name) {
  if (std::FILE* file = openLooseFile(name, "rb")) {
    std::fclose(file);
    return FilePlace{.path = name, .offset = 0, .size = wholeFile, .handle = -1};
  }
  const OpenFile file(fileOpen(name, "rb"));
  if (!file.found()) return std::nullopt;
  return FilePlace{pakFileName(), pakMemberOffset(file), pakMemberSize(file), file};
}

}  // namespace vex
