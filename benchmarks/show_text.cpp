#include "benchmarks/show_text.h"

#include <utility>

#include "authoring/project_text.h"
#include "tests/support/project_builder.h"

namespace vex {

std::string textOf999Parts() {
  CallData call{.scene = "SceneHelper", .function = "drawBitmap"};
  const auto add = [&call](ParameterData parameter) { call.parameters.push_back(std::move(parameter)); };
  add({.name = "texture", .type = 4, .min = 0, .max = 0, .string = "data\\sky_bone"});
  add({.name = "x", .constant = -1.02});
  add({.name = "y", .type = 1, .dots = {{0, -1.02}, {1, -1.3}}});
  add({.name = "w", .constant = 2.04});
  add({.name = "h", .constant = 2.04});
  add({.name = "frames", .constant = 4});
  add({.name = "glitch", .constant = 0.125});
  add({.name = "alpha",
       .type = 2,
       .dots = {{0, 0}, {0.1, 0.75}, {0.3333333333333333, 1}, {0.9, 1}, {1, 0}},
       .min = 0,
       .max = 1});
  add({.name = "blend", .constant = 1, .min = 0, .max = 2});
  ProjectData project{.totalTime = 999};
  for (int i = 0; i < 999; ++i) {
    project.parts.push_back(
        {.name = "part " + std::to_string(i), .pos = 1.0 * i, .length = 2.5, .calls = {call, call, call}});
  }
  return writeProjectText(decodeProject(buildProject(project).bytes, "bench").project);
}

}  // namespace vex
