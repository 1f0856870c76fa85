#include "assets/container.h"

#include <array>
#include <memory>
#include <string>

#include "assets/codec.h"
#include "platform/paths.h"
#include "platform/replace_file.h"
#include "shell/files.h"
#include "shell/little_endian.h"
#include "shell/report.h"

namespace vex {

namespace {

constexpr int bestLevel = 9;

ZipMode mode = ZIP_CLOSED;
std::string containerName;
int handle = -1;                        // while reading
std::uint64_t remaining = 0;            // bytes of that file
std::unique_ptr<ReplacementFile> file;  // while writing

[[noreturn]] void refuseContainer() {
  const int code = zipErrorCode();
  fatalError("%s: %s (code %d)", containerName.c_str(), zipErrorText(code), code);
}

int getbyte() {
  if (remaining == 0) {
    logPrintf("%s ends before its compressed data does\n", containerName.c_str());
  } else {
    --remaining;
  }
  return fileGetc(handle);
}

int putbyte(int byte) {
  if (std::putc(byte, file->stream()) == EOF) fatalError("Write error in zip.putbyte()!");
  return byte;
}

void openForReading(std::uint32_t* header) {
  handle = fileOpen(containerName.c_str(), "rb");
  if (handle < 0) fatalError("zipOpen: Pak_FILE %s not found!", containerName.c_str());
  std::array<std::uint8_t, 4> word{};
  if (const std::size_t size = fileRead(word.data(), 1, word.size(), handle); size != word.size()) {
    fatalError("%s: ends after %zu bytes, its header word has %zu", containerName.c_str(), size, word.size());
  }
  *header = static_cast<std::uint32_t>(littleEndian(word));
  remaining = fileRemaining(handle);
  if (unzinit(getbyte, pkzipFraming, remaining) != 0) refuseContainer();
}

void openForWriting(std::uint32_t header) {
  file = std::make_unique<ReplacementFile>(resolvePath(containerName.c_str()));
  if (!file->stream()) fatalError("zipOpen: FILE %s not found!", containerName.c_str());
  for (int shift = 0; shift < 32; shift += 8) putbyte(static_cast<int>(header >> shift & 0xff));
  if (zipinit(putbyte, pkzipFraming, bestLevel) != 0) refuseContainer();
}

void closeReading() {
  const int result = unzclose();
  if (result > 0 && zipErrorCode() != zipMoreData) fatalError("unzclose() failed (code %d)", zipErrorCode());
  // Without any zipRead there is no header yet, and nothing to refuse.
  if (result < 0 && zipErrorCode() != zipUninitialized) refuseContainer();
  fileClose(handle);
}

void closeWriting() {
  if (zipclose() == -1) fatalError("zipclose() failed!");
  if (!file->commit()) fatalError("Write error in zip.putbyte()!");
  file.reset();
}

}  // namespace

void zipOpen(const char* name, ZipMode newMode, std::uint32_t* header) {
  if (mode != ZIP_CLOSED) fatalError("Cannot open two zip files simultaneously!");
  if (newMode == ZIP_CLOSED) fatalError("Cannot open zip file w/ mode=ZIP_CLOSED!");
  mode = newMode;
  containerName = name;
  if (mode == ZIP_READ) {
    openForReading(header);
  } else {
    openForWriting(*header);
  }
}

void zipRead(void* buffer, std::uint32_t length) {
  if (mode == ZIP_WRITE) fatalError("zipRead() called in ZIP_WRITE mode!");
  if (mode == ZIP_CLOSED) fatalError("zipRead() called on closed file!");
  // A rejected header has a result that could be a number of bytes; of no bytes it is unmistakable.
  if (unzinflate(nullptr, 0) != 0) refuseContainer();
  const std::int64_t size = unzinflate(buffer, length);
  if (size < 0) refuseContainer();
  if (size < length) {
    fatalError("%s: only %u of %u bytes left to read", containerName.c_str(),
               static_cast<std::uint32_t>(size), length);
  }
}

void zipWrite(const void* buffer, std::uint32_t length) {
  if (mode == ZIP_READ) fatalError("zipWrite() called in ZIP_READ mode!");
  if (mode == ZIP_CLOSED) fatalError("zipWrite() called on closed file!");
  // For the codec no bytes are the end of the data.
  if (length > 0 && zipdeflate(buffer, length) == -1) refuseContainer();
}

void zipClose() {
  switch (mode) {
    case ZIP_READ:
      closeReading();
      break;
    case ZIP_WRITE:
      closeWriting();
      break;
    case ZIP_CLOSED:
      fatalError("zipClose() called on closed file!");
  }
  mode = ZIP_CLOSED;
}

}  // namespace vex
