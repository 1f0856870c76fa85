#include <gtest/gtest.h>
#include <sys/resource.h>
#include <zlib.h>

#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "models/codec.h"
#include "tests/support/byte_callbacks.h"
#include "tests/support/codec_members.h"
#include "tests/support/fatal.h"
#include "tests/support/pak_builder.h"

// What the codec's reader and writer refuse, and with which code.

namespace vex {

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
  const std::string stored = Member{.method = 0}.bytes();
  const Reading cut = readMember(stored.substr(0, stored.size() - 10), pkzipFraming, 10, 0, 1);
  EXPECT_EQ(cut.closeResult, -1);
  EXPECT_EQ(cut.closeCode, 5);
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
    MemberWriter writer;
    EXPECT_EQ(writer.open(putIntoSink, framing, level), 3);
    EXPECT_EQ(writer.errorCode(), 3);
    EXPECT_EQ(writer.write("x", 1), -1);
  }
}

TEST(Codec, EveryRefusedByteIsAWriteError) {
  const std::string data = someText(40'000);
  for (const int framing : {pkzipFraming, gzipFraming}) {
    const std::size_t size = compress(data, framing, 9).size();
    for (std::size_t capacity = 0; capacity < size;
         capacity += capacity < 40 || capacity + 150 > size ? 1 : 997) {
      emptySink(capacity);
      MemberWriter writer;
      const int started = writer.open(putIntoSink, framing, 9);
      const std::size_t headerSize = framing == pkzipFraming ? 30 : 10;
      ASSERT_EQ(started, capacity < headerSize ? 9 : 0) << capacity;
      if (started == 0) {
        writer.write(data.data(), static_cast<std::uint32_t>(data.size()));
        ASSERT_EQ(writer.close(), -1) << capacity;
      }
      ASSERT_EQ(writer.errorCode(), 9) << capacity;
      ASSERT_EQ(writer.close(), -1);
      ASSERT_EQ(writer.errorCode(), 0);
    }
  }
  emptySink(20);
  MemberWriter writer;
  ASSERT_EQ(writer.open(putIntoSink, gzipFraming, 9), 0);
  std::mt19937 random(1);
  std::string noise(100'000, '\0');
  for (char& byte : noise) byte = static_cast<char>(random());
  for (int time = 0; time < 2; ++time) {  // and stays one
    EXPECT_EQ(writer.write(noise.data(), 100'000), -1);
    EXPECT_EQ(writer.errorCode(), 9);
  }
}

TEST(Codec, CallsOutOfOrderAreUninitialised) {
  char byte = 'x';
  MemberWriter writer;
  writer.open(putIntoSink, 0, 0);  // another code than 0 first
  EXPECT_EQ(writer.write(&byte, 1), -1);
  EXPECT_EQ(writer.errorCode(), 0);
  writer.open(putIntoSink, 0, 0);
  EXPECT_EQ(writer.close(), -1);
  EXPECT_EQ(writer.errorCode(), 0);
  MemberReader reader;
  const std::string unknownMethod = Member{.method = 12}.bytes();
  const auto refuse = [&] {
    sourceBytes = unknownMethod;
    reader.open(getFromSource, pkzipFraming);
    EXPECT_EQ(reader.read(&byte, 1), -1);
    EXPECT_EQ(reader.close(), 6);
    EXPECT_EQ(reader.errorCode(), 6);
  };
  refuse();
  EXPECT_EQ(reader.read(&byte, 1), -1);
  EXPECT_EQ(reader.errorCode(), 0);
  refuse();
  EXPECT_EQ(reader.close(), -1);
  EXPECT_EQ(reader.errorCode(), 0);
  emptySink();
  writer.open(putIntoSink, gzipFraming, 9);
  EXPECT_EQ(writer.write(&byte, 0), 0);
  EXPECT_EQ(writer.write(&byte, 0), 0);
  EXPECT_EQ(writer.write(&byte, 1), -1);  // the data is over
  EXPECT_EQ(writer.close(), 2 + 18);
}

TEST(Codec, MissingMemoryHasItsCode) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the address space of the sanitizer cannot be limited";
#else
  MemberWriter writer;
  MemberReader reader;
  for (const bool writing : {true, false}) {
    const ChildResult child = runInChild([&] {
      rlimit none{0, 0};
      setrlimit(RLIMIT_AS, &none);
      for (std::size_t size = 1 << 20; size >= 16; size /= 2) {
        while (void* block = std::malloc(size)) *static_cast<void* volatile*>(block) = block;
      }
      const int result =
          writing ? writer.open(putIntoSink, pkzipFraming, 9) : reader.open(getFromSource, pkzipFraming);
      std::_Exit(result == 1 && (writing ? writer.errorCode() : reader.errorCode()) == 1 ? 42 : 1);
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
