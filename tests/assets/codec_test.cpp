#include "assets/codec.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <zlib.h>

#include <cstdlib>
#include <memory>
#include <random>
#include <vector>

#include "tests/support/byte_callbacks.h"
#include "tests/support/fatal.h"
#include "tests/support/pak_builder.h"
#include "tests/support/temporary_folder.h"

namespace vex {

namespace {

constexpr int anyFraming = 0;

// Words in random order: matches near and far, literals in between.
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

std::string compress(std::string_view data, int framing, int level, std::size_t piece = 1 << 20) {
  emptySink();
  EXPECT_EQ(zipinit(putIntoSink, framing, level), 0);
  for (std::size_t done = 0; done < data.size(); done += piece) {
    const auto size = static_cast<std::uint32_t>(std::min(piece, data.size() - done));
    EXPECT_EQ(zipdeflate(data.data() + done, size), size);
  }
  const std::int64_t size = zipclose();
  EXPECT_EQ(size, static_cast<std::int64_t>(sunkBytes.size()));
  return sunkBytes;
}

// zlib as the other party: raw deflate data, or a gzip file with the given header fields.
std::string foreignDeflate(std::string data, gz_header* gzip = nullptr) {
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

  std::string bytes() const {
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
};

struct Reading {
  std::int64_t result;  // of the last unzinflate that did not deliver all of its piece
  int inflateCode;
  std::string data;
  int closeResult;
  int closeCode;
  std::size_t unread;
};

// Reads in pieces until the end or an error. The input is an exact block, for the sanitizers.
Reading readMember(std::string_view bytes, int framing, std::uint32_t piece = 1 << 16,
                   std::uint64_t certain = 0, std::size_t most = std::string::npos) {
  const std::vector<char> block(bytes.begin(), bytes.end());
  sourceBytes = {block.data(), block.size()};
  EXPECT_EQ(unzinit(getFromSource, framing, certain), 0);
  Reading reading{};
  const auto buffer = std::make_unique<char[]>(piece);
  do {
    reading.result = unzinflate(buffer.get(), piece);
    reading.inflateCode = zipErrorCode();
    // A rejected header's code must not count as bytes: pieces are larger than 4 or all is delivered.
    if (reading.result > 0) reading.data.append(buffer.get(), static_cast<std::size_t>(reading.result));
  } while (reading.result == piece && reading.data.size() < most);
  reading.closeResult = unzclose();
  reading.closeCode = zipErrorCode();
  reading.unread = sourceBytes.size();
  return reading;
}

}  // namespace

TEST(Codec, ReadsBackWhatItWrites) {
  for (const int framing : {pkzipFraming, gzipFraming}) {
    for (int level = 1; level <= 9; ++level) {
      for (const std::size_t size : {0, 1, 300, 200'000}) {
        SCOPED_TRACE(testing::Message() << framing << ' ' << level << ' ' << size);
        const std::string data = someText(size);
        const std::string member = compress(data, framing, level, 7001);
        for (const std::uint64_t certain : {std::size_t{0}, member.size()}) {
          for (const int asked : {framing, anyFraming}) {
            const Reading reading = readMember(member, asked, size > 1000 ? 4099 : 13, certain);
            EXPECT_EQ(reading.data, data);
            EXPECT_EQ(reading.closeResult, 0);
          }
        }
      }
    }
  }
}

TEST(Codec, ReadsExactlyTheDataOrByteByByte) {
  const std::string data = someText(3000);
  for (const int framing : {pkzipFraming, gzipFraming}) {
    const std::string member = compress(data, framing, 9);
    for (const std::uint32_t piece : {1, 3000}) {
      const Reading reading = readMember(member, framing, piece, 0, data.size());
      EXPECT_EQ(reading.data, data);
      EXPECT_EQ(reading.closeResult, 0);
    }
  }
}

TEST(Codec, WritesTheGivenFrames) {
  struct Row {
    int level, extraFlags;
  };
  const std::string data = someText(5000);
  for (const Row row : {Row{1, 4}, Row{2, 0}, Row{8, 0}, Row{9, 2}}) {
    const std::string gzip = compress(data, gzipFraming, row.level);
    EXPECT_EQ(gzip.substr(0, 10),
              std::string("\x1f\x8b\x08\0\0\0\0\0", 8) + static_cast<char>(row.extraFlags) + '\x0b');
    EXPECT_EQ(gzip.substr(gzip.size() - 8), littleEndianBytes(crcOf(data), 4) + littleEndianBytes(5000, 4));
    const std::string zip = compress(data, pkzipFraming, row.level);
    EXPECT_EQ(zip.substr(0, 30), std::string("PK\3\4\x13\0", 6) + littleEndianBytes(row.extraFlags + 8, 2) +
                                     littleEndianBytes(8, 2) + std::string(20, '\0'));
    EXPECT_EQ(zip.size(), gzip.size() - 18 + 114);
    EXPECT_EQ(zip.substr(30, gzip.size() - 18), gzip.substr(10, gzip.size() - 18));
  }
}

TEST(Codec, EmptyDataHasZeroCrcAndSize) {
  const std::string member = compress("", gzipFraming, 9);
  EXPECT_EQ(member.substr(member.size() - 8), std::string(8, '\0'));
}

TEST(Codec, OthersReadItsMembers) {
  TemporaryFolder folder;
  const std::string data = someText(100'000);
  writeFile("data", data);
  writeFile("ours.gz", compress(data, gzipFraming, 5));
  writeFile("ours.zip", compress(data, pkzipFraming, 9));
  EXPECT_EQ(runProgram("gzip -t ours.gz && gzip -dc ours.gz | cmp - data").exitCode, 0);
  const Program python = runProgram(
      "python3 -c 'import zipfile; z = zipfile.ZipFile(\"ours.zip\"); i = z.infolist(); "
      "print(len(i), i[0].filename, z.testzip(), z.read(i[0]) == open(\"data\", \"rb\").read())'");
  EXPECT_EQ(python.output, "1  None True\n") << python.errors;
}

TEST(Codec, ReadsWhatOthersWrite) {
  TemporaryFolder folder;
  const std::string data = someText(100'000);
  writeFile("data", data);
  const Program python = runProgram(R"(python3 -c '
import zipfile, sys
for name, method in ("stored.zip", 0), ("deflated.zip", 8):
  zipfile.ZipFile(name, "w", method).write("data")
class Pipe:
  def __init__(self, file): self.write, self.flush = file.write, file.flush
zipfile.ZipFile(Pipe(open("streamed.zip", "wb")), "w", 8).write("data")
' && gzip -k data)");
  ASSERT_EQ(python.exitCode, 0) << python.errors;
  for (const char* file : {"stored.zip", "deflated.zip", "streamed.zip", "data.gz"}) {
    const Reading reading = readMember(readFile(file), anyFraming, 1000);
    EXPECT_EQ(reading.data, data) << file;
    EXPECT_EQ(reading.closeResult, 0) << file;
  }
}

TEST(Codec, ReadsMembersOfAllKinds) {
  const Member members[] = {
      {},
      {.method = 0},
      {.data = "", .method = 0},
      {.data = ""},
      {.name = "", .extra = std::string(500, 'x')},
      {.name = std::string(65000, 'n'), .extra = std::string(505, 'x')},
      {.descriptor = Descriptor::plain},
      {.descriptor = Descriptor::withSignature},
      {.flags = 0xe006},  // the flags that nobody looks at
  };
  for (const Member& member : members) {
    const std::string bytes = member.bytes();
    for (const std::uint32_t piece : {1, 64, 1000}) {
      // Nothing behind the trailer is touched.
      const Reading reading = readMember(bytes + "not looked at", pkzipFraming, piece);
      EXPECT_EQ(reading.data, member.data);
      EXPECT_EQ(reading.closeResult, 0);
      EXPECT_EQ(reading.unread, 13u);
    }
  }
}

TEST(Codec, ReadsGzipHeadersOfAllKinds) {
  const std::string data = someText(700);
  for (int fields = 0; fields < 8; ++fields) {
    Bytef extra[] = "extra", name[] = "name", comment[] = "comment";
    gz_header header{};
    header.text = 1;
    if (fields & 1) header.extra = extra, header.extra_len = 5;
    if (fields & 2) header.name = name;
    if (fields & 4) header.comment = comment;
    const Reading reading = readMember(foreignDeflate(data, &header) + "rest", anyFraming, 100);
    EXPECT_EQ(reading.data, data) << fields;
    EXPECT_EQ(reading.closeResult, 0) << fields;
    EXPECT_EQ(reading.unread, 4u) << fields;
  }
}

TEST(Codec, RejectsHeaders) {
  const std::string valid = Member{}.bytes();
  const auto gzip = [](int method, int flags, std::string rest = std::string(100, '\0')) {
    return std::string("\x1f\x8b") + static_cast<char>(method) + static_cast<char>(flags) + rest;
  };
  struct Row {
    std::string bytes;
    int framing;
    std::int64_t result;
    int code;
  };
  const Row rows[] = {
      {valid, gzipFraming, 2, 2},
      {compress("x", gzipFraming, 9), pkzipFraming, 2, 2},
      {"PK\1\2 and so on", anyFraming, 2, 2},
      {"BM and so on", anyFraming, 2, 2},
      {Member{.flags = 0x0001}.bytes(), pkzipFraming, 3, 3},
      {Member{.flags = 0x0010}.bytes(), pkzipFraming, 3, 3},
      {Member{.flags = 0x1000}.bytes(), anyFraming, 3, 3},
      {gzip(8, 0x02), gzipFraming, 3, 3},
      {gzip(8, 0x20), gzipFraming, 3, 3},
      {gzip(8, 0x80), anyFraming, 3, 3},
      {Member{.name = std::string(65001, 'n'), .extra = std::string(505, 'x')}.bytes(), pkzipFraming, 4, 4},
      {"", anyFraming, 4, 4},
      {"P", pkzipFraming, 4, 4},
      {"PK\3", pkzipFraming, 4, 4},
      {gzip(8, 0, "12345"), gzipFraming, 4, 4},
      {gzip(8, 4, "123456\3"), gzipFraming, 4, 4},
      {gzip(8, 4, std::string("123456\3\0ab", 10)), gzipFraming, 4, 4},
      {gzip(8, 8, "123456name"), gzipFraming, 4, 4},
      {gzip(8, 16, "123456comment"), gzipFraming, 4, 4},
      {Member{.method = 12}.bytes(), pkzipFraming, -1, 3},
      {gzip(0, 0), gzipFraming, -1, 3},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(testing::PrintToString(row.bytes.substr(0, 20)));
    const Reading reading = readMember(row.bytes, row.framing);
    EXPECT_EQ(reading.result, row.result);
    EXPECT_EQ(reading.inflateCode, row.code);
    // A rejected header counts as none read; data of an unknown kind as not read to its end.
    EXPECT_EQ(reading.closeResult, row.result == -1 ? 6 : -1);
    EXPECT_EQ(reading.closeCode, row.result == -1 ? 6 : 0);
  }
}

TEST(Codec, ChecksTheTrailerInOrder) {
  struct Row {
    Member member;
    int result, code;
  };
  const Row rows[] = {
      {{.crcChange = 1}, -1, 8},
      {{.crcChange = 1, .sizeChange = 1}, -1, 8},
      {{.sizeChange = 1}, -1, 7},
      {{.descriptor = Descriptor::plain, .crcChange = 1}, -1, 8},
      {{.descriptor = Descriptor::plain, .sizeChange = 1, .next = "none"}, -1, 7},
      {{.descriptor = Descriptor::withSignature, .crcChange = 0x80000000}, -1, 8},
      {{.descriptor = Descriptor::withSignature, .sizeChange = 0x100}, -1, 7},
      {{.next = "PK\3\4"}, 6, 6},
      {{.next = "PK\5\6"}, 5, 5},
      {{.next = ""}, 5, 5},
      {{.method = 0, .crcChange = 1}, -1, 8},
      {{.method = 0, .next = "PK\3\4"}, 6, 6},
  };
  for (const Row& row : rows) {
    for (const std::uint64_t certain : {0, 100}) {
      const Reading reading = readMember(row.member.bytes(), pkzipFraming, 64, certain);
      EXPECT_EQ(reading.data, row.member.data);
      EXPECT_EQ(reading.closeResult, row.result) << row.code;
      EXPECT_EQ(reading.closeCode, row.code);
    }
  }
  std::string gzip = compress("data", gzipFraming, 9);
  for (const auto& [fromEnd, code] : {std::pair{1, 7}, {4, 7}, {5, 8}, {8, 8}}) {
    std::string changed = gzip;
    changed[changed.size() - static_cast<std::size_t>(fromEnd)] ^= 1;
    const Reading reading = readMember(changed, gzipFraming);
    EXPECT_EQ(reading.closeResult, -1);
    EXPECT_EQ(reading.closeCode, code);
  }
}

TEST(Codec, ClosingBeforeTheEndOfTheDataSaysSo) {
  for (const int method : {0, 8}) {
    const Reading reading = readMember(Member{.method = method}.bytes(), pkzipFraming, 10, 0, 1);
    EXPECT_EQ(reading.data, someText(10));
    EXPECT_EQ(reading.closeResult, 6);
    EXPECT_EQ(reading.closeCode, 6);
  }
  // The discarded rest counts for the checks that come first.
  EXPECT_EQ(readMember(Member{.method = 0, .crcChange = 1}.bytes(), pkzipFraming, 10, 0, 1).closeCode, 8);
  EXPECT_EQ(readMember(Member{.method = 0, .next = ""}.bytes(), pkzipFraming, 10, 0, 1).closeCode, 5);
}

TEST(Codec, RefusesBrokenData) {
  const std::string header = "\x1f\x8b\x08" + std::string(7, '\0');
  const std::string datas[] = {
      "\x07",                          // block of type 3
      std::string("\x01\1\0\1\0", 5),  // stored block whose length and its complement disagree
      "\x03",                          // fixed codes, ends before the end mark
      std::string("\x05\xff\xff\xff", 4),
  };
  for (const std::string& data : datas) {
    const Reading reading = readMember(header + data, gzipFraming);
    EXPECT_EQ(reading.result, -1);
    EXPECT_EQ(reading.inflateCode, 5);
    EXPECT_EQ(reading.closeResult, 6);
  }
  const std::string stored = Member{.method = 0}.bytes();
  const Reading reading = readMember(stored.substr(0, stored.size() - 10), pkzipFraming);
  EXPECT_EQ(reading.result, -1);
  EXPECT_EQ(reading.inflateCode, 5);
}

TEST(Codec, DamageNeverGoesUnlisted) {
  const std::string data = someText(300);
  const std::string members[] = {
      compress(data, pkzipFraming, 9),
      compress(data, gzipFraming, 1),
      Member{.method = 0}.bytes(),
      Member{.descriptor = Descriptor::plain}.bytes(),
  };
  const auto check = [&](const std::string& bytes) {
    for (const std::uint64_t certain : {std::size_t{0}, bytes.size()}) {
      const Reading reading = readMember(bytes, anyFraming, 512, certain);
      EXPECT_GE(reading.result, -1);
      EXPECT_LE(reading.result, 512);
      EXPECT_TRUE(reading.closeResult == -1 || reading.closeResult == 0 || reading.closeResult == 5 ||
                  reading.closeResult == 6);
      if (reading.closeResult == 0) {
        EXPECT_EQ(reading.data, data);
      }
    }
  };
  for (const std::string& member : members) {
    for (std::size_t size = 0; size < member.size(); ++size) check(member.substr(0, size));
    for (std::size_t i = 0; i < member.size(); ++i) {
      for (const int change : {0x01, 0x08, 0x80, 0xff}) {
        std::string damaged = member;
        damaged[i] = static_cast<char>(damaged[i] ^ change);
        check(damaged);
      }
    }
  }
}

TEST(Codec, RefusesOtherFramingsAndLevels) {
  for (const auto& [framing, level] : {std::pair{0, 9}, {3, 9}, {1, 0}, {2, 10}, {1, -1}}) {
    EXPECT_EQ(zipinit(putIntoSink, framing, level), 3);
    EXPECT_EQ(zipErrorCode(), 3);
    EXPECT_EQ(zipdeflate("x", 1), -1);
  }
}

TEST(Codec, EveryRefusedByteIsAWriteError) {
  const std::string data = someText(40'000);
  for (const int framing : {pkzipFraming, gzipFraming}) {
    const std::size_t size = compress(data, framing, 9).size();
    for (std::size_t capacity = 0; capacity < size;
         capacity += capacity < 40 || capacity + 150 > size ? 1 : 997) {
      emptySink(capacity);
      const int started = zipinit(putIntoSink, framing, 9);
      const std::size_t headerSize = framing == pkzipFraming ? 30 : 10;
      ASSERT_EQ(started, capacity < headerSize ? 9 : 0) << capacity;
      if (started == 0) {
        zipdeflate(data.data(), static_cast<std::uint32_t>(data.size()));
        ASSERT_EQ(zipclose(), -1) << capacity;
      }
      ASSERT_EQ(zipErrorCode(), 9) << capacity;
      ASSERT_EQ(zipclose(), -1);
      ASSERT_EQ(zipErrorCode(), 0);
    }
  }
  emptySink(20);
  ASSERT_EQ(zipinit(putIntoSink, gzipFraming, 9), 0);
  std::mt19937 random(1);
  std::string noise(100'000, '\0');
  for (char& byte : noise) byte = static_cast<char>(random());
  EXPECT_EQ(zipdeflate(noise.data(), 100'000), -1);
  EXPECT_EQ(zipErrorCode(), 9);
  zipclose();
}

TEST(Codec, CallsOutOfOrderAreUninitialised) {
  char byte = 'x';
  zipinit(putIntoSink, 0, 0);  // another code than 0 first
  EXPECT_EQ(zipdeflate(&byte, 1), -1);
  EXPECT_EQ(zipErrorCode(), 0);
  zipinit(putIntoSink, 0, 0);
  EXPECT_EQ(zipclose(), -1);
  EXPECT_EQ(zipErrorCode(), 0);
  zipinit(putIntoSink, 0, 0);
  EXPECT_EQ(unzinflate(&byte, 1), -1);
  EXPECT_EQ(zipErrorCode(), 0);
  zipinit(putIntoSink, 0, 0);
  EXPECT_EQ(unzclose(), -1);
  EXPECT_EQ(zipErrorCode(), 0);
  emptySink();
  zipinit(putIntoSink, gzipFraming, 9);
  EXPECT_EQ(zipdeflate(&byte, 0), 0);
  EXPECT_EQ(zipdeflate(&byte, 0), 0);
  EXPECT_EQ(zipdeflate(&byte, 1), -1);  // the data is over
  EXPECT_EQ(zipclose(), 2 + 18);
}

TEST(Codec, MissingMemoryHasItsCode) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the address space of the sanitizer cannot be limited";
#else
  for (const bool writing : {true, false}) {
    const ChildResult child = runInChild([&] {
      rlimit none{0, 0};
      setrlimit(RLIMIT_AS, &none);
      for (std::size_t size = 1 << 20; size >= 16; size /= 2) {
        while (void* block = std::malloc(size)) *static_cast<void* volatile*>(block) = block;
      }
      const int result =
          writing ? zipinit(putIntoSink, pkzipFraming, 9) : unzinit(getFromSource, pkzipFraming);
      std::_Exit(result == 1 && zipErrorCode() == 1 ? 42 : 1);
    });
    EXPECT_EQ(child.exitCode, 42);
  }
#endif
}

TEST(Codec, CodesHaveTexts) {
  EXPECT_STREQ(zipErrorText(0), "uninitialized zip processing");
  EXPECT_STREQ(zipErrorText(1), "not enough memory");
  EXPECT_STREQ(zipErrorText(2), "bad magic header");
  EXPECT_STREQ(zipErrorText(3), "reserved field or compression method");
  EXPECT_STREQ(zipErrorText(4), "EOF while processing header");
  EXPECT_STREQ(zipErrorText(5), "Invalid compressed data");
  EXPECT_STREQ(zipErrorText(6), "More data to process at close");
  EXPECT_STREQ(zipErrorText(7), "uncompressed size differs from recorded");
  EXPECT_STREQ(zipErrorText(8), "bad CRC");
  EXPECT_STREQ(zipErrorText(9), "write error");
  EXPECT_STREQ(zipErrorText(10), "generic/internal error");
  EXPECT_STREQ(zipErrorText(-1), "generic/internal error");
}

}  // namespace vex
