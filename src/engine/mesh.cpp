#include "engine/mesh.h"

#include "shell/report.h"

namespace vex {

Mesh::~Mesh() {
  logPrintf(kind == ObjectKind::mesh ? "  destroying mesh %s\n" : "  destroying fluid %s\n", name);
}

}  // namespace vex
