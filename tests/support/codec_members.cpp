#include "tests/support/codec_members.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <vector>

#include "models/codec.h"
#include "tests/support/byte_callbacks.h"
#include "tests/support/pak_builder.h"

namespace vex {

std::string someText(std::size_t size) {
  std::mt19937 random(5);
  std::string text;
  while (text.size() < size) {
    text += random() % 4 ? "*mesh_vertex " : std::string(1, static_cast<char>(random()));
    text += std::to_string(random() % 1000);
  }
  text.resize(size);
  return text;
}

std::string compress(std::string_view data, int framing, int level, std::size_t piece) {
  emptySink();
  MemberWriter writer;
  EXPECT_EQ(writer.open(putIntoSink, framing, level), 0);
  for (std::size_t done = 0; done < data.size(); done += piece) {
    const auto size = static_cast<std::uint32_t>(std::min(piece, data.size() - done));
    EXPECT_EQ(writer.write(data.data() + done, size), size);
  }
  const std::int64_t size = writer.close();
  EXPECT_EQ(size, static_cast<std::int64_t>(sunkBytes.size()));
  return sunkBytes;
}

std::string foreignDeflate(std::string data, gz_header* gzip) {
  z_stream stream{};
  deflateInit2(&stream, 6, Z_DEFLATED, gzip ? 31 : -15, 9, Z_DEFAULT_STRATEGY);
  if (gzip) deflateSetHeader(&stream, gzip);
  std::string result(data.size() + 1000, '\0');
  stream.next_in = reinterpret_cast<Bytef*>(data.data());
  stream.avail_in = static_cast<uInt>(data.size());
  stream.next_out = reinterpret_cast<Bytef*>(result.data());
  stream.avail_out = static_cast<uInt>(result.size());
  EXPECT_EQ(deflate(&stream, Z_FINISH), Z_STREAM_END);
  result.resize(stream.total_out);
  deflateEnd(&stream);
  return result;
}

std::uint32_t crcOf(const std::string& data) {
  return static_cast<std::uint32_t>(
      crc32(0, reinterpret_cast<const Bytef*>(data.data()), static_cast<uInt>(data.size())));
}

std::string Member::bytes() const {
  const std::string packed = method == 8 ? foreignDeflate(data) : data;
  const std::string crc = littleEndianBytes(crcOf(data) ^ crcChange, 4);
  const std::string sizes =
      littleEndianBytes(packed.size(), 4) + littleEndianBytes(data.size() + sizeChange, 4);
  const bool behind = descriptor != Descriptor::none;
  return "PK\3\4" + littleEndianBytes(20, 2) + littleEndianBytes(flags | (behind ? 8 : 0), 2) +
         littleEndianBytes(method, 2) + "time" + (behind ? std::string(12, '\0') : crc + sizes) +
         littleEndianBytes(name.size(), 2) + littleEndianBytes(extra.size(), 2) + name + extra + packed +
         (descriptor == Descriptor::withSignature ? "PK\7\10" : "") + (behind ? crc + sizes : "") + next;
}

Reading readMember(std::string_view bytes, int framing, std::uint32_t piece, std::uint64_t certain,
                   std::size_t most) {
  const std::vector<char> block(bytes.begin(), bytes.end());
  sourceBytes = {block.data(), block.size()};
  MemberReader reader;
  EXPECT_EQ(reader.open(getFromSource, framing, certain), 0);
  Reading reading{};
  const auto buffer = std::make_unique<char[]>(piece);
  do {
    reading.result = reader.read(buffer.get(), piece);
    reading.inflateCode = reader.errorCode();
    // A rejected header's code must not count as bytes: pieces are larger than 4 or all is delivered.
    if (reading.result > 0) reading.data.append(buffer.get(), static_cast<std::size_t>(reading.result));
  } while (reading.result == piece && reading.data.size() < most);
  reading.closeResult = reader.close();
  reading.closeCode = reader.errorCode();
  reading.unread = sourceBytes.size();
  return reading;
}

}  // namespace vex
