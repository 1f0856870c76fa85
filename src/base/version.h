#pragma once

#include <span>
#include <string>

// Which version this is and what it stands on, for --version. docs/licences.md says what each licence asks.

namespace vex {

// Somebody else's work in the program that is no shared library.
struct Contained {
  const char* name;
  const char* licence;
};

// "PROGRAM VERSION (LICENCE) with NAME (LICENCE), ...": one line without its line feed. The names are those
// of the libraries that the program is linked with, then `others`.
std::string versionLine(const char* program, std::span<const Contained> others = {});

}  // namespace vex
