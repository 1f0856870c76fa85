#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

// What products come from, as the build knows it: the object file of the source that defines a product, and
// all that the linker adds for its sake. Their code holds every header, constant and compiler option that it
// was compiled with.

namespace vex {

struct ObjectFile {
  std::string hash;               // of its bytes
  std::vector<std::string> uses;  // sources of other object files, and files of the system such as fonts
};

using ObjectFiles =
    std::map<std::string, ObjectFile, std::less<>>;  // by source: "production/textures/smoke.cpp"

// A line each: source, hash, what it uses, with spaces between.
ObjectFiles readObjectFiles(std::string_view lines);

// Those of the generator and of the library that it is made with.
const ObjectFiles& builtObjectFiles();

// Names the state of all that the code of `source` (a path that ends with a source as above) comes to; files
// of the system by size and time. Fatal: "no object file of %s".
std::string objectKey(std::string_view source, const ObjectFiles& files = builtObjectFiles());

}  // namespace vex
