#include "engine/fog.h"

#include "base/report.h"

namespace vex {

Fog::~Fog() {
  logPrintf("  destroying fog %s\n", name);
}

}  // namespace vex
