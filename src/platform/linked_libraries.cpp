#include "platform/linked_libraries.h"

#include <link.h>

namespace vex {

std::vector<std::string_view> linkedLibraries() {
  const char* strings = nullptr;
  for (const ElfW(Dyn)* entry = _DYNAMIC; entry->d_tag != DT_NULL; ++entry) {
    if (entry->d_tag == DT_STRTAB) strings = reinterpret_cast<const char*>(entry->d_un.d_ptr);
  }
  std::vector<std::string_view> names;
  for (const ElfW(Dyn)* entry = _DYNAMIC; entry->d_tag != DT_NULL; ++entry) {
    if (entry->d_tag == DT_NEEDED) names.emplace_back(strings + entry->d_un.d_val);
  }
  return names;
}

}  // namespace vex
