#include "models/container.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

#include "base/report.h"
#include "platform/little_endian.h"
#include "platform/paths.h"

namespace vex {

namespace {

constexpr int bestLevel = 9;

template <typename Member>
std::string codecProblem(const Member& member) {
  const int code = member.errorCode();
  return std::string(zipErrorText(code)) + " (code " + std::to_string(code) + ")";
}

}  // namespace

void ModelContainer::fail(const std::string& text) {
  if (onFailure == ZipFailure::fatal) fatalError("%s", text.c_str());
  if (failure.empty()) failure = text;
}

void ModelContainer::failReading(const std::string& problem) {
  fail(ranOut ? "ARGH! (" + name + " ends before its compressed data does)" : name + ": " + problem);
}

// errno says why.
void ModelContainer::failWriting() {
  fail("Write error in zip.putbyte()! (" + name + ": " + std::strerror(errno) + ")");
}

void ModelContainer::checkUnpacked() {
  if (unpacked <= mostUnpacked(size)) return;
  fail(formatted("%s: more than %llu bytes of data in a file of %llu", name.c_str(),
                 static_cast<unsigned long long>(mostUnpacked(size)), static_cast<unsigned long long>(size)));
}

int ModelContainer::getbyte() {
  if (remaining == 0) ranOut = true;
  if (ranOut) return -1;
  --remaining;
  return fileGetc(*source);
}

int ModelContainer::putbyte(int byte) {
  ++size;
  if (std::putc(byte, target->stream()) != EOF) return byte;
  failWriting();
  return -1;
}

void ModelContainer::openForReading(std::uint32_t* header) {
  const int handle =
      source.emplace(fileOpenNeeded(name, formatted("zipOpen: Pak_FILE %s not found!", name.c_str())));
  ranOut = false;
  size = fileRemaining(handle);
  std::array<std::uint8_t, 4> word{};
  // More than a member has may not even be asked for.
  const std::size_t got =
      fileRead(word.data(), 1, std::min<std::uint64_t>(word.size(), fileRemaining(handle)), handle);
  *header = static_cast<std::uint32_t>(littleEndian(word));
  if (got != word.size()) {
    failReading("ends after " + std::to_string(got) + " bytes, its header word has " +
                std::to_string(word.size()));
    return;
  }
  remaining = fileRemaining(handle);
  if (reader.open([this] { return getbyte(); }, pkzipFraming, remaining) != 0) {
    failReading(codecProblem(reader));
  }
}

void ModelContainer::openForWriting(std::uint32_t header) {
  target = std::make_unique<ReplacementFile>(resolvePath(name.c_str()));
  if (!target->stream()) {
    fail("zipOpen: FILE " + name + " not found!");
    return;
  }
  for (int shift = 0; shift < 32; shift += 8) putbyte(static_cast<int>(header >> shift & 0xff));
  if (writer.open([this](int byte) { return putbyte(byte); }, pkzipFraming, bestLevel) != 0) {
    fail(name + ": " + codecProblem(writer));
  }
}

void ModelContainer::closeReading() {
  if (failure.empty()) {
    const int result = reader.close(), code = reader.errorCode();
    // The mark of the data's end may be all that is missing.
    if (ranOut) {
      failReading({});
    } else if (result > 0 && code != zipMoreData) {
      fail(formatted("unzclose() failed (code %d) (%s: %s)", code, name.c_str(), zipErrorText(code)));
    } else if (result < 0 && code != zipUninitialized) {  // as it is where nothing was read
      failReading(codecProblem(reader));
    }
  } else {
    reader.close();
  }
  source.reset();
}

void ModelContainer::closeWriting() {
  if (writer.close() == -1) fail("zipclose() failed! (" + name + ": " + codecProblem(writer) + ")");
  if (failure.empty()) checkUnpacked();
  if (failure.empty() && !target->commit()) failWriting();
  target.reset();
}

void ModelContainer::open(const char* newName, ZipMode newMode, std::uint32_t* header,
                          ZipFailure newOnFailure) {
  if (mode != ZIP_CLOSED) {
    fatalError("Cannot open two zip files simultaneously! (%s while %s is open)", newName, name.c_str());
  }
  if (newMode == ZIP_CLOSED) fatalError("Cannot open zip file w/ mode=ZIP_CLOSED! (%s)", newName);
  mode = newMode;
  onFailure = newOnFailure;
  failure.clear();
  name = newName;
  size = unpacked = 0;
  if (mode == ZIP_READ) {
    openForReading(header);
  } else {
    openForWriting(*header);
  }
}

std::uint32_t ModelContainer::read(void* buffer, std::uint32_t length) {
  if (mode == ZIP_WRITE) fatalError("zipRead() called in ZIP_WRITE mode!");
  if (mode == ZIP_CLOSED) fatalError("zipRead() called on closed file!");
  if (!failure.empty()) return 0;
  // A rejected header has a result that could be a number of bytes; of no bytes it is unmistakable.
  const bool rejected = reader.read(nullptr, 0) != 0;
  const std::int64_t got = rejected ? -1 : reader.read(buffer, length);
  if (got < 0) {
    failReading(codecProblem(reader));
    return 0;
  }
  unpacked += static_cast<std::uint64_t>(got);
  checkUnpacked();
  return failure.empty() ? static_cast<std::uint32_t>(got) : 0;
}

void ModelContainer::write(const void* buffer, std::uint32_t length) {
  if (mode == ZIP_READ) fatalError("zipWrite() called in ZIP_READ mode!");
  if (mode == ZIP_CLOSED) fatalError("zipWrite() called on closed file!");
  // For the codec no bytes are the end of the data.
  if (length == 0 || !failure.empty()) return;
  unpacked += length;
  if (writer.write(buffer, length) == -1) fail(name + ": " + codecProblem(writer));
}

std::string ModelContainer::close() {
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
