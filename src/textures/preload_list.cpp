#include "textures/preload_list.h"

#include <cstdio>

#include "base/fatal_place.h"
#include "base/files.h"
#include "base/report.h"
#include "platform/paths.h"
#include "textures/texture_cache.h"

namespace vex {
namespace {

constexpr const char* listFile = "used_textures.log";

void preloadLine(const char* line, int number) {
  char name[128];
  int wrap = 0;
  if (std::sscanf(line, "%127s %d", name, &wrap) != 2) return;
  if (wrap == 1) {
    logPrintf("preloading texture %s w/ wrap\n", name);
  } else {
    logPrintf("preloading texture %s\n", name);
  }
  const FatalPlace place([number] { return formatted("%s:%d", listFile, number); });
  getTexture(name, wrap == 1);
}

}  // namespace

void preloadTextures() {
  const OpenFile list(fileOpen(listFile, "r"));
  if (!list.found()) return;
  for (int number = 1; !fileEof(list); ++number) {
    // The result says nothing of the last line: without a line feed it is null though a line was read.
    char line[128] = "";
    fileGets(line, sizeof line, list);
    preloadLine(line, number);
  }
}

void writeUsedTextures() {
  std::FILE* list = openLooseFile(listFile, "w");
  if (list == nullptr) return;
  for (int id = 0; id < textureCount(); ++id) {
    const TextureEntry& entry = textureEntry(id);
    std::fprintf(list, entry.wrap ? "%s 1\n" : "%s 0\n", entry.name);
  }
  std::fclose(list);
}

}  // namespace vex
