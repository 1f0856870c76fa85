#include <zlib.h>

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "models/codec.h"
#include "models/codec_format.h"

namespace vex {

namespace {

using namespace zip;

enum class Stage {
  closed,
  header,   // not read yet
  refused,  // the header was rejected
  inflating,
  storing,
  ended,  // the deflate stream is over
  broken,
};

struct Member {
  Stage stage = Stage::closed;
  GetByte getbyte;
  int framing = 0;
  std::uint64_t certain = 0;  // bytes that getbyte still has for sure
  bool inputEnded = false;
  int error = 0;  // why it is refused or broken
  std::uint32_t crc = 0;
  std::uint32_t delivered = 0;
  // From the header:
  int flags = 0;
  int method = 0;
  std::uint32_t recordedCrc = 0;
  std::uint32_t recordedSize = 0;  // of the data
};

}  // namespace

struct MemberReader::State {
  Member member;
  int errorCode = zipUninitialized;
  z_stream stream{};  // refers to itself, so it stays in place; its next_in and avail_in are all unread input
  std::array<std::uint8_t, 1 << 16> input;

  ~State() { inflateEnd(&stream); }  // of none it does nothing

  int setError(int code) {
    errorCode = code;
    return code;
  }

  int fetchByte() {
    if (member.inputEnded) return -1;
    const int byte = member.getbyte();
    if (byte == -1) member.inputEnded = true;
    if (member.certain > 0) --member.certain;
    return byte;
  }

  // Fewest bytes that stand behind the data of a whole member and are looked at.
  std::size_t trailerSize() {
    if (member.framing == gzipFraming) return 8;
    return member.flags & descriptorFlag ? 16 : 4;
  }

  // For an inflater that has used up its input and cannot go on: it needs one byte, and the trailer comes
  // behind that. False at the end of the input.
  bool refill() {
    if (member.inputEnded) return false;
    const std::uint64_t wanted = member.certain > 0 ? member.certain : 1 + trailerSize();
    const auto size = static_cast<std::size_t>(std::min<std::uint64_t>(wanted, input.size()));
    // As fetchByte, but with all that changes in registers.
    std::size_t filled = 0;
    for (int byte; filled < size && (byte = member.getbyte()) != -1; ++filled) {
      input[filled] = static_cast<std::uint8_t>(byte);
    }
    member.inputEnded = filled < size;
    member.certain -= std::min<std::uint64_t>(member.certain, filled);
    stream.next_in = input.data();
    stream.avail_in = static_cast<uInt>(filled);
    return filled > 0;
  }

  int nextByte() {
    if (stream.avail_in == 0) return fetchByte();
    --stream.avail_in;
    return *stream.next_in++;
  }

  // Nothing where the input ends.
  std::optional<std::uint32_t> readNumber(int size) {
    std::uint32_t value = 0;
    for (int i = 0; i < size; ++i) {
      const int byte = nextByte();
      if (byte == -1) return {};
      value |= static_cast<std::uint32_t>(byte) << 8 * i;
    }
    return value;
  }

  bool skipBytes(std::uint32_t count) {
    while (count > 0 && nextByte() != -1) --count;
    return count == 0;
  }

  bool skipText() {
    int byte;
    do {
      byte = nextByte();
    } while (byte > 0);
    return byte == 0;
  }

  // The header functions return 0 or the code that rejects the header.

  int readPkzipHeader() {
    constexpr std::uint32_t unknownFlags = 0x1ff1, mostSkipped = 65505;
    if (!skipBytes(2)) return zipHeaderEnds;  // version
    const auto flags = readNumber(2);
    if (!flags) return zipHeaderEnds;
    if (*flags & unknownFlags) return zipReserved;
    const auto method = readNumber(2);
    if (!skipBytes(4)) return zipHeaderEnds;  // time and date
    const auto crc = readNumber(4);
    readNumber(4);  // the deflate stream tells its own end
    const auto size = readNumber(4);
    const auto nameLength = readNumber(2);
    const auto extraLength = readNumber(2);
    if (!extraLength) return zipHeaderEnds;
    const std::uint32_t skipped = *nameLength + *extraLength;
    if (skipped > mostSkipped || !skipBytes(skipped)) return zipHeaderEnds;
    member.flags = static_cast<int>(*flags);
    member.method = static_cast<int>(*method);
    member.recordedCrc = *crc;
    member.recordedSize = *size;
    return 0;
  }

  int readGzipHeader() {
    constexpr std::uint32_t unknownFlags = 0xe2, extraField = 4, name = 8, comment = 16;
    const auto method = readNumber(1);
    const auto flags = readNumber(1);
    if (!flags) return zipHeaderEnds;
    if (*flags & unknownFlags) return zipReserved;
    if (!skipBytes(6)) return zipHeaderEnds;  // time, extra flags, system
    if (*flags & extraField) {
      const auto length = readNumber(2);
      if (!length || !skipBytes(*length)) return zipHeaderEnds;
    }
    if (*flags & name && !skipText()) return zipHeaderEnds;
    if (*flags & comment && !skipText()) return zipHeaderEnds;
    member.method = static_cast<int>(*method);
    return 0;
  }

  int readHeader() {
    const auto magic = readNumber(2);
    if (!magic) return zipHeaderEnds;
    if (*magic == (localSignature & 0xffff) && member.framing != gzipFraming) {
      member.framing = pkzipFraming;
      const auto rest = readNumber(2);
      if (!rest) return zipHeaderEnds;
      return *rest == localSignature >> 16 ? readPkzipHeader() : zipBadMagic;
    }
    if (*magic == gzipSignature && member.framing != pkzipFraming) {
      member.framing = gzipFraming;
      return readGzipHeader();
    }
    return zipBadMagic;
  }

  std::int64_t breakOff(int code) {
    member.stage = Stage::broken;
    member.error = setError(code);
    return -1;
  }

  void countDelivered(const std::uint8_t* bytes, std::size_t size) {
    if (size == 0) return;
    member.crc = static_cast<std::uint32_t>(crc32_z(member.crc, bytes, size));
    member.delivered += static_cast<std::uint32_t>(size);
  }

  std::int64_t inflateInto(std::uint8_t* buffer, std::uint32_t n) {
    stream.next_out = buffer;
    stream.avail_out = n;
    while (stream.avail_out > 0) {
      const std::uint8_t* start = stream.next_out;
      const int result = inflate(&stream, Z_NO_FLUSH);
      countDelivered(start, static_cast<std::size_t>(stream.next_out - start));
      if (result == Z_STREAM_END) {
        member.stage = Stage::ended;
        break;
      }
      if (result == Z_MEM_ERROR) return breakOff(zipNoMemory);
      if (result != Z_OK && result != Z_BUF_ERROR) return breakOff(zipInvalidData);
      if (stream.avail_out > 0 && stream.avail_in == 0 && !refill()) return breakOff(zipInvalidData);
    }
    return n - stream.avail_out;
  }

  std::int64_t copyStored(std::uint8_t* buffer, std::uint32_t n) {
    const std::uint32_t size = std::min(n, member.recordedSize - member.delivered);
    for (std::uint32_t i = 0; i < size; ++i) {
      const int byte = nextByte();
      if (byte == -1) return breakOff(zipInvalidData);
      buffer[i] = static_cast<std::uint8_t>(byte);
    }
    countDelivered(buffer, size);
    return size;
  }

  void startData() {
    if (const int code = readHeader(); code != 0) {
      member.stage = Stage::refused;
      member.error = code;
    } else if (member.method == deflateMethod) {
      member.stage = Stage::inflating;
    } else if (member.method == storeMethod && member.framing == pkzipFraming) {
      member.stage = Stage::storing;
    } else {
      member.stage = Stage::broken;
      member.error = zipReserved;
    }
  }

  int closeWith(int code) {
    setError(code);
    return code == zipUninitialized || code == zipBadCrc || code == zipSizeDiffers ? -1 : code;
  }

  // The data stands up to its end: the checks of the trailer. `discarded` says that some of it was not asked
  // for.
  int checkTrailer(bool discarded) {
    std::optional<std::uint32_t> crc = member.recordedCrc, size = member.recordedSize;
    if (member.framing == gzipFraming) {
      crc = readNumber(4);
      size = readNumber(4);
    } else if (member.flags & descriptorFlag) {
      crc = readNumber(4);
      if (crc == descriptorSignature) crc = readNumber(4);
      if (crc == member.crc) {
        readNumber(4);  // compressed size
        size = readNumber(4);
      }
    }
    if (crc != member.crc) return closeWith(zipBadCrc);
    if (size != member.delivered) return closeWith(zipSizeDiffers);
    if (member.framing == pkzipFraming) {
      const auto next = readNumber(4);
      if (next == localSignature) return closeWith(zipMoreData);
      if (next != centralSignature) return closeWith(zipInvalidData);
    }
    return discarded ? closeWith(zipMoreData) : 0;
  }

  int finishMember() {
    std::array<std::uint8_t, 16> rest;
    bool discarded = false;
    switch (member.stage) {
      case Stage::closed:
      case Stage::header:
      case Stage::refused:
        return closeWith(zipUninitialized);
      case Stage::broken:
        return closeWith(zipMoreData);
      case Stage::inflating:
        // All data may have been taken and only the mark of its end be unread.
        if (inflateInto(rest.data(), 1) != 0) return closeWith(zipMoreData);
        break;
      case Stage::storing:
        for (std::int64_t size; (size = copyStored(rest.data(), rest.size())) != 0; discarded = true) {
          if (size == -1) return -1;
        }
        break;
      case Stage::ended:
        break;
    }
    return checkTrailer(discarded);
  }
};

MemberReader::MemberReader() : state(std::make_unique<State>()) {}

MemberReader::~MemberReader() = default;

int MemberReader::open(GetByte getbyte, int framing, std::uint64_t certain) {
  z_stream& stream = state->stream;
  inflateEnd(&stream);
  state->member = {};
  stream = {};
  // zlib takes its window only when data comes; an empty dictionary makes it do so now.
  if (inflateInit2(&stream, rawDeflate) != Z_OK ||
      inflateSetDictionary(&stream, state->input.data(), 0) != Z_OK) {
    return state->setError(zipNoMemory);
  }
  state->member = {
      .stage = Stage::header, .getbyte = std::move(getbyte), .framing = framing, .certain = certain};
  return 0;
}

std::int64_t MemberReader::read(void* buffer, std::uint32_t n) {
  if (state->member.stage == Stage::header) state->startData();
  switch (state->member.stage) {
    case Stage::inflating:
      return state->inflateInto(static_cast<std::uint8_t*>(buffer), n);
    case Stage::storing:
      return state->copyStored(static_cast<std::uint8_t*>(buffer), n);
    case Stage::ended:
      return 0;
    case Stage::refused:
      return state->setError(state->member.error);
    case Stage::broken:
      return state->breakOff(state->member.error);
    case Stage::closed:
    case Stage::header:
      break;
  }
  state->setError(zipUninitialized);
  return -1;
}

int MemberReader::close() {
  const int result = state->finishMember();
  inflateEnd(&state->stream);
  state->member = {};
  return result;
}

int MemberReader::errorCode() const {
  return state->errorCode;
}

}  // namespace vex
