#include "base/pak_directory.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstring>
#include <span>

#include "base/report.h"
#include "platform/little_endian.h"

namespace vex {

namespace {

// False at the end of the file.
bool readRecord(std::FILE* file, std::span<unsigned char> record, const char* name) {
  if (std::fread(record.data(), 1, record.size(), file) == record.size()) return true;
  if (std::ferror(file)) fatalError("can't read %s: %s", name, std::strerror(errno));
  return false;
}

}  // namespace

std::vector<PakMember> readPakDirectory(std::FILE* file, const char* name) {
  struct stat status;
  const unsigned long long fileSize = fstat(fileno(file), &status) == 0 ? status.st_size : 0;
  unsigned char count[2];
  if (!readRecord(file, count, name)) {
    fatalError("pak %s has no entry count, it holds %llu bytes", name, fileSize);
  }
  const int announced = static_cast<int>(littleEndian(count));
  if (announced > maxPakEntries) {
    fatalError("pak %s counts %d entries, at most %d are possible", name, announced, maxPakEntries);
  }
  std::vector<PakMember> members(static_cast<std::size_t>(announced));
  int number = 0;
  for (PakMember& member : members) {
    ++number;
    unsigned char record[pakRecordSize];
    if (!readRecord(file, record, name)) {
      fatalError("pak %s ends in its directory, in entry %d of %d", name, number, announced);
    }
    std::memcpy(member.name, record, pakNameSize);
    if (!std::memchr(member.name, '\0', pakNameSize)) {
      fatalError("pak %s: the name of entry %d, %.32s, is longer than %zu characters", name, number,
                 member.name, pakNameSize - 1);
    }
    const std::span numbers = std::span(record).subspan<pakNameSize>();
    member.offset = static_cast<std::uint32_t>(littleEndian(numbers.first(4)));
    member.size = static_cast<std::uint32_t>(littleEndian(numbers.last(4)));
    if (std::uint64_t{member.offset} + member.size > fileSize) {
      fatalError("pak %s: member %s (offset %u, size %u) reaches beyond the file's %llu bytes", name,
                 member.name, member.offset, member.size, fileSize);
    }
  }
  return members;
}

}  // namespace vex
