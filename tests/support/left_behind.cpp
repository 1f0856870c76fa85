#include "tests/support/left_behind.h"

#include <GL/gl.h>
#include <malloc.h>

#include <filesystem>
#include <iterator>

#ifdef __SANITIZE_ADDRESS__
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();  // of the sanitizer's runtime
#endif

namespace vex {

std::size_t allocatedBytes() {
#ifdef __SANITIZE_ADDRESS__
  return __sanitizer_get_current_allocated_bytes();
#else
  const struct mallinfo2 info = mallinfo2();
  return info.uordblks + info.hblkhd;
#endif
}

int openDescriptors() {
  const std::filesystem::directory_iterator folder("/proc/self/fd");
  return static_cast<int>(std::distance(begin(folder), end(folder)));
}

int liveTextures() {
  int count = 0;
  for (GLuint name = 1; name < 1200; ++name) count += glIsTexture(name) == GL_TRUE;
  return count;
}

}  // namespace vex
