#pragma once

#include <functional>
#include <vector>

#include "tests/support/fatal.h"

// Many cases of which any may end its process, with few processes.

namespace vex {

// Runs body(0) to body(count - 1) in one child, and in a further one behind each case that ends its process.
// What the body returned or the process ended with, case by case.
std::vector<ChildResult> runCasesInChildren(int count, const std::function<int(int)>& body);

}  // namespace vex
