#pragma once

#include <string>

namespace vex {

// A project in either form. Works for pipes too, so that a dump can be edited on its way. Fatal: what cannot
// be read, more than 64 MiB of a project file or 256 of a text.
std::string readProjectFile(const std::string& name);

// The project file of a text. Fatal: the first mistake, "NAME:LINE: ...".
std::string compileWhole(const std::string& text, const std::string& name);

}  // namespace vex
