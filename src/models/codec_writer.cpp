#define ZLIB_CONST  // input is only read
#include <zlib.h>

#include <array>
#include <span>

#include "models/codec.h"
#include "models/codec_format.h"

namespace vex {

namespace {

using namespace zip;

struct Writer {
  PutByte putbyte = nullptr;  // null while no member is open
  int framing = 0;
  int level = 0;
  std::uint32_t crc = 0;
  std::uint32_t size = 0;            // of the data
  std::uint32_t compressedSize = 0;  // of the deflate stream
  bool ended = false;
  bool failed = false;  // a byte was refused: the member is lost
};

Writer writer;
z_stream stream;  // refers to itself, so it stays in place
std::array<std::uint8_t, 1 << 14> output;

constexpr int hashLevel = 8;  // zlib's memory level for a hash of 15 bits

// Bytes of a header or trailer, lowest byte of a number first.
struct Record {
  std::array<std::uint8_t, 84> bytes{};
  std::size_t size = 0;

  Record& put(std::uint32_t value, int count) {
    for (int i = 0; i < count; ++i) bytes[size++] = static_cast<std::uint8_t>(value >> 8 * i);
    return *this;
  }
};

bool putBytes(std::span<const std::uint8_t> bytes) {
  for (const std::uint8_t byte : bytes) {
    if (writer.putbyte(byte) != -1) continue;
    writer.failed = true;
    setError(zipWriteError);
    return false;
  }
  return true;
}

bool putRecord(const Record& record) {
  return putBytes(std::span(record.bytes).first(record.size));
}

std::uint32_t extraFlags() {
  return writer.level == 1 ? 4 : writer.level == 9 ? 2 : 0;
}

// What the local header and the central directory have in common.
void putMemberFields(Record& record, std::uint32_t crc, std::uint32_t compressedSize, std::uint32_t size) {
  record.put(0x0013, 2).put(extraFlags() + descriptorFlag, 2).put(deflateMethod, 2);
  record.put(0, 4);  // time and date
  record.put(crc, 4).put(compressedSize, 4).put(size, 4);
  record.put(0, 2).put(0, 2);  // name, extra field
}

bool putHeader() {
  Record header;
  if (writer.framing == gzipFraming) {
    constexpr std::uint32_t operatingSystem = 11;
    header.put(gzipSignature, 2).put(deflateMethod, 1).put(0, 1).put(0, 4);
    header.put(extraFlags(), 1).put(operatingSystem, 1);
  } else {
    header.put(localSignature, 4);
    putMemberFields(header, 0, 0, 0);
  }
  return putRecord(header);
}

bool putGzipTrailer() {
  return putRecord(Record{}.put(writer.crc, 4).put(writer.size, 4));
}

bool putPkzipTrailer() {
  Record trailer;
  trailer.put(descriptorSignature, 4);
  trailer.put(writer.crc, 4).put(writer.compressedSize, 4).put(writer.size, 4);
  trailer.put(centralSignature, 4).put(0x0b14, 2);
  putMemberFields(trailer, writer.crc, writer.compressedSize, writer.size);
  trailer.put(0, 2).put(0, 2).put(0, 2).put(0, 4);  // comment, disk, internal and external attributes
  trailer.put(0, 4);                                // place of the local header
  constexpr std::uint32_t localHeaderSize = 30, descriptorSize = 16, directorySize = 46;
  trailer.put(endSignature, 4).put(0, 2).put(0, 2).put(1, 2).put(1, 2).put(directorySize, 4);
  trailer.put(localHeaderSize + writer.compressedSize + descriptorSize, 4);
  trailer.put(0, 2);  // comment
  return putRecord(trailer);
}

bool deflateBytes(const void* buffer, std::uint32_t n, int flush) {
  stream.next_in = static_cast<const Bytef*>(buffer);
  stream.avail_in = n;
  do {
    stream.next_out = output.data();
    stream.avail_out = output.size();
    deflate(&stream, flush);
    const std::size_t size = output.size() - stream.avail_out;
    if (!putBytes(std::span(output).first(size))) return false;
    writer.compressedSize += static_cast<std::uint32_t>(size);
  } while (stream.avail_out == 0);
  return true;
}

void endWriter() {
  if (writer.putbyte) deflateEnd(&stream);
  writer = Writer{};
}

}  // namespace

int zipinit(PutByte putbyte, int framing, int level) {
  endWriter();
  if ((framing != pkzipFraming && framing != gzipFraming) || level < 1 || level > 9) {
    return setError(zipReserved);
  }
  stream = z_stream{};
  if (deflateInit2(&stream, level, Z_DEFLATED, rawDeflate, hashLevel, Z_DEFAULT_STRATEGY) != Z_OK) {
    return setError(zipNoMemory);
  }
  writer = Writer{.putbyte = putbyte, .framing = framing, .level = level};
  if (putHeader()) return 0;
  endWriter();
  return zipWriteError;
}

std::int64_t zipdeflate(const void* buffer, std::uint32_t n) {
  if (!writer.putbyte || (writer.ended && n > 0)) {
    setError(zipUninitialized);
    return -1;
  }
  if (writer.failed) {
    setError(zipWriteError);
    return -1;
  }
  if (writer.ended) return 0;
  writer.ended = n == 0;
  if (n > 0) writer.crc = static_cast<std::uint32_t>(crc32(writer.crc, static_cast<const Bytef*>(buffer), n));
  writer.size += n;
  return deflateBytes(buffer, n, writer.ended ? Z_FINISH : Z_NO_FLUSH) ? std::int64_t{n} : -1;
}

std::int64_t zipclose() {
  std::int64_t size = -1;
  if (zipdeflate(nullptr, 0) == 0) {
    const bool gzip = writer.framing == gzipFraming;
    if (gzip ? putGzipTrailer() : putPkzipTrailer()) {
      size = std::int64_t{writer.compressedSize} + (gzip ? 18 : 114);
    }
  }
  endWriter();
  return size;
}

}  // namespace vex
