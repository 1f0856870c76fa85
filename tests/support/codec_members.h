#pragma once

#include <zlib.h>

#include <cstdint>
#include <string>
#include <string_view>

// Members of the codec, from itself and from others, and how they are read.

namespace vex {

inline constexpr int anyFraming = 0;

// Words in random order: matches near and far, literals in between.
std::string someText(std::size_t size);

// What the codec writes of the data, given in pieces.
std::string compress(std::string_view data, int framing, int level, std::size_t piece = 1 << 20);

// zlib as the other party: raw deflate data, or a gzip file with the given header fields.
std::string foreignDeflate(std::string data, gz_header* gzip = nullptr);

std::uint32_t crcOf(const std::string& data);

enum class Descriptor { none, plain, withSignature };

// A PKZIP member as others write it.
struct Member {
  std::string data = someText(300);
  int method = 8;
  int flags = 0;
  std::string name = "model.bin";
  std::string extra = "";
  Descriptor descriptor = Descriptor::none;
  std::uint32_t crcChange = 0;
  std::uint32_t sizeChange = 0;
  std::string next = "PK\1\2";

  std::string bytes() const;
};

struct Reading {
  std::int64_t result;  // of the last read that did not deliver all of its piece
  int inflateCode;
  std::string data;
  int closeResult;
  int closeCode;
  std::size_t unread;
};

// Reads in pieces until the end or an error. The input is an exact block, for the sanitizers.
Reading readMember(std::string_view bytes, int framing, std::uint32_t piece = 1 << 16,
                   std::uint64_t certain = 0, std::size_t most = std::string::npos);

}  // namespace vex
