#pragma once

#include <cstdint>
#include <string>

// Compiled models on disk: a header word of 4 bytes (lowest first), then a PKZIP archive with one deflated
// member without a name. Read through the file layer, loose or from the pak; written as a loose file. One
// container is open at a time. What goes wrong is fatal, but for a write that its caller can do without.

namespace vex {

enum ZipMode : int { ZIP_READ = 0, ZIP_WRITE = 1, ZIP_CLOSED = 9 };

// What happens when the file cannot be written: nothing is left of it either way.
enum class WriteFailure { fatal, reported };

// Reads the header word, or writes it to a temporary file that takes the place of `name` at zipClose.
// Fatal: "Cannot open two zip files simultaneously!", "Cannot open zip file w/ mode=ZIP_CLOSED!",
// "zipOpen: Pak_FILE %s not found!", "zipOpen: FILE %s not found!", a file without a whole header word.
void zipOpen(const char* name, ZipMode mode, std::uint32_t* header,
             WriteFailure onFailure = WriteFailure::fatal);

// The next `length` bytes of the data. Fatal, by name: a rejected header, broken data, fewer bytes left.
// "ARGH!" of the file layer where the file ends before the member does; the log then has its name.
void zipRead(void* buffer, std::uint32_t length);

// Fatal: "Write error in zip.putbyte()!".
void zipWrite(const void* buffer, std::uint32_t length);

// False where the file could not be written and that is reported. Data that was not read is no error. Fatal:
// "unzclose() failed (code %d)", "zipclose() failed!", "Write error in zip.putbyte()!", and by name a wrong
// CRC or size.
bool zipClose();

// All data of a container whose header word is its size. The result says in words why it cannot be read to
// the end, and is empty where it can; what `data` holds counts only then. No container may be open.
std::string zipLoad(const char* name, std::string& data);

}  // namespace vex
