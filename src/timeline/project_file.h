#pragma once

#include <cstddef>
#include <string_view>

// The project file, written by an editing tool: little-endian doubles (8 bytes), ints (4 bytes), bytes,
// bools (a byte, 0 or 1) and strings. A string is its characters and a line feed; carriage returns do
// not count. In order:
//
//   version "0.17", executable name*, start time, functions file name*, left time*, total time, zoom*,
//   music name (below 2 characters: none), int n and n ticks (doubles)*, int n and n parts
//   part:      name, int*, pos, start, length (doubles), track (signed byte), bool*, active (bool, must
//              be true), speed (double), byte n and n calls
//   call:      scene name, function name, byte n (at most 9) and n parameters
//   parameter: name, type (byte, 0 to 4), const, sin period, sin amplitude, sin offset, sin phase
//              (doubles), byte n and n dots (double x, double y), min, max (doubles), string (at most 31
//              characters)
//
// Fields marked * serve the editing tool and are passed over.

namespace vex {

inline constexpr std::string_view projectVersion = "0.17";
inline constexpr std::size_t projectLineSize = 128;  // at most 126 characters of a string are told apart

struct ProjectLine {
  char text[projectLineSize];  // seen up to its first zero byte
  std::size_t length;          // 127 when the line goes on unread
};

// Readers on the open project file. Each is fatal where a whole value is not there:
// "double != 8 bytes (%d read)\n", "int != 4 bytes (%d read)\n", "byte != 1 byte (%d read)\n",
// "char != 1 byte (%d read)\n"; readBool also: "unknown boolean values\n".
double readDouble(int file);
int readInt(int file);
int readByte(int file);  // 0 to 255
bool readBool(int file);
ProjectLine readString(int file);

}  // namespace vex
