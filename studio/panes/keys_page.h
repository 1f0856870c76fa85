#pragma once

#include <vector>

namespace vex::studio {

struct Command;

// A window of all keys and what the mouse does, until it is closed or a key pressed.
void showKeysPage(const std::vector<Command>& commands);

}  // namespace vex::studio
