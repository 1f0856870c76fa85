#pragma once

#include <cstdint>

// What the writer and the reader of members share.

namespace vex::zip {

inline constexpr std::uint32_t localSignature = 0x04034b50;  // "PK", 3, 4
inline constexpr std::uint32_t centralSignature = 0x02014b50;
inline constexpr std::uint32_t endSignature = 0x06054b50;
inline constexpr std::uint32_t descriptorSignature = 0x08074b50;
inline constexpr std::uint16_t gzipSignature = 0x8b1f;
inline constexpr int descriptorFlag = 8;  // CRC and sizes stand behind the data
inline constexpr int deflateMethod = 8;
inline constexpr int storeMethod = 0;
inline constexpr int rawDeflate = -15;  // zlib's window bits for 32 KiB without a frame of its own

}  // namespace vex::zip
