#include "effects/light.h"

#include "shell/report.h"

namespace vex {

Light::~Light() {
  logPrintf("  destroying light %s\n", name);
}

void destroyLight(Light* light) {
  delete light;
}

}  // namespace vex
