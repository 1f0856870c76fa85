#include "models/container.h"

#include <algorithm>
#include <array>
#include <memory>

#include "base/files.h"
#include "base/little_endian.h"
#include "base/report.h"
#include "models/codec.h"
#include "platform/paths.h"
#include "platform/replace_file.h"

namespace vex {

namespace {

constexpr int bestLevel = 9;

ZipMode mode = ZIP_CLOSED;
ZipFailure onFailure = ZipFailure::fatal;
std::string failure;  // the first one; nothing more is read or written then
std::string containerName;
int handle = -1;                        // while reading
std::uint64_t remaining = 0;            // bytes of that file
bool ranOut = false;                    // a byte behind its last one was asked for
std::unique_ptr<ReplacementFile> file;  // while writing

void fail(const std::string& text) {
  if (onFailure == ZipFailure::fatal) fatalError("%s", text.c_str());
  if (failure.empty()) failure = text;
}

void failReading(const std::string& problem) {
  fail(containerName + ": " + (ranOut ? "ARGH! It ends before its compressed data does" : problem));
}

std::string codecProblem() {
  const int code = zipErrorCode();
  return std::string(zipErrorText(code)) + " (code " + std::to_string(code) + ")";
}

int getbyte() {
  if (remaining == 0) ranOut = true;
  if (ranOut) return -1;
  --remaining;
  return fileGetc(handle);
}

int putbyte(int byte) {
  if (std::putc(byte, file->stream()) != EOF) return byte;
  fail("Write error in zip.putbyte()!");
  return -1;
}

void openForReading(std::uint32_t* header) {
  handle = fileOpen(containerName.c_str(), "rb");
  if (handle < 0) refuseUnreadable(containerName);
  if (handle < 0) fatalError("zipOpen: Pak_FILE %s not found!", containerName.c_str());
  ranOut = false;
  std::array<std::uint8_t, 4> word{};
  // More than a member has may not even be asked for.
  const std::size_t size =
      fileRead(word.data(), 1, std::min<std::uint64_t>(word.size(), fileRemaining(handle)), handle);
  *header = static_cast<std::uint32_t>(littleEndian(word));
  if (size != word.size()) {
    failReading("ends after " + std::to_string(size) + " bytes, its header word has " +
                std::to_string(word.size()));
    return;
  }
  remaining = fileRemaining(handle);
  if (unzinit(getbyte, pkzipFraming, remaining) != 0) failReading(codecProblem());
}

void openForWriting(std::uint32_t header) {
  file = std::make_unique<ReplacementFile>(resolvePath(containerName.c_str()));
  if (!file->stream()) {
    fail("zipOpen: FILE " + containerName + " not found!");
    return;
  }
  for (int shift = 0; shift < 32; shift += 8) putbyte(static_cast<int>(header >> shift & 0xff));
  if (zipinit(putbyte, pkzipFraming, bestLevel) != 0) fail(containerName + ": " + codecProblem());
}

void closeReading() {
  if (failure.empty()) {
    const int result = unzclose(), code = zipErrorCode();
    // The mark of the data's end may be all that is missing.
    if (ranOut || (result > 0 && code != zipMoreData)) {
      failReading(formatted("unzclose() failed (code %d)", code));
    } else if (result < 0 && code != zipUninitialized) {  // as it is where nothing was read
      failReading(codecProblem());
    }
  } else {
    unzclose();
  }
  fileClose(handle);
}

void closeWriting() {
  if (zipclose() == -1) fail("zipclose() failed!");
  if (failure.empty() && !file->commit()) fail("Write error in zip.putbyte()!");
  file.reset();
}

}  // namespace

void zipOpen(const char* name, ZipMode newMode, std::uint32_t* header, ZipFailure newOnFailure) {
  if (mode != ZIP_CLOSED) fatalError("Cannot open two zip files simultaneously!");
  if (newMode == ZIP_CLOSED) fatalError("Cannot open zip file w/ mode=ZIP_CLOSED!");
  mode = newMode;
  onFailure = newOnFailure;
  failure.clear();
  containerName = name;
  if (mode == ZIP_READ) {
    openForReading(header);
  } else {
    openForWriting(*header);
  }
}

std::uint32_t zipRead(void* buffer, std::uint32_t length) {
  if (mode == ZIP_WRITE) fatalError("zipRead() called in ZIP_WRITE mode!");
  if (mode == ZIP_CLOSED) fatalError("zipRead() called on closed file!");
  if (!failure.empty()) return 0;
  // A rejected header has a result that could be a number of bytes; of no bytes it is unmistakable.
  const bool rejected = unzinflate(nullptr, 0) != 0;
  const std::int64_t size = rejected ? -1 : unzinflate(buffer, length);
  if (size >= 0) return static_cast<std::uint32_t>(size);
  failReading(codecProblem());
  return 0;
}

void zipWrite(const void* buffer, std::uint32_t length) {
  if (mode == ZIP_READ) fatalError("zipWrite() called in ZIP_READ mode!");
  if (mode == ZIP_CLOSED) fatalError("zipWrite() called on closed file!");
  // For the codec no bytes are the end of the data.
  if (length == 0 || !failure.empty()) return;
  if (zipdeflate(buffer, length) == -1) fail(containerName + ": " + codecProblem());
}

std::string zipClose() {
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
  return failure;
}

}  // namespace vex
