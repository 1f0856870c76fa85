#pragma once

#include <functional>
#include <string>

#include "base/options.h"
#include "tests/support/fatal.h"
#include "tests/support/temporary_folder.h"

namespace vex {

// What the body, run in a child of its own with "Show stats" on, leaves in the log.
inline std::string logText(const std::function<void()>& body) {
  const TemporaryFolder folder;
  runInChild([&] {
    options().showStats = true;
    body();
  });
  return readFile("Demo.log");
}

}  // namespace vex
