#include "tools/project_input.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <utility>

#include "authoring/project_text.h"
#include "authoring/whole_check.h"
#include "base/report.h"

namespace vex {

namespace {

constexpr std::size_t mebibyte = 1024 * 1024;
constexpr std::size_t maxProjectSize = 64 * mebibyte;
constexpr std::size_t maxTextSize = 4 * maxProjectSize;  // room for every dump

}  // namespace

std::string readProjectFile(const std::string& name) {
  std::FILE* file = std::fopen(name.c_str(), "rb");
  if (!file) fatalError("can't read %s: %s", name.c_str(), std::strerror(errno));
  std::string bytes;
  char block[1 << 16];
  for (std::size_t size; (size = std::fread(block, 1, sizeof block, file)) > 0;) {
    bytes.append(block, size);
    const std::size_t limit = isProjectFile(bytes) ? maxProjectSize : maxTextSize;
    if (bytes.size() > limit) {
      fatalError("%s is longer than %zu MiB", name.c_str(), limit / mebibyte);
    }
  }
  if (std::ferror(file)) fatalError("can't read %s: %s", name.c_str(), std::strerror(errno));
  std::fclose(file);
  return bytes;
}

std::string compileWhole(const std::string& text, const std::string& name) {
  CompiledProject compiled = compileProjectText(text);
  if (!compiled.problems.empty()) {
    const TextProblem& first = compiled.problems.front();
    fatalError("%s:%d: %s", name.c_str(), first.line, first.text.c_str());
  }
  return std::move(compiled.bytes);
}

}  // namespace vex
