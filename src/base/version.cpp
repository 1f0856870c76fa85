#include "base/version.h"

#include <algorithm>
#include <string_view>

#include "platform/linked_libraries.h"

namespace vex {

namespace {

struct Library {
  std::string_view file;  // its name without what follows ".so"
  const char* name;
  const char* licence;  // that of what we link; tests and helper programs beside it have others
};

// scripts/licences reads these rows.
constexpr Library libraries[] = {
    {"libglut", "freeglut", "MIT"},
    {"libGLU", "GLU", "SGI-B-2.0"},
    {"libGL", "libglvnd GL", "MIT"},
    {"libEGL", "libglvnd EGL", "MIT"},
    {"libX11", "libX11", "MIT"},
    {"libXrandr", "libXrandr", "MIT"},
    {"libXss", "libXss", "MIT"},
    {"libfltk", "FLTK", "LGPL-2.0+ with exceptions"},
    {"libfltk_gl", "FLTK GL", "LGPL-2.0+ with exceptions"},
    {"libopenal", "OpenAL Soft", "LGPL-2.0+"},
    {"libsndfile", "libsndfile", "LGPL-2.1+"},
    {"libturbojpeg", "TurboJPEG", "BSD-3-Clause and IJG"},
    {"libjpeg", "libjpeg-turbo", "BSD-3-Clause and IJG"},
    {"libpng16", "libpng", "libpng-2.0"},
    {"libz", "zlib", "Zlib"},
    {"libfreetype", "FreeType", "FTL"},
    {"libassimp", "Assimp", "BSD-3-Clause"},
    {"libfftw3f", "FFTW", "GPL-2.0+"},
    {"libstdc++", "libstdc++", "GPL-3.0+ with runtime exception"},
    {"libgcc_s", "libgcc", "GPL-3.0+ with runtime exception"},
    {"libm", "glibc libm", "LGPL-2.1+"},
    {"libc", "glibc", "LGPL-2.1+"},
};

std::string nameAndLicence(std::string_view file) {
  const std::string_view stem = file.substr(0, file.find(".so"));
  const auto* row = std::find_if(std::begin(libraries), std::end(libraries),
                                 [stem](const Library& library) { return library.file == stem; });
  if (row == std::end(libraries)) return std::string(file) + " (unknown)";
  return std::string(row->name) + " (" + row->licence + ")";
}

}  // namespace

std::string versionLine(const char* program, std::span<const Contained> others) {
  std::string line = std::string(program) + " " VEX_VERSION " (MIT)";
  const char* joint = " with ";
  const auto add = [&](const std::string& entry) {
    line += joint + entry;
    joint = ", ";
  };
  for (const std::string_view file : linkedLibraries()) add(nameAndLicence(file));
  for (const Contained& other : others) add(std::string(other.name) + " (" + other.licence + ")");
  return line;
}

}  // namespace vex
