#pragma once

#include <string_view>

// What depends on who opened the GL context: the window or the offscreen context sets it.

namespace vex {

struct GlContext {
  bool (*extensionSupported)(const char* name) = nullptr;
  void* (*entryPoint)(const char* name) = nullptr;  // address of a GL function, null when unknown
};

inline GlContext glContext;

// Whether a list of extensions, parted by blanks, holds that very name. A null list holds none.
bool listHolds(const char* list, std::string_view name);

// Of the current context.
bool extensionListed(const char* name);

}  // namespace vex
