#include "models/container.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <random>

#include "base/files.h"
#include "base/options.h"
#include "tests/support/codec_members.h"
#include "tests/support/fatal.h"
#include "tests/support/pak_builder.h"
#include "tests/support/temporary_folder.h"

namespace vex {

namespace {

constexpr const char* name = "data\\skull.hv3";
constexpr const char* path = "data/skull.hv3";

class Container : public testing::Test {
 protected:
  Container() { std::filesystem::create_directory("data"); }

  TemporaryFolder folder;
};

std::string someData(std::size_t size) {
  std::mt19937 random(3);
  std::string data(size, '\0');
  for (char& byte : data) byte = static_cast<char>(random() % 20);
  return data;
}

void writeContainer(const std::string& data, const char* file = name) {
  auto word = static_cast<std::uint32_t>(data.size());
  ModelContainer container;
  container.open(file, ZIP_WRITE, &word);
  container.write(data.data(), word);
  container.close();
}

std::string readContainer(std::size_t size, std::uint32_t* word) {
  std::string data(size, '\0');
  ModelContainer container;
  container.open(name, ZIP_READ, word);
  container.read(data.data(), static_cast<std::uint32_t>(size));
  container.close();
  return data;
}

}  // namespace

TEST_F(Container, BytesStandInTheirPlaces) {
  for (const std::size_t size : {0, 100, 70'000}) {
    const std::string data = someData(size);
    writeContainer(data);
    const std::string file = readFile(path);
    ASSERT_GT(file.size(), 118u);
    const std::size_t z = file.size() - 118;
    const std::string crc =
        littleEndianBytes(crc32(0, reinterpret_cast<const Bytef*>(data.data()), static_cast<uInt>(size)), 4);
    const std::string sizes = littleEndianBytes(z, 4) + littleEndianBytes(size, 4);
    const std::string fields("\x13\0\x0a\0\x08\0\0\0\0\0", 10);
    EXPECT_EQ(file.substr(0, 34), littleEndianBytes(size, 4) + "PK\3\4" + fields + std::string(16, '\0'));
    EXPECT_EQ(file.substr(34 + z, 16), "PK\7\10" + crc + sizes);
    EXPECT_EQ(file.substr(50 + z, 46),
              std::string("PK\1\2\x14\x0b") + fields + crc + sizes + std::string(18, '\0'));
    EXPECT_EQ(file.substr(96 + z), std::string("PK\5\6\0\0\0\0\1\0\1\0", 12) + littleEndianBytes(46, 4) +
                                       littleEndianBytes(z + 46, 4) + std::string(2, '\0'));
  }
}

TEST_F(Container, ReadsBackLooseAndFromTheArchive) {
  for (const std::size_t size : {0, 1, 200'000}) {  // more than the codec takes at once
    const std::string data = someData(size);
    std::uint32_t word = 0x89abcdef;
    ModelContainer container;
    container.open(name, ZIP_WRITE, &word);
    container.write(data.data(), static_cast<std::uint32_t>(size / 2));
    container.write("", 0);
    container.write(data.data() + size / 2, static_cast<std::uint32_t>(size - size / 2));
    EXPECT_EQ(container.close(), "");
    word = 0;
    EXPECT_EQ(readContainer(size, &word), data);
    EXPECT_EQ(word, 0x89abcdefu);

    const std::string file = readFile(path);
    std::filesystem::remove(path);
    writeFile("vex.pak", pakBytes({{"data\\a", "before"}, {name, file}, {"data\\z", "behind"}}));
    pakOpen("vex.pak");
    word = 0;
    EXPECT_EQ(readContainer(size, &word), data);
    EXPECT_EQ(word, 0x89abcdefu);
    fileCloseAll();
  }
}

TEST_F(Container, ReadsAByteAtATimeAndStopsEarly) {
  const std::string data = someData(50'000);
  writeContainer(data);
  for (int time = 0; time < maxFileSlots + 1; ++time) {  // no handle stays open
    std::uint32_t word = 0;
    ModelContainer container;
    container.open(name, ZIP_READ, &word);
    std::string start(300, '\0');
    for (char& byte : start) container.read(&byte, 1);
    container.close();
    EXPECT_EQ(start, data.substr(0, 300));
    EXPECT_EQ(word, 50'000u);
  }
}

TEST_F(Container, OpenedAndClosedWithoutReadingIsFine) {
  writeContainer("data");
  std::uint32_t word = 0;
  ModelContainer container;
  container.open(name, ZIP_READ, &word);
  EXPECT_EQ(container.close(), "");
  EXPECT_EQ(word, 4u);
}

TEST_F(Container, TrailingMemberIsAccepted) {
  writeContainer("data");
  std::string file = readFile(path);
  file[file.size() - 68 + 2] = 3, file[file.size() - 68 + 3] = 4;  // central directory to local header
  writeFile(path, file);
  std::uint32_t word = 0;
  EXPECT_EQ(readContainer(4, &word), "data");
}

TEST_F(Container, CallsOutOfOrderAreFatal) {
  writeContainer("data");
  std::uint32_t word = 0;
  char byte = 0;
  ModelContainer container;
  for (const ZipMode first : {ZIP_READ, ZIP_WRITE}) {
    for (const ZipMode second : {ZIP_READ, ZIP_WRITE, ZIP_CLOSED}) {
      EXPECT_EQ(fatalText([&] {
                  container.open(name, first, &word);
                  container.open("data\\other.hv3", second, &word);
                }),
                "Cannot open two zip files simultaneously! (data\\other.hv3 while data\\skull.hv3 is open)");
    }
  }
  EXPECT_EQ(fatalText([&] { container.open(name, ZIP_CLOSED, &word); }),
            "Cannot open zip file w/ mode=ZIP_CLOSED! (data\\skull.hv3)");
  EXPECT_EQ(fatalText([&] { container.read(&byte, 1); }), "zipRead() called on closed file!");
  EXPECT_EQ(fatalText([&] { container.write(&byte, 1); }), "zipWrite() called on closed file!");
  EXPECT_EQ(fatalText([&] { container.close(); }), "zipClose() called on closed file!");
  EXPECT_EQ(fatalText([&] {
              container.open(name, ZIP_WRITE, &word);
              container.read(&byte, 1);
            }),
            "zipRead() called in ZIP_WRITE mode!");
  EXPECT_EQ(fatalText([&] {
              container.open(name, ZIP_READ, &word);
              container.write(&byte, 1);
            }),
            "zipWrite() called in ZIP_READ mode!");
  EXPECT_EQ(readContainer(4, &word), "data");  // the unfinished writes above left it alone
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator("data"), {}), 1);
}

TEST_F(Container, FilesThatDoNotOpenAreFatal) {
  std::uint32_t word = 0;
  EXPECT_EQ(fatalText([&] { ModelContainer().open(name, ZIP_READ, &word); }),
            "zipOpen: Pak_FILE data\\skull.hv3 not found!");
  EXPECT_EQ(fatalText([&] { ModelContainer().open("none\\skull.hv3", ZIP_WRITE, &word); }),
            "zipOpen: FILE none\\skull.hv3 not found!");
  writeFile(path, "abc");
  EXPECT_EQ(fatalText([&] { ModelContainer().open(name, ZIP_READ, &word); }),
            "data\\skull.hv3: ends after 3 bytes, its header word has 4");
}

TEST_F(Container, RefusedBytesAreFatal) {
  // A device that is always full: the refusal shows when stdio's buffer is full, or at the close.
  for (const std::size_t size : {10, 100'000}) {
    EXPECT_EQ(fatalText([&] { writeContainer(someData(size), "/dev/full"); }),
              "Write error in zip.putbyte()! (/dev/full: No space left on device)");
  }
}

TEST_F(Container, DamageIsRefusedByName) {
  const std::string data = someData(1000);
  writeContainer(data);
  const std::string valid = readFile(path);
  const std::size_t z = valid.size() - 118;
  const auto changed = [&](std::size_t offset, char change) {
    std::string file = valid;
    file[offset] = static_cast<char>(file[offset] ^ change);
    return file;
  };
  std::string longName = changed(31, '\xff');
  longName[33] = '\xff';
  const std::string named = "data\\skull.hv3: ";
  const struct {
    std::string file, problem;
  } rows[] = {
      {changed(4, 1), named + "bad magic header (code 2)"},
      {changed(10, 1), named + "reserved field or compression method (code 3)"},
      {changed(12, 4), named + "reserved field or compression method (code 3)"},
      {longName, named + "EOF while processing header (code 4)"},
      {changed(34, static_cast<char>(valid[34] ^ 7)), named + "Invalid compressed data (code 5)"},
      {changed(46 + z, 1), named + "uncompressed size differs from recorded (code 7)"},
      {changed(39 + z, 1), named + "bad CRC (code 8)"},
      {changed(50 + z, 1), "unzclose() failed (code 5) (data\\skull.hv3: Invalid compressed data)"},
  };
  for (const auto& [file, problem] : rows) {
    writeFile(path, file);
    std::uint32_t word = 0;
    EXPECT_EQ(fatalText([&] { readContainer(1000, &word); }), problem);
    ModelContainer container;
    container.open(name, ZIP_READ, &word, ZipFailure::reported);
    EXPECT_EQ(word, 1000u);
    std::string buffer(1000, '\0');
    container.read(buffer.data(), 1000);
    container.read(buffer.data(), 1000);
    EXPECT_EQ(container.close(), problem);
  }
}

// A file of a megabyte could ask for a gigabyte; the writer makes none that the reader refuses.
TEST_F(Container, DataBeyondAllMeasureIsRefused) {
  const std::string zeros((16 << 20) + 1, '\0');
  const std::string fits(std::size_t{4} << 20, '\0');
  std::uint32_t word = 0;
  writeContainer(fits);
  EXPECT_EQ(readContainer(fits.size(), &word), fits);

  std::uint32_t header = 1;
  ModelContainer container;
  container.open(name, ZIP_WRITE, &header, ZipFailure::reported);
  container.write(zeros.data(), static_cast<std::uint32_t>(zeros.size()));
  const std::string refused = container.close();
  EXPECT_TRUE(refused.starts_with("data\\skull.hv3: more than ")) << refused;
  EXPECT_EQ(readContainer(fits.size(), &word), fits) << "the file before stays";

  const std::string file = littleEndianBytes(zeros.size(), 4) + Member{.data = zeros}.bytes();
  writeFile(path, file);
  const std::string message = "data\\skull.hv3: more than " + std::to_string(mostUnpacked(file.size())) +
                              " bytes of data in a file of " + std::to_string(file.size());
  EXPECT_EQ(fatalText([&] { readContainer(zeros.size(), &word); }), message);
  container.open(name, ZIP_READ, &word, ZipFailure::reported);
  std::string buffer(zeros.size(), '\0');
  EXPECT_EQ(container.read(buffer.data(), static_cast<std::uint32_t>(buffer.size())), 0u);
  EXPECT_EQ(container.close(), message);
}

// Loose or packed; nothing of it is left behind, not even an open file.
TEST_F(Container, EveryBeginningIsRefusedByName) {
  const std::string data = someData(200);
  writeContainer(data);
  const std::string valid = readFile(path);
  std::filesystem::remove(path);
  const std::size_t checked = valid.size() - 64;  // behind the central directory's signature
  for (std::size_t size = 0; size <= valid.size(); ++size) {
    const std::string beginning = valid.substr(0, size);
    if (size % 2 == 0) {
      writeFile("vex.pak", pakBytes({{name, beginning}, {"data\\z", "not of the file before"}}));
      pakOpen("vex.pak");
    } else {
      writeFile(path, beginning);
    }
    std::uint32_t word = 0;
    ModelContainer container;
    container.open(name, ZIP_READ, &word, ZipFailure::reported);
    std::string read(200, '\0');
    read.resize(container.read(read.data(), 200));
    const std::string problem = container.close();
    if (size < 4) {
      EXPECT_EQ(problem,
                "data\\skull.hv3: ends after " + std::to_string(size) + " bytes, its header word has 4");
    } else if (size < checked) {
      EXPECT_EQ(problem, "ARGH! (data\\skull.hv3 ends before its compressed data does)");
    } else {
      EXPECT_EQ(problem, "");
      EXPECT_EQ(read, data);
    }
    std::filesystem::remove(path);
  }
  fileCloseAll();
  writeFile(path, valid.substr(0, 50));
  std::uint32_t word = 0;
  EXPECT_EQ(fatalText([&] { readContainer(200, &word); }),
            "ARGH! (data\\skull.hv3 ends before its compressed data does)");
}

TEST_F(Container, LessThanAskedForIsTheEndOfTheData) {
  writeContainer("data");
  std::uint32_t word = 0;
  ModelContainer container;
  container.open(name, ZIP_READ, &word);
  char buffer[8];
  EXPECT_EQ(container.read(buffer, 3), 3u);
  EXPECT_EQ(container.read(buffer, 8), 1u);
  EXPECT_EQ(container.read(buffer, 8), 0u);
  EXPECT_EQ(container.close(), "");
}

TEST_F(Container, ReportedFailuresOfWritingLeaveNothing) {
  std::uint32_t word = 1;
  ModelContainer container;
  container.open("none\\skull.hv3", ZIP_WRITE, &word, ZipFailure::reported);
  container.write("x", 1);
  EXPECT_EQ(container.close(), "zipOpen: FILE none\\skull.hv3 not found!");
  const std::string data = someData(100'000);
  container.open("/dev/full", ZIP_WRITE, &word, ZipFailure::reported);
  container.write(data.data(), 100'000);
  EXPECT_EQ(container.close(), "Write error in zip.putbyte()! (/dev/full: No space left on device)");
  // The next one starts afresh.
  word = 4;
  container.open(name, ZIP_WRITE, &word);
  container.write("data", 4);
  EXPECT_EQ(container.close(), "");
  EXPECT_EQ(readContainer(4, &word), "data");
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator("data"), {}), 1);
}

// Neither an open file nor half of one, however often.
TEST_F(Container, LeavesNothingWhereItIsNotClosed) {
  writeContainer("data");
  std::uint32_t word = 0;
  for (int time = 0; time < maxFileSlots + 1; ++time) {
    ModelContainer reading, writing;
    reading.open(name, ZIP_READ, &word);
    writing.open(name, ZIP_WRITE, &word);
    writing.write("other", 5);
  }
  EXPECT_EQ(readContainer(4, &word), "data");
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator("data"), {}), 1);
}

}  // namespace vex
