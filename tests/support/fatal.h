#pragma once

#include <functional>
#include <string>

// Runs what ends the process in a child of its own, for exact comparison of exit code and text.

namespace vex {

struct ChildResult {
  int exitCode = -1;      // -1 when a signal ended it
  std::string errorText;  // all of its standard error
};

ChildResult runInChild(const std::function<void()>& body);

// The message of a fatal error as it was given, line feeds and all; a text that says what happened
// instead when the body returned, crashed or exited with another code than 255.
std::string fatalText(const std::function<void()>& body);

}  // namespace vex
