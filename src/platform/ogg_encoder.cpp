#include "platform/ogg_encoder.h"

#include <sndfile.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <memory>

namespace vex {

namespace {

// A file in memory behind libsndfile's own interface for reading, writing and seeking.
struct MemoryFile {
  std::vector<std::byte> bytes;
  sf_count_t position = 0;
};

sf_count_t fileLength(void* user) {
  return static_cast<sf_count_t>(static_cast<MemoryFile*>(user)->bytes.size());
}

sf_count_t seekFile(sf_count_t offset, int whence, void* user) {
  MemoryFile& file = *static_cast<MemoryFile*>(user);
  const sf_count_t base = whence == SEEK_SET ? 0 : whence == SEEK_CUR ? file.position : fileLength(user);
  file.position = std::max<sf_count_t>(0, base + offset);
  return file.position;
}

sf_count_t readFile(void* target, sf_count_t count, void* user) {
  MemoryFile& file = *static_cast<MemoryFile*>(user);
  const sf_count_t size = std::clamp<sf_count_t>(fileLength(user) - file.position, 0, count);
  if (size > 0) std::memcpy(target, file.bytes.data() + file.position, static_cast<std::size_t>(size));
  file.position += size;
  return size;
}

sf_count_t writeFile(const void* source, sf_count_t count, void* user) {
  MemoryFile& file = *static_cast<MemoryFile*>(user);
  const std::size_t end = static_cast<std::size_t>(file.position + count);
  if (end > file.bytes.size()) file.bytes.resize(end);
  std::memcpy(file.bytes.data() + file.position, source, static_cast<std::size_t>(count));
  file.position += count;
  return count;
}

sf_count_t tellFile(void* user) {
  return static_cast<MemoryFile*>(user)->position;
}

// Ogg's checksum (RFC 3533): CRC-32 of polynomial 0x04c11db7, high bit first, start and final value 0.
constexpr std::array<std::uint32_t, 256> crcTable = [] {
  std::array<std::uint32_t, 256> table{};
  for (std::uint32_t i = 0; i < 256; ++i) {
    std::uint32_t value = i << 24;
    for (int bit = 0; bit < 8; ++bit) value = value << 1 ^ ((value & 0x80000000u) != 0 ? 0x04c11db7u : 0);
    table[i] = value;
  }
  return table;
}();

void storeWord(std::span<std::byte> target, std::uint32_t value) {
  for (unsigned i = 0; i < 4; ++i) target[i] = static_cast<std::byte>(value >> (8 * i) & 0xff);
}

// The page at the start of `rest`: its length in bytes, or 0 when there is no whole page.
std::size_t pageLength(std::span<const std::byte> rest) {
  constexpr std::size_t headerSize = 27;
  if (rest.size() < headerSize || std::memcmp(rest.data(), "OggS", 4) != 0) return 0;
  const auto segments = std::to_integer<std::size_t>(rest[26]);
  if (rest.size() < headerSize + segments) return 0;
  std::size_t length = headerSize + segments;
  for (const std::byte lacing : rest.subspan(headerSize, segments))
    length += std::to_integer<std::size_t>(lacing);
  return rest.size() < length ? 0 : length;
}

}  // namespace

bool setOggSerial(std::span<std::byte> file, unsigned serial) {
  for (std::span<const std::byte> rest = file; !rest.empty();) {
    const std::size_t length = pageLength(rest);
    if (length == 0) return false;
    rest = rest.subspan(length);
  }
  for (std::span<std::byte> rest = file; !rest.empty();) {
    const std::span<std::byte> page = rest.first(pageLength(rest));
    rest = rest.subspan(page.size());
    storeWord(page.subspan(14, 4), serial);
    storeWord(page.subspan(22, 4), 0);  // the checksum counts its own field as 0
    std::uint32_t crc = 0;
    for (const std::byte value : page)
      crc = crc << 8 ^ crcTable[crc >> 24 ^ std::to_integer<std::uint32_t>(value)];
    storeWord(page.subspan(22, 4), crc);
  }
  return true;
}

std::vector<std::byte> encodeOgg(std::span<const float> left, std::span<const float> right, int sampleRate,
                                 double quality, std::string& error) {
  error.clear();
  if (left.size() != right.size()) {
    error = "the channels differ in length";
    return {};
  }
  MemoryFile file;
  SF_VIRTUAL_IO io{fileLength, seekFile, readFile, writeFile, tellFile};
  SF_INFO info{};
  info.samplerate = sampleRate;
  info.channels = 2;
  info.format = SF_FORMAT_OGG | SF_FORMAT_VORBIS;
  std::unique_ptr<SNDFILE, int (*)(SNDFILE*)> stream(sf_open_virtual(&io, SFM_WRITE, &info, &file), sf_close);
  if (!stream) {
    error = sf_strerror(nullptr);
    return {};
  }
  sf_command(stream.get(), SFC_SET_VBR_ENCODING_QUALITY, &quality, sizeof(quality));

  constexpr std::size_t blockFrames = 4096;  // the encoder keeps a whole write on the stack
  std::array<float, 2 * blockFrames> block;
  for (std::size_t start = 0; start < left.size(); start += blockFrames) {
    const std::size_t frames = std::min(blockFrames, left.size() - start);
    for (std::size_t i = 0; i < frames; ++i) {
      block[2 * i] = left[start + i];
      block[2 * i + 1] = right[start + i];
    }
    if (sf_writef_float(stream.get(), block.data(), static_cast<sf_count_t>(frames)) !=
        static_cast<sf_count_t>(frames)) {
      error = sf_strerror(stream.get());
      return {};
    }
  }
  stream.reset();
  constexpr unsigned serial = 0x766578;  // "vex"
  if (!setOggSerial(file.bytes, serial)) {
    error = "the encoder wrote something else than Ogg pages";
    return {};
  }
  return std::move(file.bytes);
}

}  // namespace vex
