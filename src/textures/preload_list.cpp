#include "textures/preload_list.h"

#include <cstdio>
#include <cstring>

#include "base/fatal_place.h"
#include "base/files.h"
#include "base/report.h"
#include "platform/paths.h"
#include "textures/texture_cache.h"

namespace vex {

std::vector<PreloadLine> readPreloadList() {
  std::vector<PreloadLine> lines;
  const OpenFile list(fileOpen(preloadListFile, "r"));
  if (!list.found()) return lines;
  for (int number = 1; !fileEof(list); ++number) {
    // The result says nothing of the last line: without a line feed it is null though a line was read.
    char line[128] = "";
    fileGets(line, sizeof line, list);
    char name[128];
    int wrap = 0;
    const bool whole = std::sscanf(line, "%127s %d", name, &wrap) == 2;
    lines.push_back(
        {number, std::strspn(line, " \t\r\n") == std::strlen(line), whole ? name : "", wrap == 1});
  }
  return lines;
}

void preloadTextures() {
  for (const auto& [number, blank, name, wrap] : readPreloadList()) {
    if (name.empty()) continue;
    logPrintf("preloading texture %s%s\n", name.c_str(), wrap ? " w/ wrap" : "");
    const FatalPlace place([line = number] { return formatted("%s:%d", preloadListFile, line); });
    getTexture(name.c_str(), wrap);
  }
}

void writeUsedTextures() {
  std::FILE* list = openLooseFile(preloadListFile, "w");
  if (list == nullptr) return;
  for (int id = 0; id < textureCount(); ++id) {
    const TextureEntry& entry = textureEntry(id);
    std::fprintf(list, entry.wrap ? "%s 1\n" : "%s 0\n", entry.name);
  }
  std::fclose(list);
}

}  // namespace vex
