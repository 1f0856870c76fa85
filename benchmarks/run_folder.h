#pragma once

#include <GL/gl.h>
#include <benchmark/benchmark.h>

#include <filesystem>
#include <string>

#include "base/files.h"
#include "base/window_size.h"
#include "platform/offscreen_context.h"
#include "textures/gl_setup.h"

namespace vex {

// The run folder as working folder, and a GL context; skips where there is none of them.
class RunFolder {
 public:
  RunFolder(benchmark::State& state, int width, int height) : previous(std::filesystem::current_path()) {
    const std::filesystem::path folder =
        std::filesystem::read_symlink("/proc/self/exe").parent_path().parent_path() / "run";
    if (!std::filesystem::exists(folder / "vex.pak")) {
      state.SkipWithError("no run folder");
      return;
    }
    std::filesystem::current_path(folder);
    if (const std::string failure = openOffscreenContext(width, height); !failure.empty()) {
      state.SkipWithError(failure.c_str());
      return;
    }
    opened = true;
    setUpGlState();
    setWindowSize(width, height);
    glViewport(0, 0, width, height);
    pakOpen("vex.pak");
  }
  ~RunFolder() {
    if (opened) closeOffscreenContext();
    std::filesystem::current_path(previous);
  }
  RunFolder(const RunFolder&) = delete;
  RunFolder& operator=(const RunFolder&) = delete;

  explicit operator bool() const { return opened; }

 private:
  std::filesystem::path previous;
  bool opened = false;
};

}  // namespace vex
