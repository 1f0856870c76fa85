#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "base/files.h"
#include "models/codec.h"
#include "platform/replace_file.h"

// Compiled models on disk: a header word of 4 bytes (lowest first), then a PKZIP archive with one deflated
// member without a name. Read through the file layer, loose or from the pak; written as a loose file. What
// goes wrong is fatal, unless its caller can do without the file and asks for the reason at the close.

namespace vex {

enum ZipMode : int { ZIP_READ = 0, ZIP_WRITE = 1, ZIP_CLOSED = 9 };

enum class ZipFailure { fatal, reported };

// The most data, in bytes, of a file of that size: no model packs so well, and a hostile one must not ask for
// any amount of memory.
constexpr std::uint64_t mostUnpacked(std::uint64_t fileSize) {
  return (std::uint64_t{4} << 20) + 16 * fileSize;
}

class ModelContainer {
 public:
  // Reads the header word, or writes it to a temporary file that takes the place of `name` at the close.
  // Fatal: "Cannot open two zip files simultaneously!", "Cannot open zip file w/ mode=ZIP_CLOSED!",
  // "zipOpen: Pak_FILE %s not found!". Fatal or reported: "zipOpen: FILE %s not found!", a file without a
  // whole header word.
  void open(const char* name, ZipMode mode, std::uint32_t* header, ZipFailure onFailure = ZipFailure::fatal);

  // The next `length` bytes of the data. The number of bytes delivered: fewer where the data ends, none after
  // a reported failure. Fatal or reported, by name: a rejected header, broken data, more than mostUnpacked(),
  // "ARGH!" where the file ends before the data does.
  std::uint32_t read(void* buffer, std::uint32_t length);

  // Fatal or reported: "Write error in zip.putbyte()!".
  void write(const void* buffer, std::uint32_t length);

  // Empty, or the first of the failures that are reported; nothing is left of a file that could not be
  // written. Data that was not read is no error. Fatal or reported: by name "unzclose() failed (code %d)" and
  // a wrong CRC or size; "zipclose() failed!", "Write error in zip.putbyte()!"; more was written than
  // mostUnpacked() of the file.
  std::string close();

  std::uint64_t fileSize() const { return size; }  // while reading

 private:
  void fail(const std::string& text);
  void failReading(const std::string& problem);
  void failWriting();
  void checkUnpacked();
  int getbyte();
  int putbyte(int byte);
  void openForReading(std::uint32_t* header);
  void openForWriting(std::uint32_t header);
  void closeReading();
  void closeWriting();

  ZipMode mode = ZIP_CLOSED;
  ZipFailure onFailure = ZipFailure::fatal;
  std::string failure;  // the first one; nothing more is read or written then
  std::string name;
  std::optional<OpenFile> source;           // while reading
  std::uint64_t size = 0;                   // bytes of the file, while writing so far
  std::uint64_t unpacked = 0;               // bytes of data read or written
  std::uint64_t remaining = 0;              // bytes of the source
  bool ranOut = false;                      // a byte behind its last one was asked for
  std::unique_ptr<ReplacementFile> target;  // while writing
  MemberReader reader;
  MemberWriter writer;
};

}  // namespace vex
