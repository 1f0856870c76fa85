#pragma once

#include <cstdint>
#include <cstdio>
#include <string>

// Names as the presentation writes them ("data\font.raw", any letter case) on a file system with
// slashes and case. Every loose file is opened through here.

namespace vex {

// Path of `name` relative to the working folder: each backslash becomes a slash; where a folder or
// file of that exact spelling does not exist, one whose name differs only in ASCII letter case is
// taken (the first in byte order). A name without any match keeps its own spelling.
std::string resolvePath(const char* name);

// Opens the file of that very path; null, with errno, on failure and for what is no regular file.
std::FILE* openFileForReading(const char* path);

// fopen of the resolved path; null, with errno, on failure and for what is not a regular file when reading.
std::FILE* openLooseFile(const char* name, const char* mode);

inline constexpr std::uint32_t wholeFile = 0xffffffff;  // a size that reaches to the end of any file

}  // namespace vex
