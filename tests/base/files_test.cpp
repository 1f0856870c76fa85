#include "base/files.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <filesystem>
#include <random>

#include "base/options.h"
#include "tests/support/fatal.h"
#include "tests/support/pak_builder.h"
#include "tests/support/temporary_folder.h"
#include "textures/preload_list.h"

namespace vex {

namespace fs = std::filesystem;

namespace {

// An archive as working folder: "first" and "lines" are followed by other members' bytes, "last" by none.
class Files : public testing::Test {
 protected:
  Files() {
    writeFile("vex.pak", pakBytes({{"data\\first.bin", "0123456789"},
                                   {"data\\lines.txt", "one\ntwo\nthree"},
                                   {"data\\next.bin", "NEXT\nNEXT"},
                                   {"data\\last.txt", "end"}}));
    pakOpen("vex.pak");
  }

  TemporaryFolder folder;
};

std::string readAll(int handle) {
  std::string bytes(fileRemaining(handle), '\0');
  bytes.resize(fileRead(bytes.data(), 1, bytes.size(), handle));
  return bytes;
}

}  // namespace

TEST_F(Files, LooseFileWinsOverMember) {
  int handle = fileOpen("data\\first.bin", "rb");
  EXPECT_EQ(readAll(handle), "0123456789");
  fileClose(handle);
  writeFile("data/First.BIN", "loose");
  handle = fileOpen("data\\first.bin", "rb");
  EXPECT_EQ(readAll(handle), "loose");
  EXPECT_EQ(pakMemberOffset(handle), 0u);
  fileClose(handle);
}

TEST_F(Files, MembersIgnoreLetterCaseAndMissingOnesGiveNoHandle) {
  const int handle = fileOpen("DATA\\FIRST.BIN", "rb");
  EXPECT_EQ(handle, 0);
  EXPECT_EQ(pakMemberOffset(handle), 2u + 4 * 40);
  EXPECT_EQ(pakMemberSize(handle), 10u);
  EXPECT_EQ(fileOpen("data\\none.bin", "rb"), -1);
  EXPECT_STREQ(pakFileName(), "vex.pak");
}

TEST_F(Files, WithoutArchiveOnlyLooseFilesOpen) {
  pakOpen("other.pak");
  EXPECT_EQ(fileOpen("data\\first.bin", "rb"), -1);
  EXPECT_STREQ(pakFileName(), "");
}

TEST_F(Files, BlockReadMayEndAtTheMembersEndButNotBeyond) {
  const int handle = fileOpen("data\\first.bin", "rb");
  std::array<char, 16> buffer{};
  EXPECT_EQ(fileRead(buffer.data(), 1, 10, handle), 10u);
  EXPECT_EQ(std::string(buffer.data(), 10), "0123456789");
  EXPECT_TRUE(fileEof(handle));
  const auto refusal = [](const char* what) {
    return "Super ARGH (" + std::string(what) + " of data\\first.bin are more than its 10)";
  };
  EXPECT_EQ(fatalText([&] { fileRead(buffer.data(), 1, 1, handle); }), refusal("1 times 1 bytes at byte 10"));
  fileSeek(handle, 8, SeekOrigin::start);
  EXPECT_EQ(fatalText([&] { fileRead(buffer.data(), 2, 2, handle); }), refusal("2 times 2 bytes at byte 8"));
  EXPECT_EQ(fatalText([&] { fileRead(buffer.data(), ~std::size_t{0} / 2, 3, handle); }),
            refusal("3 times 9223372036854775807 bytes at byte 8"));
  fileSeek(handle, -5, SeekOrigin::start);
  EXPECT_EQ(fatalText([&] { fileRead(buffer.data(), 1, 1, handle); }),
            refusal("1 times 1 bytes at byte 4294967291"));
}

TEST_F(Files, ByteReadsStopAtTheEnd) {
  writeFile("loose.bin", "0123456789");
  for (const char* name : {"data\\first.bin", "loose.bin"}) {
    const int handle = fileOpen(name, "rb");
    for (const char c : std::string("0123456789")) EXPECT_EQ(fileGetc(handle), c) << name;
    EXPECT_EQ(fileEof(handle), name[0] == 'd') << "only a loose file must meet the end first";
    EXPECT_EQ(fatalText([&] { fileGetc(handle); }), "ARGH! (" + std::string(name) + " ends after 10 bytes)");
    fileClose(handle);
  }
}

TEST_F(Files, LooseBlockReadGivesWholeElementsOnly) {
  writeFile("loose.bin", "0123456789");
  const int handle = fileOpen("loose.bin", "rb");
  std::array<char, 16> buffer{};
  EXPECT_EQ(fileRead(buffer.data(), 4, 3, handle), 2u);
  EXPECT_TRUE(fileEof(handle));
}

TEST_F(Files, LinesEndWithTheMember) {
  char buffer[16];
  const int lines = fileOpen("data\\lines.txt", "r");
  EXPECT_STREQ(fileGets(buffer, sizeof buffer, lines), "one\n");
  EXPECT_EQ(fileTell(lines), 4);
  EXPECT_STREQ(fileGets(buffer, sizeof buffer, lines), "two\n");
  EXPECT_EQ(fileGets(buffer, sizeof buffer, lines), nullptr) << "the line would run on into the next member";
  EXPECT_STREQ(buffer, "three");
  EXPECT_TRUE(fileEof(lines));

  const int last = fileOpen("data\\last.txt", "r");
  EXPECT_STREQ(fileGets(buffer, sizeof buffer, last), "end") << "nothing follows, so the line is whole";
  EXPECT_TRUE(fileEof(last));
}

TEST_F(Files, LongLinesComeInPieces) {
  char buffer[3];
  const int handle = fileOpen("data\\lines.txt", "r");
  for (const char* piece : {"on", "e\n", "tw", "o\n", "th", "re"}) {
    EXPECT_STREQ(fileGets(buffer, sizeof buffer, handle), piece);
  }
  EXPECT_EQ(fileGets(buffer, sizeof buffer, handle), nullptr);
  EXPECT_STREQ(buffer, "e");
}

TEST_F(Files, InterleavedReadsOfMembersKeepTheirPlaces) {
  const int first = fileOpen("data\\first.bin", "rb");
  const int lines = fileOpen("data\\lines.txt", "rb");
  char buffer[8];
  EXPECT_EQ(fileGetc(first), '0');
  EXPECT_EQ(fileGetc(lines), 'o');
  EXPECT_EQ(fileGetc(first), '1');
  EXPECT_STREQ(fileGets(buffer, sizeof buffer, lines), "ne\n");
  EXPECT_EQ(fileGetc(first), '2');
  EXPECT_EQ(fileTell(lines), 4);
}

TEST_F(Files, SeeksOfBothKindsAgree) {
  writeFile("loose.bin", "0123456789");
  struct Seek {
    std::int32_t offset;
    SeekOrigin origin;
    std::int32_t place;
  };
  for (const char* name : {"data\\first.bin", "loose.bin"}) {
    const int handle = fileOpen(name, "rb");
    for (const Seek& seek : {Seek{3, SeekOrigin::start, 3}, Seek{2, SeekOrigin::current, 5},
                             Seek{-4, SeekOrigin::current, 1}, Seek{0, SeekOrigin::end, 10}}) {
      EXPECT_EQ(fileSeek(handle, seek.offset, seek.origin), 0);
      EXPECT_EQ(fileTell(handle), seek.place) << name;
      EXPECT_EQ(fileRemaining(handle), 10u - static_cast<unsigned>(seek.place)) << name;
    }
    fileClose(handle);
  }
}

TEST_F(Files, HandlesAreTheLowestFreeSlotsAndSixteenAtMost) {
  for (int i = 0; i < 16; ++i) EXPECT_EQ(fileOpen("data\\first.bin", "rb"), i);
  EXPECT_EQ(fatalText([] { fileOpen("data\\last.txt", "rb"); }),
            "too many files open, data\\last.txt is more than 16");
  fileClose(5);
  EXPECT_EQ(fileOpen("data\\last.txt", "rb"), 5);
  EXPECT_EQ(fatalText([] { fileClose(16); }), "file handle 16 isn't open");
  EXPECT_EQ(fatalText([] { fileTell(-1); }), "file handle -1 isn't open");
  fileCloseAll();
  EXPECT_EQ(fatalText([] { fileTell(0); }), "file handle 0 isn't open");
  EXPECT_EQ(fileOpen("data\\last.txt", "rb"), -1) << "the archive is closed, too";
}

// /proc/self/mem opens, but its first byte cannot be read: like a file on a failing disk.
TEST_F(Files, ReadsThatFailEndWithTheFilesName) {
  fs::create_symlink("/proc/self/mem", "failing");
  fs::create_symlink("failing", "used_textures.log");
  fs::create_symlink("failing", "failing.pak");
  char buffer[8];
  const int handle = fileOpen("failing", "rb");
  const std::string text = "can't read failing: Input/output error";
  EXPECT_EQ(fatalText([&] { fileRead(buffer, 1, 1, handle); }), text);
  EXPECT_EQ(fatalText([&] { fileGets(buffer, sizeof buffer, handle); }), text);
  EXPECT_EQ(fatalText([&] { fileGetc(handle); }), text);
  EXPECT_EQ(fatalText([] { preloadTextures(); }), "can't read used_textures.log: Input/output error");
  EXPECT_EQ(fatalText([] { pakOpen("failing.pak"); }), "can't read failing.pak: Input/output error");
}

TEST_F(Files, AnArchiveCutWhileItIsOpenIsRefusedByMember) {
  constexpr std::size_t cut = 20000;  // far behind what stdio holds of the beginning
  writeFile("vex.pak",
            pakBytes({{"first", std::string(cut, '-')}, {"log", "line\nline\nline\n"}, {"x", "x"}}));
  pakOpen("vex.pak");
  const int handle = fileOpen("log", "r");
  fs::resize_file("vex.pak", pakMemberOffset(handle) + 7);
  const std::string text = "pak vex.pak ends inside member log";
  char buffer[16];
  EXPECT_EQ(fatalText([&] { fileRead(buffer, 1, 8, handle); }), text);
  EXPECT_EQ(fatalText([&] {
              for (int i = 0; i < 8; ++i) fileGetc(handle);
            }),
            text);
  EXPECT_STREQ(fileGets(buffer, sizeof buffer, handle), "line\n");
  EXPECT_STREQ(fileGets(buffer, sizeof buffer, handle), "li");
  EXPECT_EQ(fatalText([&] { fileGets(buffer, sizeof buffer, handle); }), text);
}

TEST_F(Files, WhatIsThereButCannotBeOpenedIsNotCalledMissing) {
  fs::create_symlink("loop", "loop");
  fs::create_directory("folder");
  writeFile("file", "");
  fs::create_symlink("nowhere", "dangling");
  const struct {
    const char* name;
    std::string reason;  // empty for what is missing
  } cases[] = {{"loop", "Too many levels of symbolic links"},
               {"folder", "Is a directory"},
               {"file\\below", "Not a directory"},
               {"none", ""},
               {"none\\below", ""},
               {"dangling", ""}};
  for (const auto& [name, reason] : cases) {
    options().showStats = true;
    for (const bool pak : {false, true}) {
      const std::string text = reason.empty() ? "" : std::string("can't read ") + name + ": " + reason;
      const ChildResult refused = runInChild([&, file = name] {
        if (pak) {
          pakOpen(file);
        } else if (fileOpen(file, "rb") == -1) {
          refuseUnreadable(file);
        }
      });
      EXPECT_EQ(refused.errorText, text.empty() ? "" : "vextests: " + text + "\n") << name;
      EXPECT_EQ(refused.exitCode, text.empty() ? 0 : 255) << name;
      if (!pak) {
        EXPECT_EQ(readFile("Demo.log"), text.empty() ? "" : text + "\n") << name;
      }
    }
    options() = {};
    fs::remove("Demo.log");
  }
  fs::create_directory_symlink("loop", "data");
  const int member = fileOpen("data\\first.bin", "rb");
  EXPECT_EQ(readAll(member), "0123456789") << "the archive stands in";
}

TEST(PakDirectory, LiesAreRefusedByName) {
  const TemporaryFolder folder;
  const struct {
    std::string bytes;
    const char* text;
  } cases[] = {
      {"", "pak vex.pak has no entry count, it holds 0 bytes"},
      {"\x01", "pak vex.pak has no entry count, it holds 1 bytes"},
      {littleEndianBytes(257, 2), "pak vex.pak counts 257 entries, at most 256 are possible"},
      {littleEndianBytes(2, 2) + pakRecord("a", 42, 0), "pak vex.pak ends in its directory, in entry 2 of 2"},
      {littleEndianBytes(1, 2) + pakRecord("a", 40, 3),
       "pak vex.pak: member a (offset 40, size 3) reaches beyond the file's 42 bytes"},
      {littleEndianBytes(1, 2) + pakRecord("a", 0xffffffff, 0xffffffff),
       "pak vex.pak: member a (offset 4294967295, size 4294967295) reaches beyond the file's 42 bytes"},
      {littleEndianBytes(1, 2) + pakRecord("0123456789abcdef0123456789abcdef", 42, 0),
       "pak vex.pak: the name of entry 1, 0123456789abcdef0123456789abcdef, is longer than 31 characters"},
  };
  for (const auto& [bytes, text] : cases) {
    writeFile("vex.pak", bytes);
    EXPECT_EQ(fatalText([] { pakOpen("vex.pak"); }), text);
  }
}

TEST(PakDirectory, EveryPrefixAndRandomBytesEndInOrder) {
  const TemporaryFolder folder;
  const std::string whole = pakBytes({{"data\\a", "abc"}, {"data\\b", "defgh"}});
  std::mt19937 random(7);
  for (std::size_t size = 0; size <= whole.size(); ++size) {
    std::string noise = whole.substr(0, size);
    for (char& c : noise) {
      if (random() % 8 == 0) c = static_cast<char>(random());
    }
    for (const std::string& bytes : {whole.substr(0, size), noise}) {
      writeFile("vex.pak", bytes);
      const int exitCode = runInChild([] {
                             pakOpen("vex.pak");
                             const int handle = fileOpen("data\\b", "rb");
                             if (handle >= 0) readAll(handle);
                           }).exitCode;
      EXPECT_TRUE(exitCode == 0 || exitCode == 255) << "prefix of " << size << " bytes: " << exitCode;
      if (bytes != noise) {
        EXPECT_EQ(exitCode == 0, size == whole.size());
      }
    }
  }
}

}  // namespace vex
