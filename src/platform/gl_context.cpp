#include "platform/gl_context.h"

#include <GL/gl.h>

#include <cstddef>

namespace vex {

bool listHolds(const char* list, std::string_view name) {
  if (list == nullptr || name.empty()) return false;
  for (std::string_view rest = list; !rest.empty();) {
    const std::size_t end = rest.find(' ');
    if (rest.substr(0, end) == name) return true;
    rest = end == std::string_view::npos ? std::string_view{} : rest.substr(end + 1);
  }
  return false;
}

bool extensionListed(const char* name) {
  return listHolds(reinterpret_cast<const char*>(glGetString(GL_EXTENSIONS)), name);
}

}  // namespace vex
