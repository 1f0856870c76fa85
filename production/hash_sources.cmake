# Writes a table of the hashes of all sources that the production's data is made from.
file(GLOB SOURCES ${ROOT}/production/*.h ${ROOT}/production/*.cpp ${ROOT}/production/*/*.h ${ROOT}/production/*/*.cpp
  ${ROOT}/src/platform/jpeg_encoder.* ${ROOT}/src/scenes/word_endings.h ${ROOT}/src/engine/vector.h)
set(ROWS "")
foreach(source ${SOURCES})
  file(SHA256 ${source} hash)
  file(RELATIVE_PATH path ${ROOT} ${source})
  string(APPEND ROWS "    SourceHash{\"${path}\", \"${hash}\"},\n")
endforeach()
file(WRITE ${OUT} "#pragma once

#include <array>
#include <string_view>

namespace vex {

struct SourceHash {
  std::string_view path, hash;
};

inline constexpr std::array sourceHashes{
${ROWS}};

}  // namespace vex
")
