#include "models/codec.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <string>

#include "tests/support/codec_members.h"
#include "tests/support/fatal.h"
#include "tests/support/pak_builder.h"
#include "tests/support/temporary_folder.h"

namespace vex {

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

TEST(Codec, WritesTheGivenFrames) {
  struct Row {
    int level, extraFlags;
    std::size_t size;
  };
  for (const Row row : {Row{1, 4, 5000}, Row{2, 0, 5000}, Row{8, 0, 5000}, Row{9, 2, 5000}, Row{9, 2, 0}}) {
    const std::string data = someText(row.size);
    const std::string sums = littleEndianBytes(crcOf(data), 4) + littleEndianBytes(row.size, 4);
    if (row.size == 0) {
      EXPECT_EQ(sums, std::string(8, '\0'));
    }
    const std::string gzip = compress(data, gzipFraming, row.level);
    EXPECT_EQ(gzip.substr(0, 10),
              std::string("\x1f\x8b\x08\0\0\0\0\0", 8) + static_cast<char>(row.extraFlags) + '\x0b');
    EXPECT_EQ(gzip.substr(gzip.size() - 8), sums);
    const std::string zip = compress(data, pkzipFraming, row.level);
    EXPECT_EQ(zip.substr(0, 30), std::string("PK\3\4\x13\0", 6) + littleEndianBytes(row.extraFlags + 8, 2) +
                                     littleEndianBytes(8, 2) + std::string(20, '\0'));
    EXPECT_EQ(zip.size(), gzip.size() - 18 + 114);
    EXPECT_EQ(zip.substr(30, gzip.size() - 18), gzip.substr(10, gzip.size() - 18));
  }
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
    Bytef extra[] = "extra", name[] = "na\1me", comment[] = "\xff\1comment";
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

}  // namespace vex
