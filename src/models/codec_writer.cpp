#define ZLIB_CONST  // input is only read
#include <zlib.h>

#include <array>
#include <span>
#include <utility>

#include "models/codec.h"
#include "models/codec_format.h"

namespace vex {

namespace {

using namespace zip;

struct Member {
  PutByte putbyte;  // none while no member is open
  int framing = 0;
  int level = 0;
  std::uint32_t crc = 0;
  std::uint32_t size = 0;            // of the data
  std::uint32_t compressedSize = 0;  // of the deflate stream
  bool ended = false;
  bool failed = false;  // a byte was refused: the member is lost
};

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

}  // namespace

struct MemberWriter::State {
  Member member;
  int errorCode = zipUninitialized;
  z_stream stream{};  // refers to itself, so it stays in place
  std::array<std::uint8_t, 1 << 14> output;

  ~State() { end(); }

  int setError(int code) {
    errorCode = code;
    return code;
  }

  bool putBytes(std::span<const std::uint8_t> bytes) {
    for (const std::uint8_t byte : bytes) {
      if (member.putbyte(byte) != -1) continue;
      member.failed = true;
      setError(zipWriteError);
      return false;
    }
    return true;
  }

  bool putRecord(const Record& record) { return putBytes(std::span(record.bytes).first(record.size)); }

  std::uint32_t extraFlags() { return member.level == 1 ? 4 : member.level == 9 ? 2 : 0; }

  // What the local header and the central directory have in common.
  void putMemberFields(Record& record, std::uint32_t crc, std::uint32_t compressedSize, std::uint32_t size) {
    record.put(0x0013, 2).put(extraFlags() + descriptorFlag, 2).put(deflateMethod, 2);
    record.put(0, 4);  // time and date
    record.put(crc, 4).put(compressedSize, 4).put(size, 4);
    record.put(0, 2).put(0, 2);  // name, extra field
  }

  bool putHeader() {
    Record header;
    if (member.framing == gzipFraming) {
      constexpr std::uint32_t operatingSystem = 11;
      header.put(gzipSignature, 2).put(deflateMethod, 1).put(0, 1).put(0, 4);
      header.put(extraFlags(), 1).put(operatingSystem, 1);
    } else {
      header.put(localSignature, 4);
      putMemberFields(header, 0, 0, 0);
    }
    return putRecord(header);
  }

  bool putGzipTrailer() { return putRecord(Record{}.put(member.crc, 4).put(member.size, 4)); }

  bool putPkzipTrailer() {
    Record trailer;
    trailer.put(descriptorSignature, 4);
    trailer.put(member.crc, 4).put(member.compressedSize, 4).put(member.size, 4);
    trailer.put(centralSignature, 4).put(0x0b14, 2);
    putMemberFields(trailer, member.crc, member.compressedSize, member.size);
    trailer.put(0, 2).put(0, 2).put(0, 2).put(0, 4);  // comment, disk, internal and external attributes
    trailer.put(0, 4);                                // place of the local header
    constexpr std::uint32_t localHeaderSize = 30, descriptorSize = 16, directorySize = 46;
    trailer.put(endSignature, 4).put(0, 2).put(0, 2).put(1, 2).put(1, 2).put(directorySize, 4);
    trailer.put(localHeaderSize + member.compressedSize + descriptorSize, 4);
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
      member.compressedSize += static_cast<std::uint32_t>(size);
    } while (stream.avail_out == 0);
    return true;
  }

  void end() {
    deflateEnd(&stream);  // of none it does nothing
    member = {};
  }
};

MemberWriter::MemberWriter() : state(std::make_unique<State>()) {}

MemberWriter::~MemberWriter() = default;

int MemberWriter::open(PutByte putbyte, int framing, int level) {
  state->end();
  if ((framing != pkzipFraming && framing != gzipFraming) || level < 1 || level > 9) {
    return state->setError(zipReserved);
  }
  state->stream = {};
  if (deflateInit2(&state->stream, level, Z_DEFLATED, rawDeflate, hashLevel, Z_DEFAULT_STRATEGY) != Z_OK) {
    return state->setError(zipNoMemory);
  }
  state->member = {.putbyte = std::move(putbyte), .framing = framing, .level = level};
  if (state->putHeader()) return 0;
  state->end();
  return zipWriteError;
}

std::int64_t MemberWriter::write(const void* buffer, std::uint32_t n) {
  Member& member = state->member;
  if (!member.putbyte || (member.ended && n > 0)) {
    state->setError(zipUninitialized);
    return -1;
  }
  if (member.failed) {
    state->setError(zipWriteError);
    return -1;
  }
  if (member.ended) return 0;
  member.ended = n == 0;
  if (n > 0) member.crc = static_cast<std::uint32_t>(crc32(member.crc, static_cast<const Bytef*>(buffer), n));
  member.size += n;
  return state->deflateBytes(buffer, n, member.ended ? Z_FINISH : Z_NO_FLUSH) ? std::int64_t{n} : -1;
}

std::int64_t MemberWriter::close() {
  std::int64_t size = -1;
  if (write(nullptr, 0) == 0) {
    const bool gzip = state->member.framing == gzipFraming;
    if (gzip ? state->putGzipTrailer() : state->putPkzipTrailer()) {
      size = std::int64_t{state->member.compressedSize} + (gzip ? 18 : 114);
    }
  }
  state->end();
  return size;
}

int MemberWriter::errorCode() const {
  return state->errorCode;
}

}  // namespace vex
