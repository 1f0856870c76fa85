#include "studio/show/peak_cache.h"

#include <zlib.h>

#include <cmath>
#include <cstddef>
#include <span>

#include "platform/little_endian.h"

namespace vex::studio {

namespace {

constexpr std::string_view magic = "vexpeak1";
constexpr std::size_t secondsPlace = 28, sumPlace = 36, headerSize = 40;

std::uint32_t sumOf(std::string_view head, std::string_view peaks) {
  uLong sum = crc32(0, nullptr, 0);
  for (const std::string_view bytes : {head, peaks})
    sum = crc32(sum, reinterpret_cast<const Bytef*>(bytes.data()), static_cast<uInt>(bytes.size()));
  return static_cast<std::uint32_t>(sum);
}

std::string headOf(const MusicStamp& music) {
  std::string head(magic);
  appendLittleEndian(head, music.size, 8);
  appendLittleEndian(head, static_cast<std::uint64_t>(music.changed), 8);
  appendLittleEndian(head, music.offset, 4);
  return head;
}

std::uint64_t numberAt(std::string_view bytes, std::size_t place, std::size_t size) {
  return littleEndian(std::span(reinterpret_cast<const std::uint8_t*>(bytes.data()) + place, size));
}

}  // namespace

std::string peakBytes(const Peaks& peaks, const MusicStamp& music) {
  std::string bytes = headOf(music);
  appendLittleEndian(bytes, static_cast<std::uint64_t>(std::ldexp(peaks.seconds, 32)), 8);
  std::string values;
  for (const Peak& peak : peaks.peaks) {
    values += static_cast<char>(peak.low);
    values += static_cast<char>(peak.high);
  }
  appendLittleEndian(bytes, sumOf(bytes, values), 4);
  return bytes + values;
}

std::optional<Peaks> readPeaks(std::string_view bytes, const MusicStamp& music) {
  if (bytes.size() < headerSize || !bytes.starts_with(headOf(music))) return std::nullopt;
  const std::string_view values = bytes.substr(headerSize);
  if (numberAt(bytes, sumPlace, 4) != sumOf(bytes.substr(0, sumPlace), values)) return std::nullopt;
  Peaks peaks{.seconds = std::ldexp(static_cast<double>(numberAt(bytes, secondsPlace, 8)), -32), .peaks = {}};
  for (std::size_t i = 0; i + 1 < values.size(); i += 2)
    peaks.peaks.push_back({static_cast<std::int8_t>(values[i]), static_cast<std::int8_t>(values[i + 1])});
  return peaks;
}

}  // namespace vex::studio
