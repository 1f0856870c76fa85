#include <GL/gl.h>
#include <dlfcn.h>

#include <cstdlib>
#include <string>

// Loaded before GL: the extension VEX_HIDE_EXTENSION is missing from GL's list, as on a machine that lacks
// it.

extern "C" const GLubyte* glGetString(GLenum name) {
  static const auto real = reinterpret_cast<decltype(&glGetString)>(dlsym(RTLD_NEXT, "glGetString"));
  const char* hidden = std::getenv("VEX_HIDE_EXTENSION");
  if (name != GL_EXTENSIONS || !hidden) return real(name);
  static std::string list;
  list = std::string(" ") + reinterpret_cast<const char*>(real(name)) + " ";
  const std::string word = std::string(" ") + hidden + " ";
  for (std::size_t at; (at = list.find(word)) != std::string::npos;) list.erase(at, word.size() - 1);
  return reinterpret_cast<const GLubyte*>(list.c_str());
}
