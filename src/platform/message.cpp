#include "platform/message.h"

#include <cerrno>
#include <cstdio>
#include <string>

namespace vex {

void showMessage([[maybe_unused]] const char* caption, const char* text, [[maybe_unused]] MessageIcon icon) {
  std::string line(text);
  while (!line.empty() && line.back() == '\n') line.pop_back();
  for (char& c : line) {
    if (c == '\n') c = ' ';
  }
  std::fprintf(stderr, "%s: %s\n", program_invocation_short_name, line.c_str());
}

}  // namespace vex
