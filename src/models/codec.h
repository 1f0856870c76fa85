#pragma once

#include <cstdint>
#include <functional>
#include <memory>

// One deflate member (RFC 1951), framed as the only member of a PKZIP archive or as a gzip file (RFC 1952).
// Bytes move through callbacks alone.

namespace vex {

inline constexpr int pkzipFraming = 1;
inline constexpr int gzipFraming = 2;

// Codes that the calls below set; each call says with which result.
enum ZipError : int {
  zipUninitialized = 0,
  zipNoMemory = 1,
  zipBadMagic = 2,
  zipReserved = 3,
  zipHeaderEnds = 4,
  zipInvalidData = 5,
  zipMoreData = 6,
  zipSizeDiffers = 7,
  zipBadCrc = 8,
  zipWriteError = 9,
  zipInternalError = 10,
};

// The text of a code; that of zipInternalError for what is no code.
const char* zipErrorText(int code);

using PutByte = std::function<int(int byte)>;  // the byte, or -1 on failure
using GetByte = std::function<int()>;          // 0 to 255, or -1 at the end of the input

class MemberWriter {
 public:
  MemberWriter();
  ~MemberWriter();

  // Starts a member and writes its header; level is 1 (fast) to 9 (small). 0, or the code: zipReserved for
  // another framing or level, zipNoMemory, zipWriteError.
  int open(PutByte putbyte, int framing, int level);

  // Compresses n bytes more; n = 0 ends the data. The number of bytes taken, or -1: zipUninitialized where
  // no member is open for data, zipWriteError. Compressed bytes are put in pieces, some only at the end.
  std::int64_t write(const void* buffer, std::uint32_t n);

  // Ends the data and writes the trailer. The size of the whole member, or -1, codes as above. No member is
  // open afterwards.
  std::int64_t close();

  // The code that a call set last; calls that succeed leave it alone.
  int errorCode() const;

 private:
  struct State;
  std::unique_ptr<State> state;
};

class MemberReader {
 public:
  MemberReader();
  ~MemberReader();

  // Prepares for reading; another framing than the two takes what the first bytes show. 0, or 1: zipNoMemory.
  // The reader takes no byte beyond those that it checks in the trailer, unless the caller promises that
  // `certain` bytes are left: these it takes in large pieces, which is faster.
  int open(GetByte getbyte, int framing, std::uint64_t certain = 0);

  // The next n bytes, the first call reading the header. The number of bytes delivered, fewer at the member's
  // end; for a rejected header its code (zipBadMagic, zipReserved, zipHeaderEnds), in this and all later
  // calls; -1: zipReserved for an unknown method, zipInvalidData, zipUninitialized.
  std::int64_t read(void* buffer, std::uint32_t n);

  // Checks the trailer and ends reading. 0; zipMoreData where data was left or another member follows;
  // zipInvalidData where a PKZIP member is not followed by the central directory; -1: zipUninitialized where
  // no header was read, zipBadCrc, zipSizeDiffers, zipInvalidData where stored data ends early.
  int close();

  int errorCode() const;  // as MemberWriter's

 private:
  struct State;
  std::unique_ptr<State> state;
};

}  // namespace vex
