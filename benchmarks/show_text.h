#pragma once

#include <string>

namespace vex {

// 999 parts of three calls each, as a show has them: nine parameters, of which one is a text and two are
// curves.
std::string textOf999Parts();

}  // namespace vex
