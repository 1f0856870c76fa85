#include "platform/desktop.h"

namespace vex {

void restoreDesktop() {}

}  // namespace vex
