#include "assets/container.h"

#include <algorithm>
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
bool ranOut = false;                    // a byte behind its last one was asked for
std::unique_ptr<ReplacementFile> file;  // while writing
WriteFailure onFailure = WriteFailure::fatal;
bool writeFailed = false;  // the container is lost, which zipClose reports

constexpr std::size_t headerWordSize = 4;

std::string codecProblem() {
  const int code = zipErrorCode();
  return std::string(zipErrorText(code)) + " (code " + std::to_string(code) + ")";
}

[[noreturn]] void refuseContainer() {
  fatalError("%s: %s", containerName.c_str(), codecProblem().c_str());
}

int getbyte() {
  if (remaining == 0) {
    logPrintf("%s ends before its compressed data does\n", containerName.c_str());
  } else {
    --remaining;
  }
  return fileGetc(handle);
}

int getbyteIfAny() {
  if (remaining == 0) ranOut = true;
  if (ranOut) return -1;
  --remaining;
  return fileGetc(handle);
}

int putbyte(int byte) {
  if (std::putc(byte, file->stream()) != EOF) return byte;
  if (onFailure == WriteFailure::fatal) fatalError("Write error in zip.putbyte()!");
  writeFailed = true;
  return -1;
}

// The number of bytes that were there for it.
std::size_t readHeaderWord(std::uint32_t* header) {
  std::array<std::uint8_t, headerWordSize> word{};
  const std::size_t size = fileRead(word.data(), 1, word.size(), handle);
  *header = static_cast<std::uint32_t>(littleEndian(word));
  remaining = fileRemaining(handle);
  return size;
}

void openForReading(std::uint32_t* header) {
  handle = fileOpen(containerName.c_str(), "rb");
  if (handle < 0) refuseUnreadable(containerName);
  if (handle < 0) fatalError("zipOpen: Pak_FILE %s not found!", containerName.c_str());
  if (const std::size_t size = readHeaderWord(header); size != headerWordSize) {
    fatalError("%s: ends after %zu bytes, its header word has %zu", containerName.c_str(), size,
               headerWordSize);
  }
  if (unzinit(getbyte, pkzipFraming, remaining) != 0) refuseContainer();
}

void openForWriting(std::uint32_t header) {
  file = std::make_unique<ReplacementFile>(resolvePath(containerName.c_str()));
  writeFailed = !file->stream();
  if (writeFailed) {
    if (onFailure == WriteFailure::fatal) fatalError("zipOpen: FILE %s not found!", containerName.c_str());
    return;
  }
  for (int shift = 0; shift < 32; shift += 8) putbyte(static_cast<int>(header >> shift & 0xff));
  if (zipinit(putbyte, pkzipFraming, bestLevel) != 0 && !writeFailed) refuseContainer();
}

void closeReading() {
  const int result = unzclose();
  if (result > 0 && zipErrorCode() != zipMoreData) fatalError("unzclose() failed (code %d)", zipErrorCode());
  // Without any zipRead there is no header yet, and nothing to refuse.
  if (result < 0 && zipErrorCode() != zipUninitialized) refuseContainer();
  fileClose(handle);
}

void closeWriting() {
  if (zipclose() == -1 && !writeFailed) fatalError("zipclose() failed!");
  if (!writeFailed && !file->commit()) {
    if (onFailure == WriteFailure::fatal) fatalError("Write error in zip.putbyte()!");
    writeFailed = true;
  }
  file.reset();
}

// Of the member behind the header word, which may promise far more than there is.
std::string readMember(std::uint32_t length, std::string& data) {
  constexpr std::uint64_t likelyRatio = 16;
  constexpr std::size_t piece = 1 << 20;
  data.clear();
  data.reserve(static_cast<std::size_t>(std::min<std::uint64_t>(length, likelyRatio * remaining)));
  ranOut = false;
  if (unzinit(getbyteIfAny, pkzipFraming, remaining) != 0) return codecProblem();
  std::string problem;
  if (unzinflate(nullptr, 0) != 0) problem = codecProblem();
  while (data.size() < length && problem.empty()) {
    const std::size_t done = data.size(), wanted = std::min(length - done, piece);
    data.resize(done + wanted);
    const std::int64_t size = unzinflate(data.data() + done, static_cast<std::uint32_t>(wanted));
    data.resize(done + static_cast<std::size_t>(std::max<std::int64_t>(size, 0)));
    if (size < 0) problem = codecProblem();
    if (size == 0) {
      problem = "only " + std::to_string(done) + " of " + std::to_string(length) + " bytes left to read";
    }
  }
  if (char surplus; problem.empty() && unzinflate(&surplus, 1) > 0) {
    problem = "more than the " + std::to_string(length) + " bytes of its header word";
  }
  if (unzclose() != 0 && zipErrorCode() != zipMoreData && problem.empty()) problem = codecProblem();
  return !problem.empty() && ranOut ? "ends before its compressed data does" : problem;
}

}  // namespace

std::string zipLoad(const char* name, std::string& data) {
  if (mode != ZIP_CLOSED) fatalError("Cannot open two zip files simultaneously!");
  handle = fileOpen(name, "rb");
  if (handle < 0) return "not found";
  std::uint32_t length = 0;
  const std::size_t size = readHeaderWord(&length);
  const std::string problem = size == headerWordSize
                                  ? readMember(length, data)
                                  : "ends after " + std::to_string(size) + " bytes, its header word has " +
                                        std::to_string(headerWordSize);
  fileClose(handle);
  return problem;
}

void zipOpen(const char* name, ZipMode newMode, std::uint32_t* header, WriteFailure newOnFailure) {
  if (mode != ZIP_CLOSED) fatalError("Cannot open two zip files simultaneously!");
  if (newMode == ZIP_CLOSED) fatalError("Cannot open zip file w/ mode=ZIP_CLOSED!");
  mode = newMode;
  containerName = name;
  onFailure = newOnFailure;
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
  if (length == 0 || writeFailed) return;
  if (zipdeflate(buffer, length) == -1 && !writeFailed) refuseContainer();
}

bool zipClose() {
  bool written = true;
  switch (mode) {
    case ZIP_READ:
      closeReading();
      break;
    case ZIP_WRITE:
      closeWriting();
      written = !writeFailed;
      break;
    case ZIP_CLOSED:
      fatalError("zipClose() called on closed file!");
  }
  mode = ZIP_CLOSED;
  return written;
}

}  // namespace vex
