#pragma once

#include <cstdint>
#include <string>

// Compiled models on disk: a header word of 4 bytes (lowest first), then a PKZIP archive with one deflated
// member without a name. Read through the file layer, loose or from the pak; written as a loose file. One
// container is open at a time. What goes wrong is fatal, unless its caller can do without the file and asks
// for the reason at zipClose.

namespace vex {

enum ZipMode : int { ZIP_READ = 0, ZIP_WRITE = 1, ZIP_CLOSED = 9 };

enum class ZipFailure { fatal, reported };

// Reads the header word, or writes it to a temporary file that takes the place of `name` at zipClose.
// Fatal: "Cannot open two zip files simultaneously!", "Cannot open zip file w/ mode=ZIP_CLOSED!",
// "zipOpen: Pak_FILE %s not found!". Fatal or reported: "zipOpen: FILE %s not found!", a file without a whole
// header word.
void zipOpen(const char* name, ZipMode mode, std::uint32_t* header, ZipFailure onFailure = ZipFailure::fatal);

// The next `length` bytes of the data. The number of bytes delivered: fewer where the data ends, none after a
// reported failure. Fatal or reported, by name: a rejected header, broken data, "ARGH!" where the file ends
// before the data does.
std::uint32_t zipRead(void* buffer, std::uint32_t length);

// Fatal or reported: "Write error in zip.putbyte()!".
void zipWrite(const void* buffer, std::uint32_t length);

// Empty, or the first of the failures that are reported; nothing is left of a file that could not be written.
// Data that was not read is no error. Fatal or reported: by name "unzclose() failed (code %d)" and a wrong
// CRC or size; "zipclose() failed!", "Write error in zip.putbyte()!".
std::string zipClose();

}  // namespace vex
